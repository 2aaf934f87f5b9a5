#pragma once

#include "patch/Cells.h"
#include "patch/KeptRecords.h"

#include <QVariant>

#include <cstdint>
#include <vector>

namespace plinket3 {

/// What a list shows of the records that the patch's notes keep: a small sign, and a line in the tooltip.
class KeptMarks {
public:
    /// `set` must outlive this object.
    KeptMarks(const PatchSet& set, RecordKind kind) : set_(set), kind_(kind) {}

    /// The patch may be another one.
    void Read() { kept_ = KeptRecords(std::get<std::string>(ReadCell(set_, patchNotes))); }
    /// After an edit of these cells; true when every row may look otherwise.
    bool Follow(const std::vector<Cell>& cells);
    /// What the list shows in place of `value`, of the column that has the sign.
    QVariant Over(const QVariant& value, std::int32_t record, int role) const;

private:
    const PatchSet& set_;
    RecordKind kind_;
    KeptRecords kept_{{}};
};

} // namespace plinket3
