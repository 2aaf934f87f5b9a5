#include "ui/fields/NumberBox.h"

#include "core/Numbers.h"
#include "ui/LatinText.h"
#include "ui/fields/Marking.h"

#include <QFocusEvent>

namespace plinket3 {

namespace {

constexpr double unitsPerFixed = 65536.0;

/// Kept: what does not fit wraps, a width of 40000 too. docs/kept-behaviour.md
std::int32_t FixedFromUnits(std::int32_t units) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(units) << 16);
}

/// A number within the limits; one beyond them is written back with the caret at its end.
std::int32_t ReadIndexField(QLineEdit& box, Limits limits) {
    const std::int32_t typed = LeadingInt32(StoredText(box.text()));
    const std::int32_t index = limits.Apply(typed);
    if (index != typed)
        box.setText(QString::number(index));
    return index;
}

} // namespace

std::int32_t ReadLongField(QLineEdit& box) {
    const double value = LeadingReal(StoredText(box.text()));
    const std::int32_t whole = RoundToInt32(value);
    if (value > INT32_MAX || value < INT32_MIN)
        box.setText(QString::number(whole)); // leaves the caret at its end
    return whole;
}

std::int32_t ReadRangedField(QLineEdit& box, Limits limits) {
    const double typed = LeadingReal(StoredText(box.text()));
    const std::int32_t value = limits.Apply(RoundToInt32(typed));
    if (static_cast<double>(value) != typed) {
        const int caret = box.cursorPosition();
        box.setText(QString::number(value));
        box.setCursorPosition(caret);
    }
    return value;
}

NumberBox::NumberBox(const QString& name, const QString& accessibleName, const EditorContext& context, NumberForm form)
    : FieldBox(name, accessibleName, context), form_(form) {
    connect(this, &QLineEdit::textEdited, this, [this] { StoreText(true); });
}

void NumberBox::ShowCell(const std::optional<Cell>& cell) {
    if (cell_ != cell)
        setModified(false);
    cell_ = cell;
    setEnabled(cell_.has_value());
    if (cell_) {
        setText(TextOf(std::get<std::int32_t>(edits_.Value(*cell_))));
        Mark();
    } else {
        clear();
        MarkDifference(*this, false, {});
    }
    emit Shown();
}

void NumberBox::ShowForm(NumberForm form) {
    if (form_ == form)
        return;
    form_ = form;
    ShowCell(cell_);
}

void NumberBox::Update() {
    if (!cell_)
        return;
    const std::int32_t value = std::get<std::int32_t>(edits_.Value(*cell_));
    const bool typing = hasFocus() && isModified();
    const std::int32_t shown = form_ == NumberForm::Fixed ? FixedFromUnits(LeadingInt32(StoredText(text())))
                                                          : LeadingInt32(StoredText(text()));
    if (!typing || edits_.Limited(*cell_, shown) != value)
        setText(TextOf(value));
    Mark();
    emit Shown();
}

void NumberBox::Put(std::int32_t value) {
    if (!cell_)
        return;
    setText(TextOf(value));
    StoreText(false);
}

QString NumberBox::TextOf(std::int32_t value) const {
    if (form_ == NumberForm::Fixed)
        return QString::fromStdString(RealText(value / unitsPerFixed));
    return QString::number(value);
}

std::int32_t NumberBox::ReadText() {
    switch (form_) {
    case NumberForm::Long:
        return ReadLongField(*this);
    case NumberForm::Fixed:
        return FixedFromUnits(ReadLongField(*this));
    case NumberForm::Index:
        return ReadIndexField(*this, edits_.LimitsOf(cell_->kind, cell_->field));
    default:
        return ReadRangedField(*this, edits_.LimitsOf(cell_->kind, cell_->field));
    }
}

void NumberBox::StoreText(bool typing) {
    if (!cell_)
        return;
    const std::int32_t value = ReadText();
    setModified(typing);
    edits_.Store(*cell_, value, typing);
    Mark();
    emit Shown();
}

QString NumberBox::DefaultText() const { return TextOf(std::get<std::int32_t>(edits_.DefaultValue(*cell_))); }

void NumberBox::Mark() { MarkDifference(*this, !edits_.IsDefault(*cell_), DefaultText()); }

void NumberBox::AddRestore(QMenu& menu) {
    if (cell_)
        AddRestoreEntry(menu, *cell_, DefaultText());
}

void NumberBox::focusOutEvent(QFocusEvent* event) {
    FieldBox::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        Update(); // what was typed with a fraction, or not as a number, now stands as it was stored
}

void NumberBoxes::Show(std::optional<std::int32_t> record) {
    for (const Box& box : boxes_)
        box.box->ShowCell(record ? std::optional<Cell>({kind_, *record, box.field}) : std::nullopt);
}

void NumberBoxes::Update() {
    for (const Box& box : boxes_)
        box.box->Update();
}

} // namespace plinket3
