#include "wad/IwadFacts.h"

#include "core/Files.h"
#include "core/modConfig.h"
#include "wad/Levels.h"
#include "wad/clsWad.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace plinket3 {

namespace {

constexpr std::int64_t megabyte = 1'000'000;

std::string LevelsText(const clsWad& wad) {
    const std::vector<std::string> levels = LevelNames(wad);
    if (levels.empty())
        return "no levels";
    const auto [first, last] = std::ranges::minmax_element(levels);
    return *first == *last ? *first : *first + "-" + *last;
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
