#include "tools/TsvTable.h"

#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <string>

namespace plinket3::tools {
namespace {

using namespace std::string_literals;

class TsvTableTest : public ::testing::Test {
protected:
    TsvTable Table(std::string_view bytes) {
        test::WriteFile(file_, bytes);
        return {file_, fault_};
    }
    /// What was reported, without the folder.
    std::string Reported() const {
        const std::string folder = (file_.parent_path() / "").string();
        return fault_.Text().starts_with(folder) ? fault_.Text().substr(folder.size()) : fault_.Text();
    }

    test::TemporaryFolder folder_;
    std::filesystem::path file_ = folder_ / "facts.tsv";
    Fault fault_;
};

TEST_F(TsvTableTest, FindsCellsByColumnName) {
    const TsvTable table = Table("index\tname\tvalue\n0\tone\t-5\n1\t\t2147483647\n");
    ASSERT_EQ(table.RowCount(), 2U);
    table.ExpectIndex("index");
    EXPECT_EQ(table.Text(0, "name"), "one");
    EXPECT_EQ(table.Text(1, "name"), "");
    EXPECT_EQ(table.Number(0, "value"), -5);
    EXPECT_EQ(table.Number(1, "value"), 2147483647);
    EXPECT_EQ(Reported(), "");
}

TEST_F(TsvTableTest, UndoesEscapesFromLeftToRight) {
    const TsvTable table = Table("text\na\\\\nb\\n\\r\\t\\\"\x1a\x08\n");
    ASSERT_EQ(Reported(), "");
    EXPECT_EQ(table.Text(0, "text"), "a\\nb\n\r\t\"\x1a\x08");
}

TEST_F(TsvTableTest, RefusesBadTablesWithTheirPlace) {
    const struct {
        std::string bytes, reported;
    } rows[]{
        {"", ":1: has no line feed at its end"},
        {"a\tb\n", ": has no rows"},
        {"a\n1\n2", ":3: has no line feed at its end"},
        {"a\tb\n1\t2\n\n", ":3: has 1 cells instead of 2"},
        {"a\ta\n1\t2\n", ":1: column \"a\": needs a name of its own"},
        {"a\r\n1\r\n", ":1: holds a character that must not stand in a table"},
        {"a\tb\n1\t\0\n"s, ":2: column \"b\": holds a character that must not stand in a table"},
        {"a\n1\n\"2\"\n", ":3: column \"a\": holds a double quote without a backslash"},
        {"a\n\\x41\n", ":2: column \"a\": holds an unknown escape"},
    };
    for (const auto& row : rows) {
        fault_ = {};
        EXPECT_EQ(Table(row.bytes).RowCount(), 0U);
        EXPECT_EQ(Reported(), "facts.tsv" + row.reported);
    }
}

TEST_F(TsvTableTest, RefusesBadNumbersWithTheirPlace) {
    const std::pair<std::string, std::string> rows[]{{"", "\"\" is not a number"},
                                                     {"5 ", "\"5 \" is not a number"},
                                                     {"1.5", "\"1.5\" is not a number"},
                                                     {"-11", "-11 is not within -10 to 10"},
                                                     {"4294967297", "4294967297 is not within -10 to 10"}};
    for (const auto& [cell, reason] : rows) {
        fault_ = {};
        EXPECT_EQ(Table("index\tvalue\n0\t1\n1\t" + cell + "\n").Number(1, "value", -10, 10), 0);
        EXPECT_EQ(Reported(), "facts.tsv:3: column \"value\": " + reason);
    }
}

TEST_F(TsvTableTest, RefusesMissingColumnsGapsInTheIndexAndKeepsTheFirstFault) {
    EXPECT_EQ(Table("a\n1\n").Text(0, "b"), "");
    EXPECT_EQ(Reported(), "facts.tsv:1: column \"b\": is missing");
    Table("index\n0\n1\n3\n").ExpectIndex("index");
    EXPECT_EQ(Reported(), "facts.tsv:1: column \"b\": is missing");
    fault_ = {};
    Table("index\n0\n1\n3\n").ExpectIndex("index");
    EXPECT_EQ(Reported(), "facts.tsv:4: column \"index\": \"3\" stands in the place of 2");
}

} // namespace
} // namespace plinket3::tools
