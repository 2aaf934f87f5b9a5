#pragma once

#include "core/Text.h"
#include "core/modConfig.h"
#include "patch/PatchSet.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace plinket3 {

// How game engines part lines into keys and values and find what a name means.

struct EnginePairResult {
    std::string_view key, value; // `value` has no data when the line is no pair
};

/// "key = value". A blank before "=" belongs to the sign, a second one to the key. A line without "=" is no pair; one
/// with nothing behind it has an empty value. The value keeps its blanks.
inline EnginePairResult EnginePair(std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return {};
    std::string_view key = line.substr(0, equals);
    if (key.ends_with(' ') || key.ends_with('\t'))
        key.remove_suffix(1);
    return {SkipBlanks(key), line.substr(equals + 1)};
}

/// The names in a value of bits, parted by "+", vertical bars, commas, blanks and tabs.
std::vector<std::string_view> BitWords(std::string_view value);

/// The bit of `set` that a whole name stands for, upper and lower case alike: one of the engine's names, or another
/// that engines take for one; absent for an unknown one.
std::optional<int> BitNamed(const EngineConfiguration& engine, BitSet set, std::string_view name);

/// Bits of `set` as a new line of a patch has them: by name where the dialect and the set have names, else as a number.
/// By engine rules bits of which one has no name are a number, too.
std::string BitsText(const EngineConfiguration& engine, BitSet set, std::int32_t bits);

/// A text of [STRINGS] without its escapes: \n is a line feed, and there is no other.
std::string EngineText(std::string_view escaped);

/// A text as a value of [STRINGS]; absent when engines could not read it back: they know no empty text, no blanks at
/// either end, no carriage return, and no backslash at the end or before an "n". Long texts go on
/// behind backslashes, in lines that end with `lineEnd`; others do not, for dsda-doom writes beyond its memory for some
/// lengths of texts that go on.
std::optional<std::string> EngineEscape(std::string_view text, std::string_view lineEnd);

/// The record that has this name by default, upper and lower case alike; absent when none has.
template <class Record>
std::optional<std::int32_t> IndexByName(const NumberedList<Record>& defaults, std::string_view name) {
    for (const auto& [number, record] : defaults) {
        std::string_view stored(record.name.data(), record.name.size());
        stored = stored.substr(0, std::min(stored.find('\0'), stored.find(' ')));
        if (!stored.empty() && EqualIgnoringCase(stored, name))
            return number;
    }
    return std::nullopt;
}

} // namespace plinket3
