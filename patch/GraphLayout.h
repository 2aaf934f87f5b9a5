#pragma once

#include "patch/StateGraph.h"

#include <cstddef>
#include <vector>

namespace plinket3 {

/// How large the parts of a drawing are, in any unit.
struct GraphSizes {
    double boxWidth = 100, boxHeight = 80;
    double gap = 30;  // between two boxes that no arrow passes
    double lane = 8;  // more for each arrow that does
    int columns = 14; // boxes in a row, at most; longer runs go on below
};

struct GraphPoint {
    double x = 0, y = 0;
    bool operator==(const GraphPoint&) const = default;
};

/// Where boxes and arrows of a graph stand. Each entry begins a row; states that follow each other run from left to
/// right, and what else they lead to stands below. Arrows go around boxes: along the gaps, those to one target by one
/// way in common.
struct GraphLayout {
    struct Place {
        int row = 0, column = 0;
    };
    std::vector<Place> places;                   // by node
    std::vector<GraphPoint> corners;             // by node: the upper left one of its box
    std::vector<std::vector<GraphPoint>> routes; // by edge: from box to box, level and upright by turns
    double width = 0, height = 0;                // from (0, 0) on
};

/// Lays out a graph of any size, in the same way each time.
GraphLayout LayOut(const StateGraph& graph, const GraphSizes& sizes);

} // namespace plinket3
