#include "ui/lists/ThingFilter.h"

#include "ui/lists/RecordRows.h"

namespace plinket3 {

namespace {

constexpr char16_t digitWideBlank = 0x2007;

} // namespace

ThingFilter::ThingFilter(QAbstractItemModel& names) {
    setDynamicSortFilter(false);
    setSourceModel(&names);
}

void ThingFilter::Narrow(const QString& text) {
    text_ = text.trimmed();
    invalidateFilter();
}

QVariant ThingFilter::data(const QModelIndex& index, int role) const {
    QVariant value = QSortFilterProxyModel::data(index, role);
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return value;
    const int thing = index.data(recordRole).toInt();
    if (role == Qt::ToolTipRole) {
        const QString name = sourceModel()->data(mapToSource(index)).toString();
        const QString place = tr("Thing %1 (index %2): %3").arg(thing + 1).arg(thing).arg(name);
        return value.isValid() ? place + QLatin1Char('\n') + value.toString() : place;
    }
    const auto width = static_cast<int>(QString::number(sourceModel()->rowCount()).size());
    const QString number = QStringLiteral("%1").arg(thing + 1, width, 10, QChar(digitWideBlank));
    return number + QStringLiteral("  ") + value.toString();
}

bool ThingFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
    const QModelIndex place = sourceModel()->index(row, 0, parent);
    const int thing = place.data(recordRole).toInt();
    return place.data().toString().contains(text_, Qt::CaseInsensitive) ||
           QString::number(thing + 1).startsWith(text_) || QString::number(thing).startsWith(text_);
}

} // namespace plinket3
