#pragma once

#include "core/modConfig.h"
#include "patch/Cells.h"

#include <cstdint>
#include <string>

namespace plinket3 {

// What lists tell of records and values, whatever their kind.

/// A record by its number, as patches count, and its name: "Thing 12 (Imp)", "Frame 442 (TROOA)", "String GOTARMOR".
std::string RecordTitle(const PatchSet& set, const EngineConfiguration& engine, RecordKind kind, std::int32_t index);

/// A field as its record's editor calls it, an argument with the name that the state's action in `set` has for it.
std::string CellTitle(const PatchSet& set, const EngineConfiguration& engine, const Cell& cell);

/// A value in words: "12.5", "442 (TROOA)", "SOLID + FLOAT", "yes", "unset". What a number means, and the names of what
/// it refers to, are those of `set`. Texts are escaped.
std::string CellText(const PatchSet& set, const EngineConfiguration& engine, const Cell& cell, const CellValue& value);

/// Whether a cell holds bits.
bool HoldsBits(const Cell& cell);
/// The bits that come and go from one number to another, by name: "+FLOAT -SOLID"; a nameless one as "bit 5".
std::string BitsChange(const EngineConfiguration& engine, BitSet set, std::int32_t from, std::int32_t to);

} // namespace plinket3
