#include "patch/modPatchFiles.h"

#include "core/Text.h"
#include "patch/modPatchDiff.h"
#include "tests/support/SmallEngine.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

using namespace std::string_literals;
using modPatchFiles::Header;
using modPatchFiles::ParsePatch;

const std::string first = "Patch File for DeHackEd v3.0\n";
const std::string start = first + "Doom version = 19\nPatch format = 6\n";

struct ReaderRow {
    const char* name;
    std::string patch;
    void (*edit)(PatchSet&); // what must differ from the defaults
    bool extended = false;
};
void PrintTo(const ReaderRow& row, std::ostream* out) { *out << row.name; }

void Nothing(PatchSet&) {}

const ReaderRow readerRows[]{
    {"VersionsAlone", start, Nothing},
    {"NoVersions", first + "Thing 1 (X)\nHit points = 5\n", Nothing},
    {"NoPatchFormat", first + "Doom version = 19\nHit points = 5\nText 5 1\ndemo1x\n", Nothing},
    {"VersionsInsideASection",
     first +
         "Thing 2 (Early)\nHit points = 1\nDoom version = 19\nPatch format = 6\nHit points = 2\nThing 3\nMass = 3\n",
     [](PatchSet& set) { set.things[0].hitPoints = 2, set.things[2].mass = 3; }},
    {"FieldsBeforeAnySectionAreTheFirstThings", start + "Hit points = 5\n",
     [](PatchSet& set) { set.things[0].hitPoints = 5; }},
    {"AVersionInASectionOfOtherFields", start + "Frame 1\nDoom version = 19\nPatch format = 6\nDuration = 4",
     [](PatchSet& set) { set.states[1].duration = 4; }},
    {"BlanksAndCase",
     "   Patch File for DeHackEd v3.0  \n  dOOM VERSION=19 \n PATCH format  =6\n  tHiNg   2 \n hIT POINTS =  7\n",
     [](PatchSet& set) { set.things[1].hitPoints = 7; }},
    {"CarriageReturns", ReplaceAll(start + "Thing 2\nHit points = 7\n", "\n", "\r\n"),
     [](PatchSet& set) { set.things[1].hitPoints = 7; }},
    {"ACarriageReturnAloneEndsNoLine", start + "Thing 2\rHit points = 7\n", Nothing},
    {"TabsAreNoBlanks", start + "Thing\t2\n\tHit points = 7\nHit points\t= 8\nThing 3\nMass = \t9\n", Nothing},
    {"NamesInBrackets",
     start + "Thing 2 (a b  c) d\nWeapon 1(Gun)\nAmmo 0 (Unclosed # = \nAmmo 1 () x\nThing 3 Word (x)\n",
     [](PatchSet& set) {
         set.things[1].name = "a b  c", set.weapons[1].name = "Gun", set.ammo[1].name = "", set.things[2].name = "Word";
     }},
    {"AThingWithoutANameKeepsIt", start + "Thing 2 # (x)\nThing 3#(x)\nMass = 1\n",
     [](PatchSet& set) { set.things[2].mass = 1; }},
    {"NumbersOutsideSelectNothing",
     start + "Thing 0\nMass = 1\nThing 4 (x)\nMass = 1\nThing -1\nMass = 1\nThing 2147483648\nMass = 1\n"
             "Thing x\nMass = 1\nFrame 6\nDuration = 1\nFrame -1\nDuration = 1\nSound 4\nValue = 1\nWeapon 2 (x)\n"
             "Ammo type = 1\nAmmo 2 (x)\nPer ammo = 1\nPointer 4\nCodep Frame = 1\nPointer 1\nCodep Frame = 6\n"
             "Codep Frame = -1\n[CODEPTR]\nFrame 6 = Fire\nFrame -1 = Fire\n",
     Nothing},
    {"NumbersEndWhereTheyStop",
     start + "Thing 2.4\nHit points = 12abc\nMass = -3.5\nWidth = +2.5\nHeight = 99999999999\nSpeed = -1e3\n"
             "ID # = 5 # five\nPain chance = x\nReaction time = .6\nMissile damage = -\n",
     [](PatchSet& set) {
         ThingRecord& thing = set.things[1];
         thing.hitPoints = 12, thing.mass = -4, thing.width = 2, thing.height = INT32_MAX, thing.speed = -1;
         thing.id = 5, thing.reactionTime = 1;
     }},
    {"ValuesKeepTheirEqualsSigns", start + "[STRINGS]\nQUIT = a = b # c\n",
     [](PatchSet& set) { set.strings[2].text = "a = b # c", set.strings[2].length = 9; }, true},
    // Kept: sounds are written from 1 and read from 0. docs/kept-behaviour.md
    {"SoundsCountFromZero", start + "Sound 0\nZero/One = 1\nSound 3\nNeg. One 2 = -1\nZero 4 = 2\n",
     [](PatchSet& set) { set.sounds[0].zeroOne = 1, set.sounds[3].negOne2 = -1, set.sounds[3].zero4 = 2; }},
    {"StatesNeverGetAnAction", start + "Frame 1\nAction = 5\nSprite number = 2\n",
     [](PatchSet& set) { set.states[1].sprite = 2; }},
    {"PointersTakeTheCurrentCodePointerOfTheFirstEngineState",
     start + "Pointer 1 (Frame 99)\nCodep Frame = 1\nPointer 3 x\nCodep Frame = 2\nPointer 0\nCodep Frame = 0\n",
     [](PatchSet& set) {
         set.states[2].codePointer = 1, set.states[5].codePointer = 2, set.states[1].codePointer = 0;
     }},
    {"CodePointersInBothModes",
     start + "[CodePtr]\nFRAME  4 = Fire\nframe 1 = fire\nFrame 2 = A_Light0\nFrame = Fire\n",
     [](PatchSet& set) { set.states[4].codePointer = 2; }},
    {"CheatsWithoutTheirFiller",
     start + "Cheat 0\nChange music = idm\xff\xff\xff\nAMMO & KEYS = a\xff"
             "b\nNo such = x\n",
     [](PatchSet& set) { set.cheats[0].text = "idm", set.cheats[3].text = "a b"; }},
    {"MiscWithItsSecondCopies",
     start +
         "Misc 0\nMax Health = 300\nMax Armor = 5\nMax Soulsphere = 6\nGod Mode Health = 7\nSoulsphere Health = 300\n"
         "BFG Cells/Shot = -1\nMonsters Infight = 221\n",
     [](PatchSet& set) {
         MiscRecord& misc = set.misc;
         misc.maxHealth = misc.secondMaxHealth = 300, misc.maxArmor = misc.secondMaxArmor = 5;
         misc.maxSoulsphere = misc.secondMaxSoulsphere = 6, misc.godModeHealth = misc.secondGodModeHealth = 7;
         misc.soulsphereHealth = 255, misc.bfgCells = 0, misc.monstersInfight = monstersFight;
         misc.spare2 = 255; // equal to spare byte 1
     }},
    {"ParsOfThreeAndFourWords",
     start + "par 1 2\n[PARS]\npar 1 2 3 # four\nPAR  10   20\npar\npar 1\npar 1 2 3 4\npar 3 x\n[PARS]\npar 10 30\n",
     [](PatchSet& set) {
         set.pars = {{1, 2, 3}, {0, 10, 20}, {0, 3, 0}, {0, 10, 30}};
     }},
    {"UnsupportedSectionsLeaveTheFormerOne",
     start + "Thing 2\nSprite 5\nOffset = 3\nMass = 1\nInclude x.deh\nWidth = 2\n",
     [](PatchSet& set) { set.things[1].mass = 1, set.things[1].width = 2; }},
    {"UnknownWordsLeaveTheFormerSection", start + "Thing 2\nSpeeches 1\nMass = 1\n# Frame 1\nWidth = 2\n",
     [](PatchSet& set) { set.things[1].mass = 1, set.things[1].width = 2; }},
    {"NulBytes", start + "Thing 2 (a\0b)\n\0Mass = 1\nMass\0 = 1\nMass = 1\0 2\n"s,
     [](PatchSet& set) { set.things[1].name = "a\0b"s, set.things[1].mass = 1; }},
    {"HugeLines",
     start + "Thing 2 (" + std::string(200000, 'x') + ")\n" + std::string(200000, ' ') + "Mass = 1" +
         std::string(200000, '0') + "\n",
     [](PatchSet& set) { set.things[1].name.assign(200000, 'x'), set.things[1].mass = INT32_MAX; }},
    {"BitsByName",
     start + "Thing 1\nBits = special+solid\nThing 2\nBits = INFLOAT\nThing 3\nBits = SOLID\nBits = unknown\n",
     [](PatchSet& set) { set.things[0].bits = 3, set.things[1].bits = 12; }},
    {"BitsAsNumbers", start + "Thing 1\nBits = 4294967295\nThing 2\nBits = 2147483648\nThing 3\nBits = 4294967296\n",
     [](PatchSet& set) { set.things[0].bits = -1, set.things[1].bits = INT32_MIN, set.things[2].bits = INT32_MAX; }},
    {"NegativeBitsAreNames",
     start + "Thing 1\nBits = 5\nBits = -1\nThing 2\nBits = -1 SOLID\nThing 3\nBits = 7\nBits =\n",
     [](PatchSet& set) { set.things[1].bits = 2; }},
    {"TextsOverLines", start + "Text 7 5\none\r\ntwoa\r\nb\nc\n\nThing 2\nMass = 1\n",
     [](PatchSet& set) { set.strings[1].text = "a\nb\nc", set.strings[1].length = 5, set.things[1].mass = 1; }},
    {"TheFirstOfTwoTextsAlike", start + "Text 5 1\ntwicex\nText 5 1\ntwicey\n",
     [](PatchSet& set) { set.strings[2].text = "y", set.strings[2].length = 1; }},
    {"ATextCutOffAtTheEnd", start + "Text 5 2147483647\ndemo1ab",
     [](PatchSet& set) { set.strings[0].text = "ab", set.strings[0].length = 2; }},
    {"NoFieldsBehindAText", start + "Thing 2\nText 5 1\ndemo1xMass = 1\nMass = 2\n",
     [](PatchSet& set) { set.strings[0].text = "x", set.strings[0].length = 1; }},
    {"ATextWithACarriageReturnInIt", start + "Text 5 2\ndemo1\rxy\n",
     [](PatchSet& set) { set.strings[0].text = "\rxy", set.strings[0].length = 2; }},
    {"ATextWithNothingNew", start + "Text 5 0\ndemo1\n",
     [](PatchSet& set) { set.strings[0].text = "", set.strings[0].length = 0; }},
    {"StringsGoOnBehindABackslash",
     start + "[STRINGS]\ngotarmor = a \\\n   b\\\n\tc \nQUIT = x\nNONE = a\\\nQUIT = y\nE1TEXT = end\\",
     // The backslash before the second line end stays: only the first one goes.
     [](PatchSet& set) {
         set.strings[0].text = "a b\\\tc ", set.strings[0].length = 7;
         set.strings[2].text = "x", set.strings[2].length = 1;
         set.strings[1].text = "end", set.strings[1].length = 3;
     },
     true},
    {"StringsAreUnescaped", start + "[STRINGS]\nE1TEXT = a\\nb\\\\nc\\\"\n",
     [](PatchSet& set) { set.strings[1].text = "a\nb\nc\"", set.strings[1].length = 6; }, true},
};

