#include "ui/states/StateFieldBox.h"

#include "core/Numbers.h"
#include "ui/LatinText.h"
#include "ui/fields/FieldControl.h"
#include "ui/fields/NumberBox.h"

#include <algorithm>

namespace plinket3 {

StateFieldBox::StateFieldBox(const QString& name, const QString& accessibleName, StateColumn column,
                             const RecordSelection& selection, const EditorContext& context)
    : SelectionBox(name, accessibleName, selection, context), session_(context.program), column_(column) {
    ForField(*this, StateColumnField(column));
}

std::optional<std::int32_t> StateFieldBox::Typed() const {
    if (text().isEmpty() || IsChange(text()))
        return std::nullopt;
    return form_ == FrameForm::Letter ? FrameOfLetter(text()) : LeadingInt32(StoredText(text()));
}

bool StateFieldBox::TextHolds() const {
    const auto typed = Typed();
    return !typed || std::all_of(selection_.records.begin(), selection_.records.end(), [&](std::int32_t state) {
        return state == 0 || StateColumnValue(session_.patch.current, state, column_) == *typed;
    });
}

QString StateFieldBox::NumberText(std::int32_t value) const {
    return column_ == StateColumn::Frame ? FrameText(value, form_) : QString::number(value);
}

QString StateFieldBox::TextOf(std::int32_t state) const {
    return NumberText(StateColumnValue(session_.patch.current, state, column_));
}

QString StateFieldBox::DefaultTextOf(std::int32_t state) const {
    return NumberText(StateColumnValue(session_.patch.defaults, state, column_));
}

std::string StateFieldBox::StepName() const { return StateColumnStep(edits_, column_, selection_.records); }

void StateFieldBox::StoreTyped() {
    if (text().isEmpty())
        return;
    StateColumnAssignment assignment{column_};
    if (form_ == FrameForm::Letter) {
        // Kept: a letter stores the bare index, without the lit bit. docs/kept-behaviour.md
        assignment = {StateColumn::FrameAndLit, FrameOfLetter(text())};
        setText(NumberText(assignment.value));
        selectAll(); // the next letter replaces this one
    } else {
        assignment.value = ReadRangedField(*this, edits_.LimitsOf(RecordKind::State, StateColumnField(column_)));
    }
    setModified(true);
    StoreInStates(edits_, session_, selection_.records, {&assignment, 1}, true);
    Update();
}

void StateFieldBox::Restore() { RestoreStateColumn(edits_, session_, selection_.records, column_); }

} // namespace plinket3
