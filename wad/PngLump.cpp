#include "wad/PngLump.h"

#include <algorithm>

namespace plinket3 {

namespace {

constexpr std::string_view signature("\x89PNG\r\n\x1a\n", 8);
constexpr std::size_t headerSize = 13;     // of the chunk IHDR
constexpr std::size_t offsetsSize = 8;     // of the chunk grAb
constexpr std::int32_t farthest = 1 << 15; // as far as a picture lump's own offsets go

std::uint32_t UInt32(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (const char byte : bytes.substr(at, sizeof number))
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

} // namespace

bool IsPng(std::string_view lump) { return lump.starts_with(signature); }

std::optional<PngHead> ReadPngHead(std::string_view lump) {
    constexpr std::size_t lengthAndType = 8, check = 4;
    if (!IsPng(lump))
        return std::nullopt;
    PngHead head;
    bool sized = false;
    lump.remove_prefix(signature.size());
    while (lump.size() >= lengthAndType) {
        const std::size_t length = UInt32(lump, 0);
        const std::string_view type = lump.substr(4, 4);
        lump.remove_prefix(lengthAndType);
        if (length > lump.size() || type == "IDAT")
            break;
        if (type == "IHDR" && length == headerSize) {
            const std::uint32_t width = UInt32(lump, 0), height = UInt32(lump, 4);
            if (width < 1 || width > largestPngSide || height < 1 || height > largestPngSide)
                return std::nullopt;
            head.width = static_cast<int>(width);
            head.height = static_cast<int>(height);
            sized = true;
        } else if (type == "grAb" && length == offsetsSize) {
            head.left = std::clamp(static_cast<std::int32_t>(UInt32(lump, 0)), -farthest, farthest);
            head.top = std::clamp(static_cast<std::int32_t>(UInt32(lump, 4)), -farthest, farthest);
        }
        lump.remove_prefix(std::min(length + check, lump.size()));
    }
    return sized ? std::optional(head) : std::nullopt;
}

} // namespace plinket3
