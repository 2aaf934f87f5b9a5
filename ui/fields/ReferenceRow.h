#pragma once

#include "ui/EditorContext.h"
#include "ui/fields/LinkLabel.h"
#include "ui/fields/NumberBox.h"

#include <QGridLayout>
#include <QPushButton>

#include <functional>

namespace plinket3 {

/// What a number refers to.
enum class Reference { State, Sound };

/// One row of a form, for a number that is a state's or a sound's: its label, the number box (txt<stem>N), a
/// description of what it refers to (lbl<stem>S), a button that plays it if it is a sound (cmd<stem>P), and a button
/// that takes the row selected in the state or sound editor (cmd<stem>A).
class ReferenceRow : public QObject {
    Q_OBJECT
public:
    /// Adds itself below what `form` holds, and lives as long as its box. `show` brings a state or sound up in its
    /// editor when the description is clicked.
    ReferenceRow(Reference reference, const QString& stem, const QString& label, const SelectedField& field,
                 const EditorContext& context, QGridLayout& form, std::function<void(std::int32_t)> show);

    NumberBox& Box() const { return *box_; }
    /// What the row is for, in a word under the mouse.
    void Hint(const QString& hint);
    /// What the number refers to may be called otherwise now.
    void UpdateDescription();

private:
    QString LabelText(std::int32_t number) const;
    void Assign();

    Reference reference_;
    EditorContext context_;
    QString label_;
    QLabel* caption_;
    NumberBox* box_;
    LinkLabel* description_;
    QPushButton* play_ = nullptr;
    QPushButton* assign_;
};

} // namespace plinket3
