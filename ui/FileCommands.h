#pragma once

#include "patch/Edits.h"
#include "patch/Program.h"
#include "patch/modPatchFiles.h"
#include "ui/FileDialogs.h"
#include "ui/FileStamp.h"
#include "ui/Recovery.h"

#include <QObject>
#include <QString>

#include <filesystem>
#include <functional>
#include <optional>

namespace plinket3 {

/// The dialog that chooses and loads a session, as the file commands need it. Without a header it is for a new patch.
using SessionDialog = std::function<std::optional<Session>(const modPatchFiles::Header* header)>;

/// The commands on the patch and the engine's table: new, open, save, and what must be asked before.
class FileCommands : public QObject {
    Q_OBJECT
public:
    FileCommands(Program& program, Edits& edits, FileDialogs& dialogs, Recovery& recovery, SessionDialog sessionDialog);

    bool SessionOpen() const { return sessionOpen_; }

    void createNewFile();
    /// Opens a patch; an empty path asks for one first.
    void openFile(const std::filesystem::path& path);
    /// True when the patch was saved.
    bool Save();
    bool SaveAs();
    void LoadTable();
    void SaveTable();
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
    /// What just happened, for the status bar.
    void StatusText(const QString& text);

private:
    /// How the patch's file looks now, when another program has written it since we read or wrote it.
    std::optional<FileStamp> ChangedStamp() const;

    bool MayLoseChanges();
    /// The header of a patch that can be opened; shows what is wrong with another.
    std::optional<modPatchFiles::Header> HeaderOf(const std::filesystem::path& file) const;
    void Adopt(Session session);
    bool SaveTo(const std::filesystem::path& file);
    void AddRecent(const std::filesystem::path& file);
    bool ReloadFile();
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
