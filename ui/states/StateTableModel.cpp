#include "ui/states/StateTableModel.h"

#include "core/Text.h"
#include "patch/Arguments.h"
#include "ui/LatinText.h"
#include "ui/fields/Labels.h"
#include "ui/fields/Marking.h"
#include "ui/states/StateColumns.h"

#include <QFontDatabase>

#include <algorithm>
#include <string>
#include <unordered_set>

namespace plinket3 {

StateTableModel::StateTableModel(const Session& session, QObject* parent)
    : QAbstractTableModel(parent), session_(session), kept_(session.patch.current, RecordKind::State) {}

void StateTableModel::Show(std::vector<std::int32_t> states) {
    beginResetModel();
    shown_ = RecordRows(std::move(states));
    kept_.Read();
    endResetModel();
}

std::optional<int> StateTableModel::RowOfState(std::int32_t state) const {
    const int row = shown_.RowOf(state);
    return row < 0 ? std::nullopt : std::optional(row);
}

void StateTableModel::CellsChanged(const std::vector<Cell>& cells) {
    // One signal for the stretch of rows between them: a view then draws once, however many cells there are.
    int first = rowCount();
    int last = -1;
    for (const Cell& cell : cells)
        if (cell.kind == RecordKind::State)
            if (const auto row = RowOfState(cell.index)) {
                first = std::min(first, *row);
                last = std::max(last, *row);
            }
    const bool kept = kept_.Follow(cells);
    if (kept || RenamesLumps(cells)) { // which states show, and name as arguments
        first = 0;
        last = rowCount() - 1;
    }
    if (last >= 0)
        emit dataChanged(index(first, 0), index(last, columnCount() - 1));
}

int StateTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : shown_.Count(); }

int StateTableModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : stateColumnCount; }

QVariant StateTableModel::data(const QModelIndex& at, int role) const {
    if (!at.isValid() || at.row() >= rowCount())
        return {};
    const std::int32_t state = shown_.At(at.row());
    if (!session_.patch.current.states.Has(state))
        return {};
    const auto column = static_cast<StateColumn>(at.column());
    const QVariant value = Value(state, column, role);
    return column == StateColumn::Name ? kept_.Over(value, state, role) : value;
}

QVariant StateTableModel::Value(std::int32_t state, StateColumn column, int role) const {
    const PatchSet& current = session_.patch.current;
    const PatchSet& defaults = session_.patch.defaults;
    const auto text = [&](const PatchSet& set) { return StateColumnText(set, session_.engine, state, column); };
    switch (role) {
    case Qt::DisplayRole:
        return text(current);
    case Qt::ToolTipRole:
        return text(current) == text(defaults) ? QVariant() : QVariant(DefaultTip(text(defaults)));
    case Qt::FontRole: {
        const QFont font = IsNumberColumn(column) ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : QFont();
        return text(current) != text(defaults) ? MarkedFont(font) : font;
    }
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignVCenter | (IsNumberColumn(column) ? Qt::AlignRight : Qt::AlignLeft));
    default:
        return {};
    }
}

QVariant StateTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= stateColumnCount)
        return {};
    const auto column = static_cast<StateColumn>(section);
    if (role == Qt::DisplayRole)
        return StateColumnHeading(column);
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::AlignVCenter | (IsNumberColumn(column) ? Qt::AlignRight : Qt::AlignLeft));
    return {};
}

std::vector<std::int32_t> AllStates(const PatchSet& set) { return set.states.Numbers(); }

std::vector<std::int32_t> MatchingStates(const Session& session, std::vector<std::int32_t> states,
                                         const QString& text) {
    const PatchSet& set = session.patch.current;
    const ArgumentTable arguments(session.engine);
    for (const QString& typed : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const std::string word = ToLower(StoredText(typed));
        const auto holds = [&word](std::string_view shown) { return ToLower(shown).find(word) != std::string::npos; };
        std::unordered_set<std::int32_t> actions; // the code pointer values whose name contains the word
        for (const auto& [value, mnemonic] : session.engine.mnemonicByValue)
            if (holds(mnemonic))
                actions.insert(value);
        std::erase_if(states, [&](std::int32_t state) {
            const StateRecord* record = set.states.Find(state);
            return record == nullptr ||
                   (!std::to_string(state).starts_with(word) && !actions.contains(record->codePointer) &&
                    !holds(StoredText(StateLabelText(set, state))) &&
                    (arguments.Of(record->codePointer).empty() ||
                     !holds(ArgumentsText(set, session.engine, arguments.Of(record->codePointer), *record))));
        });
    }
    return states;
}

} // namespace plinket3
