#include "patch/Cells.h"

#include "core/Text.h"
#include "patch/NewRecords.h"

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

/// Calls visit(record) with the record of a cell; does nothing for the par list. Of one that a constant set does not
/// have it is a new one.
template <class Set, class Visit> void VisitRecord(Set& set, const Cell& cell, Visit visit) {
    if (cell.kind == RecordKind::Misc)
        return visit(set.misc);
    VisitKind(cell.kind, [&](const auto& list) {
        if (auto* record = list.In(set).Find(cell.index))
            visit(*record);
        else if constexpr (std::is_const_v<Set>)
            visit(*RecordOrNew(list.In(set), cell.index));
    });
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
    case RecordKind::Misc:
        return helperField;
    default:
        return 0;
    }
}

bool HasNotes(const Cell& cell) {
    switch (cell.kind) {
    case RecordKind::Thing:
    case RecordKind::State:
    case RecordKind::Sound:
    case RecordKind::Weapon:
    case RecordKind::Ammo:
    case RecordKind::Par:
        return true;
    default:
        return false;
    }
}

/// Calls visit with the value behind a cell that is no row: a code pointer, a text or the par list.
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
    });
}

bool IsLumpName(const Cell& cell) { return cell.field == lumpNameField && HasLumpName(cell.kind); }

std::string LumpNameOf(const PatchSet& set, const Cell& cell) {
    if (cell.kind == RecordKind::Sound)
        return set.SoundName(cell.index);
    std::string text;
    VisitRecord(set, cell, [&text](const auto& record) {
        if constexpr (hasLumpName<std::remove_cvref_t<decltype(record)>>)
            text.assign(record.name.begin(), std::ranges::find(record.name, '\0'));
    });
    return std::string(Trim(text));
}

void NameLumps(PatchSet& set, const Cell& cell, std::string_view name) {
    VisitRecord(set, cell, [name](auto& record) {
        if constexpr (hasLumpName<std::remove_reference_t<decltype(record)>>)
            PutLumpName(record.name, name);
    });
}

/// Of a text field's cell.
Texts::key_type TextKey(const Cell& cell) { return {cell.kind, cell.index, firstTextField - cell.field}; }

bool MayBeMade(const PatchSet& set, const Cell& cell) {
    bool may = false;
    VisitKind(cell.kind, [&](const auto& list) {
        // Patches count things from 1.
        may = CanBeMade(cell.kind) && list.In(set).IsBeyond(cell.index) &&
              (cell.kind != RecordKind::Thing || cell.index < INT32_MAX);
    });
    return may;
}

void MakeOrRemove(PatchSet& set, const Cell& cell, bool exists) {
    VisitKind(cell.kind, [&]<class List>(const List& list) {
        if (exists)
            list.In(set).Add(cell.index, NewRecord<RecordOf<List>>(cell.index));
        else if (list.In(set).Remove(cell.index))
            for (std::size_t text = 0; text < textFields.size(); ++text)
                set.texts.erase({cell.kind, cell.index, static_cast<int>(text)});
    });
}

template <class Record> Limits LimitsOf(const NumberedList<Record>& records) {
    return {records.Lowest(), records.Highest()};
}

} // namespace

std::size_t RecordCount(const PatchSet& set, RecordKind kind) {
    std::size_t count = kind == RecordKind::Misc || kind == RecordKind::Par ? 1 : 0;
    VisitKind(kind, [&](const auto& list) { count = list.In(set).size(); });
    return count;
}

bool HasRecord(const PatchSet& set, RecordKind kind, std::int32_t number) {
    bool has = (kind == RecordKind::Misc || kind == RecordKind::Par) && number == 0;
    VisitKind(kind, [&](const auto& list) { has = list.In(set).Has(number); });
    return has;
}

std::vector<std::int32_t> RecordNumbers(const PatchSet& set, RecordKind kind) {
    std::vector<std::int32_t> numbers{0};
    VisitKind(kind, [&](const auto& list) { numbers = list.In(set).Numbers(); });
    return numbers;
}

RowFacts FactsOf(RecordKind kind, int field) {
    RowFacts facts;
    VisitType(kind, [&]<class Record>(const Record*) {
        if constexpr (!fieldTable<Record>.empty()) {
            const Field<Record>& row = Row<Record>(field);
            facts = {row.label,   row.unit, row.width, {row.lowest, row.highest},
                     row.inPatch, row.bits, row.since, row.givenBit >= 0};
        }
    });
    return facts;
}

bool HasCell(const PatchSet& set, const Cell& cell) {
    if (cell.field == existsField)
        return MayBeMade(set, cell);
    if (!HasRecord(set, cell.kind, cell.index))
        return false;
    if (IsLumpName(cell))
        return true;
    if (cell.field == noteField)
        return HasNotes(cell);
    if (const TextField* text = TextFieldAt(cell.field))
        return text->kind == cell.kind;
    return cell.field < 0 ? cell.field == OtherField(cell.kind) : cell.field < RowCount(cell.kind);
}

