#pragma once

#include "ui/run/RunChoice.h"

#include <QDialog>
#include <QStringList>

#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace plinket3 {

/// Asks with which port, on which level and how the patch is to be run.
class frmRun : public QDialog {
    Q_OBJECT
public:
    struct Offer {
        std::vector<Settings::Port> ports; // not empty
        QStringList levels;
        QString toPlace; // what would stand in the test map; empty when nothing is selected
    };
    frmRun(Offer offer, const RunChoice& start, QWidget* parent);

    /// Absent when the user cancels.
    std::optional<RunChoice> Choose();

private:
    void Check();

    Offer offer_;
    QComboBox *cmbPort_, *cmbLevel_, *cmbSkill_;
    QCheckBox* chkTestMap_;
    QLineEdit* txtArguments_;
    QLabel* note_;
    QPushButton* accept_;
};

} // namespace plinket3
