#pragma once

#include "core/Environment.h"
#include "ui/ManualPage.h"
#include "ui/WindowState.h"

#include <QMainWindow>

class QLineEdit;

namespace plinket3 {

/// The manual, in a window that stays open beside the program's work.
class frmManual : public QMainWindow {
    Q_OBJECT
public:
    /// `state` outlives the window.
    frmManual(Environment& environment, WindowState& state);

    /// Brings the window to the front with a page: a file of the folder manual/ beside the program, with "#" and the
    /// name of a heading if need be. A page that is open already stays where it was scrolled to. Without the file a
    /// message says where it was looked for.
    void Open(const QString& page);

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QAction* AddAction(const char* name, const QString& text, const QList<QKeySequence>& shortcuts);
    void BuildBar();
    void SetIcons();
    void BringUp();
    void StandOver(QWindow* below);
    void Find(bool backward, bool further);

    Environment& environment_;
    WindowState& state_;
    ManualPage* page_;
    QLineEdit* txtFind_;
    QAction *back_ = nullptr, *forward_ = nullptr, *contents_ = nullptr;
};

} // namespace plinket3
