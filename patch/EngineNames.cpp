#include "patch/EngineNames.h"

#include "patch/modPatchText.h"

#include <algorithm>
#include <array>

namespace plinket3 {

namespace {

constexpr std::string_view bitSeparators = "+|, \t";

struct BitAlias {
    std::string_view name;
    int bit;
};
/// Where engines differ, what most players' one does: for it UNUSED2 and UNUSED3 are bits without meaning.
constexpr std::array bitAliases{BitAlias{"TRANSLATION", 26}, BitAlias{"TRANSLATION1", 26}, BitAlias{"TRANSLATION2", 27},
                                BitAlias{"UNUSED1", 27}, BitAlias{"UNUSED4", 31}};

} // namespace

std::vector<std::string_view> BitWords(std::string_view value) {
    std::vector<std::string_view> words;
    for (std::size_t at = value.find_first_not_of(bitSeparators); at < value.size();) {
        const std::size_t end = std::min(value.find_first_of(bitSeparators, at), value.size());
        words.push_back(value.substr(at, end - at));
        at = std::min(value.find_first_not_of(bitSeparators, end), value.size());
    }
    return words;
}

std::optional<int> BitNamed(const EngineConfiguration& engine, BitSet set, std::string_view name) {
    const std::vector<std::string>& known = engine.BitNames(set);
    for (std::size_t bit = 0; bit < known.size(); ++bit)
        if (!known[bit].empty() && EqualIgnoringCase(known[bit], name))
            return static_cast<int>(bit);
    if (set != BitSet::Things)
        return std::nullopt;
    const auto alias =
        std::ranges::find_if(bitAliases, [name](const BitAlias& row) { return EqualIgnoringCase(row.name, name); });
    return alias == bitAliases.end() ? std::nullopt : std::optional(alias->bit);
}

std::string BitsText(const EngineConfiguration& engine, BitSet set, std::int32_t bits) {
    const std::vector<std::string>& names = engine.BitNames(set);
    const bool named = IsWrittenByName(set) && (!engine.dialect.EngineRules() || modPatchText::AllNamed(names, bits));
    return modPatchText::FormatBits(bits, engine.dialect.namedBits && named, names);
}

std::string EngineText(std::string_view escaped) {
    std::string text;
    text.reserve(escaped.size());
    for (std::size_t at = 0; at < escaped.size(); ++at) {
        const bool feed = escaped[at] == '\\' && at + 1 < escaped.size() && ToLower(escaped[at + 1]) == 'n';
        text += feed ? '\n' : escaped[at];
        at += feed ? 1 : 0;
    }
    return text;
}

std::optional<std::string> EngineEscape(std::string_view text, std::string_view lineEnd) {
    constexpr std::size_t longestLine = 900; // engines cut lines at about a thousand characters
    constexpr std::string_view space = " \t\r\v\f\n";
    if (text.empty() || space.substr(0, 2).find(text.front()) != std::string_view::npos || text.ends_with('\\') ||
        (text.back() != '\n' && space.find(text.back()) != std::string_view::npos) ||
        text.find('\r') != std::string_view::npos || text.find("\\n") != std::string_view::npos ||
        text.find("\\N") != std::string_view::npos)
        return std::nullopt;
    std::string escaped;
    std::size_t lineLength = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool feed = text[at] == '\n';
        if (feed)
            escaped += "\\n";
        else
            escaped += text[at];
        lineLength += feed ? 2 : 1;
        const char next = at + 1 < text.size() ? text[at + 1] : ' ';
        const bool mayBreak = next != ' ' && next != '\t' && next != '#' && next != '\n';
        if (lineLength >= longestLine && mayBreak && text[at] != '\\') {
            escaped += '\\';
            escaped += lineEnd;
            lineLength = 0;
        }
    }
    return escaped;
}

} // namespace plinket3
