#include "ui/graph/GraphStyle.h"

#include <QFontInfo>
#include <QFontMetricsF>

namespace plinket3 {

namespace {

constexpr int linesOfPicture = 4, linesOfText = 2, charactersOfLine = 19;
constexpr double lineWidth = 1.4;

QColor Between(const QColor& one, const QColor& other, double share) {
    const auto mix = [share](int from, int to) { return static_cast<int>(from + (to - from) * share); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

/// As large as on the screen. A size in points would grow on printers, whose dots are more than the graph's units.
QFont InPixels(QFont font) {
    font.setPixelSize(QFontInfo(font).pixelSize());
    return font;
}

} // namespace

GraphStyle::GraphStyle(const QPalette& palette, const QFont& usual) : font(InPixels(usual)), bold(font) {
    text = palette.color(QPalette::Active, QPalette::Text);
    canvas = palette.color(QPalette::Active, QPalette::Base);
    box = palette.color(QPalette::Active, QPalette::Window);
    current = palette.color(QPalette::Active, QPalette::Highlight);
    frame = Between(canvas, text, 0.45);
    faint_ = Between(canvas, text, 0.6);
    const bool dark = canvas.lightness() < text.lightness();
    const auto colour = [dark](int hue) { return QColor::fromHsl(hue, 190, dark ? 165 : 95); };
    jump_ = colour(215);
    argument_ = colour(140);
    engine_ = colour(290);
    warning = colour(5);
    bold.setBold(true);
    const QFontMetricsF metrics(font);
    line = metrics.height();
    sizes.boxWidth = metrics.averageCharWidth() * charactersOfLine + 2 * padding;
    sizes.boxHeight = line * (linesOfPicture + linesOfText) + 3 * padding;
    sizes.gap = line * 2;
    sizes.lane = line / 2;
}

QPen GraphStyle::LineOf(EdgeKind kind) const {
    switch (kind) {
    case EdgeKind::Jump:
        return {jump_, lineWidth, Qt::DashLine};
    case EdgeKind::Argument:
        return {argument_, lineWidth, Qt::DotLine};
    case EdgeKind::Engine:
        return {engine_, lineWidth, Qt::DashDotLine};
    case EdgeKind::Never:
        return {faint_, lineWidth / 2, Qt::DashDotDotLine};
    default:
        return {text, lineWidth, Qt::SolidLine};
    }
}

} // namespace plinket3
