#include "ui/frmMain.h"

#include "core/Version.h"
#include "ui/DialogPages.h"
#include "ui/LatinText.h"
#include "ui/WindowMenu.h"
#include "ui/fields/SelectionBox.h"
#include "ui/frmChangeEngine.h"
#include "ui/frmGoTo.h"
#include "ui/frmPatchNotes.h"
#include "ui/frmRecovered.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
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
    for (const std::string& missing : program_.missingDataWads) {
        wads += tr(", without %1").arg(ShownPath(PathOf(missing).filename()));
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
        if (const QString page = DialogPageOf(widget); !page.isEmpty()) {
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
