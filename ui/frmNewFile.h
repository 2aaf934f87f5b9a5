#pragma once

#include "patch/Session.h"
#include "patch/SessionChoice.h"
#include "ui/DataWadList.h"
#include "ui/FileDialogs.h"
#include "ui/PatchToOpen.h"

#include <QDialog>

#include <optional>

class QComboBox;
class QLabel;
class QPushButton;

namespace plinket3 {

/// Asks what a patch is edited against - engine, IWAD, data WADs - and by which rules, and loads it.
class frmNewFile : public QDialog {
    Q_OBJECT
public:
    frmNewFile(Environment& environment, FileDialogs& dialogs, QWidget* parent);

    /// Prepares the dialog for a new patch.
    void SetNewFile();
    /// Prepares the dialog for an existing patch by what stands in it. `patch` must outlive the choice.
    void SelectConfig(const PatchToOpen& patch);
    /// Shows the dialog; the session when the user accepted it and all of it could be loaded.
    std::optional<Session> Choose();

signals:
    /// The user wants to add an IWAD; the options are open while the signal is handled.
    void OptionsWanted();
    /// What just happened, for the status bar.
    void StatusText(const QString& text);

private:
    void FillLists();
    void FillIwads();
    void ShowIwadFacts();
    /// Selects an engine and says why; none is the first.
    void ProposeEngine(EngineAdvice advice);
    void ShowEngineReason();
    void ProposeRules();
    void LoadAndClose();

    Environment& environment_;
    QComboBox *cmbEngines_, *cmbIwads_;
    DataWadList* dataWads_;
    QComboBox* cmbRules_;
    QLabel *lblNoIwad_, *lblIwadFacts_, *lblEngineReason_, *lblRulesReason_;
    QPushButton *cmdOptions_, *cmdAccept_;
    const PatchToOpen* patch_ = nullptr; // null for a new one
    bool rulesChosen_ = false;           // by the user
    EngineAdvice advice_;                // for the patch
    std::int32_t version_ = -1;
    std::optional<std::string> namedIwad_; // by the patch
    std::optional<Session> session_;
};

} // namespace plinket3
