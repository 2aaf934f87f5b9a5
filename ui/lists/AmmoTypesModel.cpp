#include "ui/lists/AmmoTypesModel.h"

#include <algorithm>
#include <array>

namespace plinket3 {

namespace {

/// Engines count six types, and have ammunition of the first four.
constexpr int firstWithoutAmmo = 4;
constexpr std::array typesWithoutAmmo{QT_TRANSLATE_NOOP("AmmoTypesModel", "Unused"),
                                      QT_TRANSLATE_NOOP("AmmoTypesModel", "No Ammo")};
constexpr int engineTypes = firstWithoutAmmo + static_cast<int>(typesWithoutAmmo.size());

} // namespace

int AmmoTypesModel::rowCount(const QModelIndex& parent) const {
    const int kinds = NamesModel::rowCount(parent);
    return kinds == firstWithoutAmmo ? engineTypes : kinds;
}

QVariant AmmoTypesModel::data(const QModelIndex& index, int role) const {
    const int type = index.row() - NamesModel::rowCount();
    if (!index.isValid() || type < 0 || index.row() >= rowCount())
        return NamesModel::data(index, role);
    return role == Qt::DisplayRole ? tr(typesWithoutAmmo[static_cast<std::size_t>(type)]) : QVariant();
}

} // namespace plinket3
