#pragma once

#include "patch/EngineChange.h"
#include "patch/Program.h"

#include <QDialog>

#include <optional>

class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace plinket3 {

/// Asks for another engine to go on with, and lists first what that one cannot hold of the open patch.
class frmChangeEngine : public QDialog {
    Q_OBJECT
public:
    frmChangeEngine(const Program& program, QWidget* parent);

    struct Choice {
        EngineConfiguration engine;
        PatchData patch;
    };
    /// Shows the dialog; the engine and the patch as it is under it, nothing when that is given up.
    std::optional<Choice> Choose();

private:
    /// Tries the engine that is selected.
    void Try();

    const Program& program_;
    EngineConfiguration engine_; // the selected one, and what becomes of the patch
    std::optional<EngineChange> change_;
    QComboBox* cmbEngines_;
    QLabel* lblLost_;
    QListWidget* lstLost_;
    QPushButton* cmdAccept_;
};

} // namespace plinket3
