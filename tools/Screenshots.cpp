// Takes the pictures of the documentation from the real windows, so that they never show another program than this one.
//   plinket3_screenshots PROGRAM-FOLDER IWAD PATCH MONSTER OUT-FOLDER [dark]
// MONSTER is the patch of the tutorial.
#include "core/Files.h"
#include "tools/SilentNotifier.h"
#include "ui/DarkPalette.h"
#include "ui/FileDialogs.h"
#include "ui/Icons.h"
#include "ui/LatinText.h"
#include "ui/ProblemsDock.h"
#include "ui/QtFrontEnd.h"
#include "ui/RulesBar.h"
#include "ui/WhereUsedDock.h"
#include "ui/compare/frmCompare.h"
#include "ui/fields/NoteEdit.h"
#include "ui/frmFindIwads.h"
#include "ui/frmRecovered.h"
#include "ui/lists/RecordList.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QEventLoop>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {

using namespace plinket3;

constexpr int imp = 11, impMoving = 444, impThrowing = 454, pistol = 1, firstSound = 1, shotgunText = 62;

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
    return LegibleRoles(dark).resolve(dark);
}

template <class Widget> Widget& Find(QWidget& window, const char* name) {
    auto* widget = window.findChild<Widget*>(QString::fromLatin1(name));
    if (widget == nullptr)
        throw std::runtime_error(std::string("there is no control ") + name);
    return *widget;
}

void Type(QWidget& window, const char* box, const char* text) {
    auto& edit = Find<QLineEdit>(window, box);
    edit.setText(QString::fromLatin1(text));
    emit edit.textEdited(edit.text());
}

void SelectRow(QWidget& window, const char* list, int row) {
    auto& view = Find<QAbstractItemView>(window, list);
    view.setCurrentIndex(view.model()->index(row, 0));
}

void Choose(QWidget& window, const char* box, const char* entry) {
    auto& list = Find<QComboBox>(window, box);
    const int row = list.findText(QString::fromLatin1(entry));
    if (row < 0)
        throw std::runtime_error(std::string(box) + " offers no " + entry);
    list.setCurrentIndex(row);
    emit list.activated(row);
}

class Pictures {
public:
    Pictures(frmMain& window, QString folder) : window_(window), folder_(std::move(folder)) {}

    void Take(QWidget& widget, const QString& name) {
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents();
        const QString file = folder_ + QLatin1Char('/') + name + QStringLiteral(".png");
        if (!widget.grab().save(file))
            throw std::runtime_error(file.toStdString() + " cannot be written");
    }
    /// Takes the modal dialog that `show` brings up, after `prepare`, and closes it.
    void TakeModal(
        const char* name, const std::function<void()>& show,
        const std::function<void(QWidget&)>& prepare = [](QWidget&) {}) {
        QTimer::singleShot(200, [&] {
            if (QWidget* dialog = QApplication::activeModalWidget()) {
                prepare(*dialog);
                Take(*dialog, QString::fromLatin1(name));
                dialog->close();
            }
        });
        show();
    }

    /// After `prepare`, when the editor has its size.
    void TakeEditor(
        std::size_t editor, const QString& name, const std::function<void()>& prepare = [] {}) {
        window_.Editors().Show(editor, true);
        window_.Editors().Frame(editor)->showNormal();
        QApplication::processEvents();
        prepare();
        Take(*window_.Editors().Frame(editor), name);
        window_.Editors().Show(editor, false);
    }

    /// Those of lumps' names are taken of a patch that has some.
    void TakeEditors() {
        PrepareEditors();
        for (std::size_t editor = 0; editor < spriteEditor; ++editor)
            TakeEditor(editor, QString::fromLatin1(editorEntries[editor].window).mid(7).toLower());
        window_.statusBar()->clearMessage();
        for (const std::size_t editor : {thingEditor, stateEditor}) {
            window_.Editors().Show(editor, true);
            window_.Editors().Frame(editor)->showMaximized();
            Take(window_, editor == thingEditor ? QStringLiteral("main-things") : QStringLiteral("main-states"));
            window_.Editors().Show(editor, false);
        }
        TakeGraph();
        TakeMenus();
        TakeThingCommands();
        TakeStateCommands();
        TakeModal("run", [this] { Find<QAction>(window_, "RunWith").trigger(); });
        TakeModal("sprite", [this] { window_.Editors().PickSprite({28, 6}); });
        TakeModal("state", [this] { window_.Editors().PickState(impThrowing); });
        TakeModal("action", [this] { window_.Editors().PickAction(52); });
        TakeModal("string", [this] { emit Find<RecordList>(window_, "lvwStrings").EditAsked(shotgunText); });
        TakeModal("sound", [this] { emit Find<RecordList>(window_, "lvwSounds").EditAsked(firstSound); });
    }

