#include "ui/editors/ReferenceField.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QToolButton>

namespace plinket3 {

LinkLabel::LinkLabel(const QString& name) {
    setObjectName(name);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    setForegroundRole(QPalette::Link);
}

void LinkLabel::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()))
        emit Clicked();
}

void LinkLabel::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        emit DoubleClicked();
}

void LinkLabel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        emit Clicked();
    else
        QLabel::keyPressEvent(event);
}

ReferenceField::ReferenceField(const QString& stem, const QString& accessibleName, const EditorContext& context, To to)
    : context_(context), to_(to),
      box_(*new NumberBox(QStringLiteral("txt%1N").arg(stem), accessibleName, context.edits, NumberForm::Ranged)),
      label_(*new LinkLabel(QStringLiteral("lbl%1S").arg(stem))) {
    auto* assign = new QToolButton;
    assign->setObjectName(QStringLiteral("cmd%1A").arg(stem));
    assign->setIcon(style()->standardIcon(QStyle::SP_ArrowLeft));
    assign->setToolTip(to == To::State ? tr("Take the state that is selected in the state editor")
                                       : tr("Take the sound that is selected in the sound editor"));
    assign->setAccessibleName(tr("%1: take the selected one").arg(accessibleName));

    const QFontMetrics metrics(box_.font());
    box_.setFixedWidth(metrics.horizontalAdvance(QStringLiteral("00000000")));
    label_.setMinimumWidth(metrics.horizontalAdvance(QStringLiteral("00000000")));
    label_.setToolTip(to == To::State ? tr("Show this state in the state editor")
                                      : tr("Show this sound in the sound editor; double click to hear it"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(&box_);
    row->addWidget(assign);
    row->addWidget(&label_, 1);
    setFocusProxy(&box_);

    connect(&box_, &NumberBox::Shown, this, &ReferenceField::ShowLabel);
    connect(assign, &QToolButton::clicked, this, &ReferenceField::TakeSelected);
    connect(&label_, &LinkLabel::Clicked, this, &ReferenceField::BringUp);
    if (to == To::Sound)
        connect(&label_, &LinkLabel::DoubleClicked, this, [this] {
            if (box_.ShownCell())
                context_.links.PlaySoundLump(Number());
        });
}

std::int32_t ReferenceField::Number() const { return std::get<std::int32_t>(context_.edits.Value(*box_.ShownCell())); }

void ReferenceField::ShowLabel() {
    const PatchSet& current = context_.program.patch.current;
    const bool filled = box_.ShownCell().has_value();
    label_.setText(!filled            ? QString()
                   : to_ == To::State ? StateLabelText(current, Number())
                                      : SoundLabelText(current, Number()));
    label_.setAccessibleName(tr("%1: %2").arg(box_.accessibleName(), label_.text()));
}

void ReferenceField::BringUp() {
    const std::optional<Cell>& cell = box_.ShownCell();
    if (!cell)
        return;
    if (to_ == To::Sound)
        context_.links.ShowSoundInEditor(Number());
    else
        context_.links.SelectSingleState(Number(), cell->kind == RecordKind::Thing ? cell->index : -1,
                                         cell->kind == RecordKind::Weapon ? cell->index : -1);
}

void ReferenceField::TakeSelected() {
    // Kept: the row is taken for the state's number even while a filter shows other states. docs/kept-behaviour.md
    const std::optional<int> row =
        to_ == To::State ? context_.links.SelectedStateRow() : context_.links.SelectedSoundRow();
    if (row)
        box_.Put(*row);
    else
        context_.links.ShowStatus(to_ == To::State ? tr("No state is selected in the state editor.")
                                                   : tr("No sound is selected in the sound editor."));
}

} // namespace plinket3
