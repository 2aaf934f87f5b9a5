#pragma once

#include "core/Environment.h"

#include <QDialog>

class QListWidget;

namespace plinket3 {

/// Offers a new patch, a patch file or one of those used last. Each choice closes the dialog and is told by a signal.
class frmStartup : public QDialog {
    Q_OBJECT
public:
    frmStartup(Environment& environment, QWidget* parent);

signals:
    void NewChosen();
    void OpenChosen();
    void RecentChosen(const QString& path);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void OpenRecent();

    Environment& environment_;
    QListWidget* lstRecent_;
};

} // namespace plinket3
