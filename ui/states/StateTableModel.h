#pragma once

#include "patch/Edits.h"
#include "patch/Program.h"
#include "ui/lists/KeptMarks.h"
#include "ui/lists/RecordRows.h"
#include "ui/states/StateColumns.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <optional>
#include <vector>

namespace plinket3 {

/// The states of the patch that are to be shown, a row each, with `StateColumn`s. Values that are not the engine's are
/// bold, with the engine's own in the tooltip.
class StateTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    StateTableModel(const Session& session, QObject* parent);

    /// `states` in the order of the patch's. Numbers that no state has show nothing.
    void Show(std::vector<std::int32_t> states);
    const std::vector<std::int32_t>& Shown() const { return shown_.Numbers(); }
    std::optional<int> RowOfState(std::int32_t state) const;
    /// Tells the views about those of the cells that are shown.
    void CellsChanged(const std::vector<Cell>& cells);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& at, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QVariant Value(std::int32_t state, StateColumn column, int role) const;

    const Session& session_;
    RecordRows shown_;
    KeptMarks kept_;
};

/// Every state's number, in their order.
std::vector<std::int32_t> AllStates(const PatchSet& set);
/// Those of `states` whose number begins with each word of `text`, or whose name, action or arguments contain it, upper
/// and lower case alike; all for a text without words.
std::vector<std::int32_t> MatchingStates(const Session& session, std::vector<std::int32_t> states, const QString& text);

} // namespace plinket3
