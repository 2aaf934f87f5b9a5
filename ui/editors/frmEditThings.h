#pragma once

#include "ui/editors/EditorWindow.h"
#include "ui/fields/ExtraFields.h"
#include "ui/fields/NoteBox.h"
#include "ui/fields/NumberBox.h"
#include "ui/fields/ReferenceRow.h"
#include "ui/lists/FlagListModel.h"
#include "ui/lists/NamesModel.h"
#include "ui/lists/ThingFilter.h"

#include <functional>
#include <span>
#include <vector>

class QAbstractItemView;
class QComboBox;
class QLabel;
class QSortFilterProxyModel;
class QTabWidget;

namespace plinket3 {

class FilterBox;
class RecordMaker;
class StatePreview;

/// The editor of things: a list of them all, and every value, flag and name of those that are selected.
class frmEditThings : public EditorWindow {
    Q_OBJECT
public:
    /// Binds the controls named after `stem` to a state or sound number.
    struct ReferenceField {
        const char* stem;
        std::int32_t ThingRecord::*member;
    };

    explicit frmEditThings(const EditorContext& context);

    std::optional<std::int32_t> CurrentRecord() const override;
    std::vector<std::int32_t> Selected() const override { return Selection().records; }

protected:
    bool SelectRecord(std::int32_t thing) override;
    void Build() override;
    void fillStaticData() override;
    void updateForm() override;
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    QWidget* BuildList();
    QWidget* BuildFields();
    QWidget* BuildHead();
    QWidget* BuildNumbers();
    QWidget* BuildReferences(Reference reference, const QString& heading, std::span<const ReferenceField> fields,
                             const std::function<void(std::int32_t)>& show);
    QWidget* BuildExtra();
    void ReloadExtra();
    /// Puts the fields of later engines beside the others where the form is wide enough, else below them.
    void PlaceExtra();
    QWidget* BuildFlags();
    QWidget* BuildNotes();

    const RecordSelection& Selection() const { return boxes_.Selection(); }
    /// Shows these things, and the one clicked last in the box of names.
    void ShowThings(RecordSelection things);
    void FollowList();
    void SelectInList();
    void ShowPreview();
    void Rename();
    void Restore();

    bool filling_ = false; // lists are being filled: what they select is not the user's choice
    NamesModel names_;
    ThingFilter listed_;
    NumberBoxes boxes_{RecordKind::Thing, "things"};
    FlagListModel flags_;
    NoteBox* txtNotes_ = nullptr;
    QWidget* notes_ = nullptr; // the group around it
    std::vector<ReferenceRow*> references_;
    FilterBox* filter_ = nullptr;
    QAbstractItemView* list_ = nullptr;
    RecordMaker* maker_ = nullptr;
    QComboBox* thingNames_ = nullptr;
    ExtraFields* extra_ = nullptr;
    QTabWidget* extraPages_ = nullptr; // one for each of its groups
    QWidget* form_ = nullptr;
    QAbstractItemView* flagTree_ = nullptr;
    QLabel* number_ = nullptr;
    StatePreview* preview_ = nullptr;
};

} // namespace plinket3
