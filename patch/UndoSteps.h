#pragma once

#include "patch/Cells.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace plinket3 {

struct Change {
    Cell cell;
    CellValue before, after;
};

struct Step {
    std::string name;
    std::vector<Change> changes;
    bool marks = true; // sets the changed flag
};

/// The steps that were done and can be undone, and where among them the patch was saved. Knows no patch: what is to be
/// stored is returned.
class UndoSteps {
public:
    /// Adds a step behind those that are done; those that were undone are forgotten. Returns the changes to store.
    /// `typing`: a step that continues the one before, of the same cells, becomes one with it, and none when it leads
    /// back to where that began.
    std::vector<Change> Push(Step step, bool typing);
    /// Ends a run of typing: the next step stands for itself.
    void EndTyping() { typing_ = false; }

    /// The step before or behind the place where one is, which moves; null when there is none. Valid until the next
    /// `Push` or `Clear`.
    const Step* Undo();
    const Step* Redo();
    const Step* NextUndo() const { return position_ > 0 ? &steps_[position_ - 1] : nullptr; }
    const Step* NextRedo() const { return position_ < steps_.size() ? &steps_[position_] : nullptr; }

    /// The patch was saved as it is now.
    void MarkSaved();
    /// What was saved is out of reach of every undo.
    void ForgetSaved() { saved_.reset(); }
    void Clear();
    /// Whether the patch is another than what was saved, as far as steps mark it.
    bool Changed() const;

private:
    bool Merges(const Step& step, bool typing) const;

    std::vector<Step> steps_;
    std::size_t position_ = 0;             // steps that are done
    std::optional<std::size_t> saved_ = 0; // steps that were done when the patch was saved; none when out of reach
    bool typing_ = false;                  // the last step may go on
};

} // namespace plinket3
