#pragma once

#include "core/BytePieces.h"
#include "core/Status.h"

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

// The reason of a failure does not name the file: the caller does.

/// Reads a whole regular file into `bytes`. Fails, with `bytes` left empty, when there is none, when it is a folder or
/// a device, when it cannot be read or when it is larger than `limit` bytes. The file's size is what the system says,
/// never what the file says of itself.
Status ReadWholeFile(const std::filesystem::path& file, std::string& bytes,
                     std::uint64_t limit = std::numeric_limits<std::int32_t>::max());

/// Reads the first `limit` bytes of such a file, or all of one that has no more. `cut` tells whether it has more.
Status ReadStartOfFile(const std::filesystem::path& file, std::string& bytes, std::uint64_t limit, bool& cut);

/// Replaces the content of `file` in one step: the bytes are written beside it, brought to disk and renamed over it.
/// A symbolic link is followed. Owner, permissions, access list and extended attributes of an existing file are kept as
/// far as user and file system can; other names of the same file (hard links) keep the old content.
/// Fails for a folder and for a file that is read-only. After a failure the old file is as it was and nothing lies
/// beside it. A program that is killed meanwhile leaves its half behind, under a name that begins with ".plinket3-";
/// the next writing of the same file removes it. What is no regular file - a pipe, a device - is written straight, and
/// so is what this process has open, under a name like /dev/stdout: there, what was written before a failure stays. A
/// pipe that nobody opens for reading within three seconds is a failure.
Status WriteFileAtomically(const std::filesystem::path& file, std::string_view bytes);
Status WriteFileAtomically(const std::filesystem::path& file, const BytePieces& bytes);

/// Makes `to` a copy of `from` in the same way. It gets the owner, permissions and attributes of `from`, as far as it
/// can, but can always be written by its owner.
Status CopyFileAtomically(const std::filesystem::path& from, const std::filesystem::path& to);

/// The existing file or folder that `path` means on a file system that tells upper from lower case: each part is taken
/// exactly as written when it exists, otherwise the first entry (in byte order) that differs from it in ASCII case
/// only. A path of which some part exists in neither way comes back as it was given.
std::filesystem::path ResolveIgnoringCase(const std::filesystem::path& path);

/// True for an existing file that is no folder.
bool FileExists(const std::filesystem::path& file);

/// True when a path names the same existing file or folder as one of `others`, by whatever links and letters.
bool NamesOneOf(const std::filesystem::path& path, const std::vector<std::filesystem::path>& others);

/// The folders that lie in a folder, by name; none when it cannot be read.
std::vector<std::filesystem::path> FoldersIn(const std::filesystem::path& folder);

} // namespace plinket3
