#pragma once

#include "ui/editors/LumpNamesEditor.h"
#include "ui/lists/MusicModel.h"

namespace plinket3 {

/// The names of the music.
class frmEditMusic : public LumpNamesEditor {
    Q_OBJECT
public:
    explicit frmEditMusic(const EditorContext& context);

private:
    MusicModel model_;
};

} // namespace plinket3
