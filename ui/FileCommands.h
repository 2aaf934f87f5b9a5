#pragma once

#include "patch/Edits.h"
#include "patch/Program.h"
#include "patch/modPatchFiles.h"
#include "ui/FileDialogs.h"
#include "ui/FileStamp.h"
#include "ui/PatchToOpen.h"
#include "ui/Recovery.h"

#include <QObject>
#include <QString>

#include <filesystem>
#include <functional>
#include <optional>

namespace plinket3 {

/// The dialog that chooses and loads a session, as the file commands need it; null for a new patch.
using SessionDialog = std::function<std::optional<Session>(const PatchToOpen* patch)>;

/// The commands on the patch and the engine's table: new, open, save, and what must be asked before.
class FileCommands : public QObject {
    Q_OBJECT
public:
    FileCommands(Program& program, Edits& edits, FileDialogs& dialogs, Recovery& recovery, SessionDialog sessionDialog);

    bool SessionOpen() const { return sessionOpen_; }

    void createNewFile();
    /// Opens a patch, or one of those in a WAD; an empty path asks for one first.
    void openFile(const std::filesystem::path& path);
    /// True when the patch was saved.
    bool Save();
    bool SaveAs();
    /// Writes the open patch, as a save would, to a file of its own or as a lump into a WAD. What is open stays so.
    void SaveLumpAs();
    void PutIntoWad();
    /// Reads the open patch again, once unsaved changes are settled, by the other rules; a new patch just goes by them
    /// from here on. Does nothing when the engine leaves no choice.
    void SwitchRules();
    /// Goes on by engine rules with all values and steps as they are, over the file as it was saved last.
    void GoOnByEngineRules();
    void LoadTable();
    void SaveTable();
    /// Goes on with the patch as it was taken over to another engine; nothing can be undone then.
    void ChangeEngine(EngineConfiguration engine, PatchData patch);
    /// Asks about unsaved changes; true when the program may close.
    bool MayClose();

    /// Offers what a run left behind that ended without its shut-down; true when it was opened.
    bool OfferRecovery();
    /// Opens a piece of work that was left behind, once unsaved changes are settled; true when it was opened.
    bool OpenKept(const KeptWork& work);
    /// Writes the recovery file while there are unsaved changes.
    void KeepRecovery();
    /// Asks whether to read the patch again when its file is another than the one that was read or written last.
    void CheckFileOnDisk();

signals:
    /// Another patch, engine or file name: everything is to be shown anew.
    void SessionChanged();
    /// Another table is the engine's own data now.
    void TableLoaded();
    /// The patch was saved, or its name is another one.
    void Saved();
    void RecentFilesChanged();
    /// A save by the kept rules wrote what games read otherwise: a line for each such value.
    void GamesReadOtherwise(const std::vector<std::string>& values);
    /// What just happened, for the status bar.
    void StatusText(const QString& text);

private:
    /// How the patch's file looks now, when another program has written it since we read or wrote it.
    std::optional<FileStamp> ChangedStamp() const;

    bool MayLoseChanges();
    PatchPlace Place() const { return {program_.patch.fileName, program_.patch.lump}; }
    /// The patch in a file, for a WAD with several the one that is chosen; none when the WAD has none, or that is given
    /// up. Offers to begin a patch in a WAD without one.
    std::optional<PatchPlace> PlaceIn(const std::filesystem::path& file);
    void BeginPatchIn(const PatchPlace& place);
    /// A patch that can be opened by one of the rules; shows what is wrong with another.
    std::optional<PatchToOpen> ToOpen(const PatchPlace& place) const;
    /// Why the kept rules refuse a patch whatever the engine; empty when they do not.
    std::string KeptRefusal(const PatchToOpen& patch) const;
    void Adopt(Session session);
    /// A file to save the open patch in; empty when none is chosen. Tells that a WAD is none.
    std::filesystem::path AskForPatchFile(const QString& title);
    bool SaveTo(const PatchPlace& place);
    /// Writes the open patch there; shows why that fails.
    bool Write(const PatchPlace& place);
    /// The file is the newest of the recent ones, and what the patch is edited against is remembered with it.
    void AddRecent(const std::filesystem::path& file);
    /// Reads the patch's file again; shows why when it cannot be read by these rules.
    bool ReadAgain(Rules rules);
    /// Opens work whose file is the program's own by now; puts the file away when it does not fit.
    bool GoOnWith(const RecoveredPatch& recovered);

    Program& program_;
    Edits& edits_;
    FileDialogs& dialogs_;
    Recovery& recovery_;
    SessionDialog sessionDialog_;
    bool sessionOpen_ = false;
    std::optional<FileStamp> stamp_; // of the patch's file as we read or wrote it; none when there was no file
    std::optional<FileStamp> asked_; // of the file as the user decided to leave it
    bool asking_ = false;            // a question is open
    bool recoveryFails_ = false;     // and the user was told so
};

} // namespace plinket3
