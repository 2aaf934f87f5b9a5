#pragma once

#include "patch/modTableDef.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace plinket3 {

enum class RecordKind { Thing, State, Sound, String, Weapon, Ammo, Cheat, Misc, Par };

/// One value of the patch. `field` is a row of the kind's table, or one of the constants below.
struct Cell {
    RecordKind kind = RecordKind::Thing;
    std::int32_t index = 0; // of the record; 0 for the one miscellaneous record and for the par list
    int field = 0;
    bool operator==(const Cell&) const = default;
};
inline constexpr int nameField = -1;        // things, weapons, ammunition
inline constexpr int codePointerField = -2; // states
inline constexpr int textField = -3;        // strings (with their length) and cheats
inline constexpr int listField = -4;        // the par list as a whole

using CellValue = std::variant<std::int32_t, std::string, std::vector<ParRecord>>;

struct Assignment {
    Cell cell;
    CellValue value;
};

struct Limits {
    std::int32_t lowest = INT32_MIN, highest = INT32_MAX;
    std::int32_t Apply(std::int32_t value) const { return value < lowest ? lowest : value > highest ? highest : value; }
};

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

    /// What an editor lets into a numeric field: the row's limits, or those of what it refers to.
    Limits LimitsOf(RecordKind kind, int field) const;

    /// The number as `Store` stores it in a row of a table: limited, a byte's negative value as its unsigned reading.
    std::int32_t Limited(const Cell& cell, std::int32_t number) const;

    /// Stores one value as a step named after it ("hit points of Imp"). Numbers are limited, what the engine derives
    /// from the value is stored with it, and the patch is marked changed unless the field is one that does not mark it.
    /// `typing`: a step that continues the one before, of the same cell, becomes one with it, and none when it leads
    /// back to where that began. A cell that the patch does not have, or an equal value, is no step.
    void Store(const Cell& cell, CellValue value, bool typing = false);
    /// Stores several values as one step. Numbers are stored as they are.
    void StoreGroup(const std::vector<Assignment>& assignments, std::string name, bool typing = false);
    /// `StoreGroup` of the default values.
    void Restore(const std::vector<Cell>& cells, std::string name);
    /// The same for one value, as a step named after it.
    void RestoreCell(const Cell& cell) { Restore({cell}, "restore " + NameOf(cell)); }
    /// The same for every cell of these records, as a step named by `RecordsName`.
    void RestoreRecords(RecordKind kind, const std::vector<std::int32_t>& records, std::string_view many);
    /// Ends a run of typing: the next step stands for itself.
    void EndTyping() { typing_ = false; }

    CellValue Value(const Cell& cell) const { return Read(patch_.current, cell); }
    CellValue DefaultValue(const Cell& cell) const { return Read(patch_.defaults, cell); }
    bool IsDefault(const Cell& cell) const { return Value(cell) == DefaultValue(cell); }
    /// Every cell of a record: all rows of its table and its name, text or code pointer.
    std::vector<Cell> CellsOf(RecordKind kind, std::int32_t index) const;
    /// "hit points of Imp", "duration of frame 12".
    std::string NameOf(const Cell& cell) const;
    /// "Imp", "frame 12", "sound pistol".
    std::string RecordName(RecordKind kind, std::int32_t index) const;
    /// The one record's name, or "3 frames" when `many` is "frames".
    std::string RecordsName(RecordKind kind, const std::vector<std::int32_t>& records, std::string_view many) const;

    bool CanUndo() const { return position_ > 0; }
    bool CanRedo() const { return position_ < steps_.size(); }
    std::string UndoName() const { return CanUndo() ? steps_[position_ - 1].name : std::string(); }
    std::string RedoName() const { return CanRedo() ? steps_[position_].name : std::string(); }
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
    struct Change {
        Cell cell;
        CellValue before, after;
    };
    struct Step {
        std::string name;
        std::vector<Change> changes;
        bool marks = true; // sets the changed flag
    };

    bool Exists(const Cell& cell) const;
    static CellValue Read(const PatchSet& set, const Cell& cell);
    void Write(const Cell& cell, const CellValue& value);
    bool Merges(const Step& step, bool typing) const;
    static std::vector<Cell> DerivedFrom(const Cell& cell);
    void Push(std::vector<Assignment> assignments, std::string name, bool typing, bool marks);
    void Move(const Step& step, bool forward);
    void UpdateChangedFlag();
    void Tell(const std::vector<Cell>& cells) const;

    PatchData& patch_;
    std::vector<Listener> listeners_;
    std::vector<Step> steps_;
    std::size_t position_ = 0;             // steps that are done
    std::optional<std::size_t> saved_ = 0; // steps that were done when the patch was saved; none when out of reach
    std::uint64_t revision_ = 0;
    bool typing_ = false; // the last step may go on
};

} // namespace plinket3
