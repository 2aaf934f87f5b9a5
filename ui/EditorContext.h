#pragma once

#include "patch/Edits.h"
#include "patch/Program.h"
#include "ui/EditorLinks.h"

namespace plinket3 {

/// What a window needs to show and edit the open patch.
struct EditorContext {
    Program& program;
    Edits& edits;
    EditorLinks& links;
};

} // namespace plinket3
