#include "wad/IwadFacts.h"

#include "core/modConfig.h"
#include "tests/support/TestSupport.h"
#include "tests/wad/WadBytes.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

TEST(IwadFacts, TellGameSizeAndLevelsOrWhatTheFileIsNot) {
    const TemporaryFolder folder;
    WriteFile(folder / "names.cfg", "type = \"Plinket3 IWAD detect configuration file\";\ngame = \"The Game\";\n");
    clsConfiguration names;
    ASSERT_TRUE(modConfig::LoadIwadDetect(folder / "names.cfg", names));
    const Lump large{"STUFF", std::string(1'250'000, 'x')};
    const struct {
        const char* file;
        std::string bytes;
        const char* facts;
    } cases[]{
        {"Game.wad", WadBytes({{"MAP02", ""}, large, {"MAP01", ""}, {"MAP1X", ""}}, "IWAD"),
         "The Game, 1.3 MB, MAP01-MAP02"},
        {"other.wad", WadBytes({{"E1M1", ""}, {"E1M10", ""}, {"E4M9", ""}, {"E2M3", ""}}, "IWAD"), "0.0 MB, E1M1-E4M9"},
        {"one.wad", WadBytes({{"E1M1", ""}}, "IWAD"), "0.0 MB, E1M1"},
        {"none.wad", WadBytes({}, "IWAD"), "0.0 MB, no levels"},
        {"game.pk3", WadBytes({{"MAP01", ""}}, "PWAD"), "The file is no IWAD but a WAD that is added to one."},
        {"text.wad", "Hello, world", "The file is no WAD."},
        {"empty.wad", "", "The file is no WAD."},
    };
    for (const auto& row : cases) {
        WriteFile(folder / row.file, row.bytes);
        EXPECT_EQ(IwadFacts(names, folder / row.file), row.facts) << row.file;
    }
    EXPECT_EQ(IwadFacts(names, folder / "nowhere.wad"), "The file does not exist.");
}

} // namespace
} // namespace plinket3::test
