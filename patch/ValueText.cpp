#include "patch/ValueText.h"

#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/EngineNames.h"
#include "patch/NewRecords.h"
#include "patch/StepNames.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace plinket3 {

namespace {

using Kind = ValueMeaning::Kind;
using Argument = EngineConfiguration::Argument;

constexpr double one = 65536; // of 16.16 fixed point
constexpr std::int32_t normalSpeed = -1;

bool IsFixed(Kind kind) { return kind == Kind::Fixed16 || kind == Kind::FastSpeed || kind == Kind::Angle; }

/// With as few digits behind the point as tell it from its neighbours.
std::string FixedText(std::int32_t value) {
    constexpr int mostDigits = 5;
    std::array<char, 32> text{};
    for (int digits = 0;; ++digits) {
        const auto end =
            std::to_chars(text.data(), text.data() + text.size(), value / one, std::chars_format::fixed, digits).ptr;
        const std::string_view written(text.data(), static_cast<std::size_t>(end - text.data()));
        if (digits == mostDigits || std::nearbyint(LeadingReal(written) * one) == value)
            return std::string(written);
    }
}

std::string Shown(Kind kind, std::int32_t value) { return IsFixed(kind) ? FixedText(value) : std::to_string(value); }

std::string BeyondLimits(const ValueMeaning& meaning) {
    const std::string between =
        Shown(meaning.kind, meaning.limits.lowest) + " to " + Shown(meaning.kind, meaning.limits.highest);
    switch (meaning.kind) {
    case Kind::Thing:
        return "Things go from " + std::to_string(meaning.limits.lowest < 0 ? meaning.limits.lowest : 1) + " to " +
               std::to_string(meaning.limits.highest) + ", and 0 is none.";
    case Kind::State:
        return "Frames go from " + between + ".";
    case Kind::Sound:
        return "Sounds go from " + between + ".";
    default:
        return "What may stand here goes from " + between + ".";
    }
}

/// Whether `text` is a number, or the beginning of one.
bool LooksLikeNumber(std::string_view text, bool fraction) {
    if (text.starts_with('-') || text.starts_with('+'))
        text.remove_prefix(1);
    const std::size_t point = fraction ? text.find('.') : std::string_view::npos;
    std::string digits(text.substr(0, point));
    if (point != std::string_view::npos)
        digits += text.substr(point + 1);
    return digits.find_first_not_of("0123456789") == std::string::npos;
}

bool HasDigit(std::string_view text) { return text.find_first_of("0123456789") != std::string_view::npos; }

TypedValue ReadNumber(const ValueMeaning& meaning, std::string_view text) {
    const bool fixed = IsFixed(meaning.kind);
    if (!LooksLikeNumber(text, fixed))
        return {{}, fixed ? "A number stands here, such as 12 or 12.5." : "A whole number stands here."};
    if (text.starts_with('-') && meaning.limits.lowest >= 0)
        return {{}, BeyondLimits(meaning)};
    if (!HasDigit(text))
        return {};
    if (text.starts_with('+'))
        text.remove_prefix(1);
    const double typed = LeadingReal(text);
    if (meaning.kind == Kind::FastSpeed && typed == normalSpeed)
        return {normalSpeed, {}};
    const double stored = std::nearbyint(typed * UnitOf(meaning));
    if (stored < meaning.limits.lowest || stored > meaning.limits.highest)
        return {{}, BeyondLimits(meaning)};
    return {static_cast<std::int32_t>(stored), {}};
}

bool BeginsName(const EngineConfiguration& engine, BitSet set, std::string_view word) {
    return std::ranges::any_of(engine.BitNames(set), [word](const std::string& name) {
        return EqualIgnoringCase(std::string_view(name).substr(0, word.size()), word);
    });
}

TypedValue ReadBits(const EngineConfiguration& engine, BitSet set, std::string_view text) {
    const std::string_view trimmed = Trim(text);
    if (LooksLikeNumber(trimmed, false)) {
        if (!HasDigit(trimmed))
            return {};
        const double typed = LeadingReal(trimmed);
        if (typed < INT32_MIN || typed > UINT32_MAX)
            return {{}, "Bits are numbers of 32 bits."};
        return {static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(typed))), {}};
    }
    const std::vector<std::string_view> words = BitWords(text);
    std::int32_t bits = 0;
    for (const std::string_view& word : words) {
        const auto bit = BitNamed(engine, set, word);
        const bool last = &word == &words.back() && text.ends_with(word);
        if (!bit && last && BeginsName(engine, set, word))
            return {};
        if (!bit)
            return {{}, "The engine has no bit \"" + std::string(word) + "\" here."};
        bits = modPatchText::SetFlag(bits, *bit);
    }
    return {bits, {}};
}

/// -1 stands for none, also where there is a record of that number.
template <class Record> std::vector<EngineConfiguration::Choice> NamesOf(const NumberedList<Record>& records) {
    std::vector<EngineConfiguration::Choice> names{{-1, "none"}};
    for (const auto& [number, record] : records)
        if (number != -1)
            names.push_back({number, record.name});
    return names;
}

template <class Record> Limits NumbersOf(const NumberedList<Record>& records) {
    return {records.Lowest(), records.Highest()};
}

ValueMeaning ReferenceTo(const PatchSet& set, Kind kind) {
    if (kind == Kind::State)
        return {kind, NumbersOf(set.states)};
    if (kind == Kind::Sound)
        return {kind, NumbersOf(set.sounds)};
    return {kind, LimitsOf(set, RecordKind::Thing, RowOf(&ThingRecord::droppedItem))};
}

} // namespace

