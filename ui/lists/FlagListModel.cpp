#include "ui/lists/FlagListModel.h"

#include "patch/NewRecords.h"
#include "patch/modPatchText.h"
#include "ui/LatinText.h"
#include "ui/fields/Marking.h"
#include "ui/fields/Speed.h"

#include <algorithm>

namespace plinket3 {

using modPatchText::GetFlag;
using modPatchText::RemoveFlag;
using modPatchText::SetFlag;

namespace {

constexpr std::size_t bitCount = 32;

bool IsOn(const PatchSet& set, std::int32_t thing, int bit) {
    return GetFlag(RecordOrNew(set.things, thing)->bits, bit);
}

} // namespace

void FlagListModel::Reload() {
    beginResetModel();
    count_ = static_cast<int>(std::min(context_.program.engine.flagNames.size(), bitCount));
    endResetModel();
}

void FlagListModel::FlagsChanged() {
    if (count_ > 0)
        emit dataChanged(index(0), index(count_ - 1));
}

int FlagListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count_; }

QVariant FlagListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const EngineConfiguration& engine = context_.program.engine;
    const int bit = index.row();
    const auto place = static_cast<std::size_t>(bit);
    if (role == Qt::DisplayRole)
        return ShownText(engine.flagNames[place]);

    const QString hint = place < engine.flagTooltips.size() ? ShownText(engine.flagTooltips[place]) : QString();
    if (Things().empty())
        return role == Qt::ToolTipRole ? QVariant(hint) : QVariant();
    const PatchData& patch = context_.program.patch;
    const bool on = IsOn(patch.current, Things().front(), bit);
    const bool common = std::all_of(Things().begin(), Things().end(),
                                    [&](std::int32_t thing) { return IsOn(patch.current, thing, bit) == on; });
    const bool standard = IsOn(patch.defaults, Things().front(), bit);
    const bool differs = !things_.Several() && on != standard;
    switch (role) {
    case Qt::CheckStateRole:
        return !common ? Qt::PartiallyChecked : on ? Qt::Checked : Qt::Unchecked;
    case Qt::ToolTipRole:
        if (!differs)
            return hint;
        return (hint.isEmpty() ? QString() : hint + QLatin1Char('\n')) + DefaultTip(standard ? tr("on") : tr("off"));
    case Qt::FontRole:
        return differs ? MarkedFont() : QVariant();
    default:
        return {};
    }
}

bool FlagListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || Things().empty() || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    const int bit = index.row();
    const bool on = value.value<Qt::CheckState>() == Qt::Checked;
    StoreBits("flag " + context_.program.engine.flagNames[static_cast<std::size_t>(bit)] + " of ",
              [this, bit, on](std::int32_t thing) {
                  const std::int32_t bits = RecordOrNew(context_.program.patch.current.things, thing)->bits;
                  return on ? SetFlag(bits, bit) : RemoveFlag(bits, bit);
              });
    return true;
}

Qt::ItemFlags FlagListModel::flags(const QModelIndex& index) const {
    if (!index.isValid() || Things().empty())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren;
}

void FlagListModel::Restore() {
    if (!Things().empty())
        StoreBits("restore flags of ", [this](std::int32_t thing) {
            return RecordOrNew(context_.program.patch.defaults.things, thing)->bits;
        });
}

/// One step that gives each thing the bits `bitsOf(thing)`; its speed keeps its meaning.
template <class BitsOf> void FlagListModel::StoreBits(const std::string& stepName, BitsOf bitsOf) {
    std::vector<Assignment> values;
    for (const std::int32_t thing : Things()) {
        const std::int32_t bits = bitsOf(thing);
        values.push_back({{RecordKind::Thing, thing, RowOf(&ThingRecord::bits)}, bits});
        values.push_back({{RecordKind::Thing, thing, RowOf(&ThingRecord::speed)},
                          SpeedUnder(bits, *RecordOrNew(context_.program.patch.current.things, thing))});
    }
    context_.edits.StoreGroup(values, stepName + context_.edits.RecordsName(RecordKind::Thing, Things(), "things"));
}

} // namespace plinket3
