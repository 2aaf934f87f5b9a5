#include "patch/Arguments.h"
#include "patch/StateUse.h"
#include "patch/ValueText.h"
#include "tests/support/EveryField.h"
#include "tests/support/SmallEngine.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

using Kind = ValueMeaning::Kind;
using Lines = std::vector<std::string>;
using States = std::vector<std::int32_t>;

class Mbf21Test : public ::testing::Test {
protected:
    StateRecord& State(std::int32_t number) { return patch.current.states[number]; }
    std::int32_t Action(std::string_view name) const { return engine.CodePointerOf(name).value(); }
    /// Gives a state an action and its arguments, in the order of the action's.
    void Act(std::int32_t state, std::string_view action, const std::vector<FieldValue>& values) {
        State(state).codePointer = Action(action);
        const ArgumentTable table(engine);
        const auto arguments = table.Of(Action(action));
        ASSERT_LE(values.size(), arguments.size());
        for (std::size_t i = 0; i < values.size(); ++i)
            SetValue(State(state), fieldTable<StateRecord>[static_cast<std::size_t>(arguments[i].field)], values[i]);
    }

    EngineConfiguration engine;
    PatchData patch = BuiltEngine(DATA_FOLDER, "mbf21", engine);
};

TEST_F(Mbf21Test, ValuesAreTypedAsTheyAreWritten) {
    const ValueMeaning number{}, byte{Kind::Number, {0, 255}}, fixed{Kind::Fixed16}, fast{Kind::FastSpeed},
        angle{Kind::Angle}, thing{Kind::Thing, {0, 150}}, state{Kind::State, {0, 3999}}, bits{Kind::Bits},
        bits21{Kind::Bits, {}, BitSet::Things21};
    const struct {
        ValueMeaning meaning;
        const char* typed;
        FieldValue number;          // absent: the beginning of one, or none
        const char* refusal = "";   // how it begins
        const char* text = nullptr; // as it is shown then, when otherwise than typed
    } cases[]{
        {number, "-12", -12},
        {number, "+7", 7, "", "7"},
        {number, " 7 ", 7, "", "7"},
        {number, "", {}},
        {number, "-", {}},
        {number, "1.5", {}, "A whole number"},
        {number, "imp", {}, "A whole number"},
        {number, "2147483647", INT32_MAX},
        {number, "2147483648", {}, "What may stand here goes from -2147483648 to"},
        {number, "-99999999999999999999", {}, "What may"},
        {byte, "255", 255},
        {byte, "256", {}, "What may stand here goes from 0 to 255."},
        {byte, "-", {}, "What may"},
        {fixed, "12.5", 819200},
        {fixed, "0.1", 6554},
        {fixed, "0.00002", 1},
        {fixed, "-0.5", -32768},
        {fixed, ".", {}},
        {fixed, "1.", 65536, "", "1"},
        {fixed, "1.2.3", {}, "A number stands here"},
        {fixed, "32767.99998", INT32_MAX},
        {fixed, "32768", {}, "What may stand here goes from -32768 to 32767.99998."},
        {fixed, "-32768", INT32_MIN},
        {fast, "-1", -1},
        {fast, "20", 20 * 65536},
        {angle, "-45", -45 * 65536},
        {thing, "150", 150},
        {thing, "151", {}, "Things go from 1 to 150, and 0 is none."},
        {thing, "-1", {}, "Things"},
        {state, "4000", {}, "Frames go from 0 to 3999."},
        {bits, "SHOOTABLE", 4},
        {bits, "solid + shootable", 6, "", "SOLID + SHOOTABLE"},
        {bits, "SOLID|MISSI", {}},
        {bits, "SOLID + RIP", {}, "The engine has no bit \"RIP\" here."},
        {bits, "SOLI +", {}, "The engine has no bit \"SOLI\" here."},
        {bits, "6", 6, "", "SOLID + SHOOTABLE"},
        {bits, "0", 0},
        {bits, "4294967296", {}, "Bits are numbers of 32 bits."},
        {bits21, "RIP + BOSS", 0x20200, "", "BOSS + RIP"},
        {bits21, "2147483648", INT32_MIN},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.typed);
        const TypedValue read = ReadValue(engine, row.meaning, row.typed);
        EXPECT_EQ(read.number, row.number);
        EXPECT_EQ(read.refusal.substr(0, std::string_view(row.refusal).size()), row.refusal);
        EXPECT_EQ(read.refusal.empty(), *row.refusal == '\0') << read.refusal;
        if (read.number) {
            EXPECT_EQ(ValueText(engine, row.meaning, *read.number), row.text != nullptr ? row.text : row.typed);
        }
    }
}

