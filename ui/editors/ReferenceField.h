#pragma once

#include "ui/editors/EditorWindow.h"
#include "ui/editors/NumberFields.h"

#include <QLabel>
#include <QWidget>

namespace plinket3 {

/// A label that can be clicked, with the mouse or (Space and Enter) the keyboard.
class LinkLabel : public QLabel {
    Q_OBJECT
public:
    explicit LinkLabel(const QString& name);

signals:
    void Clicked();
    void DoubleClicked();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

/// The number of a state or sound that a thing or weapon names: the number box (stem with "txt" before and "N" behind
/// it), the state or sound in words, which a click brings up in its editor ("lbl" ... "S"), and a button that takes
/// what is selected there ("cmd" ... "A"). A double click on a sound plays it.
class ReferenceField : public QWidget {
    Q_OBJECT
public:
    enum class To { State, Sound };

    /// `accessibleName` is what the field's label says.
    ReferenceField(const QString& stem, const QString& accessibleName, const EditorContext& context, To to);

    void ShowCell(const std::optional<Cell>& cell) { box_.ShowCell(cell); }
    void Update() { box_.Update(); }
    NumberBox& Box() { return box_; }

private:
    std::int32_t Number() const;
    void ShowLabel();
    void BringUp();
    void TakeSelected();

    EditorContext context_;
    To to_;
    NumberBox& box_;
    LinkLabel& label_;
};

} // namespace plinket3
