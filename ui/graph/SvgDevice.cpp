#include "ui/graph/SvgDevice.h"

#include <QBuffer>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPen>
#include <QPixmap>

#include <cmath>

namespace plinket3 {

namespace {

constexpr double dotsPerInch = 96, millimetresPerInch = 25.4;

QString Number(double value) { return QString::number(value, 'g', 7); }

/// As the content of an element or of an attribute in double quotes.
QString Escaped(QString text) {
    return text.removeIf([](QChar each) { return each < u' '; }).toHtmlEscaped();
}

QString PathData(const QPainterPath& path) {
    QString data;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element each = path.elementAt(i);
        data += QLatin1String(each.type == QPainterPath::MoveToElement    ? "M"
                              : each.type == QPainterPath::CurveToElement ? "C"
                              : each.type == QPainterPath::LineToElement  ? "L"
                                                                          : " ") +
                Number(each.x) + u' ' + Number(each.y);
    }
    return data;
}

/// ` NAME="#rrggbb"`, and ` NAME-opacity` of what is not opaque.
QString Paint(const char* name, const QColor& colour, double opacity) {
    QString text = QStringLiteral(" %1=\"%2\"").arg(QLatin1String(name), colour.name());
    if (const double alpha = colour.alphaF() * opacity; alpha < 1)
        text += QStringLiteral(" %1-opacity=\"%2\"").arg(QLatin1String(name), Number(alpha));
    return text;
}

} // namespace

class SvgDevice::Engine : public QPaintEngine {
public:
    Engine()
        : QPaintEngine(PainterPaths | PrimitiveTransform | PixmapTransform | Antialiasing | AlphaBlend |
                       ConstantOpacity) {}

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }

    void updateState(const QPaintEngineState& state) override {
        const DirtyFlags changed = state.state();
        if (changed & DirtyPen)
            pen_ = state.pen();
        if (changed & DirtyBrush)
            brush_ = state.brush();
        if (changed & DirtyTransform)
            transform_ = state.transform();
        if (changed & DirtyOpacity)
            opacity_ = state.opacity();
    }

    void drawPath(const QPainterPath& path) override { Draw(path, brush_.style() != Qt::NoBrush); }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        QPainterPath path(points[0]);
        for (int i = 1; i < count; ++i)
            path.lineTo(points[i]);
        if (mode != PolylineMode)
            path.closeSubpath();
        path.setFillRule(mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
        Draw(path, mode != PolylineMode && brush_.style() != Qt::NoBrush);
    }

    void drawPixmap(const QRectF& place, const QPixmap& pixmap, const QRectF& part) override {
        drawImage(place, pixmap.toImage(), part, Qt::AutoColor);
    }

    void drawImage(const QRectF& place, const QImage& image, const QRectF& part, Qt::ImageConversionFlags) override {
        QBuffer bytes;
        if (!image.copy(part.toAlignedRect()).save(&bytes, "PNG"))
            return;
        body_ += QStringLiteral("<image x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" preserveAspectRatio=\"none\"%5%6"
                                " xlink:href=\"data:image/png;base64,%7\"/>\n")
                     .arg(Number(place.x()), Number(place.y()), Number(place.width()), Number(place.height()),
                          opacity_ < 1 ? QStringLiteral(" opacity=\"%1\"").arg(Number(opacity_)) : QString(),
                          Transform(), QString::fromLatin1(bytes.data().toBase64()));
    }

    void drawTextItem(const QPointF& place, const QTextItem& item) override {
        const QFont font = item.font();
        const double pixels = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * dotsPerInch / 72;
        body_ += QStringLiteral("<text x=\"%1\" y=\"%2\" xml:space=\"preserve\" font-family=\"%3\" font-size=\"%4\""
                                " font-weight=\"%5\"%6%7%8>%9</text>\n")
                     .arg(Number(place.x()), Number(place.y()), Escaped(font.family()), Number(pixels),
                          QString::number(font.weight()),
                          font.italic() ? QStringLiteral(" font-style=\"italic\"") : QString(),
                          Paint("fill", pen_.color(), opacity_), Transform(), Escaped(item.text()));
    }

    const QString& Body() const { return body_; }

private:
    QString Transform() const {
        if (transform_.isIdentity())
            return {};
        return QStringLiteral(" transform=\"matrix(%1 %2 %3 %4 %5 %6)\"")
            .arg(Number(transform_.m11()), Number(transform_.m12()), Number(transform_.m21()), Number(transform_.m22()),
                 Number(transform_.dx()), Number(transform_.dy()));
    }

    QString Stroke() const {
        if (pen_.style() == Qt::NoPen)
            return {};
        const double width = pen_.widthF() > 0 ? pen_.widthF() : 1;
        QString text =
            Paint("stroke", pen_.color(), opacity_) + QStringLiteral(" stroke-width=\"%1\"").arg(Number(width));
        if (pen_.capStyle() != Qt::FlatCap)
            text += QLatin1String(pen_.capStyle() == Qt::RoundCap ? " stroke-linecap=\"round\""
                                                                  : " stroke-linecap=\"square\"");
        if (pen_.joinStyle() == Qt::RoundJoin)
            text += QLatin1String(" stroke-linejoin=\"round\"");
        QStringList dashes;
        for (const double each : pen_.dashPattern())
            dashes += Number(each * width);
        return dashes.isEmpty() ? text : text + QStringLiteral(" stroke-dasharray=\"%1\"").arg(dashes.join(u' '));
    }

    void Draw(const QPainterPath& path, bool filled) {
        if (path.isEmpty())
            return;
        const QString fill = filled ? Paint("fill", brush_.color(), opacity_) : QStringLiteral(" fill=\"none\"");
        const QLatin1String rule(filled && path.fillRule() == Qt::OddEvenFill ? " fill-rule=\"evenodd\"" : "");
        body_ += QStringLiteral("<path d=\"%1\"%2%3%4%5/>\n").arg(PathData(path), fill, rule, Stroke(), Transform());
    }

    QString body_;
    QPen pen_;
    QBrush brush_;
    QTransform transform_;
    double opacity_ = 1;
};

SvgDevice::SvgDevice(const QSizeF& size, const QString& title)
    : size_(size), title_(title), engine_(std::make_unique<Engine>()) {}

SvgDevice::~SvgDevice() = default;

QByteArray SvgDevice::Document() const {
    const QString width = Number(size_.width()), height = Number(size_.height());
    return (QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                           "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\""
                           " width=\"%1\" height=\"%2\" viewBox=\"0 0 %1 %2\">\n<title>%3</title>\n")
                .arg(width, height, Escaped(title_)) +
            engine_->Body() + QStringLiteral("</svg>\n"))
        .toUtf8();
}

QPaintEngine* SvgDevice::paintEngine() const { return engine_.get(); }

int SvgDevice::metric(PaintDeviceMetric metric) const {
    switch (metric) {
    case PdmWidth:
        return static_cast<int>(std::ceil(size_.width()));
    case PdmHeight:
        return static_cast<int>(std::ceil(size_.height()));
    case PdmWidthMM:
        return static_cast<int>(std::ceil(size_.width() / dotsPerInch * millimetresPerInch));
    case PdmHeightMM:
        return static_cast<int>(std::ceil(size_.height() / dotsPerInch * millimetresPerInch));
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return static_cast<int>(dotsPerInch);
    case PdmDepth:
        return 32;
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return static_cast<int>(devicePixelRatioFScale());
    default:
        return QPaintDevice::metric(metric);
    }
}

} // namespace plinket3
