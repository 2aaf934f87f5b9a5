#pragma once

#include "core/BytePieces.h"
#include "core/Paths.h"
#include "core/Status.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace plinket3 {

class WadEdit;

/// The lump in which games look for a patch.
inline constexpr std::string_view patchLump = "DEHACKED";

/// Where a patch stands: in a file of its own, or as a lump in a WAD.
struct PatchPlace {
    PatchPlace() = default;
    PatchPlace(std::filesystem::path fileToUse, std::string lumpToUse = {}) // NOLINT: a file is a place
        : file(std::move(fileToUse)), lump(std::move(lumpToUse)) {}

    std::filesystem::path file;
    /// Empty for a file of its own; else the lump's name in any letter case. Of several of that name "NAME#2" is the
    /// second one, counted from 1; the name alone is the last one.
    std::string lump;

    bool operator==(const PatchPlace&) const = default;
    /// The file, and behind a colon the lump, as messages name it.
    std::string Name() const { return lump.empty() ? PathText(file) : PathText(file) + ":" + lump; }
};

/// Whether a regular file begins as IWADs and PWADs do.
bool IsWad(const std::filesystem::path& file);

/// Fails, with the reason, for an IWAD and for a WAD that cannot be rewritten safely.
Status IsWritableWad(const std::filesystem::path& file);

struct PatchLump {
    std::string lump;      // as in a place: the name, with "#" and a number when there are several
    int index = 0;         // in the WAD's directory
    std::int32_t size = 0; // in bytes, as the directory tells
};

/// The lumps of a WAD with that name, in the order in which games read them; none for what is no WAD.
std::vector<PatchLump> FindPatchLumps(const std::filesystem::path& wad, std::string_view name = patchLump);

/// Reads the bytes of a patch. Fails as `ReadWholeFile` does, and for a WAD without that lump or with one that does not
/// lie in it whole. The reason does not name the place.
Status ReadPlace(const PatchPlace& place, std::string& bytes);

enum class MissingLump { Fails, IsAdded };

/// Writes the bytes of a patch in one step, after a copy of an existing file to its name + ".bak" when `createBackup`.
/// Of a WAD all else stays as it is (`WadEdit`); with `IsAdded` it gets the lump that it lacks, as its last one. After
/// a failure the old file is as it was. Fails for IWADs and for WADs that cannot be rewritten safely; the reason does
/// not name the place.
Status WritePlace(const PatchPlace& place, const BytePieces& bytes, bool createBackup,
                  MissingLump missing = MissingLump::Fails);

/// Opens the WAD of a place that has a lump, with `bytes` in that lump, as `WritePlace` would write it.
Status EditPlace(const PatchPlace& place, std::string_view bytes, MissingLump missing, WadEdit& wad);

} // namespace plinket3
