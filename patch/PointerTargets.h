#pragma once

#include "patch/PatchSet.h"

#include <cstdint>
#include <span>
#include <unordered_map>

namespace plinket3 {

/// How a normal patch names a code pointer: by a state that has it in the engine, and a pointer number for the state
/// that gets it.
class PointerTargets {
public:
    /// `pointerStates` gives the state of each pointer number.
    PointerTargets(const NumberedList<StateRecord>& states, std::span<const std::int32_t> pointerStates)
        : stateCount_(static_cast<std::int32_t>(states.DenseSize())),
          pointerCount_(static_cast<std::int32_t>(pointerStates.size())) {
        for (const auto& [state, record] : states)
            stateByAction_.try_emplace(record.action, state);
        for (std::int32_t pointer = 0; pointer < pointerCount_; ++pointer)
            pointerByState_.try_emplace(pointerStates[static_cast<std::size_t>(pointer)], pointer);
    }

    /// The lowest state whose action is `codePointer`; the number of states when there is none.
    std::int32_t StateWithAction(std::int32_t codePointer) const {
        return Find(stateByAction_, codePointer, stateCount_);
    }
    /// The lowest pointer number that belongs to `state`; the number of pointers when there is none.
    std::int32_t PointerOf(std::int32_t state) const { return Find(pointerByState_, state, pointerCount_); }

    /// Whether a normal patch can say that `state` has `codePointer`. The last state never serves as a source.
    bool CanExpress(std::int32_t state, std::int32_t codePointer) const {
        return StateWithAction(codePointer) < stateCount_ - 1 && PointerOf(state) < pointerCount_;
    }

private:
    using Map = std::unordered_map<std::int32_t, std::int32_t>;
    static std::int32_t Find(const Map& map, std::int32_t key, std::int32_t absent) {
        const auto found = map.find(key);
        return found == map.end() ? absent : found->second;
    }

    Map stateByAction_, pointerByState_;
    std::int32_t stateCount_, pointerCount_;
};

} // namespace plinket3
