#include "ui/FindResultsModel.h"

#include "ui/LatinText.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include <array>

namespace plinket3 {

namespace {

/// By `FindGroup`.
constexpr std::array<const char*, findGroupCount> groupHeadings{
    QT_TRANSLATE_NOOP("FindResultsModel", "Things"),    QT_TRANSLATE_NOOP("FindResultsModel", "States"),
    QT_TRANSLATE_NOOP("FindResultsModel", "Sounds"),    QT_TRANSLATE_NOOP("FindResultsModel", "Sprites"),
    QT_TRANSLATE_NOOP("FindResultsModel", "Music"),     QT_TRANSLATE_NOOP("FindResultsModel", "Strings"),
    QT_TRANSLATE_NOOP("FindResultsModel", "Weapons"),   QT_TRANSLATE_NOOP("FindResultsModel", "Ammo"),
    QT_TRANSLATE_NOOP("FindResultsModel", "Cheats"),    QT_TRANSLATE_NOOP("FindResultsModel", "Misc."),
    QT_TRANSLATE_NOOP("FindResultsModel", "Par times"), QT_TRANSLATE_NOOP("FindResultsModel", "Notes")};

} // namespace

void FindResultsModel::Show(const std::vector<FoundGroup>& groups) {
    beginResetModel();
    rows_.clear();
    for (const FoundGroup& group : groups) {
        rows_.push_back({Kind::Heading, group.group, group.count, {}});
        for (const Found& found : group.found)
            rows_.push_back({Kind::Result, group.group, 0, found});
        if (group.found.size() < group.count)
            rows_.push_back({Kind::Rest, group.group, group.count - group.found.size(), {}});
    }
    endResetModel();
}

std::optional<Cell> FindResultsModel::CellAt(const QModelIndex& index) const {
    if (!index.isValid())
        return std::nullopt;
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    return row.kind == Kind::Result ? std::optional(row.found.cell) : std::nullopt;
}

std::optional<FindGroup> FindResultsModel::RestAt(const QModelIndex& index) const {
    if (!index.isValid())
        return std::nullopt;
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    return row.kind == Kind::Rest ? std::optional(row.group) : std::nullopt;
}

int FindResultsModel::RowFor(const std::optional<Cell>& cell, int otherwise) const {
    int last = -1;
    int behind = -1;
    for (int row = 0; row < rowCount(); ++row) {
        if (rows_[static_cast<std::size_t>(row)].kind != Kind::Result)
            continue;
        if (cell == rows_[static_cast<std::size_t>(row)].found.cell)
            return row;
        if (behind < 0 && row >= otherwise)
            behind = row;
        last = row;
    }
    return behind < 0 ? last : behind;
}

int FindResultsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int FindResultsModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : 2; }

QString FindResultsModel::TextOf(const Row& row, int column) const {
    if (row.kind == Kind::Result)
        return ShownStart(column == 0 ? row.found.title : row.found.detail);
    if (column > 0)
        return {};
    const auto count = static_cast<qulonglong>(row.count);
    return row.kind == Kind::Rest
               ? tr("%1 more...").arg(count)
               : tr("%1 (%2)").arg(tr(groupHeadings[static_cast<std::size_t>(row.group)])).arg(count);
}

QVariant FindResultsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return TextOf(row, index.column());
    if (row.kind == Kind::Heading && role == Qt::FontRole) {
        QFont font;
        font.setBold(true);
        return font;
    }
    if (row.kind == Kind::Heading && role == Qt::ForegroundRole) // cannot be chosen, but is no less true
        return QGuiApplication::palette().brush(QPalette::Text);
    return {};
}

Qt::ItemFlags FindResultsModel::flags(const QModelIndex& index) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || IsHeading(index.row()))
        return Qt::NoItemFlags; // the keyboard leads past it
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

} // namespace plinket3