    void TakeMenus() {
        for (const std::size_t editor : {thingEditor, stateEditor, weaponEditor})
            window_.Editors().Show(editor, true);
        for (QAction* entry : window_.menuBar()->actions()) {
            const QString name = entry->text().remove(QLatin1Char('&')).toLower();
            if (name != QStringLiteral("run") && name != QStringLiteral("window"))
                continue;
            entry->menu()->popup({});
            Take(*entry->menu(), QStringLiteral("menu-") + name);
            entry->menu()->close();
        }
        for (const std::size_t editor : {thingEditor, stateEditor, weaponEditor})
            window_.Editors().Show(editor, false);
    }

    /// The imp stays on the clipboard.
    void TakeThingCommands() {
        ShowThing(imp);
        QWidget& editor = *window_.Editors().Frame(thingEditor);
        Choose(editor, "cmbRun", "Far attack frame");
        for (int tic = 0; tic < 18; ++tic)
            Find<QToolButton>(editor, "cmdStep").click();
        Take(*Find<QComboBox>(editor, "cmbRun").parentWidget(), QStringLiteral("playing"));
        Choose(editor, "cmbRun", "Initial frame");
        TakeCommand("copy-with", "EditCopyWith");
        EditAction("EditCopy").trigger();
        auto& list = Find<QAbstractItemView>(editor, "lstThings");
        for (const int row : {imp + 1, imp + 2})
            list.selectionModel()->select(list.model()->index(row, 0), QItemSelectionModel::Select);
        TakeCommand("change-many", "EditChangeMany", [](QWidget& dialog) {
            Choose(dialog, "cmbWhat", "Add or multiply");
            Choose(dialog, "cmbField", "Hit points");
            Type(dialog, "txtChange", "*1.5");
        });
        window_.Editors().Show(thingEditor, false);
    }

    void TakeStateCommands() {
        window_.Editors().Show(stateEditor, true);
        window_.Editors().SelectSingleState(impMoving, imp, -1);
        auto& whereUsed = Find<QDockWidget>(window_, "dockWhereUsed");
        window_.addDockWidget(Qt::BottomDockWidgetArea, &whereUsed); // at the side it would be high and empty
        whereUsed.show();
        Take(whereUsed, QStringLiteral("where-used"));
        whereUsed.hide();
        TakeCommand("go-to", "EditGoTo", [](QWidget& dialog) { Type(dialog, "txtGoTo", "454"); });
        TakeModal(
            "new-states", [this] { Find<QPushButton>(window_, "cmdNewStates").click(); },
            [](QWidget& dialog) { Find<QSpinBox>(dialog, "txtCount").setValue(4); });
        window_.Editors().Show(stateEditor, false);
        TakeEditor(stateEditor, QStringLiteral("states-free"), [this] {
            Find<QRadioButton>(window_, "optFilterFree").click();
            SelectRow(window_, "lvwStates", 0);
        });
    }

    void TakePaste() {
        ShowThing(sneak);
        TakeCommand("paste", "EditPaste");
        ShowThing(imp);
        TakeCommand("duplicate", "EditDuplicate");
        window_.Editors().Show(thingEditor, false);
    }

    void TakeGraph() {
        window_.Editors().Show(thingEditor, true);
        TakeFloating("dockStateGraph", "graph", {1050, 760},
                     [](QWidget& graph) { Find<QAction>(graph, "GraphFit").trigger(); });
        window_.Editors().Show(thingEditor, false);
    }

