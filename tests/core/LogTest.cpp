#include "core/clsLog.h"

#include "core/Text.h"
#include "core/Version.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <ctime>
#include <iomanip>
#include <sstream>

namespace plinket3 {
namespace {

using test::ReadFile;
using test::WriteFile;

std::tm Afternoon() {
    std::tm time{};
    std::istringstream("2026-02-03 14:05:09") >> std::get_time(&time, "%Y-%m-%d %H:%M:%S");
    return time;
}

const std::string banner = "\r\n" + std::string(70, '-') +
                           "\r\nAppend log at 2026-02-03 14:05:09\r\n"
                           "[14:05:09]  " +
                           ReplaceAll(ReplaceAll(programVersion, "Plinket3", "Plinket3 version"), " beta", "\r\n") +
                           "[14:05:09]  " + std::string(58, '-') + "\r\n";

class LogTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;
    clsLog log_{Afternoon};
};

TEST_F(LogTest, StartsAfreshUnlessAppendingAndHasEveryLineOnDiskAtOnce) {
    WriteFile(folder_ / "a.log", "old\r\n");
    ASSERT_TRUE(log_.StartLog(folder_ / "a.log", true));
    EXPECT_EQ(ReadFile(folder_ / "a.log"), "old\r\n" + banner);
    ASSERT_TRUE(log_.StartLog(folder_ / "a.log", false));
    log_.Add("Ready.");
    log_.Add("");
    const std::string lines = banner + "[14:05:09]  Ready.\r\n[14:05:09]  \r\n";
    EXPECT_EQ(ReadFile(folder_ / "a.log"), lines);
    ASSERT_TRUE(log_.StartLog(folder_ / "b.log", false)); // closes the first file
    log_.Add("x");
    EXPECT_EQ(ReadFile(folder_ / "a.log"), lines);
    EXPECT_EQ(log_.FileName(), folder_ / "b.log");
}

TEST_F(LogTest, WithoutAFileNothingIsWritten) {
    log_.Add("early");
    EXPECT_EQ(log_.StartLog(folder_.Path(), false).Reason(), "Is a directory");
    EXPECT_EQ(log_.StartLog(folder_ / "none/a.log", false).Reason(), "No such file or directory");
    log_.Add("late");
    EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
}

} // namespace
} // namespace plinket3
