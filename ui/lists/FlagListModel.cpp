#include "ui/lists/FlagListModel.h"

#include "core/Numbers.h"
#include "patch/modPatchText.h"
#include "ui/LatinText.h"
#include "ui/fields/Marking.h"

#include <algorithm>

namespace plinket3 {

using modPatchText::GetFlag;
using modPatchText::RemoveFlag;
using modPatchText::SetFlag;

namespace {

constexpr std::size_t bitCount = 32;
constexpr int fixedBits = 16; // after the point, in the speed of a projectile

} // namespace

void FlagListModel::Reload() {
    beginResetModel();
    count_ = static_cast<int>(std::min(context_.program.engine.flagNames.size(), bitCount));
    endResetModel();
}

void FlagListModel::ShowThing(int thing) {
    thing_ = thing;
    FlagsChanged();
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
    if (!HasThing())
        return role == Qt::ToolTipRole ? QVariant(hint) : QVariant();
    const auto thing = static_cast<std::size_t>(thing_);
    const bool on = GetFlag(context_.program.patch.current.things[thing].bits, bit);
    const bool standard = GetFlag(context_.program.patch.defaults.things[thing].bits, bit);
    switch (role) {
    case Qt::CheckStateRole:
        return on ? Qt::Checked : Qt::Unchecked;
    case Qt::ToolTipRole:
        if (on == standard)
            return hint;
        return (hint.isEmpty() ? QString() : hint + QLatin1Char('\n')) + DefaultTip(standard ? tr("on") : tr("off"));
    case Qt::FontRole:
        return on != standard ? MarkedFont() : QVariant();
    default:
        return {};
    }
}

bool FlagListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !HasThing() || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    const int bit = index.row();
    const std::int32_t bits = context_.program.patch.current.things[static_cast<std::size_t>(thing_)].bits;
    const bool on = value.value<Qt::CheckState>() == Qt::Checked;
    StoreBits(on ? SetFlag(bits, bit) : RemoveFlag(bits, bit),
              "flag " + context_.program.engine.flagNames[static_cast<std::size_t>(bit)] + " of ");
    return true;
}

Qt::ItemFlags FlagListModel::flags(const QModelIndex& index) const {
    if (!index.isValid() || !HasThing())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren;
}

bool FlagListModel::HasThing() const {
    return thing_ >= 0 && static_cast<std::size_t>(thing_) < context_.program.patch.current.things.size();
}

void FlagListModel::Restore() {
    if (HasThing())
        StoreBits(context_.program.patch.defaults.things[static_cast<std::size_t>(thing_)].bits, "restore flags of ");
}

/// The speed of a projectile is fixed point: it keeps its meaning when a thing becomes one or stops being one.
void FlagListModel::StoreBits(std::int32_t bits, const std::string& stepName) {
    const ThingRecord& record = context_.program.patch.current.things[static_cast<std::size_t>(thing_)];
    const bool wasProjectile = GetFlag(record.bits, projectileBit);
    const bool isProjectile = GetFlag(bits, projectileBit);
    std::int32_t speed = record.speed;
    if (isProjectile && !wasProjectile)
        speed = static_cast<std::int32_t>(static_cast<std::uint32_t>(speed) << fixedBits);
    else if (wasProjectile && !isProjectile)
        speed = RoundToInt32(speed / double{1 << fixedBits});
    context_.edits.StoreGroup({{{RecordKind::Thing, thing_, RowOf(&ThingRecord::bits)}, bits},
                               {{RecordKind::Thing, thing_, RowOf(&ThingRecord::speed)}, speed}},
                              stepName + context_.edits.RecordName(RecordKind::Thing, thing_));
}

} // namespace plinket3
