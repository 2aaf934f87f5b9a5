#include "core/ProgramFolder.h"
#include "core/System.h"
#include "core/Version.h"
#include "ui/DarkPalette.h"
#include "ui/FileDialogs.h"
#include "ui/Icons.h"
#include "ui/LatinText.h"
#include "ui/QtFrontEnd.h"
#include "ui/QtNotifier.h"

#include <QApplication>
#include <QStandardPaths>

#include <csignal>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>

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

} // namespace

int main(int argc, char** argv) {
    const std::string_view first = argc > 1 ? argv[1] : "";
    if (first == "--help" || first == "--version") {
        std::cout << (first == "--help" ? usage : plinket3::programVersion + std::string("\n"));
        return 0;
    }
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN); // a file that grows too large is a failed write, told like any other
#endif
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN); // messages are also printed, perhaps to a program that has ended
#endif

    QApplication application(argc, argv);
    QApplication::setApplicationName(QString::fromLatin1(plinket3::programTitle));
    QApplication::setDesktopFileName(QStringLiteral("plinket3"));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setPalette(plinket3::LegibleRoles(QApplication::palette()));
    QApplication::setWindowIcon(plinket3::ProgramIcon("plinket3", QApplication::palette()));

    plinket3::QtNotifier notifier;
    plinket3::Program program(notifier);
    program.programFolder = plinket3::ProgramFolder(argv[0]);
    program.settingsFolder = Folder(QStandardPaths::GenericConfigLocation) / plinket3::programTitle;
    program.documentsFolder = Folder(QStandardPaths::DocumentsLocation);
    if (std::error_code ignored;
        !std::filesystem::is_directory(program.documentsFolder, ignored)) // a folder that is not there saves nothing
        program.documentsFolder = Folder(QStandardPaths::HomeLocation);
    plinket3::QtFileDialogs dialogs(program.settings, notifier);
    plinket3::QtFrontEnd frontEnd(program, dialogs);
    bool ended = false;
    QObject::connect(&frontEnd, &plinket3::QtFrontEnd::Ended, &application, [&ended] {
        ended = true;
        QApplication::exit(); // not quit(), which would ask every window to close first
    });
    if (!plinket3::modMain::StartUp(program, frontEnd,
                                    plinket3::modMain::ReadCommandLine(plinket3::CommandLineArguments(argc, argv))) ||
        ended)
        return 0;
    return QApplication::exec();
}
