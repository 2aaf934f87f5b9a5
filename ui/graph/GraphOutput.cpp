#include "ui/graph/GraphOutput.h"

#include "core/Files.h"
#include "core/Paths.h"
#include "ui/graph/GraphLegend.h"
#include "ui/graph/SvgDevice.h"

#include <QBuffer>
#include <QImage>
#include <QList>
#include <QPainter>
#include <QPrinter>

#include <algorithm>
#include <cmath>
#include <utility>

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
        const QRectF place(Corner(), drawn_.size());
        if (const QRectF shown = place & part; !shown.isEmpty())
            scene_.render(&painter, shown, shown.translated(drawn_.topLeft() - place.topLeft()));
        painter.translate(place.bottomLeft());
        PaintLegend(&painter, scene_.Graph(), Style(), drawn_.width());
    }

    QList<QRectF> Boxes() const {
        constexpr QMarginsF frame(1, 1, 1, 1);
        QList<QRectF> boxes;
        for (std::size_t node = 0; node < scene_.Graph().nodes.size(); ++node) {
            const GraphBox& box = *scene_.Box(node);
            boxes.append(box.Box().translated(box.pos() - drawn_.topLeft() + Corner()) + frame);
        }
        return boxes;
    }

private:
    QPointF Corner() const { return {margin, margin + titleHeight_}; }
    const GraphStyle& Style() const { return scene_.Style(); }

    GraphScene& scene_;
    QString title_;
    GraphStyle before_;
    std::optional<std::size_t> current_;
    QRectF drawn_;
    double titleHeight_ = 0;
    QSizeF size_;
};

QByteArray SvgOf(Sheet& sheet, const QString& title) {
    SvgDevice device(sheet.Size(), title);
    QPainter painter(&device);
    sheet.Paint(painter, sheet.Whole());
    painter.end();
    return device.Document();
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

QList<double> PageEdges(double length, double room, const QList<std::pair<double, double>>& spans) {
    QList<double> edges{0};
    while (edges.back() + room < length) {
        const double farthest = edges.back() + room;
        double edge = farthest;
        const auto cuts = [&edge](const auto& span) { return span.first < edge && edge < span.second; };
        for (auto cut = std::ranges::find_if(spans, cuts); cut != spans.end(); cut = std::ranges::find_if(spans, cuts))
            edge = cut->first;
        edges.append(edge > farthest - room / 2 ? edge : farthest);
    }
    edges.append(edges.back() + room);
    return edges;
}

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
    const QSizeF room = page / scale + QSizeF(0.01, 0.01); // what fits must not miss by rounding
    QList<std::pair<double, double>> across, down;
    for (const QRectF& box : sheet.Boxes()) {
        across.append({box.left(), box.right()});
        down.append({box.top(), box.bottom()});
    }
    const QList<double> columns = PageEdges(size.width(), room.width(), across),
                        rows = PageEdges(size.height(), room.height(), down);
    for (qsizetype row = 0; row + 1 < rows.size(); ++row)
        for (qsizetype column = 0; column + 1 < columns.size(); ++column) {
            if (row + column > 0 && !printer.newPage())
                return false;
            const QRectF part(QPointF(columns[column], rows[row]), QPointF(columns[column + 1], rows[row + 1]));
            painter.save();
            painter.scale(scale, scale);
            painter.translate(-part.topLeft());
            painter.setClipRect(part);
            sheet.Paint(painter, part);
            painter.restore();
        }
    return painter.end();
}

} // namespace plinket3
