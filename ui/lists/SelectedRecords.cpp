#include "ui/lists/SelectedRecords.h"

#include <algorithm>

namespace plinket3 {

RecordSelection SelectedRecords(const QAbstractItemView& list, const std::function<std::int32_t(int row)>& recordOf) {
    RecordSelection selection;
    std::vector<std::int32_t>& records = selection.records;
    // By ranges: asking row by row takes long when many rows are selected one by one.
    for (const QItemSelectionRange& range : list.selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            records.push_back(recordOf(row));
    std::sort(records.begin(), records.end());
    records.erase(std::unique(records.begin(), records.end()), records.end());
    if (records.empty())
        return selection;
    selection.current = list.currentIndex().isValid() ? recordOf(list.currentIndex().row()) : records.front();
    if (!std::binary_search(records.begin(), records.end(), selection.current))
        selection.current = records.front();
    return selection;
}

} // namespace plinket3
