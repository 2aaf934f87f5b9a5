#pragma once

#include "core/Dialect.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace plinket3 {

// The records of a patch. Every number is a signed 32-bit integer; state, sound and sprite numbers are indices from 0.
// The numbers that have rows in a field table stand in a base of their own, so that none can be without a row.

enum class RecordKind : std::uint8_t { Thing, State, Sound, Sprite, String, Weapon, Ammo, Cheat, Misc, Par, Music };

struct ThingNumbers {
    std::int32_t id = 0, initialState = 0, hitPoints = 0, firstMovingState = 0, alertSound = 0, reactionTime = 0,
                 attackSound = 0, injuryState = 0, painChance = 0, painSound = 0, closeAttackState = 0,
                 farAttackState = 0, deathState = 0, explodingState = 0, deathSound = 0, speed = 0, width = 0,
                 height = 0, mass = 0, missileDamage = 0, actionSound = 0, bits = 0, respawnState = 0;
    std::int32_t droppedItem = 0; // counted from 1, 0 for none
    std::int32_t infightingGroup = 0, projectileGroup = 0, splashGroup = 0, bits21 = 0, ripSound = 0;
    std::int32_t fastSpeed = -1; // for the normal speed
    std::int32_t meleeRange = 64 * 65536;
    std::int32_t bits24 = 0, minRespawnTics = 12 * 35, respawnDice = 4;
    std::int32_t pickupAmmoType = -1, pickupAmmoCategory = -1, pickupWeaponType = -1, pickupItemType = -1;
    std::int32_t pickupBonusCount = 6, pickupSound = 0, selfDamageFactor = 65536;
    bool operator==(const ThingNumbers&) const = default;
};
struct ThingRecord : ThingNumbers {
    std::string name;
    std::array<std::uint8_t, 9> extra{}; // carried unchanged
    std::uint32_t given = 0;             // which of the fields that may be unset have a number, by `Field::givenBit`
    bool operator==(const ThingRecord&) const = default;
};

struct StateNumbers {
    std::int32_t sprite = 0;
    std::int32_t subnumber = 0; // the frame; bit 15 is set when it is drawn fully lit
    std::int32_t duration = 0;  // in tics, 35 a second; -1 for ever
    std::int32_t action = 0;    // the code pointer value that the engine itself gives the state
    std::int32_t nextState = 0, unknown1 = 0, unknown2 = 0;
    std::int32_t arg1 = 0, arg2 = 0, arg3 = 0, arg4 = 0, arg5 = 0, arg6 = 0, arg7 = 0, arg8 = 0, bits21 = 0;
    bool operator==(const StateNumbers&) const = default;
};
struct StateRecord : StateNumbers {
    std::int32_t codePointer = 0; // what a patch makes of the action
    std::uint32_t given = 0;
    bool operator==(const StateRecord&) const = default;
};

struct SoundNumbers {
    std::int32_t offset = 0;
    std::int32_t zeroOne = 0; // singularity
    std::int32_t value = 0;   // priority
    std::int32_t zero1 = 0;   // address of the sound that is played in its place, 0 for none
    std::int32_t negOne1 = 0; // pitch
    std::int32_t negOne2 = 0; // volume
    std::int32_t zero2 = 0, zero3 = 0, zero4 = 0;
    bool operator==(const SoundNumbers&) const = default;
};
struct SoundRecord : SoundNumbers {
    std::array<char, 6> name{}; // filled up with blanks or NULs
    bool operator==(const SoundRecord&) const = default;
};

struct SpriteRecord {
    std::array<char, 4> name{};
    std::int32_t value = 0; // carried unchanged
    bool operator==(const SpriteRecord&) const = default;
};

