#pragma once

#include <QAbstractListModel>

#include <functional>

namespace plinket3 {

/// A list of names that stand elsewhere.
class TextListModel : public QAbstractListModel {
    Q_OBJECT
public:
    TextListModel(QObject* parent, std::function<std::size_t()> count, std::function<QString(std::size_t)> text)
        : QAbstractListModel(parent), count_(std::move(count)), text_(std::move(text)) {}

    /// The names are others now.
    void Reset() {
        beginResetModel();
        endResetModel();
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(count_());
    }
    QVariant data(const QModelIndex& at, int role) const override {
        if (role != Qt::DisplayRole || !at.isValid() || at.row() >= rowCount())
            return {};
        return text_(static_cast<std::size_t>(at.row()));
    }

private:
    std::function<std::size_t()> count_;
    std::function<QString(std::size_t)> text_;
};

} // namespace plinket3
