#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace plinket3 {

/// The number at the start of `text`: blanks, a sign, decimal digits, a fraction. Reading stops at the first other
/// character; no number gives 0.
double LeadingReal(std::string_view text);

/// `LeadingReal`, rounded to the nearest integer (halves to the even one) and limited to 32 bits.
std::int32_t LeadingInt32(std::string_view text);

/// The whole number at the start of `text` as game engines read it: blanks and tabs, a sign, decimal digits, or
/// hexadecimal ones behind "0x", or octal ones behind "0"; no number gives 0. Limited to 64 bits, of which the low 32
/// are taken.
std::int32_t EngineInt32(std::string_view text);

/// A text that is a whole decimal number and nothing else; absent for another one, and beyond `Number`.
template <std::integral Number = std::int32_t> std::optional<Number> WholeNumber(std::string_view text) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// Rounds to the nearest integer, halves to the even one, and limits to 32 bits. Not-a-number gives 0.
std::int32_t RoundToInt32(double value);

/// The number at the start of a number in a configuration text: as `LeadingReal`, but blanks, TABs and LFs are ignored
/// wherever they stand, "&H" and "&O" introduce hexadecimal and octal numbers and an exponent ("e" or "d") is read.
double ConfigurationNumber(std::string_view text);

/// The shortest decimal text that reads back as `value`: 20, 20.5, -0.25, never with an exponent for values that a
/// 64-bit integer holds.
std::string RealText(double value);
/// The same for single precision: 0.1f gives 0.1.
std::string RealText(float value);

} // namespace plinket3
