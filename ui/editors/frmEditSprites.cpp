#include "ui/editors/frmEditSprites.h"

#include "patch/LumpNames.h"
#include "ui/editors/frmNewRecord.h"

#include <QHeaderView>

namespace plinket3 {

frmEditSprites::frmEditSprites(const EditorContext& context)
    : RecordTableEditor("frmEditSprites", tr("Sprite editor"), context, RecordKind::Sprite, model_,
                        {.list = "lvwSprites",
                         .many = "sprites",
                         .edit = QT_TR_NOOP("Re&name..."),
                         .restoreOne = "Are you sure you want to restore this sprite?",
                         .restoreMany = "Are you sure you want to restore these sprites?"}),
      model_(context) {}

void frmEditSprites::SizeColumns() {
    constexpr int characters[]{13, 10, 10, 8};
    List().header()->setStretchLastSection(false);
    for (int column = 0; const int width : characters)
        List().setColumnWidth(column++, fontMetrics().horizontalAdvance(QString(width, '0')));
}

bool frmEditSprites::MayEdit() const { return CanRenameLumps(context_.program.engine.dialect); }

void frmEditSprites::EditRecord(int record) {
    if (!CanRenameLump(context_.program.engine.dialect, Defaults(), RecordKind::Sprite, record))
        return context_.links.ShowStatus(tr("Patches for this engine cannot rename this sprite"));
    if (auto name = frmNewRecord(RecordKind::Sprite, context_.edits, window()).AskName(record))
        context_.edits.Store({RecordKind::Sprite, record, lumpNameField}, std::move(*name));
}

} // namespace plinket3
