#include "core/Paths.h"
#include "tests/support/TestSupport.h"
#include "wad/IwadFolders.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace plinket3 {
namespace {

TEST(IwadFoldersTest, LookWhereThePortsAndTheShopsKeepThem) {
    const test::TemporaryFolder folder;
    const auto make = [&folder](const char* below) {
        std::filesystem::create_directories(folder / below);
        return folder / below;
    };
    std::string library = PathText(folder / "D\\rive");
    for (std::size_t at = 0; (at = library.find('\\', at)) != std::string::npos; at += 2)
        library.insert(at, 1, '\\');
    make("steam/steamapps");
    test::WriteFile(folder / "steam/steamapps/libraryfolders.vdf",
                    "\"libraryfolders\"\n{\n\t\"0\"\n\t{\n\t\t\"path\"\t\t\"" + library +
                        "\"\n\t\t\"label\"\t\t\"\"\n\t}\n\t\"1\"\n\t{\n\t\t\"path\"\t\t\"/nowhere\"\n\t}\n}\n\"path\"");
    const std::vector<std::filesystem::path> expected{
        "/first",
        "/second",
        "/third",
        "/own",
        make("gog/game"),
        make("gog/game/base"),
        make("gog/game/TNT"),
        make("shop/Doom 2"),
        make("shop/Doom 2/rerelease"),
        make("shop/Doom 3"),
        make("shop/Doom 3/base"),
        make("shop/Doom 3/base/wads"),
        make("steam/steamapps/common/Ultimate Doom"),
        make("steam/steamapps/common/Ultimate Doom/base"),
        make("D\\rive/steamapps/common/Doom 2"),
        make("D\\rive/steamapps/common/Doom 2/base"),
        make("D\\rive/steamapps/common/Doom 2/finaldoombase"),
    };
    GamePlaces places;
    places.folders = {"/own", "/first", ""};
    places.steam = {folder / "steam", folder / "no steam"};
    places.shops = {folder / "shop", folder / "no shop"};
    places.games = {folder / "gog/game", folder / "no game"};
    const std::string list = std::string("/second") + folderListSeparator + folderListSeparator + "/third";
    EXPECT_EQ(IwadFolders(places, "/first", list), expected);
    EXPECT_EQ(IwadFolders({}, "", ""), std::vector<std::filesystem::path>());
}

} // namespace
} // namespace plinket3
