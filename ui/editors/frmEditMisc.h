#pragma once

#include "ui/editors/EditorWindow.h"
#include "ui/fields/NumberBox.h"

class QCheckBox;

namespace plinket3 {

/// Edits the one block of miscellaneous values: health, armor, cheats' gifts and the BFG's appetite.
class frmEditMisc : public EditorWindow {
    Q_OBJECT
public:
    explicit frmEditMisc(const EditorContext& context);

    std::optional<std::int32_t> CurrentRecord() const override { return 0; }

protected:
    bool SelectRecord(std::int32_t record) override { return record == 0; }
    void Build() override;
    void fillStaticData() override {}
    void updateForm() override;
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    void StoreInfight(bool checked);
    void ShowInfight();
    void RestoreAll();

    NumberBoxes boxes_{RecordKind::Misc, "miscellaneous values"};
    QCheckBox* chkMonstersInfight_ = nullptr;
};

} // namespace plinket3
