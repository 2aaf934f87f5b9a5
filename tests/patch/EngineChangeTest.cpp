#include "patch/EngineChange.h"

#include "patch/PatchDocument.h"
#include "patch/modPatchDiff.h"
#include "patch/modPatchFiles.h"
#include "tests/support/EveryField.h"

#include <gtest/gtest.h>

#include <memory>

namespace plinket3::test {
namespace {

/// A patch of one of the engines that come with the program, taken over to another one.
class EngineChangeTest : public ::testing::Test {
protected:
    void Take(const char* from, const char* to, const std::string& bytes) {
        patch = BuiltEngine(DATA_FOLDER, from, former);
        former.dialect = former.dialect.By(rules);
        if (former.dialect.EngineRules()) {
            auto document = std::make_shared<PatchDocument>();
            ASSERT_TRUE(document->Read(bytes, former, patch.defaults, patch.current).status);
            patch.document = std::move(document);
        } else {
            ASSERT_TRUE(modPatchFiles::ParsePatch(bytes, former, patch.defaults, patch.current).status);
        }
        const PatchData standard = BuiltEngine(DATA_FOLDER, to, engine);
        engine.dialect = engine.dialect.By(rules);
        change = ChangeEngine(patch, former, engine, standard.defaults);
    }
    std::string Saved() const {
        BytePieces pieces;
        EXPECT_TRUE(modPatchFiles::FormatForSaving(change.patch, engine, pieces));
        std::string saved = pieces.Joined();
        std::erase(saved, '\r');
        return saved;
    }

    Rules rules = Rules::Engine;
    EngineConfiguration former, engine;
    PatchData patch;
    EngineChange change;
};

const std::string modern = R"(Patch File for DeHackEd v3.0
Doom version = 21
Patch format = 6

# of one mind
Thing 12 (Imp)
Hit points = 61
MBF21 Bits = RANGEHALF
Bits = SOLID+TOUCHY

Frame 1500
Next frame = 1200

[CODEPTR]
Frame 1500 = SpawnObject
Frame 10 = Mushroom

[STRINGS]
GOTARMOR = Plates.
)";

TEST_F(EngineChangeTest, ANewerEngineKeepsEveryLineButTheVersion) {
    Take("mbf21", "dsdhacked", modern);
    EXPECT_EQ(change.lost, std::vector<std::string>());
    std::string expected = modern;
    expected.replace(expected.find("= 21"), 4, "= 2021");
    EXPECT_EQ(Saved(), expected);
    EXPECT_EQ(change.patch.current.things[11].hitPoints, 61);
    EXPECT_EQ(change.patch.doomVersion, 2021);
}

TEST_F(EngineChangeTest, AnOlderEngineLosesWhatItTellsAndNothingElse) {
    Take("mbf21", "mbf203", modern);
    EXPECT_EQ(change.lost, (std::vector<std::string>{"Thing 12 (Imp): MBF21 Bits 0 -> RANGEHALF",
                                                     "Frame 1500: Next frame 1500 -> 1200",
                                                     "Frame 1500: Code pointer NULL -> SpawnObject"}));
    EXPECT_EQ(Saved(), R"(Patch File for DeHackEd v3.0
Doom version = 21
Patch format = 6

# of one mind
Thing 12 (Imp)
Hit points = 61
Bits = SOLID+TOUCHY

[CODEPTR]
Frame 10 = Mushroom

[STRINGS]
GOTARMOR = Plates.
)");
}

TEST_F(EngineChangeTest, AnEngineOfTheOtherModeGetsANewPatchWithTheNotes) {
    Take("mbf21", "doom19", modern);
    EXPECT_EQ(change.lost.size(), 5U); // those above, the bit and the action of a frame that cannot have another one
    EXPECT_EQ(change.patch.current.things[11].bits, 2);
    const std::string saved = Saved();
    EXPECT_NE(saved.find("# of one mind\nThing 12 (Imp)"), std::string::npos) << saved;
    EXPECT_NE(saved.find("Text 20 7\nPicked up the armor.Plates."), std::string::npos) << saved;
}

TEST_F(EngineChangeTest, AnExtendedEngineNamesWhatNormalPatchesQuote) {
    for (const Rules each : {Rules::Kept, Rules::Engine}) {
        rules = each;
        Take("doom19", "boom19",
             "Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\n\nPointer 5 (Frame 20)\n"
             "Codep Frame = 50\n\nText 20 7\nPicked up the armor.Plates.\n");
        EXPECT_EQ(change.lost, std::vector<std::string>());
        const std::string saved = Saved();
        const std::int32_t changed = each == Rules::Engine ? 20 : former.codePointerStates[5];
        EXPECT_NE(saved.find("[CODEPTR]\nFrame " + std::to_string(changed) + " = Lower\n"), std::string::npos) << saved;
        EXPECT_NE(saved.find("\nGOTARMOR = Plates.\n"), std::string::npos) << saved;
    }
}

TEST_F(EngineChangeTest, NamesOfLumpsGoAlongUnlessTheirLinesMeanNothingThere) {
    const std::string named = "Doom version = 2021\n\n[SPRITES]\nTROO = SARG\n1 = NEWS\n\n[MUSIC]\nintro = outro\n\n"
                              "[HELPER]\ntype = 12\n";
    Take("dsdhacked", "mbf21", named);
    EXPECT_EQ(change.lost, std::vector<std::string>{R"(Sprite 1: Name "SHTG" -> "NEWS")"});
    EXPECT_EQ(change.patch.current.SpriteName(0), "SARG");
    EXPECT_EQ(change.patch.current.misc.helper, 12);
    Take("dsdhacked", "doom19", named);
    EXPECT_EQ(change.lost, std::vector<std::string>{"Helper: Type unset -> 12"});
    const std::string saved = Saved();
    EXPECT_NE(saved.find("Text 4 4\nTROOSARG\n\nText 4 4\nSHTGNEWS\n\nText 5 5\nintrooutro\n"), std::string::npos)
        << saved;
}

TEST_F(EngineChangeTest, MadeRecordsGoWhereNumbersHaveNoLimits) {
    const std::string made = "Doom version = 2021\n\nThing 9000 (Twin)\nInitial frame = 70000\n\nFrame 70000\n"
                             "Sprite number = 900\n\n[SPRITES]\n900 = TWIN\n";
    Take("dsdhacked", "id24", made);
    EXPECT_EQ(change.lost, std::vector<std::string>());
    EXPECT_EQ(change.patch.current.things[8999].initialState, 70000);
    Take("dsdhacked", "mbf21", made);
    EXPECT_EQ(change.patch.current.things.size(), change.patch.defaults.things.size());
    EXPECT_FALSE(change.lost.empty());
    EXPECT_EQ(Saved(), "Doom version = 21\n\n");
}

} // namespace
} // namespace plinket3::test
