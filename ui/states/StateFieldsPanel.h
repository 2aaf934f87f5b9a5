#pragma once

#include "ui/EditorContext.h"
#include "ui/fields/ActionBox.h"
#include "ui/fields/NoteBox.h"
#include "ui/fields/RecordSelection.h"
#include "ui/fields/ValueBox.h"
#include "ui/states/ArgumentsForm.h"
#include "ui/states/StateFieldBox.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

namespace plinket3 {

class BitsButton;
class LinkLabel;

/// The fields of the selected states, with what the states are used by.
class StateFieldsPanel : public QGroupBox {
    Q_OBJECT
public:
    explicit StateFieldsPanel(const EditorContext& context);

    /// The engine and the settings are others now.
    void Fill();
    void ShowSelection(RecordSelection selection);
    const RecordSelection& Selection() const { return selection_; }
    /// Values of states, things or weapons are others now.
    void Update();

    // What the user picks is stored in every selected state.
    void BrowseSprite();
    void BrowseNextState();
    void BrowseAction();
    /// Asks, and restores every selected state.
    void Restore();

private:
    StateFieldBox* NewBox(const char* name, const QString& accessibleName, StateColumn column);
    QPushButton* NewBrowseButton(const char* name, const QString& toolTip, void (StateFieldsPanel::*browse)());
    SelectedValue Bits21() const;
    SelectedValue Tranmap() const;
    void BuildLayout();
    void ShowTitle();
    void ShowLit();
    void ShowSpriteAndNextState();
    void ShowAction();
    void ShowParameters();
    void ShowUsers();
    void StoreLit();
    void StoreAction(std::int32_t value);
    bool RefusesEmptyAction(std::int32_t value);
    void RefuseUnknownAction();
    bool ActionsMayBeSet() const;
    std::optional<std::int32_t> CommonAction() const;

    EditorContext context_;
    std::shared_ptr<RecordSelection> shared_ = std::make_shared<RecordSelection>(); // boxes outlive the panel
    RecordSelection& selection_ = *shared_;
    StateFieldBox* txtSprite_;
    StateFieldBox* txtFrame_;
    StateFieldBox* txtDuration_;
    StateFieldBox* txtNextState_;
    StateFieldBox* txtParameter1_;
    StateFieldBox* txtParameter2_;
    std::array<StateFieldBox*, 6> boxes_;
    QCheckBox* chkLit_;
    ActionBox* cmbActions_;
    ArgumentsForm* arguments_;
    QLabel *lblParameter1_ = nullptr, *lblParameter2_ = nullptr;
    ValueBox* txtBits21_;
    BitsButton* cmdBits21_;
    ValueBox* txtTranmap_;
    QLabel *lblBits21_ = nullptr, *lblTranmap_ = nullptr;
    QPushButton* cmdSpriteBrowse_;
    QPushButton* cmdNextStateBrowse_;
    QPushButton* cmdActionBrowse_;
    QPushButton* cmdRestore_;
    QLabel* lblSpriteName_;
    LinkLabel* lblNextState_;
    QLabel* lblUsedBy_;
    NoteBox* txtNotes_;
    QLabel* lblNotes_;
};

} // namespace plinket3
