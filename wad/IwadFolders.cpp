#include "wad/IwadFolders.h"

#include "core/Files.h"
#include "core/Paths.h"

#include <algorithm>
#include <string>

namespace plinket3 {

namespace {

/// Below the folder of a game: as Doom, Doom II, Final Doom, their later editions and Doom 3 BFG are sold.
constexpr const char* foldersOfGames[]{
    "",          "base", "base/wads", "base/doom2", "base/tnt", "base/plutonia", "finaldoombase",
    "rerelease", "TNT",  "Plutonia",  "doom2",      "tnt",      "plutonia",      "Content/base"};

/// The folders of libraries that Steam's list of them names, as `"path"  "D:\\Games"`.
std::vector<std::filesystem::path> SteamLibraries(const std::filesystem::path& steam) {
    constexpr std::uint64_t longestList = 1'000'000;
    constexpr std::string_view key = "\"path\"";
    std::vector<std::filesystem::path> libraries{steam};
    std::string list;
    if (!ReadWholeFile(steam / "steamapps" / "libraryfolders.vdf", list, longestList))
        return libraries;
    for (std::size_t at = list.find(key); at != std::string::npos; at = list.find(key, at)) {
        at = list.find('"', at + key.size());
        if (at == std::string::npos)
            break;
        std::string folder;
        for (++at; at < list.size() && list[at] != '"' && list[at] != '\n'; ++at)
            folder += list[at] == '\\' && at + 1 < list.size() ? list[++at] : list[at];
        libraries.push_back(PathOf(folder));
    }
    return libraries;
}

} // namespace

std::vector<std::filesystem::path> IwadFolders(const GamePlaces& places, std::string_view wadDir,
                                               std::string_view wadPath) {
    std::vector<std::filesystem::path> folders;
    const auto add = [&folders](const std::filesystem::path& folder) {
        if (!folder.empty() && std::ranges::find(folders, folder) == folders.end())
            folders.push_back(folder);
    };
    add(PathOf(wadDir));
    for (std::size_t at = 0; at <= wadPath.size();) {
        const std::size_t end = std::min(wadPath.find(folderListSeparator, at), wadPath.size());
        add(PathOf(wadPath.substr(at, end - at)));
        at = end + 1;
    }
    std::ranges::for_each(places.folders, add);

    std::vector<std::filesystem::path> shops = places.shops;
    for (const std::filesystem::path& steam : places.steam)
        for (const std::filesystem::path& library : SteamLibraries(steam))
            shops.push_back(library / "steamapps" / "common");
    std::vector<std::filesystem::path> games = places.games;
    for (const std::filesystem::path& shop : shops)
        std::ranges::move(FoldersIn(shop), std::back_inserter(games));
    for (const std::filesystem::path& game : games) {
        std::vector<std::filesystem::path> own; // where a small letter and its capital are alike, one has several names
        for (const char* const below : foldersOfGames) {
            const std::filesystem::path folder = *below == '\0' ? game : game / below;
            std::error_code ignored;
            if (std::filesystem::is_directory(folder, ignored) && !NamesOneOf(folder, own))
                own.push_back(folder);
        }
        std::ranges::for_each(own, add);
    }
    return folders;
}

std::vector<std::filesystem::path> UsualIwadFolders() {
    return IwadFolders(UsualGamePlaces(), EnvironmentText("DOOMWADDIR"), EnvironmentText("DOOMWADPATH"));
}

} // namespace plinket3
