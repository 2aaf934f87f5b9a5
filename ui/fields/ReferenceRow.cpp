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

ReferenceRow::ReferenceRow(Reference reference, const QString& stem, const QString& label, const EditorContext& context,
                           QGridLayout& form, std::function<void(std::int32_t)> show)
    : reference_(reference), context_(context), label_(label),
      box_(new NumberBox("txt" + stem + "N", label, context, NumberForm::Index)),
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
    auto* caption = new QLabel(label);
    caption->setBuddy(box_);
    form.addWidget(caption, row, 0);
    form.addWidget(box_, row, 1);
    form.addWidget(description_, row, 2);
    if (!isState) {
        play_ = NewSmallButton("cmd" + stem + "P", tr("Play"), tr("Play %1").arg(label));
        form.addWidget(play_, row, 3);
        const auto play = [this] { context_.links.PlaySoundLump(Number()); };
        connect(play_, &QPushButton::clicked, this, play);
        connect(description_, &LinkLabel::DoubleClicked, this, play);
    }
    form.addWidget(assign_, row, 4);

    connect(box_, &NumberBox::Shown, this, &ReferenceRow::UpdateDescription);
    connect(description_, &LinkLabel::Clicked, this, [this, show = std::move(show)] { show(Number()); });
    connect(assign_, &QPushButton::clicked, this, &ReferenceRow::Assign);
}

void ReferenceRow::UpdateDescription() {
    const bool shown = box_->ShownCell().has_value();
    description_->setEnabled(shown);
    assign_->setEnabled(shown);
    QString text;
    if (shown) {
        const PatchSet& set = context_.program.patch.current;
        text = reference_ == Reference::State ? StateLabelText(set, Number()) : SoundLabelText(set, Number());
    }
    description_->setText(text);
    description_->setAccessibleName(label_ + ": " + text);
    if (play_ != nullptr)
        play_->setEnabled(shown && Number() != 0);
}

std::int32_t ReferenceRow::Number() const {
    const auto& cell = box_->ShownCell();
    return cell ? std::get<std::int32_t>(context_.edits.Value(*cell)) : 0;
}

/// Kept: what is taken is the row's position in the list; under a filter that is another number than the state's that
/// the row shows. docs/kept-behaviour.md
void ReferenceRow::Assign() {
    const auto row =
        reference_ == Reference::State ? context_.links.SelectedStateRow() : context_.links.SelectedSoundRow();
    if (row)
        box_->Put(*row);
}

} // namespace plinket3
