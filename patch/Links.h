#pragma once

#include "core/modConfig.h"
#include "patch/Arguments.h"
#include "patch/Cells.h"

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace plinket3 {

/// What can be referred to.
enum class TargetKind : std::uint8_t { Thing, State, Sound, Sprite, String, Weapon, Ammo, Action };
/// As the command line and the tables of fixed uses call them, in the order of the values.
inline constexpr std::array<std::string_view, 8> targetWords{"thing",  "state",  "sound", "sprite",
                                                             "string", "weapon", "ammo",  "action"};

/// A record by its number, counted from 0, or an action by its code pointer value.
struct Target {
    TargetKind kind = TargetKind::Thing;
    std::int32_t number = 0;
    auto operator<=>(const Target&) const = default; // NOLINT(modernize-use-nullptr): it takes what this makes for one

    /// State 0 and sound 0 stand for none.
    bool IsNone() const { return number == 0 && (kind == TargetKind::State || kind == TargetKind::Sound); }
};

std::optional<TargetKind> TargetKindOf(RecordKind kind);
/// Absent for actions.
std::optional<RecordKind> RecordKindOf(TargetKind kind);
std::optional<TargetKind> TargetKindNamed(std::string_view word);
bool HasTarget(const PatchSet& set, const EngineConfiguration& engine, const Target& target);

/// That a value refers to a record, which there need not be, or to an action.
struct Link {
    Cell from;
    Target to;
    const EngineConfiguration::Argument* argument = nullptr; // for a number that the state's action takes
};
/// The value with which the cell of a link refers to another record of the same kind.
inline std::int32_t LinkValue(const Link& link, std::int32_t number) {
    return link.to.kind == TargetKind::Thing ? number + 1 : number;
}

/// The index of the sound that is played in a sound's place, which its record keeps as an address in the engine; absent
/// when there is none. It may be no sound's, when a patch has changed it.
std::optional<std::int32_t> ReferencedSound(const EngineConfiguration& engine, const SoundRecord& sound);

/// Goes over what the values of a set refer to.
class LinkWalk {
public:
    using Visit = std::function<void(const Link&)>;

    /// Both must outlive the walk; the set may change meanwhile.
    LinkWalk(const PatchSet& set, const EngineConfiguration& engine);

    /// Of all records: things, weapons, states, sounds, miscellaneous values.
    void ForEach(const Visit& visit) const;
    /// Of one; of a record that there is not, none. Numbers that stand for none are visited for states and sounds only.
    void ForEachOf(RecordKind kind, std::int32_t number, const Visit& visit) const;

private:
    template <class Record>
    void OfRecord(RecordKind kind, std::int32_t number, const Record& record, const Visit& visit) const;

    const PatchSet& set_;
    const EngineConfiguration& engine_;
    ArgumentTable arguments_;
    std::unordered_map<std::string, std::int32_t> strings_; // by key
};

} // namespace plinket3
