#include "patch/NumberRanges.h"

#include <algorithm>
#include <array>

namespace plinket3 {

namespace {

constexpr std::string_view theEngine = "the engine itself", idSoftware = "id Software",
                           community = "agreements between engines", nothing = "nothing at all";

/// Up to a number, from the end of the row before.
struct Range {
    std::int32_t last;
    std::string_view owner;
};
constexpr std::array numberRanges{Range{-1879048193, theEngine}, Range{-1073741825, idSoftware}, Range{-2, community},
                                  Range{-1, nothing}, Range{INT32_MAX, {}}};
constexpr std::array idRanges{Range{-28673, theEngine}, Range{-16385, idSoftware}, Range{-2, community},
                              Range{-1, nothing}, Range{INT16_MAX, {}}};

template <class Ranges> std::string_view OwnerIn(const Ranges& ranges, std::int32_t number) {
    return std::ranges::lower_bound(ranges, number, {}, &Range::last)->owner;
}

} // namespace

std::string_view OwnerOfNumber(std::int32_t number) { return OwnerIn(numberRanges, number); }

std::string_view OwnerOfId(std::int32_t id) { return OwnerIn(idRanges, static_cast<std::int16_t>(id)); }

} // namespace plinket3
