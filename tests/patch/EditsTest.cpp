#include "patch/Edits.h"

#include <gtest/gtest.h>

namespace plinket3 {
namespace {

constexpr int hitPointsRow = RowOf(&ThingRecord::hitPoints);
constexpr int durationRow = RowOf(&StateRecord::duration);
constexpr Cell impHitPoints{RecordKind::Thing, 1, hitPointsRow};

class EditsTest : public ::testing::Test {
protected:
    EditsTest() {
        PatchSet& set = patch.defaults;
        set.things.resize(2);
        set.things[0].name = "Player";
        set.things[1].name = "Imp";
        set.things[1].hitPoints = 60;
        set.states.resize(4);
        set.sounds.resize(3);
        set.sprites.resize(2);
        set.strings = {{0, 5, "Hello"}};
        set.weapons.emplace_back().name = "Fist";
        set.ammo.emplace_back().name = "Bullets";
        set.cheats.resize(17);
        set.misc.maxHealth = set.misc.secondMaxHealth = 200;
        set.misc.bfgCells = 40;
        patch.current = set;
        edits.Listen([this](const std::vector<Cell>& cells) { told.push_back(cells); });
    }

    std::int32_t HitPoints() const { return patch.current.things[1].hitPoints; }

    PatchData patch;
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
    EXPECT_EQ(HitPoints(), 60);
    EXPECT_FALSE(patch.changed);
    EXPECT_EQ(edits.RedoName(), "hit points of Imp");
    edits.Redo();
    EXPECT_EQ(HitPoints(), 200);
    EXPECT_EQ(told.size(), 3U);
}

TEST_F(EditsTest, TypingBackToTheOldValueIsNoStep) {
    edits.Store(impHitPoints, 100);
    edits.EndTyping();
    for (const std::int32_t typed : {2, 20, 100})
        edits.Store(impHitPoints, typed, true);
    edits.Store(impHitPoints, 3, true); // a new run
    edits.Undo();
    EXPECT_EQ(HitPoints(), 100);
    edits.Undo();
    EXPECT_EQ(HitPoints(), 60);
    EXPECT_FALSE(edits.CanUndo());
}

TEST_F(EditsTest, EqualValuesAndMissingCellsAreNoStep) {
    edits.Store(impHitPoints, 60);
    edits.Store({RecordKind::Thing, 2, hitPointsRow}, 1);
    edits.Store({RecordKind::Thing, -1, hitPointsRow}, 1);
    edits.Store({RecordKind::Thing, 0, 99}, 1);
    edits.Store({RecordKind::Sound, 0, nameField}, std::string("x"));
    EXPECT_FALSE(edits.CanUndo());
    EXPECT_FALSE(patch.changed);
}

TEST_F(EditsTest, TypingInOneFieldMergesUntilItEnds) {
    for (const int typed : {1, 12, 120})
        edits.Store(impHitPoints, typed, true);
    edits.EndTyping();
    edits.Store(impHitPoints, 5, true);
    edits.Undo();
    EXPECT_EQ(HitPoints(), 120);
    edits.Undo();
    EXPECT_EQ(HitPoints(), 60);
    EXPECT_FALSE(edits.CanUndo());
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
    edits.Store({RecordKind::Thing, 0, hitPointsRow}, 7, true);
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
    edits.Undo();
    EXPECT_TRUE(patch.changed);
    edits.Clear();
    EXPECT_FALSE(patch.changed);
    EXPECT_FALSE(edits.CanUndo() || edits.CanRedo());
    edits.MarkChangedForGood();
    EXPECT_TRUE(patch.changed);
}

TEST_F(EditsTest, LimitsNumbersByRowOrReference) {
    struct Case {
        Cell cell;
        std::int32_t typed, stored;
    };
    const Case cases[]{
        {{RecordKind::State, 1, durationRow}, 1500, 999},
        {{RecordKind::State, 1, durationRow}, -7, -1},
        {{RecordKind::State, 1, RowOf(&StateRecord::unknown1)}, 40000, 32768},
        {{RecordKind::State, 1, RowOf(&StateRecord::unknown2)}, -40000, -32767},
        {{RecordKind::State, 1, RowOf(&StateRecord::nextState)}, 99, 3},
        {{RecordKind::State, 1, RowOf(&StateRecord::sprite)}, 99, 1},
        {{RecordKind::State, 1, RowOf(&StateRecord::subnumber)}, 40 | litBit, 31 | litBit},
        {{RecordKind::Thing, 1, RowOf(&ThingRecord::alertSound)}, 99, 2},
        {{RecordKind::Ammo, 0, RowOf(&AmmoRecord::maxAmmo)}, 1000000, 999999},
        {{RecordKind::Misc, 0, RowOf(&MiscRecord::initialHealth)}, 10000, 9999},
        {{RecordKind::Misc, 0, RowOf(&MiscRecord::soulsphereHealth)}, 300, 255},
        {{RecordKind::Misc, 0, RowOf(&MiscRecord::bfgCells)}, 200, 127},
        {{RecordKind::Misc, 0, RowOf(&MiscRecord::bfgCells)}, -128, 128},
        {{RecordKind::Misc, 0, RowOf(&MiscRecord::bfgCells)}, -1, 255},
    };
    for (const Case& row : cases) {
        edits.Store(row.cell, row.typed);
        EXPECT_EQ(edits.Value(row.cell), CellValue(row.stored)) << edits.NameOf(row.cell) << " " << row.typed;
    }
}

TEST_F(EditsTest, StoresAndRestoresWhatTheEngineDerives) {
    edits.Store({RecordKind::Misc, 0, RowOf(&MiscRecord::maxHealth)}, 150);
    EXPECT_EQ(patch.current.misc.secondMaxHealth, 150);
    edits.Store({RecordKind::Misc, 0, RowOf(&MiscRecord::bfgCells)}, 0);
    EXPECT_EQ(patch.current.misc.spare2, 255) << "spare byte 1 is 0, too";
    edits.Restore({{RecordKind::Misc, 0, RowOf(&MiscRecord::maxHealth)}}, "restore");
    EXPECT_EQ(patch.current.misc.secondMaxHealth, 200);
    edits.Undo();
    edits.Undo();
    edits.Undo();
    EXPECT_EQ(patch.current, patch.defaults);
}

TEST_F(EditsTest, AmmoTypeOfAWeaponDoesNotMarkThePatchChanged) {
    const Cell ammoType{RecordKind::Weapon, 0, RowOf(&WeaponRecord::ammoType)};
    edits.Store(ammoType, 3);
    EXPECT_EQ(patch.current.weapons[0].ammoType, 3);
    EXPECT_FALSE(patch.changed);
    EXPECT_TRUE(edits.CanUndo());
    edits.Restore({ammoType}, "restore");
    EXPECT_TRUE(patch.changed);
}

TEST_F(EditsTest, StoresNamesTextsPointersAndPars) {
    edits.Store({RecordKind::Thing, 1, nameField}, std::string("Fiend"));
    edits.Store({RecordKind::String, 0, textField}, std::string("Good day"));
    edits.Store({RecordKind::Cheat, 2, textField}, std::string("iddqd"));
    edits.Store({RecordKind::State, 2, codePointerField}, 9);
    edits.Store({RecordKind::Par, 0, listField}, std::vector<ParRecord>{{0, 1, 30}});
    EXPECT_EQ(patch.current.things[1].name, "Fiend");
    EXPECT_EQ(patch.current.strings[0].text, "Good day");
    EXPECT_EQ(patch.current.strings[0].length, 8);
    EXPECT_EQ(patch.current.states[2].codePointer, 9);
    EXPECT_EQ(edits.UndoName(), "par times");
    while (edits.CanUndo())
        edits.Undo();
    EXPECT_EQ(patch.current, patch.defaults);
}

TEST_F(EditsTest, RestoringARecordIsOneStepOverAllItsCells) {
    edits.Store(impHitPoints, 1);
    edits.Store({RecordKind::Thing, 1, nameField}, std::string("Fiend"));
    edits.Restore(edits.CellsOf(RecordKind::Thing, 1), "restore Fiend");
    EXPECT_EQ(patch.current, patch.defaults);
    edits.Undo();
    EXPECT_EQ(HitPoints(), 1);
    EXPECT_EQ(patch.current.things[1].name, "Fiend");
}

} // namespace
} // namespace plinket3
