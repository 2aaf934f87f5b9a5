#include "ui/fields/LinkLabel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace plinket3 {

LinkLabel::LinkLabel(const QString& name) {
    setObjectName(name);
    setForegroundRole(QPalette::Link);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    setMargin(2); // room for the focus frame
    setTextFormat(Qt::PlainText);
    QFont underlined = font();
    underlined.setUnderline(true);
    setFont(underlined);
}

void LinkLabel::mousePressEvent(QMouseEvent* event) { pressed_ = event->button() == Qt::LeftButton; }

void LinkLabel::mouseReleaseEvent(QMouseEvent* event) {
    if (pressed_ && rect().contains(event->position().toPoint()))
        emit Clicked();
    pressed_ = false;
}

void LinkLabel::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        emit DoubleClicked();
}

void LinkLabel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
        emit Clicked();
    else
        QLabel::keyPressEvent(event);
}

void LinkLabel::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    if (!hasFocus())
        return;
    QStylePainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.backgroundColor = palette().color(QPalette::Window);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
}

} // namespace plinket3