struct WeaponNumbers {
    std::int32_t ammoType = 0, deselectState = 0, selectState = 0, bobbingState = 0, shootingState = 0, firingState = 0;
    std::int32_t ammoPerShot = 0, bits21 = 0;
    std::int32_t slot = -1, slotPriority = -1, switchPriority = -1, initialOwned = 0, initialRaised = 0;
    std::int32_t allowWithWeapon = -1, noneWithWeapon = -1, allowWithItem = -1, noneWithItem = -1;
    bool operator==(const WeaponNumbers&) const = default;
};
struct WeaponRecord : WeaponNumbers {
    std::string name;
    std::uint32_t given = 0;
    bool operator==(const WeaponRecord&) const = default;
};

struct AmmoNumbers {
    std::int32_t maxAmmo = 0, perAmmo = 0;
    std::int32_t initialAmmo = 0, maxUpgradedAmmo = 0, boxAmmo = 0, backpackAmmo = 0, weaponAmmo = 0, droppedAmmo = 0,
                 droppedBoxAmmo = 0, droppedBackpackAmmo = 0, droppedWeaponAmmo = 0, deathmatchWeaponAmmo = 0;
    std::int32_t skill1 = 2 * 65536, skill2 = 65536, skill3 = 65536, skill4 = 65536, skill5 = 2 * 65536;
    bool operator==(const AmmoNumbers&) const = default;
};
struct AmmoRecord : AmmoNumbers {
    std::string name;
    std::uint32_t given = 0;
    bool operator==(const AmmoRecord&) const = default;
};

struct MusicRecord {
    std::array<char, 6> name{}; // the lump's without D_, filled up with NULs
    bool operator==(const MusicRecord&) const = default;
};

struct StringRecord {
    std::int32_t position = 0; // carried unchanged
    std::int32_t length = 0;   // characters of the text
    std::string text;
    bool operator==(const StringRecord&) const = default;
};

struct CheatRecord {
    std::int32_t maximumLength = 0; // its low 16 bits: the length to which a patch pads the text; 0 for no limit
    std::string text;
    std::int32_t spare = 0; // carried unchanged
    bool operator==(const CheatRecord&) const = default;
};

struct MiscNumbers {
    std::int32_t initialHealth = 0, initialBullets = 0, maxHealth = 0, secondMaxHealth = 0, maxArmor = 0,
                 secondMaxArmor = 0, greenArmorClass = 0, blueArmorClass = 0, maxSoulsphere = 0,
                 secondMaxSoulsphere = 0, soulsphereHealth = 0, megasphereHealth = 0, godModeHealth = 0,
                 secondGodModeHealth = 0, idfaArmor = 0, idfaArmorClass = 0, idkfaArmor = 0, idkfaArmorClass = 0,
                 bfgCells = 0, spare1 = 0, spare2 = 0, monstersInfight = 0;
    bool operator==(const MiscNumbers&) const = default;
};
struct MiscRecord : MiscNumbers {
    std::int32_t helper = 0; // the thing that helps the player, counted from 1; 0 for the engine's own, a dog
    bool operator==(const MiscRecord&) const = default;
};

struct ParRecord {
    std::int32_t episode = 0; // 0 for a game whose levels are named MAPxx
    std::int32_t map = 0, seconds = 0;
    bool operator==(const ParRecord&) const = default;
};

/// What a field's number means: how it is shown, and what limits it beside `lowest` and `highest`.
enum class FieldUnit {
    Number,
    Fixed16,         // 16.16 fixed point
    ProjectileSpeed, // 16.16 fixed point for projectiles, whole units otherwise
    Flags,           // bits of the field's set
    Thing,           // a thing, counted from 1; 0 for none
    State,           // an index of a state, ...
    Sound,           // ... a sound, ...
    Sprite,          // ... a sprite
    SpriteFrame,     // a frame (0 to 31) with the lit bit
    AmmoType,        // of a weapon: ammunition, or 5 for none
    Ammo,            // ammunition, ...
    Weapon,          // ... a weapon, ...
    PickupItem,      // ... a number of the engine's list of items, ...
    PickupCategory,  // ... or of amounts; -1 for none of them
    Truth,           // 1 or 0
    CodePointer,
    Infight,  // 202 or 221
    Argument, // what it means is up to the state's action
};

