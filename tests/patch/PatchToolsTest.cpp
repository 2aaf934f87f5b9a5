#include "patch/SessionChoice.h"
#include "patch/StateUse.h"
#include "tests/support/SmallEngine.h"

#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>

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

TEST(SessionChoice, RecommendsAnEngineByWhatThePatchHolds) {
    ExpectingNotifier notifier;
    Environment environment(notifier);
    environment.programFolder = DATA_FOLDER;
    environment.engines = modConfig::EnumerateEngines(environment.programFolder / "config", [](std::string_view) {});
    const auto place = [&environment](std::string_view name) {
        const auto& engines = environment.engines;
        return static_cast<std::size_t>(
            std::ranges::find(engines, name, [](const auto& entry) { return entry.file.stem(); }) - engines.begin());
    };
    const struct {
        std::string lines; // behind the first one
        const char* file;
        std::string_view expected, preferred = {};
    } rows[]{
        {"Doom version = 19\nThing 1\nMass = 5\n", "x.deh", "doom19"},
        {"Doom version = 19\nThing 1\nMass = 5\n", "x.BEX", "boom19"},
        {"Doom version = 21\nThing 1\nMass = 5\n", "x", "ultimate"},
        {"Doom version = 21\nThing 1\nMass = 5\n", "x.bex", "boom21"},
        {"Doom version = 19\nText 4 4\nTROOABCD\n", "x.bex", "doom19"},
        {"Doom version = 19\nText 4 4\nnone1234\n", "x.deh", "doom19"}, // no engine reads it
        {"Doom version = 19\n[STRINGS]\nGOTARMOR = a\n", "x.deh", "boom19"},
        {"Doom version = 19\n[PARS]\npar 1 30\n", "x", "boom19"},
        {"Doom version = 19\nThing 1\nBits = SOLID\n", "x.deh", "boom19"},
        {"Doom version = 21\n[CODEPTR]\nFrame 5 = Mushroom\n", "x.deh", "mbf203"},
        {"Doom version = 19\nFrame 2000\nDuration = 5\n", "x.deh", "dehextra19"},
        {"Doom version = 19\nThing 1\nInitial frame = 2000\n", "x.bex", "dehextra19", "mbf19"},
        {"Doom version = 19\n[STRINGS]\nGOTARMOR = a\n", "x.deh", "mbf19", "mbf19"},
        {"Doom version = 19\nThing 1\nMass = 5\n", "x.deh", "doom19", "mbf19"},
        {"Doom version = 19\nEngine config = mbf21.cfg\nText 4 4\nTROOABCD\n", "x.deh", "mbf21"},
        {"Doom version = 21\nThing 2\nMBF21 Bits = RIP\n", "x.deh", "mbf21"},
        {"Doom version = 21\nFrame 2\nArgs8 = 0\n", "x.bex", "mbf21", "boom21"},
        {"Doom version = 19\n[CODEPTR]\nFrame 5 = weaponalert\n", "x.deh", "mbf21"},
        {"Doom version = 21\nWeapon 2\nAmmo per shot = 2\nText 4 4\nnone1234\n", "x.deh", "mbf21"},
        {"Doom version = 2021\nThing 2\nSplash group = 2\n", "x.deh", "dsdhacked"},
        {"Doom version = 2021\nThing 2\nMass = 2\nText 4 4\nnone1234\n", "x.deh", "dsdhacked"},
        {"Doom version = 21\nThing 2\nRip sound = 2\n\nFrame 4000\nDuration = 2\n", "x.deh", "dsdhacked"},
        {"Doom version = 19\nThing 900\nMass = 5\n", "x.deh", "dsdhacked"},
        {"Doom version = 19\n[SPRITES]\n245 = BOSX\n", "x.bex", "dsdhacked"},
        {"Doom version = 19\nThing 2\nSplash group = 2\n", "x.deh", "mbf21", "dsdhacked"}, // without need
        {"Doom version = 21\nThing 2\nDropped item = 2\n", "x.deh", "dehextra21", "ultimate"},
        {"Doom version = 19\nThing 2\nDropped item = 2\n", "x.deh", "dehextra19"},
        {"Doom version = 21\nThing 2\nNone = 2\n", "x.deh", "ultimate"}, // what no engine has is no reason
        {"Doom version = 19\nEngine config = none.cfg\nText 4 4\nTROOABCD\n", "x.deh", "doom19"},
    };
    for (const auto& row : rows) {
        const std::string bytes = "Patch File for DeHackEd v3.0\nPatch format = 6\n" + row.lines;
        modPatchFiles::Header header;
        ASSERT_TRUE(modPatchFiles::ScanHeader(std::string_view(bytes), header));
        const auto engine =
            AdviseEngine(environment, header, bytes, row.file, place(row.preferred), RulesSetting::Recommend).index;
        ASSERT_TRUE(engine) << row.lines;
        EXPECT_EQ(environment.engines[*engine].file.stem(), row.expected) << row.file << "\n" << row.lines;
    }
    const modPatchFiles::Header old{{"engineversion", "16"}};
    EXPECT_FALSE(AdviseEngine(environment, old, "", "x.deh", std::nullopt, RulesSetting::Recommend).index);
    EXPECT_FALSE(RecommendEngine(environment, old, "", "x.deh", std::nullopt, RulesSetting::Kept).index);
    EXPECT_TRUE(RecommendEngine(environment, old, "", "x.deh", std::nullopt, RulesSetting::Recommend).index);
}

