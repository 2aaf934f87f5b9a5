#include "wad/clsBitmap.h"

#include "core/Bytes.h"

#include <algorithm>

namespace plinket3 {

namespace {

constexpr std::size_t headerSize = 8; // width, height, left and top offset
constexpr std::size_t offsetSize = 4;
constexpr int lastPost = 255;

/// The longest list of posts that is drawn, in bytes. Posts reach the rows 0 to 508 (from 254 on 255 pixels down); a
/// list that draws each of them once, in posts of a single pixel, has this length. Only damage makes longer ones, and
/// all columns may point to the same one.
constexpr std::size_t longestColumn = std::size_t{509} * 5;

int Byte(char character) { return static_cast<unsigned char>(character); }

std::int16_t Int16(ByteReader& reader) { return static_cast<std::int16_t>(reader.UInt16()); }

} // namespace

void clsBitmap::setPalette(std::string_view palette) {
    palette_.fill({});
    const std::size_t entries = std::min(palette_.size(), palette.size() / 3);
    for (std::size_t i = 0; i < entries; ++i)
        palette_[i] = {static_cast<std::uint8_t>(palette[3 * i]), static_cast<std::uint8_t>(palette[3 * i + 1]),
                       static_cast<std::uint8_t>(palette[3 * i + 2])};
}

bool clsBitmap::Create(int width, int height, std::uint8_t fill) {
    const bool possible = width >= 1 && width <= largestSide && height >= 1 && height <= largestSide;
    width_ = possible ? width : 0;
    height_ = possible ? height : 0;
    stride_ = (width_ + 3) / 4 * 4;
    pixels_.assign(static_cast<std::size_t>(stride_) * static_cast<std::size_t>(height_), fill);
    return possible;
}

void clsBitmap::renderDoomImage(std::string_view lump, int xOffset, int yOffset) {
    ByteReader header(lump);
    const std::int64_t columns = Int16(header);
    const std::int64_t firstColumn = std::max<std::int64_t>(0, -std::int64_t{xOffset});
    const std::int64_t pastColumns = std::min<std::int64_t>(columns, std::int64_t{width_} - xOffset);
    for (std::int64_t column = firstColumn; column < pastColumns; ++column) {
        const std::size_t offsetAt = headerSize + offsetSize * static_cast<std::size_t>(column);
        if (offsetAt + offsetSize > lump.size())
            return;
        const auto start = static_cast<std::uint32_t>(ByteReader(lump, offsetAt).Int32());
        if (start >= lump.size())
            continue;
        const std::string_view posts = lump.substr(start, longestColumn);
        std::size_t at = 0;
        while (at + 3 < posts.size() && Byte(posts[at]) != lastPost) {
            const auto length = static_cast<std::size_t>(Byte(posts[at + 1]));
            std::int64_t y = std::int64_t{Byte(posts[at])} + yOffset;
            for (const char pixel : posts.substr(at + 3, length)) {
                if (y >= 0 && y < height_)
                    pixels_[static_cast<std::size_t>((height_ - 1 - y) * stride_ + column + xOffset)] =
                        static_cast<std::uint8_t>(pixel);
                ++y;
            }
            at += length + 4;
        }
    }
}

void clsBitmap::Inject(std::string_view bytes) {
    std::copy_n(bytes.begin(), std::min(bytes.size(), pixels_.size()), pixels_.begin());
}

std::uint8_t clsBitmap::Pixel(int x, int y) const {
    return pixels_[static_cast<std::size_t>(height_ - 1 - y) * static_cast<std::size_t>(stride_) +
                   static_cast<std::size_t>(x)];
}

PictureSize ReadPictureSize(std::string_view lump) {
    ByteReader header(lump);
    const int width = Int16(header);
    const int height = Int16(header);
    if (width < 1 || width > clsBitmap::largestSide || height < 1 || height > clsBitmap::largestSide ||
        lump.size() < headerSize + offsetSize * static_cast<std::size_t>(width))
        return {};
    return {width, height};
}

PictureOffset ReadPictureOffset(std::string_view lump) {
    if (lump.size() < headerSize)
        return {};
    ByteReader header(lump.substr(headerSize / 2)); // behind width and height
    const int left = Int16(header);
    return {left, Int16(header)};
}

bool DecodePicture(std::string_view lump, std::string_view palette, clsBitmap& bitmap) {
    const PictureSize size = ReadPictureSize(lump);
    bitmap.setPalette(palette);
    if (!bitmap.Create(size.width, size.height, 0))
        return false;
    bitmap.renderDoomImage(lump, 0, 0);
    return true;
}

} // namespace plinket3
