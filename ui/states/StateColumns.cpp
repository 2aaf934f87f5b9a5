#include "ui/states/StateColumns.h"

#include "core/Text.h"
#include "patch/NewRecords.h"
#include "ui/LatinText.h"
#include "ui/fields/Labels.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace plinket3 {

namespace {

constexpr std::int32_t wholeNumber = -1; // a mask

struct ColumnFacts {
    const char* heading = "";
    const char* stepName = "";
    std::int32_t StateNumbers::*member = nullptr; // null: none, or the code pointer
    std::int32_t mask = wholeNumber;              // the bits that belong to the column
};

/// In the order of `StateColumn`; the entry for `Count` is a gap.
constexpr std::array<ColumnFacts, stateColumnCount + 2> columns{{
    {QT_TRANSLATE_NOOP("StateColumns", "State")},
    {QT_TRANSLATE_NOOP("StateColumns", "Name"), "sprite"},
    {QT_TRANSLATE_NOOP("StateColumns", "Sprite"), "sprite", &StateRecord::sprite},
    {QT_TRANSLATE_NOOP("StateColumns", "Frame"), "sprite frame", &StateRecord::subnumber, ~litBit},
    {QT_TRANSLATE_NOOP("StateColumns", "Lit"), "lit", &StateRecord::subnumber, litBit},
    {QT_TRANSLATE_NOOP("StateColumns", "Next state"), "next frame", &StateRecord::nextState},
    {QT_TRANSLATE_NOOP("StateColumns", "Duration"), "duration", &StateRecord::duration},
    {QT_TRANSLATE_NOOP("StateColumns", "Param. 1"), "parameter 1", &StateRecord::unknown1},
    {QT_TRANSLATE_NOOP("StateColumns", "Param. 2"), "parameter 2", &StateRecord::unknown2},
    {QT_TRANSLATE_NOOP("StateColumns", "Action"), "action"},
    {},
    {"", "sprite frame", &StateRecord::subnumber},
}};

const ColumnFacts& FactsOf(StateColumn column) { return columns[static_cast<std::size_t>(column)]; }

std::string StepName(const Edits& edits, StateColumn column, const std::vector<std::int32_t>& states) {
    return std::string(FactsOf(column).stepName) + " of " + edits.RecordsName(RecordKind::State, states, "frames");
}

std::int32_t StoredNumber(const PatchSet& set, std::int32_t state, StateColumn column) {
    const RecordOrNew record(set.states, state);
    const ColumnFacts& facts = FactsOf(column);
    return facts.member != nullptr ? (*record).*facts.member : record->codePointer;
}

/// One step that sets each state's column to what `value(state, column)` tells.
template <class Value> void StoreColumns(Edits& edits, const PatchSet& current, const std::vector<std::int32_t>& states,
                                         std::span<const StateColumn> which, std::string name, bool typing,
                                         Value value) {
    std::vector<Assignment> assignments(states.size() * which.size());
    auto next = assignments.begin();
    for (const std::int32_t state : states)
        for (const StateColumn column : which) {
            const std::int32_t mask = FactsOf(column).mask;
            next->cell = {RecordKind::State, state, StateColumnField(column)};
            next->value = (StoredNumber(current, state, column) & ~mask) | (value(state, column) & mask);
            ++next;
        }
    edits.StoreGroup(assignments, std::move(name), typing);
}

} // namespace

QString StateColumnHeading(StateColumn column) {
    return QCoreApplication::translate("StateColumns", FactsOf(column).heading);
}

bool IsNumberColumn(StateColumn column) {
    return column != StateColumn::Name && column != StateColumn::Lit && column != StateColumn::Action;
}

int StateColumnField(StateColumn column) {
    const ColumnFacts& facts = FactsOf(column);
    return facts.member != nullptr ? RowOf(facts.member) : codePointerField;
}

std::int32_t StateColumnValue(const PatchSet& set, std::int32_t state, StateColumn column) {
    return StoredNumber(set, state, column) & FactsOf(column).mask;
}

QString StateColumnText(const PatchSet& set, const EngineConfiguration& engine, std::int32_t state,
                        StateColumn column) {
    switch (column) {
    case StateColumn::Number:
        return QString::number(state);
    case StateColumn::Name:
        return StateLabelText(set, state);
    case StateColumn::Lit:
        return StateColumnValue(set, state, column) != 0 ? QCoreApplication::translate("StateColumns", "Yes")
                                                         : QCoreApplication::translate("StateColumns", "No");
    case StateColumn::Action: {
        const std::string* mnemonic = engine.MnemonicOf(StateColumnValue(set, state, column));
        return mnemonic != nullptr ? ShownText(Trim(*mnemonic)) : QString();
    }
    default:
        return QString::number(StateColumnValue(set, state, column));
    }
}

bool AnyEditable(const RecordSelection& states) {
    return std::any_of(states.records.begin(), states.records.end(), [](std::int32_t state) { return state != 0; });
}

void StoreInStates(Edits& edits, const Session& session, const std::vector<std::int32_t>& states,
                   std::span<const StateColumnAssignment> values, bool typing) {
    std::vector<StateColumn> which;
    which.reserve(values.size());
    for (const StateColumnAssignment& assignment : values)
        which.push_back(assignment.column);
    const bool action = !which.empty() && which.front() == StateColumn::Action;
    std::vector<std::int32_t> taken;
    taken.reserve(states.size());
    for (const std::int32_t state : states)
        if (state != 0 && (!action || session.engine.dialect.namedCodePointers ||
                           StateColumnValue(session.patch.current, state, StateColumn::Action) != 0))
            taken.push_back(state);
    if (taken.empty() || which.empty())
        return;
    StoreColumns(edits, session.patch.current, taken, which, StepName(edits, which.front(), taken), typing,
                 [values](std::int32_t, StateColumn column) {
                     for (const StateColumnAssignment& assignment : values)
                         if (assignment.column == column)
                             return assignment.value;
                     return 0;
                 });
}

void RestoreStateColumn(Edits& edits, const PatchData& patch, const std::vector<std::int32_t>& states,
                        StateColumn column) {
    if (states.empty() || column == StateColumn::Number)
        return;
    std::vector<StateColumn> which{column};
    if (column == StateColumn::Name)
        which = {StateColumn::Sprite, StateColumn::Frame};
    StoreColumns(edits, patch.current, states, which, "restore " + StepName(edits, column, states), false,
                 [&patch](std::int32_t state, StateColumn restored) {
                     return StateColumnValue(patch.defaults, state, restored);
                 });
}

} // namespace plinket3
