#include "tools/EngineBuilder.h"

#include "patch/modTables.h"
#include "tests/support/TestSupport.h"
#include "tools/EngineFacts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>

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
    std::array<std::size_t, 6> counts; // things, states, sounds, sprites, strings, actions
};
void PrintTo(const Expected& expected, std::ostream* stream) { *stream << expected.configuration; }

class EveryEngine : public ::testing::TestWithParam<Expected> {
protected:
    void SetUp() override {
        const Status status = BuildEngines(dataFolder, output_.Path());
        ASSERT_TRUE(status) << status.Reason();
        built_ = Load(output_.Path(), GetParam().configuration);
    }

    test::TemporaryFolder output_;
    BuiltEngine built_;
};

INSTANTIATE_TEST_SUITE_P(Shipped, EveryEngine,
                         ::testing::Values(Expected{"doom19", 19, false, {137, 967, 109, 138, 1094, 75}},
                                           Expected{"ultimate", 21, false, {137, 967, 109, 138, 1187, 75}},
                                           Expected{"boom19", 19, true, {139, 968, 109, 139, 309, 75}},
                                           Expected{"boom21", 21, true, {139, 968, 109, 139, 309, 75}},
                                           Expected{"mbf19", 19, true, {144, 1076, 114, 144, 309, 88}},
                                           Expected{"mbf203", 21, true, {144, 1076, 114, 144, 309, 88}},
                                           Expected{"mbf21", 21, true, {250, 4000, 700, 245, 309, 116}},
                                           Expected{"dsdhacked", 2021, true, {250, 4000, 700, 245, 309, 116}},
                                           Expected{"id24", 2024, true, {250, 4000, 700, 245, 327, 116}},
                                           Expected{"dehextra19", 19, true, {250, 4000, 700, 245, 309, 88}},
                                           Expected{"dehextra21", 21, true, {250, 4000, 700, 245, 309, 88}}),
                         [](const auto& info) { return std::string(info.param.configuration); });

TEST_P(EveryEngine, HasTheNumberOfRecordsThatItsConfigurationTells) {
    const auto& [engine, set] = built_;
    EXPECT_EQ(engine.version, GetParam().version);
    EXPECT_EQ(engine.dialect.IsExtended(), GetParam().extended);
    const auto& told = engine.itemCounts;
    const std::array loaded{set.things.DenseSize(),  set.states.DenseSize(),  set.sounds.DenseSize(),
                            set.sprites.DenseSize(), set.strings.DenseSize(), engine.actions.size()};
    EXPECT_EQ(loaded, GetParam().counts);
    EXPECT_EQ((std::vector{told.things, told.states, told.sounds, told.sprites, told.strings}),
              std::vector<std::int32_t>(loaded.begin(), loaded.end() - 1));
    EXPECT_EQ((std::vector{told.weapons, told.ammunition, told.cheats}), (std::vector{9, 4, 17}));
    EXPECT_EQ(engine.codePointerStates.size(), 448U);
}

// One value of each table, in the place where the game has it.
TEST_P(EveryEngine, KeepsTheValuesOfTheGame) {
    const auto& [engine, set] = built_;
    EXPECT_EQ(set.things[11].name, "Imp");
    EXPECT_EQ(set.things[11].height, 56 * 65536);
    EXPECT_EQ(*engine.MnemonicOf(set.states[174].action), "Look");
    EXPECT_EQ(set.states[174].codePointer, set.states[174].action);
    EXPECT_EQ(set.SpriteName(set.states[174].sprite), "POSS");
    EXPECT_EQ(set.weapons[2].firingState, 30);
    EXPECT_EQ(set.ammo[1], (AmmoRecord{{50, 4}, "Shells"}));
    EXPECT_EQ(set.cheats[1].text, "idchoppers");
    EXPECT_EQ(set.cheats[1].maximumLength, engine.dialect.IsExtended() ? 0 : 10);
    EXPECT_EQ(engine.flagTooltips.at(2), "Shootable: Can be hit and damaged by attacks.");
    EXPECT_EQ(engine.codePointerStates.at(447), 811);
    EXPECT_TRUE(std::ranges::any_of(set.strings.Dense(), [](const StringRecord& string) {
        return string.text == "Picked up the armor." && string.length == 20;
    }));
    // The chaingun's sound plays the pistol's, by an address.
    const SoundRecord& chaingun = set.sounds[86];
    EXPECT_EQ(std::tuple(chaingun.value, chaingun.negOne1, chaingun.negOne2), std::tuple(64, 150, 0));
    const std::int32_t place = chaingun.zero1 - engine.offsets.sounds + engine.offsets.dataSegment;
    EXPECT_EQ(place % 36, 0);
    EXPECT_EQ(set.SoundName(place / 36), "pistol");
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
        EXPECT_EQ(read.actions[i].arguments, told.actions[i].arguments);
    }
    for (std::size_t set = 0; set < bitSetCount; ++set) {
        EXPECT_EQ(read.laterBits[set].names, told.laterBits[set].names);
        EXPECT_EQ(read.laterBits[set].tooltips, told.laterBits[set].tooltips);
    }
    EXPECT_EQ(read.droppedItems, told.droppedItems);
    EXPECT_EQ(read.sharedProjectileGroup, told.sharedProjectileGroup);
    EXPECT_EQ(read.dialect.engineFields, source->fields);
    EXPECT_EQ(read.dialect.EngineRules(), source->engineRulesOnly);
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

