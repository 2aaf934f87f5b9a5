#pragma once

#include "core/modConfig.h"
#include "patch/Cells.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace plinket3 {

/// What a number means: how people write it, what it refers to, and which numbers it can be.
struct ValueMeaning {
    enum class Kind {
        Number,
        Fixed16,   // 16.16 fixed point
        FastSpeed, // the same; -1, as it is stored, stands for the normal speed
        Angle,     // degrees in 16.16 fixed point
        Degrees,   // whole degrees
        Truth,     // 0: no, 1: yes; what else there is counts as yes
        Ammo,      // a kind of ammunition, ...
        Weapon,    // ... a weapon, ...
        Item,      // ... what a thing gives, ...
        Category,  // ... or how much of it; -1 for none of them
        Thing,     // counted from 1, 0 for none
        State,
        Sound,
        Bits,
        LumpName, // no number, but a text: up to 8 characters, ...
        StringKey // ... or a key of [STRINGS]
    };
    Kind kind = Kind::Number;
    Limits limits{};              // of the number as it is stored
    BitSet bits = BitSet::Things; // for `Bits`
};

/// The meaning of a cell that is a row of its kind's table, a text field or the helper; of a speed it depends on the
/// thing's bits.
ValueMeaning MeaningOf(const PatchSet& set, const Cell& cell);
ValueMeaning MeaningOf(const PatchSet& set, const EngineConfiguration::Argument& argument);

/// The thing that a number of a patch stands for; absent for 0, which is none.
constexpr std::optional<std::int32_t> ThingOf(std::int32_t number) {
    return number == 0 || number == INT32_MIN ? std::nullopt : std::optional(number - 1);
}

/// What a number that is typed as 1 is as it is stored.
double UnitOf(const ValueMeaning& meaning);
bool RefersToRecord(const ValueMeaning& meaning);
inline bool IsName(const ValueMeaning& meaning) {
    return meaning.kind == ValueMeaning::Kind::LumpName || meaning.kind == ValueMeaning::Kind::StringKey;
}

/// What a number can stand for, by name, where that are few things; none for another meaning.
std::vector<EngineConfiguration::Choice> ChoicesOf(const PatchSet& set, const EngineConfiguration& engine,
                                                   const ValueMeaning& meaning);

/// A number as it is typed: 12.5, -45, "RIP + BOSS"; one beyond the limits, too. `ReadValue` gives it back.
std::string ValueText(const EngineConfiguration& engine, const ValueMeaning& meaning, std::int32_t value);
/// What a number stands for, as lists show it: "Imp", "pistol", "45(degree sign)", "yes".
std::string ValueName(const PatchSet& set, const EngineConfiguration& engine, const ValueMeaning& meaning,
                      std::int32_t value);

struct TypedValue {
    std::optional<std::int32_t> number; // absent when the text is none, or the beginning of one
    std::string refusal;                // why it can become none, in a sentence; empty when it can
};
/// What is typed for such a value. Bits are read by name, upper and lower case alike, or as a number of any sign.
TypedValue ReadValue(const EngineConfiguration& engine, const ValueMeaning& meaning, std::string_view text);

/// Why a text cannot be such a name, in a sentence; empty when it can.
std::string WhyNot(const ValueMeaning& meaning, std::string_view name);

} // namespace plinket3
