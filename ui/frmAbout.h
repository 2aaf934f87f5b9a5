#pragma once

#include <QDialog>

namespace plinket3 {

/// What the program is, its version, its licence and those of what it uses.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget* parent);
};

} // namespace plinket3
