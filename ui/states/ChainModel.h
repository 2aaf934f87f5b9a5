#pragma once

#include "patch/NewChain.h"

#include <QAbstractTableModel>
#include <QStyledItemDelegate>

#include <vector>

namespace plinket3 {

/// The frames of a run of states that is to be made, a row each, to be edited. What is set in the first row goes to all
/// below that were not set apart from it; their pictures follow the first one letter by letter.
class ChainModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { FrameColumn, DurationColumn, ActionColumn, ColumnCount };

    /// Begins with one frame.
    ChainModel(const EngineConfiguration& engine, QObject* parent);

    const std::vector<NewChain::Frame>& Frames() const { return frames_; }
    /// At least 1. More go on as the first row leads.
    void Count(int count);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex&) const override { return ColumnCount; }
    Qt::ItemFlags flags(const QModelIndex& at) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex& at, int role) const override;
    bool setData(const QModelIndex& at, const QVariant& value, int role = Qt::EditRole) override;

private:
    static std::int32_t& ValueOf(NewChain::Frame& frame, int column);
    /// What `row` has when it follows the first.
    std::int32_t Led(std::size_t row, int column) const;

    const EngineConfiguration& engine_;
    std::vector<NewChain::Frame> frames_{1};
};

/// The boxes in which they are edited.
class ChainDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    ChainDelegate(const EngineConfiguration& engine, QObject* parent) : QStyledItemDelegate(parent), engine_(engine) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& at) const override;
    void setEditorData(QWidget* editor, const QModelIndex& at) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& at) const override;

private:
    const EngineConfiguration& engine_;
};

} // namespace plinket3
