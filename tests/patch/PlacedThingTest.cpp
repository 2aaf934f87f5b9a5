#include "patch/PlacedThing.h"

#include "tests/support/EveryField.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

constexpr std::int32_t player = 0, zombie = 1, imp = 11, impBall = 31;

TEST(PlacedThingTest, HasAnIdOfItsOwnOrGetsAFreeOne) {
    EngineConfiguration engine;
    PatchSet set = BuiltEngine(DATA_FOLDER, "mbf21", engine).current;
    EXPECT_EQ(IdToPlace(set, imp), 3001);
    EXPECT_EQ(IdToPlace(set, impBall), firstFreeId) << "has none";
    EXPECT_EQ(IdToPlace(set, player), firstFreeId) << "has none";
    set.things[zombie].id = 3001;
    EXPECT_EQ(IdToPlace(set, imp), firstFreeId) << "shares it";
    set.things[zombie].id = firstFreeId;
    EXPECT_EQ(IdToPlace(set, impBall), firstFreeId + 1);
    EXPECT_EQ(IdToPlace(set, zombie), firstFreeId) << "its own";
    for (const std::int32_t other : {1, 4, 11, 32'768, 65'536 + 5})
        EXPECT_EQ((set.things[imp].id = other, IdToPlace(set, imp)), firstFreeId + 1) << other;
}

TEST(PlacedThingTest, WeaponsAreGivenByTheThingThatTheEngineHasForThem) {
    EngineConfiguration engine;
    const PatchSet set = BuiltEngine(DATA_FOLDER, "doom19", engine).defaults;
    std::string names;
    for (std::int32_t weapon = -1; weapon < 10; ++weapon) {
        const auto pickup = PickupOf(set, weapon);
        names += pickup ? std::string(engine.thingNames.at(static_cast<std::size_t>(*pickup))) + "=" +
                              engine.weaponNames.at(static_cast<std::size_t>(weapon)) + ","
                        : "-,";
    }
    EXPECT_EQ(names, "-,-,-,Shotgun=Shotgun,Chaingun=Chaingun,RocketLauncher=Rocket Launcher,PlasmaRifle=Plasma Rifle,"
                     "BFG9000=BFG9000,Chainsaw=Chainsaw,SuperShotgun=Super Shotgun,-,");
}

} // namespace
} // namespace plinket3::test
