#pragma once

#include <QSortFilterProxyModel>

namespace plinket3 {

/// A list of the things' names, shown with their numbers as patches count them (from 1) and narrowed by a text.
class ThingFilter : public QSortFilterProxyModel {
    Q_OBJECT
public:
    /// `names` has one row for each thing, which tells its number (`recordRole`), and must outlive this object.
    explicit ThingFilter(QAbstractItemModel& names);

    /// Shows only things whose name contains `text` in upper or lower case, or whose number (from 1) or index (from 0)
    /// begins with it; all for an empty text. A thing that is renamed keeps its place until the next text.
    void Narrow(const QString& text);

    QVariant data(const QModelIndex& index, int role) const override;

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    QString text_;
};

} // namespace plinket3
