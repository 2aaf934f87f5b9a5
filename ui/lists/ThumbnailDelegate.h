#pragma once

#include "ui/fields/Thumbnails.h"

#include <QAbstractItemView>
#include <QStyledItemDelegate>

#include <functional>

namespace plinket3 {

/// Draws a small picture before the text of a list's column.
class ThumbnailDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    /// Tells what a row shows.
    using FrameOf = std::function<SpriteFrame(const QModelIndex&)>;

    /// Becomes the delegate of `column` of `view`, which follows what `thumbnails` tell of changes. Both live as long.
    ThumbnailDelegate(QAbstractItemView& view, int column, Thumbnails& thumbnails, FrameOf frameOf);

    /// Of a row that holds one, without lines between.
    static int RowHeight() { return Thumbnails::side + 2; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    Thumbnails& thumbnails_;
    FrameOf frameOf_;
};

} // namespace plinket3
