#include "core/Numbers.h"

#include "core/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace plinket3 {

namespace {

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

std::size_t SkipDigits(std::string_view text, std::size_t at) {
    while (at < text.size() && IsDigit(text[at]))
        ++at;
    return at;
}

/// Of so many digits every number is in the range of 32 bits.
constexpr std::size_t digitsInRange = 9;

/// The decimal exponent written at `at` ("e" or "d", a sign, digits), limited to what no mantissa can make up for;
/// absent exponents are 0.
int ExponentAt(std::string_view text, std::size_t at) {
    constexpr int limit = 1'000'000'000;
    if (at >= text.size() || (ToLower(text[at]) != 'e' && ToLower(text[at]) != 'd'))
        return 0;
    ++at;
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        ++at;
    int exponent = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at)
        exponent = std::min(limit, exponent < limit / 10 ? exponent * 10 + (text[at] - '0') : limit);
    return negative ? -exponent : exponent;
}

/// Reads sign, digits and fraction at the start of `text` and, if asked for, an exponent. A number too large for double
/// precision gives the largest one.
double DecimalReal(std::string_view text, bool withExponent) {
    std::size_t begin = 0;
    const bool negative = !text.empty() && text[0] == '-';
    if (negative || (!text.empty() && text[0] == '+'))
        begin = 1;
    const std::size_t point = SkipDigits(text, begin);
    const bool hasPoint = point < text.size() && text[point] == '.';
    const std::size_t end = hasPoint ? SkipDigits(text, point + 1) : point;
    const std::size_t firstDigit = text.substr(0, end).find_first_not_of("0.", begin);
    if (firstDigit == std::string_view::npos)
        return 0;

    std::string digits(text.substr(begin, end - begin));
    const int exponent = withExponent ? ExponentAt(text, end) : 0;
    if (exponent != 0)
        digits.append("e").append(std::to_string(exponent));
    double value = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), value).ec == std::errc::result_out_of_range) {
        const double magnitude = static_cast<double>(point) - static_cast<double>(firstDigit) + exponent;
        value = magnitude > 0 ? std::numeric_limits<double>::max() : 0;
    }
    return negative ? -value : value;
}

/// The value of the leading digits of `text` to the base 8 or 16.
double PrefixedReal(std::string_view text, std::size_t base) {
    const std::string_view digits = std::string_view("0123456789abcdef").substr(0, base);
    double value = 0;
    for (const char character : text) {
        const std::size_t digit = digits.find(ToLower(character));
        if (digit == std::string_view::npos)
            break;
        value = std::min(value * static_cast<double>(base) + static_cast<double>(digit),
                         std::numeric_limits<double>::max());
    }
    return value;
}

template <class Real> std::string ShortestText(Real value) {
    if (value == 0)
        return "0"; // without the sign of a negative zero
    // Long runs of zeros before the first digit are the only ones that an exponent is allowed to shorten here.
    constexpr Real smallest = static_cast<Real>(1e-4);
    constexpr Real beyondInt64 = static_cast<Real>(9223372036854775808.0);
    const bool plain = std::abs(value) >= smallest && std::abs(value) < beyondInt64;
    std::array<char, 64> buffer{};
    char* const last = buffer.data() + buffer.size();
    const std::to_chars_result result = plain ? std::to_chars(buffer.data(), last, value, std::chars_format::fixed)
                                              : std::to_chars(buffer.data(), last, value);
    return {buffer.data(), result.ptr};
}

} // namespace

double LeadingReal(std::string_view text) { return DecimalReal(TrimLeft(text), false); }

std::int32_t LeadingInt32(std::string_view text) {
    // Nearly every number of a patch is a few digits, which need no detour through a real number.
    const std::string_view number = TrimLeft(text);
    const bool negative = number.starts_with('-');
    const std::size_t begin = negative ? 1 : 0;
    const std::size_t end = SkipDigits(number, begin);
    if (end - begin > digitsInRange || (end < number.size() && number[end] == '.') || number.starts_with('+'))
        return RoundToInt32(LeadingReal(number));
    std::int32_t value = 0;
    for (std::size_t at = begin; at < end; ++at)
        value = value * 10 + (number[at] - '0');
    return negative ? -value : value;
}

std::int32_t EngineInt32(std::string_view text) {
    text = SkipBlanks(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    if (text.size() == 1 || !text.starts_with('0')) { // nearly every number of a patch
        const std::size_t most = std::min(text.size(), digitsInRange + 1);
        std::uint32_t value = 0;
        std::size_t at = 0;
        for (; at < most && IsDigit(text[at]); ++at)
            value = value * 10 + static_cast<std::uint32_t>(text[at] - '0');
        if (at <= digitsInRange)
            return static_cast<std::int32_t>(negative ? 0 - value : value);
    }
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && ToLower(text[1]) == 'x') {
        base = 16;
        text.remove_prefix(2);
    } else if (text.starts_with('0')) {
        base = 8;
    }
    std::uint64_t value = 0;
    const std::uint64_t limit = std::uint64_t{std::numeric_limits<std::int64_t>::max()} + (negative ? 1 : 0);
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (read.ec == std::errc::result_out_of_range || value > limit)
        value = limit;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(negative ? 0 - value : value));
}

std::int32_t RoundToInt32(double value) {
    if (std::isnan(value))
        return 0;
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(std::nearbyint(value), lowest, highest));
}

double ConfigurationNumber(std::string_view text) {
    const std::size_t sign = text.starts_with('-') ? 1 : 0;
    if (text.size() - sign <= digitsInRange && SkipDigits(text, sign) == text.size()) // nearly every number
        return LeadingInt32(text);
    std::string number(text);
    std::erase_if(number, [](char character) { return character == ' ' || character == '\t' || character == '\n'; });
    if (number.size() > 1 && number[0] == '&') {
        if (ToLower(number[1]) == 'h')
            return PrefixedReal(std::string_view(number).substr(2), 16);
        if (ToLower(number[1]) == 'o')
            return PrefixedReal(std::string_view(number).substr(2), 8);
    }
    return DecimalReal(number, true);
}

std::string RealText(double value) { return ShortestText(value); }

std::string RealText(float value) { return ShortestText(value); }

} // namespace plinket3
