#include "core/Files.h"

#include "core/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <functional>
#include <new>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace plinket3 {

namespace {

Status SystemFailure() { return Status::Failure(std::generic_category().message(errno)); }

class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~FileDescriptor() {
        if (descriptor_ >= 0)
            close(descriptor_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int Get() const { return descriptor_; }

private:
    int descriptor_;
};

/// Removes the file at its end unless it was renamed.
class TemporaryFile {
public:
    explicit TemporaryFile(std::filesystem::path path) : path_(std::move(path)) {}
    ~TemporaryFile() {
        if (!path_.empty())
            unlink(path_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    bool RenameTo(const std::filesystem::path& target) {
        if (rename(path_.c_str(), target.c_str()) != 0)
            return false;
        path_.clear();
        return true;
    }

private:
    std::filesystem::path path_;
};

/// Reads up to `size` bytes, fewer only at the end of the file; -1 on failure.
ssize_t ReadFully(int descriptor, char* bytes, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = read(descriptor, bytes + done, std::min<std::size_t>(size - done, SSIZE_MAX));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return -1;
        if (count == 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<ssize_t>(done);
}

bool WriteFully(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/// The file that a chain of symbolic links means, which need not exist; empty with errno set when the chain has no end.
std::filesystem::path FollowLinks(std::filesystem::path path) {
    constexpr int longestChain = 40;
    for (int link = 0; link < longestChain; ++link) {
        std::error_code error;
        if (!std::filesystem::is_symlink(std::filesystem::symlink_status(path, error)))
            return path;
        path = path.parent_path() / std::filesystem::read_symlink(path, error); // an absolute link replaces the parent
        if (error) {
            errno = error.value();
            return {};
        }
    }
    errno = ELOOP;
    return {};
}

/// True when `path` still names the file that `descriptor` has open.
bool IsFileAt(int descriptor, const std::filesystem::path& path) {
    struct stat opened {
    }, named{};
    return fstat(descriptor, &opened) == 0 && lstat(path.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

/// Removes what a program that was killed while it saved has left under this name: an ordinary file that can be written
/// and that no running program holds the lock of. False when it is none such.
bool RemoveLeftover(const std::filesystem::path& path) {
    const FileDescriptor found(open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat information {};
    return found.Get() >= 0 && fstat(found.Get(), &information) == 0 && S_ISREG(information.st_mode) &&
           flock(found.Get(), LOCK_EX | LOCK_NB) == 0 && IsFileAt(found.Get(), path) && unlink(path.c_str()) == 0;
}

/// Creates a new file in the folder of `target` for what is to replace it; -1 with errno set on failure. It is locked
/// until it is closed. Its name depends only on that of `target`, so that the next save takes the place of what a
/// killed one has left, but does not contain it, as that may be as long as the file system allows.
int CreateBeside(const std::filesystem::path& target, mode_t mode, std::filesystem::path& created) {
    constexpr int mostAtOnce = 100; // programs that save the same file, or that were killed where nothing can be locked
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016zx", std::hash<std::string>{}(target.filename().string()));
    const auto name = [&](int number) {
        return target.parent_path() / (".plinket3-" + std::string(digits.data()) + "-" + std::to_string(number));
    };
    for (int number = 0; number < mostAtOnce; ++number) {
        created = name(number);
        for (int attempt = 0; attempt < 2; ++attempt) {
            const int descriptor = open(created.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            if (descriptor < 0 && errno != EEXIST)
                return -1;
            if (descriptor < 0) {
                if (!RemoveLeftover(created))
                    break;
                continue;
            }
            // Until it is locked, another program may take it for a leftover. Not all file systems have locks.
            if ((flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) && IsFileAt(descriptor, created)) {
                for (int next = number + 1; RemoveLeftover(name(next));)
                    ++next;
                return descriptor;
            }
            close(descriptor);
        }
    }
    created = name(mostAtOnce + getpid());
    return open(created.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
}

/// Looks at the file that is to be replaced; `replaced` stays empty when there is none. Fails when it must not be.
Status LookAtTarget(const std::filesystem::path& target, std::optional<struct stat>& replaced) {
    struct stat information {};
    if (stat(target.c_str(), &information) != 0)
        return errno == ENOENT ? Status() : SystemFailure();
    if (S_ISDIR(information.st_mode))
        return Status::Failure("is a folder");
    if (!S_ISREG(information.st_mode))
        return Status::Failure("is not a regular file");
    // Asked of the mode as well, since the administrator could write a protected file without noticing.
    if ((information.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
        return Status::Failure("the file is read-only");
    if (faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        return SystemFailure();
    replaced = information;
    return {};
}

/// Gives the new file the owner, group and permissions of the one it replaces, as far as user and file system can.
void TakeOver(int descriptor, const struct stat& replaced) {
    bool kept = fchown(descriptor, replaced.st_uid, replaced.st_gid) == 0 ||
                fchown(descriptor, static_cast<uid_t>(-1), replaced.st_gid) == 0;
    kept &= fchmod(descriptor, replaced.st_mode & 07777) == 0;
    static_cast<void>(kept);
}

} // namespace

Status ReadWholeFile(const std::filesystem::path& file, std::string& bytes, std::uint64_t limit) try {
    bytes.clear();
    // Without O_NONBLOCK, opening a pipe would wait for its writer.
    const FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat information {};
    if (descriptor.Get() < 0 || fstat(descriptor.Get(), &information) != 0)
        return SystemFailure();
    if (S_ISDIR(information.st_mode))
        return Status::Failure("is a folder");
    if (!S_ISREG(information.st_mode))
        return Status::Failure("is not a regular file");

    // One byte more than the size shows at the first reading whether the file has grown since.
    std::string content;
    std::uint64_t room = static_cast<std::uint64_t>(information.st_size) + 1;
    for (;;) {
        if (room - 1 > limit)
            return Status::Failure("is larger than " + std::to_string(limit) + " bytes");
        const std::size_t done = content.size();
        content.resize(static_cast<std::size_t>(room));
        const ssize_t count = ReadFully(descriptor.Get(), content.data() + done, content.size() - done);
        if (count < 0)
            return SystemFailure();
        content.resize(done + static_cast<std::size_t>(count));
        if (content.size() < room)
            break;
        room = std::max(room + 1, std::min(room * 2, limit + 1));
    }
    bytes = std::move(content);
    return {};
} catch (const std::bad_alloc&) {
    return Status::Failure("does not fit into memory");
} catch (const std::length_error&) {
    return Status::Failure("does not fit into memory");
}

namespace {

/// `like`: whose owner, group and permissions the file gets instead of those that it has.
Status Replace(const std::filesystem::path& file, std::string_view bytes, const struct stat* like) {
    const std::filesystem::path target = FollowLinks(file);
    if (target.empty())
        return file.empty() ? Status::Failure("no file name") : SystemFailure();

    std::optional<struct stat> replaced;
    if (Status writable = LookAtTarget(target, replaced); !writable)
        return writable;

    if (like == nullptr && replaced)
        like = &*replaced;
    std::filesystem::path created;
    const FileDescriptor descriptor(CreateBeside(target, like == nullptr ? 0666 : 0600, created));
    if (descriptor.Get() < 0)
        return SystemFailure();
    TemporaryFile temporary(created);
    if (like != nullptr)
        TakeOver(descriptor.Get(), *like);
    // Closed, and with it unlocked, only when it has its name.
    if (!WriteFully(descriptor.Get(), bytes) || fsync(descriptor.Get()) != 0 || !temporary.RenameTo(target))
        return SystemFailure();

    const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
    // The new content stands; a file system that cannot bring the folder to disk is no failure of the writing.
    const FileDescriptor folderDescriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folderDescriptor.Get() >= 0)
        fsync(folderDescriptor.Get());
    return {};
}

} // namespace

Status WriteFileAtomically(const std::filesystem::path& file, std::string_view bytes) {
    return Replace(file, bytes, nullptr);
}

Status CopyFileAtomically(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::string bytes;
    struct stat information {};
    if (stat(from.c_str(), &information) != 0)
        return SystemFailure();
    if (Status read = ReadWholeFile(from, bytes); !read)
        return read;
    information.st_mode |= S_IWUSR; // a copy that is read-only could not be replaced by the next one
    return Replace(to, bytes, &information);
}

std::filesystem::path ResolveIgnoringCase(const std::filesystem::path& path) {
    std::error_code error;
    if (std::filesystem::exists(path, error))
        return path;
    std::filesystem::path resolved;
    for (const std::filesystem::path& part : path) {
        const std::filesystem::path exact = resolved / part;
        if (std::filesystem::exists(exact, error)) {
            resolved = exact;
            continue;
        }
        std::optional<std::string> best;
        std::filesystem::directory_iterator entry(resolved.empty() ? "." : resolved, error);
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            std::string name = entry->path().filename().string();
            if (EqualIgnoringCase(name, part.string()) && (!best || name < *best))
                best = std::move(name);
        }
        if (!best)
            return path;
        resolved /= *best;
    }
    return resolved;
}

Status FolderIsWritable(const std::filesystem::path& folder) {
    return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0 ? Status() : SystemFailure();
}

bool FileExists(const std::filesystem::path& file) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

} // namespace plinket3
