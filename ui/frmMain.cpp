#include "ui/frmMain.h"

#include "core/Version.h"
#include "patch/LumpNames.h"
#include "ui/Icons.h"
#include "ui/LatinText.h"
#include "ui/WindowMenu.h"
#include "ui/fields/SelectionBox.h"
#include "ui/fields/SpriteView.h"
#include "ui/frmChangeEngine.h"
#include "ui/frmGoTo.h"
#include "ui/frmPatchNotes.h"
#include "ui/frmRecovered.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

namespace plinket3 {

namespace {

constexpr int recoveryInterval = 30'000; // milliseconds
constexpr int statusDuration = 8'000;
constexpr const char* geometryKey = "frmMain/geometry";
constexpr const char* toolbarsKey = "frmMain/toolbars";
constexpr const char* shownKey = "frmMain/shownEditors";
constexpr const char* webSite = PLINKET3_WEBSITE;

/// The manual's pages of the dialogs, by their names; those of the editors stand in editorEntries.
struct DialogPage {
    const char* dialog;
    const char* page;
};
constexpr DialogPage dialogPages[]{
    {"frmStartup", "opening.md"},
    {"frmNewFile", "opening.md#engine-iwad-and-data-wad"},
    {"framPorts", "options.md#ports"},
    {"frmOptions", "options.md"},
    {"frmRun", "running.md"},
    {"frmFindIWADs", "options.md#iwads"},
    {"frmRecovered", "saving.md#unsaved-work"},
    {"frmPatchNotes", "rules.md#notes"},
    {"frmCompare", "comparing.md"},
    {"frmCompareWith", "comparing.md"},
    {"frmChangeEngine", "opening.md#another-engine"},
    {"frmCopyWith", "copying.md#copy-with"},
    {"frmPaste", "copying.md#paste"},
    {"frmDuplicate", "copying.md#duplicate"},
    {"frmChangeMany", "editing.md#changing-many-at-once"},
    {"frmGoTo", "finding.md#going-to-a-number"},
    {"dockProblems", "problems.md"},
    {"dockStateGraph", "graph.md"},
    {"frmPropSound", "sounds.md#the-dialog-of-a-sound"},
    {"frmPropString", "strings.md#the-dialog-of-a-string"},
    {"frmNewStates", "states.md#new-states"},
    {"frmSelectSprite", "states.md#choosing-a-sprite"},
    {"frmSelectState", "states.md#choosing-a-state"},
    {"frmSelectAction", "states.md#choosing-an-action"},
};

/// The page of the dialog or dock that a control belongs to; empty where there is none.
QString PageOf(const QWidget* control) {
    for (; control != nullptr; control = control->parentWidget())
        for (const DialogPage& row : dialogPages)
            if (control->objectName() == QLatin1String(row.dialog))
                return QString::fromLatin1(row.page);
    return {};
}

QString GeometryKey(std::size_t editor) {
    return QString::fromLatin1(editorEntries[editor].window) + QStringLiteral("/geometry");
}

/// A text whose ampersands are no keys of a menu.
QString MenuText(QString text) { return text.replace(QLatin1Char('&'), QStringLiteral("&&")); }

} // namespace

frmMain::frmMain(Program& program, Edits& edits, Audio& audio, FileDialogs& dialogs)
    : program_(program), edits_(edits), dialogs_(dialogs), state_(program.settingsFolder), area_(new QMdiArea),
      rulesBar_(new RulesBar), otherLines_(new OtherLinesDock(program)),
      compare_(new frmCompare(program, edits, dialogs)), recovery_(program.settingsFolder),
      editors_(program, edits, audio, dialogs, *area_), find_(new FindDock({program, edits, editors_})),
      whereUsed_(new WhereUsedDock(program, edits, editors_)), problems_(new ProblemsDock(program, edits, editors_)),
      graph_(new StateGraphDock(program, edits, editors_, dialogs)),
      commands_(program, edits, dialogs, recovery_, [this](const PatchToOpen* patch) { return ChooseSession(patch); }) {
    setObjectName(QStringLiteral("frmMain"));
    auto* centre = new QWidget;
    auto* column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(rulesBar_);
    column->addWidget(area_, 1);
    setCentralWidget(centre);
    connect(find_, &FindDock::Left, this, [this] {
        if (const auto editor = editors_.Front())
            editors_.Show(*editor, true);
    });
    AddHidden(Qt::RightDockWidgetArea, find_);
    AddHidden(Qt::RightDockWidgetArea, whereUsed_);
    AddHidden(Qt::BottomDockWidgetArea, otherLines_);
    AddHidden(Qt::BottomDockWidgetArea, problems_);
    AddHidden(Qt::BottomDockWidgetArea, compare_);
    AddHidden(Qt::BottomDockWidgetArea, graph_);
    setAcceptDrops(true);
    area_->setObjectName(QStringLiteral("area"));
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    BuildFileMenu();
    BuildEditMenu();
    BuildViewMenu();
    BuildRunMenu();
    menuBar()->addMenu(new WindowMenu(editors_, *area_, this));
    BuildHelpMenu();
    BuildToolbars();
    BuildStatusBar();
    SetIcons();

    edits_.Listen([this](const std::vector<Cell>&) {
        UpdateEditMenu();
        RefreshSave();
    });
    connect(&commands_, &FileCommands::SessionChanged, this, &frmMain::SessionChanged);
    for (const auto signal : {&FileCommands::SessionChanged, &FileCommands::Saved})
        connect(&commands_, signal, otherLines_, &OtherLinesDock::Refresh);
    connect(&commands_, &FileCommands::SessionChanged, compare_, [this] { compare_->Drop(true); });
    connect(&commands_, &FileCommands::Saved, compare_, &frmCompare::Saved);
    connect(&commands_, &FileCommands::SessionChanged, problems_, &ProblemsDock::SessionChanged);
    connect(&commands_, &FileCommands::TableLoaded, problems_, &ProblemsDock::Refresh);
    connect(&commands_, &FileCommands::Saved, problems_, &ProblemsDock::Saved);
    connect(problems_, &ProblemsDock::Searched, this, &frmMain::UpdateStatus);
    connect(problems_, &ProblemsDock::StatusText, this, &frmMain::Tell);
    connect(compare_, &frmCompare::CellWanted, &editors_, &EditorSet::ShowCell);
    connect(compare_, &frmCompare::StatusText, this, &frmMain::Tell);
    connect(&commands_, &FileCommands::Saved, this, [this] {
        updateCaption();
        RefreshSave();
    });
    connect(&commands_, &FileCommands::TableLoaded, this, &frmMain::SettingsChanged);
    connect(&commands_, &FileCommands::RecentFilesChanged, this, &frmMain::UpdateRecentList);
    connect(&commands_, &FileCommands::StatusText, this, &frmMain::Tell);
    connect(&commands_, &FileCommands::GamesReadOtherwise, rulesBar_, &RulesBar::Tell);
    connect(&commands_, &FileCommands::SessionChanged, rulesBar_, &QWidget::hide);
    connect(rulesBar_, &RulesBar::EngineRulesWanted, &commands_, &FileCommands::GoOnByEngineRules);
    connect(&editors_, &EditorSet::StatusText, this, &frmMain::Tell);
    connect(&editors_, &EditorSet::ChangeWaiting, this, &frmMain::RefreshSave);
    connect(&editors_, &EditorSet::PatchNotesWanted, this, &frmMain::EditPatchNotes);
    connect(&editors_, &EditorSet::ShownChanged, this, &frmMain::UpdateEditorButtons);
    connect(&editors_, &EditorSet::EditorMade, this, &frmMain::RestoreEditor);
    qApp->installEventFilter(this);
    connect(&recoveryTimer_, &QTimer::timeout, &commands_, &FileCommands::KeepRecovery);
    recoveryTimer_.start(recoveryInterval);

    SetEditBar(false);
    UpdateEditMenu();
    RestorePlaces();
    program_.log.Add("  Loaded frmMain");
}

frmMain::~frmMain() = default;

void frmMain::Tell(const QString& text) { statusBar()->showMessage(text, statusDuration); }

QAction* frmMain::Action(const char* name, const QString& text, const QKeySequence& shortcut) {
    auto* action = new QAction(text, this);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(shortcut);
    // Hears of it before those do that see to it, since these are connected later.
    connect(action, &QAction::triggered, this, [this] { SelectionBox::TakeWaiting(focusWidget()); });
    return action;
}

void frmMain::BuildFileMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&File"));
    fileNew_ = Action("FileNew", tr("&New..."), QKeySequence::New);
    fileOpen_ = Action("FileOpen", tr("&Open..."), QKeySequence::Open);
    fileSave_ = Action("FileSave", tr("&Save"), QKeySequence::Save);
    fileSaveAs_ = Action("FileSaveAs", tr("Save &as..."), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
    fileLoadTable_ = Action("FileLoadTable", tr("&Load table..."));
    fileSaveTable_ = Action("FileSaveTable", tr("Save &table..."));
    fileEngine_ = Action("FileEngine", tr("&Engine..."));
    fileCompare_ = Action("FileCompare", tr("&Compare with..."));
    filePatchNotes_ = Action("FilePatchNotes", tr("&Patch notes..."));
    fileRecovered_ = Action("FileRecovered", tr("&Recovered work..."));
    fileExit_ = Action("FileExit", tr("E&xit"), QKeySequence(Qt::CTRL | Qt::Key_Q));
    fileSaveLump_ = Action("FileSaveLump", tr("Save l&ump as..."));
    filePutIntoWad_ = Action("FilePutIntoWad", tr("Put into &WAD..."));
    menu->addActions({fileNew_, fileOpen_, fileSave_, fileSaveAs_});
    menu->addSeparator();
    menu->addActions({fileSaveLump_, filePutIntoWad_});
    menu->addSeparator();
    menu->addActions({fileLoadTable_, fileSaveTable_});
    menu->addSeparator();
    menu->addActions({fileCompare_, fileEngine_, filePatchNotes_, fileRecovered_});
    menu->addSeparator();
    for (std::size_t i = 0; i < recentCount; ++i) {
        recent_[i] = Action("Recent", {});
        recent_[i]->setObjectName(QStringLiteral("Recent%1").arg(i));
        menu->addAction(recent_[i]);
        connect(recent_[i], &QAction::triggered, this,
                [this, i] { commands_.openFile(StoredPath(recent_[i]->data().toString())); });
    }
    recentEnd_ = menu->addSeparator();
    menu->addAction(fileExit_);

    connect(fileNew_, &QAction::triggered, &commands_, &FileCommands::createNewFile);
    connect(fileOpen_, &QAction::triggered, &commands_, [this] { commands_.openFile({}); });
    connect(fileSave_, &QAction::triggered, &commands_, &FileCommands::Save);
    connect(fileSaveAs_, &QAction::triggered, &commands_, &FileCommands::SaveAs);
    connect(fileSaveLump_, &QAction::triggered, &commands_, &FileCommands::SaveLumpAs);
    connect(filePutIntoWad_, &QAction::triggered, &commands_, &FileCommands::PutIntoWad);
    connect(fileLoadTable_, &QAction::triggered, &commands_, &FileCommands::LoadTable);
    connect(fileSaveTable_, &QAction::triggered, &commands_, &FileCommands::SaveTable);
    connect(fileEngine_, &QAction::triggered, this, &frmMain::ChangeEngine);
    connect(fileCompare_, &QAction::triggered, compare_, &frmCompare::CompareWith);
    connect(filePatchNotes_, &QAction::triggered, this, &frmMain::EditPatchNotes);
    connect(fileRecovered_, &QAction::triggered, this, &frmMain::ShowRecovered);
    connect(fileExit_, &QAction::triggered, this, &QWidget::close);
    UpdateRecentList();
}

void frmMain::BuildEditMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&Edit"));
    editUndo_ = Action("EditUndo", tr("&Undo"), QKeySequence(Qt::CTRL | Qt::Key_Z));
    editRedo_ = Action("EditRedo", tr("&Redo"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
    editRedo_->setShortcuts({editRedo_->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    editFind_ = Action("EditFind", tr("&Find..."), QKeySequence(Qt::CTRL | Qt::Key_F));
    editGoTo_ = Action("EditGoTo", tr("&Go to..."), QKeySequence(Qt::CTRL | Qt::Key_G));
    menu->addActions({editUndo_, editRedo_});
    menu->addSeparator();
    menu->addActions(editors_.ClipActions());
    menu->setToolTipsVisible(true);
    menu->addSeparator();
    menu->addActions({editFind_, editGoTo_});
    connect(editFind_, &QAction::triggered, find_, &FindDock::Start);
    connect(editGoTo_, &QAction::triggered, this, &frmMain::GoTo);
    menu->addSeparator();
    menu->addActions(editors_.AllRecordActions());
    menu->setToolTipsVisible(true);
    connect(editUndo_, &QAction::triggered, this, [this] { edits_.Undo(); });
    connect(editRedo_, &QAction::triggered, this, [this] { edits_.Redo(); });
}

void frmMain::BuildViewMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&View"));
    viewBack_ = Action("ViewBack", tr("&Back"), QKeySequence(Qt::ALT | Qt::Key_Left));
    viewForward_ = Action("ViewForward", tr("&Forward"), QKeySequence(Qt::ALT | Qt::Key_Right));
    menu->addActions({viewBack_, viewForward_});
    connect(viewBack_, &QAction::triggered, &history_, &PlaceHistory::Back);
    connect(viewForward_, &QAction::triggered, &history_, &PlaceHistory::Forward);
    connect(&history_, &PlaceHistory::Changed, this, &frmMain::UpdateWays);
    UpdateWays();
    menu->addSeparator();
    viewOptions_ = Action("ViewOptions", tr("&Options..."));
    viewGamePictures_ = Action("ViewGamePictures", tr("P&ictures as in the game"));
    viewGamePictures_->setCheckable(true);
    viewGamePictures_->setChecked(SpriteView::GamePictures(program_.settings));
    connect(viewGamePictures_, &QAction::triggered, this, [this](bool wanted) {
        SpriteView::GamePictures(program_.settings, wanted);
        for (SpriteView* view : findChildren<SpriteView*>())
            view->Redraw();
        graph_->Redraw();
        editors_.Pictures().Clear();
    });
    QAction* thumbnails = Action("ViewThumbnails", tr("&Thumbnails"));
    thumbnails->setCheckable(true);
    thumbnails->setChecked(editors_.Pictures().Wanted());
    connect(thumbnails, &QAction::triggered, this, [this](bool wanted) { editors_.Pictures().Wanted(wanted); });
    menu->addActions({viewOptions_, viewGamePictures_, thumbnails});
    menu->addSeparator();
    for (std::size_t editor = 0; editor < editorEntries.size(); ++editor) {
        QAction*& action = viewEditors_[editor];
        const QKeySequence key(QString::fromLatin1(editorEntries[editor].key));
        action = Action(editorEntries[editor].command, tr(editorEntries[editor].menuText), key);
        action->setCheckable(true);
        action->setIconText(tr(editorEntries[editor].button));
        action->setToolTip(
            tr("Show or hide the %1 (%2)")
                .arg(tr(editorEntries[editor].menuText).toLower(), key.toString(QKeySequence::NativeText)));
        menu->addAction(action);
        connect(action, &QAction::triggered, this, [this, editor] { ToggleEditForm(editor); });
    }
    menu->addSeparator();
    QAction* otherLines = otherLines_->toggleViewAction();
    otherLines->setObjectName(QStringLiteral("ViewOtherLines"));
    otherLines->setText(tr("Other &lines"));
    QAction* comparison = compare_->toggleViewAction();
    comparison->setObjectName(QStringLiteral("ViewComparison"));
    comparison->setText(tr("&Comparison"));
    viewWhereUsed_ = Action("ViewWhereUsed", tr("&Where used"), QKeySequence(Qt::CTRL | Qt::Key_U));
    viewWhereUsed_->setToolTip(tr("Show all that uses the selected record"));
    connect(viewWhereUsed_, &QAction::triggered, whereUsed_, &WhereUsedDock::Toggle);
    QAction* problems = problems_->toggleViewAction();
    problems->setObjectName(QStringLiteral("ViewProblems"));
    problems->setText(tr("&Problems"));
    viewStateGraph_ = Action("ViewStateGraph", tr("State &graph"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_G));
    viewStateGraph_->setToolTip(tr("Show the states of the selected thing or weapon as boxes and arrows"));
    connect(viewStateGraph_, &QAction::triggered, graph_, &StateGraphDock::Toggle);
    menu->addActions({viewWhereUsed_, viewStateGraph_, problems, otherLines, comparison});
    connect(viewOptions_, &QAction::triggered, this, &frmMain::ShowOptions);
}

void frmMain::BuildRunMenu() {
    QMenu* menu = menuBar()->addMenu(tr("R&un"));
    menu->addActions(run_.Actions());
    menu->setToolTipsVisible(true);
    connect(&commands_, &FileCommands::SessionChanged, &run_, &RunCommands::SessionChanged);
    connect(&run_, &RunCommands::StatusText, this, &frmMain::Tell);
    connect(&run_, &RunCommands::Reported, problems_, &ProblemsDock::ShowOfPort);
}

void frmMain::BuildHelpMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&Help"));
    QAction* manual = Action("HelpManual", tr("&Manual"), QKeySequence(Qt::Key_F1));
    QAction* website = Action("HelpWebsite", tr("Plinket3 &website..."));
    helpAbout_ = Action("HelpAbout", tr("&About..."));
    menu->addActions({manual, website, helpAbout_});
    connect(manual, &QAction::triggered, this, [this] { ShowManual(); });
    connect(website, &QAction::triggered, this, [this] {
        if (!QDesktopServices::openUrl(QUrl(QString::fromLatin1(webSite))))
            program_.notifier.Show(MessageKind::Exclamation, std::string("No browser could be started for ") + webSite);
    });
    connect(helpAbout_, &QAction::triggered, this, [this] {
        if (!about_)
            about_ = std::make_unique<frmAbout>(this);
        about_->exec();
    });
}

void frmMain::BuildToolbars() {
    tlbProgram_ = addToolBar(tr("Program"));
    tlbProgram_->setObjectName(QStringLiteral("tlbProgram"));
    tlbEditors_ = addToolBar(tr("Editors"));
    tlbEditors_->setObjectName(QStringLiteral("tlbEditors"));
    const std::pair<QAction*, QString> buttons[]{{fileNew_, tr("Create a new file")},
                                                 {nullptr, {}},
                                                 {fileOpen_, tr("Open a file")},
                                                 {fileSave_, tr("Save this file")},
                                                 {nullptr, {}},
                                                 {viewBack_, tr("Back to where you were before (Alt+Left)")},
                                                 {viewForward_, tr("Forward again (Alt+Right)")},
                                                 {editFind_, tr("Find anything in the patch (Ctrl+F)")},
                                                 {nullptr, {}},
                                                 {viewOptions_, tr("Display the options")},
                                                 {nullptr, {}},
                                                 {helpAbout_, tr("About Plinket3")}};
    for (const auto& [action, tip] : buttons) {
        if (action == nullptr) {
            tlbProgram_->addSeparator();
            continue;
        }
        action->setToolTip(tip);
        tlbProgram_->addAction(action);
    }
    tlbEditors_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    for (QAction* action : viewEditors_)
        tlbEditors_->addAction(action);
}

void frmMain::BuildStatusBar() {
    const std::pair<QLabel**, const char*> labels[]{
        {&lblEngine_, "lblEngine"}, {&lblMode_, "lblMode"}, {&lblIwad_, "lblIWAD"}};
    for (const auto& [label, name] : labels) {
        *label = new QLabel;
        (*label)->setObjectName(QString::fromLatin1(name));
        statusBar()->addPermanentWidget(*label);
    }
    cmdRules_ = new QToolButton;
    cmdRules_->setObjectName(QStringLiteral("cmdRules"));
    cmdRules_->setAutoRaise(true);
    statusBar()->insertPermanentWidget(2, cmdRules_);
    connect(cmdRules_, &QToolButton::clicked, &commands_, &FileCommands::SwitchRules);
    cmdProblems_ = new QToolButton;
    cmdProblems_->setObjectName(QStringLiteral("cmdProblems"));
    cmdProblems_->setAutoRaise(true);
    cmdProblems_->setToolTip(tr("What games refuse in the patch, and what does nothing or something else.\nClick to "
                                "list it."));
    statusBar()->insertPermanentWidget(0, cmdProblems_);
    connect(cmdProblems_, &QToolButton::clicked, problems_, &ProblemsDock::ShowList);
    UpdateStatus();
}

void frmMain::SetIcons() {
    const std::pair<QAction*, const char*> icons[]{
        {fileNew_, "new"},     {fileOpen_, "open"},      {fileSave_, "save"}, {viewOptions_, "options"},
        {helpAbout_, "about"}, {editUndo_, "undo"},      {editRedo_, "redo"}, {editFind_, "find"},
        {viewBack_, "back"},   {viewForward_, "forward"}};
    for (const auto& [action, name] : icons)
        action->setIcon(ProgramIcon(name, palette()));
}

void frmMain::Load(std::string_view name) {
    // Dialogs are made when they are first shown, so that the start need not wait for them.
    constexpr std::string_view dialogs[]{"frmOptions", "frmAbout", "frmNewFile", "frmStartup"};
    if (std::ranges::find(dialogs, name) != std::end(dialogs))
        program_.log.Add("  Loaded " + std::string(name));
    else
        editors_.Load(name);
}

void frmMain::Adopt(std::unique_ptr<frmOptions> options) {
    options_ = std::move(options);
    options_->setParent(this, options_->windowFlags());
    connect(options_.get(), &frmOptions::Accepted, this, &frmMain::SettingsChanged);
}

void frmMain::ShowStartup() {
    if (!startup_) {
        startup_ = std::make_unique<frmStartup>(program_, this);
        connect(startup_.get(), &frmStartup::NewChosen, &commands_, &FileCommands::createNewFile);
        connect(startup_.get(), &frmStartup::OpenChosen, &commands_, [this] { commands_.openFile({}); });
        connect(startup_.get(), &frmStartup::RecentChosen, &commands_,
                [this](const QString& path) { commands_.openFile(StoredPath(path)); });
    }
    startup_->open();
}

bool frmMain::ShowOptions() {
    if (!options_)
        Adopt(std::make_unique<frmOptions>(program_, dialogs_, this));
    if (options_->Edit())
        return true;
    commands_.KeepRecovery(); // the program ends at once: unsaved work is offered at the next start
    emit EndedAtOnce();
    return false;
}

void frmMain::GoTo() {
    const std::optional<Cell> here = editors_.Here();
    if (!here)
        return Tell(tr("Go to leads to a record of the editor in front, and none is shown"));
    if (const std::optional<Cell> chosen = frmGoTo(program_, here->kind, this).Choose())
        editors_.ShowCell(*chosen);
}

void frmMain::ShowRecovered() {
    if (const std::optional<KeptWork> work = frmRecovered(recovery_, program_.notifier, this).Choose())
        commands_.OpenKept(*work);
}

void frmMain::ChangeEngine() {
    if (std::optional<frmChangeEngine::Choice> choice = frmChangeEngine(program_, this).Choose())
        commands_.ChangeEngine(std::move(choice->engine), std::move(choice->patch));
}

void frmMain::EditPatchNotes() {
    frmPatchNotes dialog(
        std::get<std::string>(edits_.Value(patchNotes)), [this](const QString& why) { Tell(why); }, this);
    if (const std::optional<std::string> notes = dialog.Edit())
        edits_.Store(patchNotes, *notes);
}

void frmMain::ShowManual(const QString& page) {
    if (!manual_)
        manual_ = std::make_unique<frmManual>(program_, state_);
    if (!page.isEmpty())
        return manual_->Open(page);
    const std::optional<std::size_t> editor = editors_.Front();
    const bool finding = find_->isAncestorOf(focusWidget());
    manual_->Open(QString::fromLatin1(finding ? "finding.md" : editor ? editorEntries[*editor].manualPage : ""));
}

std::optional<Session> frmMain::ChooseSession(const PatchToOpen* patch) {
    if (!newFile_) {
        newFile_ = std::make_unique<frmNewFile>(program_, dialogs_, this);
        connect(newFile_.get(), &frmNewFile::StatusText, this, &frmMain::Tell);
        connect(newFile_.get(), &frmNewFile::OptionsWanted, this, &frmMain::ShowOptions);
    }
    if (patch == nullptr)
        newFile_->SetNewFile();
    else
        newFile_->SelectConfig(*patch);
    return newFile_->Choose();
}

void frmMain::SessionChanged() {
    const bool firstSession = !fileSaveAs_->isEnabled();
    editors_.Refresh();
    history_.Clear();
    find_->Refresh();
    graph_->Refresh();
    SetEditBar(true);
    updateCaption();
    UpdateStatus();
    RefreshSave();
    for (const std::size_t editor : {parEditor, spriteEditor, musicEditor})
        if (!viewEditors_[editor]->isEnabled())
            editors_.Show(editor, false);
    if (!firstSession)
        return;
    const QByteArray shown = state_.Bytes(QString::fromLatin1(shownKey));
    for (std::size_t editor = 0; editor < editorEntries.size(); ++editor) {
        const bool show = shown.isEmpty() ? editor == 0 : shown.split(' ').contains(editorEntries[editor].window);
        if (!show || !viewEditors_[editor]->isEnabled())
            continue;
        editors_.Show(editor, true);
    }
}

void frmMain::AddHidden(Qt::DockWidgetArea place, LaterDock* dock) {
    addDockWidget(place, dock);
    dock->hide();
    connect(dock, &LaterDock::Made, this, [this, dock] { state_.RestoreParts(*dock); });
}

void frmMain::SetEditBar(bool enabled) {
    for (std::size_t editor = 0; editor < viewEditors_.size(); ++editor)
        viewEditors_[editor]->setEnabled(enabled && editors_.Serves(editor));
    for (QAction* action : {fileSave_, fileSaveAs_, filePutIntoWad_, fileCompare_, fileLoadTable_, fileSaveTable_})
        action->setEnabled(enabled);
    for (QAction* action : {editFind_, editGoTo_, viewWhereUsed_, viewStateGraph_})
        action->setEnabled(enabled);
    for (QAction* action : run_.Actions())
        action->setEnabled(enabled);
    find_->EnableContents(enabled);
    fileSaveLump_->setEnabled(enabled && !program_.patch.lump.empty());
    fileEngine_->setEnabled(enabled && program_.engines.size() > 1);
    filePatchNotes_->setEnabled(enabled && program_.engine.dialect.EngineRules());
    filePatchNotes_->setToolTip(tr("The comments at the head of a patch that is open by engine rules"));
}

void frmMain::ToggleEditForm(std::size_t editor) { editors_.Toggle(editor); }

void frmMain::UpdateEditorButtons() {
    for (std::size_t editor = 0; editor < viewEditors_.size(); ++editor)
        viewEditors_[editor]->setChecked(editors_.IsShown(editor));
}

void frmMain::updateCaption() {
    if (!commands_.SessionOpen()) {
        setWindowTitle(QString::fromLatin1(programTitle));
        return;
    }
    setWindowTitle(QStringLiteral("Plinket3 - [%1] - %2")
                       .arg(ShownPath(PatchPlace(program_.patch.fileName, program_.patch.lump).Name()),
                            program_.engine.dialect.IsExtended() ? tr("Extended mode") : tr("Normal mode")));
}

void frmMain::UpdateRecentList() {
    const std::vector<std::string> recent = program_.settings.RecentFiles();
    for (std::size_t i = 0; i < recentCount; ++i) {
        recent_[i]->setVisible(i < recent.size());
        if (i >= recent.size())
            continue;
        const QString path = ShownPath(recent[recent.size() - 1 - i]);
        recent_[i]->setData(path);
        recent_[i]->setText(QStringLiteral("&%1 %2").arg(i + 1).arg(MenuText(path)));
    }
    recentEnd_->setVisible(!recent.empty());
}

void frmMain::UpdateEditMenu() {
    editUndo_->setEnabled(edits_.CanUndo());
    editRedo_->setEnabled(edits_.CanRedo());
    editUndo_->setText(edits_.CanUndo() ? tr("&Undo %1").arg(MenuText(ShownStart(edits_.UndoName()))) : tr("&Undo"));
    editRedo_->setText(edits_.CanRedo() ? tr("&Redo %1").arg(MenuText(ShownStart(edits_.RedoName()))) : tr("&Redo"));
}

void frmMain::UpdateWays() {
    viewBack_->setEnabled(history_.CanGoBack());
    viewForward_->setEnabled(history_.CanGoForward());
}

void frmMain::RefreshSave() {
    fileSave_->setEnabled(commands_.SessionOpen() && (program_.patch.changed || SelectionBox::Waits(focusWidget())));
}

void frmMain::UpdateStatus() {
    const bool open = commands_.SessionOpen();
    lblEngine_->setText(open ? ShownText(program_.engine.name) : tr("No patch is open"));
    lblMode_->setText(!open                                  ? QString()
                      : program_.engine.dialect.IsExtended() ? tr("Extended mode")
                                                             : tr("Normal mode"));
    const bool engineRules = program_.engine.dialect.EngineRules();
    cmdRules_->setVisible(open);
    cmdProblems_->setVisible(open);
    cmdProblems_->setText(problems_->Counts());
    cmdRules_->setText(engineRules ? tr("Engine rules") : tr("Kept rules"));
    cmdRules_->setToolTip(engineRules ? tr("Values are what games make of the file, and a save changes nothing in it "
                                           "but what you changed.\nClick to read the patch by the kept rules.")
                                      : tr("The patch is read and saved as this program always did; comments and "
                                           "unknown lines are lost.\nClick to read it by engine rules."));
    QString wads = open ? ShownPath(PathOf(program_.patch.iwadPath).filename()) : QString();
    QString paths = open ? ShownPath(program_.patch.iwadPath) : QString();
    for (const std::filesystem::path missing : program_.missingDataWads) {
        wads += tr(", without %1").arg(ShownPath(missing.filename()));
        paths += tr("\nThe data WAD %1 could not be opened.").arg(ShownPath(missing));
    }
    lblIwad_->setText(wads);
    lblIwad_->setToolTip(paths);
}

void frmMain::RestoreEditor(std::size_t editor) {
    QMdiSubWindow* frame = editors_.Frame(editor);
    state_.RestoreParts(*frame->widget());
    editors_.Place(editor, state_.Bytes(GeometryKey(editor)));
}

/// Undo, redo and "Where used" have their keys everywhere in this window: a text field would take them for itself. F1
/// belongs to this window's dialogs, too.
bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::ShortcutOverride && widget != nullptr && widget->window() == this) {
        const QKeySequence keys(static_cast<QKeyEvent*>(event)->keyCombination());
        if (keys == editUndo_->shortcut() || editRedo_->shortcuts().contains(keys) ||
            keys == viewWhereUsed_->shortcut()) {
            event->ignore();
            return true;
        }
    }
    if (event->type() == QEvent::KeyPress && widget != nullptr &&
        static_cast<QKeyEvent*>(event)->keyCombination() == QKeyCombination(Qt::Key_F1)) {
        if (const QString page = PageOf(widget); !page.isEmpty()) {
            ShowManual(page);
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::RestorePlaces() {
    const bool restored = restoreGeometry(state_.Bytes(QString::fromLatin1(geometryKey)));
    if (!restored || !isMaximized()) {
        // The screen may be another one than that on which the window stood.
        const QSize twoEditors(fontMetrics().averageCharWidth() * 352, fontMetrics().height() * 60);
        const QRect room = screen()->availableGeometry();
        resize((restored ? size() : twoEditors).boundedTo(room.size() * 0.95));
        if (restored && !screen()->availableVirtualGeometry().contains(geometry()))
            move(room.center() - rect().center());
    }
    restoreState(state_.Bytes(QString::fromLatin1(toolbarsKey)));
}

void frmMain::KeepPlaces() {
    state_.Bytes(QString::fromLatin1(geometryKey), saveGeometry());
    state_.Bytes(QString::fromLatin1(toolbarsKey), saveState());
    for (const LaterDock* dock : findChildren<LaterDock*>())
        if (dock->IsMade())
            state_.KeepParts(*dock);
    if (!commands_.SessionOpen())
        return;
    QByteArrayList shown;
    for (std::size_t editor = 0; editor < editorEntries.size(); ++editor) {
        if (editors_.Frame(editor) == nullptr)
            continue;
        state_.Bytes(GeometryKey(editor), editors_.Place(editor));
        state_.KeepParts(*editors_.Frame(editor)->widget());
        if (editors_.IsShown(editor))
            shown.append(editorEntries[editor].window);
    }
    state_.Bytes(QString::fromLatin1(shownKey), shown.isEmpty() ? QByteArray("none") : shown.join(' '));
}

void frmMain::closeEvent(QCloseEvent* event) {
    SelectionBox::TakeWaiting(focusWidget());
    if (!commands_.MayClose()) {
        event->ignore();
        return;
    }
    KeepPlaces();
    if (manual_)
        manual_->close();
    state_.Write();
    recoveryTimer_.stop();
    event->accept();
    emit Closing();
}

void frmMain::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && fileNew_ != nullptr)
        SetIcons();
    else if (event->type() == QEvent::ActivationChange && isActiveWindow())
        QTimer::singleShot(0, &commands_, &FileCommands::CheckFileOnDisk);
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile())
            event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event) {
    for (const QUrl& url : event->mimeData()->urls()) {
        if (!url.isLocalFile())
            continue;
        event->acceptProposedAction();
        const QString file = url.toLocalFile();
        QTimer::singleShot(0, &commands_, [this, file] { // the drop must end first
            if (QApplication::activeModalWidget() == nullptr)
                commands_.openFile(StoredPath(file));
        });
        return;
    }
}

} // namespace plinket3