class Reader : public testing::TestWithParam<ReaderRow> {};
INSTANTIATE_TEST_SUITE_P(Reads, Reader, testing::ValuesIn(readerRows), [](const auto& row) { return row.param.name; });

TEST_P(Reader, ChangesExactlyWhatThePatchSays) {
    const ReaderRow& row = GetParam();
    const EngineConfiguration engine = SmallEngine(row.extended);
    const PatchSet defaults = SmallDefaults(engine);
    PatchSet expected = defaults, set;
    row.edit(expected);
    const auto result = ParsePatch(row.patch, engine, defaults, set);
    EXPECT_TRUE(result.status) << result.status.Reason();
    EXPECT_EQ(result.unsupported, std::string_view(row.name).starts_with("Unsupported"));
    EXPECT_EQ(modPatchDiff::Differences(expected, set, engine), std::vector<std::string>());
    EXPECT_TRUE(set == expected);
}

TEST(PatchReader, RefusesWhatItCannotRead) {
    struct {
        std::string patch;
        const char* reason;
        std::size_t offset;
        bool extended = false;
    } const rows[]{
        {"", "Invalid patch file.", 0},
        {"\n" + start, "Invalid patch file.", 0},
        {"# comment\n" + start, "Invalid patch file.", 0},
        {"Patch File for DeHackEd v2.3\n", "Invalid patch file.", 0},
        {"\0\0\0"s, "Invalid patch file.", 0},
        {first + "Doom version = 21\n", "Patch file version does not match engine version.", first.size()},
        {first + "Doom version =\n", "Patch file version does not match engine version.", first.size()},
        {first + "Patch format = 5\n", "Unsupported patch format.", first.size()},
        {start + "Thing 1\nPatch format = 7\n", "Unsupported patch format.", start.size() + 8},
        {start + "Text 5 5\nnone!other", "Could not find string replacement.", start.size()},
        {start + "Text 2147483647 2147483647\ndemo1", "Could not find string replacement.", start.size()},
        {start + "Text -1 5\nother", "Could not find string replacement.", start.size()},
        {start + "Text 6 5\nArmor.other", "Could not find string replacement.", start.size(), true},
    };
    for (const auto& row : rows) {
        const EngineConfiguration engine = SmallEngine(row.extended);
        PatchSet set;
        const auto result = ParsePatch(row.patch, engine, SmallDefaults(engine), set);
        EXPECT_FALSE(result.status) << row.patch;
        EXPECT_EQ(result.status.Reason(), row.reason) << row.patch;
        EXPECT_EQ(result.offset, row.offset) << row.patch;
    }
}

