#include "core/modMain.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace plinket3 {
namespace {

using test::ExpectingNotifier;
using test::ReadFile;
using test::TemporaryFolder;
using test::WriteFile;

constexpr const char* betaNotice = "This is a beta release of Plinket3 -- use it at your own risk!";
constexpr const char* firstRunNotice = "This is the first time Plinket3 is run from this location. Please adjust the "
                                       "program's settings and be sure to add "
                                       "at least one IWAD.";
constexpr const char* validDetect = "type = \"Plinket3 IWAD detect configuration file\";\n";

/// Records what start-up asks for, and logs as windows do.
class RecordingFrontEnd : public FrontEnd {
public:
    explicit RecordingFrontEnd(clsLog& log) : log_(log) {}

    void ShowSplash() override { calls.emplace_back("splash"); }
    void RepaintSplash() override { calls.emplace_back("repaint splash"); }
    void UnloadSplash() override { calls.emplace_back("unload splash"); }
    bool InstallFont(const std::filesystem::path& file) override {
        calls.push_back("font " + file.filename().string());
        return fontWorks;
    }
    void LoadWindow(std::string_view name) override { log_.Add("  Loaded " + std::string(name)); }
    void UnloadWindow(std::string_view name) override { unloaded.emplace_back(name); }
    void ApplyInterfaceFont() override { calls.emplace_back("interface font"); }
    void UpdateCaption() override { calls.emplace_back("caption"); }
    Status StartAudio() override { return audioWorks ? Status() : Status::Failure("no device"); }
    void StopAudio() override { calls.emplace_back("stop audio"); }
    bool ShowOptions() override {
        calls.emplace_back("options");
        return optionsAccepted;
    }
    void ShowMainWindow() override { calls.emplace_back("main window"); }
    void ShowStartup() override { calls.emplace_back("startup"); }
    void OpenFile(const std::filesystem::path& file) override { calls.push_back("open " + file.string()); }
    bool SessionOpen() const override { return sessionOpen; }
    void RefreshEditors() override { calls.emplace_back("refresh editors"); }
    void RefreshSave() override { calls.emplace_back("refresh save"); }
    bool CloseIwad() override { return sessionOpen; }
    bool CloseDataWad() override { return sessionOpen; }

    std::vector<std::string> calls, unloaded;
    bool fontWorks = true, audioWorks = true, optionsAccepted = true, sessionOpen = false;

private:
    clsLog& log_;
};

class StartUpTest : public ::testing::Test {
protected:
    StartUpTest() {
        environment.programFolder = folder / "program";
        environment.settingsFolder = folder / "config" / "Plinket3";
        environment.documentsFolder = folder / "documents";
        std::filesystem::create_directories(environment.programFolder / "config");
        WriteFile(environment.programFolder / "iwaddetect.cfg", validDetect);
    }

    /// A settings file of an earlier run, so that no first-run message comes.
    void MakeSettings() {
        std::filesystem::create_directories(environment.settingsFolder);
        WriteFile(SettingsFile(), "Type = \"Plinket3 Program Configuration file\"; firstRun = 0;\n");
    }
    std::filesystem::path SettingsFile() const { return environment.settingsFolder / "plinket3.cfg"; }
    std::filesystem::path LogFile() const { return environment.settingsFolder / "plinket3.log"; }
    void ExpectBetaNotice() { notifier.Expect(MessageKind::Exclamation, betaNotice); }

    /// The log's lines after its banner, without their times.
    std::vector<std::string> LogLines() const {
        std::istringstream stream(ReadFile(LogFile()));
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);)
            if (line.starts_with('[') && line.ends_with('\r'))
                lines.push_back(line.substr(12, line.size() - 13));
        lines.erase(lines.begin(), lines.begin() + 2);
        return lines;
    }

    TemporaryFolder folder;
    ExpectingNotifier notifier;
    Environment environment{notifier};
    RecordingFrontEnd frontEnd{environment.log};
};

TEST_F(StartUpTest, LogsEachStepInItsOrder) {
    MakeSettings();
    ExpectBetaNotice();
    ASSERT_TRUE(modMain::StartUp(environment, frontEnd, {}));
    modMain::ShutDown(environment, frontEnd);
    std::string log;
    for (const std::string& line : LogLines())
        log += line + "\n";
    EXPECT_EQ(log, ReadFile(std::filesystem::path(CASES_FOLDER) / "startup.log"));
    const std::vector<std::string> calls{"splash",  "repaint splash", "font VeraMono.ttf", "interface font",
                                         "caption", "refresh save",   "unload splash",     "main window",
                                         "startup", "stop audio"};
    EXPECT_EQ(frontEnd.calls, calls);
    EXPECT_EQ(frontEnd.unloaded.size(), 18U);
    EXPECT_EQ(frontEnd.unloaded.front(), "frmEditThings");
    EXPECT_EQ(frontEnd.unloaded.back(), "frmStartup");
}

TEST_F(StartUpTest, FirstRunShowsTheOptionsWhichMayEndTheProgramAtOnce) {
    for (const bool accepted : {false, true}) {
        frontEnd.optionsAccepted = accepted;
        frontEnd.calls.clear();
        ExpectBetaNotice();
        notifier.Expect(MessageKind::Information, firstRunNotice);
        EXPECT_EQ(modMain::StartUp(environment, frontEnd, {}), accepted);
        EXPECT_EQ(frontEnd.calls[2], "options");
        EXPECT_NE(ReadFile(SettingsFile()).find(accepted ? "firstRun = 0;" : "firstRun = 1;"), std::string::npos);
        EXPECT_EQ(LogLines()[3], "First run, displaying Options dialog.");
    }
}

