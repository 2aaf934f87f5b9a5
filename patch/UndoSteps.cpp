#include "patch/UndoSteps.h"

#include <algorithm>
#include <utility>

namespace plinket3 {

bool UndoSteps::Merges(const Step& step, bool typing) const {
    if (!typing || !typing_ || position_ == 0 || position_ != steps_.size() || saved_ == position_)
        return false;
    const std::vector<Change>& last = steps_.back().changes;
    return std::equal(last.begin(), last.end(), step.changes.begin(), step.changes.end(),
                      [](const Change& left, const Change& right) { return left.cell == right.cell; });
}

std::vector<Change> UndoSteps::Push(Step step, bool typing) {
    const bool merges = Merges(step, typing);
    typing_ = typing;
    if (!merges) {
        if (saved_ && *saved_ > position_)
            saved_.reset();
        steps_.resize(position_++);
        steps_.push_back(std::move(step));
        return steps_.back().changes;
    }
    Step& last = steps_.back();
    for (std::size_t i = 0; i < last.changes.size(); ++i)
        last.changes[i].after = std::move(step.changes[i].after);
    std::vector<Change> changes = last.changes;
    if (std::all_of(changes.begin(), changes.end(),
                    [](const Change& change) { return change.before == change.after; })) {
        steps_.pop_back();
        --position_;
        typing_ = false;
    }
    return changes;
}

const Step* UndoSteps::Undo() {
    typing_ = false;
    return position_ > 0 ? &steps_[--position_] : nullptr;
}

const Step* UndoSteps::Redo() {
    typing_ = false;
    return position_ < steps_.size() ? &steps_[position_++] : nullptr;
}

void UndoSteps::MarkSaved() {
    saved_ = position_;
    typing_ = false;
}

void UndoSteps::Clear() {
    steps_.clear();
    position_ = 0;
    MarkSaved();
}

bool UndoSteps::Changed() const {
    if (!saved_)
        return true;
    const auto first = static_cast<std::ptrdiff_t>(std::min(*saved_, position_));
    const auto last = static_cast<std::ptrdiff_t>(std::max(*saved_, position_));
    return std::any_of(steps_.begin() + first, steps_.begin() + last, [](const Step& step) { return step.marks; });
}

} // namespace plinket3
