#pragma once

#include "patch/Find.h"

#include <QAbstractTableModel>

#include <optional>
#include <vector>

namespace plinket3 {

/// What was found, in one list: under a heading for each group its results, and a row for those that are not shown.
/// The second column tells more of a result.
class FindResultsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    void Show(const std::vector<FoundGroup>& groups);
    /// Where a result leads; absent for another row.
    std::optional<Cell> CellAt(const QModelIndex& index) const;
    /// The group of which a row offers the rest; absent for another row.
    std::optional<FindGroup> RestAt(const QModelIndex& index) const;
    bool IsHeading(int row) const { return rows_[static_cast<std::size_t>(row)].kind == Kind::Heading; }
    /// The row that leads there, else the result at or behind row `otherwise`, else the last one; -1 for none.
    int RowFor(const std::optional<Cell>& cell, int otherwise) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    enum class Kind { Heading, Result, Rest };
    struct Row {
        Kind kind = Kind::Result;
        FindGroup group = FindGroup::Things;
        std::size_t count = 0; // of the group, or of its rest
        Found found;
    };
    QString TextOf(const Row& row, int column) const;

    std::vector<Row> rows_;
};

} // namespace plinket3
