#pragma once

#include <QPaintDevice>
#include <QString>

#include <memory>

namespace plinket3 {

/// Something to paint on that becomes an SVG 1.1 document: paths, polygons, texts and pictures, with one colour for
/// lines and one for what they enclose. Clips and gradients are not kept.
class SvgDevice : public QPaintDevice {
public:
    /// `size` is in units of the painter, 96 an inch; control characters in `title` are left out, as XML has none.
    SvgDevice(const QSizeF& size, const QString& title);
    ~SvgDevice() override;

    /// The document, after the painter's end.
    QByteArray Document() const;
    QPaintEngine* paintEngine() const override;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    class Engine;

    QSizeF size_;
    QString title_;
    std::unique_ptr<Engine> engine_;
};

} // namespace plinket3
