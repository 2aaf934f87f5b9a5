#pragma once

#include "patch/modTableDef.h"

#include <cstdint>

namespace plinket3 {

inline constexpr int fixedBits = 16; // after the point
inline constexpr double unitsPerFixed = 1 << fixedBits;

/// Kept: what does not fit wraps, a width of 40000 too. docs/kept-behaviour.md
inline std::int32_t FixedFromUnits(std::int32_t units) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(units) << fixedBits);
}

/// Whether the speeds of a thing with these flags are fixed-point numbers.
bool HasFixedSpeed(std::int32_t bits);
/// A speed of a thing that keeps its meaning when the thing's flags become `bits`.
std::int32_t SpeedUnder(std::int32_t bits, const ThingRecord& thing,
                        const Field<ThingRecord>& speed = FieldOf(&ThingRecord::speed));

} // namespace plinket3
