#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3::test {

struct Lump {
    std::string name; // up to 8 bytes, filled up with NULs
    std::string bytes;
    bool operator==(const Lump&) const = default;
};

/// A WAD file: the directory comes right after the header, then the lumps, so that the last one ends with the file.
std::string WadBytes(const std::vector<Lump>& lumps, std::string_view identification = "PWAD");

/// The lumps of a WAD that is whole, in the order of its directory; each name has its 8 bytes, as in the file.
std::vector<Lump> LumpsOf(std::string_view wad);

/// The first 12 bytes of a WAD file.
std::string WadHeader(std::string_view identification, std::int32_t lumpCount, std::int32_t directoryOffset);

/// A directory entry of 16 bytes.
std::string WadEntry(std::int32_t offset, std::int32_t size, std::string name);

/// A picture of which each column starts at the given offset of the lump. `posts` comes after the offsets, at
/// 8 + 4 x the number of columns.
std::string PictureBytes(int width, int height, const std::vector<std::int32_t>& columnOffsets, std::string_view posts);

} // namespace plinket3::test
