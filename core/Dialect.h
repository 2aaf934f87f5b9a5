#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace plinket3 {

/// By which rules a patch is read and saved: those that this program has always had, or those of game engines.
enum class Rules { Kept, Engine };

/// Which fields an engine knows: those of its level and of all before it.
enum class FieldLevel { Doom, Dehextra, Mbf21, Id24 };

/// The sets of bits that fields hold by name.
enum class BitSet { Things, Things21, States21, Weapons21, Things24 };
inline constexpr std::size_t bitSetCount = 5;
/// Those of weapons are written as a number alone: the newest woof reads names there as 0.
constexpr bool IsWrittenByName(BitSet set) { return set != BitSet::Weapons21; }

/// How the headers of a kind of records begin, and from which number they count.
struct SectionRule {
    std::string_view word;
    std::int32_t firstWritten = 0, firstRead = 0;
};

/// How patches for an engine are written and read. An engine has one; what stands here as a default is what both normal
/// and extended patches have in common. docs/formats.md draws them.
struct Dialect {
    Rules rules = Rules::Kept;
    bool engineRulesOnly = false; // the configuration asks for them, whatever the user does
    std::string_view firstLine = "Patch File for DeHackEd v3.0"; // without it a file is no patch
    std::int32_t patchFormat = 6;                                // the only "Patch format = " that is read
    char comment = '#';                                          // ends a header line, and begins a line that is none

    SectionRule things{"Thing", 1, 1};
    SectionRule states{"Frame"};
    // Kept: sounds are written from 1 but read from 0, so a section comes back one sound later. docs/kept-behaviour.md
    SectionRule sounds{"Sound", 1, 0};
    SectionRule pointers{"Pointer"};
    SectionRule weapons{"Weapon"};
    SectionRule ammo{"Ammo"};
    std::string_view cheats = "Cheat", misc = "Misc", codePointers = "[CODEPTR]", pars = "[PARS]",
                     strings = "[STRINGS]", texts = "Text";
    std::array<std::string_view, 2> unsupported{"Sprite", "Include"}; // are told of, and lost by a save

    FieldLevel fields = FieldLevel::Doom;       // that patches may have
    FieldLevel engineFields = FieldLevel::Doom; // the same by the rules of game engines
    std::string_view fileEnding = ".deh";
    bool namedCodePointers =
        false;               // [CODEPTR] gives any state a code pointer by name, else Pointer one of another state
    bool keyedTexts = false; // [STRINGS] and its keys, which the configuration holds; else Text quotes a table's texts
    bool namedBits = false;  // flags are written by name, else as a number
    bool limitedCheats = true; // a cheat has just the room of the original
    bool unlimited = false;    // patches make things, states, sounds and sprites of any number from 0 up

    /// Extended patches (.bex).
    static constexpr Dialect Extended() {
        Dialect dialect;
        dialect.fileEnding = ".bex";
        dialect.namedCodePointers = dialect.keyedTexts = dialect.namedBits = true;
        dialect.limitedCheats = false;
        return dialect;
    }
    static constexpr Dialect Of(bool extended) { return extended ? Extended() : Dialect(); }
    constexpr bool IsExtended() const { return keyedTexts; }

    /// The same, by the rules of game engines.
    constexpr Dialect AsEngines() const {
        Dialect dialect = *this;
        dialect.rules = Rules::Engine;
        dialect.sounds = {"Sound"};
        dialect.fields = engineFields;
        return dialect;
    }
    /// The same by `rules`, or by those of game engines where it has no others.
    constexpr Dialect By(Rules wanted) const {
        if (wanted == Rules::Engine || engineRulesOnly)
            return AsEngines();
        Dialect kept = Of(IsExtended());
        kept.engineFields = engineFields;
        return kept;
    }
    bool EngineRules() const { return rules == Rules::Engine; }
};

/// Whether an engine has the helper that patches choose by [HELPER].
inline bool HasHelper(const Dialect& dialect) { return dialect.EngineRules() && dialect.fields >= FieldLevel::Mbf21; }

} // namespace plinket3
