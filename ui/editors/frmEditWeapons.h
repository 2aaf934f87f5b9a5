#pragma once

#include "ui/editors/NamedRecordEditor.h"
#include "ui/fields/ReferenceRow.h"
#include "ui/fields/SpriteView.h"

class QAction;
class QComboBox;

namespace plinket3 {

/// Edits the weapons: what they fire and the states that they go through.
class frmEditWeapons : public NamedRecordEditor {
    Q_OBJECT
public:
    explicit frmEditWeapons(const EditorContext& context);

protected:
    QWidget* BuildFields() override;
    void fillStaticData() override;
    void ShowRecord(std::optional<std::int32_t> record) override;
    void UpdateRecord() override;
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    std::optional<Cell> AmmoTypeCell() const;
    QString AmmoName(std::int32_t type) const;
    void ShowAmmoType();
    void ShowSprite();

    NamesModel ammoNames_;
    QComboBox* ammoType_ = nullptr;
    QAction* restoreAmmoType_ = nullptr;
    NumberBoxes states_{RecordKind::Weapon};
    SpriteView* sprite_ = nullptr;
};

} // namespace plinket3
