#include "ui/graph/GraphView.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cmath>

namespace plinket3 {

namespace {

constexpr double step = 1.2, smallest = 0.05, largest = 4, legible = 0.7;
constexpr double notch = 120; // of a wheel

} // namespace

GraphView::GraphView(GraphScene& scene) : QGraphicsView(&scene), scene_(scene) {
    setObjectName(QStringLiteral("grvStates"));
    setAccessibleName(tr("State graph"));
    setBackgroundRole(QPalette::Base);
    setDragMode(ScrollHandDrag);
    setTransformationAnchor(AnchorUnderMouse);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    connect(&scene_, &GraphScene::Chosen, this, &GraphView::TellCurrent);
}

void GraphView::Zoom(double factor) {
    const double now = transform().m11();
    const double wanted = std::clamp(now * factor, smallest, largest);
    scale(wanted / now, wanted / now);
}

void GraphView::OwnSize() {
    resetTransform();
    ShowCurrent();
}

void GraphView::Fit() {
    fitInView(scene_.sceneRect(), Qt::KeepAspectRatio);
    if (transform().m11() > 1)
        resetTransform();
    Zoom(1);
}

void GraphView::ShowAtFirst() {
    Fit();
    if (transform().m11() >= legible)
        return;
    resetTransform();
    horizontalScrollBar()->setValue(horizontalScrollBar()->minimum());
    verticalScrollBar()->setValue(verticalScrollBar()->minimum());
}

/// To those who cannot see it.
void GraphView::TellCurrent() {
    const GraphBox* box = scene_.Current() ? scene_.Box(*scene_.Current()) : nullptr;
    setAccessibleDescription(box != nullptr ? box->Text().whole : QString());
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
}

void GraphView::ShowCurrent() {
    TellCurrent();
    if (!scene_.Current())
        return;
    const GraphBox* box = scene_.Box(*scene_.Current());
    ensureVisible(box->Box().translated(box->pos()));
}

QSize GraphView::sizeHint() const {
    const GraphSizes& sizes = scene_.Style().sizes;
    return QSizeF(8 * sizes.boxWidth, 4 * sizes.boxHeight).toSize();
}

void GraphView::Go(GraphScene::Way way) {
    const auto current = scene_.Current();
    if (const auto next = current ? scene_.From(*current, way) : std::nullopt) {
        scene_.Choose(*next);
        ShowCurrent();
    }
}

void GraphView::keyPressEvent(QKeyEvent* event) {
    using Way = GraphScene::Way;
    struct Arrow {
        int key;
        Way way;
    };
    constexpr std::array arrows{Arrow{Qt::Key_Right, Way::Next}, Arrow{Qt::Key_Left, Way::Previous},
                                Arrow{Qt::Key_Up, Way::RowAbove}, Arrow{Qt::Key_Down, Way::RowBelow}};
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return event->ignore();
    for (const Arrow& arrow : arrows)
        if (event->key() == arrow.key)
            return Go(arrow.way);
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (scene_.Current())
            emit scene_.Opened(*scene_.Current());
        return;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return Zoom(step);
    case Qt::Key_Minus:
        return Zoom(1 / step);
    case Qt::Key_0:
        return OwnSize();
    case Qt::Key_F:
        return Fit();
    default:
        QGraphicsView::keyPressEvent(event);
    }
}

void GraphView::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier))
        return QGraphicsView::wheelEvent(event);
    Zoom(std::pow(step, event->angleDelta().y() / notch));
    event->accept();
}

void GraphView::focusInEvent(QFocusEvent* event) {
    QGraphicsView::focusInEvent(event);
    if (!scene_.Current() && !scene_.Graph().entries.empty()) {
        scene_.Current(scene_.Graph().entries.front().node);
        ShowCurrent();
    }
}

void GraphView::changeEvent(QEvent* event) {
    QGraphicsView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        scene_.Style(GraphStyle(palette(), font()));
}

} // namespace plinket3
