#include "core/Text.h"
#include "core/Numbers.h"
#include "core/PathList.h"
#include "core/modParse.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

namespace plinket3 {
namespace {

TEST(Text, OnlyBlanksAreTrimmed) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("\ta\t"), "\ta\t");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(TrimLeft("  a "), "a ");
    EXPECT_EQ(TrimLeft("  "), "");
}

TEST(Text, OnlyAsciiLettersHaveAnotherCase) {
    EXPECT_EQ(ToUpper(std::string_view("az{`\xe4")), "AZ{`\xe4");
    EXPECT_EQ(ToLower(std::string_view("AZ[@\xc4")), "az[@\xc4");
    EXPECT_TRUE(EqualIgnoringCase("Doom.WAD", "dOOM.wad"));
    EXPECT_FALSE(EqualIgnoringCase("\xc4", "\xe4"));
    EXPECT_FALSE(EqualIgnoringCase("doom", "doom2"));
}

TEST(Text, SeveralPathsStandInQuotes) {
    const struct {
        const char* text;
        std::vector<std::string> paths;
    } rows[]{{"", {}},
             {"/my mods/a.wad", {"/my mods/a.wad"}},
             {"\"a.wad\" \"b c.wad\"", {"a.wad", "b c.wad"}},
             {"\"a.wad\"", {"\"a.wad\""}},
             {"\"a\" b", {"\"a\" b"}},
             {"\"a\" \"b", {"\"a\" \"b"}},
             {"\"", {"\""}}};
    for (const auto& row : rows) {
        EXPECT_EQ(SplitPaths(row.text), row.paths) << row.text;
        EXPECT_EQ(JoinPaths(row.paths), row.text);
        EXPECT_EQ(FirstNotJoinable(row.paths), nullptr);
    }
    EXPECT_EQ(SplitPaths("\"a\"\"b\"   \"c\""), (std::vector<std::string>{"a", "b", "c"}));
    const std::vector<std::string> lost{"a", "b\"", "\"c"};
    EXPECT_EQ(FirstNotJoinable(lost), &lost[1]);
    EXPECT_NE(SplitPaths(JoinPaths(lost)), lost);
}

TEST(Text, ControlCharactersArePrintedAsEscapes) {
    using namespace std::string_view_literals;
    EXPECT_EQ(Printable("a\tb\r\n\x1b[2J\0\x7f"sv), R"(a\tb\r\n\x1b[2J\x00\x7f)");
    EXPECT_EQ(Printable("\xe4\xff \x9b"
                        "31m\xc2\x9b"),
              "\xe4\xff \\x9b"
              "31m\\xc2\\x9b");
    EXPECT_EQ(Printable("\xc3\x80 \xe2\x80\x9d \xf0\x9f\x98\x80 \\"), "\xc3\x80 \xe2\x80\x9d \xf0\x9f\x98\x80 \\");
    EXPECT_EQ(Printable("\xe2\x9b"), "\xe2\\x9b") << "a character that is cut off";
}

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
        EXPECT_EQ(modParse::OptionValue(row.line, "-Load"), row.value) << row.line;
}

TEST(Parse, CleanPathTakesOneQuoteFromEachEnd) {
    const struct {
        std::string_view path, cleaned;
    } rows[]{{"  \" a b \"  ", "a b"}, {"\"\"a\"\"", "\"a\""}, {"\"", ""}, {"", ""}, {"a\"b", "a\"b"}, {"a\"", "a"}};
    for (const auto& row : rows)
        EXPECT_EQ(modParse::CleanPath(row.path), row.cleaned) << row.path;
}

struct Reading {
    std::string_view text;
    double value;
};

TEST(Numbers, LeadingRealStopsAtTheFirstOtherCharacter) {
    constexpr Reading rows[]{{"12", 12},  {"  -3.5x", -3.5}, {"+7", 7},  {"- 7", 0}, {".5", 0.5},
                             {"5.", 5},   {"1.2.3", 1.2},    {"1e3", 1}, {"\t4", 0}, {"", 0},
                             {"wide", 0}, {"&H10", 0},       {"inf", 0}, {"nan", 0}, {"1,5", 1}};
    for (const Reading& row : rows)
        EXPECT_EQ(LeadingReal(row.text), row.value) << row.text;
}

TEST(Numbers, LeadingInt32RoundsHalvesToEvenAndLimits) {
    constexpr Reading rows[]{{"0.5", 0},
                             {"1.5", 2},
                             {"-2.5", -2},
                             {"2147483647.4", 2147483647},
                             {"99999999999999999999", 2147483647},
                             {"-2147483649", -2147483648.0}};
    for (const Reading& row : rows)
        EXPECT_EQ(LeadingInt32(row.text), row.value) << row.text;
    EXPECT_EQ(RoundToInt32(std::nan("")), 0);
    EXPECT_EQ(RoundToInt32(-std::numeric_limits<double>::infinity()), INT32_MIN);
}

TEST(Numbers, ConfigurationNumberReadsPrefixesAndExponents) {
    constexpr Reading rows[]{{"&H10", 16},
                             {"&hfFg", 255},
                             {"&O178", 15},
                             {"& H 1 0", 16},
                             {"&", 0},
                             {"&H", 0},
                             {"-&H10", 0},
                             {"-3e2", -300},
                             {"1D-2", 0.01},
                             {"1 2\n3\t4", 1234},
                             {"5e", 5},
                             {"5e+", 5},
                             {"5 e + 1", 50},
                             {"e5", 0},
                             {"-", 0},
                             {"1e999", DBL_MAX},
                             {"-1e99999999999999999999", -DBL_MAX},
                             {"0e999", 0},
                             {"1e-999", 0},
                             {"0.00000000001e310", 1e299}};
    for (const Reading& row : rows)
        EXPECT_EQ(ConfigurationNumber(row.text), row.value) << row.text;
    EXPECT_EQ(ConfigurationNumber("0." + std::string(1000, '0') + "1e1001"), 1);
    EXPECT_EQ(ConfigurationNumber("&H" + std::string(1000, 'F')), DBL_MAX);
}

TEST(Numbers, RealTextIsTheShortestThatReadsBack) {
    EXPECT_EQ(RealText(20.0), "20");
    EXPECT_EQ(RealText(-0.25), "-0.25");
    EXPECT_EQ(RealText(0.001), "0.001");
    EXPECT_EQ(RealText(-0.0), "0");
    EXPECT_EQ(RealText(0.1f), "0.1");
    EXPECT_EQ(RealText(100000.0), "100000");
    EXPECT_EQ(RealText(9e18), "9000000000000000000");
    EXPECT_EQ(RealText(-9223372036854774784.0), "-9223372036854774784");
    EXPECT_EQ(RealText(1e300), "1e+300");
    EXPECT_EQ(RealText(DBL_MIN), "2.2250738585072014e-308");
}

} // namespace
} // namespace plinket3
