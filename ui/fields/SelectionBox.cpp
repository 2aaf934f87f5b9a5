#include "ui/fields/SelectionBox.h"

#include "core/Numbers.h"
#include "ui/LatinText.h"
#include "ui/fields/Marking.h"

#include <QFocusEvent>
#include <QKeyEvent>

#include <algorithm>

namespace plinket3 {

SelectionBox::SelectionBox(const QString& name, const QString& accessibleName, const RecordSelection& selection,
                           const EditorContext& context)
    : FieldBox(name, accessibleName, context), selection_(selection), context_(context) {
    connect(this, &QLineEdit::textEdited, this, &SelectionBox::Edited);
}

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
    if (typing && IsChange(text()))
        return;
    if (IsChange(text()) || !TextHolds() || (!typing && !KeepsText()))
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
        return MarkDifference(*this, false, {}, selection_.Several() ? ChangeHint() : hint_);
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

bool SelectionBox::IsChange(const QString& text) const {
    return selection_.Several() && BeginsChange(StoredText(text)) && HoldsNumbers();
}

void SelectionBox::Edited() {
    context_.links.ChangeWaits();
    if (!IsChange(text()))
        return StoreTyped();
    emit Shown();
    const TypedChange typed = ReadChange(StoredText(text()));
    if (!typed.change)
        return context_.links.ShowStatus(ShownText(typed.refusal));
    using Kind = NumberChange::Kind;
    const bool less = typed.change->by < 0;
    const QString words = typed.change->kind == Kind::Multiply ? tr("Enter multiplies the %1 by %2.")
                          : typed.change->kind == Kind::Divide ? tr("Enter divides the %1 by %2.")
                          : less                               ? tr("Enter takes %2 from the %1.")
                                                               : tr("Enter adds %2 to the %1.");
    const bool sum = typed.change->kind == Kind::Add;
    const QString by = QString::fromStdString(RealText(sum && less ? -typed.change->by : typed.change->by));
    context_.links.ShowStatus(words.arg(ShownStart(StepName()), by));
}

void SelectionBox::TakeChange() {
    const TypedChange typed = ReadChange(StoredText(text()));
    setModified(false);
    setText({});
    const Session& session = context_.program;
    const Cell cell = CellOf(selection_.current);
    if (typed.change)
        edits_.StoreGroup(ChangeNumbers(session.patch.current,
                                        NumberCells(session.patch.current, session.engine,
                                                    {cell.kind, selection_.records, {}}, cell.field),
                                        *typed.change),
                          StepName());
    else
        context_.links.ShowStatus(ShownText(typed.refusal));
    Update();
    context_.links.ChangeWaits();
}

bool SelectionBox::Waits(const QWidget* control) {
    const auto* box = qobject_cast<const SelectionBox*>(control);
    return box != nullptr && box->IsChange(box->text());
}

void SelectionBox::TakeWaiting(QWidget* control) {
    if (Waits(control))
        static_cast<SelectionBox*>(control)->TakeChange();
}

QString SelectionBox::ChangeHint() const {
    if (!HoldsNumbers())
        return hint_;
    const QString change = tr("For all %n: *0.5 or /2 multiplies or divides them, +10 or +-10 adds or takes away",
                              nullptr, static_cast<int>(selection_.records.size()));
    return hint_.isEmpty() ? change : hint_ + QLatin1Char('\n') + change;
}

void SelectionBox::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if ((!enter && event->key() != Qt::Key_Escape) || !IsChange(text()))
        return FieldBox::keyPressEvent(event);
    if (enter) {
        TakeChange();
    } else {
        setModified(false);
        Update();
        context_.links.ChangeWaits();
    }
    selectAll();
}

void SelectionBox::focusOutEvent(QFocusEvent* event) {
    if (event->reason() != Qt::PopupFocusReason)
        TakeWaiting(this);
    FieldBox::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        Update(); // what was typed with a fraction, or not as a number, now stands as it was stored
}

} // namespace plinket3
