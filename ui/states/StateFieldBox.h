#pragma once

#include "ui/fields/FrameForm.h"
#include "ui/fields/SelectionBox.h"
#include "ui/states/StateColumns.h"

#include <optional>

namespace plinket3 {

/// A box for one number of the selected states. Of several states it shows nothing until the user types what all of
/// them get; a box that is empty changes nothing.
class StateFieldBox : public SelectionBox {
    Q_OBJECT
public:
    /// `selection` must outlive the box.
    StateFieldBox(const QString& name, const QString& accessibleName, StateColumn column,
                  const RecordSelection& selection, const EditorContext& context);

    /// Only for the frame. Stores nothing.
    void Form(FrameForm form) { form_ = form; }
    /// The number in the box; absent when it has none.
    std::optional<std::int32_t> Typed() const;

protected:
    bool Editable() const override { return AnyEditable(selection_); }
    QString TextOf(std::int32_t state) const override;
    QString DefaultTextOf(std::int32_t state) const override;
    QString CommonText() const override { return {}; }
    bool TextHolds() const override;
    void StoreTyped() override;
    Cell CellOf(std::int32_t state) const override { return {RecordKind::State, state, StateColumnField(column_)}; }
    std::string StepName() const override;
    bool KeepsText() const override { return selection_.Several() && !text().isEmpty(); }
    void Restore() override;

private:
    QString NumberText(std::int32_t value) const;

    const Session& session_;
    StateColumn column_;
    FrameForm form_ = FrameForm::Number;
};

} // namespace plinket3
