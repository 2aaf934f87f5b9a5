#include "ui/graph/GraphLegend.h"

#include "ui/graph/GraphArrow.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace plinket3 {

namespace {

constexpr double sample = 44, gap = 6, between = 18;

/// In the order of the kinds.
QString MeaningOf(EdgeKind kind) {
    constexpr std::array<const char*, edgeKinds> meanings{
        QT_TRANSLATE_NOOP("GraphLegend", "next frame"), QT_TRANSLATE_NOOP("GraphLegend", "jump that an argument names"),
        QT_TRANSLATE_NOOP("GraphLegend", "made or started by an argument"),
        QT_TRANSLATE_NOOP("GraphLegend", "by the game's own code"),
        QT_TRANSLATE_NOOP("GraphLegend", "next frame, never taken: the duration is for ever")};
    return QCoreApplication::translate("GraphLegend", meanings[static_cast<std::size_t>(kind)]);
}

std::vector<EdgeKind> KindsOf(const StateGraph& graph) {
    std::vector<EdgeKind> kinds;
    for (std::size_t kind = 0; kind < edgeKinds; ++kind)
        if (std::ranges::find(graph.edges, static_cast<EdgeKind>(kind), &StateGraph::Edge::kind) != graph.edges.end())
            kinds.push_back(static_cast<EdgeKind>(kind));
    return kinds;
}

} // namespace

double PaintLegend(QPainter* painter, const StateGraph& graph, const GraphStyle& style, double width) {
    const QFontMetricsF metrics(style.font);
    double x = 0, y = 0, bottom = 0;
    for (const EdgeKind kind : KindsOf(graph)) {
        const QString meaning = MeaningOf(kind);
        const double length = sample + gap + metrics.horizontalAdvance(meaning);
        if (x > 0 && x + length > width) {
            x = 0;
            y += style.line;
        }
        bottom = y + style.line;
        if (painter != nullptr) {
            const double middle = y + style.line / 2;
            PaintArrow(*painter, {QPointF(x, middle), QPointF(x + sample, middle)}, style.LineOf(kind));
            painter->setPen(style.text);
            painter->setFont(style.font);
            painter->drawText(QPointF(x + sample + gap, y + metrics.ascent()), meaning);
        }
        x += length + between;
    }
    return bottom;
}

GraphLegend::GraphLegend() {
    setObjectName(QStringLiteral("grlStates"));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void GraphLegend::Show(const StateGraph& graph) {
    graph_ = &graph;
    QStringList meanings;
    for (const EdgeKind kind : KindsOf(graph))
        meanings.append(MeaningOf(kind));
    setAccessibleName(tr("Arrows: %1").arg(meanings.join(QStringLiteral("; "))));
    updateGeometry();
    update();
}

int GraphLegend::heightForWidth(int width) const {
    if (graph_ == nullptr)
        return 0;
    return static_cast<int>(std::ceil(PaintLegend(nullptr, *graph_, GraphStyle(palette(), font()), width)));
}

QSize GraphLegend::sizeHint() const { return {minimumSizeHint().width(), heightForWidth(width())}; }

void GraphLegend::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (graph_ != nullptr)
        PaintLegend(&painter, *graph_, GraphStyle(palette(), font()), width());
}

} // namespace plinket3