TEST_F(StartUpTest, InvalidIwadDetectConfigurationLeavesEmptySettingsBehind) {
    MakeSettings();
    WriteFile(environment.programFolder / "iwaddetect.cfg", "type = \"something else\";");
    ExpectBetaNotice();
    notifier.Expect(MessageKind::Critical, "Invalid IWAD detect configuration file.");
    EXPECT_FALSE(modMain::StartUp(environment, frontEnd, {}));
    EXPECT_EQ(ReadFile(SettingsFile()), "");
    EXPECT_EQ(LogLines().back(), "Buh-bye...");

    // ... which ends every later start until the user deletes the file.
    WriteFile(environment.programFolder / "iwaddetect.cfg", validDetect);
    Environment second(notifier);
    second.programFolder = environment.programFolder;
    second.settingsFolder = environment.settingsFolder;
    ExpectBetaNotice();
    notifier.Expect(MessageKind::Critical, "Invalid program configuration file.");
    EXPECT_FALSE(modMain::StartUp(second, frontEnd, {}));
    EXPECT_EQ(ReadFile(SettingsFile()), "");
}

TEST_F(StartUpTest, GoesOnWithoutFontAndAudioAndClosesWhatWasOpened) {
    MakeSettings();
    frontEnd.fontWorks = frontEnd.audioWorks = false;
    ExpectBetaNotice();
    ASSERT_TRUE(modMain::StartUp(environment, frontEnd, {}));
    frontEnd.sessionOpen = true;
    frontEnd.calls.clear();
    modMain::ApplySettings(environment, frontEnd);
    EXPECT_EQ(frontEnd.calls, (std::vector<std::string>{"refresh editors", "refresh save"}));
    modMain::ShutDown(environment, frontEnd);
    const std::vector<std::string> lines = LogLines();
    const auto has = [&lines](const std::string& line) { return std::count(lines.begin(), lines.end(), line) == 1; };
    EXPECT_TRUE(has("Unable to install font " + (environment.programFolder / "resources" / "VeraMono.ttf").string()));
    EXPECT_TRUE(has("Could not initialise BASS library."));
    EXPECT_EQ(lines[lines.size() - 6], "Closed IWAD");
    EXPECT_EQ(lines[lines.size() - 5], "Closed data WAD");
}

TEST_F(StartUpTest, TellsOnceWhatItCannotWrite) {
    MakeSettings();
    std::filesystem::create_directory(LogFile());
    std::filesystem::remove(SettingsFile());
    std::filesystem::create_symlink("nowhere/plinket3.cfg", SettingsFile());
    notifier.Expect(MessageKind::Exclamation, "Could not write the log " + LogFile().string() + ": Is a directory");
    ExpectBetaNotice();
    notifier.Expect(MessageKind::Exclamation,
                    "Could not save " + SettingsFile().string() + ": No such file or directory");
    notifier.Expect(MessageKind::Information, firstRunNotice);
    ASSERT_TRUE(modMain::StartUp(environment, frontEnd, {}));
    modMain::ShutDown(environment, frontEnd);
}

struct LoadCase {
    const char* name;
    std::string arguments; // with FOLDER for the test's folder
    std::string opened;    // what is opened; empty: the patch does not exist

    friend void PrintTo(const LoadCase& load, std::ostream* stream) { *stream << load.arguments; }
};

class LoadOptionTest : public StartUpTest, public ::testing::WithParamInterface<LoadCase> {};

TEST_P(LoadOptionTest, OpensOrRefuses) {
    MakeSettings();
    const std::filesystem::path patches = folder / "patches";
    std::filesystem::create_directories(patches);
    WriteFile(patches / "Mine.deh", "x");
    WriteFile(patches / "my-loadout.deh", "x");
    const auto placed = [&](std::string text) {
        for (std::size_t at = text.find("FOLDER"); at != std::string::npos; at = text.find("FOLDER"))
            text.replace(at, 6, patches.string());
        return text;
    };
    std::vector<std::string> arguments;
    std::istringstream words(placed(GetParam().arguments));
    for (std::string word; words >> word;)
        arguments.push_back(word);
    ExpectBetaNotice();
    const bool exists = !GetParam().opened.empty();
    if (!exists)
        notifier.Expect(MessageKind::Critical, "Patch file specified on commandline does not exist");
    EXPECT_EQ(modMain::StartUp(environment, frontEnd, modMain::ReadCommandLine(arguments)), exists);
    if (exists)
        EXPECT_EQ(frontEnd.calls.back(), "open " + placed(GetParam().opened));
    else
        EXPECT_EQ(LogLines().back(), "Buh-bye...");
}

INSTANTIATE_TEST_SUITE_P(
    CommandLines, LoadOptionTest,
    ::testing::Values(LoadCase{"FindsTheFileIgnoringCase", "-load FOLDER/mine.deh", "FOLDER/Mine.deh"},
                      LoadCase{"TakesQuotesAway", "-LOAD \"FOLDER/MINE.deh\"", "FOLDER/Mine.deh"},
                      LoadCase{"MissingFile", "-load FOLDER/other.deh", ""},
                      LoadCase{"AnotherOptionSpoilsTheValue", "-load FOLDER/mine.deh -x", ""},
                      LoadCase{"PlainFileAsTyped", "FOLDER/Mine.deh", "FOLDER/Mine.deh"},
                      LoadCase{"PlainFileWithTheOptionInItsName", "FOLDER/my-loadout.deh", "FOLDER/my-loadout.deh"},
                      LoadCase{"TheOptionWins", "FOLDER/my.deh -load FOLDER/Mine.deh", "FOLDER/Mine.deh"}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace plinket3