CellValue ReadCell(const PatchSet& set, const Cell& cell) {
    if (cell.field == existsField)
        return HasRecord(set, cell.kind, cell.index) ? 1 : 0;
    if (IsLumpName(cell))
        return LumpNameOf(set, cell);
    if (cell.field == noteField) {
        const auto note = set.notes.find({cell.kind, cell.index});
        return note == set.notes.end() ? std::string() : note->second;
    }
    if (TextFieldAt(cell.field) != nullptr)
        return std::string(set.TextOf(cell.kind, cell.index, firstTextField - cell.field));
    if (cell.field == helperField)
        return set.misc.helper == 0 ? CellValue(Unset()) : CellValue(set.misc.helper);
    CellValue value;
    if (cell.field >= 0) {
        VisitRecord(set, cell, [&]<class Record>(const Record& record) {
            if constexpr (!fieldTable<Record>.empty()) {
                const FieldValue number = ValueOf(record, Row<Record>(cell.field));
                value = number ? CellValue(*number) : CellValue(Unset());
            }
        });
        return value;
    }
    VisitValue(set, cell, [&value](const auto& stored) { value = stored; });
    return value;
}

void WriteCell(PatchSet& set, const Cell& cell, const CellValue& value) {
    if (cell.field == existsField)
        return MakeOrRemove(set, cell, std::get<std::int32_t>(value) != 0);
    if (IsLumpName(cell))
        return NameLumps(set, cell, std::get<std::string>(value));
    if (cell.field == noteField) {
        if (std::get<std::string>(value).empty())
            set.notes.erase({cell.kind, cell.index});
        else
            set.notes[{cell.kind, cell.index}] = std::get<std::string>(value);
        return;
    }
    if (TextFieldAt(cell.field) != nullptr) {
        if (std::get<std::string>(value).empty())
            set.texts.erase(TextKey(cell));
        else
            set.texts[TextKey(cell)] = std::get<std::string>(value);
        return;
    }
    const bool unset = std::holds_alternative<Unset>(value);
    if (cell.field == helperField) {
        set.misc.helper = unset ? 0 : std::get<std::int32_t>(value);
        return;
    }
    if (cell.field >= 0) {
        const FieldValue number = unset ? FieldValue() : std::get<std::int32_t>(value);
        return VisitRecord(set, cell, [&]<class Record>(Record& record) {
            if constexpr (!fieldTable<Record>.empty())
                SetValue(record, Row<Record>(cell.field), number);
        });
    }
    VisitValue(set, cell,
               [&value](auto& stored) { stored = std::get<std::remove_reference_t<decltype(stored)>>(value); });
    if (cell.kind == RecordKind::String)
        if (StringRecord* string = set.strings.Find(cell.index))
            string->length = static_cast<std::int32_t>(string->text.size());
}

std::vector<Cell> CellsOf(RecordKind kind, std::int32_t index) {
    std::vector<Cell> cells;
    const int rows = RowCount(kind);
    cells.reserve(static_cast<std::size_t>(rows) + 1);
    for (int row = 0; row < rows; ++row)
        cells.push_back({kind, index, row});
    if (const int other = OtherField(kind); other != 0)
        cells.push_back({kind, index, other});
    for (std::size_t text = 0; text < textFields.size(); ++text)
        if (textFields[text].kind == kind)
            cells.push_back({kind, index, TextCell(text)});
    return cells;
}

std::vector<Cell> EveryCellOf(RecordKind kind, std::int32_t index) {
    std::vector<Cell> cells = CellsOf(kind, index);
    if (HasLumpName(kind))
        cells.push_back({kind, index, lumpNameField});
    cells.push_back({kind, index, noteField});
    cells.push_back({kind, index, existsField});
    return cells;
}

std::vector<Cell> OtherTexts(const PatchSet& before, const PatchSet& after) {
    std::vector<Cell> cells;
    const auto add = [&](const Texts& texts, const PatchSet& other, bool onlyNew) {
        for (const auto& [key, text] : texts) {
            const auto& [kind, number, field] = key;
            const std::string_view otherText = other.TextOf(kind, number, field);
            if (onlyNew ? otherText.empty() : otherText != text)
                cells.push_back({kind, number, TextCell(static_cast<std::size_t>(field))});
        }
    };
    add(before.texts, after, false);
    add(after.texts, before, true);
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

bool MakesOrRemoves(const std::vector<Cell>& cells) {
    return std::ranges::any_of(cells, [](const Cell& cell) { return cell.field == existsField; });
}

bool RenamesLumps(const std::vector<Cell>& cells) { return std::ranges::any_of(cells, IsLumpName); }

Limits LimitsOf(const PatchSet& set, RecordKind kind, int field) {
    if (field < 0 || field >= RowCount(kind))
        return {};
    const RowFacts facts = FactsOf(kind, field);
    switch (facts.unit) {
    case FieldUnit::State:
        return LimitsOf(set.states);
    case FieldUnit::Sound:
        return LimitsOf(set.sounds);
    case FieldUnit::Sprite:
        return LimitsOf(set.sprites);
    case FieldUnit::Thing: { // counted from 1, 0 for none
        const Limits things = LimitsOf(set.things);
        return {std::min(0, things.lowest + 1), things.highest == INT32_MAX ? INT32_MAX : things.highest + 1};
    }
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

} // namespace plinket3
