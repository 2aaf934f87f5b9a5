#pragma once

#include "core/System.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// One WAD file, read only: the container of a Doom-engine game's data. On disk, all little-endian: "IWAD" or "PWAD",
/// the number of lumps and the directory's offset (signed 32-bit each); a directory entry is the lump's offset, its
/// size (signed 32-bit each) and its name in 8 bytes. Only the directory is kept in memory; the file stays open and
/// lumps are read from it at each call, so that they are as the file is at that moment.
///
/// Lump indices count from 0; -1 means "nothing found" everywhere. Offsets, sizes and counts of the file are never
/// trusted with memory: a directory is cut off where the file ends, and so is a lump. An index that the directory does
/// not have gives an empty name, size and lump.
class clsWad {
public:
    /// Opens a file. When nothing exists at the path, the object keeps what it had open; when something does that is no
    /// WAD, no file (a folder, a pipe) or cannot be read, nothing is open afterwards and `WadFileName` is empty.
    /// Of a directory with more than `largestDirectory` lumps only so many are taken.
    void OpenWad(std::filesystem::path FileName);

    /// The lump's bytes and the one byte after them in the file (`LumpSize` + 1 in all; that byte is 0 at the end of
    /// the file), the first `most` of more; fewer when the lump reaches outside the file. -1 gives an empty vector.
    std::vector<std::uint8_t> ReadLump(int lump, std::int64_t most = everything) const;
    /// The lump's bytes, the first `most` of a longer one; fewer when the lump reaches outside the file. -1 gives an
    /// empty string.
    std::string ReadLumpString(int lump, std::int64_t most = everything) const;

    /// 0 for an IWAD, 1 for a PWAD; 1 when nothing is open.
    int WadType() const;
    /// Sets the identification; other values than 0 and 1 are ignored. The file is not changed.
    void WadType(int type);
    /// The path given to `OpenWad`; empty when nothing is open.
    const std::filesystem::path& WadFileName() const { return fileName_; }
    /// The last lump index as decimal text; "-1" when nothing is open or the WAD has no lumps.
    std::string WadLumps() const;
    int LumpCount() const { return static_cast<int>(directory_.size()); }
    /// Trimmed, without NULs.
    std::string lumpName(int lump) const;
    std::int32_t LumpSize(int lump) const;
    std::int32_t LumpOffset(int lump) const;
    /// The open file's length in bytes, 0 when nothing is open.
    std::int64_t WadSize() const;

    /// The first lump of that name, or -1. The name is trimmed and upper-cased, the names in the file are not.
    int NumForName(std::string_view name) const;
    /// The first lump between the sprite markers whose name is `sprite` (4 characters) and has `frame` (2 characters:
    /// frame letter and rotation) in places 5-6 or 7-8, or -1. Upper and lower case differ.
    int NumForSprite(std::string_view sprite, std::string_view frame) const;
    /// The names of the lumps between the sprite markers.
    std::vector<std::string> SpriteLumpNames() const;
    /// Collects the lumps of the first sprite section (between S_START or SS_START and S_END or SS_END).
    /// `OpenWad` calls it.
    void CreateSpriteIndex();

    static constexpr std::int64_t everything = std::numeric_limits<std::int64_t>::max();

    /// No WAD comes near so many lumps; a damaged count in a file of many gigabytes does, and would cost its memory.
    static constexpr std::int32_t largestDirectory = 1 << 20;

private:
    struct Entry { // as in the file
        std::int32_t offset = 0;
        std::int32_t size = 0;
        std::uint64_t name = 0; // trimmed, padded with blanks; the first character is the lowest byte
    };
    void CloseWad();
    const Entry* Find(int lump) const;
    /// The bytes of a lump and up to `more` bytes behind it, `most` in all, as far as the file goes.
    template <class Bytes> Bytes ReadEntry(int lump, std::int64_t most, int more) const;

    std::array<char, 4> identification_{'P', 'W', 'A', 'D'};
    std::filesystem::path fileName_;
    SystemFile file_;
    std::vector<Entry> directory_;
    std::vector<int> spriteIndex_; // ascending
};

} // namespace plinket3
