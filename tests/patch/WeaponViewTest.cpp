#include "patch/WeaponView.h"
#include "patch/StateUse.h"
#include "tests/support/EveryField.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

constexpr std::int32_t pistol = 1, shotgun = 2, chaingun = 3, launcher = 4;

class WeaponViewTest : public ::testing::Test {
protected:
    WeaponView View(std::int32_t weapon, std::int32_t state) const {
        return ViewOfWeapon(patch.current, engine, weapon, state);
    }
    StateRecord& State(std::int32_t state) { return patch.current.states[state]; }

    EngineConfiguration engine;
    PatchData patch = BuiltEngine(DATA_FOLDER, "doom19", engine);
};

TEST_F(WeaponViewTest, TheFlashBeginsWithTheShotAndRunsOnBesideIt) {
    State(22).duration = 5; // of the shotgun: its flash has two pictures, of 4 and 3 tics
    const struct {
        std::int32_t weapon, state, flash;
        int light;
    } rows[]{{pistol, 10, 0, 0},  {pistol, 13, 0, 0},    {pistol, 14, 17, 1},   {pistol, 15, 17, 1},
             {pistol, 16, 0, 0},  {pistol, 17, 0, 1},    {shotgun, 22, 30, 1},  {shotgun, 23, 31, 2},
             {shotgun, 24, 0, 0}, {chaingun, 52, 55, 1}, {chaingun, 53, 56, 2}, {launcher, 60, 63, 1},
             {pistol, -1, 0, 0},  {99, 14, 0, 0},        {pistol, 0, 0, 0}};
    for (const auto& row : rows)
        EXPECT_EQ(View(row.weapon, row.state), (WeaponView{1, 32, row.flash, row.light})) << row.state;
    State(15).codePointer = engine.CodePointerOf("Light2").value();
    EXPECT_EQ(View(pistol, 15).light, 1) << "the flash goes on";
    State(17).codePointer = 0;
    EXPECT_EQ(View(pistol, 15).light, 2) << "of the weapon itself";
    State(17).duration = 0;
    State(17).nextState = 17;
    EXPECT_EQ(View(pistol, 14).flash, 0) << "a circle without time shows nothing";
    State(17).duration = -1;
    EXPECT_EQ(View(pistol, 16).flash, 17) << "for ever";
    patch.current.weapons[chaingun].firingState = INT32_MAX;
    State(53).nextState = 0;
    EXPECT_EQ(View(chaingun, 53).flash, 0) << "there is no such state";
}

TEST_F(WeaponViewTest, APlaceStaysUntilAnotherOneOrTheWeaponIsReady) {
    State(13).unknown1 = 5;
    State(13).unknown2 = 60;
    State(15).unknown1 = 65536 - 7;
    State(15).unknown2 = -3;
    State(10).unknown1 = 9;
    const struct {
        std::int32_t state, x, y;
    } rows[]{{13, 5, 60}, {14, 5, 60}, {15, -7, -3}, {16, -7, -3}, {10, 9, 0}, {11, 1, 32}};
    for (const auto& row : rows) {
        EXPECT_EQ(View(pistol, row.state).x, row.x) << row.state;
        EXPECT_EQ(View(pistol, row.state).y, row.y) << row.state;
    }
}

TEST_F(WeaponViewTest, TheOwnerOfAStateIsTheFirstThatIsToldOf) {
    int owned = 0;
    for (const auto& [number, record] : patch.current.states) {
        const std::vector<std::string> users = UsersOfState(patch.current, engine, number);
        const auto owner = OwnerOfState(patch.current, engine, number);
        ASSERT_EQ(owner.has_value(), !users.empty()) << number;
        if (!owner)
            continue;
        const std::string& name = owner->kind == TargetKind::Weapon ? patch.current.weapons[owner->number].name
                                                                    : patch.current.things[owner->number].name;
        ASSERT_TRUE(users.front().starts_with(name + " (")) << users.front() << ", not " << name;
        ++owned;
    }
    EXPECT_GT(owned, 800);
    EXPECT_EQ(OwnerOfState(patch.current, engine, 17), (Target{TargetKind::Weapon, pistol}));
}

} // namespace
} // namespace plinket3::test
