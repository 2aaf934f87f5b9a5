#pragma once

#include "ui/editors/LumpNamesEditor.h"
#include "ui/lists/SpritesModel.h"

namespace plinket3 {

/// The names of the sprites.
class frmEditSprites : public LumpNamesEditor {
    Q_OBJECT
public:
    explicit frmEditSprites(const EditorContext& context);

private:
    SpritesModel model_;
};

} // namespace plinket3
