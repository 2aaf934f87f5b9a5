#include "wad/clsBitmap.h"

#include "tests/wad/WadBytes.h"

#include <gtest/gtest.h>

#include <limits>

namespace plinket3::test {
namespace {

using namespace std::string_literals;

/// The rows from the top to the bottom, one after the other.
std::string Shown(const clsBitmap& bitmap) {
    std::string pixels;
    for (int y = 0; y < bitmap.Height(); ++y)
        for (int x = 0; x < bitmap.Width(); ++x)
            pixels += static_cast<char>(bitmap.Pixel(x, y));
    return pixels;
}

std::string Post(int top, const std::string& pixels) {
    return std::string{static_cast<char>(top), static_cast<char>(pixels.size()), '?'} + pixels + '?';
}

const std::string end = "\xFF";

TEST(BitmapTest, KeepsRowsFromTheBottomPaddedToFourBytes) {
    clsBitmap bitmap;
    ASSERT_TRUE(bitmap.Create(5, 2, 'f'));
    EXPECT_EQ(bitmap.Stride(), 8);
    EXPECT_EQ(bitmap.Pixels(), std::vector<std::uint8_t>(16, 'f'));
    bitmap.Inject("abcde");
    EXPECT_EQ(Shown(bitmap), "fffffabcde");
    bitmap.Inject("0123456789abcdefghijkl");
    EXPECT_EQ(Shown(bitmap), "89abc01234");
    ASSERT_TRUE(bitmap.Create(1, 1, 0));
    EXPECT_EQ(bitmap.Stride(), 4);
}

TEST(BitmapTest, TakesOnlyWholePaletteEntries) {
    clsBitmap bitmap;
    bitmap.setPalette("\x01\x02\x03\xFF\xFE\xFD\x07\x08");
    EXPECT_EQ(bitmap.Palette()[1], (Colour{255, 254, 253}));
    EXPECT_EQ(bitmap.Palette()[2], (Colour{}));
}

TEST(BitmapTest, DrawsPostsClippedToTheBitmap) {
    // The columns: "ab" at row 0 and "c" at row 2; nothing; "xyz" at row 1, which leaves the picture at the bottom.
    const std::string posts = Post(0, "ab") + Post(2, "c") + end + Post(1, "xyz") + end;
    const std::string picture = PictureBytes(3, 3, {20, 31, 32}, posts);
    struct {
        int x, y;
        std::string shown;
    } const rows[]{
        {0, 0, "a..b.xc.y"},
        {1, 0, ".a..b..c."},
        {-2, 0, "...x..y.."},
        {0, 1, "...a..b.x"},
        {0, -1, "b.xc.y..z"},
        {-3, 0, "........."},
        {3, 0, "........."},
        {std::numeric_limits<int>::max(), 0, "........."},
        {std::numeric_limits<int>::min(), std::numeric_limits<int>::min(), "........."},
    };
    clsBitmap bitmap;
    for (const auto& row : rows) {
        ASSERT_TRUE(bitmap.Create(3, 3, '.'));
        bitmap.renderDoomImage(picture, row.x, row.y);
        EXPECT_EQ(Shown(bitmap), row.shown) << "at " << row.x << ", " << row.y;
    }
}

TEST(BitmapTest, EndsAColumnWhereItLeavesTheLump) {
    const std::string column = Post(0, "ab");
    struct {
        const char* damage;
        std::string picture, shown;
    } const rows[]{
        {"no end mark", PictureBytes(2, 2, {16, 16}, column), "aabb"},
        {"a post that is longer than the lump", PictureBytes(2, 2, {16, 16}, column.substr(0, 4)), "aa.."},
        {"a post without its header", PictureBytes(2, 2, {16, 16}, "\x01\x02"), "...."},
        {"an offset behind the lump", PictureBytes(2, 2, {22, 16}, column + end), ".a.b"},
        {"a negative offset", PictureBytes(2, 2, {-1, 16}, column + end), ".a.b"},
        {"an offset that is missing", PictureBytes(9, 2, {12}, column).substr(0, 18), "a.b."},
        {"a negative width", PictureBytes(-1, 2, {16, 16}, column), "...."},
        {"no header", "\x02", "...."},
        {"empty", "", "...."},
    };
    clsBitmap bitmap;
    for (const auto& row : rows) {
        ASSERT_TRUE(bitmap.Create(2, 2, '.'));
        bitmap.renderDoomImage(row.picture, 0, 0);
        EXPECT_EQ(Shown(bitmap), row.shown) << row.damage;
    }
}

TEST(BitmapTest, DrawsEveryRowThatPostsCanReachAndEndsAColumnBehindThem) {
    std::string posts, longer;
    for (int row = 0; row < 254; ++row)
        posts += Post(row, "x");
    posts += Post(254, std::string(255, 'y')) + end;
    for (int i = 0; i < 1000; ++i)
        longer += Post(0, "x");
    clsBitmap bitmap;
    ASSERT_TRUE(DecodePicture(PictureBytes(1, 509, {12}, posts), "", bitmap));
    EXPECT_EQ(Shown(bitmap), std::string(254, 'x') + std::string(255, 'y'));
    ASSERT_TRUE(DecodePicture(PictureBytes(1, 1, {12}, longer + Post(0, "y")), "", bitmap));
    EXPECT_EQ(Shown(bitmap), "x");
}

TEST(PictureTest, HasASizeOnlyWhenItsHeaderIsWhole) {
    struct {
        std::string lump;
        int width, height;
    } const rows[]{
        {PictureBytes(2, 5, {16, 16}, ""), 2, 5},
        {PictureBytes(2, 5, {16}, "abc"), 0, 0},
        {PictureBytes(1, 4096, {12}, ""), 1, 4096},
        {PictureBytes(1, 4097, {12}, ""), 0, 0},
        {PictureBytes(1, -1, {12}, ""), 0, 0},
        {PictureBytes(-1, 1, {12}, ""), 0, 0},
        {PictureBytes(0, 1, {12}, ""), 0, 0},
        {std::string("\x01\0\x01", 3), 0, 0},
        {"", 0, 0},
    };
    for (const auto& row : rows) {
        const PictureSize size = ReadPictureSize(row.lump);
        EXPECT_EQ(std::pair(size.width, size.height), std::pair(row.width, row.height)) << row.lump.size() << " bytes";
        clsBitmap bitmap;
        EXPECT_EQ(DecodePicture(row.lump, "", bitmap), row.width != 0);
        EXPECT_EQ(Shown(bitmap), std::string(static_cast<std::size_t>(row.width * row.height), '\0'));
    }
}

} // namespace
} // namespace plinket3::test