/// How wide a field is in a table file. A byte is limited to 0..255 wherever it is stored.
enum class FieldWidth { Int32, Byte };

/// One row of a record kind's table; patch reader and writer, table files, comparing, restoring, editors and command
/// line walk these rows and know no field by any other way.
template <class Record> struct Field {
    std::string_view label; // as a patch writes it, without " = "
    std::int32_t Record::*member;
    FieldUnit unit = FieldUnit::Number;
    std::int32_t lowest = INT32_MIN, highest = INT32_MAX; // what an editor lets in
    bool inPatch = true;                                  // false: only in memory and in table files
    FieldWidth width = FieldWidth::Int32;
    std::int32_t Record::*secondCopy = nullptr; // a field that an engine wants set to the same value
    FieldLevel since = FieldLevel::Doom;        // the first engines that know it
    int givenBit = -1;                          // in the record's `given`, for a field that may be unset
    BitSet bits = BitSet::Things;               // whose names it is written by, for `Flags`
};

/// The number of a field; absent where it is unset, which is another value than every number.
using FieldValue = std::optional<std::int32_t>;

template <class Record> constexpr FieldValue ValueOf(const Record& record, const Field<Record>& field) {
    if constexpr (requires { record.given; })
        if (field.givenBit >= 0 && (record.given >> field.givenBit & 1U) == 0)
            return std::nullopt;
    return record.*field.member;
}
/// Unset, a field that may not be so stays as it is.
template <class Record> constexpr void SetValue(Record& record, const Field<Record>& field, FieldValue value) {
    if constexpr (requires { record.given; })
        if (field.givenBit >= 0) {
            const std::uint32_t bit = 1U << field.givenBit;
            record.given = value ? record.given | bit : record.given & ~bit;
            record.*field.member = value.value_or(0);
            return;
        }
    if (value)
        record.*field.member = *value;
}

inline constexpr std::int32_t litBit = 0x8000; // of a state's sprite subnumber
inline constexpr int projectileBit = 16;       // of a thing's bits
inline constexpr std::int32_t monstersFight = 221, monstersDoNotFight = 202;

template <class Record> inline constexpr std::array<Field<Record>, 0> fieldTable{};

namespace detail {
template <class Record> constexpr Field<Record> Bits21(BitSet bits) {
    return {.label = "MBF21 Bits",
            .member = &Record::bits21,
            .unit = FieldUnit::Flags,
            .since = FieldLevel::Mbf21,
            .bits = bits};
}
constexpr Field<ThingRecord> Group(std::string_view label, std::int32_t ThingNumbers::*member, int givenBit,
                                   std::int32_t lowest) {
    return {.label = label, .member = member, .lowest = lowest, .since = FieldLevel::Mbf21, .givenBit = givenBit};
}
template <class Record> constexpr Field<Record> Later24(std::string_view label, std::int32_t Record::*member,
                                                        FieldUnit unit = FieldUnit::Number,
                                                        std::int32_t lowest = INT32_MIN,
                                                        std::int32_t highest = INT32_MAX) {
    return {.label = label,
            .member = member,
            .unit = unit,
            .lowest = lowest,
            .highest = highest,
            .since = FieldLevel::Id24};
}
/// An amount of ammunition that an engine works out of others where it is unset.
constexpr Field<AmmoRecord> Amount(std::string_view label, std::int32_t AmmoNumbers::*member, int givenBit) {
    return {.label = label, .member = member, .since = FieldLevel::Id24, .givenBit = givenBit};
}
constexpr Field<StateRecord> Argument(std::string_view label, std::int32_t StateNumbers::*member, int givenBit) {
    return {.label = label,
            .member = member,
            .unit = FieldUnit::Argument,
            .since = FieldLevel::Mbf21,
            .givenBit = givenBit};
}
} // namespace detail

