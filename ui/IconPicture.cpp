#include "ui/IconPicture.h"

#include <QPainter>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace plinket3 {

namespace {

/// Commands and numbers one by one.
class PathTokens {
public:
    explicit PathTokens(const QString& text) : found_(Token().globalMatch(text)) {}

    bool AtEnd() const { return !found_.hasNext(); }
    bool NumberIsNext() const { return !AtEnd() && !found_.peekNext().captured()[0].isLetter(); }
    QChar Command() { return found_.next().captured()[0]; }
    /// 0 when there is none.
    double Number() { return NumberIsNext() ? found_.next().captured().toDouble() : 0; }

private:
    static const QRegularExpression& Token() {
        static const QRegularExpression token(QStringLiteral("[A-Za-z]|-?(?:\\d+\\.?\\d*|\\.\\d+)"));
        return token;
    }
    QRegularExpressionMatchIterator found_;
};

QPainterPath PathOf(const QString& text) {
    QPainterPath path;
    PathTokens tokens(text);
    QChar command;
    while (!tokens.AtEnd()) {
        if (!tokens.NumberIsNext())
            command = tokens.Command();
        const QPointF from = path.currentPosition();
        const QPointF origin = command.isLower() ? from : QPointF();
        const auto point = [&tokens, origin] {
            const double x = tokens.Number();
            return origin + QPointF(x, tokens.Number());
        };
        switch (command.toUpper().unicode()) {
        case u'M':
            path.moveTo(point());
            command = command.isLower() ? u'l' : u'L';
            break;
        case u'L':
            path.lineTo(point());
            break;
        case u'H':
            path.lineTo(origin.x() + tokens.Number(), from.y());
            break;
        case u'V':
            path.lineTo(from.x(), origin.y() + tokens.Number());
            break;
        case u'C': {
            const QPointF first = point(), second = point();
            path.cubicTo(first, second, point());
            break;
        }
        case u'Z':
            path.closeSubpath();
            break;
        default:
            return path;
        }
    }
    return path;
}

QPainterPath PathOf(const QXmlStreamReader& element) {
    const auto number = [&element](const char* name) {
        return element.attributes().value(QLatin1String(name)).toDouble();
    };
    if (element.name() == QLatin1String("path"))
        return PathOf(element.attributes().value(QLatin1String("d")).toString());
    QPainterPath path;
    if (element.name() == QLatin1String("circle"))
        path.addEllipse(QPointF(number("cx"), number("cy")), number("r"), number("r"));
    else if (element.name() == QLatin1String("rect"))
        path.addRoundedRect(QRectF(number("x"), number("y"), number("width"), number("height")), number("rx"),
                            number("rx"));
    return path;
}

} // namespace

IconPicture::IconPicture(const QByteArray& svg) {
    QXmlStreamReader reader(svg);
    QXmlStreamAttributes root;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == QLatin1String("svg")) {
            root = reader.attributes();
            const QList<QStringView> box = root.value(QLatin1String("viewBox")).split(u' ');
            if (box.size() == 4)
                viewBox_ = QRectF(box[0].toDouble(), box[1].toDouble(), box[2].toDouble(), box[3].toDouble());
            continue;
        }
        const QXmlStreamAttributes own = reader.attributes();
        const auto value = [&own, &root](const char* name, const char* otherwise) {
            const QLatin1String key(name);
            const QXmlStreamAttributes& holder = own.hasAttribute(key) ? own : root;
            return holder.hasAttribute(key) ? holder.value(key).toString() : QString::fromLatin1(otherwise);
        };
        Shape shape{PathOf(reader), Qt::NoPen, Qt::NoBrush};
        if (const QString fill = value("fill", "black"); fill != QLatin1String("none")) {
            QColor colour(fill);
            colour.setAlphaF(value("fill-opacity", "1").toFloat());
            shape.brush = colour;
        }
        if (const QString stroke = value("stroke", "none"); stroke != QLatin1String("none")) {
            const bool roundEnds = value("stroke-linecap", "butt") == QLatin1String("round");
            const bool roundCorners = value("stroke-linejoin", "miter") == QLatin1String("round");
            shape.pen = QPen(QColor(stroke), value("stroke-width", "1").toDouble(), Qt::SolidLine,
                             roundEnds ? Qt::RoundCap : Qt::FlatCap, roundCorners ? Qt::RoundJoin : Qt::SvgMiterJoin);
        }
        shapes_.push_back(std::move(shape));
    }
}

void IconPicture::Paint(QPainter& painter, const QRectF& place) const {
    if (viewBox_.isEmpty())
        return;
    const double scale = std::min(place.width() / viewBox_.width(), place.height() / viewBox_.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.center());
    painter.scale(scale, scale);
    painter.translate(-viewBox_.center());
    for (const Shape& shape : shapes_) {
        painter.setPen(shape.pen);
        painter.setBrush(shape.brush);
        painter.drawPath(shape.path);
    }
    painter.restore();
}

} // namespace plinket3
