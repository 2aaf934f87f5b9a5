#include "ui/editors/NumberFields.h"

#include "core/Numbers.h"
#include "ui/LatinText.h"

#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QMenu>
#include <QTimer>

#include <memory>

namespace plinket3 {

namespace {

constexpr double unitsPerFixed = 65536.0;
constexpr std::int32_t firstFrameLetter = 'A';

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

QString StateLabelText(const PatchSet& set, std::int32_t state) {
    if (state <= 0 || static_cast<std::size_t>(state) >= set.states.size())
        return QStringLiteral("-");
    const StateRecord& record = set.states[static_cast<std::size_t>(state)];
    const std::int32_t letter = firstFrameLetter + (record.subnumber & ~litBit);
    return ShownText(set.SpriteName(record.sprite)) + QChar(static_cast<char16_t>(letter & 0xff));
}

QString SoundLabelText(const PatchSet& set, std::int32_t sound) {
    return sound == 0 ? QStringLiteral("-") : ShownText(set.SoundName(sound));
}

void MarkDifference(QWidget& widget, bool differs, const QString& defaultText, const QString& plainTip) {
    if (widget.font().bold() != differs) {
        QFont font = widget.font();
        font.setBold(differs);
        widget.setFont(font);
    }
    widget.setToolTip(differs ? QObject::tr("Default: %1").arg(defaultText) : plainTip);
}

int WidthForDigits(const QLineEdit& box, int digits) {
    constexpr int marginDigits = 2; // frame and caret
    return box.fontMetrics().horizontalAdvance(QString(digits + marginDigits, QLatin1Char('0')));
}

FieldBox::FieldBox(const QString& name, const QString& accessibleName, Edits& edits) : edits_(edits) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    setAlignment(Qt::AlignRight);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setEnabled(false);
}

NumberBox::NumberBox(const QString& name, const QString& accessibleName, Edits& edits, NumberForm form)
    : FieldBox(name, accessibleName, edits), form_(form) {
    connect(this, &QLineEdit::textEdited, this, [this] { StoreText(true); });
}

void NumberBox::ShowCell(const std::optional<Cell>& cell) {
    if (cell_ != cell)
        setModified(false);
    cell_ = cell;
    setEnabled(cell_.has_value());
    if (cell_) {
        setText(TextOf(std::get<std::int32_t>(edits_.Value(*cell_))));
        MarkDifference();
    } else {
        clear();
        plinket3::MarkDifference(*this, false, {});
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
    MarkDifference();
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
    MarkDifference();
    emit Shown();
}

void NumberBox::MarkDifference() {
    const std::int32_t standard = std::get<std::int32_t>(edits_.DefaultValue(*cell_));
    plinket3::MarkDifference(*this, !edits_.IsDefault(*cell_), TextOf(standard));
}

void NumberBox::AddRestore(QMenu& menu) {
    if (!cell_)
        return;
    const Cell cell = *cell_;
    menu.addSeparator();
    QAction* restore =
        menu.addAction(tr("Restore default (%1)").arg(TextOf(std::get<std::int32_t>(edits_.DefaultValue(cell)))), this,
                       [this, cell] { edits_.Restore({cell}, "restore " + edits_.NameOf(cell)); });
    restore->setObjectName(QStringLiteral("restoreField"));
    restore->setEnabled(!edits_.IsDefault(cell));
}

void FieldBox::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (event->reason() == Qt::PopupFocusReason)
        return;
    // A click sets the caret after the focus came; select when it is done.
    QTimer::singleShot(0, this, &QLineEdit::selectAll);
}

void FieldBox::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() == Qt::PopupFocusReason)
        return;
    edits_.EndTyping();
    setModified(false);
}

void NumberBox::focusOutEvent(QFocusEvent* event) {
    FieldBox::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        Update(); // what was typed with a fraction, or not as a number, now stands as it was stored
}

void FieldBox::contextMenuEvent(QContextMenuEvent* event) {
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    AddRestore(*menu);
    menu->exec(event->globalPos());
}

} // namespace plinket3
