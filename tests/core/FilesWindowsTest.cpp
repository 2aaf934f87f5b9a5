#include "core/Files.h"
#include "core/LeftoverName.h"
#include "core/System.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace plinket3 {
namespace {

namespace fs = std::filesystem;
using test::EntriesIn;
using test::ReadFile;
using test::WriteFile;

class FilesWindowsTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;
};

/// A file that another program has open, and lets others do with it only what `sharing` tells.
class HeldFile {
public:
    HeldFile(const fs::path& file, DWORD sharing)
        : handle_(CreateFileW(file.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr)) {
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
    }
    ~HeldFile() { CloseHandle(handle_); }
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

private:
    HANDLE handle_;
};

TEST_F(FilesWindowsTest, NamesOfDevicesAreNoFiles) {
    for (const char* name : {"CON", "nul", "NUL.deh", "com1.bex", "Lpt9", "AUX "}) {
        std::string bytes;
        EXPECT_EQ(WriteFileAtomically(folder_ / name, "x").Reason(), "is the name of a device") << name;
        EXPECT_EQ(ReadWholeFile(folder_ / name, bytes).Reason(), "is the name of a device") << name;
    }
    for (const char* name : {"CONSOLE.deh", "com.deh", "COM10", "nul1"})
        EXPECT_TRUE(WriteFileAtomically(folder_ / name, "x")) << name;
}

TEST_F(FilesWindowsTest, WhatCannotBeReplacedStaysWholeAndAlone) {
    WriteFile(folder_ / "held", "old");
    WriteFile(folder_ / "readOnly", "old");
    SetFileAttributesW((folder_ / "readOnly").c_str(), FILE_ATTRIBUTE_READONLY);
    {
        const HeldFile held(folder_ / "held", FILE_SHARE_READ);
        EXPECT_FALSE(WriteFileAtomically(folder_ / "held", "new"));
        std::string bytes;
        EXPECT_TRUE(ReadWholeFile(folder_ / "held", bytes));
    }
    {
        const HeldFile held(folder_ / "held", 0);
        std::string bytes;
        EXPECT_EQ(ReadWholeFile(folder_ / "held", bytes).Reason(), "another program has it open");
    }
    EXPECT_EQ(WriteFileAtomically(folder_ / "readOnly", "new").Reason(), "the file is read-only");
    EXPECT_EQ(WriteFileAtomically(folder_.Path(), "new").Reason(), "is a folder");
    EXPECT_FALSE(WriteFileAtomically(folder_ / "none" / "a", "new"));
    EXPECT_EQ(WriteFileAtomically("", "new").Reason(), "no file name");
    EXPECT_EQ(ReadFile(folder_ / "held") + ReadFile(folder_ / "readOnly"), "oldold");
    EXPECT_EQ(EntriesIn(folder_.Path()), 2U);
    SetFileAttributesW((folder_ / "readOnly").c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_TRUE(WriteFileAtomically(folder_ / "held", "new")) << "and once it is let go";
}

TEST_F(FilesWindowsTest, WhatAKilledWriterLeftIsRemovedButNotWhatARunningOneWrites) {
    const auto leftover = [&](int number) { return folder_.Path() / LeftoverName("a", number); };
    for (int number = 0; number < 3; ++number)
        WriteFile(leftover(number), "half");
    {
        const HeldFile running(leftover(0), 0);
        ASSERT_TRUE(WriteFileAtomically(folder_ / "a", "new"));
        EXPECT_EQ(EntriesIn(folder_.Path()), 2U);
    }
    ASSERT_TRUE(WriteFileAtomically(folder_ / "a", "newer"));
    EXPECT_EQ(EntriesIn(folder_.Path()), 1U);
    EXPECT_EQ(ReadFile(folder_ / "a"), "newer");
}

TEST_F(FilesWindowsTest, AttributesAreKept) {
    WriteFile(folder_ / "a", "old");
    SetFileAttributesW((folder_ / "a").c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
    ASSERT_TRUE(WriteFileAtomically(folder_ / "a", "new"));
    EXPECT_EQ(GetFileAttributesW((folder_ / "a").c_str()) & FILE_ATTRIBUTE_HIDDEN,
              static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN));
    EXPECT_TRUE(FolderIsWritable(folder_.Path()));
    EXPECT_FALSE(FolderIsWritable(folder_ / "none"));
    EXPECT_EQ(EntriesIn(folder_.Path()), 1U);
}

} // namespace
} // namespace plinket3
