#pragma once

#include "core/Environment.h"
#include "core/Status.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// What start-up and shut-down need of the windows. The windows implement it; tests record the order.
class FrontEnd {
public:
    virtual ~FrontEnd() = default;

    virtual void ShowSplash() = 0;
    virtual void RepaintSplash() = 0;
    virtual void UnloadSplash() = 0;

    virtual bool InstallFont(const std::filesystem::path& file) = 0;
    /// Makes a window, hidden, which logs "  Loaded " and its name; does nothing for one that exists.
    virtual void LoadWindow(std::string_view name) = 0;
    virtual void UnloadWindow(std::string_view name) = 0;
    virtual void ApplyInterfaceFont() = 0;
    virtual void UpdateCaption() = 0;

    virtual Status StartAudio() = 0;
    virtual void StopAudio() = 0;

    /// The options dialog, filled from the settings, until the user has closed it. False: the user ends the program.
    virtual bool ShowOptions() = 0;
    virtual void ShowMainWindow() = 0;
    virtual void ShowStartup() = 0;
    virtual void OpenFile(const std::filesystem::path& file) = 0;

    virtual bool SessionOpen() const = 0;
    /// Has every editor and selection window show the settings and the patch anew.
    virtual void RefreshEditors() = 0;
    /// Enables Save when the patch has unsaved changes.
    virtual void RefreshSave() = 0;
    /// Closes it; false when none was open.
    virtual bool CloseIwad() = 0;
    virtual bool CloseDataWad() = 0;
};

/// The order in which the program starts and ends. Each step is a line in the log, so that a log tells how far a start
/// got that failed.
namespace modMain {

struct CommandLine {
    std::string text;                    // everything after the program's own path, as "-load" is searched in it
    std::filesystem::path plainArgument; // a first argument that is no option; empty when there is none
};

/// Reads a command line without the program's own path. A plain first argument is a file that is opened as it is, also
/// when its name happens to hold "-load"; an argument that begins with "-load" wins over it.
CommandLine ReadCommandLine(const std::vector<std::string>& arguments);

/// Brings the program up. `environment` has its folders set and nothing else. False when the program is to end: all of
/// shut-down has then been done that is to be done.
[[nodiscard]] bool StartUp(Environment& environment, FrontEnd& frontEnd, const CommandLine& commandLine);

/// Writes the settings. A failure is told once in a run, since later saves fail for the same reason.
void SaveSettings(Environment& environment);

/// Has the editors follow the settings. At the end of start-up, when options were accepted and when a table was loaded.
void ApplySettings(Environment& environment, FrontEnd& frontEnd);

/// Closes everything and writes the settings; every way to the program's end but one (the options of the first run,
/// cancelled) leads through here. The process ends after it.
void ShutDown(Environment& environment, FrontEnd& frontEnd);

} // namespace modMain
} // namespace plinket3
