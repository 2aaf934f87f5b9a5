#include "patch/Find.h"
#include "patch/Arguments.h"
#include "patch/Edits.h"
#include "patch/StepNames.h"
#include "patch/TextReplace.h"
#include "tests/support/EveryField.h"
#include "tests/support/SmallEngine.h"
#include "tests/support/TestSupport.h"
#include "tests/support/TextCases.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

constexpr std::array groupNames{"things",  "states", "sounds", "sprites", "music", "strings",
                                "weapons", "ammo",   "cheats", "misc",    "pars",  "notes"};

class FindTest : public ::testing::Test {
protected:
    FindTest() {
        session.patch = BuiltEngine(DATA_FOLDER, "mbf21", session.engine);
        session.patch.current.things[11].name = "Impaler";
        session.patch.current.pars = {{0, 7, 90}, {0, 17, 30}};
        session.patch.current.notes = {{{RecordKind::State, 12}, "Slower than\nbefore"},
                                       {{RecordKind::Par, 0}, "Needs the wad before.wad"}};
    }

    /// "things 1: 12 Impaler (ID 3001);" and such a line for each group of which something is found.
    std::string Find(const FindQuery& query) const {
        std::string text;
        for (const FoundGroup& group : FindAnything(session, query)) {
            text += std::string(groupNames[static_cast<std::size_t>(group.group)]) + " " + std::to_string(group.count) +
                    ":";
            for (const Found& found : group.found)
                text += " " + found.title + (found.detail.empty() ? "" : " (" + found.detail + ")") + ";";
            text += "\n";
        }
        return text;
    }

    Session session;
};

/// find.txt: behind "$" how many of each group are wanted and what is looked for, then a line for each group.
TEST_F(FindTest, TheBestOfEachGroupComeFirst) {
    const std::string expected = ReadFile(std::filesystem::path(CASES_FOLDER) / "find.txt");
    const std::string told = Retold(expected, [this](const std::string& asked, const std::string&) {
        return Find({.text = asked.substr(2), .most = static_cast<std::size_t>(asked.front() - '0')});
    });
    EXPECT_EQ(told, expected);
    for (const char* blank : {"", " "})
        EXPECT_EQ(Find({.text = blank}), "");
}

TEST_F(FindTest, ArgumentsAndTextFieldsAreFoundWhereTheyStand) {
    session.patch = BuiltEngine(DATA_FOLDER, "id24", session.engine);
    PatchSet& current = session.patch.current;
    const auto act = [&](std::int32_t number, const char* action, const std::vector<FieldValue>& arguments) {
        StateRecord& state = current.states[number];
        state.codePointer = session.engine.CodePointerOf(action).value();
        const ArgumentTable table(session.engine);
        for (std::size_t i = 0; i < arguments.size(); ++i)
            SetValue(state, fieldTable<StateRecord>[static_cast<std::size_t>(table.Of(state.codePointer)[i].field)],
                     arguments[i]);
    };
    act(450, "SpawnObject", {12, 45 * 65536, {}, 0, -32768});
    act(451, "MonsterMeleeAttack", {4, {}, 1});
    act(452, "AddFlags", {{}, 0x20000});
    act(453, "MonsterProjectile", {12});
    act(455, "Spawn", {9999});
    act(456, "PlaySound", {2, 1});
    WriteCell(current, {RecordKind::Thing, 11, pickupMessageField}, "USER_TOOK");
    WriteCell(current, {RecordKind::Weapon, 3, carouselIconField}, "SHOTICON");
    WriteCell(current, {RecordKind::State, 453, tranmapField}, "GLASSY");
    const int args = RowOf(&StateRecord::arg1);
    const struct {
        const char* text;
        std::vector<std::pair<std::int32_t, int>> places; // number and field of what is found of the first group
        const char* title;
        const char* detail;
    } cases[]{
        {"type: imp", {{450, args}, {453, args}}, nullptr, "SpawnObject(type: Imp, angle 45\xb0, y_ofs 0, z_ofs -0.5)"},
        {"A_SpawnObject(Imp...)", {{450, args}}, nullptr, nullptr},
        {"spawnobject(angle 45", {{450, args + 1}}, nullptr, nullptr},
        {"MonsterMeleeAttack(Imp)", {}, nullptr, nullptr},
        {"imp, angle", {{450, args}}, nullptr, nullptr},
        {"4d8", {{451, args}}, nullptr, nullptr},
        {"sound: pist", {{451, args + 2}}, nullptr, "MonsterMeleeAttack(damage 4d8, sound: pistol)"},
        {"flags2 rip", {{452, args + 1}}, nullptr, "AddFlags(flags2 RIP)"},
        {"-0.5", {{450, args + 4}}, nullptr, nullptr},
        {"thing 9999", {{455, RowOf(&StateRecord::unknown1)}}, nullptr, nullptr},
        {"shotgn, fullvol", {{456, RowOf(&StateRecord::unknown1)}}, nullptr, "PlaySound(sound: shotgn, fullvol yes)"},
        {"user_took", {{11, pickupMessageField}}, "12 Imp", "Pickup message USER_TOOK"},
        {"shoticon", {{3, carouselIconField}}, "3 Chaingun", "Carousel icon SHOTICON"},
        {"glass", {{453, tranmapField}}, nullptr, "Tranmap GLASSY"},
    };
    for (const auto& row : cases) {
        const auto groups = FindAnything(session, {.text = row.text});
        std::vector<std::pair<std::int32_t, int>> places;
        if (!groups.empty())
            for (const Found& found : groups.front().found)
                places.emplace_back(found.cell.index, found.cell.field);
        EXPECT_EQ(places, row.places) << row.text;
        if (places.empty() || row.places.empty())
            continue;
        const auto& [cell, title, detail] = groups.front().found.front();
        EXPECT_TRUE(row.title == nullptr || title == row.title) << row.text << ": " << title;
        EXPECT_TRUE(row.detail == nullptr || detail == row.detail) << row.text << ": " << detail;
    }
    // A number is what is typed for the argument.
    EXPECT_EQ(FindAnything(session, {.text = "-90"}).size(), 0U);
    act(454, "Turn", {-90});
    const auto turned = FindAnything(session, {.text = "-90"});
    ASSERT_EQ(turned.size(), 1U);
    EXPECT_EQ(turned.front().found.front().cell, (Cell{RecordKind::State, 454, RowOf(&StateRecord::unknown1)}));
    session.engine.dialect.fields = FieldLevel::Mbf21;
    EXPECT_TRUE(FindAnything(session, {.text = "user_took"}).empty()) << "a field that the patch does not have";
}

