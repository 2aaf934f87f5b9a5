#pragma once

#include "ui/editors/RecordTableEditor.h"
#include "ui/lists/StringsModel.h"

namespace plinket3 {

class frmPropString;

/// Lists the engine's texts and replaces them.
class frmEditStrings : public RecordTableEditor {
    Q_OBJECT
public:
    explicit frmEditStrings(const EditorContext& context);

    /// What texts are changed in; until it is given, they are not. It outlives the editor.
    void PropertyDialog(frmPropString& dialog) { dialog_ = &dialog; }

protected:
    void SizeColumns() override;
    void EditRecord(int record) override;

private:
    StringsModel model_;
    frmPropString* dialog_ = nullptr;
};

} // namespace plinket3
