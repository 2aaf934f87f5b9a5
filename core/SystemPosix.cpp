#include "core/System.h"

#include "core/LeftoverName.h"
#include "core/Numbers.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace plinket3 {

static_assert(sizeof(off_t) >= sizeof(std::int64_t), "build with _FILE_OFFSET_BITS=64");

namespace {

constexpr const char* accessList = "system.posix_acl_access";

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

/// While it lives, writing to a pipe that nobody reads any more fails instead of ending the program.
class NoPipeSignal {
public:
    NoPipeSignal() {
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
    }
    ~NoPipeSignal() {
        const timespec atOnce{};
        if (sigismember(&before_, SIGPIPE) == 0)
            while (sigtimedwait(&pipe_, nullptr, &atOnce) == SIGPIPE) {
            }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    NoPipeSignal(const NoPipeSignal&) = delete;
    NoPipeSignal& operator=(const NoPipeSignal&) = delete;

private:
    sigset_t pipe_{}, before_{};
};

bool WriteFully(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) { // a pipe that is full
            pollfd room{descriptor, POLLOUT, 0};
            poll(&room, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool WriteFully(int descriptor, std::span<const std::string_view> pieces) {
    return std::ranges::all_of(pieces, [descriptor](std::string_view piece) { return WriteFully(descriptor, piece); });
}

/// The file that a chain of symbolic links means, which need not exist; empty with errno set when the chain has no end.
/// `descriptor` becomes the number of the open file of this process that a link stands for, as /dev/stdout does.
std::filesystem::path FollowLinks(std::filesystem::path path, int& descriptor) {
    constexpr int longestChain = 40;
    for (int link = 0; link < longestChain; ++link) {
        std::error_code error;
        if (!std::filesystem::is_symlink(std::filesystem::symlink_status(path, error)))
            return path;
        if (std::filesystem::equivalent(path.parent_path(), "/proc/self/fd", error)) {
            descriptor = LeadingInt32(path.filename().native());
            return path;
        }
        path = path.parent_path() / std::filesystem::read_symlink(path, error); // an absolute link replaces the parent
        if (error) {
            errno = error.value();
            return {};
        }
    }
    errno = ELOOP;
    return {};
}

/// Writes to what an open file stands for, at the place where it is. Bytes that were written stay when it fails.
Status WriteStraight(int descriptor, std::span<const std::string_view> pieces) {
    const NoPipeSignal failInstead;
    return WriteFully(descriptor, pieces) ? Status() : SystemFailure();
}

/// Opens a pipe or a device. Whoever reads from the pipe may be about to open it.
int OpenStraight(const std::filesystem::path& file, bool pipe) {
    constexpr int attempts = 300;
    constexpr timespec pause{0, 10'000'000};
    for (int attempt = 0;; ++attempt) {
        const int descriptor = open(file.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        if (descriptor >= 0 || !pipe || errno != ENXIO || attempt == attempts)
            return descriptor;
        nanosleep(&pause, nullptr);
    }
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
/// until it is closed.
int CreateBeside(const std::filesystem::path& target, mode_t mode, std::filesystem::path& created) {
    const auto name = [&](int number) { return target.parent_path() / LeftoverName(target.filename(), number); };
    for (int number = 0; number < mostLeftovers; ++number) {
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
    created = name(mostLeftovers + getpid());
    return open(created.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
}

/// Whether a regular file or a folder may be replaced.
Status MayReplace(const std::filesystem::path& target, const struct stat& information) {
    if (S_ISDIR(information.st_mode))
        return Status::Failure("is a folder");
    // Asked of the mode as well, since the administrator could write a protected file without noticing.
    if ((information.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
        return Status::Failure("the file is read-only");
    return faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0 ? Status() : SystemFailure();
}

/// Those that the system makes of a file's content would be wrong for another one.
bool IsCarriedOver(std::string_view attribute) {
    return !attribute.starts_with("security.") || attribute == "security.selinux";
}

/// Gives the new file the further attributes of `original`, its access list among them. False when there is an access
/// list that the new file could not get.
bool TakeOverAttributes(int descriptor, const std::filesystem::path& original) {
    const ssize_t length = listxattr(original.c_str(), nullptr, 0);
    std::vector<char> names(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    const ssize_t listed = listxattr(original.c_str(), names.data(), names.size());
    std::string_view rest(names.data(), static_cast<std::size_t>(std::max<ssize_t>(listed, 0)));
    fremovexattr(descriptor, accessList); // the folder may give new files one
    bool accessKept = true;
    while (!rest.empty()) {
        const std::string name(rest.substr(0, rest.find('\0')));
        rest.remove_prefix(std::min(rest.size(), name.size() + 1));
        std::array<char, 65536> value; // no system has longer ones
        const ssize_t size =
            IsCarriedOver(name) ? getxattr(original.c_str(), name.c_str(), value.data(), value.size()) : -1;
        const bool kept =
            size >= 0 && fsetxattr(descriptor, name.c_str(), value.data(), static_cast<std::size_t>(size), 0) == 0;
        accessKept &= kept || name != accessList;
    }
    return accessKept;
}

/// Gives the new file owner, group, further attributes and permissions of another, as far as user and file system can.
void TakeOver(int descriptor, const std::filesystem::path& original, const struct stat& information) {
    bool kept = fchown(descriptor, information.st_uid, information.st_gid) == 0 ||
                fchown(descriptor, static_cast<uid_t>(-1), information.st_gid) == 0;
    mode_t mode = information.st_mode & 07777;
    if (!TakeOverAttributes(descriptor, original))
        mode &= ~static_cast<mode_t>(S_IRWXG); // beside an access list these bits are not what the group may do
    kept &= fchmod(descriptor, mode) == 0;
    static_cast<void>(kept);
}

} // namespace

SystemFile::~SystemFile() {
    if (IsOpen())
        close(static_cast<int>(handle_));
}

SystemFile::SystemFile(SystemFile&& other) noexcept : handle_(std::exchange(other.handle_, closed)) {}

SystemFile& SystemFile::operator=(SystemFile&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}

Status SystemFile::Open(const std::filesystem::path& file) {
    *this = SystemFile();
    handle_ = open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    return IsOpen() ? Status() : SystemFailure();
}

SystemFile::Kind SystemFile::FileKind() const {
    struct stat information {};
    if (!IsOpen() || fstat(static_cast<int>(handle_), &information) != 0)
        return Kind::Other;
    return S_ISREG(information.st_mode) ? Kind::Regular : S_ISDIR(information.st_mode) ? Kind::Folder : Kind::Other;
}

std::uint64_t SystemFile::Size() const {
    struct stat information {};
    if (!IsOpen() || fstat(static_cast<int>(handle_), &information) != 0)
        return 0;
    return static_cast<std::uint64_t>(information.st_size);
}

Status SystemFile::Read(char* bytes, std::size_t size, std::size_t& count) {
    count = 0;
    while (count < size) {
        const ssize_t got =
            read(static_cast<int>(handle_), bytes + count, std::min<std::size_t>(size - count, SSIZE_MAX));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return SystemFailure();
        if (got == 0)
            break;
        count += static_cast<std::size_t>(got);
    }
    return {};
}

std::size_t SystemFile::ReadAt(std::uint64_t offset, void* bytes, std::size_t size) const {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = pread(static_cast<int>(handle_), static_cast<char*>(bytes) + done, size - done,
                                  static_cast<off_t>(offset + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

Status ReplaceContent(const std::filesystem::path& file, std::span<const std::string_view> pieces,
                      const std::filesystem::path* like) {
    int ownDescriptor = -1;
    const std::filesystem::path target = FollowLinks(file, ownDescriptor);
    if (ownDescriptor >= 0)
        return WriteStraight(ownDescriptor, pieces);
    if (target.empty())
        return file.empty() ? Status::Failure("no file name") : SystemFailure();

    struct stat found {};
    const bool exists = stat(target.c_str(), &found) == 0;
    if (!exists && errno != ENOENT)
        return SystemFailure();
    if (exists && !S_ISREG(found.st_mode) && !S_ISDIR(found.st_mode)) {
        const FileDescriptor descriptor(OpenStraight(target, S_ISFIFO(found.st_mode)));
        if (descriptor.Get() >= 0)
            return WriteStraight(descriptor.Get(), pieces);
        return S_ISFIFO(found.st_mode) && errno == ENXIO ? Status::Failure("nobody reads from it") : SystemFailure();
    }
    if (Status status = exists ? MayReplace(target, found) : Status(); !status)
        return status;
    if (like != nullptr) {
        if (stat(like->c_str(), &found) != 0)
            return SystemFailure();
        found.st_mode |= S_IWUSR; // a copy that is read-only could not be replaced by the next one
    } else if (exists) {
        like = &target;
    }

    std::filesystem::path created;
    const FileDescriptor descriptor(CreateBeside(target, like == nullptr ? 0666 : 0600, created));
    if (descriptor.Get() < 0)
        return SystemFailure();
    TemporaryFile temporary(created);
    if (like != nullptr)
        TakeOver(descriptor.Get(), *like, found);
    // Closed, and with it unlocked, only when it has its name.
    if (!WriteFully(descriptor.Get(), pieces) || fsync(descriptor.Get()) != 0 || !temporary.RenameTo(target))
        return SystemFailure();

    const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
    // The new content stands; a file system that cannot bring the folder to disk is no failure of the writing.
    const FileDescriptor folderDescriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folderDescriptor.Get() >= 0)
        fsync(folderDescriptor.Get());
    return {};
}

Status FolderIsWritable(const std::filesystem::path& folder) {
    return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0 ? Status() : SystemFailure();
}

std::optional<std::int64_t> WriteTime(const std::filesystem::path& file) {
    std::error_code error;
    const auto time = std::filesystem::last_write_time(file, error);
    return error ? std::nullopt : std::optional(std::int64_t{time.time_since_epoch().count()});
}

void LetWritesFail() {
    for (const int number : {SIGPIPE, SIGXFSZ})
        std::signal(number, SIG_IGN);
}

void KeepLargeBlocks() {
#ifdef __GLIBC__
    mallopt(M_MMAP_THRESHOLD, 4 << 20);
    mallopt(M_TRIM_THRESHOLD, 16 << 20);
#endif
}

std::vector<std::string> CommandLineArguments(int argc, char** argv) { return {argv + 1, argv + argc}; }

std::filesystem::path RunningProgram() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::canonical("/proc/self/exe", error);
    return error ? std::filesystem::path() : program;
}

std::tm LocalTime() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local;
}

} // namespace plinket3
