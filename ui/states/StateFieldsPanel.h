#pragma once

#include "ui/EditorContext.h"
#include "ui/fields/ActionBox.h"
#include "ui/fields/NoteBox.h"
#include "ui/fields/RecordSelection.h"
#include "ui/states/StateFieldBox.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include <array>
#include <cstdint>

namespace plinket3 {

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
    void BuildLayout();
    void ShowTitle();
    void ShowLit();
    void ShowSpriteAndNextState();
    void ShowAction();
    void ShowUsers();
    void StoreLit();
    void StoreAction(std::int32_t value);
    bool RefusesEmptyAction(std::int32_t value);
    void RefuseUnknownAction();
    bool ActionsMayBeSet() const;

    EditorContext context_;
    RecordSelection selection_;
    StateFieldBox* txtSprite_;
    StateFieldBox* txtFrame_;
    StateFieldBox* txtDuration_;
    StateFieldBox* txtNextState_;
    StateFieldBox* txtParameter1_;
    StateFieldBox* txtParameter2_;
    std::array<StateFieldBox*, 6> boxes_;
    QCheckBox* chkLit_;
    ActionBox* cmbActions_;
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
