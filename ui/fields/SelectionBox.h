#pragma once

#include "patch/ChangeMany.h"
#include "ui/fields/FieldBox.h"
#include "ui/fields/RecordSelection.h"

namespace plinket3 {

/// A box for one number of the selected records: shows it, stores what the user types in all of them (a run of typing
/// is one step), and marks the number of a single record that is not the engine's. Of several records whose numbers
/// differ it shows nothing, and while it is empty it changes none of them. A change typed for several, "*0.5" or "+10",
/// waits for Enter or until the user goes elsewhere; Escape gives it up.
class SelectionBox : public FieldBox {
    Q_OBJECT
public:
    /// `selection` must outlive the box.
    SelectionBox(const QString& name, const QString& accessibleName, const RecordSelection& selection,
                 const EditorContext& context);

    /// What the number is for, in a word under the mouse.
    void Hint(const QString& hint);
    /// Shows the selection, which is another one. Stores nothing.
    void ShowSelection();
    /// Shows the selection's number, unless the user is typing and the text reads as it.
    void Update();

    /// Whether a change waits in the control for Enter.
    static bool Waits(const QWidget* control);
    /// What waits there is taken now.
    static void TakeWaiting(QWidget* control);

signals:
    /// The number was shown or stored anew.
    void Shown();

protected:
    /// Whether the user may change the number.
    virtual bool Editable() const { return !selection_.records.empty(); }
    /// The record's number and the engine's own as they stand in the box.
    virtual QString TextOf(std::int32_t record) const = 0;
    virtual QString DefaultTextOf(std::int32_t record) const = 0;
    /// The engine's own number in words.
    virtual QString DefaultWord(std::int32_t record) const { return DefaultTextOf(record); }
    /// What shows while the box is empty.
    virtual QString EmptyText() const;
    /// What stands in the box of several records as long as the user types nothing.
    virtual QString CommonText() const = 0;
    /// Stores what the user types.
    virtual void StoreTyped() = 0;
    virtual Cell CellOf(std::int32_t record) const = 0;
    /// Whether one can reckon with what the box holds.
    virtual bool HoldsNumbers() const { return true; }
    /// The step that changes the selected records: "hit points of 3 things".
    virtual std::string StepName() const = 0;
    /// Whether a text is a change of the numbers of several records.
    bool IsChange(const QString& text) const;
    /// Whether what the user typed, and what it was read as, may go on standing in the box.
    virtual bool TextHolds() const = 0;
    /// Whether a text that holds stays when the user goes elsewhere.
    virtual bool KeepsText() const { return false; }
    virtual void Restore() = 0;

    virtual bool Differs(std::int32_t record) const { return TextOf(record) != DefaultTextOf(record); }
    void Mark();

    void AddRestore(QMenu& menu) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    const RecordSelection& selection_;

private:
    void ShowNumber();
    void Edited();
    void TakeChange();
    QString ChangeHint() const;

    EditorContext context_;
    QString hint_;
};

} // namespace plinket3
