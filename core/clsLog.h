#pragma once

#include "core/Status.h"

#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string_view>

namespace plinket3 {

/// The program's log: a text file with CR LF line ends, one line a step, "[hh:mm:ss]  " before each text.
/// Nothing reads it back; it tells the user and support what happened.
class clsLog {
public:
    /// `clock` gives the local time; tests put their own in its place.
    using Clock = std::function<std::tm()>;
    clsLog();
    explicit clsLog(Clock clock);

    /// Opens the log `FileName` and writes its banner; a log that is open already is closed first. An existing file is
    /// deleted first unless `Append`. After a failure no log is open and `Add` does nothing.
    Status StartLog(const std::filesystem::path& FileName, bool Append);

    /// Writes one line, at once on its way to the disk, so that a crash loses none. Does nothing while no log is open;
    /// a write that fails (a full disk) is not reported: a log must never stop the work it tells of.
    void Add(std::string_view Text);

    const std::filesystem::path& FileName() const { return fileName_; }

private:
    void CloseLog();

    Clock clock_;
    std::filesystem::path fileName_;
    std::ofstream file_;
};

} // namespace plinket3
