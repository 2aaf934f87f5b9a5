#include "ui/compare/DifferencesModel.h"

#include "patch/CellText.h"
#include "patch/modPatchText.h"
#include "ui/LatinText.h"
#include "ui/fields/Marking.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace plinket3 {

namespace {

// An index tells by its id of which list its row is, and the row's place in the coarser one.
enum Depth : quintptr { KindRow, RecordRow, FieldRow, depths };
quintptr Id(Depth depth, std::size_t parent) { return parent * depths + depth; }
Depth DepthOf(const QModelIndex& index) { return static_cast<Depth>(index.internalId() % depths); }
std::size_t ParentOf(const QModelIndex& index) { return index.internalId() / depths; }

bool IsAlike(const Difference& left, const Difference& right) {
    return left.cell == right.cell && left.side == right.side && left.level == right.level;
}

} // namespace

QString KindTitle(RecordKind kind) {
    if (kind == RecordKind::Misc)
        return QCoreApplication::translate("DifferencesModel", "Miscellaneous");
    if (kind == RecordKind::Par)
        return QCoreApplication::translate("DifferencesModel", "Patch notes and par times");
    QString title;
    VisitKind(kind, [&title](const auto& list) { title = ShownText(list.plural); });
    if (!title.isEmpty())
        title[0] = title[0].toUpper();
    return title;
}

QString CountText(std::size_t differences) {
    return differences == 1 ? QCoreApplication::translate("DifferencesModel", "1 difference")
                            : QCoreApplication::translate("DifferencesModel", "%1 differences").arg(differences);
}

DifferencesModel::DifferencesModel(const Session& session, QObject* parent)
    : QAbstractItemModel(parent), session_(session) {}

bool DifferencesModel::Show(std::vector<Difference> differences, const Comparison& comparison, const Filter& filter) {
    std::erase_if(differences, [&filter](const Difference& difference) {
        return (filter.kind && *filter.kind != difference.cell.kind) ||
               (filter.side && *filter.side != difference.side);
    });
    if (comparison_ == &comparison && std::ranges::equal(differences, shown_, IsAlike)) {
        shown_ = std::move(differences);
        if (!shown_.empty()) // a view draws all of it anew then
            emit dataChanged(index(0, 0), index(rowCount() - 1, columnCountOfAll - 1));
        return true;
    }
    beginResetModel();
    comparison_ = &comparison;
    shown_ = std::move(differences);
    Build();
    endResetModel();
    return false;
}

void DifferencesModel::Clear() {
    beginResetModel();
    comparison_ = nullptr;
    shown_.clear();
    Build();
    endResetModel();
}

void DifferencesModel::Build() {
    kinds_.clear();
    records_.clear();
    for (std::size_t i = 0; i < shown_.size(); ++i) {
        const Cell& cell = shown_[i].cell;
        const Cell* before = i == 0 ? nullptr : &shown_[i - 1].cell;
        const bool otherKind = before == nullptr || before->kind != cell.kind;
        if (otherKind)
            kinds_.push_back({records_.size(), 0, 0});
        if (otherKind || before->index != cell.index) {
            records_.push_back({i, 0, kinds_.size() - 1});
            ++kinds_.back().count;
        }
        ++records_.back().count;
    }
}

std::span<const Difference> DifferencesModel::Below(const QModelIndex& index) const {
    const std::span<const Difference> all(shown_);
    const auto row = static_cast<std::size_t>(index.row());
    switch (DepthOf(index)) {
    case KindRow: {
        const Node &kind = kinds_[row], &last = records_[kind.first + kind.count - 1];
        const std::size_t first = records_[kind.first].first;
        return all.subspan(first, last.first + last.count - first);
    }
    case RecordRow: {
        const Node& record = records_[kinds_[ParentOf(index)].first + row];
        return all.subspan(record.first, record.count);
    }
    default:
        return all.subspan(records_[ParentOf(index)].first + row, 1);
    }
}

QModelIndex DifferencesModel::IndexOf(std::size_t difference, bool record) const {
    const auto behind = std::ranges::upper_bound(records_, difference, {}, &Node::first);
    const auto place = static_cast<std::size_t>(behind - records_.begin()) - 1;
    const std::size_t kind = records_[place].parent;
    if (record)
        return createIndex(static_cast<int>(place - kinds_[kind].first), 0, Id(RecordRow, kind));
    return createIndex(static_cast<int>(difference - records_[place].first), 0, Id(FieldRow, place));
}

QModelIndex DifferencesModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || row >= rowCount(parent) || column < 0 || column >= columnCountOfAll)
        return {};
    if (!parent.isValid())
        return createIndex(row, column, Id(KindRow, 0));
    const auto parentRow = static_cast<std::size_t>(parent.row());
    if (DepthOf(parent) == KindRow)
        return createIndex(row, column, Id(RecordRow, parentRow));
    return createIndex(row, column, Id(FieldRow, kinds_[ParentOf(parent)].first + parentRow));
}

