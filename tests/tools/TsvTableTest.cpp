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
        const std::string folder = file_.parent_path().string() + "/";
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

struct BadText {
    const char* name;
    std::string bytes;
    std::string reported;
};
class BadTable : public TsvTableTest, public ::testing::WithParamInterface<BadText> {};

TEST_P(BadTable, IsRefusedWithItsPlace) {
    const TsvTable table = Table(GetParam().bytes);
    EXPECT_EQ(Reported(), GetParam().reported);
    EXPECT_EQ(table.RowCount(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadTable,
    ::testing::Values(
        BadText{"Empty", "", "facts.tsv:1: has no line feed at its end"},
        BadText{"OnlyColumns", "a\tb\n", "facts.tsv: has no rows"},
        BadText{"NoLastLineFeed", "a\n1\n2", "facts.tsv:3: has no line feed at its end"},
        BadText{"EmptyLine", "a\tb\n1\t2\n\n", "facts.tsv:3: has 1 cells instead of 2"},
        BadText{"TooManyCells", "a\tb\n1\t2\t3\n", "facts.tsv:2: has 3 cells instead of 2"},
        BadText{"SameColumnTwice", "a\ta\n1\t2\n", "facts.tsv:1: column \"a\": needs a name of its own"},
        BadText{"ColumnWithoutName", "a\t\n1\t2\n", "facts.tsv:1: column \"\": needs a name of its own"},
        BadText{"CarriageReturn", "a\r\n1\r\n", "facts.tsv:1: holds a character that must not stand in a table"},
        BadText{"ByteOrderMark", "\xef\xbb\xbf" + "a\n1\n"s,
                "facts.tsv:1: holds a character that must not stand in a table"},
        BadText{"Nul", "a\tb\n1\t"s + '\0' + "\n",
                "facts.tsv:2: column \"b\": holds a character that must not stand in a table"},
        BadText{"BareQuote", "a\n1\n\"2\"\n", "facts.tsv:3: column \"a\": holds a double quote without a backslash"},
        BadText{"UnknownEscape", "a\n\\x41\n", "facts.tsv:2: column \"a\": holds an unknown escape"},
        BadText{"LoneBackslash", "a\tb\n\\\t1\n", "facts.tsv:2: column \"a\": holds an unknown escape"}),
    [](const auto& info) { return info.param.name; });

struct BadCell {
    const char* name;
    std::string cell;
    std::string reason;
};
class BadNumber : public TsvTableTest, public ::testing::WithParamInterface<BadCell> {};

TEST_P(BadNumber, IsRefusedWithItsPlace) {
    const TsvTable table = Table("index\tvalue\n0\t1\n1\t" + GetParam().cell + "\n");
    EXPECT_EQ(table.Number(1, "value", -10, 10), 0);
    EXPECT_EQ(Reported(), "facts.tsv:3: column \"value\": " + GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(Cases, BadNumber,
                         ::testing::Values(BadCell{"Empty", "", "\"\" is not a number"},
                                           BadCell{"Word", "five", "\"five\" is not a number"},
                                           BadCell{"Rest", "5 ", "\"5 \" is not a number"},
                                           BadCell{"Fraction", "1.5", "\"1.5\" is not a number"},
                                           BadCell{"TooLow", "-11", "-11 is not within -10 to 10"},
                                           BadCell{"Beyond32Bits", "4294967297", "4294967297 is not within -10 to 10"}),
                         [](const auto& info) { return info.param.name; });

TEST_F(TsvTableTest, RefusesAColumnThatIsMissing) {
    EXPECT_EQ(Table("a\n1\n").Text(0, "b"), "");
    EXPECT_EQ(Reported(), "facts.tsv:1: column \"b\": is missing");
}

TEST_F(TsvTableTest, RefusesGapsInTheIndex) {
    Table("index\n0\n1\n3\n").ExpectIndex("index");
    EXPECT_EQ(Reported(), "facts.tsv:4: column \"index\": \"3\" stands in the place of 2");
}

TEST_F(TsvTableTest, KeepsTheFirstFault) {
    const TsvTable table = Table("a\nx\ny\n");
    table.Number(1, "a");
    table.Number(0, "a");
    EXPECT_EQ(Reported(), "facts.tsv:3: column \"a\": \"y\" is not a number");
}

TEST_F(TsvTableTest, RefusesAFileThatIsMissing) {
    const TsvTable table(folder_ / "nothing.tsv", fault_);
    EXPECT_TRUE(Reported().starts_with("nothing.tsv: cannot be read: ")) << Reported();
}

} // namespace
} // namespace plinket3::tools
