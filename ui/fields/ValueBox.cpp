#include "ui/fields/ValueBox.h"

#include "ui/LatinText.h"
#include "ui/fields/FieldControl.h"

#include <QMenu>

#include <algorithm>

namespace plinket3 {

class ValueBox::Validator : public QValidator {
public:
    explicit Validator(ValueBox& box) : QValidator(&box), box_(box) {}
    State validate(QString& text, int&) const override {
        const RecordSelection& selection = box_.selection_;
        if (text.isEmpty() || selection.records.empty())
            return Acceptable;
        if (box_.IsChange(text))
            return Intermediate;
        const SelectedValue::Typed read = box_.value_.Read(text, selection.current);
        const bool shown = text == box_.TextOf(selection.current); // not typed
        if (read.refusal.empty()) {
            if (box_.value_.IsName() && !shown)
                text = text.toUpper();
            return read.value ? Acceptable : Intermediate;
        }
        if (!shown)
            box_.tell_(ShownText(read.refusal));
        return Invalid;
    }

private:
    ValueBox& box_;
};

ValueBox::ValueBox(const QString& name, const QString& accessibleName, const SelectedValue& value,
                   const EditorContext& context)
    : SelectionBox(name, accessibleName, value.Selection(), context), value_(value),
      tell_([&links = context.links](const QString& word) { links.ShowStatus(word); }) {
    ForField(*this, value.Field());
    setValidator(new Validator(*this));
}

std::optional<std::int32_t> ValueBox::Number() const {
    const auto common = value_.Common();
    const auto* number = common ? std::get_if<std::int32_t>(&*common) : nullptr;
    return number == nullptr ? std::nullopt : std::optional(*number);
}

std::optional<std::string> ValueBox::Name() const {
    const auto common = value_.Common();
    const auto* name = common ? std::get_if<std::string>(&*common) : nullptr;
    return name == nullptr ? std::nullopt : std::optional(*name);
}

void ValueBox::Put(const CellValue& value) {
    setModified(false);
    value_.Store([&value](std::int32_t) { return value; }, false);
}

QString ValueBox::EmptyText() const {
    const auto common = value_.Common();
    return common && value_.MayBeUnset() && *common == value_.UnsetValue() ? value_.UnsetWord()
                                                                           : SelectionBox::EmptyText();
}

QString ValueBox::CommonText() const {
    const QString text = TextOf(selection_.current);
    return std::ranges::all_of(selection_.records, [&](std::int32_t record) { return TextOf(record) == text; })
               ? text
               : QString();
}

bool ValueBox::TextHolds() const {
    if (text().isEmpty())
        return selection_.Several() || isModified();
    return std::ranges::all_of(value_.Editable(), [this](std::int32_t record) {
        const SelectedValue::Typed typed = value_.Read(text(), record);
        return !typed.value || *typed.value == value_.Of(record);
    });
}

bool ValueBox::HoldsNumbers() const {
    return !value_.IsName() && value_.MeaningOf(selection_.current).kind != ValueMeaning::Kind::Bits;
}

void ValueBox::StoreTyped() {
    if (text().isEmpty()) {
        if (!selection_.Several() && value_.MayBeUnset())
            value_.Store([this](std::int32_t) { return value_.UnsetValue(); }, true);
        return;
    }
    const std::vector<std::int32_t> records = value_.Editable();
    for (const std::int32_t record : records) {
        const SelectedValue::Typed typed = value_.Read(text(), record);
        if (!typed.refusal.empty()) // what stood in the box could not be typed either
            tell_(ShownText(typed.refusal));
        if (!typed.value)
            return;
    }
    value_.Store([this](std::int32_t record) { return *value_.Read(text(), record).value; }, true);
    Mark();
    emit Shown();
}

void ValueBox::Unset() {
    setModified(false);
    value_.Store([this](std::int32_t) { return value_.UnsetValue(); }, false);
}

void ValueBox::AddRestore(QMenu& menu) {
    SelectionBox::AddRestore(menu);
    if (!value_.MayBeUnset() || selection_.records.empty())
        return;
    QAction* unset = menu.addAction(tr("Unset"), this, &ValueBox::Unset);
    unset->setObjectName(QStringLiteral("unsetField"));
    unset->setEnabled(std::ranges::any_of(
        value_.Editable(), [this](std::int32_t record) { return value_.Of(record) != value_.UnsetValue(); }));
}

} // namespace plinket3
