#pragma once

#include <QAbstractListModel>

#include <functional>

namespace plinket3 {

/// A list of names that stand elsewhere, and of texts in which a filter looks for them.
class TextListModel : public QAbstractListModel {
    Q_OBJECT
public:
    static constexpr int searchRole = Qt::UserRole;
    using Text = std::function<QString(std::size_t)>;

    /// Without `search` filters look into the names.
    TextListModel(QObject* parent, std::function<std::size_t()> count, Text text, Text search = {})
        : QAbstractListModel(parent), count_(std::move(count)), text_(std::move(text)),
          search_(search ? std::move(search) : text_) {}

    /// The names are others now.
    void Reset() {
        beginResetModel();
        endResetModel();
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(count_());
    }
    QVariant data(const QModelIndex& at, int role) const override {
        if ((role != Qt::DisplayRole && role != searchRole) || !at.isValid() || at.row() >= rowCount())
            return {};
        return (role == searchRole ? search_ : text_)(static_cast<std::size_t>(at.row()));
    }

private:
    std::function<std::size_t()> count_;
    Text text_, search_;
};

} // namespace plinket3
