#include "core/Text.h"

#include <algorithm>

namespace plinket3 {

char ToUpper(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

char ToLower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

std::string ToUpper(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char character) { return ToUpper(character); });
    return result;
}

std::string ToLower(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char character) { return ToLower(character); });
    return result;
}

bool EqualLettersIgnoringCase(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, [](char a, char b) { return ToLower(a) == ToLower(b); });
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view by) {
    std::string result;
    result.reserve(text.size());
    std::size_t from = 0;
    for (std::size_t at = text.find(what); at != std::string_view::npos; at = text.find(what, from)) {
        result.append(text, from, at - from).append(by);
        from = at + what.size();
    }
    return result.append(text, from);
}

std::size_t LineAt(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, offset);
    return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

std::string Latin1ToUtf8(std::string_view text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80) {
            utf8 += character;
        } else {
            utf8 += static_cast<char>(0xc0 | byte >> 6);
            utf8 += static_cast<char>(0x80 | (byte & 0x3f));
        }
    }
    return utf8;
}

namespace {

/// How many bytes the UTF-8 character at the start of `text` has, 1 for what is none.
std::size_t Utf8Length(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t length = first >= 0xf0 && first < 0xf8 ? 4 : first >= 0xe0 ? 3 : first >= 0xc0 ? 2 : 1;
    if (first >= 0xf8 || text.size() < length)
        return 1;
    const auto continues = [](char character) { return (static_cast<unsigned char>(character) & 0xc0) == 0x80; };
    return std::ranges::all_of(text.substr(1, length - 1), continues) ? length : 1;
}

bool IsControl(std::string_view character) {
    const auto last = static_cast<unsigned char>(character.back());
    const bool upper = last >= 0x80 && last < 0xa0;
    if (character.size() == 1)
        return last < 0x20 || last == 0x7f || upper;
    return character.size() == 2 && character[0] == '\xc2' && upper;
}

} // namespace

std::string Printable(std::string_view text) {
    std::string printable;
    printable.reserve(text.size());
    while (!text.empty()) {
        const std::string_view character = text.substr(0, Utf8Length(text));
        text.remove_prefix(character.size());
        if (!IsControl(character)) {
            printable += character;
            continue;
        }
        for (const char byte : character) {
            constexpr std::string_view digits = "0123456789abcdef";
            const auto value = static_cast<unsigned char>(byte);
            const std::size_t named = std::string_view("\t\n\r").find(byte);
            printable += '\\';
            if (named != std::string_view::npos)
                printable += std::string_view("tnr")[named];
            else
                (printable += 'x').append(1, digits[value >> 4]).append(1, digits[value & 0xf]);
        }
    }
    return printable;
}

} // namespace plinket3
