#include "patch/GraphLayout.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::size_t none = static_cast<std::size_t>(-1);

/// Gives each box its row and column.
class Rows {
public:
    Rows(const StateGraph& graph, int columns)
        : graph_(graph), columns_(columns), places_(graph.nodes.size()), placed_(graph.nodes.size()),
          isEntry_(graph.nodes.size()), next_(graph.nodes.size(), none), others_(graph.nodes.size()) {
        for (const StateGraph::Entry& entry : graph.entries)
            isEntry_[entry.node] = true;
        for (const StateGraph::Edge& edge : graph.edges)
            if (edge.kind == EdgeKind::Next || edge.kind == EdgeKind::Never)
                next_[edge.from] = edge.to;
            else
                others_[edge.from].push_back(edge.to);
    }

    std::vector<GraphLayout::Place> Place() {
        for (const StateGraph::Entry& entry : graph_.entries)
            Block(entry.node);
        std::vector<bool> follows(graph_.nodes.size());
        for (std::size_t node = 0; node < graph_.nodes.size(); ++node)
            if (next_[node] != none && next_[node] != node)
                follows[next_[node]] = true;
        for (const bool circles : {false, true})
            for (std::size_t node = 0; node < graph_.nodes.size(); ++node)
                if (circles || !follows[node])
                    Block(node);
        return std::move(places_);
    }

private:
    /// A run of states from here on in rows of its own, and below it what they lead to otherwise.
    void Block(std::size_t first) {
        if (placed_[first])
            return;
        std::vector<std::size_t> nodes = RunFrom(first);
        PlaceBelow(nodes, 0);
        for (std::size_t at = 0; at < nodes.size(); ++at)
            for (const std::size_t other : others_[nodes[at]]) {
                if (placed_[other] || isEntry_[other])
                    continue;
                const std::vector<std::size_t> run = RunFrom(other);
                PlaceRun(run, places_[nodes[at]]);
                nodes.insert(nodes.end(), run.begin(), run.end());
            }
    }

    std::vector<std::size_t> RunFrom(std::size_t node) {
        std::vector<std::size_t> run;
        do {
            placed_[node] = true;
            run.push_back(node);
            node = next_[node];
        } while (node != none && !placed_[node] && !isEntry_[node]);
        return run;
    }

    /// Below a box, beside other runs where there is room.
    void PlaceRun(const std::vector<std::size_t>& run, GraphLayout::Place above) {
        const int length = static_cast<int>(run.size());
        const int column = std::clamp(columns_ - length, 0, above.column);
        for (int row = above.row + 1; row < static_cast<int>(taken_.size()); ++row) {
            const auto next = taken_[static_cast<std::size_t>(row)].lower_bound(column - 1);
            if (next == taken_[static_cast<std::size_t>(row)].end() || *next > column + length)
                return Put(run, row, column);
        }
        PlaceBelow(run, column);
    }

    void PlaceBelow(const std::vector<std::size_t>& run, int column) {
        Put(run, static_cast<int>(taken_.size()), column);
    }

    void Put(const std::vector<std::size_t>& run, int row, int column) {
        for (const std::size_t node : run) {
            if (column >= columns_) {
                row = static_cast<int>(taken_.size());
                column = 0;
            }
            taken_.resize(std::max(taken_.size(), static_cast<std::size_t>(row) + 1));
            taken_[static_cast<std::size_t>(row)].insert(column);
            places_[node] = {row, column++};
        }
    }

    const StateGraph& graph_;
    int columns_;
    std::vector<GraphLayout::Place> places_;
    std::vector<bool> placed_, isEntry_;
    std::vector<std::size_t> next_;
    std::vector<std::vector<std::size_t>> others_; // what a node leads to but as the next
    std::vector<std::set<int>> taken_;             // columns, by row
};

/// A stretch of a gap that several arrows share: those to one target in one style.
using Way = std::pair<std::size_t, EdgeKind>;

/// The gaps between the rows, or between the columns, and the lanes in them.
class Gaps {
public:
    explicit Gaps(int count) : gaps_(static_cast<std::size_t>(count)) {}

