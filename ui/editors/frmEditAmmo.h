#pragma once

#include "ui/editors/NamedRecordEditor.h"
#include "ui/editors/NumberFields.h"

namespace plinket3 {

/// Edits how much of each kind of ammunition a player can carry and gets.
class frmEditAmmo : public NamedRecordEditor {
    Q_OBJECT
public:
    explicit frmEditAmmo(const EditorContext& context);

protected:
    QWidget* BuildFields() override;
    void ShowRecord(std::optional<std::int32_t> record) override;
    void UpdateRecord() override;

private:
    struct Box {
        NumberBox* box;
        int field;
    };
    std::vector<Box> boxes_;
};

} // namespace plinket3
