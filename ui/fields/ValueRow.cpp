#include "ui/fields/ValueRow.h"

#include "ui/LatinText.h"
#include "ui/fields/BitsButton.h"
#include "ui/fields/Labels.h"
#include "ui/fields/LinkLabel.h"
#include "ui/fields/TruthBox.h"
#include "ui/fields/ValueBox.h"

namespace plinket3 {

namespace {

using Kind = ValueMeaning::Kind;

constexpr int longestDigits = 11; // of a 32-bit number with its sign
constexpr int captionColumn = 0, boxColumn = 1, descriptionColumn = 2, playColumn = 3, browseColumn = 4;

} // namespace

ValueRow::ValueRow(const QString& stem, const QString& label, const QString& hint, const SelectedValue& value,
                   const EditorContext& context, QGridLayout& form, QObject* owner)
    : QObject(owner), context_(context), value_(value), kind_(value.MeaningOf(0).kind), label_(label),
      caption_(new QLabel(label)) {
    caption_->setToolTip(hint);
    const int row = form.rowCount();
    form.addWidget(caption_, row, captionColumn);
    widgets_.push_back(caption_);
    AddBox(stem, hint, form, row);
    if (RefersToRecord(value_.MeaningOf(0)))
        AddReference(stem, form, row);
    form.setColumnStretch(descriptionColumn, 1);
}

void ValueRow::AddBox(const QString& stem, const QString& hint, QGridLayout& form, int row) {
    if (kind_ == Kind::Truth) {
        truth_ = new TruthBox("cmb" + stem, label_, value_);
        truth_->Hint(hint);
        form.addWidget(truth_, row, boxColumn, 1, 2, Qt::AlignLeft);
        widgets_.push_back(truth_);
        caption_->setBuddy(truth_);
        return;
    }
    box_ = new ValueBox("txt" + stem, label_, value_, context_);
    box_->Hint(hint);
    caption_->setBuddy(box_);
    widgets_.push_back(box_);
    connect(box_, &SelectionBox::Shown, this, &ValueRow::Show);
    if (kind_ != Kind::Bits) {
        box_->setFixedWidth(WidthForDigits(*box_, longestDigits));
        form.addWidget(box_, row, boxColumn);
        return;
    }
    box_->setAlignment(Qt::AlignLeft);
    bits_ = new BitsButton("cmd" + stem + "Browse", tr("Choose %1").arg(label_), value_, context_);
    form.addWidget(box_, row, boxColumn, 1, browseColumn - boxColumn);
    form.addWidget(bits_, row, browseColumn);
    widgets_.push_back(bits_);
}

void ValueRow::AddReference(const QString& stem, QGridLayout& form, int row) {
    description_ = new LinkLabel("lbl" + stem);
    description_->setToolTip(kind_ == Kind::Sound   ? tr("Show in the sound editor; a double click plays it")
                             : kind_ == Kind::Thing ? tr("Show in the thing editor")
                                                    : tr("Show in the state editor"));
    description_->setMinimumWidth(description_->fontMetrics().horizontalAdvance(QStringLiteral("WWWWWW")));
    description_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    form.addWidget(description_, row, descriptionColumn);
    widgets_.push_back(description_);
    if (kind_ == Kind::Sound) {
        play_ = NewSmallButton("cmd" + stem + "Play", tr("Play"), tr("Play %1").arg(label_));
        form.addWidget(play_, row, playColumn);
        const auto play = [this] {
            if (const auto sound = box_->Number())
                context_.links.PlaySoundLump(*sound);
        };
        connect(play_, &QPushButton::clicked, this, play);
        connect(description_, &LinkLabel::DoubleClicked, this, play);
    }
    browse_ = NewSmallButton("cmd" + stem + "Browse", QStringLiteral("..."), tr("Choose %1").arg(label_));
    form.addWidget(browse_, row, browseColumn);
    connect(browse_, &QPushButton::clicked, this, &ValueRow::Browse);
    connect(description_, &LinkLabel::Clicked, this, [this] {
        const auto number = box_->Number();
        if (!number)
            return;
        if (kind_ == Kind::Sound)
            context_.links.ShowSoundInEditor(*number);
        else if (kind_ == Kind::State)
            context_.links.SelectSingleState(*number, -1, -1);
        else if (const auto thing = ThingOf(*number))
            context_.links.ShowThingInEditor(*thing);
    });
}

QPushButton* ValueRow::NewSmallButton(const QString& name, const QString& text, const QString& accessibleName) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setAccessibleName(accessibleName);
    button->setToolTip(accessibleName);
    button->setMaximumWidth(button->fontMetrics().horizontalAdvance("  " + text + "  "));
    widgets_.push_back(button);
    return button;
}

void ValueRow::Reload() {
    if (bits_ != nullptr)
        bits_->Reload();
}

void ValueRow::ShowSelection() {
    if (box_ != nullptr)
        box_->ShowSelection();
    Update();
}

void ValueRow::Update() {
    if (box_ != nullptr)
        box_->Update();
    if (truth_ != nullptr)
        truth_->Update();
    if (bits_ != nullptr && box_ != nullptr) {
        bits_->setEnabled(box_->isEnabled());
        bits_->Update();
    }
    Show();
}

QString ValueRow::Described() const {
    const auto number = box_ != nullptr ? box_->Number() : std::nullopt;
    if (!number)
        return {};
    const PatchSet& set = context_.program.patch.current;
    const bool exists = kind_ == Kind::Thing   ? *number == 0 || set.things.Has(ThingOf(*number).value_or(noRecord))
                        : kind_ == Kind::State ? set.states.Has(*number)
                                               : set.sounds.Has(*number);
    if (!exists)
        return tr("(none such)");
    if (kind_ == Kind::State)
        return StateLabelText(set, *number);
    if (kind_ == Kind::Sound)
        return SoundLabelText(set, *number);
    return *number == 0
               ? QStringLiteral("-")
               : ShownStart(ValueName(set, context_.program.engine, value_.MeaningOf(0), *number)).simplified();
}

void ValueRow::Show() {
    if (description_ == nullptr || box_ == nullptr)
        return;
    const QString text = Described();
    const auto number = box_->Number();
    description_->setText(text);
    description_->setAccessibleName(label_ + ": " + text);
    description_->setEnabled(number.has_value());
    browse_->setEnabled(box_->isEnabled());
    if (play_ != nullptr)
        play_->setEnabled(number.value_or(0) != 0);
}

void ValueRow::Browse() {
    const std::int32_t start = box_->Number().value_or(0);
    std::optional<std::int32_t> chosen;
    if (kind_ == Kind::State) {
        chosen = context_.links.PickState(start);
    } else if (kind_ == Kind::Sound) {
        chosen = context_.links.PickRecord(RecordKind::Sound, start);
    } else {
        chosen = context_.links.PickRecord(RecordKind::Thing, ThingOf(start).value_or(0));
        if (chosen)
            ++*chosen; // patches count them from 1
    }
    if (chosen)
        box_->Put(*chosen);
}

void ValueRow::SetVisible(bool visible) {
    for (QWidget* widget : widgets_)
        widget->setVisible(visible);
}

void ValueRow::Remove() {
    for (QWidget* widget : widgets_) {
        widget->hide();
        widget->setObjectName({}); // a new row may have the same names
        widget->deleteLater();
    }
    deleteLater();
}

} // namespace plinket3
