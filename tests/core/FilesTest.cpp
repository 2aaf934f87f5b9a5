#include "core/Files.h"

#include "core/Paths.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace plinket3 {
namespace {

TEST(FilesTest, WhatWasWrittenIsReadWhateverTheNames) {
    const std::string bytes("a\0\r\n\xff", 5);
    for (const std::string& name : {std::string("new.deh"), std::string("\xc3\xa9\xe6\x97\xa5 \xf0\x9f\x98\x80.deh"),
                                    std::string(200, 'd') + "/" + std::string(200, 'n')}) {
        SCOPED_TRACE(name);
        const test::TemporaryFolder folder;
        const std::filesystem::path file = folder.Path() / PathOf(name);
        EXPECT_EQ(PathText(PathOf(name).filename()), name.substr(name.find('/') + 1));
        std::filesystem::create_directories(file.parent_path());
        for (const std::string& content : {std::string("old and longer"), bytes}) {
            const Status status = WriteFileAtomically(file, content);
            ASSERT_TRUE(status) << status.Reason();
        }
        std::string read = "old";
        ASSERT_TRUE(ReadWholeFile(file, read, 5));
        EXPECT_EQ(read, bytes);
        for (const std::uint64_t limit : {4U, 5U, 6U}) {
            bool cut = limit != 4;
            ASSERT_TRUE(ReadStartOfFile(file, read, limit, cut));
            EXPECT_EQ(read, bytes.substr(0, limit));
            EXPECT_EQ(cut, limit == 4);
        }
        EXPECT_EQ(test::EntriesIn(file.parent_path()), 1U);
    }
}

TEST(FilesTest, ATextThatIsNoUtf8NamesAPathToo) { EXPECT_FALSE(PathOf("caf\xe9.wad").empty()); }

TEST(FilesTest, OtherNamesOfTheSameFileKeepTheOldContent) {
    const test::TemporaryFolder folder;
    test::WriteFile(folder / "a", "old");
    std::filesystem::create_hard_link(folder / "a", folder / "b");
    ASSERT_TRUE(WriteFileAtomically(folder / "a", "new"));
    EXPECT_EQ(test::ReadFile(folder / "b"), "old");
}

} // namespace
} // namespace plinket3
