#include "ui/editors/LumpNamesEditor.h"

#include "patch/LumpNames.h"
#include "ui/editors/frmNewRecord.h"

#include <QHeaderView>

namespace plinket3 {

LumpNamesEditor::LumpNamesEditor(const char* name, const QString& caption, const EditorContext& context,
                                 RecordKind kind, LumpNamesModel& model, const Texts& texts)
    : RecordTableEditor(name, caption, context, kind, model,
                        {.list = texts.list,
                         .many = texts.many,
                         .edit = QT_TR_NOOP("Re&name..."),
                         .restoreOne = texts.restoreOne,
                         .restoreMany = texts.restoreMany}),
      kind_(kind), cannot_(texts.cannot) {}

void LumpNamesEditor::SizeColumns() {
    constexpr int characters[]{13, 10, 10, 10};
    List().header()->setStretchLastSection(false);
    for (int column = 0; const int width : characters)
        List().setColumnWidth(column++, fontMetrics().horizontalAdvance(QString(width, '0')));
}

bool LumpNamesEditor::MayEdit() const { return CanRenameLumps(context_.program.engine.dialect); }

void LumpNamesEditor::EditRecord(int record) {
    if (!CanRenameLump(context_.program.engine.dialect, Defaults(), kind_, record))
        return context_.links.ShowStatus(tr(cannot_));
    if (auto name = frmNewRecord(kind_, context_.edits, window()).AskName(record))
        context_.edits.Store({kind_, record, lumpNameField}, std::move(*name));
}

} // namespace plinket3
