#include "core/Files.h"

#include "core/Bytes.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

namespace plinket3 {
namespace {

namespace fs = std::filesystem;
using test::EntriesIn;
using test::ReadFile;
using test::WriteFile;

/// Files cannot grow beyond `bytes` while this lives: stands for a full disk.
class SmallDisk {
public:
    explicit SmallDisk(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SmallDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

private:
    void (*signal_)(int);
    rlimit before_{};
};

constexpr const char* accessList = "system.posix_acl_access";
enum AccessTag : std::uint16_t { userOwner = 1, user = 2, groupOwner = 4, mask = 16, others = 32 };
struct AccessEntry {
    AccessTag tag;
    std::uint16_t permissions;
    std::int32_t id = -1;
};

/// An access list as the system keeps it.
std::string AccessList(const std::vector<AccessEntry>& entries) {
    ByteWriter writer;
    writer.Int32(2); // version
    for (const AccessEntry& entry : entries) {
        writer.UInt16(entry.tag);
        writer.UInt16(entry.permissions);
        writer.Int32(entry.id);
    }
    return writer.Take();
}

bool SetAttribute(const fs::path& file, const char* name, const std::string& value) {
    return setxattr(file.c_str(), name, value.data(), value.size(), 0) == 0;
}

std::string Attribute(const fs::path& file, const char* name) {
    std::array<char, 1000> value{};
    const ssize_t size = getxattr(file.c_str(), name, value.data(), value.size());
    return {value.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

class FilesPosixTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;
};

TEST_F(FilesPosixTest, AFileOfWhichTheSizeIsToldAsNoneIsReadWhole) {
    std::string read;
    ASSERT_TRUE(ReadWholeFile("/proc/self/status", read));
    EXPECT_GT(read.size(), 100U);
}

TEST_F(FilesPosixTest, ReadingRefusesWhatIsNoOrdinaryFile) {
    mkfifo((folder_ / "pipe").c_str(), 0600);
    WriteFile(folder_ / "six", "123456");
    const struct {
        fs::path file;
        std::string_view reason;
    } rows[]{{folder_.Path(), "is a folder"},
             {folder_ / "pipe", "is not a regular file"},
             {"/dev/zero", "is not a regular file"},
             {folder_ / "none", "No such file or directory"},
             {folder_ / "six", "is larger than 5 bytes"}};
    for (const auto& row : rows) {
        std::string bytes = "old";
        EXPECT_EQ(ReadWholeFile(row.file, bytes, 5).Reason(), row.reason);
        EXPECT_EQ(bytes, "") << row.file;
    }
}

TEST_F(FilesPosixTest, WritingKeepsThePermissionsOfTheOldFile) {
    const fs::path file = folder_ / std::string(255, 'n'); // as long as the system allows
    WriteFile(file, "old and longer");
    fs::permissions(file, fs::perms(0642));
    ASSERT_TRUE(WriteFileAtomically(file, "new"));
    EXPECT_EQ(ReadFile(file), "new");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0642));
}

TEST_F(FilesPosixTest, WritingFollowsLinksAlsoToFilesThatAreStillToBeMade) {
    fs::create_directory(folder_ / "sub");
    WriteFile(folder_ / "sub/old", "old");
    fs::create_symlink("sub/old", folder_ / "toOld");
    fs::create_symlink("toOld", folder_ / "chain");
    fs::create_symlink(folder_ / "sub/made", folder_ / "toMade");
    fs::create_symlink("loop", folder_ / "loop");
    ASSERT_TRUE(WriteFileAtomically(folder_ / "chain", "new"));
    ASSERT_TRUE(WriteFileAtomically(folder_ / "toMade", "made"));
    EXPECT_EQ(ReadFile(folder_ / "sub/old"), "new");
    EXPECT_EQ(ReadFile(folder_ / "sub/made"), "made");
    EXPECT_TRUE(fs::is_symlink(folder_ / "chain") && fs::is_symlink(folder_ / "toMade"));
    EXPECT_EQ(WriteFileAtomically(folder_ / "loop", "x").Reason(), "Too many levels of symbolic links");
}

TEST_F(FilesPosixTest, AFailedWriteLeavesEverythingAsItWas) {
    WriteFile(folder_ / "a", "old");
    {
        const SmallDisk disk(1000);
        const Status status = WriteFileAtomically(folder_ / "a", std::string(5000, 'x'));
        EXPECT_EQ(status.Reason(), "File too large");
    }
    EXPECT_EQ(ReadFile(folder_ / "a"), "old");
    EXPECT_EQ(EntriesIn(folder_.Path()), 1U);
}

/// Writes in a process that is killed in the middle of it.
void WriteAndBeKilled(const fs::path& file) {
    const pid_t writer = fork();
    if (writer == 0) {
        const SmallDisk disk(1000);
        const rlimit noCore{0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        std::signal(SIGXFSZ, SIG_DFL); // beyond the limit the system ends the process
        static_cast<void>(WriteFileAtomically(file, std::string(5000, 'x')));
        _exit(0);
    }
    int ended = 0;
    ASSERT_EQ(waitpid(writer, &ended, 0), writer);
    ASSERT_TRUE(WIFSIGNALED(ended));
}

TEST_F(FilesPosixTest, WhatAKilledWriterLeftIsRemovedByTheNextOneOfTheSameFile) {
    WriteFile(folder_ / "a", "old");
    for (int kill = 0; kill < 3; ++kill) {
        WriteAndBeKilled(folder_ / "a");
        EXPECT_EQ(ReadFile(folder_ / "a"), "old");
        EXPECT_EQ(EntriesIn(folder_.Path()), 2U);
    }
    ASSERT_TRUE(WriteFileAtomically(folder_ / "b", "other"));
    EXPECT_EQ(EntriesIn(folder_.Path()), 3U) << "the leftover is no business of another file";
    ASSERT_TRUE(WriteFileAtomically(folder_ / "a", "new"));
    EXPECT_EQ(ReadFile(folder_ / "a"), "new");
    EXPECT_EQ(EntriesIn(folder_.Path()), 2U);
}

TEST_F(FilesPosixTest, WhatIsNoLeftoverStaysAndHindersNoWriting) {
    WriteAndBeKilled(folder_ / "a");
    const fs::path leftover = fs::directory_iterator(folder_.Path())->path();
    const int running = open(leftover.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(running, LOCK_EX), 0); // as a program does that is still writing
    EXPECT_TRUE(WriteFileAtomically(folder_ / "a", "new"));
    EXPECT_TRUE(fs::exists(leftover));
    close(running);

    fs::remove(leftover);
    WriteFile(folder_ / "mine", "mine");
    fs::create_symlink("mine", leftover);
    EXPECT_TRUE(WriteFileAtomically(folder_ / "a", "newer"));
    EXPECT_EQ(ReadFile(folder_ / "mine"), "mine");
    EXPECT_EQ(ReadFile(folder_ / "a"), "newer");
    EXPECT_EQ(EntriesIn(folder_.Path()), 3U);
}

TEST_F(FilesPosixTest, ACopyHasThePermissionsOfTheOriginal) {
    WriteFile(folder_ / "a", "secret");
    WriteFile(folder_ / "old.bak", "old");
    for (const auto original : {0600, 0444}) {
        fs::permissions(folder_ / "a", fs::perms(original));
        for (const char* to : {"new.bak", "old.bak"}) {
            ASSERT_TRUE(CopyFileAtomically(folder_ / "a", folder_ / to));
            EXPECT_EQ(ReadFile(folder_ / to), "secret");
            EXPECT_EQ(fs::status(folder_ / to).permissions(), fs::perms(original | 0200))
                << "the next copy replaces it";
        }
    }
}

TEST_F(FilesPosixTest, WritingRefusesWhatMustNotBeReplaced) {
    WriteFile(folder_ / "readOnly", "old");
    fs::permissions(folder_ / "readOnly", fs::perms(0444));
    EXPECT_EQ(WriteFileAtomically(folder_ / "readOnly", "new").Reason(), "the file is read-only");
    EXPECT_EQ(ReadFile(folder_ / "readOnly"), "old");
    EXPECT_EQ(WriteFileAtomically(folder_.Path(), "new").Reason(), "is a folder");
    mkfifo((folder_ / "pipe").c_str(), 0600);
    EXPECT_EQ(WriteFileAtomically(folder_ / "pipe", "new").Reason(), "nobody reads from it");
    EXPECT_EQ(WriteFileAtomically(folder_ / "none/a", "new").Reason(), "No such file or directory");
    EXPECT_EQ(WriteFileAtomically("", "new").Reason(), "no file name");
}

TEST_F(FilesPosixTest, WhatIsNoRegularFileIsWrittenStraight) {
    EXPECT_TRUE(WriteFileAtomically("/dev/null", "gone"));
    EXPECT_EQ(WriteFileAtomically("/dev/full", "x").Reason(), "No space left on device");

    const fs::path pipe = folder_ / "pipe";
    mkfifo(pipe.c_str(), 0600);
    const std::string bytes(1 << 20, 'x'); // more than a pipe holds
    std::string read;
    std::thread reader([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        read = ReadFile(pipe);
    });
    EXPECT_TRUE(WriteFileAtomically(pipe, bytes));
    reader.join();
    EXPECT_TRUE(read == bytes);
    std::thread leaver([&] { close(open(pipe.c_str(), O_RDONLY | O_CLOEXEC)); });
    EXPECT_EQ(WriteFileAtomically(pipe, bytes).Reason(), "Broken pipe") << "and the program goes on";
    leaver.join();
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST_F(FilesPosixTest, WhatTheProcessHasOpenIsWrittenWhereItIs) {
    WriteFile(folder_ / "out", "");
    const int out = open((folder_ / "out").c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(write(out, "first ", 6), 6);
    fs::create_symlink("/dev/fd/" + std::to_string(out), folder_ / "link");
    EXPECT_TRUE(WriteFileAtomically("/proc/self/fd/" + std::to_string(out), "second "));
    EXPECT_TRUE(WriteFileAtomically(folder_ / "link", "third"));
    ASSERT_EQ(write(out, ".", 1), 1);
    close(out);
    EXPECT_EQ(ReadFile(folder_ / "out"), "first second third.");
    EXPECT_FALSE(WriteFileAtomically(folder_ / "link", "closed"));
    EXPECT_EQ(EntriesIn(folder_.Path()), 2U);
}

TEST_F(FilesPosixTest, WritingKeepsAttributesAndAccessListsAndNoOthers) {
    const std::string list = AccessList({{userOwner, 6}, {user, 4, 1234}, {groupOwner, 0}, {mask, 4}, {others, 0}});
    const std::string folderList = AccessList({{userOwner, 7}, {user, 7, 99}, {groupOwner, 5}, {mask, 7}, {others, 0}});
    WriteFile(folder_ / "listed", "old");
    WriteFile(folder_ / "plain", "old");
    fs::permissions(folder_ / "plain", fs::perms(0640));
    if (!SetAttribute(folder_ / "listed", "user.origin", "mine") || !SetAttribute(folder_ / "listed", accessList, list))
        GTEST_SKIP() << "the file system has no attributes";
    ASSERT_TRUE(SetAttribute(folder_.Path(), "system.posix_acl_default", folderList));
    for (const char* name : {"listed", "plain"})
        ASSERT_TRUE(WriteFileAtomically(folder_ / name, "new"));
    ASSERT_TRUE(CopyFileAtomically(folder_ / "listed", folder_ / "copy"));
    for (const char* name : {"listed", "copy"}) {
        EXPECT_EQ(Attribute(folder_ / name, "user.origin"), "mine") << name;
        EXPECT_EQ(Attribute(folder_ / name, accessList), list) << name;
    }
    EXPECT_EQ(Attribute(folder_ / "plain", accessList), "") << "not what the folder gives new files";
    EXPECT_EQ(fs::status(folder_ / "plain").permissions(), fs::perms(0640));
}

TEST_F(FilesPosixTest, PathsAreResolvedExactlyFirstAndWithoutCaseSecond) {
    fs::create_directories(folder_ / "Games/wads");
    fs::create_directories(folder_ / "Games/Wads");
    WriteFile(folder_ / "Games/Wads/DOOM.WAD", "");
    WriteFile(folder_ / "Games/Wads/Doom.wad", "");
    WriteFile(folder_ / "Games/wads/only.wad", "");
    const struct {
        std::string_view given, resolved;
    } rows[]{{"Games/Wads/Doom.wad", "Games/Wads/Doom.wad"}, {"games/WADS/dOOM.wad", "Games/Wads/DOOM.WAD"},
             {"games/wads/ONLY.wad", "Games/wads/only.wad"}, {"games/wads/doom.wad", "games/wads/doom.wad"},
             {"games/none/doom.wad", "games/none/doom.wad"}, {"games/WADS/", "Games/Wads/"}};
    for (const auto& row : rows)
        EXPECT_EQ(ResolveIgnoringCase(folder_ / row.given), folder_ / row.resolved);

    const fs::path before = fs::current_path();
    fs::current_path(folder_.Path());
    EXPECT_EQ(ResolveIgnoringCase("GAMES"), "Games");
    fs::current_path(before);
}

} // namespace
} // namespace plinket3
