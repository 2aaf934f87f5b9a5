#include "ui/fields/SelectionBox.h"

#include "ui/fields/Marking.h"

#include <QFocusEvent>

#include <algorithm>

namespace plinket3 {

SelectionBox::SelectionBox(const QString& name, const QString& accessibleName, const RecordSelection& selection,
                           const EditorContext& context)
    : FieldBox(name, accessibleName, context), selection_(selection) {}

void SelectionBox::Hint(const QString& hint) {
    hint_ = hint;
    setAccessibleDescription(hint);
    Mark();
}

QString SelectionBox::EmptyText() const {
    const QString leave = tr("leave as is");
    const bool hasRoom = maximumWidth() >= WidthForDigits(*this, static_cast<int>(leave.size()));
    return !selection_.Several() ? QString() : hasRoom ? leave : tr("as is");
}

void SelectionBox::ShowSelection() {
    setEnabled(Editable());
    setText({}); // not `clear`, which counts as typing
    ShowNumber();
}

void SelectionBox::Update() {
    const bool typing = hasFocus() && isModified();
    if (!TextHolds() || (!typing && !KeepsText()))
        setText({});
    ShowNumber();
}

void SelectionBox::ShowNumber() {
    if (text().isEmpty() && !isModified() && !selection_.records.empty())
        setText(selection_.Several() ? CommonText() : TextOf(selection_.current));
    setPlaceholderText(EmptyText());
    Mark();
    emit Shown();
}

void SelectionBox::Mark() {
    if (selection_.records.size() != 1)
        return MarkDifference(*this, false, {}, hint_);
    const bool differs = Differs(selection_.current);
    MarkDifference(*this, differs, differs ? DefaultWord(selection_.current) : QString(), hint_);
    if (differs && !hint_.isEmpty())
        setToolTip(hint_ + QLatin1Char('\n') + toolTip());
}

void SelectionBox::AddRestore(QMenu& menu) {
    if (selection_.records.empty())
        return;
    const std::vector<std::int32_t>& records = selection_.records;
    AddRestoreEntry(
        menu,
        selection_.Several() ? tr("Restore %n defaults", nullptr, static_cast<int>(records.size()))
                             : tr("Restore default (%1)").arg(DefaultWord(selection_.current)),
        std::any_of(records.begin(), records.end(), [this](std::int32_t record) { return Differs(record); }),
        [this] { Restore(); });
}

void SelectionBox::focusOutEvent(QFocusEvent* event) {
    FieldBox::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        Update(); // what was typed with a fraction, or not as a number, now stands as it was stored
}

} // namespace plinket3
