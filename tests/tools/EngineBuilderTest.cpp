#include "tools/EngineBuilder.h"

#include "patch/modTables.h"
#include "tests/support/TestSupport.h"
#include "tools/EngineFacts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sys/wait.h>

namespace plinket3::tools {
namespace {

const std::filesystem::path dataFolder = DATA_FOLDER;

/// An engine as the programs get it.
struct BuiltEngine {
    EngineConfiguration engine;
    PatchSet set;
};

BuiltEngine Load(const std::filesystem::path& output, const std::string& configuration) {
    BuiltEngine built;
    const Status loaded = modConfig::LoadEngine(output / "config" / (configuration + ".cfg"), built.engine);
    EXPECT_TRUE(loaded) << loaded.Reason();
    const Status parsed =
        modTables::ParseTable(test::ReadFile(output / "tables" / built.engine.table), built.engine, built.set);
    EXPECT_TRUE(parsed) << parsed.Reason();
    return built;
}

struct Expected {
    const char* configuration;
    std::int16_t version;
    bool extended;
    std::size_t things, states, sounds, sprites, strings, actions;
};
void PrintTo(const Expected& expected, std::ostream* stream) { *stream << expected.configuration; }

class EveryEngine : public ::testing::TestWithParam<Expected> {
protected:
    void SetUp() override {
        const Status status = BuildEngines(dataFolder, output_.Path());
        ASSERT_TRUE(status) << status.Reason();
        built_ = Load(output_.Path(), GetParam().configuration);
    }

    std::string ActionOf(std::size_t state) const {
        const std::string* mnemonic = built_.engine.MnemonicOf(built_.set.states.at(state).action);
        return mnemonic == nullptr ? "(none)" : *mnemonic;
    }

