#include "ui/lists/ThumbnailDelegate.h"

#include <QApplication>
#include <QPainter>

namespace plinket3 {

namespace {

constexpr int room = Thumbnails::side + 4; // for the picture, before the text

} // namespace

ThumbnailDelegate::ThumbnailDelegate(QAbstractItemView& view, int column, Thumbnails& thumbnails, FrameOf frameOf)
    : QStyledItemDelegate(&view), thumbnails_(thumbnails), frameOf_(std::move(frameOf)) {
    view.setItemDelegateForColumn(column, this);
    connect(&thumbnails, &Thumbnails::Changed, &view, &QAbstractItemView::doItemsLayout);
}

void ThumbnailDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    if (!thumbnails_.Wanted())
        return QStyledItemDelegate::paint(painter, option, index);
    const QWidget* view = option.widget;
    const QStyle& style = view != nullptr ? *view->style() : *QApplication::style();
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    row.rect.setWidth(room);
    style.drawPrimitive(QStyle::PE_PanelItemViewItem, &row, painter, view);
    const QPixmap picture = thumbnails_.Of(frameOf_(index), painter->device()->devicePixelRatioF());
    const QSizeF size = picture.deviceIndependentSize();
    const QRectF square = row.rect;
    painter->drawPixmap(
        QPointF(square.center().x() - size.width() / 2, square.center().y() - size.height() / 2).toPoint(), picture);
    QStyleOptionViewItem text = option;
    text.rect.setLeft(option.rect.left() + room);
    QStyledItemDelegate::paint(painter, text, index);
}

QSize ThumbnailDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QSize text = QStyledItemDelegate::sizeHint(option, index);
    return thumbnails_.Wanted() ? QSize(text.width() + room, std::max(text.height(), RowHeight())) : text;
}

} // namespace plinket3
