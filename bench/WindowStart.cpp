// The real start-up of the program with each message answered at once: to "Ready.", then to an open patch with its
// editors refreshed. figures.py sets its figures against those of a bare window.
//   plinket3_window_start PROGRAM-FOLDER SETTINGS-FOLDER IWAD PATCH
#include "bench/ProcessFigures.h"
#include "core/Files.h"
#include "tools/SilentNotifier.h"
#include "ui/FileDialogs.h"
#include "ui/QtFrontEnd.h"

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTimer>

#include <iostream>
#include <string_view>

namespace {

using namespace plinket3;

/// The real front end, which tells when the start-up dialog would come.
class MeasuredFrontEnd : public QtFrontEnd {
public:
    using QtFrontEnd::QtFrontEnd;
    void ShowStartup() override { PrintFigure("ready", ProcessMilliseconds()); }
    using QtFrontEnd::OpenFile;
};

void AcceptSessionDialog(double& accepted) {
    if (QWidget* dialog = QApplication::activeModalWidget())
        if (auto* accept = dialog->findChild<QPushButton*>(QStringLiteral("cmdAccept"))) {
            accepted = ProcessMilliseconds();
            accept->click();
        }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::cerr << "usage: plinket3_window_start PROGRAM-FOLDER SETTINGS-FOLDER IWAD PATCH\n";
        return 2;
    }
    QApplication application(argc, argv);
    SilentNotifier notifier;
    Program program(notifier);
    program.programFolder = argv[1];
    program.settingsFolder = argv[2];
    program.documentsFolder = argv[2];
    Settings settings;
    settings.File(program.settingsFolder / "plinket3.cfg");
    settings.CreateDefaults(program.documentsFolder);
    settings.Number("firstRun", 0);
    settings.AddIwad("IWAD", argv[3]);
    if (!FileExists(settings.File()) && !settings.Save()) { // only the first run, which warms up, has none
        std::cerr << argv[2] << " cannot be written\n";
        return 2;
    }
    QtFileDialogs dialogs(program.settings, notifier);
    MeasuredFrontEnd frontEnd(program, dialogs);
    if (!modMain::StartUp(program, frontEnd, {}))
        return 1;
    QApplication::processEvents();
    double accepted = 0;
    QTimer::singleShot(0, [&accepted] { AcceptSessionDialog(accepted); });
    frontEnd.OpenFile(argv[4]);
    QApplication::processEvents();
    PrintFigure("open", ProcessMilliseconds() - accepted);
    return frontEnd.SessionOpen() ? 0 : 1;
}
