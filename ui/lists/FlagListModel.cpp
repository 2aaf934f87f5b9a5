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

/// Unset is as good as no bits.
std::int32_t BitsIn(const CellValue& value) {
    const auto* number = std::get_if<std::int32_t>(&value);
    return number == nullptr ? 0 : *number;
}

bool IsOf(const SelectedValue& field, std::int32_t ThingNumbers::*member) {
    return field.Kind() == RecordKind::Thing && field.Field() == RowOf(member);
}

} // namespace

void FlagListModel::Reload() {
    beginResetModel();
    rows_.clear();
    const EngineConfiguration& engine = context_.program.engine;
    std::size_t sets = 0;
    for (const SelectedValue& field : fields_) {
        if (FactsOf(field.Kind(), field.Field()).since > engine.dialect.fields)
            continue;
        ++sets;
        const BitSet set = field.MeaningOf(0).bits;
        rows_.push_back({&field, set, heading});
        for (std::size_t bit = 0; bit < std::min(engine.BitNames(set).size(), bitCount); ++bit)
            rows_.push_back({&field, set, static_cast<int>(bit)});
    }
    if (sets < 2)
        std::erase_if(rows_, [](const Row& row) { return row.bit == heading; });
    endResetModel();
}

void FlagListModel::FlagsChanged() {
    if (!rows_.empty())
        emit dataChanged(index(0), index(rowCount() - 1));
}

int FlagListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

const std::string& FlagListModel::NameOf(const Row& row) const {
    return context_.program.engine.BitNames(row.set)[static_cast<std::size_t>(row.bit)];
}

QString FlagListModel::HintOf(const Row& row) const {
    const std::vector<std::string>& hints = context_.program.engine.BitTooltips(row.set);
    const auto place = static_cast<std::size_t>(row.bit);
    return place < hints.size() ? ShownText(hints[place]) : QString();
}

QVariant FlagListModel::HeadingData(const Row& row, int role) const {
    if (role == Qt::DisplayRole)
        return ShownText(FactsOf(row.field->Kind(), row.field->Field()).label);
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignCenter);
    return {};
}

QVariant FlagListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    if (row.bit == heading)
        return HeadingData(row, role);
    if (role == Qt::DisplayRole)
        return ShownText(NameOf(row));
    if (Records().empty())
        return role == Qt::ToolTipRole ? QVariant(HintOf(row)) : QVariant();
    const auto isOn = [&row](std::int32_t record) { return GetFlag(BitsIn(row.field->Of(record)), row.bit); };
    const bool on = isOn(Records().front());
    const bool common = std::ranges::all_of(Records(), [&](std::int32_t record) { return isOn(record) == on; });
    const bool standard = GetFlag(BitsIn(row.field->DefaultOf(Records().front())), row.bit);
    const bool differs = Records().size() == 1 && on != standard;
    switch (role) {
    case Qt::CheckStateRole:
        return !common ? Qt::PartiallyChecked : on ? Qt::Checked : Qt::Unchecked;
    case Qt::ToolTipRole: {
        const QString hint = HintOf(row);
        if (!differs)
            return hint;
        return (hint.isEmpty() ? QString() : hint + QLatin1Char('\n')) + DefaultTip(standard ? tr("on") : tr("off"));
    }
    case Qt::FontRole:
        return differs ? MarkedFont() : QVariant();
    default:
        return {};
    }
}

bool FlagListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !checkIndex(index, CheckIndexOption::IndexIsValid) ||
        !(flags(index) & Qt::ItemIsUserCheckable))
        return false;
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    const bool on = value.value<Qt::CheckState>() == Qt::Checked;
    StoreBits({row.field}, "flag " + NameOf(row) + " of ", [&row, on](const SelectedValue& field, std::int32_t record) {
        const std::int32_t bits = BitsIn(field.Of(record));
        return on ? SetFlag(bits, row.bit) : RemoveFlag(bits, row.bit);
    });
    return true;
}

Qt::ItemFlags FlagListModel::flags(const QModelIndex& index) const {
    if (!index.isValid() || rows_[static_cast<std::size_t>(index.row())].bit == heading)
        return index.isValid() ? Qt::ItemNeverHasChildren : Qt::NoItemFlags;
    if (fields_.front().Editable().empty())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren;
}

void FlagListModel::Restore() {
    std::vector<const SelectedValue*> shown;
    for (const Row& row : rows_)
        if (shown.empty() || shown.back() != row.field)
            shown.push_back(row.field);
    StoreBits(shown, "restore flags of ",
              [](const SelectedValue& field, std::int32_t record) { return BitsIn(field.DefaultOf(record)); });
}

/// One step that gives each field of each record the bits `bitsOf(field, record)`; the speeds of things keep their
/// meaning.
template <class BitsOf> void FlagListModel::StoreBits(const std::vector<const SelectedValue*>& fields,
                                                      const std::string& stepName, BitsOf bitsOf) {
    std::vector<Assignment> values;
    const auto set = [&values](const Cell& cell, std::int32_t number) {
        Assignment& assignment = values.emplace_back();
        assignment.cell = cell;
        assignment.value = number;
    };
    const SelectedValue& first = fields_.front();
    const std::vector<std::int32_t> records = first.Editable();
    for (const std::int32_t record : records)
        for (const SelectedValue* field : fields) {
            const std::int32_t bits = bitsOf(*field, record);
            set({field->Kind(), record, field->Field()}, bits);
            if (!IsOf(*field, &ThingRecord::bits))
                continue;
            const RecordOrNew thing(context_.program.patch.current.things, record);
            for (const auto member : {&ThingRecord::speed, &ThingRecord::fastSpeed})
                set({RecordKind::Thing, record, RowOf(member)}, SpeedUnder(bits, *thing, FieldOf(member)));
        }
    if (!values.empty())
        context_.edits.StoreGroup(values, stepName + context_.edits.RecordsName(first.Kind(), records, first.Many()));
}

} // namespace plinket3
