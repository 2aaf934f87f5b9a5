#pragma once

#include "core/Status.h"
#include "patch/StepNames.h"
#include "patch/UndoSteps.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// The one way in for edits of the open patch. Each call that changes something is one step that can be undone.
class Edits {
public:
    /// Told after a step, an undo or a redo which cells have another value now; also, with no cells, when only the
    /// list of steps or the changed flag is another.
    using Listener = std::function<void(const std::vector<Cell>& cells)>;

    /// `patch` must outlive this object.
    explicit Edits(PatchData& patch) : patch_(patch) {}

    /// Listeners stay for good: those who listen live as long as this object.
    void Listen(Listener listener) { listeners_.push_back(std::move(listener)); }

    /// The functions of the same names for the open patch.
    Limits LimitsOf(RecordKind kind, int field) const { return plinket3::LimitsOf(patch_.current, kind, field); }
    std::int32_t Limited(const Cell& cell, std::int32_t number) const {
        return plinket3::Limited(patch_.current, cell, number);
    }

    /// Stores one value as a step named after it ("hit points of Imp"). Numbers are limited, what the engine derives
    /// from the value is stored with it, and the patch is marked changed unless the field is one that does not mark it.
    /// `typing`: a step that continues the one before, of the same cell, becomes one with it, and none when it leads
    /// back to where that began. A cell that the patch does not have, or an equal value, is no step.
    void Store(const Cell& cell, CellValue value, bool typing = false);
    /// `Store` for the same field of several records of a kind, as one step ("hit points of 3 things").
    void StoreEach(std::vector<Assignment> values, std::string_view many, bool typing = false);
    /// Stores several values as one step. Numbers are stored as they are. A record that the patch does not have can be
    /// given values behind the one that makes it.
    void StoreGroup(const std::vector<Assignment>& assignments, std::string name, bool typing = false);
    /// `StoreGroup` of the default values.
    void Restore(const std::vector<Cell>& cells, std::string name);
    /// The same for one value, as a step named after it.
    void RestoreCell(const Cell& cell) { Restore({cell}, "restore " + NameOf(cell)); }
    /// The same for every cell of these records, as a step named by `RecordsName`.
    void RestoreRecords(RecordKind kind, const std::vector<std::int32_t>& records, std::string_view many);
    /// Whether a record of that number can be made, where the engine knows no limits; the reason why not, for the user.
    Status MayMake(RecordKind kind, std::int32_t number) const;
    /// Makes a record as a step named after it ("new frame 4000"), a sprite or sound with the name of its lumps: a
    /// sprite can be saved only with one. Nothing happens when `MayMake` fails.
    void MakeRecord(RecordKind kind, std::int32_t number, const std::string& lumpName = {});
    /// The lowest number for a new record that the notes do not keep; `noRecord` when there is none.
    std::int32_t FreeNumber(RecordKind kind) const;
    /// Whether the record is one that the patch made.
    bool IsMade(RecordKind kind, std::int32_t number) const {
        return HasRecord(patch_.current, kind, number) && Exists({kind, number, existsField});
    }
    /// Removes those of these records that the patch made, with all that they hold, as a step named by `RecordsName`.
    void RemoveRecords(RecordKind kind, const std::vector<std::int32_t>& records, std::string_view many);
    /// Ends a run of typing: the next step stands for itself.
    void EndTyping() { steps_.EndTyping(); }

    CellValue Value(const Cell& cell) const { return ReadCell(patch_.current, cell); }
    CellValue DefaultValue(const Cell& cell) const { return ReadCell(patch_.defaults, cell); }
    bool IsDefault(const Cell& cell) const { return Value(cell) == DefaultValue(cell); }
    std::vector<Cell> CellsOf(RecordKind kind, std::int32_t index) const { return plinket3::CellsOf(kind, index); }
    std::string NameOf(const Cell& cell) const { return NameOf(std::vector{cell}, {}); }
    std::string NameOf(const std::vector<Cell>& cells, std::string_view many) const {
        return CellsName(patch_.current, cells, many);
    }
    std::string RecordName(RecordKind kind, std::int32_t index) const {
        return plinket3::RecordName(patch_.current, kind, index);
    }
    std::string RecordsName(RecordKind kind, const std::vector<std::int32_t>& records, std::string_view many) const {
        return plinket3::RecordsName(patch_.current, kind, records, many);
    }

    bool CanUndo() const { return steps_.NextUndo() != nullptr; }
    bool CanRedo() const { return steps_.NextRedo() != nullptr; }
    std::string UndoName() const { return CanUndo() ? steps_.NextUndo()->name : std::string(); }
    std::string RedoName() const { return CanRedo() ? steps_.NextRedo()->name : std::string(); }
    void Undo();
    void Redo();

    /// Another number after everything that changed the patch.
    std::uint64_t Revision() const { return revision_; }

    /// The patch was saved, or is an unchanged one: undoing back to here clears the changed flag.
    void MarkSaved();
    /// Forgets every step: another patch was opened.
    void Clear();
    /// The patch counts as changed whatever is undone, as one that came out of a recovery file.
    void MarkChangedForGood();

private:
    bool Exists(const Cell& cell) const {
        return HasCell(patch_.current, cell) &&
               (cell.field != existsField || !HasRecord(patch_.defaults, cell.kind, cell.index));
    }
    void Push(std::vector<Assignment> assignments, std::string name, bool typing, bool marks);
    void Move(const std::vector<Change>& changes, bool forward);
    void Tell(const std::vector<Cell>& cells);

    PatchData& patch_;
    std::vector<Listener> listeners_;
    UndoSteps steps_;
    std::uint64_t revision_ = 0;
};

} // namespace plinket3
