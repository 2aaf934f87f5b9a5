#include "core/modConfig.h"

#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace plinket3 {
namespace {

using namespace std::string_literals;
using modConfig::LoadEngine;
using test::WriteFile;

std::string File(const char* name) { return test::ReadFile(std::filesystem::path(CASES_FOLDER) / name); }

const std::string required = File("engine.cfg"), optional = File("engine_more.cfg");

class EngineConfigurationTest : public testing::Test {
protected:
    Status Load(const std::string& text) {
        WriteFile(folder_ / "doom19.cfg", text);
        return LoadEngine(folder_ / "doom19.cfg", engine_);
    }
    /// The required part with `what` replaced.
    std::string With(const std::string& what, const std::string& by) {
        std::string text = required;
        const std::size_t at = text.find(what);
        EXPECT_NE(at, std::string::npos) << what;
        return text.replace(at, what.size(), by);
    }

    test::TemporaryFolder folder_;
    EngineConfiguration engine_;
};

TEST_F(EngineConfigurationTest, ActionsKeepTheOrderOfTheDescriptions) {
    ASSERT_TRUE(Load(required));
    std::string list;
    for (const EngineConfiguration::Action& action : engine_.actions)
        list += std::to_string(action.value) + "=" + action.mnemonic + "=" + action.description + ";";
    EXPECT_EQ(list, "7=Look=Looks;0=NULL=No action;-3==Odd;");
    EXPECT_EQ(engine_.CodePointerOf("Look"), 7) << "the first of two";
    EXPECT_EQ(engine_.CodePointerOf("LOOK"), std::nullopt);
}

// The lists are compared with their sources for every engine that is built: EveryEngine.ReadsBackAsTheTablesTellIt.
TEST_F(EngineConfigurationTest, LoadsWhatNoBuiltEngineHas) {
    ASSERT_TRUE(Load(required + optional));
    EXPECT_EQ(engine_.exeSize, 709905);
    EXPECT_TRUE(engine_.allowExeRead);
    EXPECT_EQ(engine_.offsets.dataSegment, 16);
    EXPECT_EQ(engine_.offsets.cheats, 10);
    EXPECT_EQ(engine_.cheatOffsets, (std::vector{100, 31}));
    EXPECT_EQ(engine_.codePointerOffsets, (std::vector{11, 12, 13}));
    ASSERT_EQ(engine_.miscellaneousOffsets.size(), 22U);
    for (std::int32_t index = 0; index < 22; ++index)
        EXPECT_EQ(engine_.miscellaneousOffsets[static_cast<std::size_t>(index)], index + 1);
    ASSERT_EQ(engine_.strings.size(), 2U);
    EXPECT_EQ(engine_.strings[0].text, "Development mode ON.\\n");
    ASSERT_TRUE(Load(required + "dialect { rules = \"engine\"; }"));
    EXPECT_TRUE(engine_.dialect.EngineRules());
    EXPECT_TRUE(engine_.dialect.By(Rules::Kept).EngineRules());
    EXPECT_FALSE(engine_.dialect.unlimited);
    ASSERT_TRUE(Load(required + "dialect { rules = \"engine\"; numbers = \"unlimited\"; }"));
    EXPECT_TRUE(engine_.dialect.By(Rules::Kept).unlimited);
    ASSERT_TRUE(Load(required + "dialect { rules = \"kept\"; numbers = \"unlimited\"; }"));
    EXPECT_FALSE(engine_.dialect.EngineRules());
    EXPECT_FALSE(engine_.dialect.By(Rules::Engine).unlimited);
    ASSERT_TRUE(Load(required)); // a later file empties the strings but keeps the offsets
    EXPECT_TRUE(engine_.strings.empty());
    EXPECT_EQ(engine_.offsets.sounds, 4);
}

TEST_F(EngineConfigurationTest, FailuresNameFileStructureAndKeyAndChangeNothing) {
    const struct {
        std::string what, by, reason;
    } rows[]{
        {"table = \"doom19.tbl\";", "", "missing key \"engine.table\""},
        {"flagnames {", "flags {", "missing structure \"flagnames\""},
        {"flagnames { SPECIAL; SOLID = 7; }", "flagnames = 1;", "\"flagnames\" is not a structure"},
        {"\"Doom 1.9\"", "5", "\"engine.name\" is not a text"},
        {"exesize = 709905", "exesize = \"big\"", "\"engine.exesize\" is not a number"},
        {"extended = 0;", "extended { }", "\"engine.extended\" is not a number"},
        {"version = 19", "version = 32768", "\"engine.version\" is out of range"},
        {"things = 137", "things = 2147483648", "\"itemcounts.things\" is out of range"},
        {"things = 137", "things = -1", "\"itemcounts.things\" is negative"},
        {"b = \"Fist\"", "b = 3", "\"weaponnames.b\" is not a text"},
        {"7 = \"Looks\"", "7a = \"Looks\"", "\"actiondescriptions.7a\" is a key that is not a number"},
        {"flagnames {", "offsets { things = 1; } flagnames {", "missing key \"offsets.datasegment\""},
        {"flagnames {", "dialect { rules = \"other\"; } flagnames {",
         "\"dialect.rules\" is none of those that there are: \"other\""},
        {"flagnames {", "dialect { rules = \"kept\"; fields = \"mbf22\"; } flagnames {",
         "\"dialect.fields\" is none of those that there are: \"mbf22\""},
        {"flagnames {", "actionarguments { 0 = 1; } flagnames {", "\"0\" is not a structure"},
        {"flagnames {", "actionarguments { 0 { action = \"Look\"; } } flagnames {",
         "missing key \"actionarguments.0.field\""},
        {"flagnames {",
         "actionarguments { 0 { action = \"Jump\"; field = \"Args1\"; name = \"x\"; kind = \"fixed\"; default = 0; "
         "zero = \"\"; meaning = \"\"; } } flagnames {",
         "\"actionarguments.0.action\" is no action: \"Jump\""},
        {"flagnames {", "droppeditems { 1 = \"x\"; } flagnames {", "\"droppeditems.1\" is not a number"},
        {"flagnames {", "cheatlengths { a = \"x\"; } flagnames {", "\"cheatlengths.a\" is not a number"},
        {"flagnames {", "thingnames { } flagnames {", "line 7: key \"thingnames\" occurs twice in one block"}};
    engine_.name = "before";
    const std::string file = (folder_ / "doom19.cfg").string() + ": ";
    for (const auto& row : rows) {
        EXPECT_EQ(Load(With(row.what, row.by)).Reason(), file + row.reason);
        EXPECT_EQ(engine_.name, "before");
    }
}

TEST_F(EngineConfigurationTest, AnotherTypeIsShownAsInvalid) {
    test::ExpectingNotifier notifier;
    notifier.Expect(MessageKind::Exclamation, "Invalid engine configuration file.");
    WriteFile(folder_ / "a.cfg", With("type", "Type"));
    EXPECT_FALSE(modConfig::LoadEngineConfiguration(folder_ / "a.cfg", engine_, notifier));
    WriteFile(folder_ / "a.cfg", required);
    EXPECT_TRUE(modConfig::LoadEngineConfiguration(folder_ / "a.cfg", engine_, notifier));
}

TEST_F(EngineConfigurationTest, TheEnumerationListsValidFilesByName) {
    std::filesystem::create_directory(folder_ / "dir.cfg");
    WriteFile(folder_ / "b.cfg", With("extended = 0", "extended = 1"));
    for (const char* name : {"a.CFG", "c.txt"})
        WriteFile(folder_ / name, required);
    WriteFile(folder_ / "other.cfg", "type = \"Plinket3 IWAD detect configuration file\";");
    WriteFile(folder_ / "unnamed.cfg", With("name = \"Doom 1.9\";", ""));
    std::vector<std::string> skipped;
    const auto engines =
        modConfig::EnumerateEngines(folder_.Path(), [&](std::string_view line) { skipped.emplace_back(line); });
    ASSERT_EQ(engines.size(), 2U);
    EXPECT_EQ(engines[0].file, folder_ / "a.CFG");
    EXPECT_EQ(std::tuple(engines[0].name, engines[0].version, engines[0].extended), std::tuple("Doom 1.9", 19, false));
    EXPECT_TRUE(engines[1].extended);
    EXPECT_EQ(skipped, std::vector{(folder_ / "unnamed.cfg").string() + ": missing key \"engine.name\""});
    EXPECT_TRUE(modConfig::EnumerateEngines(folder_ / "none", nullptr).empty());
}

TEST_F(EngineConfigurationTest, IwadNamesAreFoundByBaseNameInLowerCase) {
    clsConfiguration detect;
    WriteFile(folder_ / "iwaddetect.cfg", "type = \"Plinket3 IWAD detect configuration file\"; doom2 = \"Doom II\";");
    ASSERT_TRUE(modConfig::LoadIwadDetect(folder_ / "iwaddetect.cfg", detect));
    EXPECT_EQ(modConfig::DetectIwadName(detect, "/Games/DOOM2.WAD"), "Doom II");
    EXPECT_EQ(modConfig::DetectIwadName(detect, "doom.wad"), "");
    WriteFile(folder_ / "wrong.cfg", "type = \"x\";");
    for (const char* name : {"wrong.cfg", "none.cfg"})
        EXPECT_EQ(modConfig::LoadIwadDetect(folder_ / name, detect).Reason(),
                  "Invalid IWAD detect configuration file.");
}

} // namespace
} // namespace plinket3
