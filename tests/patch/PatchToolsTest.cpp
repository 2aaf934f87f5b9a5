#include "patch/SessionChoice.h"
#include "patch/StateUse.h"
#include "tests/support/SmallEngine.h"

#include "tests/support/TestSupport.h"
#include "tests/support/TextCases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace plinket3::test {
namespace {

using Lines = std::vector<std::string>;
using States = std::vector<std::int32_t>;

TEST(StateUse, FollowsARecordsStatesAndPassesOverNumbersThatAreNone) {
    const EngineConfiguration engine = SmallEngine(false);
    PatchSet set = SmallDefaults(engine);
    const States next{0, 4, 1, 3, 2, 99};
    for (std::size_t state = 0; state < next.size(); ++state)
        set.states[state].nextState = next[state];
    set.things[1].initialState = 2; // 2 -> 1 -> 4 -> 2
    set.things[2].deathState = -1;
    set.things[2].respawnState = 5; // -> 99
    set.weapons[1] = {{3, 3, 3, 3, 3, 3}, {}};
    EXPECT_EQ(StatesOfThing(set, engine, 1), (States{0, 1, 2, 4}));
    EXPECT_EQ(StatesOfThing(set, engine, 2), (States{0, 5}));
    EXPECT_EQ(StatesOfWeapon(set, engine, 0), States{0}); // its ammo type names no state
    EXPECT_EQ(StatesOfWeapon(set, engine, 1), States{3});
    EXPECT_EQ(StatesOfThing(set, engine, 3), States());
    EXPECT_EQ(StatesOfWeapon(set, engine, 2), States());
}

TEST(StateUse, NamesTheUsersOfAStateButNotOfTheOneThatStandsForNone) {
    const EngineConfiguration engine = SmallEngine(false);
    PatchSet set = SmallDefaults(engine);
    set.things[2].injuryState = set.things[2].deathState = set.weapons[1].firingState = 3;
    EXPECT_EQ(UsersOfState(set, engine, 3), (Lines{"Imp (injury, death)", "Pistol (firing)"}));
    EXPECT_EQ(UsersOfState(set, engine, 0), Lines()) << "which every record here names";
}

TEST(StateUse, CountsAStateAsUsedThatOnlyAnUnusedOneLeadsTo) {
    const EngineConfiguration engine = SmallEngine(false);
    PatchSet set = SmallDefaults(engine);
    set.states[4].nextState = 3;
    set.weapons[0].firingState = 1;
    EXPECT_EQ(UnusedStates(set, engine), (States{2, 4, 5}));
}

TEST(SessionChoice, PrefersFileNamesToEngineNames) {
    const std::vector<modConfig::EngineEntry> engines{
        {"/c/a.cfg", "Doom", 19, false}, {"/c/b.cfg", "a.cfg", 21, true}, {"/c/c.cfg", "Doom", 21, true}};
    EXPECT_EQ(ChooseEngine(engines, "a.cfg"), 0U);
    EXPECT_EQ(ChooseEngine(engines, "c.cfg"), 2U);
    EXPECT_EQ(ChooseEngine(engines, "Doom"), 0U);
    EXPECT_FALSE(ChooseEngine(engines, "A.cfg") || ChooseEngine(engines, "/c/a.cfg") || ChooseEngine(engines, ""));
    EXPECT_EQ(FirstEngineOfVersion(engines, 21), 1U);
    EXPECT_FALSE(FirstEngineOfVersion(engines, 16));
}

/// advice.txt: behind "$" the name of a patch, the engine used last behind "after", and by which rules if not as is
/// recommended; then the lines of the patch behind its first two, and behind "=" the engine that is proposed, and why.
TEST(SessionChoice, ProposesAnEngineByWhatThePatchHoldsAndSaysWhy) {
    ExpectingNotifier notifier;
    Environment environment(notifier);
    environment.programFolder = DATA_FOLDER;
    environment.engines = modConfig::EnumerateEngines(environment.programFolder / "config", [](std::string_view) {});
    const std::string expected = ReadFile(std::filesystem::path(CASES_FOLDER) / "advice.txt");
    const std::string told = Retold(expected, [&environment](const std::string& asked, const std::string& lines) {
        const std::string bytes = "Patch File for DeHackEd v3.0\nPatch format = 6\n" + lines;
        std::istringstream words(asked);
        std::string name, word, last;
        RulesSetting rules = RulesSetting::Recommend;
        for (words >> name; words >> word;)
            if (word == "after")
                words >> last;
            else if (word == "kept" || word == "engine")
                rules = word == "kept" ? RulesSetting::Kept : RulesSetting::Engine;
        const auto& engines = environment.engines;
        const auto nameOf = [](const auto& entry) { return entry.file.stem().string(); };
        const auto place = static_cast<std::size_t>(std::ranges::find(engines, last, nameOf) - engines.begin());
        modPatchFiles::Header header;
        EXPECT_TRUE(modPatchFiles::ScanHeader(std::string_view(bytes), header));
        const EngineAdvice advice = AdviseEngine(environment, header, bytes, name, place, rules);
        return advice.index ? "= " + nameOf(engines[*advice.index]) + ": " + advice.reason + "\n" : "= none\n";
    });
    EXPECT_EQ(told, expected);
    const modPatchFiles::Header old{{"engineversion", "16"}};
    EXPECT_FALSE(RecommendEngine(environment, old, "", "x.deh", std::nullopt, RulesSetting::Kept).index);
    EXPECT_TRUE(RecommendEngine(environment, old, "", "x.deh", std::nullopt, RulesSetting::Recommend).index);
}

TEST(SessionChoice, FindsAnIwadByNameThenPathThenFileName) {
    const std::vector<Settings::Iwad> iwads{
        {"Doom II", "/old/DOOM2.WAD"}, {"/old/doom2.wad", "/x/plutonia.wad"}, {"TNT", "C:\\doom\\tnt.wad"}, {"", ""}};
    EXPECT_EQ(ChooseIwad(iwads, "doom ii"), 0U);
    EXPECT_EQ(ChooseIwad(iwads, "/OLD/doom2.wad"), 1U);
    EXPECT_EQ(ChooseIwad(iwads, "/new/doom2.wad"), 0U);
    EXPECT_EQ(ChooseIwad(iwads, "D:\\games\\TNT.WAD"), 2U);
    EXPECT_FALSE(ChooseIwad(iwads, "/new/other.wad"));
    EXPECT_EQ(ChooseIwad(iwads, ""), 3U); // an entry without a name, not just any file name
}

} // namespace
} // namespace plinket3::test