TEST_F(FindTest, OneGroupMayBeShownWhole) {
    const auto groups = FindAnything(session, {.text = "troo", .most = 2, .whole = FindGroup::States});
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].found.size(), 1U);
    EXPECT_EQ(groups[1].found.size(), 33U);
}

TEST_F(FindTest, ARecordIsGoneToByItsNumberOrName) {
    const struct {
        RecordKind kind;
        const char* text;
        std::int32_t record; // noRecord for none
    } cases[]{
        {RecordKind::Thing, " 12 ", 11},       {RecordKind::Thing, "impaled human", 124},
        {RecordKind::Thing, "human", 124},     {RecordKind::Thing, "0", noRecord},
        {RecordKind::Thing, "1000", noRecord}, {RecordKind::Thing, "", noRecord},
        {RecordKind::Thing, "9", 8},           {RecordKind::Thing, "nobody", noRecord},
        {RecordKind::State, "frame 442", 442}, {RecordKind::State, "trooc", 448},
        {RecordKind::State, "-1", noRecord},   {RecordKind::Weapon, "pistol", 1},
        {RecordKind::String, "gotarmor", 27},  {RecordKind::Cheat, "god mode", 2},
        {RecordKind::Par, "MAP17", 1},
    };
    for (const auto& row : cases) {
        const auto found = FindRecord(session, row.kind, row.text);
        EXPECT_EQ(found ? found->cell.index : noRecord, row.record) << row.text;
    }
}

TEST_F(FindTest, TextsAreReplacedAsFarAsThePatchCanHoldThem) {
    const auto outcome = [this](const TextChange& change, const std::vector<Cell>& in) {
        const ReplacedTexts replaced = ReplaceInTexts(session, in, change);
        std::string text = std::to_string(replaced.places) + ":";
        for (const Assignment& each : replaced.texts)
            text += " " + RecordName(session.patch.current, each.cell.kind, each.cell.index) + "=" +
                    std::get<std::string>(each.value);
        for (const auto& [cell, reason] : replaced.refused)
            text += " (" + RecordName(session.patch.current, cell.kind, cell.index) + ": " + reason + ")";
        return text;
    };
    const std::string unreadable = "Games cannot read such a text: empty, with blanks at its ends, or with a backslash "
                                   "at its end or before an \"n\"";
    const struct {
        TextChange change;
        bool byEngineRules;
        std::string normal, extended;
    } cases[]{
        {{"ow", "aow"},
         false,
         "1: cheat Change music=haow (string 0: There is room for 7 characters, not 12)",
         "4: string 0=aow! aow aow cheat Change music=haow"},
        {{"ow", "", true}, false, "3: string 0=Ow!   cheat Change music=h", "3: string 0=Ow!   cheat Change music=h"},
        {{"ow", "a\\nb", true},
         false,
         "0: (string 0: There is room for 7 characters, not 11) (cheat Change music: A cheat has one line)",
         "2: string 0=Ow! a\nb a\nb (cheat Change music: A cheat has one line)"},
        {{"ow ", "OW "}, false, "1: string 0=Ow! OW ow", "1: string 0=Ow! OW ow"},
        {{"ow", "ow", true}, false, "0:", "0:"},
        {{"x", ""}, true, "1: string 2=", "0: (string 2: " + unreadable + ")"},
        {{"how", " ow"},
         true,
         "0: (cheat Change music: Games would not read the blanks at its ends)",
         "0: (cheat Change music: Games would not read the blanks at its ends)"},
    };
    for (const bool extended : {false, true})
        for (const auto& row : cases) {
            session.engine = SmallEngine(extended);
            session.patch = SmallPatch(session.engine);
            if (row.byEngineRules)
                session.engine.dialect = session.engine.dialect.AsEngines();
            PatchSet& current = session.patch.current;
            current.strings[0].text = "Ow! ow ow";
            current.strings[1].text = "none";
            current.strings[2].text = "x";
            current.cheats[0].text = "how";
            EXPECT_EQ(outcome(row.change, EditedTexts(session)), extended ? row.extended : row.normal)
                << row.change.find;
        }
}

} // namespace
} // namespace plinket3::test
