#pragma once

#include <QLabel>

namespace plinket3 {

/// A text that leads somewhere and looks it. Reached by mouse or keyboard (Enter or Space while it has the focus).
class LinkLabel : public QLabel {
    Q_OBJECT
public:
    explicit LinkLabel(const QString& name);

signals:
    void Clicked();
    /// Follows the `Clicked` of the same double click.
    void DoubleClicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool pressed_ = false;
};

} // namespace plinket3
