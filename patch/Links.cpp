#include "patch/Links.h"

#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/ValueText.h"

#include <algorithm>
#include <type_traits>

namespace plinket3 {

namespace {

constexpr double bytesOfSound = 36; // a sound's record in the game

/// What a row of a table refers to, for the units whose numbers are those of records.
std::optional<TargetKind> TargetKindOf(FieldUnit unit) {
    switch (unit) {
    case FieldUnit::Thing:
        return TargetKind::Thing;
    case FieldUnit::State:
        return TargetKind::State;
    case FieldUnit::Sound:
        return TargetKind::Sound;
    case FieldUnit::Sprite:
        return TargetKind::Sprite;
    case FieldUnit::Weapon:
        return TargetKind::Weapon;
    case FieldUnit::Ammo:
    case FieldUnit::AmmoType:
        return TargetKind::Ammo;
    default:
        return std::nullopt;
    }
}

std::optional<TargetKind> TargetKindOf(EngineConfiguration::Argument::Kind kind) {
    using Kind = EngineConfiguration::Argument::Kind;
    return kind == Kind::Thing   ? std::optional(TargetKind::Thing)
           : kind == Kind::State ? std::optional(TargetKind::State)
           : kind == Kind::Sound ? std::optional(TargetKind::Sound)
                                 : std::nullopt;
}

/// Absent for the numbers that stand for no thing, weapon or kind of ammunition.
std::optional<Target> TargetOf(const PatchSet& set, TargetKind kind, std::int32_t number) {
    if (kind == TargetKind::Thing) {
        const auto thing = ThingOf(number);
        return thing ? std::optional(Target{kind, *thing}) : std::nullopt;
    }
    const bool mayBeNone = kind == TargetKind::Weapon || kind == TargetKind::Ammo;
    if (mayBeNone && (number == -1 || !HasRecord(set, *RecordKindOf(kind), number)))
        return std::nullopt;
    return Target{kind, number};
}

struct LinkRow {
    int field;
    TargetKind kind;
};
/// The rows of a kind's table that refer to records.
template <class Record> const std::vector<LinkRow>& LinkRows() {
    static const std::vector<LinkRow> rows = [] {
        std::vector<LinkRow> found;
        for (std::size_t row = 0; row < fieldsOf<Record>.size(); ++row)
            if (const auto kind = TargetKindOf(fieldsOf<Record>[row].unit))
                found.push_back({static_cast<int>(row), *kind});
        return found;
    }();
    return rows;
}

} // namespace

std::optional<TargetKind> TargetKindOf(RecordKind kind) {
    switch (kind) {
    case RecordKind::Thing:
        return TargetKind::Thing;
    case RecordKind::State:
        return TargetKind::State;
    case RecordKind::Sound:
        return TargetKind::Sound;
    case RecordKind::Sprite:
        return TargetKind::Sprite;
    case RecordKind::String:
        return TargetKind::String;
    case RecordKind::Weapon:
        return TargetKind::Weapon;
    case RecordKind::Ammo:
        return TargetKind::Ammo;
    default:
        return std::nullopt;
    }
}

std::optional<RecordKind> RecordKindOf(TargetKind kind) {
    for (const RecordKind each : {RecordKind::Thing, RecordKind::State, RecordKind::Sound, RecordKind::Sprite,
                                  RecordKind::String, RecordKind::Weapon, RecordKind::Ammo})
        if (TargetKindOf(each) == kind)
            return each;
    return std::nullopt;
}

std::optional<TargetKind> TargetKindNamed(std::string_view word) {
    const auto found = std::ranges::find(targetWords, word);
    return found == targetWords.end() ? std::nullopt
                                      : std::optional(static_cast<TargetKind>(found - targetWords.begin()));
}

bool HasTarget(const PatchSet& set, const EngineConfiguration& engine, const Target& target) {
    const auto kind = RecordKindOf(target.kind);
    return kind ? HasRecord(set, *kind, target.number) : engine.ActionOf(target.number) != nullptr;
}

std::optional<std::int32_t> ReferencedSound(const EngineConfiguration& engine, const SoundRecord& sound) {
    if (sound.zero1 == 0)
        return std::nullopt;
    const double bytes = static_cast<double>(sound.zero1) - engine.offsets.sounds + engine.offsets.dataSegment;
    return RoundToInt32(bytes / bytesOfSound);
}

LinkWalk::LinkWalk(const PatchSet& set, const EngineConfiguration& engine)
    : set_(set), engine_(engine), arguments_(engine) {
    if (engine.dialect.fields < TextFieldAt(pickupMessageField)->since)
        return;
    for (std::size_t i = 0; i < engine.strings.size(); ++i)
        strings_.try_emplace(ToUpper(engine.strings[i].mnemonic), static_cast<std::int32_t>(i));
}

template <class Record>
void LinkWalk::OfRecord(RecordKind kind, std::int32_t number, const Record& record, const Visit& visit) const {
    for (const LinkRow& row : LinkRows<Record>()) {
        const Field<Record>& field = fieldTable<Record>[static_cast<std::size_t>(row.field)];
        if (field.since > engine_.dialect.fields)
            continue;
        if (const FieldValue value = ValueOf(record, field))
            if (const auto target = TargetOf(set_, row.kind, *value))
                visit({{kind, number, row.field}, *target});
    }
    if constexpr (std::is_same_v<Record, StateRecord>) {
        if (record.codePointer != 0)
            visit({{kind, number, codePointerField}, {TargetKind::Action, record.codePointer}});
        for (const StateArgument& argument : arguments_.Of(record.codePointer))
            if (const auto target = TargetKindOf(argument.facts->kind))
                if (const FieldValue value = ArgumentOf(record, argument))
                    if (const auto named = TargetOf(set_, *target, *value))
                        visit({{kind, number, argument.field}, *named, argument.facts});
    }
    if constexpr (std::is_same_v<Record, SoundRecord>)
        if (const auto played = ReferencedSound(engine_, record))
            visit({{kind, number, RowOf(&SoundRecord::zero1)}, {TargetKind::Sound, *played}});
    if constexpr (std::is_same_v<Record, ThingRecord>)
        if (const std::string_view key = set_.TextOf(kind, number, 0); !key.empty() && !strings_.empty())
            if (const auto string = strings_.find(ToUpper(key)); string != strings_.end())
                visit({{kind, number, pickupMessageField}, {TargetKind::String, string->second}});
}

void LinkWalk::ForEach(const Visit& visit) const {
    for (const auto& [number, thing] : set_.things)
        OfRecord(RecordKind::Thing, number, thing, visit);
    for (const auto& [number, weapon] : set_.weapons)
        OfRecord(RecordKind::Weapon, number, weapon, visit);
    for (const auto& [number, state] : set_.states)
        if (number != 0) // stands for none, and its values are never used
            OfRecord(RecordKind::State, number, state, visit);
    for (const auto& [number, sound] : set_.sounds)
        OfRecord(RecordKind::Sound, number, sound, visit);
    ForEachOf(RecordKind::Misc, 0, visit);
}

void LinkWalk::ForEachOf(RecordKind kind, std::int32_t number, const Visit& visit) const {
    if (kind == RecordKind::Misc)
        if (const auto helper = ThingOf(set_.misc.helper))
            visit({{kind, number, helperField}, {TargetKind::Thing, *helper}});
    VisitKind(kind, [&](const auto& list) {
        if (const auto* record = list.In(set_).Find(number))
            OfRecord(kind, number, *record, visit);
    });
}

} // namespace plinket3
