#pragma once

#include "patch/PatchSet.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace plinket3 {

/// One value of a patch. `field` is a row of the kind's table, or one of the constants below.
struct Cell {
    RecordKind kind = RecordKind::Thing;
    std::int32_t index = 0; // the record's number; 0 for the one miscellaneous record and for the par list
    int field = 0;
    bool operator==(const Cell&) const = default;
};
inline constexpr int nameField = -1;        // things, weapons, ammunition
inline constexpr int codePointerField = -2; // states
inline constexpr int textField = -3;        // strings (with their length) and cheats
inline constexpr int listField = -4;        // the par list as a whole
inline constexpr int noteField = -5;        // what comments say of a thing, state, sound, weapon or kind of ammunition
inline constexpr int existsField = -6;      // 1 for a record that there is, 0 for one that a patch may make
inline constexpr int lumpNameField = -7;    // sprites, sounds and music, which patches give other names
inline constexpr int helperField = -8;      // of the miscellaneous record: the thing that helps the player

inline constexpr int firstTextField = -16; // the first of `textFields`; the next ones are below it
constexpr int TextCell(std::size_t textField) { return firstTextField - static_cast<int>(textField); }
inline constexpr int pickupMessageField = TextCell(0), translationField = TextCell(1), tranmapField = TextCell(2),
                     carouselIconField = TextCell(3);
/// The text field that a cell's field is; null for another field.
constexpr const TextField* TextFieldAt(int field) {
    return field <= firstTextField && field > TextCell(textFields.size())
               ? &textFields[static_cast<std::size_t>(firstTextField - field)]
               : nullptr;
}

/// What the comments at a patch's head say of it as a whole.
inline constexpr Cell patchNotes{RecordKind::Par, 0, noteField};

/// The value of a field that has no number: the engine goes its own way there.
using Unset = std::monostate;
using CellValue = std::variant<std::int32_t, std::string, std::vector<ParRecord>, Unset>;

struct Assignment {
    Cell cell;
    CellValue value;
    bool operator==(const Assignment&) const = default;
};

struct Limits {
    std::int32_t lowest = INT32_MIN, highest = INT32_MAX;
    std::int32_t Apply(std::int32_t value) const { return value < lowest ? lowest : value > highest ? highest : value; }
};

/// What the row of a cell tells, whatever the record. Only for cells whose field is a row.
struct RowFacts {
    std::string_view label;
    FieldUnit unit = FieldUnit::Number;
    FieldWidth width = FieldWidth::Int32;
    Limits limits;
    bool inPatch = true;
    BitSet bits = BitSet::Things;
    FieldLevel since = FieldLevel::Doom;
    bool mayBeUnset = false;
};
RowFacts FactsOf(RecordKind kind, int field);

/// How many records a set has; 1 for the miscellaneous record and the par list.
std::size_t RecordCount(const PatchSet& set, RecordKind kind);
/// Whether there is one of that number, and the numbers that there are, in the order of the list.
bool HasRecord(const PatchSet& set, RecordKind kind, std::int32_t number);
std::vector<std::int32_t> RecordNumbers(const PatchSet& set, RecordKind kind);

/// `existsField` is a cell of every record that a patch may make, whether or not there is one.
bool HasCell(const PatchSet& set, const Cell& cell);
/// Whether the engine may have no number there.
inline bool MayBeUnset(const Cell& cell) {
    return cell.field == helperField || (cell.field >= 0 && FactsOf(cell.kind, cell.field).mayBeUnset);
}
/// A value is of the cell's own type, or `Unset`, which changes nothing in a field that may not be so. Of a record that
/// `set` does not have, the values are those of a new one, and nothing but `existsField` is written; that makes a
/// record, or removes one that a patch made. A text field that holds nothing is empty. A note has lines parted by \n
/// and no comment signs; there is none where its text is empty.
CellValue ReadCell(const PatchSet& set, const Cell& cell);
void WriteCell(PatchSet& set, const Cell& cell, const CellValue& value);

/// Every cell of a record but its note, whether it exists, and the name of its lump: all rows of its table, its name,
/// text, code pointer or helper, and its text fields.
std::vector<Cell> CellsOf(RecordKind kind, std::int32_t index);
/// The same with these, and at last whether it exists, as nothing else can be stored without a record.
std::vector<Cell> EveryCellOf(RecordKind kind, std::int32_t index);
/// The miscellaneous values that an engine derives from this one.
std::vector<Cell> DerivedFrom(const Cell& cell);

/// The text fields that hold something else in the second set.
std::vector<Cell> OtherTexts(const PatchSet& before, const PatchSet& after);

/// Whether records come or go with these cells.
bool MakesOrRemoves(const std::vector<Cell>& cells);
/// Whether lumps get other names with them.
bool RenamesLumps(const std::vector<Cell>& cells);

/// What an editor lets into a numeric field: the row's limits, or the lowest and highest number of what it refers to in
/// `set`.
Limits LimitsOf(const PatchSet& set, RecordKind kind, int field);
/// A number as an editor's is stored in a row of a table: limited, a byte's negative value as its unsigned reading.
std::int32_t Limited(const PatchSet& set, const Cell& cell, std::int32_t number);

} // namespace plinket3