ValueMeaning MeaningOf(const PatchSet& set, const Cell& cell) {
    if (const TextField* text = TextFieldAt(cell.field))
        return {text->unit == TextField::Unit::LumpName ? Kind::LumpName : Kind::StringKey};
    if (cell.field == helperField)
        return ReferenceTo(set, Kind::Thing);
    const RowFacts facts = FactsOf(cell.kind, cell.field);
    switch (facts.unit) {
    case FieldUnit::Thing:
        return ReferenceTo(set, Kind::Thing);
    case FieldUnit::State:
        return ReferenceTo(set, Kind::State);
    case FieldUnit::Sound:
        return ReferenceTo(set, Kind::Sound);
    case FieldUnit::Flags:
        return {Kind::Bits, {}, facts.bits};
    case FieldUnit::Fixed16:
        return {Kind::Fixed16, facts.limits};
    case FieldUnit::ProjectileSpeed: {
        const bool fixed = modPatchText::GetFlag(RecordOrNew(set.things, cell.index)->bits, projectileBit);
        const bool fast = cell.field == RowOf(&ThingRecord::fastSpeed);
        return {!fixed ? Kind::Number : fast ? Kind::FastSpeed : Kind::Fixed16, facts.limits};
    }
    case FieldUnit::Truth:
        return {Kind::Truth, facts.limits};
    case FieldUnit::Ammo:
        return {Kind::Ammo};
    case FieldUnit::Weapon:
        return {Kind::Weapon};
    case FieldUnit::PickupItem:
        return {Kind::Item};
    case FieldUnit::PickupCategory:
        return {Kind::Category};
    default:
        return {Kind::Number, LimitsOf(set, cell.kind, cell.field)};
    }
}

ValueMeaning MeaningOf(const PatchSet& set, const Argument& argument) {
    switch (argument.kind) {
    case Argument::Kind::Unsigned:
        return {Kind::Number, {0, INT32_MAX}};
    case Argument::Kind::Fixed16:
        return {Kind::Fixed16};
    case Argument::Kind::Angle:
        return {Kind::Angle};
    case Argument::Kind::Degrees:
        return {Kind::Degrees};
    case Argument::Kind::Flag:
        return {Kind::Truth};
    case Argument::Kind::Thing:
        return ReferenceTo(set, Kind::Thing);
    case Argument::Kind::State:
        return ReferenceTo(set, Kind::State);
    case Argument::Kind::Sound:
        return ReferenceTo(set, Kind::Sound);
    case Argument::Kind::Bits:
        return {Kind::Bits, {}, BitSet::Things};
    case Argument::Kind::Bits21:
        return {Kind::Bits, {}, BitSet::Things21};
    default:
        return {};
    }
}

double UnitOf(const ValueMeaning& meaning) { return IsFixed(meaning.kind) ? one : 1; }

bool RefersToRecord(const ValueMeaning& meaning) {
    return meaning.kind == Kind::Thing || meaning.kind == Kind::State || meaning.kind == Kind::Sound;
}

std::vector<EngineConfiguration::Choice> ChoicesOf(const PatchSet& set, const EngineConfiguration& engine,
                                                   const ValueMeaning& meaning) {
    switch (meaning.kind) {
    case Kind::Truth:
        return {{0, "no"}, {1, "yes"}};
    case Kind::Ammo:
        return NamesOf(set.ammo);
    case Kind::Weapon:
        return NamesOf(set.weapons);
    case Kind::Item:
        return engine.pickupItems;
    case Kind::Category:
        return engine.pickupCategories;
    default:
        return {};
    }
}

std::string ValueText(const EngineConfiguration& engine, const ValueMeaning& meaning, std::int32_t value) {
    if (meaning.kind == Kind::FastSpeed && value == normalSpeed)
        return std::to_string(value);
    if (meaning.kind != Kind::Bits)
        return Shown(meaning.kind, value);
    const std::vector<std::string>& names = engine.BitNames(meaning.bits);
    return modPatchText::FormatBits(value, modPatchText::AllNamed(names, value), names);
}

std::string ValueName(const PatchSet& set, const EngineConfiguration& engine, const ValueMeaning& meaning,
                      std::int32_t value) {
    constexpr std::string_view degreeSign = "\xb0";
    switch (meaning.kind) {
    case Kind::Thing: {
        const auto thing = ThingOf(value);
        return value == 0                        ? "none"
               : thing && set.things.Has(*thing) ? RecordName(set, RecordKind::Thing, *thing)
                                                 : "thing " + std::to_string(value);
    }
    case Kind::Sound:
        return value == 0 ? "none" : set.SoundName(value).empty() ? std::to_string(value) : set.SoundName(value);
    case Kind::Angle:
    case Kind::Degrees:
        return Shown(meaning.kind, value) + std::string(degreeSign);
    case Kind::Truth:
        return value == 0 ? "no" : "yes";
    default:
        return ValueText(engine, meaning, value);
    }
}

TypedValue ReadValue(const EngineConfiguration& engine, const ValueMeaning& meaning, std::string_view text) {
    return meaning.kind == Kind::Bits ? ReadBits(engine, meaning.bits, text) : ReadNumber(meaning, Trim(text));
}

std::string WhyNot(const ValueMeaning& meaning, std::string_view name) {
    constexpr std::size_t longestLump = 8;
    constexpr std::string_view inLumps = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_[]\\^";
    const bool lump = meaning.kind == Kind::LumpName;
    if (lump && name.size() > longestLump)
        return "Names of lumps have up to " + std::to_string(longestLump) + " characters.";
    if (lump && name.find_first_not_of(inLumps) != std::string_view::npos)
        return "Names of lumps are made of letters, digits and -_[]\\^.";
    const auto ends = [](char character) { return character <= ' ' || character > '~' || character == '='; };
    if (std::ranges::any_of(name, ends))
        return "Keys of strings are made of letters, digits and signs, without blanks and =.";
    return {};
}

} // namespace plinket3