template <> inline constexpr std::array fieldTable<ThingRecord>{
    Field<ThingRecord>{"ID #", &ThingRecord::id},
    Field<ThingRecord>{"Initial frame", &ThingRecord::initialState, FieldUnit::State},
    Field<ThingRecord>{"Hit points", &ThingRecord::hitPoints},
    Field<ThingRecord>{"First moving frame", &ThingRecord::firstMovingState, FieldUnit::State},
    Field<ThingRecord>{"Alert sound", &ThingRecord::alertSound, FieldUnit::Sound},
    Field<ThingRecord>{"Reaction time", &ThingRecord::reactionTime},
    Field<ThingRecord>{"Attack sound", &ThingRecord::attackSound, FieldUnit::Sound},
    Field<ThingRecord>{"Injury frame", &ThingRecord::injuryState, FieldUnit::State},
    Field<ThingRecord>{"Pain chance", &ThingRecord::painChance},
    Field<ThingRecord>{"Pain sound", &ThingRecord::painSound, FieldUnit::Sound},
    Field<ThingRecord>{"Close attack frame", &ThingRecord::closeAttackState, FieldUnit::State},
    Field<ThingRecord>{"Far attack frame", &ThingRecord::farAttackState, FieldUnit::State},
    Field<ThingRecord>{"Death frame", &ThingRecord::deathState, FieldUnit::State},
    Field<ThingRecord>{"Exploding frame", &ThingRecord::explodingState, FieldUnit::State},
    Field<ThingRecord>{"Death sound", &ThingRecord::deathSound, FieldUnit::Sound},
    Field<ThingRecord>{"Speed", &ThingRecord::speed, FieldUnit::ProjectileSpeed},
    Field<ThingRecord>{"Width", &ThingRecord::width, FieldUnit::Fixed16},
    Field<ThingRecord>{"Height", &ThingRecord::height, FieldUnit::Fixed16},
    Field<ThingRecord>{"Mass", &ThingRecord::mass},
    Field<ThingRecord>{"Missile damage", &ThingRecord::missileDamage},
    Field<ThingRecord>{"Action sound", &ThingRecord::actionSound, FieldUnit::Sound},
    Field<ThingRecord>{"Bits", &ThingRecord::bits, FieldUnit::Flags},
    Field<ThingRecord>{"Respawn frame", &ThingRecord::respawnState, FieldUnit::State},
    Field<ThingRecord>{.label = "Dropped item",
                       .member = &ThingRecord::droppedItem,
                       .unit = FieldUnit::Thing,
                       .since = FieldLevel::Dehextra},
    detail::Group("Infighting group", &ThingRecord::infightingGroup, 0, 0),
    detail::Group("Projectile group", &ThingRecord::projectileGroup, 1, INT32_MIN), // below 0: no protection at all
    detail::Group("Splash group", &ThingRecord::splashGroup, 2, 0),
    detail::Bits21<ThingRecord>(BitSet::Things21),
    Field<ThingRecord>{
        .label = "Rip sound", .member = &ThingRecord::ripSound, .unit = FieldUnit::Sound, .since = FieldLevel::Mbf21},
    Field<ThingRecord>{.label = "Fast speed",
                       .member = &ThingRecord::fastSpeed,
                       .unit = FieldUnit::ProjectileSpeed,
                       .since = FieldLevel::Mbf21},
    Field<ThingRecord>{.label = "Melee range",
                       .member = &ThingRecord::meleeRange,
                       .unit = FieldUnit::Fixed16,
                       .since = FieldLevel::Mbf21},
    Field<ThingRecord>{.label = "ID24 Bits",
                       .member = &ThingRecord::bits24,
                       .unit = FieldUnit::Flags,
                       .since = FieldLevel::Id24,
                       .bits = BitSet::Things24},
    detail::Later24<ThingRecord>("Min respawn tics", &ThingRecord::minRespawnTics, FieldUnit::Number, 0),
    detail::Later24<ThingRecord>("Respawn dice", &ThingRecord::respawnDice, FieldUnit::Number, 0, 255),
    detail::Later24<ThingRecord>("Pickup ammo type", &ThingRecord::pickupAmmoType, FieldUnit::Ammo),
    detail::Later24<ThingRecord>("Pickup ammo category", &ThingRecord::pickupAmmoCategory, FieldUnit::PickupCategory),
    detail::Later24<ThingRecord>("Pickup weapon type", &ThingRecord::pickupWeaponType, FieldUnit::Weapon),
    detail::Later24<ThingRecord>("Pickup item type", &ThingRecord::pickupItemType, FieldUnit::PickupItem),
    detail::Later24<ThingRecord>("Pickup bonus count", &ThingRecord::pickupBonusCount),
    detail::Later24<ThingRecord>("Pickup sound", &ThingRecord::pickupSound, FieldUnit::Sound),
    detail::Later24<ThingRecord>("Self damage factor", &ThingRecord::selfDamageFactor, FieldUnit::Fixed16),
};

