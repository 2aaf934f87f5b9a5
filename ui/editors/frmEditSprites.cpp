#include "ui/editors/frmEditSprites.h"

namespace plinket3 {

frmEditSprites::frmEditSprites(const EditorContext& context)
    : LumpNamesEditor(
          "frmEditSprites", tr("Sprite editor"), context, RecordKind::Sprite, model_,
          {.list = "lvwSprites",
           .many = "sprites",
           .restoreOne = "Are you sure you want to restore this sprite?",
           .restoreMany = "Are you sure you want to restore these sprites?",
           .cannot = QT_TRANSLATE_NOOP("LumpNamesEditor", "Patches for this engine cannot rename this sprite")}),
      model_(context) {}

} // namespace plinket3
