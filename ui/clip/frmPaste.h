#pragma once

#include "patch/PastePlan.h"

#include <QDialog>

#include <optional>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QTreeWidget;

namespace plinket3 {

/// Shows where the records of a clip go in the open patch and what that costs, and asks whether they shall.
class frmPaste : public QDialog {
    Q_OBJECT
public:
    /// Both outlive the dialog.
    frmPaste(const Clip& clip, const Session& open, QWidget* parent);

    /// Nothing when the user cancels.
    std::optional<PastePlan> Ask();

private:
    void Plan();

    const Clip& clip_;
    const Session& open_;
    PastePlan plan_;
    QRadioButton *optFree_, *optSame_;
    QTreeWidget* places_;
    QLabel* lblNote_;
    QPlainTextEdit* txtTold_;
    QPushButton* accept_;
};

/// What a plan costs, and what else is good to know, in lines under headings; empty for nothing.
QString PlanNotes(const PastePlan& plan, const std::vector<std::string>& ignored);

} // namespace plinket3