template <> inline constexpr std::array fieldTable<StateRecord>{
    Field<StateRecord>{"Sprite number", &StateRecord::sprite, FieldUnit::Sprite},
    Field<StateRecord>{"Sprite subnumber", &StateRecord::subnumber, FieldUnit::SpriteFrame, 0, 31},
    Field<StateRecord>{"Duration", &StateRecord::duration, FieldUnit::Number, -1, 999},
    // The action never stands in a patch: the code pointer table holds what a patch changes.
    Field<StateRecord>{"Action", &StateRecord::action, FieldUnit::CodePointer, INT32_MIN, INT32_MAX, false},
    Field<StateRecord>{"Next frame", &StateRecord::nextState, FieldUnit::State},
    // Kept: these limits are not symmetric. docs/kept-behaviour.md
    Field<StateRecord>{"Unknown 1", &StateRecord::unknown1, FieldUnit::Number, -32767, 32768},
    Field<StateRecord>{"Unknown 2", &StateRecord::unknown2, FieldUnit::Number, -32767, 32768},
    detail::Argument("Args1", &StateRecord::arg1, 0),
    detail::Argument("Args2", &StateRecord::arg2, 1),
    detail::Argument("Args3", &StateRecord::arg3, 2),
    detail::Argument("Args4", &StateRecord::arg4, 3),
    detail::Argument("Args5", &StateRecord::arg5, 4),
    detail::Argument("Args6", &StateRecord::arg6, 5),
    detail::Argument("Args7", &StateRecord::arg7, 6),
    detail::Argument("Args8", &StateRecord::arg8, 7),
    detail::Bits21<StateRecord>(BitSet::States21),
};

template <> inline constexpr std::array fieldTable<SoundRecord>{
    Field<SoundRecord>{"Offset", &SoundRecord::offset},      Field<SoundRecord>{"Zero/One", &SoundRecord::zeroOne},
    Field<SoundRecord>{"Value", &SoundRecord::value},        Field<SoundRecord>{"Zero 1", &SoundRecord::zero1},
    Field<SoundRecord>{"Neg. One 1", &SoundRecord::negOne1}, Field<SoundRecord>{"Neg. One 2", &SoundRecord::negOne2},
    Field<SoundRecord>{"Zero 2", &SoundRecord::zero2},       Field<SoundRecord>{"Zero 3", &SoundRecord::zero3},
    Field<SoundRecord>{"Zero 4", &SoundRecord::zero4},
};

