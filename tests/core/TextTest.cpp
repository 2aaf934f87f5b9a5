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

} // namespace
} // namespace plinket3
