#include "ui/lists/ParsModel.h"

#include <iterator>

namespace plinket3 {

namespace {

constexpr const char* headers[]{QT_TRANSLATE_NOOP("ParsModel", "Episode"), QT_TRANSLATE_NOOP("ParsModel", "Map"),
                                QT_TRANSLATE_NOOP("ParsModel", "Seconds")};

} // namespace

void ParsModel::Show() {
    const int now = static_cast<int>(pars_.size());
    if (now > rows_) {
        beginInsertRows({}, rows_, now - 1);
        rows_ = now;
        endInsertRows();
    } else if (now < rows_) {
        beginRemoveRows({}, now, rows_ - 1);
        rows_ = now;
        endRemoveRows();
    }
    if (rows_ > 0)
        emit dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
}

int ParsModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int ParsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(std::size(parFields));
}

QVariant ParsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || static_cast<std::size_t>(index.row()) >= pars_.size())
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    return pars_[static_cast<std::size_t>(index.row())].*parFields[index.column()];
}

QVariant ParsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? tr(headers[section]) : QVariant();
}

} // namespace plinket3