    test::TemporaryFolder output_;
    BuiltEngine built_;
};

INSTANTIATE_TEST_SUITE_P(Shipped, EveryEngine,
                         ::testing::Values(Expected{"doom19", 19, false, 137, 967, 109, 138, 1094, 75},
                                           Expected{"ultimate", 21, false, 137, 967, 109, 138, 1187, 75},
                                           Expected{"boom19", 19, true, 139, 968, 109, 139, 309, 75},
                                           Expected{"boom21", 21, true, 139, 968, 109, 139, 309, 75},
                                           Expected{"mbf19", 19, true, 144, 1076, 114, 144, 309, 88},
                                           Expected{"mbf21", 21, true, 144, 1076, 114, 144, 309, 88},
                                           Expected{"dehextra19", 19, true, 250, 4000, 700, 245, 309, 88},
                                           Expected{"dehextra21", 21, true, 250, 4000, 700, 245, 309, 88}),
                         [](const auto& info) { return std::string(info.param.configuration); });

TEST_P(EveryEngine, HasTheNumberOfRecordsThatItsConfigurationTells) {
    const Expected& expected = GetParam();
    const auto& [engine, set] = built_;
    EXPECT_EQ(engine.version, expected.version);
    EXPECT_EQ(engine.dialect.IsExtended(), expected.extended);
    const struct {
        const char* what;
        std::int32_t told;
        std::size_t loaded, named, expected;
    } counts[] = {
        {"things", engine.itemCounts.things, set.things.size(), engine.thingNames.size(), expected.things},
        {"states", engine.itemCounts.states, set.states.size(), set.states.size(), expected.states},
        {"sounds", engine.itemCounts.sounds, set.sounds.size(), set.sounds.size(), expected.sounds},
        {"sprites", engine.itemCounts.sprites, set.sprites.size(), set.sprites.size(), expected.sprites},
        {"strings", engine.itemCounts.strings, set.strings.size(),
         expected.extended ? engine.strings.size() : expected.strings, expected.strings},
        {"weapons", engine.itemCounts.weapons, set.weapons.size(), engine.weaponNames.size(), 9},
        {"ammunition", engine.itemCounts.ammunition, set.ammo.size(), engine.ammoNames.size(), 4},
        {"cheats", engine.itemCounts.cheats, set.cheats.size(), engine.cheatLengths.size(), 17},
    };
    for (const auto& count : counts) {
        EXPECT_EQ(count.told, static_cast<std::int32_t>(count.expected)) << count.what;
        EXPECT_EQ(count.loaded, count.expected) << count.what;
        EXPECT_EQ(count.named, count.expected) << count.what;
    }
    EXPECT_EQ(engine.actions.size(), expected.actions);
    EXPECT_EQ(engine.MnemonicCount(), expected.actions);
    EXPECT_EQ(engine.flagNames.size(), 32U);
    EXPECT_EQ(engine.flagTooltips.size(), 32U);
    EXPECT_EQ(engine.codePointerStates.size(), 448U);
}

TEST_P(EveryEngine, KeepsTheValuesOfTheGame) {
    const auto& [engine, set] = built_;
    const ThingRecord& imp = set.things.at(11);
    EXPECT_EQ(set.things.at(11).name, "Imp");
    EXPECT_EQ(engine.thingNames.at(2), "ShotgunGuy");
    EXPECT_EQ(imp.id, 3001);
    EXPECT_EQ(imp.hitPoints, 60);
    EXPECT_EQ(imp.speed, 8);
    EXPECT_EQ(imp.height, 56 * 65536);
    EXPECT_EQ(imp.respawnState, 470);
    EXPECT_EQ(ActionOf(174), "Look");
    EXPECT_EQ(set.states.at(174).codePointer, set.states.at(174).action);
    EXPECT_EQ(ActionOf(0), "NULL");
    EXPECT_EQ(set.states.at(0).action, 0);
    EXPECT_EQ(set.SpriteName(set.states.at(174).sprite), "POSS");
    EXPECT_EQ(set.weapons.at(7).name, "Chainsaw");
    EXPECT_EQ(set.weapons.at(7).ammoType, 5);
    EXPECT_EQ(set.weapons.at(2).firingState, 30);
    EXPECT_EQ(set.ammo.at(1), (AmmoRecord{{50, 4}, "Shells"}));
    EXPECT_EQ(set.cheats.at(1).text, "idchoppers");
    EXPECT_EQ(set.cheats.at(1).maximumLength, engine.cheatLengths.at(1));
    EXPECT_EQ(engine.cheatLengths.at(1), engine.dialect.IsExtended() ? 0 : 10);
    EXPECT_EQ(set.misc.initialBullets, 50);
    EXPECT_EQ(set.misc.secondMaxHealth, set.misc.maxHealth);
    EXPECT_EQ(set.misc.bfgCells, 40);
    EXPECT_EQ(set.misc.monstersInfight, monstersDoNotFight);
    EXPECT_EQ(engine.flagNames.at(2), "SHOOTABLE");
    EXPECT_EQ(engine.flagTooltips.at(2), "Shootable: Can be hit and damaged by attacks.");
    EXPECT_EQ(engine.codePointerStates.at(447), 811);
    const auto isArmorText = [](const StringRecord& string) {
        return string.text == "Picked up the armor." && string.length == 20;
    };
    EXPECT_TRUE(std::ranges::any_of(set.strings, isArmorText));
}

TEST_P(EveryEngine, FindsThePistolBehindTheSoundOfTheChaingun) {
    const auto& [engine, set] = built_;
    ASSERT_EQ(set.SoundName(86), "chgun");
    const SoundRecord& chaingun = set.sounds.at(86);
    EXPECT_EQ(chaingun.value, 64);
    EXPECT_EQ(chaingun.negOne1, 150);
    EXPECT_EQ(chaingun.negOne2, 0);
    const std::int32_t place = chaingun.zero1 - engine.offsets.sounds + engine.offsets.dataSegment;
    EXPECT_EQ(place % 36, 0);
    EXPECT_EQ(set.SoundName(place / 36), "pistol");
    EXPECT_EQ(set.sounds.at(1).zero1, 0);
}

// Also the lists that the configuration alone holds.
TEST_P(EveryEngine, ReadsBackAsTheTablesTellIt) {
    Fault fault;
    const auto sources = ReadEngineList(dataFolder / "engines", fault);
    const auto source = std::ranges::find(sources, GetParam().configuration, &EngineSource::configuration);
    ASSERT_NE(source, sources.end());
    const EngineFacts facts = ReadEngineFacts(dataFolder / "engines", *source, fault);
    ASSERT_FALSE(fault.Found()) << fault.Text();

    const EngineConfiguration &told = facts.engine, &read = built_.engine;
    EXPECT_EQ(read.name, source->name);
    EXPECT_EQ(read.thingNames, told.thingNames);
    EXPECT_EQ(read.weaponNames, told.weaponNames);
    EXPECT_EQ(read.ammoNames, told.ammoNames);
    EXPECT_EQ(read.flagNames, told.flagNames);
    EXPECT_EQ(read.flagTooltips, told.flagTooltips);
    EXPECT_EQ(read.cheatLengths, told.cheatLengths);
    EXPECT_EQ(read.codePointerStates, told.codePointerStates);
    ASSERT_EQ(read.actions.size(), told.actions.size());
    for (std::size_t i = 0; i < told.actions.size(); ++i) {
        EXPECT_EQ(read.actions[i].value, told.actions[i].value);
        EXPECT_EQ(read.actions[i].mnemonic, told.actions[i].mnemonic);
        EXPECT_EQ(read.actions[i].description, told.actions[i].description);
    }
    PatchSet defaults = facts.defaults;
    if (read.dialect.IsExtended()) { // the texts of the extended engines stand in the configuration
        ASSERT_EQ(read.strings.size(), told.strings.size());
        for (std::size_t i = 0; i < told.strings.size(); ++i) {
            EXPECT_EQ(read.strings[i].mnemonic, told.strings[i].mnemonic);
            EXPECT_EQ(read.strings[i].text, told.strings[i].text);
        }
        defaults.strings = built_.set.strings;
    }
    EXPECT_TRUE(built_.set == defaults);
}

TEST(ShippedEngines, DifferWhereTheGamesDo) {
    const test::TemporaryFolder output;
    ASSERT_TRUE(BuildEngines(dataFolder, output.Path()));
    const BuiltEngine doom = Load(output.Path(), "doom19"), boom = Load(output.Path(), "boom21"),
                      mbf = Load(output.Path(), "mbf19"), dehextra = Load(output.Path(), "dehextra19");
    EXPECT_EQ(doom.set.misc.maxHealth, 200);
    EXPECT_EQ(boom.set.misc.maxHealth, 100);
    EXPECT_EQ(doom.engine.flagNames.at(31), "UNUSED31");
    EXPECT_EQ(boom.engine.flagNames.at(31), "TRANSLUCENT");
    EXPECT_EQ(boom.set.states.at(36).subnumber, 0);
    EXPECT_EQ(mbf.set.states.at(36).subnumber, litBit);
    EXPECT_EQ(boom.engine.CodePointerOf("Detonate"), std::nullopt);
    EXPECT_EQ(mbf.engine.CodePointerOf("Detonate"), 75);
    EXPECT_EQ(dehextra.set.things.at(200).name, "Extra Thing 50");
    EXPECT_EQ(dehextra.set.SoundName(200), "");
    EXPECT_EQ(dehextra.set.SoundName(500), "fre000");
    EXPECT_EQ(doom.set.strings.at(1).text, "CODEC: Starting the \"busy\" test.\n");
    EXPECT_EQ(boom.set.strings.at(1).text, "CD-ROM Version: default.cfg from c:\\doomdata\n");
}

/// A copy of the fact tables that a test spoils.
class SpoiledData {
public:
    SpoiledData() {
        std::filesystem::copy(dataFolder / "engines", folder_ / "engines", std::filesystem::copy_options::recursive);
    }
    const std::filesystem::path& Path() const { return folder_.Path(); }
    std::filesystem::path Table(std::string_view table) const { return folder_ / "engines" / table; }

