#include "core/modMain.h"

#include "core/Files.h"
#include "core/Paths.h"
#include "core/System.h"
#include "core/Text.h"
#include "core/modParse.h"

#include <array>
#include <string>
#include <utility>

namespace plinket3::modMain {

namespace {

/// In the order in which they are loaded.
constexpr std::array<std::string_view, 19> loadedWindows{
    "frmMain",        "frmEditThings", "frmEditStates",   "frmEditSounds",  "frmEditStrings",
    "frmEditWeapons", "frmEditAmmo",   "frmEditCheats",   "frmEditMisc",    "frmEditPars",
    "frmPropSound",   "frmPropString", "frmSelectSprite", "frmSelectState", "frmSelectAction",
    "frmOptions",     "frmAbout",      "frmNewFile",      "frmStartup"};

/// In the order in which they are unloaded; the main window is the one that closes.
constexpr std::array<std::string_view, 18> unloadedWindows{
    "frmEditThings",   "frmEditStates",  "frmEditSounds",   "frmEditStrings", "frmEditWeapons", "frmEditAmmo",
    "frmEditCheats",   "frmEditMisc",    "frmEditPars",     "frmOptions",     "frmPropSound",   "frmPropString",
    "frmSelectSprite", "frmSelectState", "frmSelectAction", "frmAbout",       "frmNewFile",     "frmStartup"};

constexpr std::string_view loadOption = "-load";

/// Folders and files that start-up cannot do without are told of, but end nothing: the program goes on without.
void OpenSettingsFolder(Environment& environment) {
    std::error_code error;
    if (!std::filesystem::is_directory(environment.settingsFolder, error))
        std::filesystem::create_directories(environment.settingsFolder, error);
    std::string failure;
    if (error)
        failure = "create the settings folder " + PathText(environment.settingsFolder) + ": " + error.message();
    else if (Status writable = FolderIsWritable(environment.settingsFolder); !writable)
        failure = "write into the settings folder " + PathText(environment.settingsFolder) + ": " + writable.Reason();
    environment.settingsLost = !failure.empty();
    if (environment.settingsLost) {
        environment.notifier.Show(MessageKind::Exclamation,
                                  "Could not " + failure + ". Settings, log and unsaved work will not be kept.");
        return;
    }
    const std::filesystem::path log = environment.settingsFolder / "plinket3.log";
    if (const Status status = environment.log.StartLog(log, false); !status)
        environment.notifier.Show(MessageKind::Exclamation,
                                  "Could not write the log " + PathText(log) + ": " + status.Reason());
}

} // namespace

void SaveSettings(Environment& environment) {
    const Status status = environment.settings.Save();
    if (status || std::exchange(environment.settingsLost, true))
        return;
    environment.notifier.Show(MessageKind::Exclamation,
                              "Could not save " + PathText(environment.settings.File()) + ": " + status.Reason());
}

namespace {

bool Refuse(Environment& environment, FrontEnd& frontEnd, std::string_view message) {
    environment.notifier.Show(MessageKind::Critical, message);
    ShutDown(environment, frontEnd);
    return false;
}

/// False when the user ends the program instead of adding an IWAD.
bool FirstRun(Environment& environment, FrontEnd& frontEnd) {
    environment.notifier.Show(MessageKind::Information,
                              "This is the first time Plinket3 is run from this location. Please adjust the program's "
                              "settings and be sure to add at least one IWAD.");
    environment.log.Add("First run, displaying Options dialog.");
    if (!frontEnd.ShowOptions())
        return false;
    environment.settings.Number("firstRun", 0);
    SaveSettings(environment);
    frontEnd.RepaintSplash();
    return true;
}

void LoadEngines(Environment& environment) {
    environment.log.Add("Loading engine configurations...");
    environment.engines =
        modConfig::EnumerateEngines(environment.programFolder / "config", [&environment](std::string_view skipped) {
            environment.log.Add("  Skipped " + std::string(skipped));
        });
    environment.log.Add("  Loaded " + std::to_string(environment.engines.size()) + " configuration files");
}

bool OpenFirstPatch(Environment& environment, FrontEnd& frontEnd, const CommandLine& commandLine) {
    const std::string option = modParse::OptionValue(commandLine.text, loadOption);
    if (option.empty()) {
        if (commandLine.plainArgument.empty()) {
            frontEnd.ShowStartup();
            return true;
        }
        environment.log.Add("Loading patch file " + PathText(commandLine.plainArgument) + "...");
        frontEnd.OpenFile(commandLine.plainArgument);
        return true;
    }
    const std::string typed = modParse::CleanPath(option);
    environment.log.Add("Loading patch file " + typed + "...");
    const std::filesystem::path file = ResolveIgnoringCase(PathOf(typed));
    if (!FileExists(file))
        return Refuse(environment, frontEnd, "Patch file specified on commandline does not exist");
    frontEnd.OpenFile(file);
    return true;
}

} // namespace

CommandLine ReadCommandLine(const std::vector<std::string>& arguments) {
    CommandLine commandLine;
    bool option = false;
    for (const std::string& argument : arguments) {
        commandLine.text += (commandLine.text.empty() ? "" : " ") + argument;
        option = option || EqualIgnoringCase(std::string_view(argument).substr(0, loadOption.size()), loadOption);
    }
    if (option || arguments.empty() || arguments.front().starts_with('-'))
        return commandLine;
    return {{}, PathOf(arguments.front())};
}

bool StartUp(Environment& environment, FrontEnd& frontEnd, const CommandLine& commandLine) {
    clsLog& log = environment.log;
    OpenSettingsFolder(environment);
    frontEnd.ShowSplash();
    environment.notifier.Show(MessageKind::Exclamation,
                              "This is a beta release of Plinket3 -- use it at your own risk!");
    frontEnd.RepaintSplash();

    log.Add("Setting program defaults...");
    environment.settings.File(environment.settingsFolder / settingsFileName);

    log.Add("Loading IWAD detect configuration...");
    if (const Status status =
            modConfig::LoadIwadDetect(environment.programFolder / "iwaddetect.cfg", environment.iwadDetect);
        !status)
        return Refuse(environment, frontEnd, status.Reason());

    log.Add("Loading program configuration...");
    if (!FileExists(environment.settings.File())) {
        environment.settings.CreateDefaults(environment.documentsFolder);
        SaveSettings(environment);
    }
    if (FileExists(environment.settings.File()))
        if (const Status status = environment.settings.Load(); !status)
            return Refuse(environment, frontEnd, status.Reason());
    if (environment.settings.Number("firstRun") == 1 && !FirstRun(environment, frontEnd))
        return false;
    environment.settings.PruneRecentFiles();

    LoadEngines(environment);

    log.Add("Loaing custom fonts...");
    const std::filesystem::path font = environment.programFolder / "resources" / "VeraMono.ttf";
    if (!frontEnd.InstallFont(font))
        log.Add("Unable to install font " + PathText(font));

    log.Add("Loading forms...");
    for (const std::string_view window : loadedWindows)
        frontEnd.LoadWindow(window);

    log.Add("Initialising BASS library...");
    if (const Status status = frontEnd.StartAudio(); !status)
        log.Add("Could not initialise BASS library.");

    frontEnd.ApplyInterfaceFont();
    frontEnd.UpdateCaption();
    ApplySettings(environment, frontEnd);
    frontEnd.UnloadSplash();
    log.Add("Ready.");
    frontEnd.ShowMainWindow();
    return OpenFirstPatch(environment, frontEnd, commandLine);
}

void ApplySettings(Environment& environment, FrontEnd& frontEnd) {
    environment.log.Add("Applying program settings...");
    if (frontEnd.SessionOpen())
        frontEnd.RefreshEditors();
    frontEnd.RefreshSave();
}

void ShutDown(Environment& environment, FrontEnd& frontEnd) {
    clsLog& log = environment.log;
    if (frontEnd.CloseIwad())
        log.Add("Closed IWAD");
    if (frontEnd.CloseDataWad())
        log.Add("Closed data WAD");
    log.Add("Writing configuration file...");
    SaveSettings(environment);
    log.Add("Freeing BASS library...");
    frontEnd.StopAudio();
    log.Add("Unloading forms...");
    for (const std::string_view window : unloadedWindows)
        frontEnd.UnloadWindow(window);
    log.Add("Buh-bye...");
}

} // namespace plinket3::modMain