    void Use(int gap, Way way, double from, double to) {
        const auto [found, isNew] = At(gap).ways.try_emplace(way, Stretch{from, from});
        found->second.first = std::min({found->second.first, from, to});
        found->second.last = std::max({found->second.last, from, to});
    }

    /// The shortest ones get the first lanes, so that loops lie inside each other.
    void GiveLanes() {
        for (Gap& gap : gaps_) {
            std::vector<std::tuple<double, Way, Stretch*>> byLength;
            for (auto& [way, stretch] : gap.ways)
                byLength.emplace_back(stretch.last - stretch.first, way, &stretch);
            std::sort(byLength.begin(), byLength.end());
            std::vector<std::map<double, double>> lanes; // ends of stretches by their beginnings
            for (const auto& [length, way, stretch] : byLength) {
                std::size_t lane = 0;
                while (lane < lanes.size() && !IsFree(lanes[lane], *stretch))
                    ++lane;
                lanes.resize(std::max(lanes.size(), lane + 1));
                lanes[lane][stretch->first] = stretch->last;
                stretch->lane = static_cast<int>(lane);
            }
            gap.lanes = static_cast<int>(lanes.size());
        }
    }

    int Lanes(int gap) const { return gaps_[static_cast<std::size_t>(gap)].lanes; }
    int LaneOf(int gap, Way way) const { return gaps_[static_cast<std::size_t>(gap)].ways.at(way).lane; }

private:
    struct Stretch {
        double first = 0, last = 0;
        int lane = 0;
    };
    struct Gap {
        std::map<Way, Stretch> ways;
        int lanes = 0;
    };

    static bool IsFree(const std::map<double, double>& lane, const Stretch& stretch) {
        const auto behind = lane.upper_bound(stretch.last);
        return behind == lane.begin() || std::prev(behind)->second < stretch.first;
    }
    Gap& At(int gap) { return gaps_[static_cast<std::size_t>(gap)]; }

    std::vector<Gap> gaps_;
};

/// The ways of arrows through the gaps between boxes.
class Routes {
public:
    Routes(const StateGraph& graph, const GraphSizes& sizes, std::vector<GraphLayout::Place> places)
        : graph_(graph), sizes_(sizes), places_(std::move(places)), above_(RowCount() + 1), left_(ColumnCount() + 1) {}

    GraphLayout Draw() {
        for (const StateGraph::Edge& edge : graph_.edges)
            UseGaps(edge);
        above_.GiveLanes();
        left_.GiveLanes();
        GraphLayout layout;
        columns_ = Starts(left_, ColumnCount(), sizes_.boxWidth, layout.width);
        rows_ = Starts(above_, RowCount(), sizes_.boxHeight, layout.height);
        layout.places = places_;
        for (std::size_t node = 0; node < places_.size(); ++node)
            layout.corners.push_back(Corner(node));
        for (const StateGraph::Edge& edge : graph_.edges)
            layout.routes.push_back(Route(edge));
        return layout;
    }

private:
    int RowCount() const {
        int count = 0;
        for (const GraphLayout::Place& place : places_)
            count = std::max(count, place.row + 1);
        return count;
    }
    int ColumnCount() const {
        int count = 0;
        for (const GraphLayout::Place& place : places_)
            count = std::max(count, place.column + 1);
        return count;
    }

    bool IsDirect(const StateGraph::Edge& edge) const {
        const GraphLayout::Place from = places_[edge.from], to = places_[edge.to];
        return (edge.kind == EdgeKind::Next || edge.kind == EdgeKind::Never) && from.row == to.row &&
               to.column == from.column + 1;
    }
    bool GoesDown(const StateGraph::Edge& edge) const { return places_[edge.to].row > places_[edge.from].row; }
    bool GoesUp(const StateGraph::Edge& edge) const { return places_[edge.to].row < places_[edge.from].row; }
    /// The gap between rows into which the arrow comes out of its first box, ...
    int GapOut(const StateGraph::Edge& edge) const { return places_[edge.from].row + (GoesDown(edge) ? 1 : 0); }
    /// ... and out of which it comes to the second.
    int GapIn(const StateGraph::Edge& edge) const { return places_[edge.to].row + (GoesUp(edge) ? 1 : 0); }
    /// The gap beside the target's column that is nearer.
    int GapBeside(const StateGraph::Edge& edge) const {
        const int column = places_[edge.to].column;
        return places_[edge.from].column < column ? column : column + 1;
    }

