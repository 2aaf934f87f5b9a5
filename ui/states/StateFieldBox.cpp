#include "ui/states/StateFieldBox.h"

#include "core/Numbers.h"
#include "ui/LatinText.h"
#include "ui/fields/Marking.h"
#include "ui/fields/NumberBox.h"

#include <QFocusEvent>
#include <QMenu>

#include <algorithm>

namespace plinket3 {

StateFieldBox::StateFieldBox(const QString& name, const QString& accessibleName, StateColumn column,
                             const StateSelection& selection, const EditorContext& context)
    : FieldBox(name, accessibleName, context), session_(context.program), column_(column), selection_(selection) {
    connect(this, &QLineEdit::textEdited, this, &StateFieldBox::StoreText);
}

void StateFieldBox::ShowSelection() {
    setEnabled(selection_.Editable());
    setPlaceholderText(selection_.Several() ? tr("leave as is") : QString());
    setText({}); // not `clear`, which counts as typing
    ShowValue();
}

void StateFieldBox::Update() {
    const auto shown = Shown();
    const bool typing = hasFocus() && isModified();
    const bool keep = shown ? IsValueOfAll(*shown) && (typing || selection_.Several()) : typing;
    if (!keep)
        setText({});
    ShowValue();
}

void StateFieldBox::ShowValue() {
    if (selection_.states.size() != 1)
        return MarkDifference(*this, false, {});
    const std::int32_t value = StateColumnValue(session_.patch.current, selection_.current, column_);
    const std::int32_t standard = StateColumnValue(session_.patch.defaults, selection_.current, column_);
    if (text().isEmpty() && !isModified())
        setText(TextOf(value));
    MarkDifference(*this, value != standard, TextOf(standard));
}

std::optional<std::int32_t> StateFieldBox::Shown() const {
    if (text().isEmpty())
        return std::nullopt;
    return form_ == FrameForm::Letter ? FrameOfLetter(text()) : LeadingInt32(StoredText(text()));
}

bool StateFieldBox::IsValueOfAll(std::int32_t value) const {
    return std::all_of(selection_.states.begin(), selection_.states.end(), [&](std::int32_t state) {
        return state == 0 || StateColumnValue(session_.patch.current, state, column_) == value;
    });
}

QString StateFieldBox::TextOf(std::int32_t value) const {
    return column_ == StateColumn::Frame ? FrameText(value, form_) : QString::number(value);
}

void StateFieldBox::StoreText() {
    if (text().isEmpty())
        return;
    StateColumnAssignment assignment{column_};
    if (form_ == FrameForm::Letter) {
        // Kept: a letter stores the bare index, without the lit bit. docs/kept-behaviour.md
        assignment = {StateColumn::FrameAndLit, FrameOfLetter(text())};
        setText(TextOf(assignment.value));
        selectAll(); // the next letter replaces this one
    } else {
        assignment.value = ReadRangedField(*this, edits_.LimitsOf(RecordKind::State, StateColumnField(column_)));
    }
    setModified(true);
    StoreInStates(edits_, session_, selection_.states, {&assignment, 1}, true);
    Update();
}

void StateFieldBox::AddRestore(QMenu& menu) {
    if (selection_.states.empty())
        return;
    menu.addSeparator();
    const QString text = selection_.Several()
                             ? tr("Restore defaults of %n states", nullptr, static_cast<int>(selection_.states.size()))
                             : tr("Restore default (%1)")
                                   .arg(TextOf(StateColumnValue(session_.patch.defaults, selection_.current, column_)));
    QAction* restore =
        menu.addAction(text, this, [this] { RestoreStateColumn(edits_, session_.patch, selection_.states, column_); });
    restore->setObjectName(QStringLiteral("restoreField"));
}

void StateFieldBox::focusOutEvent(QFocusEvent* event) {
    FieldBox::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        Update();
}

} // namespace plinket3
