#include "ui/fields/SelectedValue.h"

#include "patch/NewRecords.h"
#include "ui/LatinText.h"
#include "ui/fields/Speed.h"

#include <QCoreApplication>

#include <algorithm>

namespace plinket3 {

std::vector<std::int32_t> SelectedValue::Editable() const {
    std::vector<std::int32_t> records = Selection().records;
    if (field_.kind == RecordKind::State)
        std::erase(records, 0);
    return records;
}

std::optional<CellValue> SelectedValue::Common() const {
    const std::vector<std::int32_t>& records = Selection().records;
    if (records.empty())
        return std::nullopt;
    CellValue value = Of(records.front());
    const bool common =
        std::ranges::all_of(records, [this, &value](std::int32_t record) { return Of(record) == value; });
    return common ? std::optional(std::move(value)) : std::nullopt;
}

ValueMeaning SelectedValue::Meaning(const PatchSet& set, std::int32_t record) const {
    return argument_ ? plinket3::MeaningOf(set, *argument_) : plinket3::MeaningOf(set, CellOf(record));
}

std::vector<EngineConfiguration::Choice> SelectedValue::Choices() const {
    return ChoicesOf(Current(), context_.program.engine, MeaningOf(0));
}

QString SelectedValue::Text(const PatchSet& set, std::int32_t record) const {
    const CellValue value = ReadCell(set, CellOf(record));
    if (const auto* name = std::get_if<std::string>(&value))
        return ShownText(*name);
    const auto* number = std::get_if<std::int32_t>(&value);
    return number == nullptr ? QString() : ShownText(ValueText(context_.program.engine, Meaning(set, record), *number));
}

std::optional<std::int32_t> SelectedValue::CountsUnset(const PatchSet& set, std::int32_t record) const {
    if (argument_)
        return argument_->standard;
    if (field_.kind != RecordKind::Ammo || field_.field < 0)
        return std::nullopt;
    return DerivedAmount(*RecordOrNew(set.ammo, record),
                         fieldTable<AmmoRecord>[static_cast<std::size_t>(field_.field)]);
}

QString SelectedValue::UnsetWord(std::optional<std::int32_t> counts) const {
    if (!counts)
        return QCoreApplication::translate("SelectedValue", "unset");
    const std::string text = ValueText(context_.program.engine, Meaning(Current(), 0), *counts);
    return QCoreApplication::translate("SelectedValue", "%1 (unset)").arg(ShownText(text));
}

QString SelectedValue::UnsetWord() const {
    const std::vector<std::int32_t>& records = Selection().records;
    const auto counts = CountsUnset(Current(), records.empty() ? 0 : records.front());
    const bool common =
        std::ranges::all_of(records, [&](std::int32_t record) { return CountsUnset(Current(), record) == counts; });
    return UnsetWord(common ? counts : std::nullopt);
}

QString SelectedValue::DefaultWord(std::int32_t record) const {
    const CellValue value = DefaultOf(record);
    return MayBeUnset() && value == UnsetValue() ? UnsetWord(CountsUnset(context_.program.patch.defaults, record))
                                                 : DefaultTextOf(record);
}

SelectedValue::Typed SelectedValue::Read(const QString& text, std::int32_t record) const {
    const ValueMeaning meaning = MeaningOf(record);
    if (plinket3::IsName(meaning)) {
        std::string name = StoredText(text);
        std::string refusal = WhyNot(meaning, name);
        return {refusal.empty() ? std::optional<CellValue>(std::move(name)) : std::nullopt, std::move(refusal)};
    }
    TypedValue typed = ReadValue(context_.program.engine, meaning, StoredText(text));
    return {typed.number ? std::optional<CellValue>(*typed.number) : std::nullopt, std::move(typed.refusal)};
}

std::string SelectedValue::StepName(const std::vector<std::int32_t>& records) const {
    const Edits& edits = context_.edits;
    if (argument_)
        return argument_->name + " of " + edits.RecordsName(field_.kind, records, field_.many);
    std::vector<Cell> cells;
    cells.reserve(records.size());
    for (const std::int32_t record : records)
        cells.push_back(CellOf(record));
    return edits.NameOf(cells, field_.many);
}

void SelectedValue::Store(const std::function<CellValue(std::int32_t record)>& valueOf, bool typing) {
    const std::vector<std::int32_t> records = Editable();
    if (records.empty())
        return;
    std::vector<Assignment> values;
    values.reserve(records.size());
    for (const std::int32_t record : records)
        values.push_back({CellOf(record), valueOf(record)});
    context_.edits.StoreGroup(values, StepName(records), typing);
}

/// A speed comes back in the form that the thing's flags ask for now.
void SelectedValue::Restore() {
    const std::vector<std::int32_t> records = Editable();
    std::vector<Assignment> values;
    for (const std::int32_t record : records) {
        CellValue value = DefaultOf(record);
        if (field_.kind == RecordKind::Thing && field_.field >= 0 &&
            FactsOf(field_.kind, field_.field).unit == FieldUnit::ProjectileSpeed)
            value = SpeedUnder(RecordOrNew(Current().things, record)->bits,
                               *RecordOrNew(context_.program.patch.defaults.things, record),
                               fieldTable<ThingRecord>[static_cast<std::size_t>(field_.field)]);
        values.push_back({CellOf(record), std::move(value)});
    }
    if (!values.empty())
        context_.edits.StoreGroup(values, "restore " + StepName(records));
}

} // namespace plinket3
