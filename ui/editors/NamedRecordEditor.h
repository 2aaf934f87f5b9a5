#pragma once

#include "ui/editors/EditorWindow.h"
#include "ui/lists/NamesModel.h"

class QListView;

namespace plinket3 {

/// An editor with a list of records by name, the fields of the selected one beside it, and Rename and Restore below.
class NamedRecordEditor : public EditorWindow {
    Q_OBJECT
protected:
    struct Words {
        const char* list;        // the list's name
        const char* renameTitle; // followed by the number of the record
        int firstNumber = 0;     // what the first record is called in that title
        const char* renamePrompt;
        const char* restoreQuestion;
    };
    NamedRecordEditor(const char* name, const QString& caption, const EditorContext& context, RecordKind kind,
                      const Words& words);

    /// Makes what stands beside the list.
    virtual QWidget* BuildFields() = 0;
    /// Shows the record, or nothing when there is none. Stores nothing.
    virtual void ShowRecord(std::optional<std::int32_t> record) = 0;
    /// Shows other values of the same record.
    virtual void UpdateRecord() = 0;

    std::optional<std::int32_t> CurrentRecord() const;

    void Build() final;
    void fillStaticData() override;
    void updateForm() final;
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    void Rename();
    void Restore();

    RecordKind kind_;
    Words words_;
    NamesModel names_;
    QListView* list_ = nullptr;
};

} // namespace plinket3
