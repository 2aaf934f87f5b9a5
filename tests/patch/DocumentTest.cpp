#include "patch/PatchDocument.h"

#include "core/Text.h"
#include "patch/Cells.h"
#include "patch/LumpNames.h"
#include "patch/PatchLines.h"
#include "patch/modPatchDiff.h"
#include "tests/support/SmallEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

namespace plinket3::test {
namespace {

EngineConfiguration AsEngines(bool extended) {
    EngineConfiguration engine = SmallEngine(extended);
    engine.dialect = engine.dialect.AsEngines();
    return engine;
}

struct MergeRow {
    const char* name;
    std::string before;
    void (*edit)(PatchSet&);
    std::string after;
    bool extended = true, mbf21 = false, id24 = false;
};
void PrintTo(const MergeRow& row, std::ostream* out) { *out << row.name; }

void Write(PatchSet& set, RecordKind kind, std::int32_t index, int field, const CellValue& value) {
    WriteCell(set, {kind, index, field}, value);
}

const MergeRow mergeRows[]{
    {"AnUnsetArgumentLosesItsLine", "Frame 5\nArgs1 = 0\nArgs2 = 7\n",
     [](PatchSet& set) { Write(set, RecordKind::State, 5, RowOf(&StateRecord::arg2), Unset()); },
     "Frame 5\nArgs1 = 0\n", true, true},
    {"ZeroIsNotUnset", "Frame 5\nArgs1 = 3 # x\n\nWeapon 1\nAmmo type = 2\n",
     [](PatchSet& set) {
         Write(set, RecordKind::State, 5, RowOf(&StateRecord::arg1), 0);
         Write(set, RecordKind::State, 5, RowOf(&StateRecord::arg8), INT32_MIN);
         Write(set, RecordKind::Weapon, 1, RowOf(&WeaponRecord::ammoPerShot), 0);
     },
     "Frame 5\nArgs1 = 0 # x\nArgs8 = -2147483648\n\nWeapon 1\nAmmo type = 2\nAmmo per shot = 0\n", true, true},
    {"LaterBitsAreNamedAsFarAsTheyMayBe",
     "Thing 1\nMBF21 Bits = rip\n\nThing 2\nMBF21 Bits = RIP\n\nThing 3\nMass = 1\n\nWeapon 1\nMBF21 Bits = SILENT\n",
     [](PatchSet& set) {
         set.things[0].bits21 = 3, set.things[1].bits21 = 5, set.things[2].bits21 = 1, set.weapons[1].bits21 = 3;
     },
     "Thing 1\nMBF21 Bits = LOGRAV + RIP\n\nThing 2\nMBF21 Bits = 5\n\nThing 3\nMass = 1\nMBF21 Bits = LOGRAV\n\n"
     "Weapon 1\nMBF21 Bits = 3\n",
     true, true},
    {"FieldsThatTheEngineDoesNotHaveStay", "Frame 5\nArgs1 = 3\nDuration = 2\n",
     [](PatchSet& set) {
         Write(set, RecordKind::State, 5, RowOf(&StateRecord::arg1), 4);
         set.states[5].duration = 3;
     },
     "Frame 5\nArgs1 = 3\nDuration = 3\n"},
    {"AValueInItsPlace", "Thing 2 (Zombie Man)\r\nHit points =  60  # tough\r\nMass = 5",
     [](PatchSet& set) { set.things[1].hitPoints = 7; },
     "Thing 2 (Zombie Man)\r\nHit points =  7  # tough\r\nMass = 5"},
    {"TheLastOfTwoLinesCounts", "Thing 2\nMass = 1\nMass = 2\n\nThing 2\nMass = 3\n",
     [](PatchSet& set) { set.things[1].mass = 9; }, "Thing 2\nMass = 1\nMass = 2\n\nThing 2\nMass = 9\n"},
    {"BitsKeepTheirForm", "Thing 1\nBits = solid+Float\n\nThing 2\nBits = 0x6 # hex\n",
     [](PatchSet& set) { set.things[0].bits = 1, set.things[1].bits = 3; },
     "Thing 1\nBits = SPECIAL\n\nThing 2\nBits = 3 # hex\n"},
    {"ANewValueGoesToTheEndOfItsSection", "Thing 2\nMass = 1\n# about mass\n\n# next\nThing 3\nMass = 4\n",
     [](PatchSet& set) { set.things[1].hitPoints = 7; },
     "Thing 2\nMass = 1\n# about mass\nHit points = 7\n\n# next\nThing 3\nMass = 4\n"},
    {"BeforeTheLineThatEndsTheSection", "Frame 2\nDuration = 4\n Next frame = 3\nFrame 3\n",
     [](PatchSet& set) { set.states[2].unknown1 = 5; },
     "Frame 2\nDuration = 4\nUnknown 1 = 5\n Next frame = 3\nFrame 3\n"},
    {"ANewSectionBehindTheLastOfItsKind",
     "# a patch\n\nThing 1 (Player)\nMass = 1\n\n\n# frames\nFrame 1\nDuration = 2\n",
     [](PatchSet& set) { set.things[2].mass = 3; },
     "# a patch\n\nThing 1 (Player)\nMass = 1\n\nThing 3 (Imp)\nMass = 3\n\n\n# frames\nFrame 1\nDuration = 2\n"},
    {"ANewKindInTheUsualOrder", "Thing 1\nMass = 1\n\nMisc 0\nMax Health = 5\n",
     [](PatchSet& set) { set.states[4].duration = 3; },
     "Thing 1\nMass = 1\n\nFrame 4\nDuration = 3\n\nMisc 0\nMax Health = 5\n"},
    {"BehindALineWithoutAnEnd", "Doom version = 19", [](PatchSet& set) { set.things[0].mass = 3; },
     "Doom version = 19\n\nThing 1 (Player)\nMass = 3"},
    {"TheEnginesOwnValueLosesItsLines", "Thing 2\nMass = 1\nHit points = 5\nMass = 2\n\nThing 3\nMass = 4\n\nFrame 1\n",
     [](PatchSet& set) { set.things[1].mass = 0, set.things[2].mass = 0; }, "Thing 2\nHit points = 5\n\nFrame 1\n"},
    {"ASectionWithACommentStays", "Thing 2\n# the zombie\nMass = 1\n\nFrame 1\n",
     [](PatchSet& set) { set.things[1].mass = 0; }, "Thing 2\n# the zombie\n\nFrame 1\n"},
    {"Names", "Thing 2 (Zombie (old))\nMass = 1\n\nWeapon 0\nAmmo type = 1\n",
     [](PatchSet& set) { set.things[1].name = "Guard", set.weapons[0].name = "Paw", set.ammo[1].name = "Nails"; },
     "Thing 2 (Guard)\nMass = 1\n\nWeapon 0 (Paw)\nAmmo type = 1\n\nAmmo 1 (Nails)\n"},
    {"CodePointersByName", "[CODEPTR]\nFRAME 2=nULL # still\n\n[STRINGS]\nQUIT = Bye\n",
     [](PatchSet& set) { set.states[2].codePointer = 1, set.states[4].codePointer = 3; },
     "[CODEPTR]\nFRAME 2=Light0 # still\nFrame 4 = Last\n\n[STRINGS]\nQUIT = Bye\n"},
    {"CodePointersByFrame", "Pointer 0 (x 2)\nCodep Frame = 0\n",
     [](PatchSet& set) { set.states[2].codePointer = 1, set.states[5].codePointer = 2; },
     "Pointer 0 (x 2)\nCodep Frame = 1\n\nPointer 3 (Frame 5)\nCodep Frame = 2\n", false},
    {"StringsOverLines", "[STRINGS]\nquit = One\\\n# kept\n  two\nE1TEXT = x\n",
     [](PatchSet& set) { set.strings[2].text = "A\nb"; }, "[STRINGS]\nquit = A\\nb\n# kept\nE1TEXT = x\n"},
    {"ANewStringBehindTheLast", "[STRINGS]\nE1TEXT = x\n\n# more\nUSER_1 = y\nQUIT = z\n# end\n",
     [](PatchSet& set) { set.strings[0].text = "Vest"; },
     "[STRINGS]\nE1TEXT = x\n\n# more\nUSER_1 = y\nQUIT = z\nGOTARMOR = Vest\n# end\n"},
    {"Texts", "Text 5 3\ndemo1one\n\nThing 1\nMass = 1\n",
     [](PatchSet& set) { set.strings[0].text = "a\nb\n", set.strings[1].text = "new"; },
     "Text 5 4\ndemo1a\nb\n\n\nText 7 3\none\ntwonew\n\nThing 1\nMass = 1\n", false},
    {"Pars", "[PARS]\npar  1 2 30 # first\nPAR 5 60\npar 6 70\n",
     [](PatchSet& set) {
         set.pars = {{1, 2, 31}, {0, 6, 70}, {0, 7, 80}};
     },
     "[PARS]\npar 1 2 31 # first\npar 6 70\npar 7 80\n"},
    {"Notes",
     "Patch File for DeHackEd v3.0\n#of the patch\n# *allow-long-cheats*\n\n# by me\n\n# old\n#$Editor x = 1\n#imp\n"
     "Thing 3\nMass = 1\n\n# gone\nThing 2\n\n# kept\nWeapon 0\nAmmo type = 1\n",
     [](PatchSet& set) {
         EXPECT_EQ(ReadCell(set, Cell{RecordKind::Thing, 2, noteField}), CellValue("old\nimp"));
         WriteCell(set, patchNotes, "of the patch\nand more\n\nby me\n");
         WriteCell(set, {RecordKind::Thing, 2, noteField}, "new\nimp");
         WriteCell(set, {RecordKind::Thing, 1, noteField}, "");
         WriteCell(set, {RecordKind::Thing, 0, noteField}, "hero");
         set.sounds[1].value = 5;
     },
     "Patch File for DeHackEd v3.0\n#of the patch\n# *allow-long-cheats*\n# and more\n\n# by me\n#\n\n# new\n"
     "#$Editor x = 1\n#imp\nThing 3\nMass = 1\n\n\n# hero\nThing 1\n\nSound 1\nValue = 5\n\n# kept\nWeapon 0\n"
     "Ammo type = 1\n"},
    {"NotesOfAPatchWithoutAny", "Thing 1\nMass = 1\n",
     [](PatchSet& set) {
         WriteCell(set, patchNotes, "mine"), WriteCell(set, {RecordKind::Thing, 0, noteField}, "a");
     },
     "# mine\n\n# a\nThing 1\nMass = 1\n"},
    {"NamesByTexts", "Text 4 4\nTROOABCD\n\nText 6 4\nPISTOLbang\nThing 1\nMass = 1\n",
     [](PatchSet& set) {
         Write(set, RecordKind::Sprite, 0, lumpNameField, "NEWS");
         Write(set, RecordKind::Sprite, 1, lumpNameField, "SPR2");
         Write(set, RecordKind::Sound, 1, lumpNameField, "pistol"); // the engine's own
         Write(set, RecordKind::Sound, 2, lumpNameField, "p");
     },
     "Text 4 4\nTROONEWS\n\n\n\nText 5 1\npunchp\n\n\nText 4 4\nSHTGSPR2\nThing 1\nMass = 1\n", true, true},
    {"NamesBySectionsOfEnginesWithLimits", "[SPRITES]\nTROO = ABCD # x\n",
     [](PatchSet& set) { Write(set, RecordKind::Sprite, 0, lumpNameField, "NEWS"); }, "[SPRITES]\nTROO = NEWS # x\n"},
    {"MusicByTexts", "Text 4 4\ne1m1abcd\n\n[MUSIC]\nrunnin = slow # x\nevil = good\n",
     [](PatchSet& set) {
         Write(set, RecordKind::Music, 1, lumpNameField, "mine");
         Write(set, RecordKind::Music, 33, lumpNameField, "fast");
         Write(set, RecordKind::Music, 63, lumpNameField, "evil"); // the engine's own
         Write(set, RecordKind::Music, 2, lumpNameField, "x");
     },
     "Text 4 4\ne1m1mine\n\nText 4 1\ne1m2x\n\n[MUSIC]\nrunnin = fast # x\n"},
    {"MusicAndHelperOfEnginesWithoutLimits",
     "[HELPER]\ntype = 2 # mine\n\n[MUSIC]\nE1M1 = abcd\n\n[SPRITES]\nTROO = NEWS\n",
     [](PatchSet& set) {
         Write(set, RecordKind::Music, 1, lumpNameField, "mine");
         Write(set, RecordKind::Music, 67, lumpNameField, "x");
         WriteCell(set, {RecordKind::Misc, 0, helperField}, 3);
     },
     "[HELPER]\ntype = 3 # mine\n\n[MUSIC]\nE1M1 = mine\ndm2int = x\n\n[SPRITES]\nTROO = NEWS\n", true, true, true},
    {"NewMusicAndHelper", "[STRINGS]\nQUIT = x\n\n[SPRITES]\nTROO = NEWS\n\n[HELPER]\ntype = 1\n",
     [](PatchSet& set) {
         Write(set, RecordKind::Music, 1, lumpNameField, "mine");
         WriteCell(set, {RecordKind::Misc, 0, helperField}, Unset());
     },
     "[STRINGS]\nQUIT = x\n\n[SPRITES]\nTROO = NEWS\n\n[MUSIC]\ne1m1 = mine\n\n", true, true, true},
    {"TextFields",
     "Valid hashes = 01\n\nThing 2 (a)\nTranslation =  RED # red\nPickup message = USER_X\n\nFrame 1\nTranmap = A\n\n"
     "Weapon 1\nCarousel icon = SMX\n",
     [](PatchSet& set) {
         Write(set, RecordKind::Thing, 1, TextCell(1), "BLUE");
         Write(set, RecordKind::Thing, 1, TextCell(0), "");
         Write(set, RecordKind::State, 1, TextCell(2), "");
         Write(set, RecordKind::Weapon, 1, TextCell(3), "SMPISG"); // the engine's own
         Write(set, RecordKind::State, 4, TextCell(2), "B");
         Write(set, RecordKind::Weapon, firstNegative, TextCell(3), "FLAME");
     },
     "Valid hashes = 01\n\nThing 2 (a)\nTranslation =  BLUE # red\n\n\nFrame 4\nTranmap = B\n\n\n"
     "Weapon -1879048192 (Flamer)\nCarousel icon = FLAME\n",
     true, true, true},
    {"RecordsThatPatchesCannotMake", "Thing -1879048191 (Ghoul)\nMass = 1\n\nFrame -5\nDuration = 3\n",
     [](PatchSet& set) {
         set.things[firstNegative].mass = 2, set.states[firstNegative].duration = 4;
         set.ammo[firstNegative].boxAmmo = 0, set.ammo[firstNegative].given = 2;
         Write(set, RecordKind::Sprite, firstNegative, lumpNameField, "BOOO");
     },
     "Thing -1879048191 (Ghoul)\nMass = 2\n\nFrame -5\nDuration = 3\n\nFrame -1879048192\nDuration = 4\n\n"
     "Ammo -1879048192 (Fuel)\nBox ammo = 0\n\n[SPRITES]\nGHUL = BOOO\n",
     true, true, true},
    {"MiscAndCheats", "Misc 0\nMax Health = 5\n",
     [](PatchSet& set) { set.misc.bfgCells = 9, set.cheats[0].text = "id"; },
     "Cheat 0\nChange music = id\n\nMisc 0\nMax Health = 5\nBFG Cells/Shot = 9\n"},
};

class DocumentMerge : public testing::TestWithParam<MergeRow> {};
INSTANTIATE_TEST_SUITE_P(Document, DocumentMerge, testing::ValuesIn(mergeRows),
                         [](const auto& row) { return row.param.name; });

TEST_P(DocumentMerge, TouchesOnlyTheLinesOfWhatChanged) {
    const MergeRow& row = GetParam();
    const EngineConfiguration engine = row.id24    ? SmallId24Engine()
                                       : row.mbf21 ? SmallMbf21Engine()
                                                   : AsEngines(row.extended);
    const PatchSet defaults = SmallDefaults(engine);
    PatchDocument document, merged;
    PatchSet set;
    ASSERT_TRUE(document.Read(row.before, engine, defaults, set).status);
    row.edit(set);
    for (StringRecord& string : set.strings.Dense())
        string.length = static_cast<std::int32_t>(string.text.size());
    DeriveMisc(set.misc);
    const Status status = MergeIntoDocument(document, set, defaults, engine, merged);
    ASSERT_TRUE(status) << status.Reason();
    EXPECT_EQ(merged.Bytes(), row.after);
}

TEST(PatchDocumentTest, WritesAndTakesOutTheSectionsOfMadeRecords) {
    EngineConfiguration engine = AsEngines(true);
    engine.dialect.unlimited = true;
    const PatchSet defaults = SmallDefaults(engine);
    const auto make = [](PatchSet& set, RecordKind kind, std::int32_t number, bool exists = true) {
        WriteCell(set, {kind, number, existsField}, exists ? 1 : 0);
    };
    const std::string all =
        "Thing 9 (A)\nMass = 1\n# its own\n\nFrame 3\nDuration = 2\n\n# gone\nFrame 70\nDuration = 5\n\n"
        "[CODEPTR]\nFrame 3 = Fire\nFrame 70 = Fire\nFrame 71 = Last\n\n[SPRITES]\n77 = ABCD\nTROO = IMPX # x\n\n"
        "[SOUNDS]\n9 = nine\n";
    struct Row {
        std::string before;
        std::function<void(PatchSet&)> edit;
        std::string after; // or, behind "!", why it fails
    };
    const Row rows[]{
        {"Frame 3\nDuration = 2\n",
         [&](PatchSet& set) { make(set, RecordKind::State, 70), make(set, RecordKind::Thing, INT32_MAX - 1); },
         "Thing 2147483647\n\nFrame 3\nDuration = 2\n\nFrame 70\n"},
        {all,
         [&](PatchSet& set) {
             make(set, RecordKind::State, 70, false), make(set, RecordKind::Thing, 8, false);
             make(set, RecordKind::Sprite, 77, false), set.notes.clear();
         },
         "Frame 3\nDuration = 2\n\n[CODEPTR]\nFrame 3 = Fire\nFrame 71 = Last\n\n[SPRITES]\nTROO = IMPX # "
         "x\n\n[SOUNDS]\n9 = nine\n"},
        {"Frame 70\nDuration = 5\n", [](PatchSet& set) { set.states[70].duration = -1; }, "Frame 70\n"},
        {"[CODEPTR]\nFrame 71 = Last\n", [](PatchSet& set) { set.states[71].codePointer = 0; }, "Frame 71\n\n"},
        {"[SPRITES]\nTROO = IMPX # x\n",
         [&](PatchSet& set) {
             make(set, RecordKind::Sprite, 80);
             WriteCell(set, {RecordKind::Sprite, 80, lumpNameField}, "NEWS");
             WriteCell(set, {RecordKind::Sprite, 0, lumpNameField}, "TROX");
             WriteCell(set, {RecordKind::Sound, 1, lumpNameField}, "bang");
         },
         "[SPRITES]\nTROO = TROX # x\n80 = NEWS\n\n[SOUNDS]\npistol = bang\n"},
        {"[STRINGS]\nQUIT = a\n\nFrame 70\nDuration = 2\n\nQUIT = b\n",
         [&](PatchSet& set) { make(set, RecordKind::State, 70, false); },
         "[STRINGS]\nQUIT = a\n\nMisc 0\n\nQUIT = b\n"},
        {"Frame 3\n", [&](PatchSet& set) { make(set, RecordKind::Sprite, 80); },
         "!the name of sprite 80 must have four letters"},
    };
    for (const Row& row : rows) {
        PatchDocument document, merged;
        PatchSet set;
        ASSERT_TRUE(document.Read(row.before, engine, defaults, set).status);
        row.edit(set);
        const Status status = MergeIntoDocument(document, set, defaults, engine, merged);
        EXPECT_EQ(status ? merged.Bytes() : "!" + status.Reason(), row.after);
    }
}

/// Patches of random lines, all in the forms that one may meet, and random edits of them.
class Dice {
public:
    Dice(unsigned seed, bool unlimited) : engine_(seed), unlimited_(unlimited) {}
    std::size_t Below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(engine_); }
    template <std::size_t count> std::string Pick(const char* const (&choices)[count]) { return choices[Below(count)]; }