TEST(LaterFields, HaveTheValuesOfTheGame) {
    const test::TemporaryFolder output;
    ASSERT_TRUE(BuildEngines(dataFolder, output.Path()));
    const auto [engine, set] = Load(output.Path(), "mbf21");
    EXPECT_FALSE(engine.dialect.unlimited);
    EXPECT_TRUE(Load(output.Path(), "dsdhacked").engine.dialect.unlimited);
    EXPECT_EQ(set.things[10].droppedItem, 74); // from the base
    EXPECT_EQ(set.things[21].bits21, 303208);
    EXPECT_EQ(set.things[31].fastSpeed, 20 * 65536);
    EXPECT_EQ(std::tuple(set.things[11].fastSpeed, set.things[11].meleeRange), std::tuple(-1, 64 * 65536));
    EXPECT_EQ(std::tuple(set.states[489].bits21, set.states[490].bits21), std::tuple(1, 0));
    EXPECT_EQ(std::tuple(set.weapons[7].bits21, set.weapons[7].given), std::tuple(41, 0U));
    EXPECT_EQ(engine.sharedProjectileGroup, (std::vector{15, 17}));
    EXPECT_EQ(engine.BitNames(BitSet::Things21).at(17), "RIP");
    EXPECT_EQ(engine.BitTooltips(BitSet::Weapons21).at(1), "Silent: Firing it does not wake monsters.");
    EXPECT_EQ(engine.ActionOf(*engine.CodePointerOf("Turn"))->arguments.at(0).kind,
              EngineConfiguration::Argument::Kind::Degrees);
    EXPECT_TRUE(engine.ActionOf(*engine.CodePointerOf("WeaponAlert"))->arguments.empty());
    EXPECT_EQ(engine.ActionOf(-1), nullptr);
    const auto [dehextra, dehextraSet] = Load(output.Path(), "dehextra19");
    EXPECT_EQ(dehextraSet.things[10].droppedItem, 74);
    EXPECT_EQ(dehextra.dialect.fields, FieldLevel::Doom); // by the kept rules
    EXPECT_EQ(dehextra.dialect.AsEngines().fields, FieldLevel::Dehextra);
}

TEST(MoreRecords, StandBesideThoseOfTheBases) {
    const test::TemporaryFolder output;
    ASSERT_TRUE(BuildEngines(dataFolder, output.Path()));
    const auto [engine, set] = Load(output.Path(), "id24");
    constexpr std::int32_t first = -1879048192;
    const ThingRecord& ghoul = set.things[first];
    EXPECT_EQ(ghoul.name, "Ghoul");
    EXPECT_EQ(std::tuple(ghoul.initialState, ghoul.minRespawnTics, ghoul.fastSpeed, ghoul.given),
              std::tuple(-1879048150, 420, -1, 0U));
    EXPECT_EQ(set.things[first + 7].minRespawnTics, 2100);
    EXPECT_EQ(set.things[first + 57].pickupAmmoType, first);
    const StateRecord& look = set.states[ghoul.initialState];
    EXPECT_EQ(*engine.MnemonicOf(look.codePointer), "Look");
    EXPECT_EQ(set.SpriteName(look.sprite), "GHUL");
    EXPECT_EQ(set.SoundName(ghoul.deathSound), "ghldth");
    EXPECT_EQ(set.weapons[first].name, "Incinerator");
    EXPECT_EQ(std::tuple(set.weapons[first].slot, set.weapons[first].ammoPerShot, set.weapons[first].given),
              std::tuple(8, 1, 1U));
    EXPECT_EQ(std::tuple(set.weapons[1].slot, set.weapons[1].initialRaised, set.weapons[2].initialOwned),
              std::tuple(2, 1, 0));
    EXPECT_EQ(set.ammo[first], (AmmoRecord{{150, 10}, "Fuel"}));
    EXPECT_EQ(std::tuple(set.things[34].bits, set.things[47].bits24), std::tuple(67088, 4)) << "by the engine itself";
    EXPECT_EQ(set.TextOf(RecordKind::Thing, first + 57, 0), "ID24_GOTFUELCAN");
    EXPECT_EQ(set.TextOf(RecordKind::Weapon, 8, 3), "SMSGN2");
    EXPECT_EQ(set.texts.size(), 4U + 11U);
    EXPECT_EQ(engine.pickupItems.at(2), (EngineConfiguration::Choice{1, "blue keycard"}));
    EXPECT_EQ(engine.pickupCategories.at(14), (EngineConfiguration::Choice{13, "dropped deathmatch box"}));
    EXPECT_EQ(engine.BitNames(BitSet::Things24).at(3), "SPECIALSTAYSDM");
    EXPECT_EQ(engine.strings.back().mnemonic, "ID24_CC_TYRANT");
}

