#pragma once

#include "ui/editors/RecordTableEditor.h"
#include "ui/lists/LumpNamesModel.h"

namespace plinket3 {

/// Lists sprites or music, and gives them other names where patches can hold such.
class LumpNamesEditor : public RecordTableEditor {
    Q_OBJECT
protected:
    struct Texts {
        const char* list;
        const char* many;
        const char* restoreOne;
        const char* restoreMany;
        const char* cannot; // said of one that patches for the engine cannot rename
    };
    LumpNamesEditor(const char* name, const QString& caption, const EditorContext& context, RecordKind kind,
                    LumpNamesModel& model, const Texts& texts);

    void SizeColumns() override;
    bool MayEdit() const override;
    void EditRecord(int record) override;

private:
    RecordKind kind_;
    const char* cannot_;
};

} // namespace plinket3
