#include "ui/fields/ValueRow.h"

#include "core/Text.h"
#include "ui/LatinText.h"
#include "ui/fields/BitsButton.h"
#include "ui/fields/ChoiceBox.h"
#include "ui/fields/Labels.h"
#include "ui/fields/LinkLabel.h"
#include "ui/fields/ValueBox.h"

#include <algorithm>

namespace plinket3 {

namespace {

using Kind = ValueMeaning::Kind;

constexpr int longestDigits = 11; // of a 32-bit number with its sign
constexpr int captionColumn = 0, boxColumn = 1, descriptionColumn = 2, playColumn = 3, browseColumn = 4;

/// Whether there are few things that such a number can stand for, in one engine or another.
bool IsChoice(Kind kind) {
    return kind == Kind::Truth || kind == Kind::Ammo || kind == Kind::Weapon || kind == Kind::Item ||
           kind == Kind::Category;
}

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
    if (IsChoice(kind_)) {
        choice_ = new ChoiceBox("cmb" + stem, label_, value_);
        choice_->Hint(hint);
        form.addWidget(choice_, row, boxColumn, 1, browseColumn - boxColumn,
                       kind_ == Kind::Truth ? Qt::AlignLeft : Qt::Alignment()); // names have any length
        widgets_.push_back(choice_);
        caption_->setBuddy(choice_);
        return;
    }
    box_ = new ValueBox("txt" + stem, label_, value_, context_);
    box_->Hint(hint);
    caption_->setBuddy(box_);
    widgets_.push_back(box_);
    connect(box_, &SelectionBox::Shown, this, &ValueRow::Show);
    if (kind_ == Kind::LumpName || kind_ == Kind::StringKey)
        box_->setAlignment(Qt::AlignLeft);
    if (kind_ == Kind::StringKey)
        return AddStringKey(stem, form, row);
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

void ValueRow::AddStringKey(const QString& stem, QGridLayout& form, int row) {
    form.addWidget(box_, row, boxColumn, 1, browseColumn - boxColumn);
    browse_ = NewSmallButton("cmd" + stem + "Browse", QStringLiteral("..."), tr("Choose %1").arg(label_));
    form.addWidget(browse_, row, browseColumn);
    connect(browse_, &QPushButton::clicked, this, &ValueRow::BrowseStrings);
    string_ = new QLabel;
    string_->setObjectName("lbl" + stem);
    string_->setTextFormat(Qt::PlainText);
    string_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    form.addWidget(string_, row + 1, boxColumn, 1, browseColumn - boxColumn + 1);
    widgets_.push_back(string_);
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
            context_.links.ShowRecord(RecordKind::Sound, *number);
        else if (kind_ == Kind::State)
            context_.links.ShowRecord(RecordKind::State, *number);
        else if (const auto thing = ThingOf(*number))
            context_.links.ShowRecord(RecordKind::Thing, *thing);
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
    if (choice_ != nullptr)
        choice_->Update();
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

QString ValueRow::DescribedString() const {
    const auto key = box_ != nullptr ? box_->Name() : std::nullopt;
    if (!key || key->empty())
        return {};
    const std::vector<EngineConfiguration::String>& strings = context_.program.engine.strings;
    const auto isKey = [&key](const EngineConfiguration::String& each) {
        return EqualIgnoringCase(each.mnemonic, *key);
    };
    const auto found = std::ranges::find_if(strings, isKey);
    const StringRecord* string =
        context_.program.patch.current.strings.Find(static_cast<std::int32_t>(found - strings.begin()));
    return found == strings.end() || string == nullptr ? tr("(the engine has no such string)")
                                                       : ShownStart(string->text).simplified();
}

void ValueRow::Show() {
    if (string_ != nullptr && box_ != nullptr) {
        string_->setText(DescribedString());
        string_->setToolTip(string_->text());
        string_->setAccessibleName(label_ + ": " + string_->text());
        browse_->setEnabled(box_->isEnabled());
    }
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

void ValueRow::BrowseStrings() {
    const std::vector<EngineConfiguration::String>& strings = context_.program.engine.strings;
    const auto start =
        std::ranges::find(strings, box_->Name().value_or(std::string()), &EngineConfiguration::String::mnemonic);
    const auto chosen = context_.links.PickRecord(
        RecordKind::String, start == strings.end() ? 0 : static_cast<std::int32_t>(start - strings.begin()));
    if (chosen && *chosen >= 0 && static_cast<std::size_t>(*chosen) < strings.size())
        box_->Put(strings[static_cast<std::size_t>(*chosen)].mnemonic);
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
