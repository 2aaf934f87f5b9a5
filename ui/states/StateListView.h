#pragma once

#include "core/modConfig.h"

#include <QTableView>

namespace plinket3 {

class StateTableModel;

/// Makes `view` a list of states: whole rows of equal height, columns as wide as what they hold, and nothing that looks
/// at every row.
void SetUpStateList(QTableView& view, StateTableModel& model, const QString& name, const QString& accessibleName);

/// Shows the column of arguments where the engine's actions take some.
void ShowArgumentsColumn(QTableView& view, const EngineConfiguration& engine);

/// Scrolls to a row and selects it alone.
void SelectStateRow(QTableView& view, int row);

} // namespace plinket3
