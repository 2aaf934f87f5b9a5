#pragma once

#include "core/modConfig.h"
#include "patch/PatchSet.h"

#include <QTableView>

namespace plinket3 {

class StateTableModel;
class Thumbnails;

/// Makes `view` a list of the states of `set`: whole rows of equal height, columns as wide as what they hold, the
/// pictures' in front while it is wanted, and nothing that looks at every row. The header's actions say what is shown.
void SetUpStateList(QTableView& view, StateTableModel& model, const QString& name, const QString& accessibleName,
                    const PatchSet& set, Thumbnails& thumbnails);

/// Shows the column of arguments where the engine's actions take some.
void ShowArgumentsColumn(QTableView& view, const EngineConfiguration& engine);

/// Scrolls to a row and selects it alone.
void SelectStateRow(QTableView& view, int row);

} // namespace plinket3
