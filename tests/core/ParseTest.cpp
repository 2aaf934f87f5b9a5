#include "core/modParse.h"

#include <gtest/gtest.h>

namespace plinket3::modParse {
namespace {

TEST(Parse, OptionValueRunsOnPastTheNextDash) {
    const struct {
        std::string_view line, value;
    } rows[]{{"", ""},
             {"other", ""},
             {"-load", ""},
             {"-load  C:\\Doom\\My.DEH ", "c:\\doom\\my.deh"},
             {"-x -LOAD \"A b.deh\"", "\"a b.deh\""},
             {"-load a-", "a-"},
             {"-load a.deh -fast", "a.deh -fast"},
             {"-load a -123456789 next", "a -123456789"},
             {"-load a -1234567890 next", "a -123456789"},
             {"-load-load b", "-load b"}};
    for (const auto& row : rows)
        EXPECT_EQ(OptionValue(row.line, "-Load"), row.value) << row.line;
}

TEST(Parse, CleanPathTakesOneQuoteFromEachEnd) {
    const struct {
        std::string_view path, cleaned;
    } rows[]{{"  \" a b \"  ", "a b"}, {"\"\"a\"\"", "\"a\""}, {"\"", ""}, {"", ""}, {"a\"b", "a\"b"}, {"a\"", "a"}};
    for (const auto& row : rows)
        EXPECT_EQ(CleanPath(row.path), row.cleaned) << row.path;
}

} // namespace
} // namespace plinket3::modParse
