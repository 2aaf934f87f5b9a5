#pragma once

#include "ui/lists/NamesModel.h"

namespace plinket3 {

/// The types of ammunition that a weapon may use, by their numbers: the kinds that there are, and two that stand for
/// none.
class AmmoTypesModel : public NamesModel {
    Q_OBJECT
public:
    explicit AmmoTypesModel(const EditorContext& context) : NamesModel(context, RecordKind::Ammo) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
};

} // namespace plinket3
