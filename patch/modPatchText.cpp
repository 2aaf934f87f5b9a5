#include "patch/modPatchText.h"

#include "core/Text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace plinket3::modPatchText {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> escapes{
    {{"\\", "\\\\"}, {"\n", "\\n"}, {"\r", "\\r"}, {"\t", "\\t"}, {"\"", "\\\""}}};
constexpr std::string_view escapedLineFeed = "\\n";
constexpr std::string_view shownLineFeed = "\\n\r\n";
constexpr char cheatFiller = '\xff';

} // namespace

std::string EscapeText(std::string_view text) {
    std::string escaped(text);
    for (const auto& [plain, escape] : escapes)
        escaped = ReplaceAll(escaped, plain, escape);
    return escaped;
}

std::string UnescapeText(std::string_view text) {
    std::string plainText(text);
    if (text.find('\\') == std::string_view::npos)
        return plainText;
    for (const auto& [plain, escape] : escapes)
        plainText = ReplaceAll(plainText, escape, plain);
    return plainText;
}

std::string ShowLineBreaks(std::string_view text) { return ReplaceAll(text, escapedLineFeed, shownLineFeed); }

std::string HideLineBreaks(std::string_view text) { return ReplaceAll(text, shownLineFeed, escapedLineFeed); }

std::string ReadCountedCharacters(std::string_view text, std::size_t& position, std::int32_t count) {
    std::string characters;
    for (; count > 0 && position < text.size(); --count) {
        const char character = text[position++];
        if (character != '\r') {
            characters += character;
        } else if (position < text.size() && text[position] == '\n') {
            characters += '\n';
            ++position;
        } else {
            characters += character;
            if (position < text.size())
                characters += text[position++];
        }
    }
    return characters;
}

std::int32_t CountCharacters(std::string_view text) {
    std::int32_t count = 0;
    for (std::size_t position = 0; position < text.size(); ++count)
        position += text[position] == '\r' ? 2 : 1;
    return count;
}

bool GetFlag(std::int32_t value, int bit) {
    return bit >= 0 && bit < 32 && (static_cast<std::uint32_t>(value) >> bit & 1U) != 0;
}

std::int32_t SetFlag(std::int32_t value, int bit) {
    if (bit < 0 || bit >= 32)
        return value;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value) | 1U << bit);
}

std::int32_t RemoveFlag(std::int32_t value, int bit) {
    if (bit < 0 || bit >= 32)
        return value;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value) & ~(1U << bit));
}

std::string PadCheat(std::string_view text, std::int32_t maximumLength) {
    std::string padded(text);
    const std::size_t length = static_cast<std::uint32_t>(maximumLength) & 0xffffU;
    if (padded.size() < length)
        padded.resize(length, cheatFiller);
    return padded;
}

std::string UnpadCheat(std::string_view text) {
    std::string plain(text);
    std::replace(plain.begin(), plain.end(), cheatFiller, ' ');
    return std::string(Trim(plain));
}

bool AllNamed(std::span<const std::string> mnemonics, std::int32_t bits) {
    for (int bit = 0; bit < 32; ++bit)
        if (GetFlag(bits, bit) &&
            (std::cmp_greater_equal(bit, mnemonics.size()) || mnemonics[static_cast<std::size_t>(bit)].empty()))
            return false;
    return true;
}

std::string FormatBits(std::int32_t bits, bool byName, std::span<const std::string> mnemonics) {
    if (bits == 0)
        return "0";
    if (!byName)
        return std::to_string(static_cast<std::uint32_t>(bits));
    std::string text;
    for (std::size_t bit = 0; bit < mnemonics.size(); ++bit) {
        if (!GetFlag(bits, static_cast<int>(bit)))
            continue;
        if (!text.empty())
            text += " + ";
        text += mnemonics[bit];
    }
    return text;
}

std::string LevelName(std::int32_t episode, std::int32_t map) {
    const std::string number = std::to_string(map);
    if (episode != 0)
        return "E" + std::to_string(episode) + "M" + number;
    return "MAP" + std::string(number.size() < 2 ? 2 - number.size() : 0, '0') + number;
}

} // namespace plinket3::modPatchText
