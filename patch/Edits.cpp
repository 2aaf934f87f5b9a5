#include "patch/Edits.h"

#include "core/Text.h"

#include <algorithm>
#include <iterator>
#include <type_traits>
#include <utility>

namespace plinket3 {

namespace {

/// The kind's records in a set, handed to `visit` as a vector (or, for the one miscellaneous record, as itself).
template <class Set, class Visit> auto VisitRecords(Set& set, RecordKind kind, Visit visit) {
    switch (kind) {
    case RecordKind::Thing:
        return visit(set.things);
    case RecordKind::State:
        return visit(set.states);
    case RecordKind::Sound:
        return visit(set.sounds);
    case RecordKind::Weapon:
        return visit(set.weapons);
    default:
        return visit(set.ammo);
    }
}

template <class Set> auto* NamesOf(Set& set, RecordKind kind) {
    switch (kind) {
    case RecordKind::Thing:
        return &set.thingNames;
    case RecordKind::Weapon:
        return &set.weaponNames;
    default:
        return &set.ammoNames;
    }
}

bool HasTable(RecordKind kind) {
    return kind != RecordKind::String && kind != RecordKind::Cheat && kind != RecordKind::Par;
}

bool HasNames(RecordKind kind) {
    return kind == RecordKind::Thing || kind == RecordKind::Weapon || kind == RecordKind::Ammo;
}

std::size_t RowCount(RecordKind kind) {
    switch (kind) {
    case RecordKind::Thing:
        return fieldTable<ThingRecord>.size();
    case RecordKind::State:
        return fieldTable<StateRecord>.size();
    case RecordKind::Sound:
        return fieldTable<SoundRecord>.size();
    case RecordKind::Weapon:
        return fieldTable<WeaponRecord>.size();
    case RecordKind::Ammo:
        return fieldTable<AmmoRecord>.size();
    case RecordKind::Misc:
        return fieldTable<MiscRecord>.size();
    default:
        return 0;
    }
}

template <class Record> const Field<Record>& Row(int field) {
    return fieldTable<Record>[static_cast<std::size_t>(field)];
}

/// What the rows tell, whatever the record.
struct RowFacts {
    std::string_view label;
    FieldUnit unit = FieldUnit::Number;
    FieldWidth width = FieldWidth::Int32;
    Limits limits;
};

template <class Record> RowFacts FactsOf(int field) {
    const Field<Record>& row = Row<Record>(field);
    return {row.label, row.unit, row.width, {row.lowest, row.highest}};
}

RowFacts FactsOf(RecordKind kind, int field) {
    switch (kind) {
    case RecordKind::Thing:
        return FactsOf<ThingRecord>(field);
    case RecordKind::State:
        return FactsOf<StateRecord>(field);
    case RecordKind::Sound:
        return FactsOf<SoundRecord>(field);
    case RecordKind::Weapon:
        return FactsOf<WeaponRecord>(field);
    case RecordKind::Ammo:
        return FactsOf<AmmoRecord>(field);
    default:
        return FactsOf<MiscRecord>(field);
    }
}

/// The number behind a row of a table, to read or to write.
template <class Set> auto& Number(Set& set, const Cell& cell) {
    using Int = std::conditional_t<std::is_const_v<Set>, const std::int32_t, std::int32_t>;
    if (cell.kind == RecordKind::Misc)
        return static_cast<Int&>(set.misc.*Row<MiscRecord>(cell.field).member);
    Int* number = VisitRecords(set, cell.kind, [&cell](auto& records) -> Int* {
        using Record = typename std::remove_cvref_t<decltype(records)>::value_type;
        return &(records[static_cast<std::size_t>(cell.index)].*Row<Record>(cell.field).member);
    });
    return *number;
}

std::size_t RecordCount(const PatchSet& set, RecordKind kind) {
    switch (kind) {
    case RecordKind::String:
        return set.strings.size();
    case RecordKind::Cheat:
        return set.cheats.size();
    case RecordKind::Misc:
    case RecordKind::Par:
        return 1;
    default:
        return VisitRecords(set, kind, [](const auto& records) { return records.size(); });
    }
}

std::int32_t LastOf(std::size_t count) { return count == 0 ? 0 : static_cast<std::int32_t>(count) - 1; }

} // namespace

bool Edits::Exists(const Cell& cell) const {
    if (cell.index < 0 || static_cast<std::size_t>(cell.index) >= RecordCount(patch_.current, cell.kind))
        return false;
    switch (cell.field) {
    case nameField:
        return HasNames(cell.kind);
    case codePointerField:
        return cell.kind == RecordKind::State;
    case textField:
        return cell.kind == RecordKind::String || cell.kind == RecordKind::Cheat;
    case listField:
        return cell.kind == RecordKind::Par;
    default:
        return cell.field >= 0 && static_cast<std::size_t>(cell.field) < RowCount(cell.kind);
    }
}

CellValue Edits::Read(const PatchSet& set, const Cell& cell) {
    const auto index = static_cast<std::size_t>(cell.index);
    switch (cell.field) {
    case nameField:
        return (*NamesOf(set, cell.kind))[index];
    case codePointerField:
        return set.codePointers[index];
    case textField:
        return cell.kind == RecordKind::Cheat ? set.cheats[index].text : set.strings[index].text;
    case listField:
        return set.pars;
    default:
        return Number(set, cell);
    }
}

void Edits::Write(const Cell& cell, const CellValue& value) {
    PatchSet& set = patch_.current;
    const auto index = static_cast<std::size_t>(cell.index);
    switch (cell.field) {
    case nameField:
        (*NamesOf(set, cell.kind))[index] = std::get<std::string>(value);
        break;
    case codePointerField:
        set.codePointers[index] = std::get<std::int32_t>(value);
        break;
    case textField:
        if (cell.kind == RecordKind::Cheat) {
            set.cheats[index].text = std::get<std::string>(value);
        } else {
            set.strings[index].text = std::get<std::string>(value);
            set.strings[index].length = static_cast<std::int32_t>(set.strings[index].text.size());
        }
        break;
    case listField:
        set.pars = std::get<std::vector<ParRecord>>(value);
        break;
    default:
        Number(set, cell) = std::get<std::int32_t>(value);
    }
}

Limits Edits::LimitsOf(RecordKind kind, int field) const {
    if (field < 0 || static_cast<std::size_t>(field) >= RowCount(kind))
        return {};
    const RowFacts facts = FactsOf(kind, field);
    switch (facts.unit) {
    case FieldUnit::State:
        return {0, LastOf(patch_.current.states.size())};
    case FieldUnit::Sound:
        return {0, LastOf(patch_.current.sounds.size())};
    case FieldUnit::Sprite:
        return {0, LastOf(patch_.current.spriteNames.size())};
    default:
        return facts.limits;
    }
}

std::int32_t Edits::Limited(const Cell& cell, std::int32_t number) const {
    const RowFacts facts = FactsOf(cell.kind, cell.field);
    const Limits limits = LimitsOf(cell.kind, cell.field);
    if (facts.unit == FieldUnit::SpriteFrame)
        return limits.Apply(number & ~litBit) | (number & litBit);
    number = limits.Apply(number);
    return facts.width == FieldWidth::Byte && number < 0 ? number + 256 : number;
}

void Edits::Store(const Cell& cell, CellValue value, bool typing) {
    if (!Exists(cell))
        return;
    if (cell.field >= 0)
        value = Limited(cell, std::get<std::int32_t>(value));
    std::vector<Assignment> assignments{{cell, std::move(value)}};
    if (const std::vector<Cell> derived = DerivedFrom(cell); !derived.empty()) {
        MiscRecord misc = patch_.current.misc;
        misc.*Row<MiscRecord>(cell.field).member = std::get<std::int32_t>(assignments[0].value);
        DeriveMisc(misc);
        for (const Cell& other : derived)
            assignments.push_back({other, misc.*Row<MiscRecord>(other.field).member});
    }
    // Kept: choosing a weapon's kind of ammunition does not mark the patch changed. docs/kept-behaviour.md
    const bool marks = cell.kind != RecordKind::Weapon || cell.field != RowOf(&WeaponRecord::ammoType);
    Push(std::move(assignments), NameOf(cell), typing, marks);
}

void Edits::StoreGroup(const std::vector<Assignment>& assignments, std::string name, bool typing) {
    std::vector<Assignment> existing;
    existing.reserve(assignments.size());
    std::copy_if(assignments.begin(), assignments.end(), std::back_inserter(existing),
                 [this](const Assignment& assignment) { return Exists(assignment.cell); });
    Push(std::move(existing), std::move(name), typing, true);
}

void Edits::Restore(const std::vector<Cell>& cells, std::string name) {
    std::vector<Assignment> assignments;
    assignments.reserve(cells.size());
    for (const Cell& cell : cells) {
        if (!Exists(cell))
            continue;
        assignments.push_back({cell, DefaultValue(cell)});
        for (const Cell& derived : DerivedFrom(cell))
            assignments.push_back({derived, DefaultValue(derived)});
    }
    Push(std::move(assignments), std::move(name), false, true);
}

void Edits::RestoreRecords(RecordKind kind, const std::vector<std::int32_t>& records, std::string_view many) {
    std::vector<Cell> cells;
    for (const std::int32_t record : records)
        for (const Cell& cell : CellsOf(kind, record))
            cells.push_back(cell);
    Restore(cells, "restore " + RecordsName(kind, records, many));
}

/// The miscellaneous values that an engine derives from this one.
std::vector<Cell> Edits::DerivedFrom(const Cell& cell) {
    if (cell.kind != RecordKind::Misc || cell.field < 0)
        return {};
    const Field<MiscRecord>& row = Row<MiscRecord>(cell.field);
    if (row.secondCopy != nullptr)
        return {{RecordKind::Misc, 0, RowOf(row.secondCopy)}};
    if (row.member == &MiscRecord::bfgCells)
        return {{RecordKind::Misc, 0, RowOf(&MiscRecord::spare2)}};
    return {};
}

bool Edits::Merges(const Step& step, bool typing) const {
    if (!typing || !typing_ || position_ == 0 || position_ != steps_.size() || saved_ == position_)
        return false;
    const std::vector<Change>& last = steps_.back().changes;
    return std::equal(last.begin(), last.end(), step.changes.begin(), step.changes.end(),
                      [](const Change& left, const Change& right) { return left.cell == right.cell; });
}

void Edits::Push(std::vector<Assignment> assignments, std::string name, bool typing, bool marks) {
    Step step{std::move(name), {}, marks};
    bool anything = false;
    for (Assignment& assignment : assignments) {
        CellValue before = Value(assignment.cell);
        anything = anything || before != assignment.value;
        step.changes.push_back({assignment.cell, std::move(before), std::move(assignment.value)});
    }
    if (!anything)
        return;

    const bool merges = Merges(step, typing);
    if (!merges) {
        if (saved_ && *saved_ > position_)
            saved_.reset();
        steps_.resize(position_);
    }
    typing_ = typing;
    if (!merges) {
        steps_.push_back(std::move(step));
        Move(steps_[position_++], true);
        return;
    }
    Step& last = steps_.back();
    for (std::size_t i = 0; i < last.changes.size(); ++i)
        last.changes[i].after = std::move(step.changes[i].after);
    if (std::all_of(last.changes.begin(), last.changes.end(),
                    [](const Change& change) { return change.before == change.after; })) {
        step = std::move(last);
        steps_.pop_back();
        --position_;
        typing_ = false;
        Move(step, true);
    } else {
        Move(last, true);
    }
}

void Edits::Undo() {
    if (!CanUndo())
        return;
    typing_ = false;
    Move(steps_[--position_], false);
}

void Edits::Redo() {
    if (!CanRedo())
        return;
    typing_ = false;
    Move(steps_[position_++], true);
}

void Edits::Move(const Step& step, bool forward) {
    ++revision_;
    std::vector<Cell> cells;
    cells.reserve(step.changes.size());
    for (const Change& change : step.changes) {
        Write(change.cell, forward ? change.after : change.before);
        cells.push_back(change.cell);
    }
    UpdateChangedFlag();
    Tell(cells);
}

void Edits::UpdateChangedFlag() {
    if (!saved_) {
        patch_.changed = true;
        return;
    }
    const auto first = static_cast<std::ptrdiff_t>(std::min(*saved_, position_));
    const auto last = static_cast<std::ptrdiff_t>(std::max(*saved_, position_));
    patch_.changed =
        std::any_of(steps_.begin() + first, steps_.begin() + last, [](const Step& step) { return step.marks; });
}

void Edits::MarkSaved() {
    saved_ = position_;
    typing_ = false;
    UpdateChangedFlag();
    Tell({});
}

void Edits::Clear() {
    steps_.clear();
    position_ = 0;
    ++revision_;
    MarkSaved();
}

void Edits::MarkChangedForGood() {
    saved_.reset();
    UpdateChangedFlag();
    Tell({});
}

void Edits::Tell(const std::vector<Cell>& cells) const {
    for (const Listener& listener : listeners_)
        listener(cells);
}

std::vector<Cell> Edits::CellsOf(RecordKind kind, std::int32_t index) const {
    std::vector<Cell> cells;
    for (std::size_t row = 0; row < RowCount(kind); ++row)
        cells.push_back({kind, index, static_cast<int>(row)});
    if (HasNames(kind))
        cells.push_back({kind, index, nameField});
    else if (kind == RecordKind::State)
        cells.push_back({kind, index, codePointerField});
    else if (!HasTable(kind))
        cells.push_back({kind, index, kind == RecordKind::Par ? listField : textField});
    return cells;
}

std::string Edits::RecordName(RecordKind kind, std::int32_t index) const {
    const PatchSet& set = patch_.current;
    const auto place = static_cast<std::size_t>(index);
    switch (kind) {
    case RecordKind::State:
        return "frame " + std::to_string(index);
    case RecordKind::Sound:
        return "sound " + set.SoundName(index);
    case RecordKind::String:
        return "string " + std::to_string(index);
    case RecordKind::Cheat:
        return "cheat " + (place < cheatLabels.size() ? std::string(cheatLabels[place]) : std::to_string(index));
    case RecordKind::Misc:
        return {};
    case RecordKind::Par:
        return "par times";
    default:
        return (*NamesOf(set, kind))[place];
    }
}

std::string Edits::RecordsName(RecordKind kind, const std::vector<std::int32_t>& records, std::string_view many) const {
    return records.size() == 1 ? RecordName(kind, records.front())
                               : std::to_string(records.size()) + " " + std::string(many);
}

std::string Edits::NameOf(const Cell& cell) const {
    std::string record = RecordName(cell.kind, cell.index);
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
