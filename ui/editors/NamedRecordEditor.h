#pragma once

#include "ui/editors/EditorWindow.h"
#include "ui/fields/NumberBox.h"
#include "ui/lists/NamesModel.h"

class QListView;

namespace plinket3 {

/// An editor with a list of records by name, the fields of the selected ones beside it, and Rename and Restore below.
class NamedRecordEditor : public EditorWindow {
    Q_OBJECT
public:
    std::optional<std::int32_t> CurrentRecord() const final;
    std::vector<std::int32_t> Selected() const final { return Selection().records; }

protected:
    struct Words {
        const char* list;        // the list's name
        const char* many;        // the records together, in the name of a step
        const char* renameTitle; // followed by the number of the record
        int firstNumber = 0;     // what the first record is called in that title
        const char* renamePrompt;
        const char* restoreOne; // the questions
        const char* restoreMany;
    };
    NamedRecordEditor(const char* name, const QString& caption, const EditorContext& context, RecordKind kind,
                      const Words& words);

    /// Makes what stands beside the list.
    virtual QWidget* BuildFields() = 0;
    /// Shows what is not in number boxes of the selected records, which are others or have other values. Stores
    /// nothing.
    virtual void ShowRecords() {}

    const RecordSelection& Selection() const { return boxes_.Selection(); }
    NumberBoxes& Boxes() { return boxes_; }
    const char* Many() const { return words_.many; }

    bool SelectRecord(std::int32_t record) final;
    void Build() final;
    void fillStaticData() override;
    void updateForm() override;
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    void Rename();
    void Restore();

    RecordKind kind_;
    Words words_;
    NamesModel names_;
    NumberBoxes boxes_;
    QListView* list_ = nullptr;
};

} // namespace plinket3