/// A copy of the fact tables that a test spoils.
class SpoiledData {
public:
    SpoiledData() {
        std::filesystem::copy(dataFolder / "engines", folder_ / "engines", std::filesystem::copy_options::recursive);
    }
    const std::filesystem::path& Path() const { return folder_.Path(); }
    std::filesystem::path Table(std::string_view table) const { return (folder_ / "engines" / table).make_preferred(); }

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

TEST(UnsoundTable, IsRefusedBeforeAnythingIsWritten) {
    const struct {
        const char *table, *what, *by;
        const char* reported; // behind the table's path
    } rows[]{
        {"doom19/states.tsv", "\t1\tLower\t3\t", "\t1\tLower\t967\t",
         ":5: column \"Next frame\": 967 is not within 0 to 966"},
        {"doom19/states.tsv", "\tLower\t", "\tLover\t", ":5: column \"action\": no routine is called \"Lover\""},
        {"boom/things.tsv", "\t174\t20\t176\t36\t", "\t174\t20\t176\t109\t",
         ":3: column \"Alert sound\": 109 is not within 0 to 108"},
        {"boom/things.tsv", "\tImp\t", "\tImp; fast\t",
         ":13: column \"name\": \"Imp;fast\" is not made of letters, digits and underscores"},
        {"mbf/misc.tsv", "byte\t40", "byte\t256", ":20: column \"value\": 256 is not within 0 to 255"},
        {"mbf/misc.tsv", "Max Armor", "Maximum Armor", ":6: column \"field\": should be \"Max Armor\""},
        {"doom19/cheats.tsv", "16\tMap cheat\tiddt\t4\n", "", ": has 16 rows instead of 17"},
        {"ultimate/texts.tsv", "\t33\tother\n", "\t32\tother\n", ":2: column \"length\": the text has 33 characters"},
        {"boom/strings.tsv", "c:\\\\doomdata", "c:\\\\new",
         ":3: column \"text\": would come back changed from a patch"},
        {"mbf21/fields.tsv", "Fast speed", "Fast sped", ":7: column \"field\": is no field of such a record"},
        {"mbf21/fields.tsv", "state\t477", "state\t4000", ":15: column \"index\": 4000 is not within 0 to 3999"},
        {"dehextra/fields.tsv", "\t78", "\t251", ":3: column \"value\": 251 is not within 0 to 250"},
        {"mbf/arguments.tsv", "Turn\t", "Tern\t", ":6: column \"action\": no routine is called \"Tern\""},
        {"mbf21/arguments.tsv", "\tangle\tangle\t", "\tangle\tangel\t",
         ":3: column \"kind\": \"angel\" is none of those that there are"},
        {"mbf21/arguments.tsv", "Args8", "Args9", ":9: column \"field\": is no field of a state"},
        {"engines.tsv", "dehextra mbf", "dehextra ../mbf",
         ":10: column \"bases\": \"../mbf\" is not made of letters, digits and underscores"},
        {"engines.tsv", "\tboom\t", "\t../boom\t",
         ":4: column \"folder\": \"../boom\" is not made of letters, digits and underscores"},
    };
    for (const auto& row : rows) {
        const SpoiledData data;
        const test::TemporaryFolder output;
        data.Replace(row.table, row.what, row.by);
        const Status built = BuildEngines(data.Path(), output / "out");
        EXPECT_FALSE(built);
        EXPECT_EQ(built.Reason(), data.Table(row.table).string() + row.reported);
        EXPECT_FALSE(std::filesystem::exists(output / "out"));
    }
}

/// The exit status of a shell command.
int ExitStatus(const std::string& command) {
    const int status = std::system(command.c_str());
    return status % 256 == 0 ? status / 256 : -1; // in its high byte; the low one is a signal
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

} // namespace
} // namespace plinket3::tools