QModelIndex DifferencesModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || DepthOf(child) == KindRow)
        return {};
    const std::size_t place = ParentOf(child);
    if (DepthOf(child) == RecordRow)
        return createIndex(static_cast<int>(place), 0, Id(KindRow, 0));
    const std::size_t kind = records_[place].parent;
    return createIndex(static_cast<int>(place - kinds_[kind].first), 0, Id(RecordRow, kind));
}

int DifferencesModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return static_cast<int>(kinds_.size());
    if (parent.column() != 0 || DepthOf(parent) == FieldRow)
        return 0;
    return static_cast<int>(DepthOf(parent) == KindRow ? kinds_[static_cast<std::size_t>(parent.row())].count
                                                       : Below(parent).size());
}

int DifferencesModel::columnCount(const QModelIndex&) const { return columnCountOfAll; }

QString DifferencesModel::RecordTitle(const Cell& cell) const {
    const PatchSet& here = session_.patch.current;
    return ShownStart(plinket3::RecordTitle(HasRecord(here, cell.kind, cell.index) ? here : comparison_->there.set,
                                            session_.engine, cell.kind, cell.index));
}

QString DifferencesModel::Title(const Difference& difference) const {
    if (difference.level)
        return ShownText(modPatchText::LevelName(difference.level->first, difference.level->second));
    return ShownStart(CellTitle(session_.patch.current, session_.engine, difference.cell));
}

/// Of bits only those that are others than here, but for `whole`.
QString DifferencesModel::ValueText(const PatchSet& set, const Difference& difference, const CellValue& value,
                                    bool whole) const {
    const Cell& cell = difference.cell;
    if (cell.field != existsField && !HasRecord(set, cell.kind, cell.index))
        return QStringLiteral("-");
    if (!whole && HoldsBits(cell) && &set != &session_.patch.current) {
        const std::string change = BitsChange(session_.engine, FactsOf(cell.kind, cell.field).bits,
                                              std::get<std::int32_t>(difference.here), std::get<std::int32_t>(value));
        return change.empty() ? tr("as here") : ShownStart(change);
    }
    return ShownStart(CellText(set, session_.engine, cell, value));
}

QString DifferencesModel::Text(const Difference& difference, int column, bool whole) const {
    switch (column) {
    case What:
        return Title(difference);
    case Here:
        return ValueText(session_.patch.current, difference, difference.here, whole);
    case There:
        return ValueText(comparison_->there.set, difference, difference.there, whole);
    case Ancestor:
        return ValueText(comparison_->ancestor ? comparison_->ancestor->set : session_.patch.defaults, difference,
                         difference.ancestor, whole);
    default:
        return SideText(std::span(&difference, 1));
    }
}

/// Empty where several are not alike.
QString DifferencesModel::SideText(std::span<const Difference> differences) const {
    const ChangedIn side = differences.front().side;
    if (std::ranges::any_of(differences, [side](const Difference& each) { return each.side != side; }))
        return {};
    switch (side) {
    case ChangedIn::Here:
        return tr("only here");
    case ChangedIn::There:
        return tr("only there");
    default:
        return comparison_->ancestor ? tr("conflict") : tr("in both");
    }
}

QVariant DifferencesModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || comparison_ == nullptr)
        return {};
    const std::span<const Difference> below = Below(index);
    const bool conflict =
        comparison_->ancestor && std::ranges::find(below, ChangedIn::Both, &Difference::side) != below.end();
    if (role == Qt::FontRole)
        return conflict ? MarkedFont() : QVariant();
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const Difference& first = below.front();
    if (DepthOf(index) == FieldRow) {
        const QString text = Text(first, index.column(), role == Qt::ToolTipRole);
        return role == Qt::DisplayRole || text != Text(first, index.column(), false) ? text : QVariant();
    }
    if (role == Qt::ToolTipRole)
        return {};
    switch (index.column()) {
    case What:
        return DepthOf(index) == KindRow ? KindTitle(first.cell.kind) : RecordTitle(first.cell);
    case Changed:
        return SideText(below);
    case Here:
        return CountText(below.size());
    default:
        return {};
    }
}

QVariant DifferencesModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const bool ancestor = comparison_ != nullptr && comparison_->ancestor;
    const std::array headings{tr("What"), tr("Changed"), tr("Here"), tr("There"),
                              ancestor ? tr("Ancestor") : tr("Engine")};
    return section < columnCountOfAll ? QVariant(headings[static_cast<std::size_t>(section)]) : QVariant();
}

} // namespace plinket3
