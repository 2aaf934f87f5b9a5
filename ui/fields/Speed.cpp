#include "ui/fields/Speed.h"

#include "core/Numbers.h"
#include "patch/modPatchText.h"

namespace plinket3 {

bool HasFixedSpeed(std::int32_t bits) { return modPatchText::GetFlag(bits, projectileBit); }

std::int32_t SpeedUnder(std::int32_t bits, const ThingRecord& thing, const Field<ThingRecord>& speed) {
    const std::int32_t value = thing.*speed.member;
    if (speed.member == &ThingRecord::fastSpeed && value == -1) // which stands for the normal speed
        return value;
    const bool was = HasFixedSpeed(thing.bits);
    const bool is = HasFixedSpeed(bits);
    if (is && !was)
        return FixedFromUnits(value);
    return was && !is ? RoundToInt32(value / unitsPerFixed) : value;
}

} // namespace plinket3
