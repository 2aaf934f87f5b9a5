#include "wad/IwadFacts.h"

#include "core/Files.h"
#include "core/modConfig.h"
#include "wad/clsWad.h"

#include <cstdint>
#include <set>

namespace plinket3 {

namespace {

constexpr std::int64_t megabyte = 1'000'000;

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

/// Whether a lump of that name begins a level: MAP01, E1M1.
bool IsLevel(const std::string& name) {
    if (name.size() == 5 && name.starts_with("MAP"))
        return IsDigit(name[3]) && IsDigit(name[4]);
    return name.size() == 4 && name[0] == 'E' && IsDigit(name[1]) && name[2] == 'M' && IsDigit(name[3]);
}

std::string LevelsText(const clsWad& wad) {
    std::set<std::string> levels;
    for (int lump = 0; lump < wad.LumpCount(); ++lump)
        if (std::string name = wad.lumpName(lump); IsLevel(name))
            levels.insert(std::move(name));
    return levels.empty()       ? "no levels"
           : levels.size() == 1 ? *levels.begin()
                                : *levels.begin() + "-" + *levels.rbegin();
}

std::string SizeText(std::int64_t bytes) {
    const std::int64_t tenths = (bytes * 10 + megabyte / 2) / megabyte;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
}

} // namespace

std::string IwadFacts(const clsConfiguration& iwadDetect, const std::filesystem::path& file) {
    if (!FileExists(file))
        return "The file does not exist.";
    clsWad wad;
    wad.OpenWad(file);
    if (wad.WadFileName().empty())
        return "The file is no WAD.";
    if (wad.WadType() != 0)
        return "The file is no IWAD but a WAD that is added to one.";
    const std::string name = modConfig::DetectIwadName(iwadDetect, file);
    return (name.empty() ? "" : name + ", ") + SizeText(wad.WadSize()) + ", " + LevelsText(wad);
}

} // namespace plinket3
