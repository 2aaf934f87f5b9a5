#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace plinket3 {

/// The states whose fields are shown, in ascending order.
struct StateSelection {
    std::vector<std::int32_t> states;
    std::int32_t current = 0; // the one clicked last; one of `states`, if there are any

    bool Several() const { return states.size() > 1; }
    /// State 0 stands for "no state" and is never changed.
    bool Editable() const {
        return std::any_of(states.begin(), states.end(), [](std::int32_t state) { return state != 0; });
    }
};

} // namespace plinket3
