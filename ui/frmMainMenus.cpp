#include "ui/frmMain.h"

#include "ui/Icons.h"
#include "ui/LatinText.h"
#include "ui/fields/SelectionBox.h"
#include "ui/fields/SpriteView.h"

#include <QAction>
#include <QDesktopServices>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>

// The main window's menus, toolbars and status bar; what they do stands in frmMain.cpp.

namespace plinket3 {

namespace {

constexpr const char* webSite = PLINKET3_WEBSITE;

} // namespace

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
    connect(viewWhereUsed_, &QAction::triggered, whereUsed_, &LaterDock::Toggle);
    QAction* problems = problems_->toggleViewAction();
    problems->setObjectName(QStringLiteral("ViewProblems"));
    problems->setText(tr("&Problems"));
    viewStateGraph_ = Action("ViewStateGraph", tr("State &graph"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_G));
    viewStateGraph_->setToolTip(tr("Show the states of the selected thing or weapon as boxes and arrows"));
    connect(viewStateGraph_, &QAction::triggered, graph_, &LaterDock::Toggle);
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
    connect(cmdProblems_, &QToolButton::clicked, problems_, &LaterDock::Bring);
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

} // namespace plinket3