    std::string Patch() {
        static constexpr const char* lines[]{"Thing 2 (Zombie Man)",
                                             "Thing 3",
                                             "thing 1 (a (b))",
                                             "Frame 1",
                                             "Frame 4",
                                             "Sound 2",
                                             "Weapon 1 (Gun)",
                                             "Ammo 0",
                                             "Misc 0",
                                             "Cheat 0",
                                             "[CODEPTR]",
                                             "[STRINGS]",
                                             "[PARS]",
                                             "Pointer 1 (x 3)",
                                             "Text 5 2\ndemo1ab",
                                             "Text 4 4\nTROOABCD",
                                             "Text 6 4\npistolbang",
                                             "Text 5 4\nintrointe",
                                             "[MUSIC]",
                                             "intro = song # x",
                                             "E1M1 = e1m2",
                                             "evil = map",
                                             "[HELPER]",
                                             "type = 2",
                                             "Hit points = 5",
                                             "Mass = 0x10",
                                             "Bits = SOLID | FLOAT",
                                             "Bits = 5",
                                             "Duration = 7",
                                             "Next frame = 3",
                                             "Codep Frame = 2",
                                             "Frame 2 = Fire",
                                             "Frame 3 = NULL",
                                             "QUIT = Bye",
                                             "E1TEXT = a\\n\\\n  b",
                                             "USER_X = kept",
                                             "par 1 2 30",
                                             "par 5 60 # x",
                                             "Ammo type = 3",
                                             "Max ammo = 9",
                                             "Max Health = 300",
                                             "Change music = xy",
                                             "# comment",
                                             "#$Editor x = 1",
                                             " Mass = 3",
                                             "\tMass = 4",
                                             "no pair",
                                             "Unknown key = 3",
                                             "Value = 5",
                                             "",
                                             "",
                                             "",
                                             "",
                                             "Doom version = 19",
                                             "Args1 = 0",
                                             "Args2 = 5",
                                             "MBF21 Bits = rip",
                                             "Infighting group = 2",
                                             "Ammo per shot = 3",
                                             "Thing -1879048191 (Ghoul)",
                                             "Frame -1879048192",
                                             "ID24 Bits = norespawn",
                                             "Pickup message =  USER_X # x",
                                             "Tranmap = X",
                                             "Carousel icon=ICON",
                                             "Initial Owned = true",
                                             "Box ammo = 0",
                                             "Valid hashes = 0123456789ABCDEF"};
        static constexpr const char* unlimitedLines[]{
            "Thing 9 (Made)",   "Thing 2000000000",  "Frame 70",   "Frame 2147483647",
            "Frame -3",         "Sound 9",           "[SPRITES]",  "[SOUNDS]",
            "TROO = ABCD",      "77 = EFGH",         "9 = nine",   "pistol = bang",
            "Frame 71 = Fire",  "Next frame = 70",   "",           "Weapon -1879048192",
            "Ammo -1879048192", "Sound -1879048192", "GHUL = BOOO"};
        std::string patch;
        for (std::size_t count = Below(40); count-- > 0;)
            patch += (unlimited_ && Below(3) == 0 ? Pick(unlimitedLines) : Pick(lines)) + "\n";
        if (Below(3) == 0 && !patch.empty())
            patch.pop_back();
        return Below(2) == 0 ? ReplaceAll(patch, "\n", "\r\n") : patch;
    }

