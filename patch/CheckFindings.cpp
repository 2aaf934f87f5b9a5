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
        const std::optional<Cell> cell = CellOf(place.offset);
        const bool mends = place.mend && cell && cell->field != existsField;
        if (mends && cell->field >= 0 && FactsOf(cell->kind, cell->field).unit == FieldUnit::Argument)
            place.mend = Unset{}; // an argument that is given as none may be what an action stumbles over
        findings.push_back({line, std::move(place.text), place.severity, cell,
                            mends ? std::move(place.mend) : std::optional<CellValue>()});
    }
    return findings;
}

std::optional<Cell> CheckFindings::CellOf(std::size_t offset) const {
    const auto found = std::ranges::lower_bound(cells_, offset, {}, &std::pair<std::size_t, Cell>::first);
    return found != cells_.end() && found->first == offset ? std::optional(found->second) : std::nullopt;
}

void CheckFindings::Add(std::size_t offset, std::string_view reason, Severity severity, std::optional<CellValue> mend) {
    std::string_view line = bytes_.substr(offset);
    line = line.substr(0, std::min(line.find('\n'), longestQuote * 2));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    places_.push_back({offset, Quoted(Trim(line)) + " " + std::string(reason), severity, std::move(mend)});
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
    const Later reference{offset, unit, value};
    if (engine_.dialect.unlimited)
        later_.push_back(reference);
    else
        ReferenceIn(defaults_, reference);
}

void CheckFindings::FinishReferences(const PatchSet& set) {
    for (const Later& reference : later_)
        ReferenceIn(set, reference);
    later_.clear();
}

void CheckFindings::ReferenceIn(const PatchSet& set, const Later& reference) {
    const auto [offset, unit, value] = reference;
    const auto missing = [&, value = value](std::string_view what, const auto& records,
                                            const std::optional<CellValue>& none) {
        if (!records.Has(value))
            Add(reference.offset,
                "names a " + std::string(what) + " that does not exist" +
                    (engine_.dialect.unlimited
                         ? std::string()
                         : "; the last one is " + std::to_string(static_cast<std::int64_t>(records.DenseSize()) - 1)),
                Severity::Refused, none);
    };
    const auto isNone = [&, value = value](const std::vector<EngineConfiguration::Choice>& choices) {
        return std::ranges::find(choices, value, &EngineConfiguration::Choice::value) == choices.end();
    };
    switch (unit) {
    case FieldUnit::State:
        return missing("frame", set.states, 0);
    case FieldUnit::Sound:
        if (engine_.dialect.EngineRules() && value != 0 && set.sounds.Has(value) && set.SoundName(value).empty())
            return Add(offset, "names a sound without a name, which no engine can play", Severity::Refused, 0);
        return missing("sound", set.sounds, 0);
    case FieldUnit::Sprite:
        if (engine_.dialect.unlimited && set.SpriteName(value).find_first_not_of('\0') == std::string_view::npos)
            return Add(offset,
                       "shows a sprite without a name, which engines do not draw or stop at: it needs a line in "
                       "[SPRITES]",
                       Severity::Refused);
        return missing("sprite", set.sprites, std::nullopt);
    case FieldUnit::Thing: // counted from 1, 0 is none
        if (value != 0 && (value == INT32_MIN || !set.things.Has(value - 1)))
            Add(offset,
                "names a thing that does not exist; the last one is " + std::to_string(defaults_.things.DenseSize()),
                Severity::Refused, 0);
        return;
    case FieldUnit::AmmoType:
        if ((value < 0 || value > lastAmmoType) && !set.ammo.Has(value))
            Add(offset,
                "names a kind of ammunition that does not exist; the last one is " + std::to_string(lastAmmoType),
                Severity::Refused, lastAmmoType);
        return;
    case FieldUnit::Ammo:
        return value == noRecord ? void() : missing("kind of ammunition", set.ammo, noRecord);
    case FieldUnit::Weapon:
        return value == noRecord ? void() : missing("weapon", set.weapons, noRecord);
    case FieldUnit::PickupItem:
        if (isNone(engine_.pickupItems))
            Add(offset, "is the number of no item");
        return;
    case FieldUnit::PickupCategory:
        if (isNone(engine_.pickupCategories))
            Add(offset, "is the number of no category");
        return;
    case FieldUnit::Truth:
        if (value != 0 && value != 1)
            Add(offset, "is neither 1 nor 0", Severity::Wrong, 1);
        return;
    case FieldUnit::SpriteFrame:
        if ((value & ~litBit) < 0 || (value & ~litBit) > lastFrame)
            Add(offset, "names a sprite's frame beyond the last possible one, " + std::to_string(lastFrame),
                Severity::Refused);
        return;
    case FieldUnit::Infight:
        if (value != monstersFight && value != monstersDoNotFight)
            Add(offset, "is neither 202 (off) nor 221 (on)", Severity::Wrong, monstersDoNotFight);
        return;
    default:
        return;
    }
}

} // namespace plinket3::modPatchCheck
