#include "patch/Cells.h"

#include "core/Text.h"

namespace plinket3 {

namespace {

template <class Record> const Field<Record>& Row(int field) {
    return fieldTable<Record>[static_cast<std::size_t>(field)];
}

/// Calls visit with a null pointer to the kind's record type, also for the miscellaneous record.
template <class Visit> void VisitType(RecordKind kind, Visit visit) {
    if (kind == RecordKind::Misc)
        visit(static_cast<const MiscRecord*>(nullptr));
    else
        VisitKind(kind, [&visit](const auto& list) { visit(static_cast<const RecordOf<decltype(list)>*>(nullptr)); });
}

/// Calls visit(record) with the record of a cell that `set` has; does nothing for the par list.
template <class Set, class Visit> void VisitRecord(Set& set, const Cell& cell, Visit visit) {
    if (cell.kind == RecordKind::Misc)
        visit(set.misc);
    else
        VisitKind(cell.kind, [&](const auto& list) { visit(list.In(set)[static_cast<std::size_t>(cell.index)]); });
}

int RowCount(RecordKind kind) {
    int count = 0;
    VisitType(kind, [&count]<class Record>(const Record*) { count = static_cast<int>(fieldsOf<Record>.size()); });
    return count;
}

/// The field of a kind beside its rows; 0 for kinds that have none.
int OtherField(RecordKind kind) {
    switch (kind) {
    case RecordKind::Thing:
    case RecordKind::Weapon:
    case RecordKind::Ammo:
        return nameField;
    case RecordKind::State:
        return codePointerField;
    case RecordKind::String:
    case RecordKind::Cheat:
        return textField;
    case RecordKind::Par:
        return listField;
    default:
        return 0;
    }
}

/// Calls visit with the value behind a cell: a number, a text or the par list.
template <class Set, class Visit> void VisitValue(Set& set, const Cell& cell, Visit visit) {
    if (cell.kind == RecordKind::Par)
        return visit(set.pars);
    VisitRecord(set, cell, [&]<class Type>(Type& record) {
        using Record = std::remove_const_t<Type>;
        if constexpr (isNamed<Record>)
            if (cell.field == nameField)
                return visit(record.name);
        if constexpr (std::is_same_v<Record, StateRecord>)
            if (cell.field == codePointerField)
                return visit(record.codePointer);
        if constexpr (std::is_same_v<Record, StringRecord> || std::is_same_v<Record, CheatRecord>)
            visit(record.text);
        if constexpr (!fieldTable<Record>.empty())
            visit(record.*Row<Record>(cell.field).member);
    });
}

std::int32_t LastOf(std::size_t count) { return count == 0 ? 0 : static_cast<std::int32_t>(count) - 1; }

} // namespace

std::size_t RecordCount(const PatchSet& set, RecordKind kind) {
    std::size_t count = kind == RecordKind::Misc || kind == RecordKind::Par ? 1 : 0;
    VisitKind(kind, [&](const auto& list) { count = list.In(set).size(); });
    return count;
}

RowFacts FactsOf(RecordKind kind, int field) {
    RowFacts facts;
    VisitType(kind, [&]<class Record>(const Record*) {
        if constexpr (!fieldTable<Record>.empty()) {
            const Field<Record>& row = Row<Record>(field);
            facts = {row.label, row.unit, row.width, {row.lowest, row.highest}, row.inPatch, row.bits};
        }
    });
    return facts;
}

bool HasCell(const PatchSet& set, const Cell& cell) {
    if (cell.index < 0 || static_cast<std::size_t>(cell.index) >= RecordCount(set, cell.kind))
        return false;
    return cell.field < 0 ? cell.field == OtherField(cell.kind) : cell.field < RowCount(cell.kind);
}

CellValue ReadCell(const PatchSet& set, const Cell& cell) {
    CellValue value;
    VisitValue(set, cell, [&value](const auto& stored) { value = stored; });
    return value;
}

void WriteCell(PatchSet& set, const Cell& cell, const CellValue& value) {
    VisitValue(set, cell,
               [&value](auto& stored) { stored = std::get<std::remove_reference_t<decltype(stored)>>(value); });
    if (cell.kind == RecordKind::String) {
        StringRecord& string = set.strings[static_cast<std::size_t>(cell.index)];
        string.length = static_cast<std::int32_t>(string.text.size());
    }
}

std::vector<Cell> CellsOf(RecordKind kind, std::int32_t index) {
    std::vector<Cell> cells;
    for (int row = 0; row < RowCount(kind); ++row)
        cells.push_back({kind, index, row});
    if (const int other = OtherField(kind); other != 0)
        cells.push_back({kind, index, other});
    return cells;
}

std::vector<Cell> DerivedFrom(const Cell& cell) {
    if (cell.kind != RecordKind::Misc || cell.field < 0)
        return {};
    const Field<MiscRecord>& row = Row<MiscRecord>(cell.field);
    if (row.secondCopy != nullptr)
        return {{RecordKind::Misc, 0, RowOf(row.secondCopy)}};
    if (row.member == &MiscRecord::bfgCells)
        return {{RecordKind::Misc, 0, RowOf(&MiscRecord::spare2)}};
    return {};
}

Limits LimitsOf(const PatchSet& set, RecordKind kind, int field) {
    if (field < 0 || field >= RowCount(kind))
        return {};
    const RowFacts facts = FactsOf(kind, field);
    switch (facts.unit) {
    case FieldUnit::State:
        return {0, LastOf(set.states.size())};
    case FieldUnit::Sound:
        return {0, LastOf(set.sounds.size())};
    case FieldUnit::Sprite:
        return {0, LastOf(set.sprites.size())};
    default:
        return facts.limits;
    }
}

std::int32_t Limited(const PatchSet& set, const Cell& cell, std::int32_t number) {
    const RowFacts facts = FactsOf(cell.kind, cell.field);
    const Limits limits = LimitsOf(set, cell.kind, cell.field);
    if (facts.unit == FieldUnit::SpriteFrame)
        return limits.Apply(number & ~litBit) | (number & litBit);
    number = limits.Apply(number);
    return facts.width == FieldWidth::Byte && number < 0 ? number + 256 : number;
}

std::string RecordName(const PatchSet& set, RecordKind kind, std::int32_t index) {
    switch (kind) {
    case RecordKind::State:
        return "frame " + std::to_string(index);
    case RecordKind::Sound:
        return "sound " + set.SoundName(index);
    case RecordKind::Sprite:
        return "sprite " + std::string(set.SpriteName(index));
    case RecordKind::String:
        return "string " + std::to_string(index);
    case RecordKind::Cheat:
        return "cheat " + (static_cast<std::size_t>(index) < cheatLabels.size()
                               ? std::string(cheatLabels[static_cast<std::size_t>(index)])
                               : std::to_string(index));
    case RecordKind::Misc:
        return {};
    case RecordKind::Par:
        return "par times";
    default:
        return std::get<std::string>(ReadCell(set, {kind, index, nameField}));
    }
}

std::string RecordsName(const PatchSet& set, RecordKind kind, const std::vector<std::int32_t>& records,
                        std::string_view many) {
    return records.size() == 1 ? RecordName(set, kind, records.front())
                               : std::to_string(records.size()) + " " + std::string(many);
}

std::string CellsName(const PatchSet& set, const std::vector<Cell>& cells, std::string_view many) {
    const Cell& cell = cells.front();
    std::vector<std::int32_t> records;
    records.reserve(cells.size());
    for (const Cell& each : cells)
        records.push_back(each.index);
    std::string record = RecordsName(set, cell.kind, records, many);
    if (cell.field == textField || cell.field == listField)
        return record;
    std::string label = cell.field == nameField          ? "name"
                        : cell.field == codePointerField ? "action"
                                                         : std::string(FactsOf(cell.kind, cell.field).label);
    const bool abbreviation = label.size() > 1 && ToLower(label[1]) != label[1];
    if (!label.empty() && !abbreviation)
        label[0] = ToLower(label[0]);
    return record.empty() ? label : label + " of " + record;
}

} // namespace plinket3
