#include "patch/Compare.h"

#include "patch/Edits.h"
#include "patch/PatchMerge.h"
#include "tests/support/SmallEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

namespace plinket3::test {
namespace {

/// The same with as many values changed as there are rounds, notes, names and par times too, and records made and
/// removed.
PatchSet Changed(PatchSet set, std::mt19937& random) {
    const auto any = [&random](std::size_t count) { return static_cast<std::int32_t>(random() % count); };
    for (int rounds = any(12); rounds > 0; --rounds) {
        const auto kind = static_cast<RecordKind>(any(10));
        if (kind == RecordKind::Par) {
            set.pars.push_back({any(2), any(3), any(3)});
            continue;
        }
        const bool beyond = any(3) == 0;
        const std::vector<std::int32_t> numbers = RecordNumbers(set, kind);
        const std::int32_t number = beyond ? 70 + any(3) : numbers[static_cast<std::size_t>(any(numbers.size()))];
        std::vector<Cell> cells = EveryCellOf(kind, number);
        std::erase_if(cells, [&](const Cell& cell) {
            return (cell.field >= 0 && !FactsOf(kind, cell.field).inPatch) ||
                   (cell.field == existsField ? !beyond : !HasCell(set, cell));
        });
        if (cells.empty())
            continue;
        const Cell& cell = cells[static_cast<std::size_t>(any(cells.size()))];
        if (cell.field == existsField && !HasCell(set, cell))
            continue;
        const bool text = std::holds_alternative<std::string>(ReadCell(set, cell));
        WriteCell(set, cell,
                  cell.field == existsField ? CellValue(any(2))
                  : text                    ? CellValue(std::string(static_cast<std::size_t>(any(4)), 'A'))
                                            : CellValue(any(4)));
        if (cell.field == existsField) // what is removed has no note
            WriteCell(set, {kind, number, noteField}, std::string());
    }
    DeriveMisc(set.misc);
    return set;
}

/// The same with par times in order, without entries that do not count, and no blanks behind names of sounds.
PatchSet Plain(PatchSet set) {
    for (const std::int32_t sound : RecordNumbers(set, RecordKind::Sound))
        WriteCell(set, {RecordKind::Sound, sound, lumpNameField}, set.SoundName(sound));
    std::map<Level, std::int32_t> times;
    for (const ParRecord& par : set.pars)
        times[{par.episode, par.map}] = par.seconds;
    set.pars.clear();
    for (const auto& [level, seconds] : times)
        set.pars.push_back({level.first, level.second, seconds});
    return set;
}

class CompareTest : public testing::Test {
protected:
    const EngineConfiguration engine = SmallId24Engine();
    const PatchSet defaults = SmallDefaults(engine);
    std::mt19937 random{20};
};

TEST_F(CompareTest, TakingOverAllMakesThePatchesEqualAndUndoingItAsTheyWere) {
    for (int round = 0; round < 2'000; ++round) {
        const PatchSet ancestor = Changed(defaults, random), there = Changed(ancestor, random);
        PatchData patch = SmallPatch(engine);
        patch.current = Changed(ancestor, random);
        const PatchSet before = patch.current;
        const std::vector<Difference> differences = Compare(before, there, ancestor);
        Edits edits(patch);
        edits.StoreGroup(TakeOver(differences, before, there), "take over");
        ASSERT_EQ(Plain(patch.current), Plain(there)) << "round " << round;
        ASSERT_TRUE(Compare(patch.current, there, ancestor).empty());
        ASSERT_EQ(edits.CanUndo(), !differences.empty());
        edits.Undo();
        ASSERT_EQ(Plain(patch.current), Plain(before)) << "round " << round;
    }
}

TEST_F(CompareTest, OneValueIsTakenOverAloneWithTheRecordThatItNeeds) {
    for (int round = 0; round < 2'000; ++round) {
        const PatchSet here = Changed(defaults, random), there = Changed(defaults, random);
        const std::vector<Difference> differences = Compare(here, there, defaults);
        if (differences.empty())
            continue;
        const Difference& one = differences[random() % differences.size()];
        PatchData patch = SmallPatch(engine);
        patch.current = here;
        Edits(patch).StoreGroup(TakeOver(std::span(&one, 1), here, there), "take over");
        const std::vector<Difference> rest = Compare(patch.current, there, defaults);
        ASSERT_LT(rest.size(), differences.size());
        const Cell name{one.cell.kind, one.cell.index, lumpNameField};
        const bool made = HasLumpName(name.kind) && !HasRecord(here, name.kind, name.index);
        ASSERT_TRUE(!made || ReadCell(patch.current, name) == ReadCell(there, name)) << "it cannot be saved without";
        for (const Difference& difference : differences) {
            const bool left = std::ranges::find(rest, difference) != rest.end();
            ASSERT_FALSE(left && difference == one);
            const bool sameRecord =
                difference.cell.kind == one.cell.kind && difference.cell.index == one.cell.index && !difference.level;
            ASSERT_TRUE(left || sameRecord || difference == one) << "another record stays as it is";
        }
    }
}

TEST_F(CompareTest, TellsWhoHasChangedWhatWhicheverSideLooks) {
    for (int round = 0; round < 2'000; ++round) {
        const PatchSet ancestor = Changed(defaults, random), here = Changed(ancestor, random),
                       there = Changed(ancestor, random);
        const std::vector<Difference> differences = Compare(here, there, ancestor);
        std::vector<Difference> mirrored = Compare(there, here, ancestor);
        for (Difference& difference : mirrored) {
            std::swap(difference.here, difference.there);
            if (difference.side != ChangedIn::Both)
                difference.side = difference.side == ChangedIn::Here ? ChangedIn::There : ChangedIn::Here;
        }
        ASSERT_TRUE(std::ranges::is_permutation(differences, mirrored));
        for (const Difference& difference : differences) {
            if (difference.side == ChangedIn::Both)
                continue;
            ASSERT_EQ(difference.side == ChangedIn::Here ? difference.there : difference.here, difference.ancestor);
        }
    }
}

TEST_F(CompareTest, ARecordThatOneRemovesAndTheOtherChangesIsAConflictEitherWay) {
    PatchSet ancestor = defaults;
    WriteCell(ancestor, {RecordKind::State, 70, existsField}, 1);
    ancestor.states[70].duration = 5;
    PatchSet removed = defaults, changed = ancestor;
    EXPECT_EQ(Compare(removed, ancestor, ancestor).front().side, ChangedIn::Here);
    EXPECT_EQ(Compare(ancestor, removed, ancestor).front().side, ChangedIn::There);
    changed.states[70].nextState = 1;
    for (const auto& [here, there] : {std::pair(&removed, &changed), std::pair(&changed, &removed)}) {
        const std::vector<Difference> differences = Compare(*here, *there, ancestor);
        EXPECT_EQ(differences.size(), 3U);
        for (const Difference& difference : differences)
            EXPECT_EQ(difference.side, ChangedIn::Both) << difference.cell.field;
    }
}

} // namespace
} // namespace plinket3::test