TEST(SessionChoice, SaysWhyAnEngineIsProposed) {
    ExpectingNotifier notifier;
    Environment environment(notifier);
    environment.programFolder = DATA_FOLDER;
    environment.engines = modConfig::EnumerateEngines(environment.programFolder / "config", [](std::string_view) {});
    const auto advise = [&](const modPatchFiles::Header& header, const std::string& lines, RulesSetting rules) {
        const std::string bytes = "Patch File for DeHackEd v3.0\nDoom version = 21\nPatch format = 6\n" + lines;
        const EngineAdvice advice = AdviseEngine(environment, header, bytes, "x.deh", std::nullopt, rules);
        return environment.engines[advice.index.value()].file.stem().string() + ": " + advice.reason;
    };
    const std::string modern = "Thing 2\nMBF21 Bits = 1\nMBF21 Bits = 2\nRip sound = 2\n\n"
                               "Frame 5\nArgs1 = 3\n\n[CODEPTR]\nFrame 5 = SPAWNOBJECT\n";
    const modPatchFiles::Header version{{"engineversion", "21"}};
    EXPECT_EQ(advise(version, modern, RulesSetting::Recommend),
              "mbf21: it sets MBF21 Bits, Rip sound, Args1 and others");
    EXPECT_EQ(advise(version, "[CODEPTR]\nFrame 5 = SPAWNOBJECT\n", RulesSetting::Engine),
              "mbf21: it sets SpawnObject");
    EXPECT_EQ(advise(version, modern + "\nFrame 4000\n\nThing 251\n\nFrame 4000\nArgs1 = 4\n", RulesSetting::Recommend),
              "dsdhacked: it has frame 4000, thing 251");
    EXPECT_EQ(advise(version, modern + "\nFrame 4000\nTranmap = X\nNext frame = 2\n\nThing 2\nID24 Bits = 1\n",
                     RulesSetting::Recommend),
              "id24: it sets Tranmap, ID24 Bits");
    EXPECT_EQ(advise(version, "Thing -1879048191\nMass = 2\n", RulesSetting::Recommend),
              "id24: it has thing -1879048191");
    EXPECT_EQ(advise({{"engineversion", "2024"}}, modern, RulesSetting::Recommend),
              "id24: it is the only one of Doom version 2024");
    EXPECT_EQ(advise({{"engineversion", "2021"}}, "Thing 2\n", RulesSetting::Recommend),
              "dsdhacked: it is the only one of Doom version 2021");
    EXPECT_EQ(advise(version, modern, RulesSetting::Kept), "boom21: it has a use for the most lines of the patch");
    EXPECT_EQ(advise({{"engineconfig", "doom19.cfg"}}, modern, RulesSetting::Recommend), "doom19: the patch names it");
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
