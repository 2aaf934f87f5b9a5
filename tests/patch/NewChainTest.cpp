#include "patch/NewChain.h"
#include "patch/modPatchFiles.h"
#include "tests/support/EveryField.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace plinket3::test {
namespace {

struct ChainEngine : Session {
    explicit ChainEngine(const char* name) {
        patch = BuiltEngine(DATA_FOLDER, name, engine);
        fixedUses = LoadFixedUses(DATA_FOLDER, engine);
        for (const std::int32_t thing : {11, 12, 15}) // so that some states with actions are free
            for (const auto member :
                 {&ThingRecord::initialState, &ThingRecord::firstMovingState, &ThingRecord::closeAttackState,
                  &ThingRecord::farAttackState, &ThingRecord::injuryState, &ThingRecord::deathState,
                  &ThingRecord::explodingState, &ThingRecord::respawnState})
                patch.current.things[thing].*member = 0;
    }
    FreeRecords Free() const { return FindFree(patch.current, patch.defaults, engine, fixedUses, RecordKind::State); }
};

class NewChains : public ::testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Engines, NewChains, ::testing::Values("doom19", "boom21", "mbf21", "dsdhacked"));

TEST_P(NewChains, LinkFreeStatesAndChangeNothingElse) {
    ChainEngine session(GetParam());
    Edits edits(session.patch);
    const PatchSet& set = session.patch.current;
    const std::int32_t chase = set.states[444].codePointer, face = set.states[452].codePointer;
    const Cell attack{RecordKind::Thing, 11, RowOf(&ThingRecord::farAttackState)};
    std::mt19937 random(5);
    const auto any = [&random](int count) {
        return static_cast<std::int32_t>(random() % static_cast<unsigned>(count));
    };
    int chains = 0;
    for (int round = 0; round < 40; ++round) {
        const PatchSet before = set;
        const FreeRecords free = session.Free();
        NewChain chain;
        chain.sprite = any(130);
        chain.lit = any(2) == 1;
        chain.end = static_cast<NewChain::End>(any(4));
        chain.next = 444;
        if (any(2) == 1)
            chain.begins = attack;
        for (int i = any(5); i >= 0; --i)
            chain.frames.push_back({any(32), any(30), std::array{0, chase, face}[static_cast<std::size_t>(any(3))]});
        MadeChain made;
        if (const Status status = MakeChain(session, free, chain, made); !status) {
            EXPECT_TRUE(!session.engine.dialect.namedCodePointers || free.Count() < chain.frames.size())
                << status.Reason();
            while (edits.CanUndo())
                edits.Undo();
            continue;
        }
        ++chains;
        edits.StoreGroup(made.assignments, "new frames");

        ASSERT_EQ(made.states.size(), chain.frames.size());
        EXPECT_EQ(std::set(made.states.begin(), made.states.end()).size(), made.states.size());
        PatchSet expected = before;
        for (std::size_t i = 0; i < made.states.size(); ++i) {
            const std::int32_t number = made.states[i];
            const bool last = i + 1 == made.states.size();
            EXPECT_TRUE(free.Has(number) || !before.states.Has(number)) << number;
            StateRecord state;
            state.action = before.states.Has(number) ? before.states[number].action : 0;
            state.sprite = chain.sprite;
            state.subnumber = chain.frames[i].frame + (chain.lit ? 32768 : 0);
            state.duration = last && chain.end == NewChain::End::Stay ? -1 : chain.frames[i].duration;
            state.codePointer = chain.frames[i].action;
            state.nextState = !last                              ? made.states[i + 1]
                              : chain.end == NewChain::End::Loop ? made.states.front()
                              : chain.end == NewChain::End::GoOn ? 444
                                                                 : 0;
            if (!expected.states.Has(number))
                expected.states.Add(number);
            expected.states[number] = state;
        }
        if (chain.begins)
            expected.things[attack.index].farAttackState = made.states.front();
        ASSERT_EQ(set, expected) << GetParam();

        EngineConfiguration engine = session.engine;
        PatchSet read;
        EXPECT_TRUE(modPatchFiles::ParsePatch(modPatchFiles::FormatPatch(session.patch, engine), engine,
                                              session.patch.defaults, read)
                        .status);
        for (const std::int32_t number : made.states)
            EXPECT_TRUE(read.states[number] == set.states[number]) << "a patch cannot say frame " << number;
        edits.Undo();
        ASSERT_EQ(set, before);
        edits.Redo(); // so that the next rounds have fewer
    }
    EXPECT_GT(chains, 20);
}

TEST(NewChain, SaysWhatIsMissingAndLeavesAllAsItIs) {
    ChainEngine limited("mbf21"), unlimited("dsdhacked"), moved("doom19");
    const auto reason = [](const ChainEngine& session, const NewChain& chain) {
        MadeChain made;
        const std::string why = MakeChain(session, session.Free(), chain, made).Reason();
        EXPECT_EQ(made.states.size(), why.empty() ? chain.frames.size() : 0);
        return why;
    };
    const std::size_t free = limited.Free().Count();
    NewChain chain;
    EXPECT_EQ(reason(limited, chain), "At least one state is needed.");
    chain.frames.resize(free + 1);
    EXPECT_EQ(reason(limited, chain),
              "There are " + std::to_string(free) + " free states, " + std::to_string(free + 1) + " are asked for.");
    EXPECT_EQ(reason(unlimited, chain), "");
    chain.frames.resize(free);
    EXPECT_EQ(reason(limited, chain), "");
    chain.sprite = -1;
    EXPECT_EQ(reason(limited, chain), "There is no sprite -1.");
    chain.sprite = 0;
    chain.end = NewChain::End::GoOn;
    chain.next = 99999;
    EXPECT_EQ(reason(limited, chain), "There is no state 99999.");
    chain.end = NewChain::End::Stay;

    const PatchSet& set = moved.patch.current;
    const std::vector<std::int32_t> states = moved.Free().Take(set, RecordKind::State, 1000);
    const auto idle = static_cast<std::size_t>(
        std::ranges::count_if(states, [&set](std::int32_t state) { return set.states[state].action == 0; }));
    const std::size_t acting = states.size() - idle;
    ASSERT_TRUE(idle > 0 && acting > 0);
    chain.frames.assign(acting, {0, 4, set.states[444].codePointer});
    EXPECT_EQ(reason(moved, chain), "");
    chain.frames.push_back(chain.frames.front());
    EXPECT_EQ(reason(moved, chain), "There are " + std::to_string(acting) +
                                        " free states that can have such an action, " + std::to_string(acting + 1) +
                                        " are asked for.");
    chain.frames.assign(idle + 1, {});
    EXPECT_EQ(reason(moved, chain), "There are " + std::to_string(idle) + " free states without an action, " +
                                        std::to_string(idle + 1) + " are asked for.");
}

} // namespace
} // namespace plinket3::test