    /// What the tutorial's patch makes.
    void TakeMonster() {
        EditorSet& editors = window_.Editors();
        TakeEditor(thingEditor, QStringLiteral("own-monster-thing"),
                   [&] { editors.ShowRecord(RecordKind::Thing, sneak); });
        TakePaste();
        TakeEditor(stateEditor, QStringLiteral("own-monster-state"), [&] {
            editors.SelectSingleState(sneakFiring, -1, -1);
            Take(Find<QWidget>(*editors.Frame(stateEditor), "framState"), QStringLiteral("modern-arguments"));
        });
        TakeEditor(spriteEditor, QStringLiteral("sprites"),
                   [this] { Find<RecordList>(window_, "lvwSprites").SelectRecord(sneakSprite); });
        TakeEditor(musicEditor, QStringLiteral("music"),
                   [this] { Find<RecordList>(window_, "lvwMusic").SelectRecord(firstOfDoom2); });
    }

private:
    void TakeCommand(
        const char* name, const char* action, const std::function<void(QWidget&)>& prepare = [](QWidget&) {}) {
        TakeModal(
            name, [&] { EditAction(action).trigger(); }, prepare);
    }

    /// Of the menu Edit, wherever it belongs to.
    QAction& EditAction(const char* name) {
        const QList<QAction*> actions = window_.Editors().ClipActions() + window_.findChildren<QAction*>();
        const auto found = std::ranges::find(actions, QLatin1String(name), &QObject::objectName);
        if (found == actions.end())
            throw std::runtime_error(std::string("there is no command ") + name);
        return **found;
    }

    void TakeFloating(
        const char* dock, const char* name, QSize size,
        const std::function<void(QWidget&)>& prepare = [](QWidget&) {}) {
        auto& window = Find<QDockWidget>(window_, dock);
        window.show();
        window.setFloating(true);
        window.resize(size);
        QApplication::processEvents();
        prepare(window);
        Take(window, QString::fromLatin1(name));
        window.setFloating(false);
        window.hide();
    }

    void ShowThing(int thing) {
        window_.Editors().Show(thingEditor, true);
        window_.Editors().ShowRecord(RecordKind::Thing, thing);
    }

    static constexpr std::size_t thingEditor = 0, stateEditor = 1, weaponEditor = 4;
    static constexpr int sneak = 250, sneakFiring = 4006, sneakSprite = 245, firstOfDoom2 = 33;

    /// Something to see in each editor, with a value or two that are not the engine's.
    void PrepareEditors() {
        for (std::size_t editor = 0; editor < editorEntries.size(); ++editor)
            window_.Editors().Show(editor, true);
        Find<QComboBox>(window_, "cmbThingNames").setCurrentIndex(imp);
        Type(window_, "txtHitPoints", "120");
        Type(window_, "txtSpeed", "16");
        Find<NoteEdit>(*window_.Editors().Frame(thingEditor), "txtNotes")
            .setPlainText(QStringLiteral("Twice as tough: it guards the red key on MAP04.\nTested with 3 of them."));
        window_.Editors().SelectSingleState(impThrowing, imp, -1);
        Type(*window_.Editors().Frame(stateEditor), "txtDuration", "2");
        SelectRow(window_, "lstWeapons", pistol);
        Type(window_, "txtMaxAmmo", "400");
        Type(window_, "txtAmmokeys", "idall");
        Type(window_, "txtIB", "80");
        SelectRow(window_, "lvwPars", 0);
        SelectRow(window_, "lvwSounds", firstSound);
        SelectRow(window_, "lvwStrings", 1);
        for (std::size_t editor = 0; editor < editorEntries.size(); ++editor)
            window_.Editors().Show(editor, false);
    }

    frmMain& window_;
    QString folder_;
};

void AcceptSession() {
    if (QWidget* dialog = QApplication::activeModalWidget())
        if (auto* accept = dialog->findChild<QPushButton*>(QStringLiteral("cmdAccept")))
            accept->click();
}

