#include "ui/editors/frmEditMusic.h"

namespace plinket3 {

frmEditMusic::frmEditMusic(const EditorContext& context)
    : LumpNamesEditor("frmEditMusic", tr("Music editor"), context, RecordKind::Music, model_,
                      {.list = "lvwMusic",
                       .many = "pieces of music",
                       .restoreOne = "Are you sure you want to restore this piece of music?",
                       .restoreMany = "Are you sure you want to restore these pieces of music?",
                       .cannot = QT_TRANSLATE_NOOP("LumpNamesEditor",
                                                   "Patches for this engine cannot rename this piece of music")}),
      model_(context) {}

} // namespace plinket3