template <> inline constexpr std::array fieldTable<WeaponRecord>{
    Field<WeaponRecord>{"Ammo type", &WeaponRecord::ammoType, FieldUnit::AmmoType},
    Field<WeaponRecord>{"Deselect frame", &WeaponRecord::deselectState, FieldUnit::State},
    Field<WeaponRecord>{"Select frame", &WeaponRecord::selectState, FieldUnit::State},
    Field<WeaponRecord>{"Bobbing frame", &WeaponRecord::bobbingState, FieldUnit::State},
    Field<WeaponRecord>{"Shooting frame", &WeaponRecord::shootingState, FieldUnit::State},
    Field<WeaponRecord>{"Firing frame", &WeaponRecord::firingState, FieldUnit::State},
    Field<WeaponRecord>{.label = "Ammo per shot",
                        .member = &WeaponRecord::ammoPerShot,
                        .lowest = 0,
                        .since = FieldLevel::Mbf21,
                        .givenBit = 0},
    detail::Bits21<WeaponRecord>(BitSet::Weapons21),
    detail::Later24<WeaponRecord>("Slot", &WeaponRecord::slot, FieldUnit::Number, -1, 9),
    detail::Later24<WeaponRecord>("Slot Priority", &WeaponRecord::slotPriority, FieldUnit::Number, -1),
    detail::Later24<WeaponRecord>("Switch Priority", &WeaponRecord::switchPriority, FieldUnit::Number, -1),
    detail::Later24<WeaponRecord>("Initial Owned", &WeaponRecord::initialOwned, FieldUnit::Truth, 0, 1),
    detail::Later24<WeaponRecord>("Initial Raised", &WeaponRecord::initialRaised, FieldUnit::Truth, 0, 1),
    detail::Later24<WeaponRecord>("Allow switch with owned weapon", &WeaponRecord::allowWithWeapon, FieldUnit::Weapon),
    detail::Later24<WeaponRecord>("No switch with owned weapon", &WeaponRecord::noneWithWeapon, FieldUnit::Weapon),
    detail::Later24<WeaponRecord>("Allow switch with owned item", &WeaponRecord::allowWithItem, FieldUnit::PickupItem),
    detail::Later24<WeaponRecord>("No switch with owned item", &WeaponRecord::noneWithItem, FieldUnit::PickupItem),
};

template <> inline constexpr std::array fieldTable<AmmoRecord>{
    Field<AmmoRecord>{"Max ammo", &AmmoRecord::maxAmmo, FieldUnit::Number, 0, 999999},
    Field<AmmoRecord>{"Per ammo", &AmmoRecord::perAmmo, FieldUnit::Number, 0, 999999},
    detail::Later24<AmmoRecord>("Initial ammo", &AmmoRecord::initialAmmo),
    detail::Amount("Max upgraded ammo", &AmmoRecord::maxUpgradedAmmo, 0),
    detail::Amount("Box ammo", &AmmoRecord::boxAmmo, 1),
    detail::Amount("Backpack ammo", &AmmoRecord::backpackAmmo, 2),
    detail::Amount("Weapon ammo", &AmmoRecord::weaponAmmo, 3),
    detail::Amount("Dropped ammo", &AmmoRecord::droppedAmmo, 4),
    detail::Amount("Dropped box ammo", &AmmoRecord::droppedBoxAmmo, 5),
    detail::Amount("Dropped backpack ammo", &AmmoRecord::droppedBackpackAmmo, 6),
    detail::Amount("Dropped weapon ammo", &AmmoRecord::droppedWeaponAmmo, 7),
    detail::Amount("Deathmatch weapon ammo", &AmmoRecord::deathmatchWeaponAmmo, 8),
    detail::Later24<AmmoRecord>("Skill 1 multiplier", &AmmoRecord::skill1, FieldUnit::Fixed16),
    detail::Later24<AmmoRecord>("Skill 2 multiplier", &AmmoRecord::skill2, FieldUnit::Fixed16),
    detail::Later24<AmmoRecord>("Skill 3 multiplier", &AmmoRecord::skill3, FieldUnit::Fixed16),
    detail::Later24<AmmoRecord>("Skill 4 multiplier", &AmmoRecord::skill4, FieldUnit::Fixed16),
    detail::Later24<AmmoRecord>("Skill 5 multiplier", &AmmoRecord::skill5, FieldUnit::Fixed16),
};

