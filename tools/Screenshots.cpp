// Takes the pictures of the documentation from the real windows, so that they never show another program than this one.
//   plinket3_screenshots PROGRAM-FOLDER IWAD PATCH OUT-FOLDER [dark]
#include "ui/FileDialogs.h"
#include "ui/LatinText.h"
#include "ui/QtFrontEnd.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTimer>

#include <iostream>
#include <string>

namespace {

using namespace plinket3;

class SilentNotifier : public Notifier {
public:
    void Show(MessageKind, std::string_view) override {}
    Answer Ask(std::string_view, Buttons) override { return Answer::Yes; }
};

class PictureFrontEnd : public QtFrontEnd {
public:
    using QtFrontEnd::OpenFile;
    using QtFrontEnd::QtFrontEnd;
    void ShowStartup() override {}
};

QPalette DarkPalette() {
    QPalette dark(QColor(53, 53, 53), QColor(42, 42, 42));
    dark.setColor(QPalette::Highlight, QColor(42, 130, 218));
    dark.setColor(QPalette::Link, QColor(110, 170, 255));
    dark.setColor(QPalette::PlaceholderText, QColor(150, 150, 150));
    return dark;
}

class Pictures {
public:
    explicit Pictures(QString folder, bool dark) : folder_(std::move(folder)), end_(dark ? "-dark.png" : ".png") {}

    void Take(QWidget& window, const QString& name) {
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents();
        const QString file = folder_ + QLatin1Char('/') + name + QString::fromLatin1(end_);
        if (!window.grab().save(file))
            std::cerr << file.toStdString() << " cannot be written\n";
    }
    /// Takes the next modal dialog of that name and closes it.
    void TakeModal(const char* name) {
        QTimer::singleShot(200, [this, name] {
            QWidget* dialog = QApplication::activeModalWidget();
            if (dialog == nullptr)
                return;
            Take(*dialog, QString::fromLatin1(name));
            dialog->close();
        });
    }

private:
    QString folder_;
    const char* end_;
};

void AcceptSession() {
    if (QWidget* dialog = QApplication::activeModalWidget())
        if (auto* accept = dialog->findChild<QPushButton*>(QStringLiteral("cmdAccept")))
            accept->click();
}

/// Something to see: the Imp, a little tougher than it was, and the frame in which it throws its fire.
void ShowTheImp(frmMain& window) {
    constexpr int imp = 11, throwing = 454, thingEditor = 0, stateEditor = 1;
    window.Editors().Show(thingEditor, true);
    window.findChild<QComboBox*>(QStringLiteral("cmbThingNames"))->setCurrentIndex(imp);
    if (auto* hitPoints = window.findChild<QLineEdit*>(QStringLiteral("txtHitPoints"))) {
        hitPoints->setText(QStringLiteral("120"));
        emit hitPoints->textEdited(hitPoints->text());
    }
    window.Editors().SelectSingleState(throwing, imp, -1);
    window.Editors().Show(stateEditor, false);
    window.Editors().Show(thingEditor, false);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::cerr << "usage: plinket3_screenshots PROGRAM-FOLDER IWAD PATCH OUT-FOLDER [dark]\n";
        return 2;
    }
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const bool dark = argc > 5 && std::string_view(argv[5]) == "dark";
    if (dark)
        QApplication::setPalette(DarkPalette());

    QTemporaryDir settingsFolder;
    SilentNotifier notifier;
    Program program(notifier);
    program.programFolder = argv[1];
    program.settingsFolder = StoredPath(settingsFolder.path());
    program.documentsFolder = "/home/you/Documents";
    Settings settings;
    settings.File(program.settingsFolder / "plinket3.cfg");
    settings.CreateDefaults(program.documentsFolder);
    settings.Number("firstRun", 0);
    settings.AddIwad("Freedoom: Phase 2", argv[2]);
    if (!settings.Save())
        return 1;
    QtFileDialogs dialogs(program.settings, notifier);
    PictureFrontEnd frontEnd(program, dialogs);
    if (!modMain::StartUp(program, frontEnd, {}))
        return 1;
    frmMain& window = frontEnd.Main();
    window.resize(1240, 860);
    Pictures pictures(QString::fromLocal8Bit(argv[4]), dark);

    pictures.TakeModal("options");
    window.ShowOptions();
    pictures.TakeModal("session");
    frontEnd.OpenFile(argv[3]);
    QTimer::singleShot(0, AcceptSession);
    frontEnd.OpenFile(argv[3]);
    if (!frontEnd.SessionOpen())
        return 1;
    for (std::size_t editor = 0; editor < editorEntries.size(); ++editor)
        window.Editors().Show(editor, false);
    ShowTheImp(window);
    for (std::size_t editor = 0; editor < editorEntries.size(); ++editor) {
        window.Editors().Show(editor, true);
        window.Editors().Frame(editor)->showMaximized();
        pictures.Take(window, QString::fromLatin1(editorEntries[editor].window).mid(7).toLower());
        window.Editors().Frame(editor)->showNormal();
        window.Editors().Show(editor, false);
    }
    window.ShowStartup();
    if (auto* startup = window.findChild<QDialog*>(QStringLiteral("frmStartup"))) {
        pictures.Take(*startup, QStringLiteral("startup"));
        startup->hide();
    }
    pictures.TakeModal("about");
    window.findChild<QAction*>(QStringLiteral("HelpAbout"))->trigger();
    return 0;
}
