#pragma once

#include "ui/graph/GraphStyle.h"

#include <QGraphicsItem>
#include <QImage>
#include <QString>

#include <cstddef>
#include <functional>
#include <optional>

namespace plinket3 {

/// What a box of a graph says.
struct BoxText {
    QString heading, beside; // in a line: the state's number and its duration
    QString below;           // its action
    QString entries;         // fields that name it, a line each
    QString mark;            // what is wrong with it; empty when nothing is
    QString whole;           // all of it in a sentence or two
    bool isThing = false, isReached = true, ends = false;
};

/// A state or thing in a graph. It can be dragged; its picture is made when it is first seen.
class GraphBox : public QGraphicsItem {
public:
    using MakePicture = std::function<QImage()>;
    using Moved = std::function<void()>;

    /// `style` must outlive the box.
    GraphBox(std::size_t node, BoxText text, const GraphStyle& style, MakePicture makePicture, Moved moved);

    std::size_t Node() const { return node_; }
    const BoxText& Text() const { return text_; }
    QRectF Box() const { return {QPointF(), QSizeF(style_.sizes.boxWidth, style_.sizes.boxHeight)}; }
    void IsCurrent(bool current);
    /// From now on its picture is another one.
    void ForgetPicture();

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

private:
    void PaintFrame(QPainter& painter) const;
    void PaintPicture(QPainter& painter);
    void PaintText(QPainter& painter) const;
    void PaintEntries(QPainter& painter) const;
    void PaintEnd(QPainter& painter) const;

    std::size_t node_;
    BoxText text_;
    const GraphStyle& style_;
    MakePicture makePicture_;
    Moved moved_;
    std::optional<QImage> picture_;
    double entriesWidth_ = 0;
    bool current_ = false;
};

} // namespace plinket3
