#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace plinket3 {

/// A Doom digital sound: unsigned 8-bit mono samples.
struct SoundLump {
    int rate = 0;                          // in Hz, read as a signed 16-bit number: may be 0 or negative
    std::span<const std::uint8_t> samples; // views into the lump
};

/// As much of a sound lump as is played, in bytes: an hour and more. Only damage makes longer ones.
inline constexpr std::int64_t longestSoundLump = 64 << 20;

/// Reads a sound lump as `clsWad::ReadLump` returns it, with the one byte after the lump, which is no sample. On disk:
/// format (2 bytes, not checked), rate (2), sample count (4, not used), samples up to the lump's end. A lump that is
/// too short for its header has no rate and no samples.
SoundLump ReadSoundLump(std::span<const std::uint8_t> lumpAndOneByte);

} // namespace plinket3
