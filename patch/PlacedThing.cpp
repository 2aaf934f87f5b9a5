#include "patch/PlacedThing.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>

namespace plinket3 {

namespace {

/// What levels mean by these numbers is no thing: the starts of the players.
constexpr std::array starts{1, 2, 3, 4, 11};

/// By weapon the "ID #" of its pickup; 0 for none.
constexpr std::array pickupIds{0, 0, 2001, 2002, 2003, 2004, 2006, 2005, 82};

} // namespace

std::int16_t IdToPlace(const PatchSet& set, std::int32_t thing) {
    const std::int32_t own = set.things[thing].id;
    std::set<std::int32_t> others(starts.begin(), starts.end());
    for (const auto& [number, record] : set.things)
        if (number != thing)
            others.insert(record.id);
    if (own > 0 && own <= INT16_MAX && !others.contains(own))
        return static_cast<std::int16_t>(own);
    std::int32_t free = firstFreeId;
    while (others.contains(free) && free < INT16_MAX)
        ++free;
    return static_cast<std::int16_t>(free);
}

std::optional<std::int32_t> PickupOf(const PatchSet& defaults, std::int32_t weapon) {
    const std::int32_t id = weapon >= 0 && static_cast<std::size_t>(weapon) < pickupIds.size()
                                ? pickupIds[static_cast<std::size_t>(weapon)]
                                : 0;
    if (id != 0)
        for (const auto& [number, record] : defaults.things)
            if (record.id == id)
                return number;
    return std::nullopt;
}

} // namespace plinket3
