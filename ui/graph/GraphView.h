#pragma once

#include "ui/graph/GraphScene.h"

#include <QGraphicsView>

namespace plinket3 {

/// Shows a graph at any scale. Keys: arrows go from box to box, Enter opens one, + and - zoom, 0 shows it in its own
/// size and F all of it.
class GraphView : public QGraphicsView {
    Q_OBJECT
public:
    explicit GraphView(GraphScene& scene);

    void Zoom(double factor);
    void OwnSize();
    void Fit();
    /// All of it where that can be read, else its own size from the beginning.
    void ShowAtFirst();
    /// Brings the current box into view.
    void ShowCurrent();
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Go(GraphScene::Way way);
    void TellCurrent();

    GraphScene& scene_;
};

} // namespace plinket3