namespace detail {
using M = MiscRecord;
constexpr Field<M> MiscNumber(std::string_view label, std::int32_t M::*member, std::int32_t M::*secondCopy = nullptr) {
    return {label, member, FieldUnit::Number, 0, 9999, true, FieldWidth::Int32, secondCopy};
}
constexpr Field<M> MiscByte(std::string_view label, std::int32_t M::*member, bool inPatch, std::int32_t lowest = 0,
                            std::int32_t highest = 255) {
    return {label, member, FieldUnit::Number, lowest, highest, inPatch, FieldWidth::Byte};
}
constexpr Field<M> MiscCopy(std::string_view label, std::int32_t M::*member) {
    return {label, member, FieldUnit::Number, 0, 9999, false};
}
} // namespace detail

template <> inline constexpr std::array fieldTable<MiscRecord>{
    detail::MiscNumber("Initial Health", &MiscRecord::initialHealth),
    detail::MiscNumber("Initial Bullets", &MiscRecord::initialBullets),
    detail::MiscNumber("Max Health", &MiscRecord::maxHealth, &MiscRecord::secondMaxHealth),
    detail::MiscCopy("Second Max Health", &MiscRecord::secondMaxHealth),
    detail::MiscNumber("Max Armor", &MiscRecord::maxArmor, &MiscRecord::secondMaxArmor),
    detail::MiscCopy("Second Max Armor", &MiscRecord::secondMaxArmor),
    detail::MiscNumber("Green Armor Class", &MiscRecord::greenArmorClass),
    detail::MiscNumber("Blue Armor Class", &MiscRecord::blueArmorClass),
    detail::MiscNumber("Max Soulsphere", &MiscRecord::maxSoulsphere, &MiscRecord::secondMaxSoulsphere),
    detail::MiscCopy("Second Max Soulsphere", &MiscRecord::secondMaxSoulsphere),
    detail::MiscByte("Soulsphere Health", &MiscRecord::soulsphereHealth, true),
    detail::MiscNumber("Megasphere Health", &MiscRecord::megasphereHealth),
    detail::MiscNumber("God Mode Health", &MiscRecord::godModeHealth, &MiscRecord::secondGodModeHealth),
    detail::MiscCopy("Second God Mode Health", &MiscRecord::secondGodModeHealth),
    detail::MiscNumber("IDFA Armor", &MiscRecord::idfaArmor),
    detail::MiscNumber("IDFA Armor Class", &MiscRecord::idfaArmorClass),
    detail::MiscNumber("IDKFA Armor", &MiscRecord::idkfaArmor),
    detail::MiscNumber("IDKFA Armor Class", &MiscRecord::idkfaArmorClass),
    // Kept: the editor takes this byte as a signed one. docs/kept-behaviour.md
    detail::MiscByte("BFG Cells/Shot", &MiscRecord::bfgCells, true, -128, 127),
    detail::MiscByte("Spare 1", &MiscRecord::spare1, false),
    detail::MiscByte("Spare 2", &MiscRecord::spare2, false),
    Field<MiscRecord>{"Monsters Infight", &MiscRecord::monstersInfight, FieldUnit::Infight, 0, 255, true,
                      FieldWidth::Byte},
};

template <class Record> inline constexpr std::span<const Field<Record>> fieldsOf{fieldTable<Record>};

namespace detail {
template <class Numbers> struct RecordWith { using Type = Numbers; };
template <> struct RecordWith<ThingNumbers> { using Type = ThingRecord; };
template <> struct RecordWith<StateNumbers> { using Type = StateRecord; };
template <> struct RecordWith<SoundNumbers> { using Type = SoundRecord; };
template <> struct RecordWith<WeaponNumbers> { using Type = WeaponRecord; };
template <> struct RecordWith<AmmoNumbers> { using Type = AmmoRecord; };
template <> struct RecordWith<MiscNumbers> { using Type = MiscRecord; };
} // namespace detail