class ReadPatchTest : public testing::Test {
protected:
    ReadPatchTest() {
        program_.engine = SmallEngine(false);
        program_.patch = SmallPatch(program_.engine);
        program_.patch.current.things[0].mass = 9;
        program_.patch.changed = true;
    }
    bool Read(const std::string& patch) {
        WriteFile(folder_ / "a.deh", patch);
        return modPatchFiles::ReadPatch(notifier_, folder_ / "a.deh", program_);
    }

    TemporaryFolder folder_;
    ExpectingNotifier notifier_;
    Program program_{notifier_};
};

TEST_F(ReadPatchTest, StartsFromTheDefaultsAndWarnsOfWhatASaveLoses) {
    notifier_.Expect(MessageKind::Exclamation,
                     "Unsupported entries were found in the patch file. Those entries will be ignored. This means that "
                     "Plinket3 will not save those entries again either!");
    ASSERT_TRUE(Read(start + "Hit points = 3\nSprite 1\n"));
    EXPECT_EQ(program_.patch.current.things[0].mass, 0);
    EXPECT_EQ(program_.patch.current.things[0].hitPoints, 3);
    EXPECT_EQ(program_.patch.fileName, folder_ / "a.deh");
    EXPECT_TRUE(program_.patch.named);
    EXPECT_FALSE(program_.patch.changed);
}

