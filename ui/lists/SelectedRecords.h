#pragma once

#include "ui/fields/RecordSelection.h"

#include <QAbstractItemView>

#include <functional>

namespace plinket3 {

/// The records whose rows are selected in a list; `recordOf` gives that of a row.
RecordSelection SelectedRecords(const QAbstractItemView& list, const std::function<std::int32_t(int row)>& recordOf);

} // namespace plinket3
