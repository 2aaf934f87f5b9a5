#include "patch/Links.h"
#include "patch/FreeRecords.h"
#include "patch/KeptRecords.h"
#include "patch/StateUse.h"
#include "patch/Uses.h"
#include "tests/support/EveryField.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace plinket3::test {
namespace {

using Lines = std::vector<std::string>;

struct LinkedEngine {
    explicit LinkedEngine(const char* name) : patch(BuiltEngine(DATA_FOLDER, name, engine)) {
        fixedUses = LoadFixedUses(DATA_FOLDER, engine);
    }
    std::vector<Use> UsesOf(const Target& target) const {
        return plinket3::UsesOf(patch.current, engine, fixedUses, target);
    }
    FreeRecords Free(RecordKind kind) const { return FindFree(patch.current, patch.defaults, engine, fixedUses, kind); }

    EngineConfiguration engine;
    PatchData patch;
    std::vector<FixedUse> fixedUses;
};

class LinksOf : public ::testing::TestWithParam<const char*> {};

TEST_P(LinksOf, EveryCellThatRefersToARecordCanReferToAnotherOne) {
    LinkedEngine linked(GetParam());
    PatchSet& set = linked.patch.current;
    if (linked.engine.dialect.unlimited)
        MakeRecords(set, linked.engine);
    UseEveryAction(set, linked.engine, 1);
    GiveEveryArgument(set, linked.engine);
    const LinkWalk walk(set, linked.engine);
    std::vector<Link> links;
    walk.ForEach([&links](const Link& link) { links.push_back(link); });
    ASSERT_GT(links.size(), set.states.size());
    for (const Link& link : links) {
        const bool address = link.from.kind == RecordKind::Sound; // no number of a record
        if (link.to.kind == TargetKind::Action || link.to.kind == TargetKind::String || address)
            continue;
        const CellValue before = ReadCell(set, link.from);
        EXPECT_EQ(before, CellValue(LinkValue(link, link.to.number)));
        WriteCell(set, link.from, LinkValue(link, 3));
        bool found = false;
        walk.ForEachOf(link.from.kind, link.from.index, [&](const Link& now) {
            found |= now.from == link.from && now.to == Target{link.to.kind, 3};
        });
        EXPECT_TRUE(found) << linked.engine.name << ": field " << link.from.field << " of " << link.from.index;
        WriteCell(set, link.from, before);
    }
}

TEST_P(LinksOf, NothingUsesAFreeRecordButFreeStates) {
    LinkedEngine linked(GetParam());
    PatchSet& set = linked.patch.current;
    std::mt19937 random(7);
    const auto any = [&random](std::size_t count) { return static_cast<std::int32_t>(random() % count); };
    for (int i = 0; i < 40; ++i) { // runs of states that somebody comes to, or nobody
        set.states[any(set.states.DenseSize())].nextState = any(set.states.DenseSize());
        set.things[any(set.things.DenseSize())].deathState = any(set.states.DenseSize());
    }
    const FreeRecords states = linked.Free(RecordKind::State);
    std::set<std::int32_t> free;
    for (const auto* numbers : {&states.blank, &states.used, &states.changed})
        free.insert(numbers->begin(), numbers->end());
    const auto unused = UnusedStates(set, linked.engine);
    for (const RecordKind kind : {RecordKind::State, RecordKind::Thing, RecordKind::Sound, RecordKind::Sprite}) {
        const FreeRecords records = linked.Free(kind);
        for (const std::int32_t number : records.Take(set, kind, records.Count()))
            for (const Use& use : linked.UsesOf({*TargetKindOf(kind), number})) {
                ASSERT_TRUE(use.cell && HasRecord(set, kind, number)) << use.text;
                EXPECT_TRUE(use.cell->kind == RecordKind::State && free.contains(use.cell->index))
                    << "number " << number << ": " << use.text;
            }
    }
    for (const std::int32_t number : unused) // not the other way round: a ring of unused states uses itself
        EXPECT_TRUE(free.contains(number) || !linked.UsesOf({TargetKind::State, number}).empty()) << number;
}

INSTANTIATE_TEST_SUITE_P(Engines, LinksOf, ::testing::Values("doom19", "boom21", "dehextra21", "mbf21", "dsdhacked"));

TEST(UsersOfState, AreFollowedThroughRunsOfStates) {
    LinkedEngine linked("mbf21");
    PatchSet& set = linked.patch.current;
    const auto users = [&](std::int32_t state) { return UsersOfState(set, linked.engine, state); };
    EXPECT_EQ(users(452), Lines{"Imp (close attack, far attack)"});
    EXPECT_EQ(users(454), Lines{"Imp (close attack, third; far attack, third)"});
    EXPECT_EQ(users(444), Lines{"Imp (first moving)"}) << "what comes to it from other fields' states is no news";
    EXPECT_EQ(users(451), Lines{"Imp (first moving, 8th)"});
    set.states[451].nextState = 451; // a ring
    EXPECT_EQ(users(451), Lines{"Imp (first moving, 8th)"});
    set.states[2000].codePointer = *linked.engine.CodePointerOf("RandomJump");
    set.states[2000].unknown1 = 2001;
    set.states[2001].nextState = 2002;
    EXPECT_EQ(users(2002), Lines{"frame 2000 (RandomJump, second)"});
}

TEST(FreeRecords, ComeBlankOnesFirstAndThePatchsOwnLast) {
    LinkedEngine limited("mbf21"), unlimited("dsdhacked");
    for (LinkedEngine* linked : {&limited, &unlimited}) {
        PatchSet& set = linked->patch.current;
        const FreeRecords before = linked->Free(RecordKind::State);
        set.states[before.blank.front()].duration = 5;
        set.notes[{patchNotes.kind, patchNotes.index}] =
            "by us\nPlinket3 keeps: Frame " + std::to_string(before.blank[1]) + "-" + std::to_string(before.blank[2]);
        const FreeRecords after = linked->Free(RecordKind::State);
        EXPECT_EQ(after.Count(), before.Count() - 2);
        EXPECT_EQ(after.changed, std::vector{before.blank.front()});
        EXPECT_EQ(after.Take(set, RecordKind::State, 1), std::vector{before.blank[3]});
        const auto all = after.Take(set, RecordKind::State, 5000);
        if (linked == &limited)
            EXPECT_TRUE(all.size() == after.Count() && all.back() == before.blank.front());
        else
            EXPECT_TRUE(all.size() == 5000 && all[after.blank.size()] == 4000 && !set.states.Has(all.back()));
    }
    unlimited.patch.current.states.Add(INT32_MAX);
    const FreeRecords last = unlimited.Free(RecordKind::State);
    EXPECT_EQ(last.Take(unlimited.patch.current, RecordKind::State, last.blank.size() + 2).back(), 4001);
}

TEST(KeptRecords, AreALineThatPeopleMayWriteToo) {
    const KeptRecords typed("Notes\n Plinket3 keeps: frame 7 , 3-5,x,9-8,-1; Dog 4; thing 1;;Sound 2147483647\nmore");
    const auto states = [&typed](std::int32_t number) { return typed.Has(RecordKind::State, number); };
    EXPECT_TRUE(states(3) && states(5) && states(7) && !states(2) && !states(6) && !states(8) && !states(9));
    EXPECT_TRUE(typed.Has(RecordKind::Thing, 0) && typed.Has(RecordKind::Sound, INT32_MAX));
    EXPECT_EQ(typed.In("Notes\nPlinket3 keeps: x\nmore"),
              "Notes\nmore\nPlinket3 keeps: Thing 1; Frame 3-5, 7; Sound 2147483647");

    std::mt19937 random(3);
    std::set<std::int32_t> wanted;
    KeptRecords kept("");
    for (int i = 0; i < 2000; ++i) {
        const auto number = static_cast<std::int32_t>(random() % 60);
        const bool keep = random() % 2 == 0;
        kept.Set(RecordKind::Thing, number, keep);
        keep ? static_cast<void>(wanted.insert(number)) : static_cast<void>(wanted.erase(number));
        const KeptRecords again(kept.In("by us"));
        for (std::int32_t each = 0; each < 60; ++each)
            ASSERT_EQ(again.Has(RecordKind::Thing, each), wanted.contains(each)) << kept.In("") << ": " << each;
        ASSERT_EQ(again.In("by us"), kept.In("by us"));
    }
    for (const std::int32_t number : std::set(wanted))
        kept.Set(RecordKind::Thing, number, false);
    EXPECT_EQ(kept.In("by us\nPlinket3 keeps: Frame 1\n"), "by us");
}

} // namespace
} // namespace plinket3::test
