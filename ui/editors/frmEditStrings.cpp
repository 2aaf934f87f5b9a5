#include "ui/editors/frmEditStrings.h"

#include "ui/editors/frmPropString.h"

namespace plinket3 {

frmEditStrings::frmEditStrings(const EditorContext& context)
    : RecordTableEditor("frmEditStrings", tr("String editor"), context, RecordKind::String, model_,
                        {.list = "lvwStrings",
                         .many = "strings",
                         .restoreOne = "Are you sure you want to restore this string?",
                         .restoreMany = "Are you sure you want to restore these strings?"}),
      model_(context) {}

void frmEditStrings::SizeColumns() {
    constexpr int characters[]{7, 56, 20};
    for (int column = 0; const int width : characters)
        List().setColumnWidth(column++, fontMetrics().horizontalAdvance(QString(width, '0')));
}

void frmEditStrings::EditRecord(int record) {
    if (dialog_ == nullptr)
        return;
    if (const std::optional<std::string> text = dialog_->Edit(record))
        context_.edits.Store({RecordKind::String, record, textField}, *text);
}

} // namespace plinket3
