#include "core/Text.h"

#include <gtest/gtest.h>

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

TEST(Text, WhatWasPutInIsNotReplacedAgain) {
    EXPECT_EQ(ReplaceAll("a\\b\\", "\\", "\\\\"), "a\\\\b\\\\");
    EXPECT_EQ(ReplaceAll("aaa", "aa", "a"), "aa");
    EXPECT_EQ(ReplaceAll("D;o;om;", ";", ""), "Doom");
    EXPECT_EQ(ReplaceAll("", "x", "y"), "");
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

} // namespace
} // namespace plinket3
