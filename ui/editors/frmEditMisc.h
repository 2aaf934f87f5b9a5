#pragma once

#include "ui/editors/EditorWindow.h"
#include "ui/fields/NumberBox.h"

class QCheckBox;
class QGroupBox;

namespace plinket3 {

class ValueRow;

/// Edits the one block of miscellaneous values: health, armor, cheats' gifts, the BFG's appetite, and the helper where
/// the engine has one.
class frmEditMisc : public EditorWindow {
    Q_OBJECT
public:
    explicit frmEditMisc(const EditorContext& context);

    std::optional<std::int32_t> CurrentRecord() const override { return 0; }

protected:
    bool SelectRecord(std::int32_t record) override { return record == 0; }
    void Build() override;
    void fillStaticData() override;
    void updateForm() override;
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    QGroupBox* NewHelperGroup();
    void StoreInfight(bool checked);
    void ShowInfight();
    void RestoreAll();

    NumberBoxes boxes_{RecordKind::Misc, "miscellaneous values"};
    QCheckBox* chkMonstersInfight_ = nullptr;
    QGroupBox* helperGroup_ = nullptr;
    ValueRow* helper_ = nullptr;
};

} // namespace plinket3