TEST_F(Mbf21Test, EveryNumberIsShownAndReadBack) {
    std::uint32_t random = 1;
    for (int i = 0; i < 2000; ++i) {
        random = random * 1664525 + 1013904223;
        const auto number = static_cast<std::int32_t>(random >> (i % 32));
        for (const ValueMeaning& meaning : {ValueMeaning{}, ValueMeaning{Kind::Fixed16}, ValueMeaning{Kind::FastSpeed},
                                            ValueMeaning{Kind::Bits}, ValueMeaning{Kind::Bits, {}, BitSet::Things21}}) {
            const std::string text = ValueText(engine, meaning, number);
            ASSERT_EQ(ReadValue(engine, meaning, text).number, number) << text;
        }
    }
}

TEST_F(Mbf21Test, AnotherActionClearsWhatItDoesNotTake) {
    const struct {
        const char *before, *after;
        std::vector<FieldValue> values;
        Lines cleared;
    } cases[]{
        {"SpawnObject", "MonsterProjectile", {12, 5, 6, 7, 8, 9}, {"x_ofs", "x_vel"}},
        {"SpawnObject", "Chase", {12, {}, 0}, {"type", "x_ofs"}},
        {"MonsterMeleeAttack", "RadiusDamage", {3, 8, 1}, {"sound"}},
        {"JumpIfHealthBelow", "WeaponJump", {3, 8}, {}},
        {"JumpIfHealthBelow", "HealChase", {3, 8}, {"health"}},
        {"Spawn", "PlaySound", {3, 8}, {"type", "zpos"}},
        {"Spawn", "MonsterProjectile", {3, 0}, {"type"}},
        {"Spawn", "Spawn", {3, 8}, {}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(std::string(row.before) + " " + row.after);
        State(450) = patch.defaults.states[450];
        Act(450, row.before, row.values);
        Lines names;
        for (const ClearedArgument& each : ArgumentsToClear(ArgumentTable(engine), State(450), Action(row.after))) {
            names.push_back(each.name);
            WriteCell(patch.current, {RecordKind::State, 450, each.field}, each.value);
        }
        EXPECT_EQ(names, row.cleared);
        State(450).codePointer = Action(row.after);
        EXPECT_TRUE(ArgumentsToClear(ArgumentTable(engine), State(450), Action(row.after)).empty());
    }
    State(450) = patch.defaults.states[450];
    SetValue(State(450), FieldOf(&StateRecord::arg2), 7);
    State(450).unknown1 = 9;
    const auto cleared = ArgumentsToClear(ArgumentTable(engine), State(450), Action("Look"));
    ASSERT_EQ(cleared.size(), 1U) << "an argument that no action took; parameters of others stay";
    EXPECT_EQ(cleared.front().name, "Args2");
}

TEST_F(Mbf21Test, ThingsLeadToStatesByArgumentsAndDrops) {
    PatchSet& set = patch.current;
    constexpr int imp = 11, ball = 31, bonus = 100;
    const auto has = [&](std::int32_t state) {
        return std::ranges::binary_search(StatesOfThing(set, engine, imp), state);
    };
    for (const std::int32_t state : {1200, 1300, 1301})
        State(state).nextState = 0; // not themselves
    const std::int32_t flying = set.things[ball].initialState, bursting = set.things[ball].deathState,
                       lying = set.things[bonus].initialState;
    EXPECT_FALSE(has(flying) || has(1300) || has(lying));
    Act(450, "MonsterProjectile", {ball + 1});
    Act(451, "RandomJump", {1300, 128});
    Act(1300, "HealChase", {1301});
    set.things[ball].droppedItem = bonus + 1;
    EXPECT_TRUE(has(flying) && has(bursting) && has(1300) && has(1301) && has(lying));
    EXPECT_EQ(UsersOfState(set, engine, 1300), Lines{"frame 451 (RandomJump)"});
    set.things[bonus].droppedItem = imp + 1; // and round
    Act(451, "RandomJump", {-7, 128});
    EXPECT_TRUE(has(flying));
    EXPECT_FALSE(has(1300));
    const States unused = UnusedStates(set, engine);
    EXPECT_TRUE(std::ranges::binary_search(unused, 1200));
    Act(1300, "HealChase", {1200});
    EXPECT_FALSE(std::ranges::binary_search(UnusedStates(set, engine), 1200));
    State(1300).given = 0;
    EXPECT_TRUE(std::ranges::binary_search(UnusedStates(set, engine), 1200)) << "an argument that is unset";
    engine.dialect.fields = FieldLevel::Doom;
    EXPECT_FALSE(has(lying));
}

} // namespace
} // namespace plinket3::test
