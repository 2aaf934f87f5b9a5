#pragma once

#include "ui/editors/NamedRecordEditor.h"
#include "ui/fields/ExtraFields.h"
#include "ui/fields/NumberBox.h"

namespace plinket3 {

/// Edits how much of each kind of ammunition a player can carry and gets.
class frmEditAmmo : public NamedRecordEditor {
    Q_OBJECT
public:
    explicit frmEditAmmo(const EditorContext& context);

protected:
    QWidget* BuildFields() override;
    void fillStaticData() override;
    void updateForm() override;
    void ShowRecords() override { extra_->Update(); }

private:
    ExtraFields* extra_ = nullptr;
};

} // namespace plinket3
