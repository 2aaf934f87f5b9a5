#pragma once

#include "core/Status.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What the program asks of the operating system beyond the standard library, and nothing else does: one file for each
/// system implements it. The reason of a failure does not name the file.
namespace plinket3 {

/// A file that is open for reading, until the object ends. Can be moved.
class SystemFile {
public:
    enum class Kind { Regular, Folder, Other };

    SystemFile() = default;
    ~SystemFile();
    SystemFile(SystemFile&& other) noexcept;
    SystemFile& operator=(SystemFile&& other) noexcept;

    /// Opens what is there, of whatever kind, without waiting for the writer of a pipe. Closes what was open.
    Status Open(const std::filesystem::path& file);
    bool IsOpen() const { return handle_ != closed; }
    /// `Other` when nothing is open.
    Kind FileKind() const;
    /// The length in bytes as the system tells it now; 0 when nothing is open.
    std::uint64_t Size() const;
    /// Reads the next bytes, up to `size`; `count` is how many there were, fewer only at the file's end.
    Status Read(char* bytes, std::size_t size, std::size_t& count);
    /// The same at an offset and past every buffer: the bytes are as the file is at that moment. Returns their number.
    std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t size) const;

private:
    static constexpr std::intptr_t closed = -1;
    std::intptr_t handle_ = closed; // what the system calls the open file
};

/// Writes the pieces one behind the other as `WriteFileAtomically` tells. `like` is the file whose owner, permissions
/// and further attributes the new one gets, as far as user and file system can, and the permission of its owner to
/// write; null for those of the file that is replaced.
Status ReplaceContent(const std::filesystem::path& file, std::span<const std::string_view> pieces,
                      const std::filesystem::path* like = nullptr);

/// When the file was written last, in a count of the system's own that only serves to be compared; the standard library
/// may know no more than the second. Absent when nothing is there.
std::optional<std::int64_t> WriteTime(const std::filesystem::path& file);

/// Fails when no file can be made in that folder.
Status FolderIsWritable(const std::filesystem::path& folder);

/// From then on a write that the system would end the program for (into a pipe that nobody reads, past the largest size
/// of a file) fails like any other.
void LetWritesFail();

/// Makes it cheap to take and give back large blocks of memory again and again, where that can be chosen.
void KeepLargeBlocks();

/// What was typed behind the program's name, as UTF-8 where the system knows characters. `argc` and `argv` are main's.
/// From then on standard output and input hold the bytes that the program gives and takes, and a console shows UTF-8.
std::vector<std::string> CommandLineArguments(int argc, char** argv);

/// The file that this process runs; empty when the system does not tell.
std::filesystem::path RunningProgram();

/// The time on the clock of this place.
std::tm LocalTime();

} // namespace plinket3
