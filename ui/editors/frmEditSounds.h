#pragma once

#include "ui/editors/RecordTableEditor.h"
#include "ui/lists/SoundsModel.h"

namespace plinket3 {

class frmPropSound;

/// Lists the sounds, plays them and changes them. The right mouse button plays, so the menu comes by the keyboard; all
/// that it holds stands below the list, too.
class frmEditSounds : public RecordTableEditor {
    Q_OBJECT
public:
    explicit frmEditSounds(const EditorContext& context);

    /// What sounds are changed in; until it is given, they are not. It outlives the editor.
    void PropertyDialog(frmPropSound& dialog) { dialog_ = &dialog; }

protected:
    void SizeColumns() override;
    void EditRecord(int record) override;
    void AddButtons(QBoxLayout& buttons) override;
    bool MenuByMouse() const override { return false; }

private:
    void startEditSound(const std::vector<std::int32_t>& sounds);

    SoundsModel model_;
    frmPropSound* dialog_ = nullptr;
};

} // namespace plinket3
