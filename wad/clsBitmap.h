#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace plinket3 {

/// A palette entry, 0 to 255 each.
struct Colour {
    std::uint8_t red = 0, green = 0, blue = 0;
    bool operator==(const Colour&) const = default;
};

/// An off-screen picture of palette indices, 8 bits a pixel, stored bottom-up with rows padded to a multiple of 4
/// bytes.
class clsBitmap {
public:
    /// Entry i comes from bytes 3i to 3i + 2 (red, green, blue) of `palette`, the start of a PLAYPAL lump; entries that
    /// the text is too short for become black.
    void setPalette(std::string_view palette);
    /// Makes a bitmap of `width` x `height` pixels, every byte `fill`. False, with an empty bitmap, when a side is
    /// below 1 or above `largestSide`.
    [[nodiscard]] bool Create(int width, int height, std::uint8_t fill);
    /// Draws a picture lump with its upper left corner at (`xOffset`, `yOffset`), clipped to the bitmap. Column offsets
    /// and post lengths that leave the lump end their column.
    void renderDoomImage(std::string_view lump, int xOffset, int yOffset);
    /// Copies bytes straight into the pixel memory, as many as fit.
    void Inject(std::string_view bytes);

    int Width() const { return width_; }
    int Height() const { return height_; }
    /// Bytes from one row to the next.
    int Stride() const { return stride_; }
    const std::array<Colour, 256>& Palette() const { return palette_; }
    /// The palette index at column `x` and row `y`, counted from the upper left corner; both must be inside.
    std::uint8_t Pixel(int x, int y) const;
    /// The rows from the bottom to the top, `Stride` bytes each.
    const std::vector<std::uint8_t>& Pixels() const { return pixels_; }

    /// The part of a PLAYPAL lump that `setPalette` uses, in bytes.
    static constexpr std::int64_t paletteSize = 768;
    /// The longest side of a bitmap in pixels. No sprite comes near; a damaged header does.
    static constexpr int largestSide = 4096;

private:
    int width_ = 0, height_ = 0, stride_ = 0;
    std::array<Colour, 256> palette_{};
    std::vector<std::uint8_t> pixels_;
};

/// The size that a picture lump says it has (both at least 1), or {0, 0} when the lump is too short for its header or
/// for its column offsets, or a side is below 1 or above `clsBitmap::largestSide`.
struct PictureSize {
    int width = 0, height = 0;
};
PictureSize ReadPictureSize(std::string_view lump);

/// As much of a picture lump as is read, in bytes: room for every pixel of the largest bitmap, its posts and offsets.
inline constexpr std::int64_t longestPictureLump = 32 << 20;

/// How far the spot at which a thing stands lies to the right of the picture's left edge and below its top one, as the
/// header of a picture lump says; {0, 0} when the lump is too short for it.
struct PictureOffset {
    int left = 0, top = 0;
};
PictureOffset ReadPictureOffset(std::string_view lump);

/// Decodes a picture lump into a bitmap of its own size over palette index 0. False, with an empty bitmap, when the
/// lump is no picture.
[[nodiscard]] bool DecodePicture(std::string_view lump, std::string_view palette, clsBitmap& bitmap);

} // namespace plinket3
