#pragma once

#include "patch/Cells.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

// What steps that can be undone are named after, and what lists call records.

/// "Imp", "frame 12", "sound pistol"; empty for the miscellaneous record. One that a patch made and that has no name
/// goes by its number.
std::string RecordName(const PatchSet& set, RecordKind kind, std::int32_t index);
/// A record's number as patches count: from 1 for things. Of a kind that patches do not count, its index.
std::int64_t PatchNumber(RecordKind kind, std::int32_t index);
/// The same by its number: "thing 4000" (as patches count), for one that has no name of its own.
std::string MadeName(RecordKind kind, std::int32_t index);
/// The same for several: "3 frames" when `many` is "frames".
std::string RecordsName(const PatchSet& set, RecordKind kind, const std::vector<std::int32_t>& records,
                        std::string_view many);
/// "things"; "1 thing", "33 frames".
std::string_view PluralOf(RecordKind kind);
std::string CountOf(RecordKind kind, std::size_t count);
/// The picture that a state shows, as lists name it: sprite and letter of the frame, "TROOA".
std::string PictureName(const PatchSet& set, const StateRecord& state);
/// A field as lists label it: "Hit points", "Action".
std::string FieldName(const Cell& cell);
/// One field of records (at least one) of a kind: "hit points of Imp", "duration of 3 frames".
std::string CellsName(const PatchSet& set, const std::vector<Cell>& cells, std::string_view many);

} // namespace plinket3
