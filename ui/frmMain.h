#pragma once

#include "ui/EditorSet.h"
#include "ui/FileCommands.h"
#include "ui/FindDock.h"
#include "ui/LaterDock.h"
#include "ui/OtherLinesDock.h"
#include "ui/PlaceHistory.h"
#include "ui/ProblemsDock.h"
#include "ui/RulesBar.h"
#include "ui/WhereUsedDock.h"
#include "ui/WindowState.h"
#include "ui/compare/frmCompare.h"
#include "ui/frmAbout.h"
#include "ui/frmManual.h"
#include "ui/frmNewFile.h"
#include "ui/frmOptions.h"
#include "ui/frmStartup.h"
#include "ui/graph/StateGraphDock.h"
#include "ui/run/RunCommands.h"

#include <QMainWindow>
#include <QTimer>

#include <array>
#include <memory>

class QAction;
class QLabel;
class QMdiArea;
class QToolBar;
class QToolButton;

namespace plinket3 {

/// The program's main window: a frame for the editors with menus, two toolbars and a status bar.
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    frmMain(Program& program, Edits& edits, Audio& audio, FileDialogs& dialogs);
    ~frmMain() override;

    FileCommands& Commands() { return commands_; }
    EditorSet& Editors() { return editors_; }

    /// Makes one of the windows that belong to this one, or sees to it that it is made when it is first shown. Logs
    /// "  Loaded " and its name.
    void Load(std::string_view name);
    /// Takes over the options dialog of the first run.
    void Adopt(std::unique_ptr<frmOptions> options);
    void ShowStartup();
    /// False: the user ends the program.
    bool ShowOptions();
    /// Shows a page of the manual; without one that of the editor that has the focus, or the contents.
    void ShowManual(const QString& page = {});

    void SetEditBar(bool enabled);
    void ToggleEditForm(std::size_t editor);
    void updateCaption();
    void UpdateRecentList();
    /// Enables Save when the patch has unsaved changes, or one waits to be taken.
    void RefreshSave();

signals:
    /// The user has settled unsaved changes and closes the program.
    void Closing();
    /// The user ended the program in the options: at once, without its shut-down.
    void EndedAtOnce();
    /// The options were accepted or a table was loaded: editors are to follow the settings.
    void SettingsChanged();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static constexpr std::size_t recentCount = 6;

    QAction* Action(const char* name, const QString& text, const QKeySequence& shortcut = {});
    void BuildFileMenu();
    void BuildEditMenu();
    void BuildViewMenu();
    void BuildRunMenu();
    void BuildHelpMenu();
    void BuildToolbars();
    void BuildStatusBar();
    /// A dock that is not shown before somebody asks for it.
    void AddHidden(Qt::DockWidgetArea place, LaterDock* dock);
    void SetIcons();
    void SessionChanged();
    void UpdateEditMenu();
    void UpdateWays();
    void UpdateEditorButtons();
    void UpdateStatus();
    /// Shows a text in the status bar for a while.
    void Tell(const QString& text);
    void RestorePlaces();
    void RestoreEditor(std::size_t editor);
    void GoTo();
    void ShowRecovered();
    void ChangeEngine();
    void EditPatchNotes();
    void KeepPlaces();
    std::optional<Session> ChooseSession(const PatchToOpen* patch);

    Program& program_;
    Edits& edits_;
    FileDialogs& dialogs_;
    WindowState state_;
    QMdiArea* area_;
    RulesBar* rulesBar_;
    OtherLinesDock* otherLines_;
    frmCompare* compare_;
    Recovery recovery_;
    EditorSet editors_;
    PlaceHistory history_{editors_};
    FindDock* find_;
    WhereUsedDock* whereUsed_;
    ProblemsDock* problems_;
    StateGraphDock* graph_;
    RunCommands run_{program_, editors_, *this};
    FileCommands commands_;
    std::unique_ptr<frmOptions> options_;
    std::unique_ptr<frmAbout> about_;
    std::unique_ptr<frmManual> manual_;
    std::unique_ptr<frmNewFile> newFile_;
    std::unique_ptr<frmStartup> startup_;

    QAction *fileNew_ = nullptr, *fileOpen_ = nullptr, *fileSave_ = nullptr, *fileSaveAs_ = nullptr,
            *fileSaveLump_ = nullptr, *filePutIntoWad_ = nullptr, *fileLoadTable_ = nullptr, *fileSaveTable_ = nullptr,
            *fileEngine_ = nullptr, *fileCompare_ = nullptr, *filePatchNotes_ = nullptr, *fileRecovered_ = nullptr,
            *fileExit_ = nullptr, *editUndo_ = nullptr, *editRedo_ = nullptr, *editFind_ = nullptr,
            *editGoTo_ = nullptr, *viewBack_ = nullptr, *viewForward_ = nullptr, *viewWhereUsed_ = nullptr,
            *viewStateGraph_ = nullptr, *viewOptions_ = nullptr, *viewGamePictures_ = nullptr, *helpAbout_ = nullptr;
    std::array<QAction*, recentCount> recent_{};
    QAction* recentEnd_ = nullptr;
    std::array<QAction*, editorEntries.size()> viewEditors_{};
    QToolBar *tlbProgram_ = nullptr, *tlbEditors_ = nullptr;
    QLabel *lblEngine_ = nullptr, *lblMode_ = nullptr, *lblIwad_ = nullptr;
    QToolButton *cmdRules_ = nullptr, *cmdProblems_ = nullptr;
    QTimer recoveryTimer_;
};

} // namespace plinket3
