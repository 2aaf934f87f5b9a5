#pragma once

#include "patch/Program.h"
#include "patch/StateGraph.h"
#include "ui/graph/GraphArrow.h"
#include "ui/graph/GraphBox.h"
#include "ui/graph/GraphStyle.h"

#include <QGraphicsScene>

#include <map>
#include <optional>
#include <vector>

namespace plinket3 {

/// The boxes and arrows of a graph, of which one box is the current one.
class GraphScene : public QGraphicsScene {
    Q_OBJECT
public:
    enum class Way { Next, Previous, RowAbove, RowBelow };

    /// `session` must outlive the scene.
    GraphScene(const Session& session, const Settings& settings, const GraphStyle& style, QObject* parent);

    /// Boxes that were dragged stay where they are if `keepPlaces`, and are laid out anew otherwise.
    void Show(StateGraph graph, bool keepPlaces);
    /// Draws in other colours.
    void Style(const GraphStyle& style);
    const GraphStyle& Style() const { return style_; }
    /// From now on pictures are other ones.
    void ForgetPictures();

    const StateGraph& Graph() const { return graph_; }
    const GraphBox* Box(std::size_t node) const { return boxes_[node]; }
    std::optional<std::size_t> Current() const { return current_; }
    /// Makes another box the current one without a signal.
    void Current(std::optional<std::size_t> node);
    /// The same as the user does it.
    void Choose(std::size_t node);
    /// The box to which an arrow leads, or from which one comes, or the nearest one in another row.
    std::optional<std::size_t> From(std::size_t node, Way way) const;
    /// Where boxes and arrows are.
    QRectF Drawn() const;

signals:
    void Chosen(std::size_t node);
    void Opened(std::size_t node);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;

private:
    BoxText TextOf(std::size_t node) const;
    QString WarningsOf(const StateGraph::Node& node) const;
    QImage PictureOf(const Target& target) const;
    void Dragged(std::size_t node);
    void MoveArrows(std::size_t node);
    GraphBox* BoxAt(QPointF place) const;

    const Session& session_;
    const Settings& settings_;
    GraphStyle style_;
    StateGraph graph_;
    GraphLayout layout_;
    std::vector<GraphBox*> boxes_;      // by node, ...
    std::vector<GraphArrow*> arrows_;   // ... by edge
    std::map<Target, QPointF> dragged_; // boxes that do not stand where the layout has them
    std::optional<std::size_t> current_;
    bool showing_ = false;
};

} // namespace plinket3
