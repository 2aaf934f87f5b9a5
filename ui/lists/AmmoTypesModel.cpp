#include "ui/lists/AmmoTypesModel.h"

#include <algorithm>
#include <array>

namespace plinket3 {

namespace {

/// Engines count six types, and have ammunition of the first four.
constexpr int firstWithoutAmmo = 4;
constexpr std::array typesWithoutAmmo{QT_TRANSLATE_NOOP("AmmoTypesModel", "Unused"),
                                      QT_TRANSLATE_NOOP("AmmoTypesModel", "No Ammo")};
constexpr int typeCount = static_cast<int>(typesWithoutAmmo.size());

} // namespace

bool AmmoTypesModel::HasTypesWithoutAmmo() const {
    return Rows().RowOf(firstWithoutAmmo - 1) >= 0 && Rows().RowOf(firstWithoutAmmo) < 0;
}

int AmmoTypesModel::rowCount(const QModelIndex& parent) const {
    return NamesModel::rowCount(parent) + (!parent.isValid() && HasTypesWithoutAmmo() ? typeCount : 0);
}

std::int32_t AmmoTypesModel::TypeAt(int row) const {
    const int kinds = NamesModel::rowCount();
    return row < kinds ? Rows().At(row) : firstWithoutAmmo + row - kinds;
}

int AmmoTypesModel::RowOfType(std::int32_t type) const {
    if (HasTypesWithoutAmmo() && type >= firstWithoutAmmo && type < firstWithoutAmmo + typeCount)
        return NamesModel::rowCount() + type - firstWithoutAmmo;
    return Rows().RowOf(type);
}

QVariant AmmoTypesModel::data(const QModelIndex& index, int role) const {
    const int type = index.row() - NamesModel::rowCount();
    if (!index.isValid() || type < 0 || index.row() >= rowCount())
        return NamesModel::data(index, role);
    return role == Qt::DisplayRole ? tr(typesWithoutAmmo[static_cast<std::size_t>(type)]) : QVariant();
}

} // namespace plinket3
