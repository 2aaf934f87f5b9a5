#pragma once

#include "core/Dialect.h"
#include "patch/NumberedList.h"
#include "patch/modTableDef.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace plinket3 {

/// A number that no record has.
inline constexpr std::int32_t noRecord = -1;

using RecordId = std::pair<RecordKind, std::int32_t>; // kind and number

/// What notes say, by the record they belong to; that of the patch as a whole stands under the par list.
using Notes = std::map<RecordId, std::string>;

/// What text fields hold, by kind, number and the field's place in `textFields`; none is empty.
using Texts = std::map<std::tuple<RecordKind, std::int32_t, int>, std::string>;

/// The engines' own music, from number 1.
NumberedList<MusicRecord> EngineMusic();

/// One set of records: an engine's own, or what a patch makes of them.
struct PatchSet {
    NumberedList<ThingRecord> things;
    NumberedList<StateRecord> states;
    NumberedList<SoundRecord> sounds;
    NumberedList<SpriteRecord> sprites;
    NumberedList<StringRecord> strings;
    NumberedList<WeaponRecord> weapons;
    NumberedList<AmmoRecord> ammo;
    NumberedList<CheatRecord> cheats;
    NumberedList<MusicRecord> music = EngineMusic();
    MiscRecord misc;
    std::vector<ParRecord> pars; // empty in the default set
    Notes notes;                 // of a patch by engine rules; none is empty
    Texts texts;
    bool operator==(const PatchSet&) const = default;

    /// A sound's name without the blanks and NULs that fill its six characters; empty for an index beyond the sounds.
    std::string SoundName(std::int32_t sound) const;
    /// A sprite's four characters; empty for an index beyond the sprites.
    std::string_view SpriteName(std::int32_t sprite) const;
    /// What a text field holds; empty for one that holds nothing.
    std::string_view TextOf(RecordKind kind, std::int32_t number, int textField) const;
};

/// A kind of records of which a set has a list.
template <class RecordType> struct ListKind {
    using Record = RecordType;
    RecordKind kind;
    std::string_view plural;
    NumberedList<Record> PatchSet::*records;
    SectionRule Dialect::*section = nullptr; // in patches; null for a kind without sections by number

    auto& In(PatchSet& set) const { return set.*records; }
    const auto& In(const PatchSet& set) const { return set.*records; }
};

/// All of them, in the order of table files and patches; music is the same in every engine and stands in no table.
inline constexpr std::tuple listKinds{
    ListKind<ThingRecord>{RecordKind::Thing, "things", &PatchSet::things, &Dialect::things},
    ListKind<StateRecord>{RecordKind::State, "states", &PatchSet::states, &Dialect::states},
    ListKind<SoundRecord>{RecordKind::Sound, "sounds", &PatchSet::sounds, &Dialect::sounds},
    ListKind<SpriteRecord>{RecordKind::Sprite, "sprites", &PatchSet::sprites},
    ListKind<StringRecord>{RecordKind::String, "strings", &PatchSet::strings},
    ListKind<WeaponRecord>{RecordKind::Weapon, "weapons", &PatchSet::weapons, &Dialect::weapons},
    ListKind<AmmoRecord>{RecordKind::Ammo, "ammo", &PatchSet::ammo, &Dialect::ammo},
    ListKind<CheatRecord>{RecordKind::Cheat, "cheats", &PatchSet::cheats},
    ListKind<MusicRecord>{RecordKind::Music, "music", &PatchSet::music},
};

/// Calls visit(listKind) for each of them.
template <class Visit> constexpr void VisitKinds(Visit visit) {
    std::apply([&visit](const auto&... kinds) { (visit(kinds), ...); }, listKinds);
}

/// The same for those of table files.
template <class Visit> constexpr void VisitTableKinds(Visit visit) {
    VisitKinds([&visit]<class Record>(const ListKind<Record>& kind) {
        if constexpr (!std::is_same_v<Record, MusicRecord>)
            visit(kind);
    });
}

/// Calls visit(listKind) for one of them; does nothing for the kinds that are no list of records.
template <class Visit> constexpr void VisitKind(RecordKind kind, Visit visit) {
    VisitKinds([kind, &visit](const auto& each) {
        if (each.kind == kind)
            visit(each);
    });
}

template <class Kind> using RecordOf = typename std::remove_cvref_t<Kind>::Record;

/// Things, weapons and ammunition have names of any length.
template <class Record> inline constexpr bool isNamed = false;
template <> inline constexpr bool isNamed<ThingRecord> = true;
template <> inline constexpr bool isNamed<WeaponRecord> = true;
template <> inline constexpr bool isNamed<AmmoRecord> = true;

/// Sprites, sounds and music have the names of their lumps, in fields of few characters.
template <class Record> inline constexpr bool hasLumpName = false;
template <> inline constexpr bool hasLumpName<SoundRecord> = true;
template <> inline constexpr bool hasLumpName<SpriteRecord> = true;
template <> inline constexpr bool hasLumpName<MusicRecord> = true;
inline constexpr std::array lumpNamedKinds{RecordKind::Sprite, RecordKind::Sound, RecordKind::Music};
constexpr bool HasLumpName(RecordKind kind) { return std::ranges::find(lumpNamedKinds, kind) != lumpNamedKinds.end(); }

/// Puts a lump's name into its field, as far as that has room.
template <std::size_t size> void PutLumpName(std::array<char, size>& field, std::string_view name) {
    field.fill('\0');
    std::copy_n(name.begin(), std::min(name.size(), size), field.begin());
}

class PatchDocument;

/// The open patch: an engine's own data, what the patch makes of it, and where it came from.
struct PatchData {
    PatchSet defaults; // the engine's, never changed by editing
    PatchSet current;
    std::filesystem::path fileName;
    std::string lump;     // in a WAD, as a `PatchPlace` names it; empty when the file is the patch
    bool named = false;   // the file name is one that the user chose
    bool changed = false; // there are unsaved changes
    std::int32_t doomVersion = 0, patchFormat = Dialect().patchFormat;
    std::shared_ptr<const PatchDocument> document; // by engine rules: the file as it was opened; null for a new patch
    std::string engineConfig;                      // the configuration's file name without its folder
    std::string iwadPath;
    std::vector<std::string> dataWadPaths; // later ones replace what earlier ones have
};

} // namespace plinket3
