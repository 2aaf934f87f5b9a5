#include "patch/Edits.h"

#include "patch/FreeRecords.h"
#include "patch/NumberRanges.h"

#include <algorithm>
#include <set>
#include <utility>

namespace plinket3 {

void Edits::Store(const Cell& cell, CellValue value, bool typing) { StoreEach({{cell, std::move(value)}}, {}, typing); }

void Edits::StoreEach(std::vector<Assignment> values, std::string_view many, bool typing) {
    std::erase_if(values, [this](const Assignment& assignment) {
        const bool unset = std::holds_alternative<Unset>(assignment.value);
        return !Exists(assignment.cell) || (unset && !MayBeUnset(assignment.cell));
    });
    if (values.empty())
        return;
    std::vector<Cell> cells;
    cells.reserve(values.size());
    for (Assignment& assignment : values) {
        cells.push_back(assignment.cell);
        if (const auto* number = std::get_if<std::int32_t>(&assignment.value); number && assignment.cell.field >= 0)
            assignment.value = Limited(assignment.cell, *number);
    }
    const Cell& cell = cells.front();
    if (const std::vector<Cell> derived = DerivedFrom(cell); !derived.empty()) {
        MiscRecord misc = patch_.current.misc;
        misc.*fieldTable<MiscRecord>[static_cast<std::size_t>(cell.field)].member =
            std::get<std::int32_t>(values[0].value);
        DeriveMisc(misc);
        for (const Cell& other : derived)
            values.push_back({other, misc.*fieldTable<MiscRecord>[static_cast<std::size_t>(other.field)].member});
    }
    // Kept: choosing a weapon's kind of ammunition does not mark the patch changed. docs/kept-behaviour.md
    const bool marks = cell.kind != RecordKind::Weapon || cell.field != RowOf(&WeaponRecord::ammoType);
    Push(std::move(values), NameOf(cells, many), typing, marks);
}

void Edits::StoreGroup(const std::vector<Assignment>& assignments, std::string name, bool typing) {
    std::vector<Assignment> existing;
    existing.reserve(assignments.size());
    std::set<std::pair<RecordKind, std::int32_t>> made;
    for (const Assignment& assignment : assignments) {
        const Cell& cell = assignment.cell;
        if (!Exists(cell) && !made.contains({cell.kind, cell.index}))
            continue;
        if (cell.field == existsField)
            made.insert({cell.kind, cell.index});
        existing.push_back(assignment);
    }
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

Status Edits::MayMake(RecordKind kind, std::int32_t number) const {
    const std::string name = MadeName(kind, number);
    if (HasRecord(patch_.current, kind, number))
        return Status::Failure("There is a " + name + " already.");
    if (const std::string_view owner = OwnerOfNumber(number); !owner.empty())
        return Status::Failure("The number of " + name + " belongs to " + std::string(owner) +
                               ": patches change what has it, but make nothing new of it.");
    return Exists({kind, number, existsField}) ? Status() : Status::Failure("There can be no " + name + ".");
}

void Edits::MakeRecord(RecordKind kind, std::int32_t number, const std::string& lumpName) {
    if (!MayMake(kind, number))
        return;
    std::vector<Assignment> assignments{{{kind, number, existsField}, 1}};
    if (!lumpName.empty())
        assignments.push_back({{kind, number, lumpNameField}, lumpName});
    StoreGroup(assignments, "new " + MadeName(kind, number));
}

std::int32_t Edits::FreeNumber(RecordKind kind) const {
    const std::vector<std::int32_t> next = NewNumbers(patch_.current, kind, 1);
    return !next.empty() && Exists({kind, next.front(), existsField}) ? next.front() : noRecord;
}

void Edits::RemoveRecords(RecordKind kind, const std::vector<std::int32_t>& records, std::string_view many) {
    std::vector<Assignment> assignments;
    std::vector<std::int32_t> made;
    for (const std::int32_t record : records) {
        if (!IsMade(kind, record))
            continue;
        made.push_back(record);
        for (const Cell& cell : EveryCellOf(kind, record))
            if (Exists(cell) && !IsDefault(cell))
                assignments.push_back({cell, DefaultValue(cell)});
    }
    if (!made.empty())
        Push(std::move(assignments), "remove " + RecordsName(kind, made, many), false, true);
}

void Edits::Push(std::vector<Assignment> assignments, std::string name, bool typing, bool marks) {
    Step step{std::move(name), {}, marks};
    bool anything = false;
    step.changes.reserve(assignments.size());
    for (Assignment& assignment : assignments) {
        CellValue before = Value(assignment.cell);
        anything = anything || before != assignment.value;
        step.changes.push_back({assignment.cell, std::move(before), std::move(assignment.value)});
    }
    if (anything)
        Move(steps_.Push(std::move(step), typing), true);
}

void Edits::Undo() {
    if (const Step* step = steps_.Undo())
        Move(step->changes, false);
}

void Edits::Redo() {
    if (const Step* step = steps_.Redo())
        Move(step->changes, true);
}

void Edits::Move(const std::vector<Change>& changes, bool forward) {
    ++revision_;
    std::vector<Cell> cells;
    cells.reserve(changes.size());
    for (const Change& change : changes)
        cells.push_back(change.cell);
    if (forward)
        for (const Change& change : changes)
            WriteCell(patch_.current, change.cell, change.after);
    else
        for (auto change = changes.rbegin(); change != changes.rend(); ++change)
            WriteCell(patch_.current, change->cell, change->before);
    Tell(cells);
}

void Edits::MarkSaved() {
    steps_.MarkSaved();
    Tell({});
}

void Edits::Clear() {
    steps_.Clear();
    ++revision_;
    Tell({});
}

void Edits::MarkChangedForGood() {
    steps_.ForgetSaved();
    Tell({});
}

/// The changed flag follows the steps.
void Edits::Tell(const std::vector<Cell>& cells) {
    patch_.changed = steps_.Changed();
    for (const Listener& listener : listeners_)
        listener(cells);
}

} // namespace plinket3
