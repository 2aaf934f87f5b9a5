#pragma once

#include "ui/lists/NamesModel.h"

namespace plinket3 {

/// The types of ammunition that a weapon may use: the kinds that there are, and two that stand for none.
class AmmoTypesModel : public NamesModel {
    Q_OBJECT
public:
    explicit AmmoTypesModel(const EditorContext& context) : NamesModel(context, RecordKind::Ammo) {}

    /// The number of the type in a row, and the row of a number; -1 for one that has none.
    std::int32_t TypeAt(int row) const;
    int RowOfType(std::int32_t type) const;
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    bool HasTypesWithoutAmmo() const;
};

} // namespace plinket3
