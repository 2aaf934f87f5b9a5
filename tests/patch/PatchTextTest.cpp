#include "patch/modPatchText.h"

#include <gtest/gtest.h>

namespace plinket3::modPatchText {
namespace {

using namespace std::string_literals;

TEST(PatchText, ShowsEscapedLineFeedsAsLineBreaksAndHidesThemAgain) {
    EXPECT_EQ(ShowLineBreaks(R"(a\nb\n)"), "a\\n\r\nb\\n\r\n");
    EXPECT_EQ(HideLineBreaks("a\\n\r\nb\r\nc\\n"), "a\\nb\r\nc\\n");
}

TEST(PatchText, CountsALineEndAsOneCharacter) {
    struct {
        std::string text;
        std::int32_t count, taken;
        std::string characters;
        std::size_t position;
    } const rows[]{
        {"abcdef", 3, 3, "abc", 3},     {"a\r\nb", 2, 2, "a\n", 3}, {"a\nb", 2, 2, "a\n", 2},
        {"\rxy", 1, 1, "\rx", 2}, // a carriage return alone takes the next character with it
        {"\r\r\ny", 2, 2, "\r\r\n", 3}, {"a\r", 2, 2, "a\r", 2},    {"abc", 2147483647, 3, "abc", 3},
        {"abc", 0, 0, "", 0},           {"abc", -5, 0, "", 0},      {"a\0b"s, 3, 3, "a\0b"s, 3},
    };
    for (const auto& row : rows) {
        std::size_t position = 0;
        EXPECT_EQ(ReadCountedCharacters(row.text, position, row.count), row.characters) << row.text;
        EXPECT_EQ(position, row.position) << row.text;
        EXPECT_EQ(CountCharacters(row.characters), row.taken) << row.text;
    }
}

TEST(PatchText, PadsCheatsToTheLow16BitsOfTheirLength) {
    EXPECT_EQ(PadCheat("id", 5), "id\xff\xff\xff");
    EXPECT_EQ(PadCheat("idmus", 3), "idmus");
    EXPECT_EQ(PadCheat("id", 0), "id");
    EXPECT_EQ(PadCheat("id", 0x70003), "id\xff");
    EXPECT_EQ(UnpadCheat("\xff"
                         "id\xffmus\xff\xff"),
              "id mus");
}

} // namespace
} // namespace plinket3::modPatchText
