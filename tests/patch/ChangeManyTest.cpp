#include "patch/ChangeMany.h"
#include "patch/Edits.h"
#include "patch/StepNames.h"
#include "tests/support/EveryField.h"
#include "tests/support/SmallEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

namespace plinket3::test {
namespace {

using ChangeKind = NumberChange::Kind;

TEST(NumberChange, IsReadStrictly) {
    const std::pair<const char*, std::optional<NumberChange>> rows[]{
        {"*0.5", NumberChange{ChangeKind::Multiply, 0.5}},
        {" / 2 ", NumberChange{ChangeKind::Divide, 2}},
        {"+10", NumberChange{ChangeKind::Add, 10}},
        {"+-10", NumberChange{ChangeKind::Add, -10}},
        {"*-.5", NumberChange{ChangeKind::Multiply, -0.5}},
        {"*", {}},
        {"/0", {}},
        {"*2x", {}},
        {"+1e3", {}},
        {"*inf", {}},
        {"++1", {}},
        {"10", {}},
        {"-10", {}},
        {"", {}},
    };
    for (const auto& [text, change] : rows) {
        EXPECT_EQ(ReadChange(text).change, change) << text;
        EXPECT_EQ(ReadChange(text).refusal.empty(), change.has_value()) << text;
        EXPECT_TRUE(!change || BeginsChange(text)) << text;
    }
    EXPECT_FALSE(BeginsChange("10") || BeginsChange("-10") || BeginsChange(""));
}

TEST(ChangeNumbers, ReckonsInUnitsRoundsHalvesToEvenAndLeavesWhatIsNoNumber) {
    const EngineConfiguration engine = SmallMbf21Engine();
    PatchData patch = SmallPatch(engine);
    PatchSet& set = patch.current;
    constexpr std::int32_t one = 65536;
    constexpr int projectile = 1;
    set.things[projectile].bits = 1 << projectileBit;
    const auto thing = [](std::int32_t ThingNumbers::*member, int index = 0) {
        return Cell{RecordKind::Thing, index, RowOf(member)};
    };
    const auto state = [](std::int32_t StateNumbers::*member) { return Cell{RecordKind::State, 3, RowOf(member)}; };
    set.states[3].codePointer = 3; // takes a state, a sound and a number
    const struct {
        Cell cell;
        CellValue before;
        const char* change;
        CellValue after;
    } rows[]{
        {thing(&ThingNumbers::hitPoints), 5, "*0.5", 2},
        {thing(&ThingNumbers::hitPoints), 7, "/2", 4},
        {thing(&ThingNumbers::hitPoints), -5, "/2", -2},
        {thing(&ThingNumbers::hitPoints), 2'000'000'000, "*-2", INT32_MIN},
        {thing(&ThingNumbers::hitPoints), 2'000'000'000, "/0.001", INT32_MAX},
        {thing(&ThingNumbers::width), 20 * one, "+0.5", 20 * one + one / 2},
        {thing(&ThingNumbers::width), 3, "/2", 2},
        {thing(&ThingNumbers::speed), 8, "+2", 10},
        {thing(&ThingNumbers::speed, projectile), 8 * one, "+2", 10 * one},
        {thing(&ThingNumbers::fastSpeed, projectile), -1, "*2", -1},
        {thing(&ThingNumbers::fastSpeed), -1, "+8", -1},
        {thing(&ThingNumbers::fastSpeed), 1, "+-2", 0},
        {thing(&ThingNumbers::deathState), 0, "+1", 0},
        {thing(&ThingNumbers::deathState), 2, "+100", 5},
        {thing(&ThingNumbers::splashGroup), Unset(), "+1", Unset()},
        {thing(&ThingNumbers::splashGroup), 0, "+1", 1},
        {thing(&ThingNumbers::droppedItem), 3, "+1", 3}, // counted from 1
        {state(&StateNumbers::duration), -1, "*3", -1},
        {state(&StateNumbers::duration), 4, "+-9", 0},
        {state(&StateNumbers::duration), 900, "*2", 999},
        {state(&StateNumbers::subnumber), 2 | litBit, "+1", 3 | litBit},
        {state(&StateNumbers::subnumber), 30 | litBit, "+9", 31 | litBit},
        {state(&StateNumbers::arg1), 4, "+9", 5},
        {state(&StateNumbers::arg3), 4, "+9", 13},
        {state(&StateNumbers::arg3), Unset(), "+9", Unset()},
        {state(&StateNumbers::arg4), 4, "+9", 4}, // the action does not take it
    };
    for (const auto& row : rows) {
        WriteCell(set, row.cell, row.before);
        const auto cells = NumberCells(set, engine, {row.cell.kind, {row.cell.index}, ""}, row.cell.field);
        for (const Assignment& each : ChangeNumbers(set, cells, *ReadChange(row.change).change))
            WriteCell(set, each.cell, each.value);
        EXPECT_EQ(ReadCell(set, row.cell), row.after)
            << CellsName(set, {row.cell}, "") << row.change << ", row " << &row - rows;
    }
    EXPECT_TRUE(NumberCells(set, engine, {RecordKind::State, {0, 99}, ""}, 2).empty())
        << "state 0, and one that is not";
}

class ChangeMany : public ::testing::TestWithParam<const char*> {};

/// What is typed in place of a series, value by value, gives the same.
TEST_P(ChangeMany, ASeriesIsWhatOneWouldType) {
    EngineConfiguration engine;
    PatchData patch = BuiltEngine(DATA_FOLDER, GetParam(), engine);
    std::mt19937 random(11);
    std::size_t typed = 0;
    for (const RecordKind kind : {RecordKind::Thing, RecordKind::State, RecordKind::Weapon, RecordKind::Sound}) {
        ManyRecords records{kind, RecordNumbers(patch.current, kind), ""};
        std::ranges::shuffle(records.numbers, random);
        records.numbers.resize(std::min<std::size_t>(records.numbers.size(), 20));
        for (const int field : NumberFields(kind, engine)) {
            const auto cells = NumberCells(patch.current, engine, records, field);
            const int first = static_cast<int>(random() % 40), step = static_cast<int>(random() % 7) - 3;
            const auto values = NumberSeries(patch.current, cells, first, step);
            ASSERT_EQ(values.size(), cells.size());
            for (std::size_t i = 0; i < values.size(); ++i) {
                ASSERT_EQ(values[i].cell, cells[i].cell);
                const auto number =
                    ReadValue(engine, cells[i].meaning, std::to_string(first + step * static_cast<int>(i))).number;
                if (!number)
                    continue; // beyond the limits
                ++typed;
                PatchSet after = patch.current;
                WriteCell(after, values[i].cell, values[i].value);
                const bool frame = kind == RecordKind::State && field == RowOf(&StateRecord::subnumber);
                EXPECT_EQ(std::get<std::int32_t>(values[i].value) & (frame ? ~litBit : -1), *number)
                    << engine.name << ": " << CellsName(after, {values[i].cell}, "");
            }
        }
    }
    EXPECT_GT(typed, 300U);
}

TEST_P(ChangeMany, StatesInOrderLeadFromOneToTheNext) {
    EngineConfiguration engine;
    PatchData patch = BuiltEngine(DATA_FOLDER, GetParam(), engine);
    Edits edits(patch);
    const PatchSet before = patch.current;
    std::vector<std::int32_t> order = RecordNumbers(before, RecordKind::State);
    std::ranges::shuffle(order, std::mt19937(5));
    order.resize(50);
    std::erase(order, 0);
    for (const bool ring : {false, true}) {
        std::vector<std::int32_t> given = order;
        given.insert(given.begin() + 7, 0); // stands for none: it is left out
        edits.StoreGroup(NextInOrder(given, ring), "next");
        std::int32_t at = order.front();
        for (std::size_t i = 1; i < order.size(); ++i) {
            at = patch.current.states[at].nextState;
            ASSERT_EQ(at, order[i]);
        }
        EXPECT_EQ(patch.current.states[at].nextState, ring ? order.front() : before.states[at].nextState);
        edits.Undo();
        EXPECT_EQ(patch.current, before);
    }
}

/// Afterwards nothing refers to the old one, all that did refers to the new one, and nothing else is another.
TEST_P(ChangeMany, AReplacedTargetIsReplacedEverywhereAndNothingElse) {
    EngineConfiguration engine;
    PatchData patch = BuiltEngine(DATA_FOLDER, GetParam(), engine);
    UseEveryAction(patch.current, engine, 1);
    GiveEveryArgument(patch.current, engine);
    const PatchSet before = patch.current;
    std::map<TargetKind, int> replaced;
    for (const RecordKind kind : {RecordKind::Thing, RecordKind::State, RecordKind::Weapon}) {
        ManyRecords records{kind, RecordNumbers(before, kind), ""};
        records.numbers.resize(std::min<std::size_t>(records.numbers.size(), 300));
        const auto linksTo = [&](const Target& target) {
            std::vector<Cell> cells;
            const LinkWalk walk(patch.current, engine);
            for (const std::int32_t record : records.numbers)
                if (kind != RecordKind::State || record != 0)
                    walk.ForEachOf(kind, record, [&](const Link& link) {
                        if (link.to == target)
                            cells.push_back(link.from);
                    });
            return cells;
        };
        const std::vector<Target> targets = TargetsOf(before, engine, records);
        for (std::size_t i = 0; i < targets.size(); i += 3) {
            const Target from = targets[i];
            const std::int32_t to = RecordNumbers(before, *RecordKindOf(from.kind)).back();
            if (to == from.number)
                continue;
            const std::vector<Cell> old = linksTo(from), had = linksTo({from.kind, to});
            ASSERT_FALSE(old.empty());
            for (const Assignment& each : ReplaceTarget(before, engine, records, from, to))
                WriteCell(patch.current, each.cell, each.value);
            EXPECT_TRUE(linksTo(from).empty());
            EXPECT_EQ(linksTo({from.kind, to}).size(), old.size() + had.size());
            for (const Cell& cell : old)
                WriteCell(patch.current, cell, ReadCell(before, cell));
            ASSERT_EQ(patch.current, before);
            ++replaced[from.kind];
        }
    }
    EXPECT_TRUE(replaced[TargetKind::State] > 9 && replaced[TargetKind::Sound] > 9 && replaced[TargetKind::Sprite] > 4);
    EXPECT_EQ(replaced[TargetKind::Thing] > 0, engine.dialect.fields >= FieldLevel::Mbf21);
}

INSTANTIATE_TEST_SUITE_P(Engines, ChangeMany, ::testing::Values("doom19", "mbf21", "id24"));

} // namespace
} // namespace plinket3::test