    void Edit(PatchSet& set, const PatchSet& defaults, FieldLevel level) {
        const auto kind = static_cast<RecordKind>(Below(static_cast<std::size_t>(RecordKind::Music) + 1));
        if (unlimited_ && Below(3) == 0)
            return EditExistence(set, kind);
        const std::vector<std::int32_t> numbers = RecordNumbers(set, kind);
        if (HasLumpName(kind) && Below(2) == 0)
            return EditName(set, defaults, {kind, numbers[Below(numbers.size())], lumpNameField});
        const std::vector<Cell> cells = CellsOf(kind, numbers.empty() ? 0 : numbers[Below(numbers.size())]);
        if (numbers.empty() || cells.empty())
            return;
        const Cell cell = cells[Below(cells.size())];
        if (Below(4) == 0)
            return EditNote(set, Below(3) == 0 ? patchNotes : Cell{kind, cell.index, noteField});
        // The last string of the small engine is there twice: a patch that quotes it means the first one.
        const bool quotedTwice = kind == RecordKind::String && cell.index == 3;
        const RowFacts facts = cell.field >= 0 ? FactsOf(kind, cell.field) : RowFacts();
        const TextField* text = TextFieldAt(cell.field);
        if (quotedTwice || !facts.inPatch || facts.since > level || (text != nullptr && text->since > level))
            return;
        if (kind == RecordKind::Par) {
            if (!set.pars.empty() && Below(2) == 0)
                set.pars.erase(set.pars.begin() + static_cast<std::ptrdiff_t>(Below(set.pars.size())));
            else
                set.pars.push_back({static_cast<std::int32_t>(Below(4)), 1, static_cast<std::int32_t>(Below(99))});
        } else if (facts.mayBeUnset && Below(3) == 0) {
            WriteCell(set, cell, Unset());
        } else if (Below(3) == 0) {
            WriteCell(set, cell, ReadCell(defaults, cell));
        } else if (text != nullptr) {
            WriteCell(set, cell, Pick({"NAME", "USER_MESSAGE"}));
        } else if (cell.field == nameField) {
            WriteCell(set, cell, Pick({"New", "Two words", "(x)"}));
        } else if (kind == RecordKind::Cheat) {
            WriteCell(set, cell, Pick({"x", "id code", "a = b", "#"}));
        } else if (cell.field == textField) {
            WriteCell(set, cell, Pick({"x", "two\nlines", "a\n\nb c\n", "a = b"}));
        } else {
            // The small engine's code pointers are 0 to 4, of which a frame has those up to 3.
            WriteCell(set, cell, static_cast<std::int32_t>(Below(4)));
        }
        DeriveMisc(set.misc);
    }

