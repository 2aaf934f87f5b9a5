#include "ui/fields/ChoiceBox.h"

#include "ui/LatinText.h"
#include "ui/fields/FieldControl.h"
#include "ui/fields/Marking.h"

#include <QAction>
#include <QWheelEvent>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr int shortNameLength = 8; // for the narrowest form

} // namespace

ChoiceBox::ChoiceBox(const QString& name, const QString& accessibleName, const SelectedValue& value)
    : value_(value), restore_(new QAction(this)) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    ForField(*this, value.Field());
    setFocusPolicy(Qt::StrongFocus);
    if (value_.MeaningOf(0).kind != ValueMeaning::Kind::Truth) { // names have any length
        setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        setMinimumContentsLength(shortNameLength);
    }
    addAction(restore_);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(restore_, &QAction::triggered, this, [this] { value_.Restore(); });
    connect(this, &QComboBox::activated, this, [this](int entry) {
        const QVariant number = itemData(entry);
        value_.Store([&number](std::int32_t) { return number.isValid() ? CellValue(number.toInt()) : Unset(); }, false);
    });
    Update();
}

void ChoiceBox::Fill() {
    std::vector<Choice> choices = value_.Choices();
    if (choices == choices_)
        return;
    choices_ = std::move(choices);
    clear();
    for (const Choice& choice : choices_)
        addItem(WordOf(choice.value), choice.value);
    if (value_.MayBeUnset())
        addItem(value_.UnsetWord());
}

QString ChoiceBox::WordOf(const CellValue& value) const {
    const auto* number = std::get_if<std::int32_t>(&value);
    if (number == nullptr)
        return value_.UnsetWord();
    const auto choice = std::ranges::find(choices_, *number, &Choice::value);
    const QString name = choice != choices_.end()                                ? ShownStart(choice->name).simplified()
                         : value_.MeaningOf(0).kind == ValueMeaning::Kind::Truth ? tr("yes")
                                                                                 : tr("(none such)");
    return QString::number(*number) + QStringLiteral(": ") + name;
}

void ChoiceBox::Update() {
    Fill();
    const RecordSelection& selection = value_.Selection();
    setEnabled(!value_.Editable().empty());
    const auto common = value_.Common();
    const auto* number = common ? std::get_if<std::int32_t>(&*common) : nullptr;
    setPlaceholderText(number != nullptr ? WordOf(*number) : selection.Several() ? tr("leave as is") : QString());
    setCurrentIndex(number != nullptr ? findData(*number) : common ? count() - 1 : -1);
    const bool one = selection.records.size() == 1;
    const bool differs = one && value_.Differs(selection.current);
    const QString standard = one ? WordOf(value_.DefaultOf(selection.current)) : QString();
    MarkDifference(*this, differs, standard, hint_);
    restore_->setText(one ? tr("Restore default (%1)").arg(standard)
                          : tr("Restore %n defaults", nullptr, static_cast<int>(selection.records.size())));
    restore_->setEnabled(
        std::ranges::any_of(selection.records, [this](std::int32_t record) { return value_.Differs(record); }));
}

void ChoiceBox::wheelEvent(QWheelEvent* event) {
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore(); // scrolling past the box must not change it
}

} // namespace plinket3
