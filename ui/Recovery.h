#pragma once

#include "patch/Program.h"

#include "ui/FileStamp.h"

#include <QLockFile>

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plinket3 {

/// Unsaved work of a run that ended without its shut-down.
struct RecoveredPatch {
    std::string fileName, lump, engineConfig, iwadPath;
    std::vector<std::string> dataWadPaths;
    bool named = false;
    Rules rules = Rules::Kept;
    std::string document; // by engine rules the file as it was opened; empty for a new patch
    // The records, and those of the engine or of a table that was loaded in its place: as table files with strings,
    // whatever the mode.
    std::string table, defaultsTable;
    std::vector<ParRecord> pars;
    Notes notes;
    std::map<std::int32_t, std::string> music; // that has another name, which no table holds
    std::int32_t helper = 0;
    std::optional<FileStamp> stamp; // of the patch's file as the run knew it
};

/// A file with such work that no running program has for its own.
struct KeptWork {
    std::filesystem::path file;
    std::filesystem::file_time_type time; // when it was written last
    std::optional<RecoveredPatch> patch;  // absent when the file holds nothing that can be read
};

/// Keeps the unsaved state of the open patch in the settings folder, so that a crash costs at most half a minute. Each
/// running program has files of its own: a lock that the system gives up when the program ends in whatever way, and the
/// recovery file itself, written in one step. Records are kept exactly, which a patch file cannot do.
class Recovery {
public:
    /// Takes a place of its own in `folder`. Without one (a folder that cannot be written) nothing is kept.
    explicit Recovery(std::filesystem::path folder);

    /// Writes the recovery file, unless it holds this `revision` of the patch already. Fails as writing files does.
    Status Keep(const PatchData& patch, const EngineConfiguration& engine, const std::optional<FileStamp>& stamp,
                std::uint64_t revision);
    /// Removes it: the work is saved, or given up by the user.
    void Forget();

    /// What was left behind, the newest first; on demand also what was put away, which no start offers again.
    std::vector<KeptWork> Kept(bool alsoPutAway) const;
    /// Makes the file of such work this program's own, in place of the one that it has. Fails when another program has
    /// it by now, or when this one has no place.
    Status Take(const std::filesystem::path& file);
    /// Removes the file of such work. Fails when another program has it by now.
    Status Delete(const std::filesystem::path& file) const;
    /// Leaves the own file to later starts, which offer it again; later work of this run goes to another place.
    void Leave();
    /// Puts a file away under another name, so that no start offers it. Returns where it is then.
    std::filesystem::path PutAway(const std::filesystem::path& file) const;
    /// The same with the own file.
    std::filesystem::path SetAside();

private:
    void TakeFreePlace();
    std::filesystem::path FileAt(int place) const;
    /// Null when a running program has the place.
    std::unique_ptr<QLockFile> LockAt(int place) const;
    /// The place of a recovery file by its name; -1 for another file.
    int PlaceOf(const std::filesystem::path& file) const;

    std::filesystem::path folder_;
    int place_ = -1;
    std::unique_ptr<QLockFile> lock_;
    std::optional<std::uint64_t> kept_; // the revision that the file holds
};

/// Puts the records into `session`. False, with nothing changed, when they do not fit the table that they came with.
/// The file's name is only proposed for saving unless the patch that the work belongs to still stands there.
[[nodiscard]] bool ApplyRecovered(const RecoveredPatch& recovered, Session& session);

} // namespace plinket3