    /// Where on a box's side an arrow begins or ends, as a part of its width; not where one of the box across does.
    static double PartOut(const StateGraph::Edge& edge, bool below) {
        return 0.58 + 0.08 * static_cast<double>(edge.kind) + (below ? 0.04 : 0);
    }
    static double PartIn(const StateGraph::Edge& edge, bool below) {
        return 0.42 - 0.08 * static_cast<double>(edge.kind) - (below ? 0.04 : 0);
    }

    /// Before the gaps have their widths a box is one wide, and a gap is at its end.
    void UseGaps(const StateGraph::Edge& edge) {
        if (IsDirect(edge))
            return;
        const Way way{edge.to, edge.kind};
        const int out = GapOut(edge), in = GapIn(edge), beside = GapBeside(edge);
        const double from = places_[edge.from].column + PartOut(edge, GoesDown(edge));
        const double to = places_[edge.to].column + PartIn(edge, GoesUp(edge));
        if (out == in)
            return above_.Use(out, way, from, to);
        above_.Use(out, way, from, beside);
        left_.Use(beside, way, out, in);
        above_.Use(in, way, beside, to);
    }

    /// Where boxes begin; `end` becomes where the last gap ends.
    std::vector<double> Starts(const Gaps& gaps, int count, double size, double& end) const {
        std::vector<double> starts;
        double at = 0;
        for (int i = 0; i <= count; ++i) {
            at += sizes_.gap + sizes_.lane * gaps.Lanes(i);
            starts.push_back(at);
            end = at;
            at += size;
        }
        return starts;
    }

    GraphPoint Corner(std::size_t node) const {
        return {columns_[static_cast<std::size_t>(places_[node].column)],
                rows_[static_cast<std::size_t>(places_[node].row)]};
    }

    /// The first lane lies nearest to the boxes behind the gap.
    double Lane(const Gaps& gaps, const std::vector<double>& starts, int gap, Way way) const {
        return starts[static_cast<std::size_t>(gap)] - sizes_.gap / 2 - sizes_.lane * (gaps.LaneOf(gap, way) + 0.5);
    }

    std::vector<GraphPoint> Route(const StateGraph::Edge& edge) const {
        const GraphPoint from = Corner(edge.from), to = Corner(edge.to);
        if (IsDirect(edge)) {
            const double y = from.y + sizes_.boxHeight / 2;
            return {{from.x + sizes_.boxWidth, y}, {to.x, y}};
        }
        const Way way{edge.to, edge.kind};
        const int out = GapOut(edge), in = GapIn(edge), beside = GapBeside(edge);
        const double outX = from.x + sizes_.boxWidth * PartOut(edge, GoesDown(edge));
        const double inX = to.x + sizes_.boxWidth * PartIn(edge, GoesUp(edge));
        const double outY = from.y + (GoesDown(edge) ? sizes_.boxHeight : 0);
        const double inY = to.y + (GoesUp(edge) ? sizes_.boxHeight : 0);
        const double outLane = Lane(above_, rows_, out, way), inLane = Lane(above_, rows_, in, way);
        if (out == in)
            return {{outX, outY}, {outX, outLane}, {inX, outLane}, {inX, inY}};
        const double besideLane = Lane(left_, columns_, beside, way);
        return {{outX, outY}, {outX, outLane}, {besideLane, outLane}, {besideLane, inLane}, {inX, inLane}, {inX, inY}};
    }

    const StateGraph& graph_;
    const GraphSizes& sizes_;
    std::vector<GraphLayout::Place> places_;
    Gaps above_, left_;                  // of each row, of each column, and behind the last
    std::vector<double> columns_, rows_; // where they begin
};

} // namespace

GraphLayout LayOut(const StateGraph& graph, const GraphSizes& sizes) {
    return Routes(graph, sizes, Rows(graph, sizes.columns).Place()).Draw();
}

} // namespace plinket3
