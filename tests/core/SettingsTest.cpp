#include "core/Text.h"
#include "core/modConfig.h"

#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace plinket3 {
namespace {

using namespace std::string_literals;
using test::ReadFile;
using test::WriteFile;

constexpr const char* type = "Type = \"Plinket3 Program Configuration file\";\r\n";

class SettingsTest : public testing::Test {
protected:
    SettingsTest() { settings_.File(folder_ / "plinket3.cfg"); }
    Status Load(const std::string& text) {
        WriteFile(settings_.File(), text);
        return settings_.Load();
    }
    std::string Saved() {
        EXPECT_TRUE(settings_.Save());
        return ReadFile(settings_.File());
    }
    std::string IwadList() const {
        std::string list;
        for (const Settings::Iwad& iwad : settings_.Iwads())
            list += iwad.name + "=" + iwad.path + " ";
        return list;
    }

    test::TemporaryFolder folder_;
    Settings settings_;
};

TEST_F(SettingsTest, TheFirstFileHoldsTheDefaults) {
    settings_.CreateDefaults("/home/me/My\\Documents/");
    const std::string first = ReadFile(std::filesystem::path(CASES_FOLDER) / "first_settings.cfg");
    EXPECT_EQ(Saved(), ReplaceAll(first, "\n", "\r\n"));
}

TEST_F(SettingsTest, OnlyAnotherTypeIsRefused) {
    constexpr const char* invalid = "Invalid program configuration file.";
    EXPECT_EQ(settings_.Load().Reason(), invalid);
    EXPECT_EQ(Load("").Reason(), invalid);
    EXPECT_EQ(Load("type = \"Plinket3 Program Configuration file\"; a = 1;").Reason(), invalid);
    EXPECT_EQ(settings_.Number("a"), 1) << "what was read is written back";
    ASSERT_TRUE(Load(type));
    EXPECT_EQ(settings_.Number("createBackup"), 1);
    EXPECT_EQ(settings_.Text("lastDir"), "");
    settings_.AddIwad("a", "b");
    settings_.AddRecentFile("c");
    EXPECT_EQ(IwadList(), "a=b ");
    EXPECT_EQ(settings_.RecentFiles(), std::vector{"c"s});
}

TEST_F(SettingsTest, AFileThatCannotBeReadIsNotOverwritten) {
    const std::string twice = type + "a = 1;\r\na = 2;\r\n"s;
    EXPECT_FALSE(Load(twice));
    EXPECT_FALSE(settings_.Save());
    EXPECT_EQ(ReadFile(settings_.File()), twice);
}

TEST_F(SettingsTest, ProgramsThatRunAtTheSameTimeKeepWhatEachHasChanged) {
    const std::string start = type + "lastDir = \"/\"; createBackup = 1; IWADs { 0wad = \"a;/a\"; 1wad = \"b;/b\"; } "
                                     "recentFiles { 1 = \"/old\"; }"s;
    ASSERT_TRUE(Load(start));
    Settings other;
    other.File(settings_.File());
    ASSERT_TRUE(other.Load());
    other.AddIwad("c", "/c");
    other.AddIwad("d", "/d");
    other.RemoveIwad(0);
    other.AddRecentFile("/theirs");
    other.Number("createBackup", 0);
    settings_.AddIwad("d", "/d");
    settings_.AddIwad("e", "/e");
    settings_.AddRecentFile("/mine");
    settings_.Text("lastDir", "/x");
    other.RememberSession("/a.deh", {"boom19.cfg", "/b", "/data.wad"});
    for (std::size_t i = 0; i < Settings::mostFileSessions; ++i)
        settings_.RememberSession("/" + std::to_string(i) + ".wad:DEHACKED", {"mbf19.cfg", "/b", ""});
    settings_.RememberSession("/0.wad:DEHACKED", {"mbf21.cfg", "/c", ""});
    ASSERT_TRUE(other.Save());
    ASSERT_TRUE(settings_.Save());
    ASSERT_TRUE(other.Save());
    for (const Settings* program : {&settings_, &other}) {
        std::string list;
        for (const Settings::Iwad& iwad : program->Iwads())
            list += iwad.name + "=" + iwad.path + " ";
        EXPECT_EQ(list, "b=/b c=/c d=/d e=/e ");
        EXPECT_EQ(program->RecentFiles(), (std::vector{"/old"s, "/theirs"s, "/mine"s}));
        EXPECT_EQ(program->Number("createBackup"), 0);
        EXPECT_EQ(program->Text("lastDir"), "/x");
        EXPECT_EQ(program->SessionOf("/0.wad:DEHACKED"), (Settings::FileSession{"mbf21.cfg", "/c", ""}));
        EXPECT_EQ(program->SessionOf("/1.wad:DEHACKED"), (Settings::FileSession{"mbf19.cfg", "/b", ""}));
        EXPECT_EQ(program->SessionOf("/a.deh"), Settings::FileSession()) << "the first of too many";
    }
}

TEST_F(SettingsTest, IwadsAreNumberedAnewAfterARemoval) {
    ASSERT_TRUE(
        Load(type + "IWADs { 1wad = \"two;/2\"; 0wad = \"one;/1;x\"; 10wad = \"eleven;/11\"; 2wad = \"three\"; }"s));
    EXPECT_EQ(IwadList(), "one=/1;x two=/2 three= eleven=/11 ");
    settings_.RemoveIwad(9);
    settings_.RemoveIwad(0);
    EXPECT_EQ(Saved(), type + "\r\nIWADs\r\n{\r\n\t0wad = \"two;/2\";\r\n\t1wad = \"three;\";\r\n"
                              "\t2wad = \"eleven;/11\";\r\n}\r\n\r\n"s);
}

TEST_F(SettingsTest, ARecentFileMovesToTheEndAndTakesTheSmallestFreeKey) {
    ASSERT_TRUE(Load(type + "recentFiles { 3 = \"/p/a.deh\"; 1 = \"/p/b.deh\"; 2 = \"/p/c.deh\"; }"s));
    settings_.AddRecentFile("/P/B.deh");
    settings_.AddRecentFile("/p/d.deh");
    EXPECT_EQ(Saved(), type + "\r\nrecentFiles\r\n{\r\n\t3 = \"/p/a.deh\";\r\n\t2 = \"/p/c.deh\";\r\n"
                              "\t1 = \"/P/B.deh\";\r\n\t4 = \"/p/d.deh\";\r\n}\r\n\r\n"s);
}

TEST_F(SettingsTest, TheThirtyThirdRecentFileDropsTheOldest) {
    settings_.CreateDefaults("/");
    for (int file = 1; file <= 33; ++file)
        settings_.AddRecentFile("/" + std::to_string(file));
    EXPECT_EQ(settings_.RecentFiles().size(), 32U);
    EXPECT_EQ(settings_.RecentFiles().front(), "/2");
    EXPECT_NE(Saved().find("\t1 = \"/33\";\r\n}"), std::string::npos) << "the key that became free";
    settings_.AddRecentFile("/20");
    EXPECT_EQ(settings_.RecentFiles().size(), 31U) << "room is made before the file is looked for";
}

TEST_F(SettingsTest, RecentFilesThatAreGoneArePruned) {
    for (const char* name : {"a", "b", "c"})
        WriteFile(folder_ / name, "");
    settings_.CreateDefaults("/");
    const std::string folder = folder_.Path().string();
    for (const char* name : {"/a", "/gone", "", "/b", "/gone2", "/c"})
        settings_.AddRecentFile(folder + name);
    settings_.PruneRecentFiles();
    EXPECT_EQ(settings_.RecentFiles(), (std::vector{folder + "/a", folder + "/b", folder + "/c"}));
}

TEST_F(SettingsTest, PortsAreKeptAsTheyAre) {
    settings_.CreateDefaults("/");
    EXPECT_TRUE(settings_.Ports().empty());
    const std::vector<Settings::Port> ports{{"Woof; \"newest\"", "C:\\My games\\woof.exe", "-iwad %i 'a b'"},
                                            {"", "/x", ""}};
    settings_.Ports({{"another", "", ""}});
    settings_.Ports(ports);
    EXPECT_TRUE(Load(Saved()));
    EXPECT_EQ(settings_.Ports(), ports);
    EXPECT_TRUE(Load(std::string(type) + "ports { 1 = 5; 2 { name = \"a\"; } 3 { name = 7; } }"));
    EXPECT_EQ(settings_.Ports(), (std::vector<Settings::Port>{{"a", "", ""}, {}}));
}

} // namespace
} // namespace plinket3
