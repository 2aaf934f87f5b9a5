#pragma once

#include <QBrush>
#include <QPainterPath>
#include <QPen>
#include <QRectF>

#include <vector>

class QByteArray;
class QPainter;

namespace plinket3 {

/// A picture of the program's own icons: the part of SVG that they are written in. These are the elements `path` (with
/// the commands M, L, H, V, C and Z, large or small), `circle` and `rect`, with `fill`, `fill-opacity`, `stroke`,
/// `stroke-width` and round ends and corners, on them or on the root.
class IconPicture {
public:
    /// What it does not know of `svg` is not shown.
    explicit IconPicture(const QByteArray& svg);
    /// Fills `place` with the picture, as large as its view box allows.
    void Paint(QPainter& painter, const QRectF& place) const;

private:
    struct Shape {
        QPainterPath path;
        QPen pen;
        QBrush brush;
    };

    std::vector<Shape> shapes_;
    QRectF viewBox_;
};

} // namespace plinket3
