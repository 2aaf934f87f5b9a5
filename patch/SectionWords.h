#pragma once

#include "patch/LabelIndex.h"
#include "patch/PatchSet.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace plinket3 {

/// The sections of a patch.
enum class Section {
    None,
    Thing,
    Frame,
    Sound,
    Pointer,
    Weapon,
    Ammo,
    Cheat,
    Misc,
    CodePtr,
    Strings,
    Pars,
    Text,
    Sprites, // the names of sprites, sounds and music, and the helper
    Sounds,
    Music,
    Helper,
    Include,
    Unsupported
};

inline constexpr std::string_view spriteNames = "[SPRITES]", soundNames = "[SOUNDS]", musicNames = "[MUSIC]",
                                  helperSection = "[HELPER]", helperKey = "type";

/// The kind whose records a section selects by number; `Par` for the other sections.
inline RecordKind KindOf(Section section) {
    switch (section) {
    case Section::Thing:
        return RecordKind::Thing;
    case Section::Frame:
        return RecordKind::State;
    case Section::Sound:
        return RecordKind::Sound;
    case Section::Weapon:
        return RecordKind::Weapon;
    case Section::Ammo:
        return RecordKind::Ammo;
    default:
        return RecordKind::Par;
    }
}

/// Finds the section that a header line begins.
class SectionWords {
public:
    explicit SectionWords(const Dialect& dialect)
        : words_{{{dialect.things.word, Section::Thing},
                  {dialect.states.word, Section::Frame},
                  {dialect.sounds.word, Section::Sound},
                  {dialect.pointers.word, Section::Pointer},
                  {dialect.weapons.word, Section::Weapon},
                  {dialect.ammo.word, Section::Ammo},
                  {dialect.cheats, Section::Cheat},
                  {dialect.misc, Section::Misc},
                  {dialect.codePointers, Section::CodePtr},
                  {dialect.strings, Section::Strings},
                  {dialect.pars, Section::Pars},
                  {dialect.texts, Section::Text},
                  {dialect.unsupported[0], Section::Unsupported},
                  {dialect.unsupported[1], dialect.EngineRules() ? Section::Include : Section::Unsupported},
                  {dialect.EngineRules() ? spriteNames : "", Section::Sprites},
                  {dialect.EngineRules() ? soundNames : "", Section::Sounds},
                  {dialect.EngineRules() ? musicNames : "", Section::Music},
                  {dialect.EngineRules() ? helperSection : "", Section::Helper}}},
          index_(words_, [](const Entry& entry) { return entry.word; }) {}

    struct Entry {
        std::string_view word;
        Section section = Section::None;
    };

    /// The entry whose word `word` is, upper and lower case alike; null when there is none.
    const Entry* Named(std::string_view word) const {
        const int place = index_.Find(word);
        return place < 0 ? nullptr : &words_[static_cast<std::size_t>(place)];
    }
    /// The entry with whose word `line` begins, whatever follows it, as engines look for them.
    const Entry* Beginning(std::string_view line) const {
        for (const Entry& entry : words_)
            if (!entry.word.empty() && EqualIgnoringCase(line.substr(0, entry.word.size()), entry.word))
                return &entry;
        return nullptr;
    }

private:
    std::array<Entry, 18> words_;
    LabelIndex<64> index_;
};

/// Sections in brackets, which engines take up again behind an empty line.
inline bool IsBracketed(Section section) {
    switch (section) {
    case Section::CodePtr:
    case Section::Strings:
    case Section::Pars:
    case Section::Sprites:
    case Section::Sounds:
    case Section::Music:
    case Section::Helper:
        return true;
    default:
        return false;
    }
}

} // namespace plinket3
