#pragma once

#include "core/Environment.h"

#include <QDialog>

#include <utility>

namespace plinket3 {

/// What the program is, its version, its licence and those of what it uses.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    frmAbout(Environment& environment, QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Build();
    bool built_ = false;
};

} // namespace plinket3
