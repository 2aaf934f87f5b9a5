#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace plinket3 {

// Text is bytes, shown as Latin-1. Only the character 32 counts as a blank, and only ASCII letters have another case.

inline std::string_view TrimLeft(std::string_view text) {
    while (text.starts_with(' '))
        text.remove_prefix(1);
    return text;
}
inline std::string_view Trim(std::string_view text) {
    text = TrimLeft(text);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}
/// Without the blanks and tabs in front, as game engines skip them. A search for either is far slower.
inline std::string_view SkipBlanks(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    return text;
}
char ToUpper(char character);
char ToLower(char character);
std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);
bool EqualLettersIgnoringCase(std::string_view left, std::string_view right);
/// The same, and far faster where they are mostly equal to the letter.
inline bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return left == right || (left.size() == right.size() && EqualLettersIgnoringCase(left, right));
}

/// Replaces every occurrence of `what` (not empty), from left to right, without looking at what was put in.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view by);

/// Takes the text before the first `sign` away from `text`, and the sign; all of it when there is none.
inline std::string_view TakeUpTo(std::string_view& text, char sign) {
    const std::string_view taken = text.substr(0, text.find(sign));
    text.remove_prefix(taken.size() < text.size() ? taken.size() + 1 : taken.size());
    return taken;
}

/// The number, from 1, of the line in which the byte at `offset` stands.
std::size_t LineAt(std::string_view text, std::size_t offset);

/// The same characters in UTF-8, for output that other programs read.
std::string Latin1ToUtf8(std::string_view text);

/// The same text with every control character as an escape such as \n or \x1b, so that a terminal shows it and obeys
/// none. Those of the upper half (128 to 159) stay where they are a part of a longer UTF-8 character.
std::string Printable(std::string_view text);

/// Lets an unordered map with std::string keys be searched by a view.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

} // namespace plinket3
