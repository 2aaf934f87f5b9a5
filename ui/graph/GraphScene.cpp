#include "ui/graph/GraphScene.h"

#include "patch/CellText.h"
#include "patch/StepNames.h"
#include "patch/ThingLook.h"
#include "ui/LatinText.h"
#include "ui/fields/ActionText.h"
#include "ui/fields/SpriteView.h"
#include "ui/fields/Thumbnails.h"

#include <QGraphicsSceneMouseEvent>
#include <QScopedValueRollback>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace plinket3 {

namespace {

QPointF PointOf(const GraphPoint& point) { return {point.x, point.y}; }

} // namespace

GraphScene::GraphScene(const Session& session, const Settings& settings, const GraphStyle& style, QObject* parent)
    : QGraphicsScene(parent), session_(session), settings_(settings), style_(style) {
    setItemIndexMethod(NoIndex); // one is made anew for each drawing while boxes are dragged
}

void GraphScene::Show(StateGraph graph, bool keepPlaces) {
    const QScopedValueRollback showing(showing_, true);
    clear();
    boxes_.clear();
    arrows_.clear();
    current_.reset();
    if (!keepPlaces)
        dragged_.clear();
    graph_ = std::move(graph);
    layout_ = LayOut(graph_, style_.sizes);
    for (std::size_t edge = 0; edge < graph_.edges.size(); ++edge) {
        arrows_.push_back(new GraphArrow(graph_.edges[edge].kind, ShownStart(graph_.edges[edge].words), style_));
        QPolygonF corners;
        for (const GraphPoint& point : layout_.routes[edge])
            corners.append(PointOf(point));
        arrows_.back()->Along(corners);
        addItem(arrows_.back());
    }
    for (std::size_t node = 0; node < graph_.nodes.size(); ++node) {
        auto* box = new GraphBox(
            node, TextOf(node), style_, [this, node] { return PictureOf(graph_.nodes[node].target); },
            [this, node] { Dragged(node); });
        boxes_.push_back(box);
        box->setPos(PointOf(layout_.corners[node]));
        addItem(box);
    }
    for (std::size_t node = 0; node < boxes_.size(); ++node)
        if (const auto dragged = dragged_.find(graph_.nodes[node].target); dragged != dragged_.end()) {
            boxes_[node]->setPos(dragged->second);
            MoveArrows(node);
        }
    setSceneRect(Drawn());
}

void GraphScene::Style(const GraphStyle& style) {
    style_ = style;
    update();
}

void GraphScene::ForgetPictures() {
    for (GraphBox* box : boxes_)
        box->ForgetPicture();
}

QRectF GraphScene::Drawn() const {
    const double margin = style_.sizes.gap / 2;
    return boxes_.empty() ? QRectF() : itemsBoundingRect().adjusted(-margin, -margin, margin, margin);
}

void GraphScene::Current(std::optional<std::size_t> node) {
    if (current_)
        boxes_[*current_]->IsCurrent(false);
    current_ = node;
    if (current_)
        boxes_[*current_]->IsCurrent(true);
    for (std::size_t edge = 0; edge < arrows_.size(); ++edge)
        arrows_[edge]->IsStrong(current_ == graph_.edges[edge].from || current_ == graph_.edges[edge].to);
}

void GraphScene::Choose(std::size_t node) {
    if (current_ == node)
        return;
    Current(node);
    emit Chosen(node);
}

std::optional<std::size_t> GraphScene::From(std::size_t node, Way way) const {
    const auto isNext = [](const StateGraph::Edge& edge) {
        return edge.kind == EdgeKind::Next || edge.kind == EdgeKind::Never;
    };
    const GraphLayout::Place here = layout_.places[node];
    std::optional<std::size_t> found;
    if (way == Way::Next || way == Way::Previous) {
        bool foundNext = false;
        for (const StateGraph::Edge& edge : graph_.edges) {
            const std::size_t end = way == Way::Next ? edge.from : edge.to;
            const std::size_t other = way == Way::Next ? edge.to : edge.from;
            // Of several that lead here, the one that stands before it.
            const bool better = isNext(edge) && (!foundNext || layout_.places[other].row == here.row);
            if (end != node || other == node || (found && !better))
                continue;
            found = other;
            foundNext = isNext(edge);
        }
        return found;
    }
    const auto distance = [&](std::size_t other) {
        const int rows = layout_.places[other].row - here.row;
        return std::pair(way == Way::RowBelow ? rows : -rows, std::abs(layout_.places[other].column - here.column));
    };
    for (std::size_t other = 0; other < boxes_.size(); ++other)
        if (distance(other).first > 0 && (!found || distance(other) < distance(*found)))
            found = other;
    return found;
}

