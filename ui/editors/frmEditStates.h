#pragma once

#include "ui/editors/EditorWindow.h"

#include <QTableView>

#include <cstdint>
#include <optional>

namespace plinket3 {

class RecordMaker;
class StateFieldsPanel;
class StateFilterPanel;
class StatePreview;
class StateTableModel;

/// The editor of the states: a list that can be narrowed down, and the fields of the states selected in it.
class frmEditStates : public EditorWindow {
    Q_OBJECT
public:
    explicit frmEditStates(const EditorContext& context);

    std::optional<std::int32_t> CurrentRecord() const override;
    std::vector<std::int32_t> Selected() const override;
    /// Selects a state and shows its fields, if the list holds it: the list of a thing's states, else of a weapon's,
    /// else (both -1) the one that is there. What was typed to narrow the list down is forgotten.
    void selectSingleState(int state, int thing, int weapon);
    /// The place of the selected row in the list as it is, from 0; of several, the one clicked last.
    std::optional<int> SelectedRow();
    /// Rewrites an entry of the list of things and returns what it was; one beyond its end is ignored.
    QString ReplaceThingFilterEntry(int entry, const QString& text);

protected:
    bool SelectRecord(std::int32_t state) override;
    void Build() override;
    void fillStaticData() override;
    void updateForm() override { updateStateList(); }
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    void BuildList();
    /// Lists what the filter lets through; the current state stays selected if it is among it.
    void updateStateList();
    void SelectRow(int row);
    /// Asks for a run of new states, makes them and selects them.
    void MakeStates();
    void ShowSelected();
    void ActivateRow();
    void ShowListMenu(const QPoint& place);

    StateTableModel* model_ = nullptr;
    QTableView* lvwStates_ = nullptr;
    StateFilterPanel* filter_ = nullptr;
    RecordMaker* maker_ = nullptr;
    StateFieldsPanel* fields_ = nullptr;
    StatePreview* preview_ = nullptr;
    std::int32_t currentState_ = 0;
    bool busy_ = false; // the selection is being changed by this window
};

} // namespace plinket3
