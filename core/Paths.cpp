#include "core/Paths.h"

namespace plinket3 {

std::filesystem::path PathOf(std::string_view text) try {
    return std::u8string(text.begin(), text.end());
} catch (const std::filesystem::filesystem_error&) {
    std::u16string characters;
    for (const char byte : text)
        characters += static_cast<unsigned char>(byte);
    return characters;
}

std::string PathText(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace plinket3
