#include "patch/StateWalk.h"
#include "patch/StateSounds.h"
#include "tests/support/EveryField.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace plinket3::test {
namespace {

using States = std::vector<std::int32_t>;
using End = StateWalk::End;

class StateWalkTest : public ::testing::TestWithParam<const char*> {
protected:
    void Load(const char* name) {
        session.patch = BuiltEngine(DATA_FOLDER, name, session.engine);
        session.fixedUses = LoadFixedUses(DATA_FOLDER, session.engine);
        ASSERT_FALSE(session.fixedUses.empty());
    }
    const PatchSet& Set() const { return session.patch.current; }
    StateRecord& State(std::int32_t number) { return session.patch.current.states[number]; }
    void Put(std::int32_t state, std::int32_t next, std::int32_t duration, std::string_view action = "NULL",
             const std::vector<std::int32_t>& values = {}) {
        StateRecord& record = State(state);
        record = {};
        record.nextState = next;
        record.duration = duration;
        record.codePointer = session.engine.CodePointerOf(action).value();
        const ArgumentTable table(session.engine);
        const auto arguments = table.Of(record.codePointer);
        ASSERT_LE(values.size(), arguments.size());
        for (std::size_t i = 0; i < values.size(); ++i)
            SetValue(record, fieldTable<StateRecord>[static_cast<std::size_t>(arguments[i].field)], values[i]);
    }
    StateWalk Walk() {
        return {session, [this] { return dice; }};
    }
    /// The state that is shown in each of the first tics, and then how it ended.
    static States Shown(StateWalk& walk, std::int32_t state, std::size_t tics) {
        States shown;
        for (walk.Start(state); walk.Ended() == End::None && shown.size() < tics; walk.Tic())
            shown.push_back(*walk.State());
        return shown;
    }

