#pragma once

#include "core/Environment.h"
#include "ui/FileDialogs.h"

#include <QDialog>

#include <filesystem>
#include <vector>

class QCheckBox;
class QComboBox;
class QPushButton;
class QTabWidget;
class QTreeWidget;

namespace plinket3 {

class PortsPage;

/// The settings that the user may change. The list of IWADs is stored as it is changed, the rest when accepted.
class frmOptions : public QDialog {
    Q_OBJECT
public:
    frmOptions(Environment& environment, FileDialogs& dialogs, QWidget* parent);

    /// Shows the dialog, filled from the settings; on the first run with the list of IWADs in front. False: the user
    /// ends the program rather than add an IWAD.
    bool Edit();

    /// Fills all controls from the settings.
    void updateControls();
    /// Stores the general options and writes the settings file.
    void updateConfiguration();

signals:
    /// The options were accepted, and it was not the first run.
    void Accepted();

private:
    QWidget* BuildGeneral();
    QWidget* BuildIwads();
    void FillIwads();
    void AddIwad();
    void RemoveIwad();
    void FindIwads();
    void StoreAndClose();
    bool FirstRun() const;
    std::vector<std::filesystem::path> UsualFolders() const;

    Environment& environment_;
    FileDialogs& dialogs_;
    QTabWidget* tabOptions_;
    QCheckBox *chkMakeBackup_, *chkFrameCharacters_, *chkOpenInRunning_;
    QComboBox *cmbStateActivate_, *cmbPatchRules_;
    QTreeWidget* lvwIwads_;
    PortsPage* ports_;
    QPushButton *cmdRemoveIwad_, *cmdFindIwads_, *cmdAccept_;
    bool ended_ = false; // the user ends the program
};

} // namespace plinket3
