#include "patch/CheckFindings.h"

#include "core/Text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace plinket3::modPatchCheck {

namespace {

constexpr std::size_t longestQuote = 60;
/// What a saved string of the kept rules has and game engines do not undo.
constexpr std::array<std::string_view, 4> ownEscapes{"\\\\", "\\r", "\\t", "\\\""};
constexpr std::int32_t lastFrame = 31, lastAmmoType = 5;

} // namespace

std::string CheckFindings::Quoted(std::string_view text) {
    return "\"" + Printable(text.substr(0, longestQuote)) + (text.size() > longestQuote ? "...\"" : "\"");
}

std::vector<Finding> CheckFindings::TakeFindings() {
    std::stable_sort(places_.begin(), places_.end(),
                     [](const Place& left, const Place& right) { return left.offset < right.offset; });
    std::vector<Finding> findings;
    findings.reserve(places_.size());
    std::size_t line = 1, counted = 0;
    for (Place& place : places_) {
        line += LineAt(bytes_.substr(counted), place.offset - counted) - 1;
        counted = place.offset;
        findings.push_back({line, std::move(place.text)});
    }
    return findings;
}

void CheckFindings::Add(std::size_t offset, std::string_view reason) {
    std::string_view line = bytes_.substr(offset);
    line = line.substr(0, std::min(line.find('\n'), longestQuote * 2));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    places_.push_back({offset, Quoted(Trim(line)) + " " + std::string(reason)});
}

void CheckFindings::Escapes(std::size_t begin, std::size_t end) {
    std::string escapes;
    // Looked for line by line: a backslash that ends a line begins no escape in game engines.
    for (PatchLines lines(bytes_.substr(begin, end - begin)); !lines.AtEnd();) {
        std::string_view part = Trim(lines.Next());
        part.remove_suffix(part.ends_with('\\') ? 1 : 0);
        for (std::size_t at = part.find('\\'); at != std::string_view::npos; at = part.find('\\', at + 2)) {
            const std::string_view escape = part.substr(at, 2);
            if (std::ranges::find(ownEscapes, escape) != ownEscapes.end() && escapes.find(escape) == std::string::npos)
                escapes.append(escapes.empty() ? 0 : 1, ' ').append(escape);
        }
    }
    if (!escapes.empty())
        Add(begin, "has escapes that game engines show as they stand: " + escapes);
}

void CheckFindings::Reference(std::size_t offset, FieldUnit unit, std::int32_t value) {
    const auto beyond = [&](std::string_view what, std::size_t count) {
        if (value < 0 || static_cast<std::size_t>(value) >= count)
            Add(offset, "names a " + std::string(what) + " that does not exist; the last one is " +
                            std::to_string(static_cast<std::int64_t>(count) - 1));
    };
    switch (unit) {
    case FieldUnit::State:
        return beyond("frame", defaults_.states.size());
    case FieldUnit::Sound:
        return beyond("sound", defaults_.sounds.size());
    case FieldUnit::Sprite:
        return beyond("sprite", defaults_.sprites.size());
    case FieldUnit::Thing: // 0 is none
        if (value < 0 || static_cast<std::size_t>(value) > defaults_.things.size())
            Add(offset,
                "names a thing that does not exist; the last one is " + std::to_string(defaults_.things.size()));
        return;
    case FieldUnit::AmmoType:
        return beyond("kind of ammunition", lastAmmoType + 1);
    case FieldUnit::SpriteFrame:
        if ((value & ~litBit) < 0 || (value & ~litBit) > lastFrame)
            Add(offset, "names a sprite's frame beyond the last possible one, " + std::to_string(lastFrame));
        return;
    case FieldUnit::Infight:
        if (value != monstersFight && value != monstersDoNotFight)
            Add(offset, "is neither 202 (off) nor 221 (on)");
        return;
    default:
        return;
    }
}

} // namespace plinket3::modPatchCheck
