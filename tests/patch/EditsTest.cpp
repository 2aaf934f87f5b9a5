#include "patch/Edits.h"
#include "patch/LumpNames.h"

#include "tests/support/SmallEngine.h"

#include <gtest/gtest.h>

namespace plinket3 {
namespace {

constexpr int hitPointsRow = RowOf(&ThingRecord::hitPoints);
constexpr int durationRow = RowOf(&StateRecord::duration);
constexpr Cell playersHitPoints{RecordKind::Thing, 0, hitPointsRow}, impHitPoints{RecordKind::Thing, 2, hitPointsRow};

class EditsTest : public ::testing::Test {
protected:
    EditsTest() {
        edits.Listen([this](const std::vector<Cell>& cells) { told.push_back(cells); });
    }

    std::int32_t HitPoints() const { return patch.current.things[2].hitPoints; }

    PatchData patch = test::SmallPatch(test::SmallEngine(false));
    Edits edits{patch};
    std::vector<std::vector<Cell>> told;
};

TEST_F(EditsTest, OneEditIsOneNamedStepThatCanBeUndoneAndRedone) {
    edits.Store(impHitPoints, 200);
    EXPECT_EQ(HitPoints(), 200);
    EXPECT_TRUE(patch.changed);
    EXPECT_EQ(edits.UndoName(), "hit points of Imp");
    EXPECT_EQ(told, (std::vector<std::vector<Cell>>{{impHitPoints}}));
    edits.Undo();
    EXPECT_EQ(HitPoints(), 0);
    EXPECT_FALSE(patch.changed);
    EXPECT_EQ(edits.RedoName(), "hit points of Imp");
    edits.Redo();
    EXPECT_EQ(HitPoints(), 200);
    EXPECT_EQ(told.size(), 3U);
}

TEST_F(EditsTest, TypingInOneFieldMergesUntilItEndsOrLeadsBack) {
    for (const int typed : {1, 12, 120})
        edits.Store(impHitPoints, typed, true);
    edits.EndTyping();
    for (const int typed : {2, 20, 120}) // no step
        edits.Store(impHitPoints, typed, true);
    edits.Store(impHitPoints, 3, true); // a new run
    edits.Undo();
    EXPECT_EQ(HitPoints(), 120);
    edits.Undo();
    EXPECT_EQ(HitPoints(), 0);
    EXPECT_FALSE(edits.CanUndo());
}

TEST_F(EditsTest, EqualValuesAndMissingCellsAreNoStep) {
    edits.Store(impHitPoints, 0);
    edits.Store({RecordKind::Thing, 3, hitPointsRow}, 1);
    edits.Store({RecordKind::Thing, -1, hitPointsRow}, 1);
    edits.Store({RecordKind::Thing, 0, 99}, 1);
    edits.Store({RecordKind::Sound, 0, nameField}, std::string("x"));
    EXPECT_FALSE(edits.CanUndo());
    EXPECT_FALSE(patch.changed);
}

TEST_F(EditsTest, TypingDoesNotMergeAcrossASaveOrAnotherField) {
    edits.Store(impHitPoints, 1, true);
    edits.MarkSaved();
    edits.Store(impHitPoints, 12, true);
    EXPECT_TRUE(patch.changed);
    edits.Undo();
    EXPECT_EQ(HitPoints(), 1);
    EXPECT_FALSE(patch.changed);
    edits.Redo();
    edits.Store(playersHitPoints, 7, true);
    edits.Store(impHitPoints, 13, true);
    edits.Undo();
    EXPECT_EQ(HitPoints(), 12);
}

TEST_F(EditsTest, TypingOverManyRecordsMergesAlsoWhenSomeHeldTheValue) {
    const auto type = [this](std::int32_t duration) {
        edits.StoreGroup(
            {{{RecordKind::State, 1, durationRow}, duration}, {{RecordKind::State, 2, durationRow}, duration}},
            "duration of 2 frames", true);
    };
    patch.current.states[1].duration = 4;
    type(4);
    type(42);
    EXPECT_EQ(patch.current.states[2].duration, 42);
    edits.Undo();
    EXPECT_EQ(patch.current.states[1].duration, 4);
    EXPECT_EQ(patch.current.states[2].duration, 0);
    EXPECT_FALSE(edits.CanUndo());
}

TEST_F(EditsTest, ChangedFlagFollowsTheSavedState) {
    edits.Store(impHitPoints, 1);
    edits.MarkSaved();
    edits.Undo();
    EXPECT_TRUE(patch.changed) << "the file on disk holds what was undone";
    edits.Redo();
    EXPECT_FALSE(patch.changed);
    edits.Undo();
    edits.Store(impHitPoints, 2); // what was saved is out of reach now
    EXPECT_TRUE(patch.changed) << "as many steps as were saved, but others";
    edits.Undo();
    EXPECT_TRUE(patch.changed);
    edits.Clear();
    EXPECT_FALSE(patch.changed);
    EXPECT_FALSE(edits.CanUndo() || edits.CanRedo());
    edits.MarkChangedForGood();
    EXPECT_TRUE(patch.changed);
}

TEST_F(EditsTest, UnsetIsAValueThatIsStoredUndoneAndRestored) {
    constexpr Cell argument{RecordKind::State, 2, RowOf(&StateRecord::arg3)};
    constexpr Cell group{RecordKind::Thing, 2, RowOf(&ThingRecord::infightingGroup)};
    constexpr Cell dropped{RecordKind::Thing, 2, RowOf(&ThingRecord::droppedItem)};
    EXPECT_EQ(edits.Value(argument), CellValue(Unset()));
    edits.Store(argument, 0);
    EXPECT_EQ(edits.Value(argument), CellValue(0));
    edits.Store(argument, INT32_MIN);
    edits.Store(argument, Unset());
    EXPECT_TRUE(edits.IsDefault(argument));
    edits.Undo();
    EXPECT_EQ(edits.Value(argument), CellValue(INT32_MIN));
    edits.Store(group, -5); // limited
    EXPECT_EQ(edits.Value(group), CellValue(0));
    edits.Store(dropped, 99);
    EXPECT_EQ(edits.Value(dropped), CellValue(3));
    edits.Store(dropped, Unset()); // may not be so
    EXPECT_EQ(edits.Value(dropped), CellValue(3));
    edits.RestoreRecords(RecordKind::Thing, {2}, "things");
    edits.RestoreRecords(RecordKind::State, {2}, "frames");
    EXPECT_EQ(patch.current, patch.defaults);
}

TEST_F(EditsTest, NotesAreValuesThatRestoringARecordLeavesAlone) {
    constexpr Cell note{RecordKind::Thing, 2, noteField};
    edits.Store(patchNotes, "by me");
    EXPECT_EQ(edits.UndoName(), "patch notes");
    edits.Store(note, "x");
    edits.Store({RecordKind::Cheat, 0, noteField}, "has none");
    EXPECT_EQ(edits.UndoName(), "note of Imp");
    edits.RestoreRecords(RecordKind::Thing, {2}, "things");
    EXPECT_EQ(edits.Value(note), CellValue("x"));
    edits.Undo();
    EXPECT_EQ(edits.Value(note), CellValue(""));
    edits.Undo();
    EXPECT_EQ(patch.current, patch.defaults);
}

TEST_F(EditsTest, MakesAndRemovesRecordsAsOneStep) {
    edits.MakeRecord(RecordKind::State, 2147483646);
    EXPECT_EQ(edits.UndoName(), "new frame 2147483646");
    EXPECT_EQ(edits.FreeNumber(RecordKind::State), 6);
    const StateRecord made = patch.current.states[2147483646];
    EXPECT_EQ(made, (StateRecord{{138, 0, -1, 0, 2147483646, 0, 0}, 0}));
    edits.Store({RecordKind::State, 2147483646, durationRow}, 9);
    edits.Store({RecordKind::State, 2147483646, noteField}, "mine");
    EXPECT_FALSE(edits.IsDefault({RecordKind::State, 2147483646, durationRow}));
    const PatchSet before = patch.current;
    edits.RemoveRecords(RecordKind::State, {1, 2147483646}, "frames");
    EXPECT_EQ(edits.UndoName(), "remove frame 2147483646");
    EXPECT_EQ(patch.current, patch.defaults) << "an engine's own state stays";
    edits.Undo();
    EXPECT_EQ(patch.current, before);
    edits.RestoreRecords(RecordKind::State, {2147483646}, "frames");
    EXPECT_EQ(patch.current.states[2147483646], made);
    while (edits.CanUndo())
        edits.Undo();
    EXPECT_EQ(patch.current, patch.defaults);
    edits.Redo();
    EXPECT_TRUE(edits.IsMade(RecordKind::State, 2147483646));

    edits.MakeRecord(RecordKind::Thing, 3);
    EXPECT_EQ(edits.UndoName(), "new thing 4") << "patches count them from 1";
    edits.Store({RecordKind::Thing, 3, hitPointsRow}, 1);
    EXPECT_EQ(edits.UndoName(), "hit points of thing 4");
    const PatchSet all = patch.current;
    for (const auto& [kind, number] : {std::pair(RecordKind::State, 2), std::pair(RecordKind::State, -3),
                                       std::pair(RecordKind::Thing, INT32_MAX), std::pair(RecordKind::Weapon, 7)})
        edits.MakeRecord(kind, number);
    EXPECT_EQ(patch.current, all);
    EXPECT_EQ(edits.FreeNumber(RecordKind::Weapon), noRecord);
    edits.MakeRecord(RecordKind::Sprite, 77, "NEWS");
    EXPECT_EQ(patch.current.SpriteName(77), "NEWS");
    edits.Undo();
    EXPECT_EQ(patch.current, all) << "one step makes and names it";
}

TEST(LumpNames, AreWhatLumpsAndTheNewestEnginesAllow) {
    constexpr const char* spriteLength = "The name of a sprite has 4 characters.";
    constexpr const char* soundLength = "The name of a sound has 1 to 6 characters.";
    constexpr const char* characters = "Names of lumps have letters, digits and [ ] - _ \\ only.";
    const struct {
        RecordKind kind;
        const char* name;
        const char* why;
    } rows[]{
        {RecordKind::Sprite, "VIL\\", ""},           {RecordKind::Sprite, "[_-]", ""},
        {RecordKind::Sprite, "TRO", spriteLength},   {RecordKind::Sprite, "TROOP", spriteLength},
        {RecordKind::Sprite, "", spriteLength},      {RecordKind::Sprite, "TR O", characters},
        {RecordKind::Sprite, "TR\xC4O", characters}, {RecordKind::Sound, "p", ""},
        {RecordKind::Sound, "Pistl9", ""},           {RecordKind::Sound, "", soundLength},
        {RecordKind::Sound, "pistols", soundLength}, {RecordKind::Sound, "a#b", characters},
    };
    for (const auto& row : rows)
        EXPECT_EQ(MayBeLumpName(row.kind, row.name).Reason(), row.why) << row.name;
}

TEST_F(EditsTest, SaysWhyARecordCannotBeMade) {
    patch.defaults.sounds.Add(-1879048192);
    patch.defaults.sprites.Add(900); // as a table that was made of a patch may have it
    patch.current = patch.defaults;
    const struct {
        RecordKind kind;
        std::int32_t number;
        const char* reason;
    } rows[]{
        {RecordKind::Thing, 2, "There is a thing 3 already."},
        {RecordKind::Sound, -1879048192, "There is a sound -1879048192 already."},
        {RecordKind::Sound, -1879048191,
         "The number of sound -1879048191 belongs to id Software: patches change what has it, but make nothing new of "
         "it."},
        {RecordKind::State, -1879048193,
         "The number of frame -1879048193 belongs to the engine itself: patches change what has it, but make nothing "
         "new of it."},
        {RecordKind::State, -2,
         "The number of frame -2 belongs to agreements between engines: patches change what has it, but make nothing "
         "new of it."},
        {RecordKind::Thing, INT32_MAX, "There can be no thing 2147483648."},
        {RecordKind::Ammo, 7, "There can be no ammo 7."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(edits.MayMake(row.kind, row.number).Reason(), row.reason);
        edits.MakeRecord(row.kind, row.number);
    }
    edits.RemoveRecords(RecordKind::Sprite, {900}, "sprites");
    EXPECT_EQ(patch.current, patch.defaults);
    EXPECT_TRUE(edits.MayMake(RecordKind::Sprite, 901));
}

TEST_F(EditsTest, TextFieldsAreValuesAsOthers) {
    constexpr Cell message{RecordKind::Thing, 2, TextCell(0)}, icon{RecordKind::Weapon, 1, TextCell(3)};
    WriteCell(patch.defaults, icon, "SMPISG");
    patch.current = patch.defaults;
    edits.Store(message, "USER_X");
    EXPECT_EQ(edits.UndoName(), "pickup message of Imp");
    edits.Store(icon, "OTHER");
    edits.Store({RecordKind::Thing, 2, TextCell(2)}, "of frames only");
    edits.Store({RecordKind::Thing, 99, TextCell(0)}, "of no thing");
    EXPECT_EQ(patch.current.texts.size(), 2U);
    EXPECT_FALSE(edits.IsDefault(icon));
    edits.RestoreRecords(RecordKind::Weapon, {1}, "weapons");
    EXPECT_EQ(edits.Value(icon), CellValue("SMPISG"));
    edits.MakeRecord(RecordKind::Thing, 9);
    edits.Store({RecordKind::Thing, 9, TextCell(1)}, "RED");
    edits.RemoveRecords(RecordKind::Thing, {9}, "things");
    EXPECT_EQ(patch.current.texts.size(), 2U);
    edits.Undo();
    EXPECT_EQ(patch.current.TextOf(RecordKind::Thing, 9, 1), "RED");
    while (edits.CanUndo())
        edits.Undo();
    EXPECT_EQ(patch.current, patch.defaults);
}

TEST_F(EditsTest, StoresAndRestoresWhatTheEngineDerives) {
    edits.Store({RecordKind::Misc, 0, RowOf(&MiscRecord::maxHealth)}, 150);
    EXPECT_EQ(patch.current.misc.secondMaxHealth, 150);
    edits.Store({RecordKind::Misc, 0, RowOf(&MiscRecord::bfgCells)}, 0);
    EXPECT_EQ(patch.current.misc.spare2, 255) << "spare byte 1 is 0, too";
    edits.Restore({{RecordKind::Misc, 0, RowOf(&MiscRecord::maxHealth)}}, "restore");
    EXPECT_EQ(patch.current.misc.secondMaxHealth, 0);
    while (edits.CanUndo())
        edits.Undo();
    EXPECT_EQ(patch.current, patch.defaults);
}

} // namespace
} // namespace plinket3