    bool Removed() const { return removed_; }

private:
    /// Makes a record, removes one or gives one another name.
    void EditExistence(PatchSet& set, RecordKind kind) {
        const auto number = std::int32_t{std::array{6, 9, 70, 77, INT32_MAX - 1}[Below(5)]};
        const Cell exists{kind, number, existsField}, name{kind, number, lumpNameField};
        if (!HasCell(set, exists))
            return;
        const bool remove = HasRecord(set, kind, number) && Below(2) == 0;
        WriteCell(set, exists, remove ? 0 : 1);
        if (remove)
            set.notes.erase({kind, number});
        else if (kind == RecordKind::Sprite || (kind == RecordKind::Sound && Below(2) == 0))
            WriteCell(set, name, Pick({"NEWS", "SPR2"}));
        removed_ = removed_ || remove;
    }

    /// Only those that patches for the engine can name.
    void EditName(PatchSet& set, const PatchSet& defaults, const Cell& name) {
        if (unlimited_ ? ReadCell(defaults, name) != CellValue("")
                       : !NameInTexts(defaults, name.kind, name.index).empty())
            WriteCell(set, name, Below(3) == 0 ? ReadCell(defaults, name) : CellValue(Pick({"NEWS", "SPR2"})));
    }

    void EditNote(PatchSet& set, const Cell& note) {
        if (!HasCell(set, note))
            return;
        std::string text = std::get<std::string>(ReadCell(set, note));
        switch (Below(4)) {
        case 0:
            text = Pick({"", "", "a note", " \nof\n\n# lines\n"});
            break;
        case 1:
            text += Pick({"\nmore", "\n", "comment"});
            break;
        case 2:
            text = Pick({"first\n", "\n\n"}) + text;
            break;
        default:
            text.erase(std::min(text.size(), text.find('\n')));
        }
        WriteCell(set, note, text);
    }

