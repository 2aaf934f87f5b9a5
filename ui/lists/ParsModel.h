#pragma once

#include "patch/PatchSet.h"

#include <QAbstractTableModel>

namespace plinket3 {

/// The par times of a patch, a row for each entry: episode, map, seconds.
class ParsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit ParsModel(const std::vector<ParRecord>& pars) : pars_(pars) {}

    /// The list is another one, perhaps of another length.
    void Show();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const std::vector<ParRecord>& pars_;
    int rows_ = 0; // that views know of
};

/// The fields of a par time in the order of the columns.
inline constexpr std::int32_t ParRecord::*parFields[]{&ParRecord::episode, &ParRecord::map, &ParRecord::seconds};

} // namespace plinket3