    Session session;
    std::int32_t dice = 255; // how it falls
};

/// What a game does with its counter of tics, put down in another way: the state of each tic, and whether it goes on.
std::pair<States, End> AsAGameCounts(const PatchSet& set, std::int32_t state, std::size_t tics) {
    States shown;
    const auto pass = [&set](std::int32_t from) {
        while (from != 0 && set.states[from].duration == 0)
            from = set.states[from].nextState;
        return from;
    };
    std::int32_t at = pass(state), left = set.states[at].duration;
    while (shown.size() < tics) {
        if (at == 0)
            return {shown, End::Removed};
        if (left < 0)
            return {shown, End::ForEver};
        shown.push_back(at);
        if (--left == 0) {
            at = pass(set.states[at].nextState);
            left = set.states[at].duration;
        }
    }
    return {shown, End::None};
}

INSTANTIATE_TEST_SUITE_P(Engines, StateWalkTest, ::testing::Values("doom19", "boom19", "mbf19", "mbf21", "id24"));

TEST_P(StateWalkTest, EveryStateRunsAsInTheGame) {
    Load(GetParam());
    constexpr std::size_t tics = 400;
    std::set<End> ends;
    for (const auto& [state, record] : session.patch.defaults.states) {
        if (state <= 0)
            continue;
        const auto [expected, end] = AsAGameCounts(Set(), state, tics);
        StateWalk walk = Walk();
        ASSERT_EQ(Shown(walk, state, tics), expected) << state;
        ASSERT_EQ(walk.Ended(), end) << state;
        ends.insert(end);

        const StraightRun run = StraightRunFrom(session, state);
        const std::set<std::int32_t> each(expected.begin(), expected.end());
        if (run.end == End::None) { // comes round: what is behind the first round is the round again
            ASSERT_LT(run.back, run.tics);
            for (std::int64_t tic = run.back; tic + run.tics - run.back < std::int64_t{tics}; ++tic)
                ASSERT_EQ(expected[static_cast<std::size_t>(tic)],
                          expected[static_cast<std::size_t>(tic + run.tics - run.back)])
                    << state;
        } else if (run.tics < std::int64_t{tics}) {
            ASSERT_EQ(run.end, end) << state;
            ASSERT_EQ(run.tics, std::int64_t(expected.size())) << state;
        }
        for (const StraightRun::Step& step : run.shown) {
            if (step.begins < std::int64_t(expected.size())) {
                ASSERT_EQ(expected[static_cast<std::size_t>(step.begins)], step.state);
            }
        }
        for (const std::int32_t shown : each)
            ASSERT_TRUE(run.BeginOf(shown));
        const States reach = ReachOf(session, state, std::nullopt);
        for (const std::int32_t shown : each)
            ASSERT_NE(std::ranges::find(reach, shown), reach.end()) << state;
    }
    EXPECT_EQ(ends, (std::set{End::None, End::Removed, End::ForEver})) << "all kinds were met";
}

TEST_F(StateWalkTest, JumpsGoByChoiceElseByChance) {
    Load("mbf21");
    Put(1200, 1201, 1);
    Put(1202, 0, 1);
    Put(1210, 0, 1);
    Put(1211, 1211, 0);
    const States on{1200, 1202}, jumped{1200, 1210};
    const struct {
        const char* action;
        States values;
        std::int32_t dice;
        AtJump choice;
        States shown;
    } cases[]{
        {"RandomJump", {1210, 256}, 255, AtJump::ByChance, jumped},
        {"RandomJump", {1210, 0}, 0, AtJump::ByChance, on},
        {"RandomJump", {1210, 0}, 0, AtJump::Jump, on}, // there is no jump
        {"RandomJump", {1210, 100}, 99, AtJump::ByChance, jumped},
        {"RandomJump", {1210, 100}, 100, AtJump::ByChance, on},
        {"RandomJump", {1210, 100}, 100, AtJump::Jump, jumped},
        {"RandomJump", {1210, 100}, 0, AtJump::GoOn, on},
        {"WeaponJump", {1210, 1}, 0, AtJump::ByChance, jumped},
        {"JumpIfHealthBelow", {1210, 20}, 0, AtJump::ByChance, on},
        {"JumpIfHealthBelow", {1210, 20}, 255, AtJump::Jump, jumped},
        {"GunFlashTo", {1210}, 0, AtJump::Jump, on}, // another picture
    };
    for (const auto& each : cases) {
        Put(1201, 1202, 0, each.action, each.values);
        StateWalk walk = Walk();
        dice = each.dice;
        walk.Choose(1201, {each.choice});
        EXPECT_EQ(Shown(walk, 1200, 9), each.shown) << each.action << each.dice << static_cast<int>(each.choice);
        EXPECT_EQ(walk.Ended(), End::Removed);
    }
    Put(1201, 1202, 0, "RandomJump", {1210, 100});
    EXPECT_EQ(ReachOf(session, 1200, std::nullopt), (States{1200, 1201, 1210, 1202}));
    EXPECT_EQ(StraightRunFrom(session, 1200).tics, 2);

    // Ways that take no time, and numbers of no state, end it.
    Put(1201, 1202, 0, "RandomJump", {123456, 256});
    StateWalk walk = Walk();
    EXPECT_EQ(Shown(walk, 1200, 9), States{1200});
    EXPECT_EQ(walk.Ended(), End::NoState);
    for (const std::int32_t chance : {256, 100}) {
        dice = 0;
        Put(1201, 1202, 5, "RandomJump", {1201, chance});
        EXPECT_EQ(Shown(walk, 1200, 9), States{1200});
        EXPECT_EQ(walk.Ended(), End::NoTime);
    }
    EXPECT_EQ(StraightRunFrom(session, 1211).end, End::NoTime);
    State(1200).nextState = 1211;
    walk.Start(1200);
    walk.Tic();
    EXPECT_EQ(walk.Ended(), End::NoTime);
    EXPECT_EQ(walk.State(), 1200) << "what was shown last";
    walk.Start(0);
    EXPECT_EQ(walk.Ended(), End::Removed);
    EXPECT_EQ(walk.State(), std::nullopt);
}

TEST_F(StateWalkTest, GamesLeadByTheFieldsOfThingsAndWeapons) {
    Load("mbf21");
    const auto jumps = [this](std::string_view action, std::optional<Target> owner) {
        Put(1200, 0, 1, action);
        States targets;
        for (const EngineJump& jump : EngineJumpsOf(session, State(1200), owner)) {
            targets.push_back(jump.target);
            EXPECT_FALSE(jump.when.empty());
        }
        return targets;
    };
    constexpr Target pistol{TargetKind::Weapon, 1}, vile{TargetKind::Thing, 3}, demon{TargetKind::Thing, 12};
    constexpr std::int32_t heals = 266;
    const WeaponRecord& weapon = Set().weapons[pistol.number];
    const ThingRecord &thing = Set().things[vile.number], &biter = Set().things[demon.number];
    const struct {
        const char* action;
        std::optional<Target> owner;
        States targets;
    } cases[]{
        {"ReFire", pistol, {weapon.shootingState}},
        {"CloseShotgun2", pistol, {weapon.shootingState}},
        {"WeaponReady", pistol, {weapon.shootingState, weapon.selectState}},
        {"Lower", pistol, {weapon.deselectState}},
        {"Raise", pistol, {weapon.bobbingState}},
        {"FirePistol", pistol, {}}, // the flash is another picture
        {"FireCGun", pistol, {}},
        {"Look", vile, {thing.firstMovingState}},
        {"SpidRefire", vile, {thing.firstMovingState}},
        {"Chase", vile, {thing.farAttackState, thing.initialState}}, // it does not attack near by
        {"Hoof", demon, {biter.closeAttackState, biter.initialState}},
        {"VileChase", vile, {thing.farAttackState, thing.initialState, heals}},
        {"HealChase", demon, {biter.closeAttackState, biter.initialState}},
        {"BrainScream", vile, {}}, // what it places goes there
        {"Look", pistol, {}},
        {"ReFire", vile, {}},
        {"Chase", std::nullopt, {}},
        {"Chase", Target{TargetKind::Thing, 123456}, {}},
        {"Chase", Target{TargetKind::Sound, 3}, {}},
        {"NULL", vile, {}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(jumps(each.action, each.owner), each.targets) << each.action;
    session.patch.current.things[vile.number].closeAttackState = thing.farAttackState;
    EXPECT_EQ(jumps("Chase", vile).size(), 2U) << "both attacks are one state";
    session.patch.current.things[vile.number].firstMovingState = 654321;
    EXPECT_TRUE(jumps("Look", vile).empty()) << "there is no such state";

    // A pistol whose trigger is held shoots on and never comes to the time of the state that decides so.
    const std::int32_t first = weapon.shootingState;
    const States reach = ReachOf(session, first, pistol);
    const auto refires = std::ranges::find_if(reach, [this](std::int32_t state) {
        return State(state).codePointer == session.engine.CodePointerOf("ReFire");
    });
    ASSERT_NE(refires, reach.end());
    StateWalk walk = Walk();
    walk.Owner(pistol);
    const States once = Shown(walk, first, 100);
    EXPECT_NE(std::ranges::find(once, weapon.bobbingState), once.end()) << "by itself it is not held";
    walk.Choose(*refires, {AtJump::Engine, first});
    const States held = Shown(walk, first, 100);
    const auto round = static_cast<std::size_t>(std::ranges::find(once, *refires) - once.begin());
    ASSERT_LT(round, 50U);
    for (std::size_t tic = 0; tic < held.size(); ++tic)
        EXPECT_EQ(held[tic], once[tic % round]) << tic;
    walk.Owner(std::nullopt);
    EXPECT_EQ(Shown(walk, first, 100), once) << "nobody holds it";
    EXPECT_NE(std::ranges::find(reach, weapon.selectState), reach.end()) << "another weapon may be chosen";
}

TEST_F(StateWalkTest, StatesSoundAsInTheGame) {
    Load("mbf21");
    constexpr std::int32_t imp = 11, zombie = 1, demon = 12, lostSoul = 18, ball = 31;
    const auto named = [this](std::string_view name) {
        for (const auto& [number, sound] : Set().sounds)
            if (Set().SoundName(number) == name)
                return std::optional(number);
        return std::optional<std::int32_t>();
    };
    const struct {
        const char* action;
        States values;
        std::optional<std::int32_t> thing;
        std::int32_t dice;
        std::string_view sound; // empty for silence
    } cases[]{
        {"Pain", {}, imp, 0, "popain"},
        {"Pain", {}, std::nullopt, 0, ""},
        {"Pain", {}, 123456, 0, ""},
        {"Scream", {}, demon, 0, "sgtdth"},
        {"Scream", {}, zombie, 0, "podth1"},
        {"Scream", {}, zombie, 2, "podth3"},
        {"Scream", {}, imp, 3, "bgdth2"},
        {"Chase", {}, imp, 2, "bgact"},
        {"Chase", {}, imp, 3, ""},
        {"Look", {}, imp, 0, ""}, // nobody is seen
        {"SkullAttack", {}, lostSoul, 0, "sklatk"},
        {"PosAttack", {}, std::nullopt, 0, "pistol"},
        {"FireCGun", {}, std::nullopt, 0, "pistol"},
        {"Punch", {}, std::nullopt, 0, "punch"},
        {"Saw", {}, std::nullopt, 0, "sawhit"},
        {"BrainPain", {}, std::nullopt, 0, "bospn"},
        {"TroopAttack", {}, imp, 0, "firsht"}, // what it launches
        {"FireMissile", {}, std::nullopt, 0, "rlaunc"},
        {"VileChase", {}, imp, 0, ""}, // there is no corpse
        {"PlaySound", {4, 0}, imp, 0, "dshtgn"},
        {"PlaySound", {0, 0}, imp, 0, ""},
        {"WeaponSound", {9, 1}, std::nullopt, 0, "bfg"},
        {"MonsterProjectile", {ball + 1}, imp, 0, "firsht"},
        {"MonsterProjectile", {123456}, imp, 0, ""},
        {"SpawnObject", {ball + 1}, imp, 0, ""},
        {"HealChase", {0, 4}, imp, 0, ""},
        {"NULL", {}, imp, 0, ""},
    };
    for (const auto& each : cases) {
        Put(1200, 0, 1, each.action, each.values);
        const auto sound = SoundOfState(session, 1200, each.thing, [&each] { return each.dice; });
        EXPECT_EQ(sound, each.sound.empty() ? std::nullopt : named(each.sound)) << each.action << each.dice;
        EXPECT_TRUE(each.sound.empty() || sound) << "there is " << each.sound;
    }
    const auto starts = [&](std::int32_t ThingRecord::*field, std::int32_t thing) {
        return SoundOfStart(session, field, thing, [] { return 1; });
    };
    EXPECT_EQ(starts(&ThingRecord::firstMovingState, imp), named("bgsit2"));
    EXPECT_EQ(starts(&ThingRecord::closeAttackState, demon), named("sgtatk"));
    EXPECT_EQ(starts(&ThingRecord::deathState, demon), std::nullopt);
    EXPECT_EQ(starts(&ThingRecord::firstMovingState, 123456), std::nullopt);
    EXPECT_EQ(SoundOfState(session, 123456, imp, [] { return 0; }), std::nullopt);
}

} // namespace
} // namespace plinket3::test
