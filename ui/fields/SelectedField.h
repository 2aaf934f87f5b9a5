#pragma once

#include "patch/Cells.h"
#include "ui/fields/RecordSelection.h"

#include <memory>

namespace plinket3 {

/// One field of the records that are selected.
struct SelectedField {
    std::shared_ptr<const RecordSelection> selection;
    RecordKind kind;
    int field;
    const char* many; // what several of the records are called
};

} // namespace plinket3