    std::mt19937 engine_;
    bool unlimited_, removed_ = false; // a record with all lines of its sections
};

/// The lines that no edit may touch; comments may be, when notes are edited.
std::vector<std::string> OtherLinesOf(const std::string& text, bool comments) {
    std::vector<std::string> lines;
    for (PatchLines each(text); !each.AtEnd();)
        if (const std::string_view line = each.Next(); line.starts_with("#$") || (comments && line.starts_with('#')) ||
                                                       line == "Unknown key = 3" || line == "no pair" ||
                                                       line == "USER_X = kept")
            lines.emplace_back(line);
    return lines;
}

TEST(PatchDocumentTest, AnyEditsReadBackAndLeaveTheOtherLinesAlone) {
    constexpr unsigned patches = 4000;
    unsigned refused = 0;
    for (unsigned seed = 0; seed < patches; ++seed) {
        EngineConfiguration engine = seed % 5 == 4   ? SmallId24Engine()
                                     : seed % 3 == 2 ? SmallMbf21Engine()
                                                     : AsEngines(seed % 3 == 0);
        engine.dialect.unlimited |= seed % 4 == 0;
        Dice dice(seed, engine.dialect.unlimited);
        const PatchSet defaults = SmallDefaults(engine);
        const std::string patch = dice.Patch();
        PatchDocument document, merged;
        PatchSet set;
        if (!document.Read(patch, engine, defaults, set).status)
            continue; // not one line that engines know
        ASSERT_TRUE(MergeIntoDocument(document, set, defaults, engine, merged));
        ASSERT_EQ(merged.Bytes(), patch) << "seed " << seed;

        const PatchSet opened = set;
        for (std::size_t edits = dice.Below(4) + 1; edits-- > 0;)
            dice.Edit(set, defaults, engine.dialect.fields);
        const Status status = MergeIntoDocument(document, set, defaults, engine, merged);
        BytePieces bytes;
        ASSERT_EQ(static_cast<bool>(MergedBytes(document, set, defaults, engine, bytes)), static_cast<bool>(status));
        if (engine.dialect.engineRulesOnly) {
            PatchData fresh;
            PatchSet read;
            fresh.defaults = defaults;
            fresh.current = set;
            fresh.current.notes.clear(); // which need not stand above a header
            ASSERT_TRUE(
                modPatchFiles::ParsePatch(modPatchFiles::FormatPatch(fresh, engine), engine, defaults, read).status);
            ASSERT_EQ(modPatchDiff::Differences(fresh.current, read, engine), std::vector<std::string>()) << seed;
        }
        if (!status) { // a line that resumes its section stands between others that are read there
            ++refused;
            continue;
        }
        const bool sameNotes = set.notes == opened.notes;
        if (!dice.Removed()) {
            ASSERT_EQ(OtherLinesOf(merged.Bytes(), sameNotes), OtherLinesOf(patch, sameNotes)) << "seed " << seed;
        }
        ASSERT_EQ(bytes.Joined(), merged.Bytes()) << "seed " << seed;
        PatchDocument back;
        ASSERT_EQ(modPatchDiff::Differences(set, merged.Said(), engine), std::vector<std::string>());
        const Status undone = MergeIntoDocument(merged, opened, defaults, engine, back);
        ASSERT_TRUE(undone) << "seed " << seed << ": " << undone.Reason() << "\n"
                            << patch << "\n---\n"
                            << merged.Bytes() << "\n---\n"
                            << back.Bytes();
    }
    EXPECT_LT(refused, patches / 1000);
}

TEST(PatchDocumentTest, KeepsTheLinesOfTheSessionUpToDate) {
    const EngineConfiguration engine = AsEngines(true);
    PatchData patch = SmallPatch(engine);
    auto document = std::make_shared<PatchDocument>();
    ASSERT_TRUE(document
                    ->Read("engine config =old.cfg # mine\r\nIWAD=\r\nData WAD = C:\\wads\\My.wad\r\n# IWAD = x\r\n\r\n"
                           "[STRINGS]\r\nIWAD = no\r\n",
                           engine, patch.defaults, patch.current)
                    .status);
    patch.document = document;
    patch.engineConfig = "new.cfg", patch.iwadPath = "/games/doom2.wad", patch.dataWadPaths = {"/home/my.wad"};
    BytePieces bytes;
    ASSERT_TRUE(modPatchFiles::FormatForSaving(patch, engine, bytes));
    EXPECT_EQ(bytes.Joined(),
              "engine config =new.cfg # mine\r\nIWAD= /games/doom2.wad\r\nData WAD = C:\\wads\\My.wad\r\n"
              "# IWAD = x\r\n\r\n[STRINGS]\r\nIWAD = no\r\n");
    patch.engineConfig.clear(), patch.iwadPath = "a#b", patch.dataWadPaths = {"\nx"};
    ASSERT_TRUE(modPatchFiles::FormatForSaving(patch, engine, bytes));
    EXPECT_EQ(bytes.Joined(), document->Bytes());
}

TEST(PatchDocumentTest, RefusesAnEditAfterWhichAHeaderWouldBeNone) {
    const EngineConfiguration engine = AsEngines(true);
    const PatchSet defaults = SmallDefaults(engine);
    PatchDocument document, merged;
    PatchSet set;
    ASSERT_TRUE(document.Read("Thing 1\nMass = 2\n Hit points = 3\nThing 2\nMass = 1\n", engine, defaults, set).status);
    set.things[0].hitPoints = defaults.things[0].hitPoints; // the line that ends its section goes
    BytePieces bytes;
    EXPECT_FALSE(MergeIntoDocument(document, set, defaults, engine, merged));
    EXPECT_FALSE(MergedBytes(document, set, defaults, engine, bytes));
}

TEST(PatchDocumentTest, ANewPatchKeepsBitsWithoutAName) {
    const EngineConfiguration engine = AsEngines(true);
    PatchData patch = SmallPatch(engine);
    patch.current.things[0].bits = 0x102;
    EXPECT_NE(modPatchFiles::FormatPatch(patch, engine).find("Bits = 258\r\n"), std::string::npos);
}

TEST(PatchDocumentTest, ANewPatchHasTheNamesOfLumpsAndTheHelper) {
    for (const bool unlimited : {false, true}) {
        EngineConfiguration engine = AsEngines(true);
        engine.dialect.unlimited = unlimited;
        PatchData patch = SmallPatch(engine);
        Write(patch.current, RecordKind::Sprite, 1, lumpNameField, "NEWS");
        Write(patch.current, RecordKind::Sound, 3, lumpNameField, "growl");
        Write(patch.current, RecordKind::Music, 28, lumpNameField, "outer");
        WriteCell(patch.current, {RecordKind::Misc, 0, helperField}, 2);
        const std::string text = modPatchFiles::FormatPatch(patch, engine);
        EXPECT_EQ(text.find("Text 4 4\r\nSHTGNEWS\r\n") != std::string::npos, !unlimited) << text;
        PatchSet read;
        ASSERT_TRUE(PatchDocument().Read(text, engine, patch.defaults, read).status);
        EXPECT_EQ(modPatchDiff::Differences(patch.current, read, engine), std::vector<std::string>());
        EXPECT_EQ(ReadCell(read, {RecordKind::Sound, 3, lumpNameField}), CellValue("growl"));
        EXPECT_EQ(ReadCell(read, {RecordKind::Music, 28, lumpNameField}), CellValue("outer"));
        EXPECT_EQ(text.find("[MUSIC]\r\ninter = outer\r\n") != std::string::npos, unlimited) << text;
        EXPECT_EQ(ReadCell(read, {RecordKind::Misc, 0, helperField}), CellValue(2));
    }
}

TEST(PatchDocumentTest, RefusesAFileWithoutOneLineThatEnginesKnow) {
    const EngineConfiguration engine = AsEngines(true);
    PatchDocument document;
    PatchSet set;
    const PatchSet defaults = SmallDefaults(engine);
    for (const std::string& bytes :
         {std::string(100000, '\0'), std::string("\x89PNG\r\n\x1a\n"), std::string("hello\n")})
        EXPECT_EQ(document.Read(bytes, engine, defaults, set).status.Reason(),
                  "The file holds no line that a game engine knows.");
    EXPECT_TRUE(document.Read("", engine, defaults, set).status);
}

TEST(PatchDocumentTest, FailsForATextThatEnginesCouldNotReadBack) {
    const EngineConfiguration engine = AsEngines(true);
    const PatchSet defaults = SmallDefaults(engine);
    for (const char* text : {"", " x", "x ", "x\\", "a\\nb", "a\rb"}) {
        PatchDocument document;
        PatchSet set;
        ASSERT_TRUE(document.Read("[STRINGS]\nQUIT = x\n", engine, defaults, set).status);
        set.strings[2].text = text;
        PatchDocument merged;
        EXPECT_FALSE(MergeIntoDocument(document, set, defaults, engine, merged)) << text;
    }
}

} // namespace
} // namespace plinket3::test
