#pragma once

#include "ui/editors/RecordTableEditor.h"
#include "ui/lists/SpritesModel.h"

namespace plinket3 {

/// Lists the sprites, and gives them other names where patches can hold such.
class frmEditSprites : public RecordTableEditor {
    Q_OBJECT
public:
    explicit frmEditSprites(const EditorContext& context);

protected:
    void SizeColumns() override;
    bool MayEdit() const override;
    void EditRecord(int record) override;

private:
    SpritesModel model_;
};

} // namespace plinket3
