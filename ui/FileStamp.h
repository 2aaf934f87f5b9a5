#pragma once

#include "core/System.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace plinket3 {

/// What a file on disk looked like; compared to see whether somebody else changed it.
struct FileStamp {
    std::int64_t time = 0;
    std::uintmax_t size = 0;
    bool operator==(const FileStamp&) const = default;
};

/// Absent for a file that is not there.
inline std::optional<FileStamp> StampOf(const std::filesystem::path& file) {
    const std::optional<std::int64_t> time = WriteTime(file);
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    return time && !error ? std::optional(FileStamp{*time, size}) : std::nullopt;
}

} // namespace plinket3
