#include "ui/fields/Speed.h"

#include "core/Numbers.h"
#include "patch/modPatchText.h"

namespace plinket3 {

bool HasFixedSpeed(std::int32_t bits) { return modPatchText::GetFlag(bits, projectileBit); }

std::int32_t SpeedUnder(std::int32_t bits, const ThingRecord& thing) {
    const bool was = HasFixedSpeed(thing.bits);
    const bool is = HasFixedSpeed(bits);
    if (is && !was)
        return FixedFromUnits(thing.speed);
    return was && !is ? RoundToInt32(thing.speed / unitsPerFixed) : thing.speed;
}

} // namespace plinket3