TEST_F(ReadPatchTest, LeavesTheOpenPatchWhenItFails) {
    notifier_.Expect(MessageKind::Exclamation, "Unsupported patch format.");
    EXPECT_FALSE(Read(start + "Hit points = 3\nPatch format = 5\n"));
    notifier_.Expect(MessageKind::Exclamation, "Could not read " + folder_.Path().string() + ": is a folder");
    EXPECT_FALSE(modPatchFiles::ReadPatch(notifier_, folder_.Path(), program_));
    EXPECT_EQ(program_.patch.current.things[0].mass, 9);
    EXPECT_TRUE(program_.patch.changed);
    EXPECT_TRUE(program_.patch.fileName.empty());
}

TEST(HeaderScan, FindsTheHeaderLinesAnywhere) {
    Header header;
    ASSERT_TRUE(modPatchFiles::ScanHeader(
        std::string_view(
            "# IWAD = no.wad\r\n  doom VERSION = 19 # old\r\nIWAD=a=b.wad\r\nData  WAD = x\r\nIWAD 2 = y\r\n"
            "Thing 1\r\nEngine config =\r\nPatch format = 6"),
        header));
    EXPECT_EQ(header,
              (Header{{"engineversion", "19"}, {"iwad", "a=b.wad"}, {"engineconfig", ""}, {"patchversion", "6"}}));
}

TEST(HeaderScan, RefusesALineThatStandsTwice) {
    for (const char* key : {"Patch format", "Doom version", "Engine config", "Data WAD", "IWAD"}) {
        Header header{{"kept", ""}};
        const std::string line = std::string(key) + " = 1\n", patch = line + "x\n" + ToLower(line);
        const Status status = modPatchFiles::ScanHeader(std::string_view(patch), header);
        EXPECT_EQ(status.Reason(), "the line \"" + std::string(key) + "\" stands in it twice, again in line 3");
        EXPECT_EQ(header.size(), 1U);
    }
}

TEST(HeaderScan, AddsTheNameOfTheFile) {
    const TemporaryFolder folder;
    WriteFile(folder / "a.deh", "");
    Header header;
    ASSERT_TRUE(modPatchFiles::ScanHeader(folder / "a.deh", header));
    EXPECT_EQ(header, (Header{{"filename", (folder / "a.deh").string()}}));
    EXPECT_FALSE(modPatchFiles::ScanHeader(folder / "b.deh", header));
    EXPECT_FALSE(modPatchFiles::ScanHeader(folder.Path(), header));
}

} // namespace
} // namespace plinket3::test
