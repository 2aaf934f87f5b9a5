#include "patch/NewRecords.h"

#include <array>

namespace plinket3 {

namespace {

struct NewValue {
    RecordKind kind;
    std::string_view label;
    std::int32_t value;
};
constexpr std::int32_t invisibleSprite = 138; // TNT1

/// By the labels of patches. All that does not stand here is unset, or 0; a new state follows itself.
constexpr std::array newValues{
    NewValue{RecordKind::State, "Sprite number", invisibleSprite},
    NewValue{RecordKind::State, "Duration", -1},
    NewValue{RecordKind::Thing, "Fast speed", -1},
    NewValue{RecordKind::Thing, "Melee range", 64 * 65536},
    NewValue{RecordKind::Sound, "Value", 127},
    NewValue{RecordKind::Sound, "Neg. One 1", -1},
    NewValue{RecordKind::Sound, "Neg. One 2", -1},
};

template <class Record> Record RecordOfNewValues(RecordKind kind) {
    Record record;
    for (const Field<Record>& field : fieldsOf<Record>) {
        for (const NewValue& value : newValues)
            if (value.kind == kind && value.label == field.label)
                record.*field.member = value.value;
    }
    return record;
}

} // namespace

template <class Record> Record NewRecord(std::int32_t number) {
    Record record;
    VisitKinds([&](const auto& kind) {
        if constexpr (std::is_same_v<RecordOf<decltype(kind)>, Record>) {
            static const Record made = RecordOfNewValues<Record>(kind.kind);
            record = made;
        }
    });
    if constexpr (std::is_same_v<Record, StateRecord>)
        record.nextState = number;
    return record;
}

template ThingRecord NewRecord(std::int32_t number);
template StateRecord NewRecord(std::int32_t number);
template SoundRecord NewRecord(std::int32_t number);
template SpriteRecord NewRecord(std::int32_t number);
template StringRecord NewRecord(std::int32_t number);
template WeaponRecord NewRecord(std::int32_t number);
template AmmoRecord NewRecord(std::int32_t number);
template CheatRecord NewRecord(std::int32_t number);
template MusicRecord NewRecord(std::int32_t number);

} // namespace plinket3
