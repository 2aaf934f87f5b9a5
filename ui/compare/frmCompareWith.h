#pragma once

#include "ui/FileDialogs.h"
#include "ui/compare/DifferencesModel.h"

#include <QDialog>

#include <memory>
#include <optional>

class QLineEdit;
class QPushButton;
class QRadioButton;

namespace plinket3 {

/// Asks what to compare the open patch with, and reads it.
class frmCompareWith : public QDialog {
    Q_OBJECT
public:
    frmCompareWith(const Program& program, FileDialogs& dialogs, QWidget* parent);

    /// Shows the dialog; null when it is given up.
    std::unique_ptr<Comparison> Choose();
    /// Reads what is chosen; stays open when it cannot be read.
    void accept() override;

private:
    QWidget* FileRow(QLineEdit& box, const char* button, const QString& title);
    std::optional<PatchPlace> PlaceIn(const QLineEdit& box);
    void UpdateButtons();

    const Program& program_;
    FileDialogs& dialogs_;
    QRadioButton *optFile_, *optSaved_, *optEngine_;
    QLineEdit *txtFile_, *txtAncestor_;
    QPushButton* cmdAccept_;
    std::unique_ptr<Comparison> chosen_;
};

/// Reads the files of a comparison (`ancestor`: that of the ancestor, empty for none). Shows what cannot be read; the
/// comparison is then of no use.
[[nodiscard]] bool ReadComparison(const Program& program, const PatchPlace& ancestor, Comparison& comparison);

} // namespace plinket3
