#pragma once

#include "patch/Find.h"

#include <QDialog>

#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace plinket3 {

/// Asks for the number or name of a record of one kind, and says at once which one that is.
class frmGoTo : public QDialog {
    Q_OBJECT
public:
    frmGoTo(const Session& session, RecordKind kind, QWidget* parent);

    /// Where to go; absent when the user cancels.
    std::optional<Cell> Choose();

private:
    QString Prompt() const;
    void Check();

    const Session& session_;
    RecordKind kind_;
    QLineEdit* text_;
    QLabel* note_;
    QPushButton* accept_;
    std::optional<Found> found_;
};

} // namespace plinket3
