#pragma once

#include "ui/graph/GraphStyle.h"

#include <QGraphicsItem>
#include <QPainterPath>
#include <QPolygonF>

namespace plinket3 {

/// A line with rounded corners, and the head of an arrow at its end.
void PaintArrow(QPainter& painter, const QPolygonF& corners, const QPen& pen);

/// An arrow of a graph.
class GraphArrow : public QGraphicsItem {
public:
    /// `style` must outlive the arrow.
    GraphArrow(EdgeKind kind, QString words, const GraphStyle& style);

    /// Along these corners, ...
    void Along(const QPolygonF& corners);
    /// ... or in a curve from one box to another, or the same, wherever these stand.
    void Between(const QRectF& from, const QRectF& to);
    /// Drawn strongly: it begins or ends at the current box.
    void IsStrong(bool strong);

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    void Draw(QPainterPath path, double direction);

    EdgeKind kind_;
    const GraphStyle& style_;
    QPainterPath path_;
    double direction_ = 0; // in which it ends, in degrees from the right
    bool strong_ = false;
};

} // namespace plinket3
