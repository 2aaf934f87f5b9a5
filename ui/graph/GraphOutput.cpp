#include "ui/graph/GraphOutput.h"

#include "core/Files.h"
#include "core/Paths.h"
#include "ui/graph/GraphLegend.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPrinter>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>

namespace plinket3 {

namespace {

constexpr double pixelScale = 2, mostPixels = 40e6, margin = 12;
constexpr double smallestPrint = 0.45; // of what is shown on a screen
constexpr double screenDots = 96;      // an inch

QPalette LightPalette() {
    QPalette light(QColor(240, 240, 240));
    light.setColor(QPalette::Base, Qt::white);
    light.setColor(QPalette::Text, Qt::black);
    return light;
}

/// The graph as it is put out, as long as this object is there.
class Sheet {
public:
    Sheet(GraphScene& scene, const QString& title)
        : scene_(scene), title_(title), before_(scene.Style()), current_(scene.Current()) {
        scene_.Current(std::nullopt);
        scene_.Style(GraphStyle(LightPalette(), before_.font));
        drawn_ = scene_.Drawn();
        titleHeight_ = 2 * Style().line;
        size_ = QSizeF(drawn_.width() + 2 * margin, drawn_.height() + titleHeight_ +
                                                        PaintLegend(nullptr, scene_.Graph(), Style(), drawn_.width()) +
                                                        2 * margin);
    }
    ~Sheet() {
        scene_.Style(before_);
        scene_.Current(current_);
    }
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    QSizeF Size() const { return size_; }
    QRectF Whole() const { return {QPointF(), size_}; }
    /// Of the graph only what lies in `part`.
    void Paint(QPainter& painter, const QRectF& part) {
        painter.fillRect(Whole(), Style().canvas);
        painter.setFont(Style().bold);
        painter.setPen(Style().text);
        painter.drawText(QRectF(margin, margin, drawn_.width(), Style().line), Qt::AlignLeft, title_);
        const QRectF place(QPointF(margin, margin + titleHeight_), drawn_.size());
        if (const QRectF shown = place & part; !shown.isEmpty())
            scene_.render(&painter, shown, shown.translated(drawn_.topLeft() - place.topLeft()));
        painter.translate(place.bottomLeft());
        PaintLegend(&painter, scene_.Graph(), Style(), drawn_.width());
    }

private:
    const GraphStyle& Style() const { return scene_.Style(); }

    GraphScene& scene_;
    QString title_;
    GraphStyle before_;
    std::optional<std::size_t> current_;
    QRectF drawn_;
    double titleHeight_ = 0;
    QSizeF size_;
};

/// Names of records may hold anything. The generator takes a title for XML, and no XML may hold control characters.
QByteArray SvgOf(Sheet& sheet, const QString& title) {
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setTitle(
        QString(title).removeIf([](QChar each) { return each == u'<' || each == u'>' || each == u'&'; }));
    generator.setResolution(static_cast<int>(screenDots));
    generator.setSize(sheet.Size().toSize());
    generator.setViewBox(QRectF(QPointF(), sheet.Size()));
    QPainter painter(&generator);
    sheet.Paint(painter, sheet.Whole());
    painter.end();
    return buffer.buffer().removeIf([](char each) { return each >= 0 && each < ' ' && each != '\n'; });
}

/// Empty when there is no memory for it.
QByteArray PngOf(Sheet& sheet) {
    const QSizeF size = sheet.Size();
    const double scale = std::min(pixelScale, std::sqrt(mostPixels / (size.width() * size.height())));
    QImage image((size * scale).toSize(), QImage::Format_RGB32);
    if (image.isNull())
        return {};
    QPainter painter(&image);
    painter.scale(scale, scale);
    sheet.Paint(painter, sheet.Whole());
    painter.end();
    QBuffer buffer;
    return image.save(&buffer, "PNG") ? buffer.data() : QByteArray();
}

} // namespace

Status ExportGraph(GraphScene& scene, const QString& title, const std::filesystem::path& file) {
    Sheet sheet(scene, title);
    const bool pixels = QString::fromStdString(PathText(file.extension())).toLower() == QStringLiteral(".png");
    const QByteArray bytes = pixels ? PngOf(sheet) : SvgOf(sheet, title);
    if (bytes.isEmpty())
        return Status::Failure("There is not enough memory for a picture of this size.");
    return WriteFileAtomically(file, bytes.toStdString());
}

bool PrintGraph(GraphScene& scene, const QString& title, QPrinter& printer) {
    Sheet sheet(scene, title);
    const QSizeF size = sheet.Size();
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const QSizeF page = printer.pageLayout().paintRectPixels(printer.resolution()).size();
    const double dots = printer.resolution() / screenDots;
    const double fitting = std::min(page.width() / size.width(), page.height() / size.height());
    const double scale = std::min(dots, std::max(fitting, smallestPrint * dots));
    const auto pages = [scale](double length, double room) {
        return std::max(1, static_cast<int>(std::ceil(length * scale / room - 0.01)));
    };
    const int across = pages(size.width(), page.width()), down = pages(size.height(), page.height());
    for (int row = 0; row < down; ++row)
        for (int column = 0; column < across; ++column) {
            if (row + column > 0 && !printer.newPage())
                return false;
            painter.save();
            painter.translate(-column * page.width(), -row * page.height());
            painter.scale(scale, scale);
            sheet.Paint(painter, QRectF(column * page.width() / scale, row * page.height() / scale,
                                        page.width() / scale, page.height() / scale));
            painter.restore();
        }
    return painter.end();
}

} // namespace plinket3
