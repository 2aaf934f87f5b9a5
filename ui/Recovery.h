#pragma once

#include "patch/Program.h"

#include "ui/FileStamp.h"

#include <QLockFile>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plinket3 {

/// Unsaved work of a run that ended without its shut-down.
struct RecoveredPatch {
    std::string fileName, engineConfig, iwadPath, dataWadPath;
    bool named = false;
    // The records, and those of the engine or of a table that was loaded in its place: as table files with strings,
    // whatever the mode.
    std::string table, defaultsTable;
    std::vector<ParRecord> pars;
    std::optional<FileStamp> stamp; // of the patch's file as the run knew it
};

/// Keeps the unsaved state of the open patch in the settings folder, so that a crash costs at most half a minute. Each
/// running program has files of its own: a lock that the system gives up when the program ends in whatever way, and the
/// recovery file itself, written in one step. Records are kept exactly, which a patch file cannot do.
class Recovery {
public:
    /// Takes a place of its own in `folder`. Without one (a folder that cannot be written) nothing is kept.
    explicit Recovery(std::filesystem::path folder);

    /// Writes the recovery file, unless it holds this `revision` of the patch already. Fails as writing files does.
    Status Keep(const PatchData& patch, const std::optional<FileStamp>& stamp, std::uint64_t revision);
    /// Removes it: the work is saved, or given up by the user.
    void Forget();

    /// Puts the file away under another name, so that later work does not replace it. Returns that name.
    std::filesystem::path SetAside();

    /// What a run that is no longer there has left behind, which is then taken over: kept until `Forget`. Absent when
    /// there is nothing. Files that hold nothing that can be read are put away; `damaged` gets their new names.
    std::optional<RecoveredPatch> TakeOver(std::vector<std::filesystem::path>& damaged);

private:
    void Own(int place, std::unique_ptr<QLockFile> lock);
    std::filesystem::path FileAt(int place) const;
    std::unique_ptr<QLockFile> LockAt(int place) const;

    std::filesystem::path folder_;
    int place_ = -1;
    std::unique_ptr<QLockFile> lock_;
    std::optional<std::uint64_t> kept_; // the revision that the file holds
};

/// Puts the records into `session`, whose engine must have as many of each kind. False, with nothing changed, when the
/// recovered records do not fit.
[[nodiscard]] bool ApplyRecovered(const RecoveredPatch& recovered, Session& session);

} // namespace plinket3
