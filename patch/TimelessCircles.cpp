#include "patch/TimelessCircles.h"

#include <algorithm>
#include <unordered_map>

namespace plinket3 {

namespace {

bool IsOfNoTime(const PatchSet& set, std::int32_t state) {
    const StateRecord* record = state == 0 ? nullptr : set.states.Find(state); // 0 ends all
    return record != nullptr && record->duration == 0;
}

} // namespace

/// States of 0 tics have one way out, so that each is gone through once.
std::vector<std::vector<std::int32_t>> TimelessCircles(const PatchSet& set) {
    std::vector<std::vector<std::int32_t>> circles;
    std::unordered_map<std::int32_t, std::int32_t> firstOfWalk; // by state: where the walk began that came to it
    for (const auto& [first, record] : set.states) {
        std::vector<std::int32_t> walk;
        for (std::int32_t state = first; IsOfNoTime(set, state) && firstOfWalk.try_emplace(state, first).second;
             state = set.states[state].nextState)
            walk.push_back(state);
        if (walk.empty())
            continue;
        const auto circle = std::find(walk.begin(), walk.end(), set.states[walk.back()].nextState);
        if (circle != walk.end())
            circles.emplace_back(circle, walk.end());
    }
    return circles;
}

} // namespace plinket3
