#include "wad/Levels.h"

#include "core/Numbers.h"
#include "core/Text.h"

#include <optional>

namespace plinket3 {

namespace {

/// The numbers in a level's name; none for another name.
std::vector<int> NumbersOf(std::string_view name) {
    constexpr std::string_view map = "MAP";
    const std::string level = ToUpper(name);
    if (level.starts_with(map) && level.size() == map.size() + 2) {
        const std::optional<int> number = WholeNumber<int>(std::string_view(level).substr(map.size()));
        return number && *number >= 0 ? std::vector{*number} : std::vector<int>();
    }
    const auto digit = [&level](std::size_t at) { return level[at] >= '0' && level[at] <= '9'; };
    if (level.size() == 4 && level[0] == 'E' && digit(1) && level[2] == 'M' && digit(3))
        return {level[1] - '0', level[3] - '0'};
    return {};
}

} // namespace

std::vector<std::string> LevelNames(const clsWad& wad) {
    std::vector<std::string> names;
    for (int lump = 0; lump < wad.LumpCount(); ++lump)
        if (std::string name = wad.lumpName(lump); !NumbersOf(name).empty())
            names.push_back(std::move(name));
    return names;
}

std::vector<std::string> WarpWords(std::string_view level) {
    std::vector<std::string> words;
    for (const int number : NumbersOf(level))
        words.push_back(std::to_string(number));
    if (words.empty() && !level.empty())
        words.emplace_back(level);
    return words;
}

} // namespace plinket3
