#include "core/Files.h"
#include "core/ProgramFolder.h"
#include "core/System.h"
#include "core/SystemFolders.h"
#include "core/Version.h"
#include "ui/DarkPalette.h"
#include "ui/FileDialogs.h"
#include "ui/Icons.h"
#include "ui/LatinText.h"
#include "ui/OpenRequests.h"
#include "ui/QtFrontEnd.h"
#include "ui/QtNotifier.h"

#include <QApplication>
#include <QStandardPaths>
#include <QStyle>

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr const char* usage = "Usage: plinket3 [PATCH | -load PATCH]\n"
                              "Edits a DeHackEd patch.\n\n"
                              "  PATCH        opens this file\n"
                              "  -load PATCH  the same, with the path in lower case\n"
                              "  --help       prints this help\n"
                              "  --version    prints the version\n";

std::filesystem::path Folder(QStandardPaths::StandardLocation location) {
    return plinket3::StoredPath(QStandardPaths::writableLocation(location));
}

/// Beside the program where a file says that it is carried about with its settings.
std::filesystem::path SettingsFolder(const std::filesystem::path& programFolder) {
    if (plinket3::FileExists(programFolder / "portable"))
        return programFolder / "settings";
    return plinket3::UserSettingsFolder() / plinket3::programTitle;
}

bool OpensInRunning(const plinket3::Settings& settings) { return settings.Number(plinket3::openInRunningKey) == 1; }

/// As stored, before the program has started; nothing is told of settings that cannot be read.
bool OpensInRunning(const std::filesystem::path& settingsFolder) {
    plinket3::Settings settings;
    settings.File(settingsFolder / plinket3::settingsFileName);
    return settings.Load() && OpensInRunning(settings);
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments = plinket3::CommandLineArguments(argc, argv);
    if (const std::string first = arguments.empty() ? "" : arguments.front();
        first == "--help" || first == "--version") {
        std::cout << (first == "--help" ? usage : plinket3::programVersion + std::string("\n"));
        return 0;
    }
    plinket3::LetWritesFail();

    QApplication application(argc, argv);
    QApplication::setApplicationName(QString::fromLatin1(plinket3::programTitle));
    QApplication::setDesktopFileName(QStringLiteral("plinket3"));
    QApplication::setQuitOnLastWindowClosed(false);
    if (QApplication::style()->name() == QLatin1String("windowsvista"))
        QApplication::setStyle(QStringLiteral("Fusion")); // the other is light even where the desktop is dark
    QApplication::setPalette(plinket3::LegibleRoles(QApplication::palette()));
    QApplication::setWindowIcon(plinket3::ProgramIcon("plinket3", QApplication::palette()));

    plinket3::QtNotifier notifier;
    plinket3::Program program(notifier);
    program.programFolder = plinket3::ProgramFolder(argv[0]);
    program.settingsFolder = SettingsFolder(program.programFolder);
    program.documentsFolder = Folder(QStandardPaths::DocumentsLocation);
    if (std::error_code ignored;
        !std::filesystem::is_directory(program.documentsFolder, ignored)) // a folder that is not there saves nothing
        program.documentsFolder = Folder(QStandardPaths::HomeLocation);

    const plinket3::modMain::CommandLine commandLine = plinket3::modMain::ReadCommandLine(arguments);
    plinket3::OpenRequests requests(program.settingsFolder);
    if (!commandLine.plainArgument.empty() && OpensInRunning(program.settingsFolder) &&
        requests.HandOver(commandLine.plainArgument))
        return 0;

    plinket3::QtFileDialogs dialogs(program.settings, notifier);
    plinket3::QtFrontEnd frontEnd(program, dialogs);
    bool ended = false;
    QObject::connect(&frontEnd, &plinket3::QtFrontEnd::Ended, &application, [&ended] {
        ended = true;
        QApplication::exit(); // not quit(), which would ask every window to close first
    });
    if (!plinket3::modMain::StartUp(program, frontEnd, commandLine) || ended)
        return 0;
    const auto listen = [&requests, &program] {
        if (OpensInRunning(program.settings))
            requests.Listen();
    };
    listen();
    QObject::connect(&frontEnd.Main(), &plinket3::frmMain::SettingsChanged, &requests, listen);
    QObject::connect(&requests, &plinket3::OpenRequests::Wanted, &frontEnd, &plinket3::QtFrontEnd::OpenInFront);
    return QApplication::exec();
}
