#include "ui/states/StateColumns.h"

#include "core/Text.h"
#include "patch/Arguments.h"
#include "patch/NewRecords.h"
#include "ui/LatinText.h"
#include "ui/fields/Labels.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <iterator>

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
    {QT_TRANSLATE_NOOP("StateColumns", "Arguments"), "arguments"},
    {QT_TRANSLATE_NOOP("StateColumns", "Picture"), "sprite"},
    {},
    {"", "sprite frame", &StateRecord::subnumber},
}};

const ColumnFacts& FactsOf(StateColumn column) { return columns[static_cast<std::size_t>(column)]; }

std::int32_t StoredNumber(const PatchSet& set, std::int32_t state, StateColumn column) {
    const RecordOrNew record(set.states, state);
    const ColumnFacts& facts = FactsOf(column);
    return facts.member != nullptr ? (*record).*facts.member : record->codePointer;
}

/// Sets each state's column to what `value(state, column)` tells.
template <class Value> std::vector<Assignment> ColumnAssignments(const PatchSet& current,
                                                                 const std::vector<std::int32_t>& states,
                                                                 std::span<const StateColumn> which, Value value) {
    std::vector<Assignment> assignments(states.size() * which.size());
    auto next = assignments.begin();
    for (const std::int32_t state : states)
        for (const StateColumn column : which) {
            const std::int32_t mask = FactsOf(column).mask;
            next->cell = {RecordKind::State, state, StateColumnField(column)};
            next->value = (StoredNumber(current, state, column) & ~mask) | (value(state, column) & mask);
            ++next;
        }
    return assignments;
}

/// Adds the arguments that go with the former actions of states; `actions` sets the new ones. Returns their names.
std::vector<std::string> AddClearedArguments(const Session& session, std::vector<Assignment>& actions) {
    const ArgumentTable table(session.engine);
    std::vector<std::string> names;
    std::vector<Assignment> cleared;
    for (const Assignment& action : actions)
        for (ClearedArgument& each :
             ArgumentsToClear(table, *RecordOrNew(session.patch.current.states, action.cell.index),
                              std::get<std::int32_t>(action.value))) {
            cleared.push_back({{RecordKind::State, action.cell.index, each.field}, each.value});
            if (std::ranges::find(names, each.name) == names.end())
                names.push_back(std::move(each.name));
        }
    std::ranges::move(cleared, std::back_inserter(actions));
    return names;
}

std::vector<Cell> ArgumentCells(const std::vector<std::int32_t>& states) {
    std::vector<Cell> cells;
    for (const std::int32_t state : states)
        for (std::size_t row = 0; row < fieldTable<StateRecord>.size(); ++row)
            if (fieldTable<StateRecord>[row].unit == FieldUnit::Argument)
                cells.push_back({RecordKind::State, state, static_cast<int>(row)});
    return cells;
}

} // namespace

QString StateColumnHeading(StateColumn column) {
    return QCoreApplication::translate("StateColumns", FactsOf(column).heading);
}

bool IsNumberColumn(StateColumn column) {
    return column != StateColumn::Name && column != StateColumn::Lit && column < StateColumn::Action;
}

std::string StateColumnStep(const Edits& edits, StateColumn column, const std::vector<std::int32_t>& states) {
    return std::string(FactsOf(column).stepName) + " of " + edits.RecordsName(RecordKind::State, states, "frames");
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
    case StateColumn::Picture:
        return {};
    case StateColumn::Lit:
        return StateColumnValue(set, state, column) != 0 ? QCoreApplication::translate("StateColumns", "Yes")
                                                         : QCoreApplication::translate("StateColumns", "No");
    case StateColumn::Action: {
        const std::string* mnemonic = engine.MnemonicOf(StateColumnValue(set, state, column));
        return mnemonic != nullptr ? ShownText(Trim(*mnemonic)) : QString();
    }
    case StateColumn::Arguments: {
        const RecordOrNew record(set.states, state);
        const EngineConfiguration::Action* action = engine.ActionOf(record->codePointer);
        if (action == nullptr || action->arguments.empty()) // as are most
            return {};
        return ShownStart(ArgumentsText(set, engine, ArgumentsOf(engine.dialect, *action), *record));
    }
    default:
        return QString::number(StateColumnValue(set, state, column));
    }
}

bool AnyEditable(const RecordSelection& states) {
    return std::any_of(states.records.begin(), states.records.end(), [](std::int32_t state) { return state != 0; });
}

std::vector<std::string> StoreInStates(Edits& edits, const Session& session, const std::vector<std::int32_t>& states,
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
        return {};
    std::vector<Assignment> assignments =
        ColumnAssignments(session.patch.current, taken, which, [values](std::int32_t, StateColumn column) {
            for (const StateColumnAssignment& assignment : values)
                if (assignment.column == column)
                    return assignment.value;
            return 0;
        });
    std::vector<std::string> cleared;
    if (action)
        cleared = AddClearedArguments(session, assignments);
    edits.StoreGroup(assignments, StateColumnStep(edits, which.front(), taken), typing);
    return cleared;
}

std::vector<std::string> RestoreStateColumn(Edits& edits, const Session& session,
                                            const std::vector<std::int32_t>& states, StateColumn column) {
    if (states.empty() || column == StateColumn::Number)
        return {};
    const std::string name = "restore " + StateColumnStep(edits, column, states);
    if (column == StateColumn::Arguments) {
        edits.Restore(ArgumentCells(states), name);
        return {};
    }
    std::vector<StateColumn> which{column};
    if (column == StateColumn::Name || column == StateColumn::Picture)
        which = {StateColumn::Sprite, StateColumn::Frame};
    std::vector<Assignment> assignments =
        ColumnAssignments(session.patch.current, states, which, [&session](std::int32_t state, StateColumn restored) {
            return StateColumnValue(session.patch.defaults, state, restored);
        });
    std::vector<std::string> cleared;
    if (column == StateColumn::Action)
        cleared = AddClearedArguments(session, assignments);
    edits.StoreGroup(assignments, name, false);
    return cleared;
}

QString ClearedText(const std::vector<std::string>& names) {
    QStringList list;
    for (const std::string& name : names)
        list.append(ShownText(name));
    return list.isEmpty() ? QString()
                          : QCoreApplication::translate("StateColumns", "Cleared what the new action does not take: %1")
                                .arg(list.join(QStringLiteral(", ")));
}

} // namespace plinket3
