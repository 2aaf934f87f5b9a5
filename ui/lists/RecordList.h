#pragma once

#include <QSortFilterProxyModel>
#include <QTreeView>

#include <optional>
#include <vector>

namespace plinket3 {

class RecordTableModel;

/// A list of records with columns, of which a filter text leaves those that hold it. Rows are spoken of by the number
/// of their record, whatever is filtered.
class RecordList : public QTreeView {
    Q_OBJECT
public:
    /// `records` outlives the list.
    RecordList(const QString& name, const QString& accessibleName, RecordTableModel& records);

    /// Shows the records whose RecordTableModel::searchRole holds the text, in upper or lower case. One that is edited
    /// stays as it is until the next text.
    void Filter(const QString& text);
    /// The current record when it is selected, else the first selected one.
    std::optional<int> SelectedRecord() const;
    /// Ascending.
    std::vector<int> SelectedRecords() const;
    /// Selects this one record only and scrolls to it; nothing happens for one that the filter hides.
    void SelectRecord(int record);

    /// With room for every column.
    QSize sizeHint() const override;

signals:
    /// By a double click or the Enter key.
    void EditAsked(int record);
    void RightPressed(int record);
    /// A menu was asked for, by the right mouse button or (`byKeyboard`) the menu key; `place` is on the screen.
    void MenuAsked(const QPoint& place, bool byKeyboard);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    int RecordAt(const QModelIndex& shown) const;

    RecordTableModel& records_;
    QSortFilterProxyModel filter_;
};

} // namespace plinket3
