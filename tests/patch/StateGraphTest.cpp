#include "patch/StateGraph.h"
#include "patch/GraphLayout.h"
#include "tests/support/EveryField.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <set>
#include <string>

namespace plinket3::test {
namespace {

constexpr int imp = 11, archvile = 3, bfg = 6;

struct GraphEngine {
    explicit GraphEngine(const char* name) : patch(BuiltEngine(DATA_FOLDER, name, engine)) {
        fixedUses = LoadFixedUses(DATA_FOLDER, engine);
    }
    StateGraph Of(RecordKind kind, std::int32_t number, std::size_t most = 2000) const {
        return GraphOf(patch, engine, fixedUses, kind, number, most);
    }
    StateRecord& State(int number) { return patch.current.states[number]; }
    std::int32_t Action(const char* mnemonic) const { return engine.CodePointerOf(mnemonic).value(); }

    EngineConfiguration engine;
    PatchData patch;
    std::vector<FixedUse> fixedUses;
};

std::string NameOf(const StateGraph::Node& node) {
    return (node.target.kind == TargetKind::Thing ? "thing " : "") + std::to_string(node.target.number);
}

/// "452 -> 453 next", with the words of the edge.
std::set<std::string> EdgesOf(const StateGraph& graph) {
    constexpr std::array kinds{"next", "jump", "argument", "engine", "never"};
    std::set<std::string> edges;
    for (const StateGraph::Edge& edge : graph.edges)
        edges.insert(NameOf(graph.nodes[edge.from]) + " -> " + NameOf(graph.nodes[edge.to]) + " " +
                     kinds[static_cast<std::size_t>(edge.kind)] + (edge.words.empty() ? "" : ": " + edge.words));
    return edges;
}

std::set<std::string> EntriesOf(const StateGraph& graph) {
    std::set<std::string> entries;
    for (const StateGraph::Entry& entry : graph.entries)
        entries.insert(std::string(FactsOf(entry.field.kind, entry.field.field).label) + " " +
                       NameOf(graph.nodes[entry.node]));
    return entries;
}

/// The numbers of the states that `is` is true of.
template <class Is> std::set<int> StatesThat(const StateGraph& graph, Is is) {
    std::set<int> states;
    for (const StateGraph::Node& node : graph.nodes)
        if (node.target.kind == TargetKind::State && is(node))
            states.insert(node.target.number);
    return states;
}

TEST(StateGraph, HasTheEnginesOwnThingsAndWeapons) {
    const GraphEngine engine("mbf21");
    const StateGraph ofImp = engine.Of(RecordKind::Thing, imp);
    EXPECT_EQ(ofImp.nodes.size(), 33);
    EXPECT_EQ(ofImp.all, 33);
    EXPECT_EQ(EntriesOf(ofImp),
              (std::set<std::string>{"Initial frame 442", "First moving frame 444", "Injury frame 455",
                                     "Close attack frame 452", "Far attack frame 452", "Death frame 457",
                                     "Exploding frame 462", "Respawn frame 470"}));
    const std::set<std::string> edges = EdgesOf(ofImp);
    for (const char* edge : {"442 -> 443 next", "443 -> 442 next", "454 -> 444 next", "474 -> 444 next"})
        EXPECT_TRUE(edges.contains(edge)) << edge;
    EXPECT_EQ(edges.size(), 31) << "the two last states of its deaths stay for ever";
    EXPECT_TRUE(
        EdgesOf(engine.Of(RecordKind::Thing, archvile)).contains("251 -> 266 engine: entered when a corpse is found"));
    EXPECT_TRUE(EdgesOf(engine.Of(RecordKind::Weapon, bfg)).contains("81 -> 81 next"));
    EXPECT_TRUE(engine.Of(RecordKind::Thing, 99999).nodes.empty());
    EXPECT_EQ(NearestUser(engine.patch.current, engine.engine, 456), RecordId(RecordKind::Thing, imp));
    EXPECT_EQ(NearestUser(engine.patch.current, engine.engine, 82), RecordId(RecordKind::Weapon, bfg));
    EXPECT_EQ(NearestUser(engine.patch.current, engine.engine, 1500), std::nullopt);
}

TEST(StateGraph, TellsJumpsArgumentsAndWhatHarmsOrIsNotReached) {
    GraphEngine engine("mbf21");
    const auto arguments = [&](int state, const char* action, std::int32_t first, std::int32_t second) {
        engine.State(state).codePointer = engine.Action(action);
        SetValue(engine.State(state), FieldOf(&StateRecord::arg1), first);
        SetValue(engine.State(state), FieldOf(&StateRecord::arg2), second);
    };
    arguments(442, "JumpIfHealthBelow", 1100, 20);
    arguments(443, "SpawnObject", 12, 0);
    engine.State(1100).nextState = 1101;
    engine.State(1100).duration = engine.State(1101).duration = 0;
    engine.State(1101).nextState = 1100;
    engine.State(1200).nextState = 1201; // nothing comes to these two
    engine.State(1201).nextState = 442;
    engine.State(1201).duration = 4;
    engine.State(456).duration = -1; // before 444, which others lead to as well
    engine.State(461).nextState = 1300;
    engine.State(1300).nextState = 0;
    const StateGraph graph = engine.Of(RecordKind::Thing, imp);
    const std::set<std::string> edges = EdgesOf(graph);
    for (const char* edge : {"442 -> 1100 jump: state", "443 -> thing 11 argument: type", "1201 -> 442 next",
                             "456 -> 444 never", "461 -> 1300 never"})
        EXPECT_TRUE(edges.contains(edge)) << edge;
    EXPECT_EQ(StatesThat(graph, [](const auto& node) { return node.timeless; }), (std::set{1100, 1101}));
    EXPECT_EQ(StatesThat(graph, [](const auto& node) { return !node.reached; }), (std::set{1200, 1201, 1300}));
}

TEST(StateGraph, IsBoundedAndTheNearestStatesComeFirst) {
    GraphEngine engine("dsdhacked");
    constexpr int first = 10'000, count = 50'000;
    for (int state = first; state < first + count; ++state)
        engine.patch.current.states.Add(state).nextState = state + 1;
    engine.patch.current.things[imp].respawnState = first;
    const StateGraph graph = engine.Of(RecordKind::Thing, imp, 100);
    EXPECT_EQ(graph.nodes.size(), 100);
    EXPECT_EQ(graph.all, 33 + count) << "the former respawn frames lead here still";
    EXPECT_EQ(graph.entries.size(), 8);
    EXPECT_TRUE(graph.Find({TargetKind::State, first + 50}));
    EXPECT_FALSE(graph.Find({TargetKind::State, first + 100}));
}

/// A box as layouts have it.
struct Box {
    double left, top, right, bottom;
    bool Holds(GraphPoint point) const {
        return point.x > left && point.x < right && point.y > top && point.y < bottom;
    }
    bool Touches(GraphPoint point) const {
        return point.x >= left && point.x <= right && point.y >= top && point.y <= bottom && !Holds(point);
    }
    /// Whether a level or upright line goes through.
    bool IsCrossed(GraphPoint from, GraphPoint to) const {
        return std::max(from.x, to.x) > left && std::min(from.x, to.x) < right && std::max(from.y, to.y) > top &&
               std::min(from.y, to.y) < bottom;
    }
};

StateGraph RandomGraph(std::mt19937& random, std::size_t nodes) {
    const auto any = [&random](std::size_t count) { return random() % count; };
    StateGraph graph;
    graph.nodes.resize(nodes);
    for (std::size_t node = 0; node < nodes; ++node)
        graph.nodes[node].target = {TargetKind::State, static_cast<std::int32_t>(node) + 1};
    for (std::size_t i = any(8) + 1; i > 0; --i)
        graph.entries.push_back({any(nodes), {RecordKind::Thing, 0, static_cast<int>(i)}});
    for (std::size_t node = 0; node < nodes; ++node) {
        if (any(10) != 0) // most are followed by their neighbours, as in patches
            graph.edges.push_back({node,
                                   any(4) == 0 ? any(nodes) : (node + 1) % nodes,
                                   any(20) == 0 ? EdgeKind::Never : EdgeKind::Next,
                                   {}});
        for (const EdgeKind kind : {EdgeKind::Jump, EdgeKind::Argument, EdgeKind::Engine})
            if (any(6) == 0)
                graph.edges.push_back({node, any(nodes), kind, {}});
    }
    return graph;
}

/// Whether two lines lie on each other, in more than a point.
bool LieOnEachOther(GraphPoint a, GraphPoint b, GraphPoint c, GraphPoint d) {
    const auto meet = [](double a1, double b1, double c1, double d1) {
        return std::min(std::max(a1, b1), std::max(c1, d1)) - std::max(std::min(a1, b1), std::min(c1, d1)) > 1e-6;
    };
    const bool level = a.y == b.y && c.y == d.y && std::abs(a.y - c.y) < 1e-6;
    const bool upright = a.x == b.x && c.x == d.x && std::abs(a.x - c.x) < 1e-6;
    return (level && meet(a.x, b.x, c.x, d.x)) || (upright && meet(a.y, b.y, c.y, d.y));
}

TEST(GraphLayout, KeepsBoxesApartAndArrowsAroundThem) {
    std::mt19937 random(11);
    for (int round = 0; round < 60; ++round) {
        const StateGraph graph = RandomGraph(random, random() % 70 + 1);
        const GraphSizes sizes{.columns = 3 + round % 12};
        const GraphLayout layout = LayOut(graph, sizes);
        ASSERT_EQ(layout.corners.size(), graph.nodes.size());
        ASSERT_EQ(layout.routes.size(), graph.edges.size());
        std::vector<Box> boxes;
        std::set<std::pair<int, int>> taken;
        for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
            const GraphPoint corner = layout.corners[node];
            boxes.push_back({corner.x, corner.y, corner.x + sizes.boxWidth, corner.y + sizes.boxHeight});
            EXPECT_TRUE(taken.insert({layout.places[node].row, layout.places[node].column}).second);
            EXPECT_TRUE(corner.x >= 0 && boxes.back().right <= layout.width && boxes.back().bottom <= layout.height);
        }
        for (std::size_t a = 0; a < boxes.size(); ++a)
            for (std::size_t b = 0; b < a; ++b)
                ASSERT_FALSE(boxes[a].left < boxes[b].right && boxes[b].left < boxes[a].right &&
                             boxes[a].top < boxes[b].bottom && boxes[b].top < boxes[a].bottom);
        for (const StateGraph::Entry& entry : graph.entries)
            EXPECT_EQ(layout.places[entry.node].column, 0) << "each begins a row";
        for (std::size_t edge = 0; edge < graph.edges.size(); ++edge) {
            const std::vector<GraphPoint>& route = layout.routes[edge];
            EXPECT_TRUE(boxes[graph.edges[edge].from].Touches(route.front()));
            EXPECT_TRUE(boxes[graph.edges[edge].to].Touches(route.back()));
            for (std::size_t i = 0; i + 1 < route.size(); ++i)
                ASSERT_TRUE(
                    std::ranges::none_of(boxes, [&](const Box& box) { return box.IsCrossed(route[i], route[i + 1]); }));
            for (std::size_t other = 0; other < edge; ++other) {
                if (graph.edges[other].to == graph.edges[edge].to || graph.edges[other].from == graph.edges[edge].from)
                    continue; // which have a part of their way in common
                const std::vector<GraphPoint>& second = layout.routes[other];
                for (std::size_t i = 0; i + 1 < route.size(); ++i)
                    for (std::size_t k = 0; k + 1 < second.size(); ++k)
                        ASSERT_FALSE(LieOnEachOther(route[i], route[i + 1], second[k], second[k + 1]))
                            << round << ": edges " << other << " and " << edge;
            }
        }
        EXPECT_EQ(LayOut(graph, sizes).routes, layout.routes) << "the same each time";
    }
}

TEST(GraphLayout, ReadsFromLeftToRight) {
    const GraphEngine engine("mbf21");
    const StateGraph graph = engine.Of(RecordKind::Thing, imp);
    const GraphLayout layout = LayOut(graph, {});
    const auto place = [&](int state) { return layout.places[*graph.Find({TargetKind::State, state})]; };
    const std::vector<std::pair<int, int>> runs{{442, 443}, {444, 451}, {455, 456}, {452, 454},
                                                {457, 461}, {462, 469}, {470, 474}};
    for (std::size_t run = 0; run < runs.size(); ++run)
        for (int state = runs[run].first; state <= runs[run].second; ++state) {
            EXPECT_EQ(place(state).row, static_cast<int>(run)) << state;
            EXPECT_EQ(place(state).column, state - runs[run].first);
        }
}

} // namespace
} // namespace plinket3::test
