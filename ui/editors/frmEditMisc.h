#pragma once

#include "ui/editors/EditorWindow.h"
#include "ui/editors/NumberFields.h"

#include <vector>

class QCheckBox;

namespace plinket3 {

/// Edits the one block of miscellaneous values: health, armor, cheats' gifts and the BFG's appetite.
class frmEditMisc : public EditorWindow {
    Q_OBJECT
public:
    explicit frmEditMisc(const EditorContext& context);

protected:
    void Build() override;
    void fillStaticData() override {}
    void updateForm() override;
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    void StoreInfight(bool checked);
    void ShowInfight();
    void RestoreAll();

    std::vector<NumberBox*> boxes_;
    std::vector<int> fields_; // of the boxes, in their order
    QCheckBox* chkMonstersInfight_ = nullptr;
};

} // namespace plinket3