/// The row of a record kind's table that holds `member`; every number has one.
template <class Numbers> constexpr int RowOf(std::int32_t Numbers::*member) {
    using Record = typename detail::RecordWith<Numbers>::Type;
    for (std::size_t row = 0; row < fieldTable<Record>.size(); ++row)
        if (fieldTable<Record>[row].member == member)
            return static_cast<int>(row);
    return 0;
}
template <class Numbers> constexpr const auto& FieldOf(std::int32_t Numbers::*member) {
    return fieldTable<typename detail::RecordWith<Numbers>::Type>[static_cast<std::size_t>(RowOf(member))];
}

// A number without a row would be lost by everything that walks the rows.
template <class Record, class Numbers>
inline constexpr bool everyNumberHasARow = sizeof(Numbers) == fieldTable<Record>.size() * sizeof(std::int32_t);
static_assert(everyNumberHasARow<ThingRecord, ThingNumbers> && everyNumberHasARow<StateRecord, StateNumbers> &&
              everyNumberHasARow<SoundRecord, SoundNumbers> && everyNumberHasARow<WeaponRecord, WeaponNumbers> &&
              everyNumberHasARow<AmmoRecord, AmmoNumbers> && everyNumberHasARow<MiscRecord, MiscNumbers>);

/// A field of a record that holds a name; few records have one, so these stand beside the records, in
/// `PatchSet::texts`.
struct TextField {
    enum class Unit {
        StringKey, // of [STRINGS]
        LumpName,  // up to 8 characters
    };
    RecordKind kind;
    std::string_view label;
    Unit unit;
    FieldLevel since;
};
inline constexpr std::array textFields{
    TextField{RecordKind::Thing, "Pickup message", TextField::Unit::StringKey, FieldLevel::Id24},
    TextField{RecordKind::Thing, "Translation", TextField::Unit::LumpName, FieldLevel::Id24},
    TextField{RecordKind::State, "Tranmap", TextField::Unit::LumpName, FieldLevel::Id24},
    TextField{RecordKind::Weapon, "Carousel icon", TextField::Unit::LumpName, FieldLevel::Id24},
};

/// The labels of the cheats, in record order.
inline constexpr std::array<std::string_view, 17> cheatLabels{
    "Change music",     "Chainsaw",      "God mode",   "Ammo & Keys",     "Ammo",           "No Clipping 1",
    "No Clipping 2",    "Invincibility", "Berserk",    "Invisibility",    "Radiation Suit", "Auto-map",
    "Lite-Amp Goggles", "BEHOLD menu",   "Level Warp", "Player Position", "Map cheat"};

/// Calls visit(field, value) for each field of a patch that differs, in record order; `level` says which fields patches
/// have.
template <class Record, class Visit>
void ForEachDifference(const Record& current, const Record& standard, FieldLevel level, Visit visit) {
    for (const Field<Record>& field : fieldsOf<Record>)
        if (field.inPatch && field.since <= level)
            if (const FieldValue value = ValueOf(current, field); value != ValueOf(standard, field))
                visit(field, value);
}

/// Limits a value to what the field's width can hold.
template <class Record> constexpr std::int32_t FitWidth(const Field<Record>& field, std::int32_t value) {
    if (field.width == FieldWidth::Byte)
        return value < 0 ? 0 : value > 255 ? 255 : value;
    return value;
}

/// What an engine takes for an amount of ammunition that is unset; absent for a field that never is.
std::optional<std::int32_t> DerivedAmount(const AmmoRecord& ammo, const Field<AmmoRecord>& field);

/// Sets what the engine derives from other miscellaneous values: the second copies, and spare byte 2 (255 when spare
/// byte 1 equals the cells of a BFG shot, else 0).
void DeriveMisc(MiscRecord& misc);

} // namespace plinket3
