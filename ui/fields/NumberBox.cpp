#include "ui/fields/NumberBox.h"

#include "core/Numbers.h"
#include "patch/NewRecords.h"
#include "ui/LatinText.h"
#include "ui/fields/FieldControl.h"
#include "ui/fields/Speed.h"

#include <algorithm>

namespace plinket3 {

namespace {

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

NumberBox::NumberBox(const QString& name, const QString& accessibleName, const SelectedField& field, NumberForm form,
                     const EditorContext& context)
    : SelectionBox(name, accessibleName, *field.selection, context), patch_(context.program.patch), field_(field),
      form_(form) {
    ForField(*this, field.field);
}

std::optional<std::int32_t> NumberBox::Number() const {
    const std::vector<std::int32_t>& records = selection_.records;
    if (records.empty())
        return std::nullopt;
    const std::int32_t number = NumberOf(records.front());
    const bool common = std::all_of(records.begin(), records.end(),
                                    [this, number](std::int32_t record) { return NumberOf(record) == number; });
    return common ? std::optional(number) : std::nullopt;
}

void NumberBox::Put(std::int32_t value) {
    if (selection_.records.empty())
        return;
    setText(QString::number(value));
    StoreText(false);
}

bool NumberBox::IsFixed(const PatchSet& set, std::int32_t record) const {
    return form_ == NumberForm::Fixed ||
           (form_ == NumberForm::Speed && HasFixedSpeed(RecordOrNew(set.things, record)->bits));
}

namespace {

QString NumberText(std::int32_t value, bool fixed) {
    return fixed ? QString::fromStdString(RealText(value / unitsPerFixed)) : QString::number(value);
}

} // namespace

QString NumberBox::TextOf(std::int32_t record) const {
    return NumberText(NumberOf(record), IsFixed(patch_.current, record));
}

QString NumberBox::DefaultTextOf(std::int32_t record) const {
    return NumberText(std::get<std::int32_t>(edits_.DefaultValue(CellOf(record))), IsFixed(patch_.defaults, record));
}

QString NumberBox::CommonText() const {
    const QString text = TextOf(selection_.current);
    const bool common = std::all_of(selection_.records.begin(), selection_.records.end(),
                                    [this, &text](std::int32_t record) { return TextOf(record) == text; });
    return common ? text : QString();
}

std::int32_t NumberBox::FromUnits(std::int32_t units, std::int32_t record) const {
    return IsFixed(patch_.current, record) ? FixedFromUnits(units) : units;
}

std::vector<Cell> NumberBox::Cells() const {
    std::vector<Cell> cells;
    cells.reserve(selection_.records.size());
    for (const std::int32_t record : selection_.records)
        cells.push_back(CellOf(record));
    return cells;
}

bool NumberBox::TextHolds() const {
    if (selection_.Several() && text().isEmpty())
        return true;
    const std::int32_t units = LeadingInt32(StoredText(text()));
    return std::all_of(selection_.records.begin(), selection_.records.end(), [this, units](std::int32_t record) {
        return edits_.Limited(CellOf(record), FromUnits(units, record)) == NumberOf(record);
    });
}

std::int32_t NumberBox::ReadText() {
    const Limits limits = edits_.LimitsOf(field_.kind, field_.field);
    switch (form_) {
    case NumberForm::Index:
        return ReadIndexField(*this, limits);
    case NumberForm::Ranged: {
        const QString typed = text();
        const std::int32_t number = ReadRangedField(*this, limits);
        if (text() != typed)
            end(false);
        return number;
    }
    default:
        return ReadLongField(*this);
    }
}

void NumberBox::StoreText(bool typing) {
    if (selection_.records.empty() || (selection_.Several() && text().isEmpty()))
        return;
    const std::int32_t units = ReadText();
    setModified(typing);
    std::vector<Assignment> values;
    values.reserve(selection_.records.size());
    for (const std::int32_t record : selection_.records)
        values.push_back({CellOf(record), FromUnits(units, record)});
    edits_.StoreEach(std::move(values), field_.many, typing);
    Mark();
    emit Shown();
}

/// A speed comes back in the form that the thing's flags ask for now.
void NumberBox::Restore() {
    const std::string name = "restore " + StepName();
    if (form_ != NumberForm::Speed)
        return edits_.Restore(Cells(), name);
    std::vector<Assignment> values;
    for (const std::int32_t record : selection_.records) {
        const std::int32_t bits = RecordOrNew(patch_.current.things, record)->bits;
        values.push_back({CellOf(record), SpeedUnder(bits, *RecordOrNew(patch_.defaults.things, record))});
    }
    edits_.StoreGroup(values, name);
}

void NumberBoxes::Show(RecordSelection selection) {
    *selection_ = std::move(selection);
    for (NumberBox* box : boxes_)
        box->ShowSelection();
}

void NumberBoxes::Update() {
    for (NumberBox* box : boxes_)
        box->Update();
}

} // namespace plinket3
