#pragma once

#include "patch/StateGraph.h"
#include "ui/graph/GraphStyle.h"

#include <QWidget>

namespace plinket3 {

/// What the arrows of a graph mean, as many as it has: in lines of at most `width`. Draws nothing without a painter.
/// Returns its height.
double PaintLegend(QPainter* painter, const StateGraph& graph, const GraphStyle& style, double width);

/// The same as a part of a window.
class GraphLegend : public QWidget {
    Q_OBJECT
public:
    GraphLegend();

    /// `graph` must stay while it is shown.
    void Show(const StateGraph& graph);
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {100, 0}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const StateGraph* graph_ = nullptr;
};

} // namespace plinket3