void TakeRecovered(Pictures& pictures, PatchData patch, const EngineConfiguration& engine, Notifier& notifier) {
    QTemporaryDir folder;
    const std::filesystem::path place = StoredPath(folder.path());
    {
        Recovery first(place), second(place); // of two runs that crashed
        patch.fileName = "/home/you/mods/first.bex";
        bool kept = static_cast<bool>(first.Keep(patch, engine, std::nullopt, 1));
        patch.fileName = "/home/you/Documents/unnamed.bex";
        kept = kept && second.Keep(patch, engine, std::nullopt, 1);
        if (!kept)
            throw std::runtime_error("no recovery file could be written");
    }
    int minute = 0;
    for (const char* name : {"/recovery-0.dat", "/recovery-1.dat"}) {
        QFile file(folder.path() + QLatin1String(name));
        file.open(QIODevice::ReadWrite);
        file.setFileTime({{2026, 5, 4}, {21, minute += 7}}, QFileDevice::FileModificationTime);
    }
    const Recovery own(place);
    frmRecovered recovered(own, notifier, nullptr);
    recovered.show();
    pictures.Take(recovered, QStringLiteral("recovered"));
}

/// With what another one made of the same patch: in part of what PrepareEditors changes, too.
void TakeComparison(Pictures& pictures, frmMain& window, const std::filesystem::path& ancestor) {
    QTemporaryDir folder;
    const std::filesystem::path theirs = StoredPath(folder.path()) / "theirs.bex";
    std::string patch;
    if (!ReadWholeFile(ancestor, patch) ||
        !WriteFileAtomically(theirs, patch + "\nThing 12 (Imp)\nHit points = 90\nMass = 150\n\n"
                                             "Frame 453\nSprite number = 30\nDuration = 4\n"))
        throw std::runtime_error("no patch could be written");
    auto& compareWith = Find<QAction>(window, "FileCompare");
    const auto fill = [](QWidget& dialog, const QString& file, const QString& both) {
        Find<QLineEdit>(dialog, "txtFile").setText(file);
        Find<QLineEdit>(dialog, "txtAncestor").setText(both);
    };
    pictures.TakeModal(
        "compare-with", [&] { compareWith.trigger(); },
        [&](QWidget& dialog) {
            fill(dialog, QStringLiteral("/home/you/mods/theirs.bex"), QStringLiteral("/home/you/mods/first.bex"));
        });
    QTimer::singleShot(0, [&] {
        QWidget& dialog = *QApplication::activeModalWidget();
        fill(dialog, ShownPath(theirs), ShownPath(ancestor));
        Find<QPushButton>(dialog, "cmdAccept").click();
    });
    compareWith.trigger();
    auto& dock = Find<frmCompare>(window, "frmCompare");
    auto& list = Find<QTreeView>(dock, "tvwDifferences");
    const auto frames = list.model()->match(list.model()->index(0, 0), Qt::DisplayRole, QStringLiteral("Frame 453"), 1,
                                            Qt::MatchStartsWith | Qt::MatchRecursive);
    if (frames.isEmpty())
        throw std::runtime_error("the comparison lacks a frame");
    list.setCurrentIndex(frames.first());
    pictures.Take(dock, QStringLiteral("compare"));
    dock.hide();
}

constexpr std::string_view oddPatch =
    "# Bigger and meaner, version 3\n# by you\n\nThing 12 (Imp)\nHit points = 120\n"
    "Blood color = 3\n\nFrame 451\nNext frame = 20000\n\nThing 900 (Boss)\nSpeed = 12\n\nINCLUDE weapons.deh\n\n"
    "[STRINGS]\nUSER_BOSS = Something woke up.\n";

void Open(PictureFrontEnd& frontEnd, const std::filesystem::path& patch) {
    QTimer::singleShot(0, AcceptSession);
    frontEnd.OpenFile(patch);
    if (!frontEnd.SessionOpen())
        throw std::runtime_error(patch.string() + " cannot be opened");
}

