#include "ui/graph/GraphArrow.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPathStroker>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr double headLength = 8, headWidth = 7, rounding = 7, strength = 1.8;
constexpr double reach = 8; // of the mouse
constexpr double longestBend = 120;

QPainterPath Rounded(const QPolygonF& corners) {
    QPainterPath path(corners.front());
    for (qsizetype i = 1; i + 1 < corners.size(); ++i) {
        const QLineF before(corners[i], corners[i - 1]), behind(corners[i], corners[i + 1]);
        const double radius = std::min({rounding, before.length() / 2, behind.length() / 2});
        const auto at = [radius](const QLineF& line) {
            return line.length() > 0 ? line.pointAt(radius / line.length()) : line.p1();
        };
        path.lineTo(at(before));
        path.quadTo(corners[i], at(behind));
    }
    path.lineTo(corners.back());
    return path;
}

void PaintPath(QPainter& painter, const QPainterPath& path, double direction, const QPen& pen) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    painter.save();
    painter.translate(path.currentPosition());
    painter.rotate(direction);
    painter.setPen(Qt::NoPen);
    painter.setBrush(pen.color());
    painter.drawPolygon(
        QPolygonF{QPointF(0, 0), QPointF(-headLength, -headWidth / 2), QPointF(-headLength, headWidth / 2)});
    painter.restore();
}

double DirectionAtEnd(const QPolygonF& corners) { return -QLineF(corners[corners.size() - 2], corners.back()).angle(); }

} // namespace

void PaintArrow(QPainter& painter, const QPolygonF& corners, const QPen& pen) {
    PaintPath(painter, Rounded(corners), DirectionAtEnd(corners), pen);
}

GraphArrow::GraphArrow(EdgeKind kind, QString words, const GraphStyle& style) : kind_(kind), style_(style) {
    setToolTip(std::move(words));
}

void GraphArrow::Draw(QPainterPath path, double direction) {
    prepareGeometryChange();
    path_ = std::move(path);
    direction_ = direction;
}

void GraphArrow::Along(const QPolygonF& corners) { Draw(Rounded(corners), DirectionAtEnd(corners)); }

/// Out of the right side, or the upper one of a box that lies to the right of the other.
void GraphArrow::Between(const QRectF& from, const QRectF& to) {
    const bool forward = from.right() < to.left();
    const QPointF begin = forward ? QPointF(from.right(), from.center().y()) : QPointF(from.center().x(), from.top());
    const QPointF end = forward ? QPointF(to.left(), to.center().y()) : QPointF(to.center().x(), to.top());
    const double bend = std::clamp(QLineF(begin, end).length() / 2, rounding * 3, longestBend);
    const QPointF away = forward ? QPointF(bend, 0) : QPointF(0, -bend);
    QPainterPath path(begin);
    path.cubicTo(begin + away, forward ? end - away : end + away, end);
    Draw(std::move(path), forward ? 0 : 90);
}

void GraphArrow::IsStrong(bool strong) {
    if (strong_ != strong)
        update();
    strong_ = strong;
}

QRectF GraphArrow::boundingRect() const {
    return path_.boundingRect().adjusted(-headWidth, -headWidth, headWidth, headWidth);
}

QPainterPath GraphArrow::shape() const {
    QPainterPathStroker stroker;
    stroker.setWidth(reach);
    return stroker.createStroke(path_);
}

void GraphArrow::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    QPen pen = style_.LineOf(kind_);
    if (strong_)
        pen.setWidthF(pen.widthF() * strength);
    PaintPath(*painter, path_, direction_, pen);
}

} // namespace plinket3
