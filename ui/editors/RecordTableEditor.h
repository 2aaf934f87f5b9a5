#pragma once

#include "ui/editors/EditorWindow.h"
#include "ui/lists/RecordList.h"
#include "ui/lists/RecordTableModel.h"

class QBoxLayout;
class QMenu;
class QPushButton;

namespace plinket3 {

class FilterBox;
class RecordMaker;

/// An editor that lists all records of a kind, narrowed by a filter box, changes one in a dialog and restores those
/// that are selected. Where patches make such records, it makes and removes them, too.
class RecordTableEditor : public EditorWindow {
    Q_OBJECT
public:
    /// The selected record; absent when none is.
    std::optional<int> SelectedRow() const;
    std::optional<std::int32_t> CurrentRecord() const final { return SelectedRow(); }
    std::vector<std::int32_t> Selected() const final;

protected:
    struct Words {
        const char* list;                          // the list's name
        const char* many;                          // the records together, in the name of a step
        const char* edit = QT_TR_NOOP("E&dit..."); // the button
        const char* restoreOne;                    // the questions
        const char* restoreMany;
    };
    RecordTableEditor(const char* name, const QString& caption, const EditorContext& context, RecordKind kind,
                      RecordTableModel& model, const Words& words);

    /// What the columns' widths are until the user draws others.
    virtual void SizeColumns() = 0;
    virtual void EditRecord(int record) = 0;
    /// Whether the engine's patches can hold what is edited and restored here.
    virtual bool MayEdit() const { return true; }
    /// Adds what the window can do beside editing and restoring, to the buttons below the list.
    virtual void AddButtons(QBoxLayout& /*buttons*/) {}

    /// Whether the menu belongs to the right mouse button, too.
    virtual bool MenuByMouse() const { return true; }

    bool SelectRecord(std::int32_t record) final;
    RecordList& List() { return *list_; }

    void Build() final;
    void fillStaticData() final;
    void updateForm() final {}
    void ShowCells(const std::vector<Cell>& cells) final { model_.ShowCells(cells); }

private:
    void EditSelected();
    void Restore();
    std::vector<Cell> RestoredCells(const std::vector<std::int32_t>& records) const;
    void ShowMenu(const QPoint& place);

    RecordKind kind_;
    RecordTableModel& model_;
    Words words_;
    RecordList* list_ = nullptr;
    FilterBox* filter_ = nullptr;
    QPushButton* edit_ = nullptr;
    QPushButton* restore_ = nullptr;
    RecordMaker* maker_ = nullptr; // null for a kind of which patches make none
};

} // namespace plinket3
