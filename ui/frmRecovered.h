#pragma once

#include "core/Notifier.h"
#include "ui/Recovery.h"

#include <QDialog>

#include <optional>
#include <vector>

class QPushButton;
class QTreeWidget;

namespace plinket3 {

/// Lists unsaved work that earlier runs left behind, to open or delete it.
class frmRecovered : public QDialog {
    Q_OBJECT
public:
    frmRecovered(const Recovery& recovery, Notifier& notifier, QWidget* parent);

    /// What the user wants to open; absent when the dialog was closed.
    std::optional<KeptWork> Choose();

private:
    void Fill();
    int SelectedRow() const;
    void UpdateButtons();
    void OpenSelected();
    void Delete();

    const Recovery& recovery_;
    Notifier& notifier_;
    std::vector<KeptWork> kept_;
    QTreeWidget* lvwKept_;
    QPushButton *cmdOpen_, *cmdDelete_;
};

} // namespace plinket3
