#pragma once

#include "core/Text.h"
#include "patch/EngineNames.h"
#include "patch/PatchSet.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace plinket3 {

/// Kinds of which a patch may have records that the engine does not have, where the engine knows no limits.
constexpr bool CanBeMade(RecordKind kind) {
    return kind == RecordKind::Thing || kind == RecordKind::State || kind == RecordKind::Sound ||
           kind == RecordKind::Sprite;
}

/// What engines give a record that a patch makes, before the patch says more of it.
template <class Record> Record NewRecord(std::int32_t number);

/// The record of `list`; for a number that it does not have, a new one.
template <class Record> class RecordOrNew {
public:
    RecordOrNew(const NumberedList<Record>& list, std::int32_t number)
        : found_(list.Find(number)), new_(found_ != nullptr ? Record() : NewRecord<Record>(number)) {}
    const Record& operator*() const { return found_ != nullptr ? *found_ : new_; }
    const Record* operator->() const { return &**this; }

private:
    const Record* found_;
    Record new_;
};

/// What [SPRITES], [SOUNDS] and [MUSIC] know a record by: the name that it has by default, or else its number.
template <class Record> std::string LumpNameKey(const NumberedList<Record>& defaults, std::int32_t number) {
    std::string name;
    if (const Record* record = defaults.Find(number))
        name.assign(record->name.begin(), std::ranges::find(record->name, '\0'));
    const bool found = !name.empty() && IndexByName(defaults, Trim(name)) == number;
    return found ? std::string(Trim(name)) : std::to_string(number);
}

} // namespace plinket3
