#include "ui/states/ChainModel.h"

#include "ui/fields/ActionText.h"
#include "ui/fields/FrameSpinBox.h"

#include <QComboBox>
#include <QCompleter>

#include <algorithm>
#include <array>

namespace plinket3 {

namespace {

constexpr std::int32_t longestDuration = 999; // as in the fields of a state

/// The entry whose name is typed, or the only one that holds what is; -1 for none.
int TypedEntry(const QComboBox& actions) {
    if (const int named = actions.findText(actions.currentText(), Qt::MatchFixedString); named >= 0)
        return named;
    const QModelIndexList found = actions.model()->match(actions.model()->index(0, 0), Qt::DisplayRole,
                                                         actions.currentText(), 2, Qt::MatchContains);
    return found.size() == 1 ? found.front().row() : -1;
}

} // namespace

ChainModel::ChainModel(const EngineConfiguration& engine, QObject* parent)
    : QAbstractTableModel(parent), engine_(engine) {}

std::int32_t& ChainModel::ValueOf(NewChain::Frame& frame, int column) {
    return column == FrameColumn ? frame.frame : column == DurationColumn ? frame.duration : frame.action;
}

std::int32_t ChainModel::Led(std::size_t row, int column) const {
    const NewChain::Frame& first = frames_.front();
    return column == FrameColumn      ? std::min(first.frame + static_cast<std::int32_t>(row), lastFrame)
           : column == DurationColumn ? first.duration
                                      : first.action;
}

void ChainModel::Count(int count) {
    beginResetModel();
    const std::size_t before = frames_.size();
    frames_.resize(static_cast<std::size_t>(std::max(count, 1)));
    for (std::size_t row = before; row < frames_.size(); ++row)
        for (int column = 0; column < ColumnCount; ++column)
            ValueOf(frames_[row], column) = Led(row, column);
    endResetModel();
}

int ChainModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(frames_.size());
}

Qt::ItemFlags ChainModel::flags(const QModelIndex& at) const {
    return QAbstractTableModel::flags(at) | Qt::ItemIsEditable;
}

QVariant ChainModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    const std::array headings{tr("Frame"), tr("Duration"), tr("Action")};
    return headings[static_cast<std::size_t>(section)];
}

QVariant ChainModel::data(const QModelIndex& at, int role) const {
    if (!at.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    NewChain::Frame frame = frames_[static_cast<std::size_t>(at.row())];
    const std::int32_t value = ValueOf(frame, at.column());
    if (role == Qt::EditRole || at.column() == DurationColumn)
        return value;
    if (at.column() == FrameColumn)
        return FrameText(value, FrameForm::Letter);
    const EngineConfiguration::Action* action = engine_.ActionOf(value);
    return action == nullptr ? QString::number(value) : ActionName(*action);
}

bool ChainModel::setData(const QModelIndex& at, const QVariant& value, int role) {
    if (!at.isValid() || role != Qt::EditRole)
        return false;
    const int column = at.column();
    std::vector<std::size_t> following{static_cast<std::size_t>(at.row())};
    for (std::size_t row = 1; at.row() == 0 && row < frames_.size(); ++row)
        if (ValueOf(frames_[row], column) == Led(row, column))
            following.push_back(row);
    ValueOf(frames_[following.front()], column) = value.toInt();
    for (std::size_t i = 1; i < following.size(); ++i)
        ValueOf(frames_[following[i]], column) = Led(following[i], column);
    emit dataChanged(at, index(static_cast<int>(following.back()), column));
    return true;
}

QWidget* ChainDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& at) const {
    if (at.column() == ChainModel::ActionColumn) {
        auto* actions = new QComboBox(parent);
        for (const EngineConfiguration::Action& action : engine_.actions)
            actions->addItem(ActionName(action), action.value);
        actions->setEditable(true);
        actions->setInsertPolicy(QComboBox::NoInsert);
        actions->completer()->setCompletionMode(QCompleter::PopupCompletion);
        actions->completer()->setFilterMode(Qt::MatchContains);
        return actions;
    }
    auto* box = at.column() == ChainModel::FrameColumn ? new FrameSpinBox : new QSpinBox;
    if (at.column() == ChainModel::FrameColumn)
        static_cast<FrameSpinBox*>(box)->Form(FrameForm::Letter);
    else
        box->setRange(-1, longestDuration);
    box->setParent(parent);
    return box;
}

void ChainDelegate::setEditorData(QWidget* editor, const QModelIndex& at) const {
    if (auto* actions = qobject_cast<QComboBox*>(editor))
        actions->setCurrentIndex(actions->findData(at.data(Qt::EditRole)));
    else
        QStyledItemDelegate::setEditorData(editor, at);
}

void ChainDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& at) const {
    const auto* actions = qobject_cast<QComboBox*>(editor);
    if (actions == nullptr)
        return QStyledItemDelegate::setModelData(editor, model, at);
    if (const int entry = TypedEntry(*actions); entry >= 0)
        model->setData(at, actions->itemData(entry));
}

} // namespace plinket3
