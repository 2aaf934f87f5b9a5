#pragma once

#include "patch/FixedUses.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace plinket3 {

/// How a state leads to another one, or to a thing.
enum class EdgeKind : std::uint8_t {
    Next,     // when its time is over
    Jump,     // its action goes to a state that an argument names
    Argument, // its action starts a state or makes a thing that an argument names
    Engine,   // its action goes there by the game's own code
    Never     // as the next state, but its time is never over
};
inline constexpr std::size_t edgeKinds = 5;

/// The states that a thing or weapon comes to and how they lead to each other. Things that they make stand in it, too,
/// but none of what these come to.
struct StateGraph {
    struct Node {
        Target target;         // a state or a thing
        bool reached = true;   // by the fields of the thing or weapon, over edges that are taken
        bool timeless = false; // in a circle of states of 0 tics, in which games hang
    };
    struct Edge {
        std::size_t from = 0, to = 0; // places in `nodes`
        EdgeKind kind = EdgeKind::Next;
        std::string words; // what the argument is called, or what the game does; empty for next states
    };
    /// A field of the thing or weapon that names a state.
    struct Entry {
        std::size_t node = 0;
        Cell field;
    };
    std::vector<Node>
        nodes; // by their distance from the entries; at last those that lead here but that nothing reaches
    std::vector<Edge> edges; // by the nodes that they come from; none is there twice
    std::vector<Entry> entries;
    std::size_t all = 0; // how many nodes there would be without a limit

    /// The place of a node; absent for what the graph does not show.
    std::optional<std::size_t> Find(const Target& target) const;
};

/// That of a thing or weapon as the patch has it, with at most `most` nodes, the nearest ones. States that lead here
/// though nothing reaches them are in it where that is the patch's doing. Empty for a record that there is not.
StateGraph GraphOf(const PatchData& patch, const EngineConfiguration& engine, std::span<const FixedUse> fixedUses,
                   RecordKind kind, std::int32_t number, std::size_t most);

/// The thing or weapon that comes to a state on the shortest way; absent when none does.
std::optional<RecordId> NearestUser(const PatchSet& set, const EngineConfiguration& engine, std::int32_t state);

} // namespace plinket3
