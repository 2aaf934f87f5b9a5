#pragma once

#include "patch/PatchSet.h"

#include <cstdint>

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

} // namespace plinket3