BoxText GraphScene::TextOf(std::size_t place) const {
    const StateGraph::Node& node = graph_.nodes[place];
    const PatchSet& set = session_.patch.current;
    BoxText text;
    text.isReached = node.reached;
    QStringList whole;
    if (node.target.kind == TargetKind::Thing) {
        text.isThing = true;
        text.heading = tr("Thing %1").arg(PatchNumber(RecordKind::Thing, node.target.number));
        text.below = ShownStart(RecordName(set, RecordKind::Thing, node.target.number));
        whole.append(tr("%1: %2").arg(text.heading, text.below));
    } else {
        const StateRecord& state = set.states[node.target.number];
        text.heading = QString::number(node.target.number);
        text.beside = state.duration < 0    ? tr("for ever")
                      : state.duration == 1 ? tr("1 tic")
                                            : tr("%1 tics").arg(state.duration);
        const EngineConfiguration::Action* action = session_.engine.ActionOf(state.codePointer);
        if (state.codePointer != 0)
            text.below = action != nullptr ? ActionName(*action) : tr("action %1").arg(state.codePointer);
        text.ends = state.nextState == 0 && state.duration >= 0;
        whole.append(ShownStart(RecordTitle(set, session_.engine, RecordKind::State, node.target.number)) +
                     QStringLiteral(": ") +
                     (text.below.isEmpty() ? text.beside : tr("%1, %2").arg(text.beside, text.below)));
        if (text.ends)
            whole.append(tr("It ends here."));
        for (const StateGraph::Edge& edge : graph_.edges)
            if (edge.from == place && edge.kind == EdgeKind::Next)
                whole.append(tr("Next: %1.").arg(graph_.nodes[edge.to].target.number));
    }
    QStringList entries;
    for (const StateGraph::Entry& entry : graph_.entries)
        if (entry.node == place)
            entries.append(ShownText(FieldName(entry.field)));
    text.entries = entries.join(QLatin1Char('\n'));
    if (!entries.isEmpty())
        whole.append(tr("Named by: %1.").arg(entries.join(QStringLiteral(", "))));
    text.mark = node.timeless ? tr("hangs: 0 tics") : node.reached ? QString() : tr("not reached");
    if (const QString warnings = WarningsOf(node); !warnings.isEmpty())
        whole.append(warnings);
    text.whole = whole.join(QLatin1Char(' '));
    return text;
}

QString GraphScene::WarningsOf(const StateGraph::Node& node) const {
    QStringList warnings;
    if (node.timeless)
        warnings.append(tr("Games hang here: a circle of states of 0 tics."));
    if (!node.reached)
        warnings.append(tr("Nothing comes here."));
    return warnings.join(QLatin1Char(' '));
}

/// Of a thing that of its first state; of a state as the thing looks whose graph it is.
QImage GraphScene::PictureOf(const Target& target) const {
    const PatchSet& set = session_.patch.current;
    const bool isThing = target.kind == TargetKind::Thing;
    const ThingRecord* thing = nullptr;
    if (isThing)
        thing = set.things.Find(target.number);
    else if (!graph_.entries.empty() && graph_.entries.front().field.kind == RecordKind::Thing)
        thing = set.things.Find(graph_.entries.front().field.index);
    const std::int32_t state = !isThing ? target.number : thing != nullptr ? thing->initialState : 0;
    const auto [sprite, frame] = FrameOfState(set, state);
    if (sprite.empty())
        return {};
    const GameLook look = LookOf(session_.engine, thing, *set.states.Find(state));
    return SpriteView::FromTheFront(session_, settings_, sprite, frame, look).image;
}

void GraphScene::Dragged(std::size_t node) {
    if (showing_)
        return;
    dragged_[graph_.nodes[node].target] = boxes_[node]->pos();
    MoveArrows(node);
}

/// Their own ways would lead to where the layout has the box.
void GraphScene::MoveArrows(std::size_t node) {
    const auto rect = [this](std::size_t each) { return boxes_[each]->Box().translated(boxes_[each]->pos()); };
    for (std::size_t edge = 0; edge < arrows_.size(); ++edge)
        if (const StateGraph::Edge& each = graph_.edges[edge]; each.from == node || each.to == node)
            arrows_[edge]->Between(rect(each.from), rect(each.to));
}

GraphBox* GraphScene::BoxAt(QPointF place) const {
    for (GraphBox* box : boxes_)
        if (box->Box().translated(box->pos()).contains(place))
            return box;
    return nullptr;
}

void GraphScene::mousePressEvent(QGraphicsSceneMouseEvent* event) {
    if (const GraphBox* box = BoxAt(event->scenePos()); box != nullptr && event->button() == Qt::LeftButton)
        Choose(box->Node());
    QGraphicsScene::mousePressEvent(event);
}

/// Not before: what grows under the mouse would carry the box off.
void GraphScene::mouseReleaseEvent(QGraphicsSceneMouseEvent* event) {
    QGraphicsScene::mouseReleaseEvent(event);
    setSceneRect(Drawn());
}

void GraphScene::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) {
    if (const GraphBox* box = BoxAt(event->scenePos()); box != nullptr && event->button() == Qt::LeftButton)
        emit Opened(box->Node());
    else
        QGraphicsScene::mouseDoubleClickEvent(event);
}

} // namespace plinket3
