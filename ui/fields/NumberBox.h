#pragma once

#include "ui/fields/FieldBox.h"

#include <cstdint>
#include <optional>

namespace plinket3 {

/// A box's text as a whole 32-bit number. A number beyond 32 bits is limited and written back with the caret at its
/// end; a fraction stays in the box and is rounded (halves to the even one) in the result; no number is 0.
std::int32_t ReadLongField(QLineEdit& box);

/// A box's text as a whole number within the limits. Text with another value than the result is replaced by it.
std::int32_t ReadRangedField(QLineEdit& box, Limits limits);

/// How the number of a cell stands in its box.
enum class NumberForm {
    Long,   // whole, 32 bits
    Fixed,  // 16.16 fixed point: shown as a real number, typed in whole units
    Index,  // whole, of a state or sound: only a number beyond the cell's limits is written back
    Ranged, // whole, within the cell's limits
};

/// A box for one numeric cell of the patch: shows it, stores what the user types (a run of typing is one step) and
/// marks a value that is not the engine's.
class NumberBox : public FieldBox {
    Q_OBJECT
public:
    NumberBox(const QString& name, const QString& accessibleName, const EditorContext& context, NumberForm form);

    /// The cell that the box stands for from now on; none: the box is empty and disabled. Stores nothing.
    void ShowCell(const std::optional<Cell>& cell);
    void ShowForm(NumberForm form);
    /// Shows the cell's value, unless the user is typing and the text reads as it.
    void Update();
    const std::optional<Cell>& ShownCell() const { return cell_; }
    /// What another control has chosen: shows and stores it as typing would, as a step of its own.
    void Put(std::int32_t value);

signals:
    /// The cell's value was shown or stored anew.
    void Shown();

protected:
    void AddRestore(QMenu& menu) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    std::int32_t ReadText();
    QString TextOf(std::int32_t value) const;
    QString DefaultText() const;
    void StoreText(bool typing);
    void Mark();

    NumberForm form_;
    std::optional<Cell> cell_;
};

/// The number boxes of a form that shows one record at a time.
class NumberBoxes {
public:
    explicit NumberBoxes(RecordKind kind) : kind_(kind) {}

    /// Adds a box for a row of the kind's table.
    void Add(NumberBox& box, int field) { boxes_.push_back({&box, field}); }
    /// Shows a record's values; none: the boxes are empty and disabled.
    void Show(std::optional<std::int32_t> record);
    /// Shows other values of the same record.
    void Update();

private:
    struct Box {
        NumberBox* box;
        int field;
    };
    RecordKind kind_;
    std::vector<Box> boxes_;
};

} // namespace plinket3
