#include "ui/lists/RecordList.h"

#include "ui/lists/RecordTableModel.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>

namespace plinket3 {

RecordList::RecordList(const QString& name, const QString& accessibleName, RecordTableModel& records)
    : records_(records) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    header()->setObjectName(name + QStringLiteral("Header"));
    filter_.setDynamicSortFilter(false); // a record that is edited stays in the list
    filter_.setFilterRole(RecordTableModel::searchRole);
    filter_.setFilterCaseSensitivity(Qt::CaseInsensitive);
    filter_.setSourceModel(&records);
    setModel(&filter_);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    connect(this, &QTreeView::doubleClicked, this,
            [this](const QModelIndex& index) { emit EditAsked(RecordAt(index)); });
}

int RecordList::RecordAt(const QModelIndex& shown) const { return shown.data(recordRole).toInt(); }

void RecordList::Filter(const QString& text) {
    filter_.setFilterFixedString(text);
    scrollTo(currentIndex());
}

std::optional<int> RecordList::SelectedRecord() const {
    if (selectionModel()->isSelected(currentIndex()))
        return RecordAt(currentIndex());
    const std::vector<int> selected = SelectedRecords();
    return selected.empty() ? std::nullopt : std::optional(selected.front());
}

std::vector<int> RecordList::SelectedRecords() const {
    std::vector<int> records;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        records.push_back(RecordAt(index));
    std::sort(records.begin(), records.end());
    return records;
}

void RecordList::SelectRecord(int record) {
    const QModelIndex index = filter_.mapFromSource(records_.index(records_.Rows().RowOf(record), 0));
    if (!index.isValid())
        return;
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
}

QSize RecordList::sizeHint() const {
    constexpr int lines = 24;
    return {header()->length() + verticalScrollBar()->sizeHint().width() + 2 * frameWidth(),
            fontMetrics().lineSpacing() * lines};
}

void RecordList::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && currentIndex().isValid())
        emit EditAsked(RecordAt(currentIndex()));
    else
        QTreeView::keyPressEvent(event);
}

void RecordList::mousePressEvent(QMouseEvent* event) {
    QTreeView::mousePressEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::RightButton && index.isValid())
        emit RightPressed(RecordAt(index));
}

void RecordList::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKeyboard = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint current = viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
    emit MenuAsked(byKeyboard ? current : event->globalPos(), byKeyboard);
}

} // namespace plinket3
