#include "ui/fields/ReferenceRow.h"

#include "ui/fields/Labels.h"

#include <QStyle>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr int longestDigits = 6; // of a state's or sound's number

/// A button no wider than its text needs: a form has many of them.
QPushButton* NewSmallButton(const QString& name, const QString& text, const QString& accessibleName) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setAccessibleName(accessibleName);
    button->setMaximumWidth(button->fontMetrics().horizontalAdvance("  " + text + "  "));
    return button;
}

} // namespace

ReferenceRow::ReferenceRow(Reference reference, const QString& stem, const QString& label, const SelectedField& field,
                           const EditorContext& context, QGridLayout& form, std::function<void(std::int32_t)> show)
    : reference_(reference), context_(context), label_(label), caption_(new QLabel(label)),
      box_(new NumberBox("txt" + stem + "N", label, field, NumberForm::Index, context)),
      description_(new LinkLabel("lbl" + stem + "S")),
      assign_(NewSmallButton("cmd" + stem + "A", tr("Assign"), tr("Assign %1").arg(label))) {
    setParent(box_);
    const bool isState = reference == Reference::State;
    box_->setFixedWidth(WidthForDigits(*box_, longestDigits));
    description_->setToolTip(isState ? tr("Show in the state editor")
                                     : tr("Show in the sound editor; a double click plays it"));
    description_->setMinimumWidth(description_->fontMetrics().horizontalAdvance(QStringLiteral("WWWWWW")));
    assign_->setToolTip(isState ? tr("Take the row selected in the state editor")
                                : tr("Take the row selected in the sound editor"));

    const int row = form.rowCount();
    caption_->setBuddy(box_);
    form.addWidget(caption_, row, 0);
    form.addWidget(box_, row, 1);
    form.addWidget(description_, row, 2);
    if (!isState) {
        play_ = NewSmallButton("cmd" + stem + "P", tr("Play"), tr("Play %1").arg(label));
        form.addWidget(play_, row, 3);
        const auto play = [this] {
            if (const auto sound = box_->Number())
                context_.links.PlaySoundLump(*sound);
        };
        connect(play_, &QPushButton::clicked, this, play);
        connect(description_, &LinkLabel::DoubleClicked, this, play);
    }
    form.addWidget(assign_, row, 4);

    connect(box_, &SelectionBox::Shown, this, &ReferenceRow::UpdateDescription);
    connect(description_, &LinkLabel::Clicked, this, [this, show = std::move(show)] {
        if (const auto number = box_->Number())
            show(*number);
    });
    connect(assign_, &QPushButton::clicked, this, &ReferenceRow::Assign);
}

void ReferenceRow::Hint(const QString& hint) {
    caption_->setToolTip(hint);
    box_->setAccessibleDescription(hint);
}

void ReferenceRow::UpdateDescription() {
    const std::optional<std::int32_t> number = box_->Number();
    description_->setEnabled(number.has_value());
    assign_->setEnabled(box_->isEnabled());
    const QString text = number ? LabelText(*number) : QString();
    description_->setText(text);
    description_->setAccessibleName(label_ + ": " + text);
    if (play_ != nullptr)
        play_->setEnabled(number.value_or(0) != 0);
}

QString ReferenceRow::LabelText(std::int32_t number) const {
    const PatchSet& set = context_.program.patch.current;
    return reference_ == Reference::State ? StateLabelText(set, number) : SoundLabelText(set, number);
}

/// Kept: what is taken is the row's position in the list; under a filter that is another number than the state's that
/// the row shows. docs/kept-behaviour.md
void ReferenceRow::Assign() {
    const bool isState = reference_ == Reference::State;
    const auto row = isState ? context_.links.SelectedStateRow() : context_.links.SelectedSoundRow();
    if (!row) {
        context_.links.ShowStatus(isState ? tr("No row is selected in the state editor")
                                          : tr("No row is selected in the sound editor"));
        return;
    }
    box_->Put(*row);
    context_.links.ShowStatus((isState ? tr("Took row %1: state %2 (%3)") : tr("Took row %1: sound %2 (%3)"))
                                  .arg(*row + 1)
                                  .arg(*row)
                                  .arg(LabelText(*row)));
}

} // namespace plinket3
