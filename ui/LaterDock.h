#pragma once

#include <QDockWidget>

namespace plinket3 {

/// A dock whose contents are made when it is first shown, so that the start need not wait for what few see.
class LaterDock : public QDockWidget {
    Q_OBJECT
public:
    /// Makes the contents first.
    void setVisible(bool visible) override;

    /// Whether there are contents yet. What is seen has some.
    bool IsMade() const { return widget() != nullptr; }
    /// Whether the contents, now or as soon as there are some, can be used.
    void EnableContents(bool enabled);
    /// Shows the dock, if need be, and gives its contents the focus.
    void Bring();
    /// Hides the dock when its contents have the focus, and brings it otherwise.
    void Toggle();

signals:
    /// The contents have just been made.
    void Made();

protected:
    LaterDock(const char* name, const QString& title);

    /// All of it; what it shows must be what it would show had it been there from the start. Its focus proxy is what
    /// the keyboard comes to first.
    virtual QWidget* MakeContents() = 0;
    void EnsureMade();

private:
    bool enabled_ = true;
};

} // namespace plinket3
