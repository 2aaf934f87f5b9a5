#pragma once

#include "ui/fields/SelectedValue.h"
#include "ui/fields/SelectionBox.h"

#include <QValidator>

#include <optional>

namespace plinket3 {

/// A box for a value of the selected records that is written as its meaning asks: whole, with a fraction, bits by name,
/// or a name in upper case. Refuses at once, with a word why, what it cannot be; a number that stands in a patch shows
/// nevertheless. Where it may be unset, an empty box of a single record means that.
class ValueBox : public SelectionBox {
    Q_OBJECT
public:
    ValueBox(const QString& name, const QString& accessibleName, const SelectedValue& value,
             const EditorContext& context);

    /// The number that all selected records have; absent when they differ, it is unset or none is selected.
    std::optional<std::int32_t> Number() const;
    /// The same for a name; empty when it is unset.
    std::optional<std::string> Name() const;
    /// What another control has chosen: stores it as a step of its own.
    void Put(const CellValue& value);

protected:
    bool Editable() const override { return !value_.Editable().empty(); }
    QString TextOf(std::int32_t record) const override { return value_.TextOf(record); }
    QString DefaultTextOf(std::int32_t record) const override { return value_.DefaultTextOf(record); }
    QString DefaultWord(std::int32_t record) const override { return value_.DefaultWord(record); }
    QString EmptyText() const override;
    QString CommonText() const override;
    bool TextHolds() const override;
    void StoreTyped() override;
    Cell CellOf(std::int32_t record) const override { return value_.CellOf(record); }
    bool HoldsNumbers() const override;
    std::string StepName() const override { return value_.StepName(value_.Editable()); }
    bool Differs(std::int32_t record) const override { return value_.Differs(record); }
    void Restore() override { value_.Restore(); }
    void AddRestore(QMenu& menu) override;

private:
    class Validator;

    void Unset();

    SelectedValue value_;
    Tell tell_;
};

} // namespace plinket3
