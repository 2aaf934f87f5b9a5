#pragma once

#include "ui/editors/NamedRecordEditor.h"
#include "ui/fields/ExtraFields.h"
#include "ui/lists/AmmoTypesModel.h"

class QAction;
class QComboBox;

namespace plinket3 {

class StatePreview;

/// Edits the weapons: what they fire and the states that they go through.
class frmEditWeapons : public NamedRecordEditor {
    Q_OBJECT
public:
    explicit frmEditWeapons(const EditorContext& context);

protected:
    QWidget* BuildFields() override;
    void AddButtons(QBoxLayout& buttons) override;
    void fillStaticData() override;
    void updateForm() override;
    void ShowRecords() override;
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    std::vector<Cell> AmmoTypeCells() const;
    void StoreAmmoType(std::int32_t type);
    QString AmmoName(std::int32_t type) const;
    void ShowAmmoType();
    void ShowPreview();

    AmmoTypesModel ammoTypes_;
    QComboBox* ammoType_ = nullptr;
    ExtraFields* extra_ = nullptr;
    QAction* restoreAmmoType_ = nullptr;
    StatePreview* preview_ = nullptr;
};

} // namespace plinket3
