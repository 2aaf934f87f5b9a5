#pragma once

#include "ui/fields/FieldBox.h"
#include "ui/fields/FrameForm.h"
#include "ui/states/StateColumns.h"
#include "ui/states/StateSelection.h"

#include <optional>

namespace plinket3 {

/// A box for one number of the selected states. Of several states it shows nothing until the user types what all of
/// them get; a box that is empty changes nothing.
class StateFieldBox : public FieldBox {
    Q_OBJECT
public:
    /// `selection` must outlive the box.
    StateFieldBox(const QString& name, const QString& accessibleName, StateColumn column,
                  const StateSelection& selection, const EditorContext& context);

    /// Only for the frame. Stores nothing.
    void Form(FrameForm form) { form_ = form; }
    /// Shows the selection, which is another one.
    void ShowSelection();
    /// Shows the selection's value, unless the box's text already reads as it.
    void Update();
    /// The number in the box; absent when it is empty.
    std::optional<std::int32_t> Shown() const;

protected:
    void AddRestore(QMenu& menu) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QString TextOf(std::int32_t value) const;
    bool IsValueOfAll(std::int32_t value) const;
    void StoreText();
    void ShowValue();

    const Session& session_;
    StateColumn column_;
    const StateSelection& selection_;
    FrameForm form_ = FrameForm::Number;
};

} // namespace plinket3
