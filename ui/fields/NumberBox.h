#pragma once

#include "patch/modTableDef.h"
#include "ui/fields/SelectedField.h"
#include "ui/fields/SelectionBox.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace plinket3 {

/// A box's text as a whole 32-bit number. A number beyond 32 bits is limited and written back with the caret at its
/// end; a fraction stays in the box and is rounded (halves to the even one) in the result; no number is 0.
std::int32_t ReadLongField(QLineEdit& box);

/// A box's text as a whole number within the limits. Text with another value than the result is replaced by it; the
/// caret stays where it is.
std::int32_t ReadRangedField(QLineEdit& box, Limits limits);

/// How a number stands in its box.
enum class NumberForm {
    Long,   // whole, 32 bits
    Fixed,  // 16.16 fixed point: shown as a real number, typed in whole units
    Speed,  // of a thing: fixed point when it is a projectile, else whole
    Index,  // whole: only a number beyond the field's limits is written back while it is typed
    Ranged, // whole: a fraction is, too, and the caret then stands at its end
};

/// A box for a numeric field of the selected records.
class NumberBox : public SelectionBox {
    Q_OBJECT
public:
    NumberBox(const QString& name, const QString& accessibleName, const SelectedField& field, NumberForm form,
              const EditorContext& context);

    /// The number that all selected records have; absent when they differ or none is selected.
    std::optional<std::int32_t> Number() const;
    /// What another control has chosen: shows and stores it as typing would, as a step of its own.
    void Put(std::int32_t value);

protected:
    QString TextOf(std::int32_t record) const override;
    QString DefaultTextOf(std::int32_t record) const override;
    QString CommonText() const override;
    bool TextHolds() const override;
    void StoreTyped() override { StoreText(true); }
    Cell CellOf(std::int32_t record) const override { return {field_.kind, record, field_.field}; }
    std::string StepName() const override { return edits_.NameOf(Cells(), field_.many); }
    void Restore() override;

private:
    std::vector<Cell> Cells() const;
    bool IsFixed(const PatchSet& set, std::int32_t record) const;
    std::int32_t NumberOf(std::int32_t record) const { return std::get<std::int32_t>(edits_.Value(CellOf(record))); }
    std::int32_t FromUnits(std::int32_t units, std::int32_t record) const;
    std::int32_t ReadText();
    void StoreText(bool typing);

    const PatchData& patch_;
    SelectedField field_;
    NumberForm form_;
};

/// The number boxes of a form that shows the selected records of a kind.
class NumberBoxes {
public:
    /// `many` is what several of the records are called.
    NumberBoxes(RecordKind kind, const char* many) : kind_(kind), many_(many) {}
    /// A row of the kind's table, for a box.
    SelectedField Field(int row) const { return {selection_, kind_, row, many_}; }
    void Add(NumberBox& box) { boxes_.push_back(&box); }
    const RecordSelection& Selection() const { return *selection_; }
    /// Shows the numbers of other records; without records the boxes are empty and disabled.
    void Show(RecordSelection selection);
    /// Shows other numbers of the same records.
    void Update();

private:
    RecordKind kind_;
    const char* many_;
    std::shared_ptr<RecordSelection> selection_ = std::make_shared<RecordSelection>(); // boxes outlive a form
    std::vector<NumberBox*> boxes_;
};

} // namespace plinket3
