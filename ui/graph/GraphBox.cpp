#include "ui/graph/GraphBox.h"

#include "ui/graph/GraphArrow.h"

#include <QCursor>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace plinket3 {

namespace {

constexpr double keptScale = 2; // of a picture: enough for what is enlarged or exported
constexpr double corner = 5, currentWidth = 3, frameWidth = 1;
constexpr double endLength = 9, endHeight = 10; // the mark of what ends: a stroke that leads to a bar

} // namespace

GraphBox::GraphBox(std::size_t node, BoxText text, const GraphStyle& style, MakePicture makePicture, Moved moved)
    : node_(node), text_(std::move(text)), style_(style), makePicture_(std::move(makePicture)),
      moved_(std::move(moved)) {
    setFlags(ItemIsMovable | ItemSendsGeometryChanges);
    setZValue(1); // above the arrows
    setToolTip(text_.whole);
    setCursor(Qt::ArrowCursor);
    const QFontMetricsF metrics(style_.bold);
    for (const QString& line : text_.entries.split(QLatin1Char('\n')))
        entriesWidth_ = std::max(entriesWidth_, metrics.horizontalAdvance(line));
}

void GraphBox::IsCurrent(bool current) {
    current_ = current;
    update();
}

void GraphBox::ForgetPicture() {
    picture_.reset();
    update();
}

QRectF GraphBox::boundingRect() const {
    const double left = text_.entries.isEmpty() ? 0 : entriesWidth_ + style_.sizes.gap + style_.padding;
    return Box().adjusted(-left - currentWidth, -currentWidth, endLength + currentWidth, currentWidth);
}

QVariant GraphBox::itemChange(GraphicsItemChange change, const QVariant& value) {
    if (change == ItemPositionHasChanged)
        moved_();
    return QGraphicsItem::itemChange(change, value);
}

void GraphBox::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    PaintFrame(*painter);
    PaintPicture(*painter);
    PaintText(*painter);
    if (!text_.entries.isEmpty())
        PaintEntries(*painter);
    if (text_.ends)
        PaintEnd(*painter);
}

void GraphBox::PaintFrame(QPainter& painter) const {
    QPen pen(text_.mark.isEmpty() ? style_.frame : style_.warning, frameWidth);
    if (!text_.isReached)
        pen.setStyle(Qt::DashLine);
    if (current_)
        pen = QPen(style_.current, currentWidth);
    painter.setPen(pen);
    painter.setBrush(style_.box);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = text_.isThing ? style_.line : corner;
    painter.drawRoundedRect(Box(), radius, radius);
}

void GraphBox::PaintPicture(QPainter& painter) {
    const double pad = style_.padding, lines = text_.mark.isEmpty() ? 2 : 3;
    const QRectF room = Box().adjusted(pad, pad, -pad, -pad - lines * style_.line);
    if (!picture_) {
        picture_ = makePicture_();
        // A few bytes of a WAD may make a picture of many megabytes, and thousands of boxes may show it.
        if (const QSize most = (room.size() * keptScale).toSize();
            picture_->width() > most.width() || picture_->height() > most.height())
            picture_ = picture_->scaled(picture_->size().scaled(most, Qt::KeepAspectRatio).expandedTo({1, 1}),
                                        Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    if (picture_->isNull())
        return;
    // Never larger than they are, so that one can be set against another.
    const double scale = std::min({1.0, room.width() / picture_->width(), room.height() / picture_->height()});
    painter.setRenderHint(QPainter::SmoothPixmapTransform, scale < 1);
    QRectF place(QPointF(), QSizeF(picture_->size()) * scale);
    place.moveCenter(room.center());
    painter.drawImage(place, *picture_);
}

void GraphBox::PaintText(QPainter& painter) const {
    const double pad = style_.padding;
    QRectF line = Box().adjusted(pad, 0, -pad, 0);
    line.setTop(Box().bottom() - pad - style_.line);
    line.setHeight(style_.line);
    const auto elided = [&line](const QFont& font, const QString& text, double width) {
        return QFontMetricsF(font).elidedText(text, Qt::ElideRight, width < 0 ? line.width() : width);
    };
    painter.setPen(style_.text);
    painter.setFont(style_.font);
    painter.drawText(line, Qt::AlignCenter, elided(style_.font, text_.below, -1));
    line.translate(0, -style_.line);
    const double beside = QFontMetricsF(style_.font).horizontalAdvance(text_.beside);
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, text_.beside);
    painter.setFont(style_.bold);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                     elided(style_.bold, text_.heading, line.width() - beside - pad));
    if (text_.mark.isEmpty())
        return;
    line.translate(0, -style_.line);
    painter.setPen(style_.warning);
    painter.drawText(line, Qt::AlignCenter, elided(style_.bold, text_.mark, -1));
}

/// Beside the box, with an arrow into it.
void GraphBox::PaintEntries(QPainter& painter) const {
    const QPointF end(-frameWidth, Box().center().y()), begin(-style_.sizes.gap, end.y());
    painter.setPen(style_.text);
    painter.setFont(style_.bold);
    QRectF room(boundingRect().left(), 0, 0, Box().height());
    room.setRight(begin.x() - style_.padding);
    painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter, text_.entries);
    PaintArrow(painter, {begin, end}, style_.LineOf(EdgeKind::Next));
}

void GraphBox::PaintEnd(QPainter& painter) const {
    painter.setPen(QPen(style_.text, 2));
    const QPointF from(Box().right(), Box().center().y()), to = from + QPointF(endLength, 0);
    painter.drawLine(from, to);
    painter.drawLine(to - QPointF(0, endHeight / 2), to + QPointF(0, endHeight / 2));
}

} // namespace plinket3
