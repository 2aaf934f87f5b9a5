#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace plinket3 {

/// What a file on disk looked like; compared to see whether somebody else changed it.
struct FileStamp {
    std::filesystem::file_time_type time;
    std::uintmax_t size = 0;
    bool operator==(const FileStamp&) const = default;
};

/// Absent for a file that is not there.
inline std::optional<FileStamp> StampOf(const std::filesystem::path& file) {
    std::error_code error;
    FileStamp stamp;
    stamp.time = std::filesystem::last_write_time(file, error);
    if (!error)
        stamp.size = std::filesystem::file_size(file, error);
    return error ? std::nullopt : std::optional(stamp);
}

} // namespace plinket3