/// What there is only by engine rules: the other lines of a patch, and its notes.
void TakeRules(Pictures& pictures, PictureFrontEnd& frontEnd) {
    QTemporaryDir folder;
    const std::filesystem::path patch = StoredPath(folder.path()) / "meaner.deh";
    if (!WriteFileAtomically(patch, oddPatch))
        throw std::runtime_error("no patch could be written");
    frmMain& window = frontEnd.Main();
    Open(frontEnd, patch);
    pictures.TakeModal("patch-notes", [&window] { Find<QAction>(window, "FilePatchNotes").trigger(); });
    auto& others = Find<QDockWidget>(window, "dockOtherLines");
    others.show();
    pictures.Take(others, QStringLiteral("other-lines"));
    others.hide();
    auto& problems = Find<ProblemsDock>(window, "dockProblems");
    problems.Bring();
    QEventLoop searching;
    QObject::connect(&problems, &ProblemsDock::Searched, &searching, &QEventLoop::quit);
    problems.Refresh();
    searching.exec();
    pictures.Take(problems, QStringLiteral("problems"));
    problems.hide();
    auto& find = Find<FindDock>(window, "dockFind");
    find.Start();
    Type(find, "txtFind", "imp");
    pictures.Take(find, QStringLiteral("find"));
    find.close();
    auto& bar = Find<RulesBar>(window, "rulesBar");
    bar.Tell({"Sound 3 (shotgn): Value 9 -> 64", "Sound 4 (sgcock): Value 64 -> 9"});
    pictures.Take(bar, QStringLiteral("rules-bar"));
    bar.hide();
}

int Run(char** argv) {
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
    const std::string arguments = "-iwad %i -file %d -deh %p -warp %m -skill %s";
    settings.Ports({{"DSDA-Doom", "/usr/games/dsda-doom", arguments + " -dehout %o"},
                    {"Chocolate Doom", "/usr/games/chocolate-doom", arguments},
                    {"Own build", "/home/you/build/doom", arguments}});
    if (!settings.Save())
        return 1;
    QtFileDialogs dialogs(program.settings, notifier);
    PictureFrontEnd frontEnd(program, dialogs);
    if (!modMain::StartUp(program, frontEnd, {}))
        return 1;
    frmMain& window = frontEnd.Main();
    window.resize(1050, 760);
    Pictures pictures(window, QString::fromLocal8Bit(argv[5]));

    const auto showOptions = [&window] { window.ShowOptions(); };
    pictures.TakeModal("options", showOptions);
    pictures.TakeModal("options-iwads", showOptions,
                       [](QWidget& dialog) { Find<QTabWidget>(dialog, "tabOptions").setCurrentIndex(1); });
    pictures.TakeModal("options-ports", showOptions,
                       [](QWidget& dialog) { Find<QTabWidget>(dialog, "tabOptions").setCurrentIndex(2); });
    pictures.TakeModal(
        "session", [&] { frontEnd.OpenFile(argv[3]); },
        [](QWidget& dialog) {
            Find<QListWidget>(dialog, "lstDataWADs")
                .addItems({QStringLiteral("/home/you/mods/monsters.wad"), QStringLiteral("/home/you/mods/meaner.wad")});
        });
    frmFindIwads found({{"Freedoom: Phase 1", "/usr/share/games/doom/freedoom1.wad"}, {"Freedoom: Phase 2", argv[2]}},
                       nullptr);
    found.show();
    pictures.Take(found, QStringLiteral("find-iwads"));
    found.hide();

    Open(frontEnd, argv[3]);
    pictures.TakeEditors();
    TakeComparison(pictures, window, argv[3]);
    TakeRecovered(pictures, program.patch, program.engine, notifier);
    program.patch.changed = false; // what the pictures show is not asked about
    TakeRules(pictures, frontEnd);
    Open(frontEnd, argv[4]);
    pictures.TakeMonster();
    program.patch.changed = false;

    Program another(notifier); // which knows no other patches than these
    another.settings.CreateDefaults(program.documentsFolder);
    for (const char* recent : {"/home/you/mods/old.deh", "/home/you/mods/first.bex"})
        another.settings.AddRecentFile(recent);
    frmStartup startup(another, nullptr);
    startup.show();
    pictures.Take(startup, QStringLiteral("startup"));
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 6) {
        std::cerr << "usage: plinket3_screenshots PROGRAM-FOLDER IWAD PATCH MONSTER OUT-FOLDER [dark]\n";
        return 2;
    }
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (argc > 6 && std::string_view(argv[6]) == "dark")
        QApplication::setPalette(DarkPalette());
    QApplication::setWindowIcon(ProgramIcon("plinket3", QApplication::palette()));
    try {
        return Run(argv);
    } catch (const std::exception& fault) {
        std::cerr << fault.what() << '\n';
        return 1;
    }
}