    /// Replaces the first `what` of a table; an empty `what` stands for the whole file.
    void Replace(std::string_view table, std::string_view what, std::string_view by) const {
        std::string bytes = test::ReadFile(Table(table));
        const std::size_t at = bytes.find(what);
        ASSERT_NE(at, std::string::npos) << what;
        bytes.replace(at, what.empty() ? bytes.size() : what.size(), by);
        test::WriteFile(Table(table), bytes);
    }

private:
    test::TemporaryFolder folder_;
};

struct Spoiled {
    const char* name;
    const char* table;
    const char* what;
    const char* by;
    const char* reported; // behind the table's path
};
void PrintTo(const Spoiled& spoiled, std::ostream* stream) { *stream << spoiled.name; }

class UnsoundTable : public ::testing::TestWithParam<Spoiled> {};

TEST_P(UnsoundTable, IsRefusedBeforeAnythingIsWritten) {
    const SpoiledData data;
    const test::TemporaryFolder output;
    data.Replace(GetParam().table, GetParam().what, GetParam().by);
    const Status built = BuildEngines(data.Path(), output / "out");
    EXPECT_FALSE(built);
    EXPECT_EQ(built.Reason(), data.Table(GetParam().table).string() + GetParam().reported);
    EXPECT_FALSE(std::filesystem::exists(output / "out"));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UnsoundTable,
    ::testing::Values(Spoiled{"NextStateBeyondTheStates", "doom19/states.tsv", "\t1\tLower\t3\t", "\t1\tLower\t967\t",
                              ":5: column \"Next frame\": 967 is not within 0 to 966"},
                      Spoiled{"SpriteBeyondTheSprites", "doom19/states.tsv", "\n1\tS_LIGHTDONE\t1\t",
                              "\n1\tS_LIGHTDONE\t138\t", ":3: column \"Sprite number\": 138 is not within 0 to 137"},
                      Spoiled{"UnknownRoutine", "doom19/states.tsv", "\tLower\t", "\tLover\t",
                              ":5: column \"action\": no routine is called \"Lover\""},
                      Spoiled{"SoundBeyondTheSounds", "boom/things.tsv", "\t174\t20\t176\t36\t",
                              "\t174\t20\t176\t109\t", ":3: column \"Alert sound\": 109 is not within 0 to 108"},
                      Spoiled{"ThingNameThatIsNoKey", "boom/things.tsv", "\tImp\t", "\tImp; fast\t",
                              ":13: column \"name\": \"Imp;fast\" is not made of letters, digits and underscores"},
                      Spoiled{"ThingNameTwice", "boom/things.tsv", "\tImp\t", "\tZombie man\t",
                              ":13: column \"name\": \"Zombieman\" stands in an earlier row, too"},
                      Spoiled{"LinkBeyondTheSounds", "mbf/sounds.tsv", "\tchgun\t0\t64\t1\t", "\tchgun\t0\t64\t114\t",
                              ":88: column \"link\": 114 is not within 0 to 113"},
                      Spoiled{"LongSoundName", "mbf/sounds.tsv", "\tpistol\t", "\tpistols\t",
                              ":3: column \"name\": \"pistols\" is not of 0 to 6 characters"},
                      Spoiled{"ShortSpriteName", "mbf/sprites.tsv", "\tSHTG", "\tSHT",
                              ":3: column \"name\": \"SHT\" is not of 4 to 4 characters"},
                      Spoiled{"UnknownAmmoType", "mbf/weapons.tsv", "\tFist\t5\t", "\tFist\t6\t",
                              ":2: column \"Ammo type\": 6 is not within 0 to 5"},
                      Spoiled{"ByteTooLarge", "mbf/misc.tsv", "byte\t40", "byte\t256",
                              ":20: column \"value\": 256 is not within 0 to 255"},
                      Spoiled{"MiscValuesInAnotherOrder", "mbf/misc.tsv", "Max Armor", "Maximum Armor",
                              ":6: column \"field\": should be \"Max Armor\""},
                      Spoiled{"OtherCheat", "doom19/cheats.tsv", "\tGod mode\t", "\tGoat mode\t",
                              ":4: column \"label\": should be \"God mode\""},
                      Spoiled{"CheatMissing", "doom19/cheats.tsv", "16\tMap cheat\tiddt\t4\n", "",
                              ": has 16 rows instead of 17"},
                      Spoiled{"FlagMissing", "ultimate/flags.tsv",
                              "31\tUNUSED31\tUnused bit 31\tThe original game gives this bit no meaning.\n", "",
                              ": has 31 rows instead of 32"},
                      Spoiled{"WrongTextLength", "ultimate/texts.tsv", "\t33\tother\n", "\t32\tother\n",
                              ":2: column \"length\": the text has 33 characters"},
                      Spoiled{"PointerToNoState", "doom19/pointers.tsv", "\n447\t811\n", "\n447\t967\n",
                              ":449: column \"state\": 967 is not within 0 to 966"},
                      Spoiled{"TwoPointersOfAState", "doom19/pointers.tsv", "\n1\t2\n", "\n1\t1\n",
                              ":3: column \"state\": \"1\" stands in an earlier row, too"},
                      Spoiled{"RoutineTwice", "mbf/actions.tsv", "\tWeaponReady\t", "\tLight0\t",
                              ":4: column \"mnemonic\": \"Light0\" stands in an earlier row, too"},
                      Spoiled{"StringThatDoesNotComeBack", "boom/strings.tsv", "c:\\\\doomdata", "c:\\\\new",
                              ":3: column \"text\": would come back changed from a patch"},
                      Spoiled{"ColumnMissing", "doom19/things.tsv", "\tHit points\t", "\tHealth\t",
                              ":1: column \"Hit points\": is missing"},
                      Spoiled{"UnknownMode", "engines.tsv", "\textended\t", "\tlarge\t",
                              ":4: column \"mode\": is neither \"normal\" nor \"extended\""},
                      Spoiled{"FolderElsewhere", "engines.tsv", "\tboom\t", "\t../boom\t",
                              ":4: column \"folder\": \"../boom\" is not made of letters, digits and underscores"},
                      Spoiled{"VersionTooLarge", "engines.tsv", "\t21\t", "\t32768\t",
                              ":3: column \"version\": 32768 is not within 0 to 32767"}),
    [](const auto& info) { return info.param.name; });

/// The exit status of a shell command.
int ExitStatus(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(BuildEnginesProgram, SaysInOneLineWhyItStops) {
    const SpoiledData data;
    data.Replace("dehextra/ammo.tsv", "", "index\n");
    const test::TemporaryFolder output;
    const std::filesystem::path errors = output / "errors";
    const std::string command = std::string(BUILD_ENGINES) + " " + data.Path().string();
    EXPECT_EQ(ExitStatus(command + " " + (output / "out").string() + " 2>" + errors.string()), 2);
    EXPECT_EQ(test::ReadFile(errors), data.Table("dehextra/ammo.tsv").string() + ": has no rows\n");
    EXPECT_EQ(ExitStatus(command + " 2>" + errors.string()), 2);
    EXPECT_EQ(test::ReadFile(errors), "usage: build_engines DATA_DIR OUT_DIR\n");
}

TEST(BuildEnginesProgram, SaysWhatItCannotWrite) {
    const test::TemporaryFolder output;
    test::WriteFile(output / "config", "a file in the place of the folder");
    const Status built = BuildEngines(dataFolder, output.Path());
    EXPECT_FALSE(built);
    EXPECT_TRUE(built.Reason().starts_with((output / "config" / "boom19.cfg").string() + ": cannot be written: "))
        << built.Reason();
}

} // namespace
} // namespace plinket3::tools
