#include "patch/StateGraph.h"

#include "patch/EngineJumps.h"
#include "patch/FreeRecords.h"
#include "patch/StateWalk.h"
#include "patch/TimelessCircles.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace plinket3 {

namespace {

constexpr int nextField = RowOf(&StateRecord::nextState);

struct Lead {
    Target to;
    EdgeKind kind;
    std::string words;
};

/// Where states lead to.
class Leads {
public:
    Leads(const PatchSet& set, const EngineConfiguration& engine, std::span<const FixedUse> fixedUses)
        : set_(set), engine_(engine), walk_(set, engine) {
        for (const FixedUse& use : fixedUses)
            if (use.action && EntersIt(use))
                entered_.emplace(*use.action, &use);
    }

    std::vector<Lead> Of(std::int32_t state) const {
        std::vector<Lead> leads;
        walk_.ForEachOf(RecordKind::State, state, [&](const Link& link) {
            if (const auto kind = KindOf(link))
                Add(leads, {link.to, *kind, link.argument != nullptr ? link.argument->name : std::string()});
        });
        if (const StateRecord* record = set_.states.Find(state))
            for (auto [use, end] = entered_.equal_range(record->codePointer); use != end; ++use)
                Add(leads, {use->second->target, EdgeKind::Engine, use->second->what});
        return leads;
    }

    const LinkWalk& Walk() const { return walk_; }

private:
    std::optional<EdgeKind> KindOf(const Link& link) const {
        const StateRecord& from = set_.states[link.from.index];
        if (link.argument != nullptr && link.to.kind == TargetKind::Thing)
            return EdgeKind::Argument;
        if (link.to.kind != TargetKind::State)
            return std::nullopt;
        if (link.argument != nullptr)
            return LeadsToItsState(*engine_.ActionOf(from.codePointer)) ? EdgeKind::Jump : EdgeKind::Argument;
        if (link.from.field != nextField)
            return std::nullopt;
        return from.duration < 0 ? EdgeKind::Never : EdgeKind::Next;
    }

    void Add(std::vector<Lead>& leads, Lead lead) const {
        if (lead.to.IsNone() || !HasTarget(set_, engine_, lead.to))
            return;
        for (Lead& each : leads)
            if (each.to == lead.to && each.kind == lead.kind) {
                each.words += ", " + lead.words;
                return;
            }
        leads.push_back(std::move(lead));
    }

    const PatchSet& set_;
    const EngineConfiguration& engine_;
    LinkWalk walk_;
    std::multimap<std::int32_t, const FixedUse*> entered_; // by action
};

class GraphMaker {
public:
    GraphMaker(const PatchData& patch, const EngineConfiguration& engine, std::span<const FixedUse> fixedUses,
               std::size_t most)
        : set_(patch.current), defaults_(patch.defaults), engine_(engine), most_(most),
          leads_(patch.current, engine, fixedUses) {}

    StateGraph Make(RecordKind kind, std::int32_t number) {
        std::vector<std::pair<Cell, Target>> fields;
        leads_.Walk().ForEachOf(kind, number, [&](const Link& link) {
            if (link.to.kind == TargetKind::State && !link.to.IsNone() && set_.states.Has(link.to.number)) {
                fields.emplace_back(link.from, link.to);
                Add(link.to);
            }
        });
        for (std::size_t next = 0; next < targets_.size(); ++next)
            for (const Lead& lead : LeadsOf(targets_[next]))
                Add(lead.to);
        AddOthers();
        StateGraph graph;
        graph.all = targets_.size();
        graph.nodes.resize(std::min(targets_.size(), most_));
        for (std::size_t node = 0; node < graph.nodes.size(); ++node)
            graph.nodes[node].target = targets_[node];
        for (const auto& [field, target] : fields)
            if (const std::size_t node = places_.at(target); node < graph.nodes.size())
                graph.entries.push_back({node, field});
        AddEdges(graph);
        Mark(graph);
        return graph;
    }

private:
    struct TargetHash {
        std::size_t operator()(const Target& target) const {
            return static_cast<std::size_t>(static_cast<std::uint32_t>(target.number)) * 2 +
                   (target.kind == TargetKind::Thing ? 1 : 0);
        }
    };

    void Add(const Target& target) {
        if (places_.try_emplace(target, targets_.size()).second)
            targets_.push_back(target);
    }

    std::vector<Lead> LeadsOf(const Target& from) const {
        return from.kind == TargetKind::State ? leads_.Of(from.number) : std::vector<Lead>();
    }

    /// States that nothing comes to and that lead here, without those of which the engine has it so.
    void AddOthers() {
        if (targets_.empty())
            return;
        std::unordered_map<Target, std::vector<Target>, TargetHash> before;
        const std::vector<std::int32_t> freeBefore = FreeOf(defaults_);
        for (const std::int32_t state : FreeOf(set_)) {
            if (std::ranges::binary_search(freeBefore, state) && set_.states[state] == defaults_.states[state])
                continue;
            for (const Lead& lead : leads_.Of(state))
                before[lead.to].push_back({TargetKind::State, state});
        }
        for (std::size_t next = 0; next < targets_.size(); ++next)
            if (const auto found = before.find(targets_[next]); found != before.end())
                for (const Target& target : found->second)
                    Add(target);
    }

    std::vector<std::int32_t> FreeOf(const PatchSet& set) const {
        return FindFree(set, defaults_, engine_, {}, RecordKind::State).Numbers();
    }

    void AddEdges(StateGraph& graph) const {
        for (std::size_t from = 0; from < graph.nodes.size(); ++from)
            for (Lead& lead : LeadsOf(targets_[from]))
                if (const auto to = places_.find(lead.to); to != places_.end() && to->second < graph.nodes.size())
                    graph.edges.push_back({from, to->second, lead.kind, std::move(lead.words)});
    }

    void Mark(StateGraph& graph) const {
        std::unordered_set<std::int32_t> timeless;
        for (const std::vector<std::int32_t>& circle : TimelessCircles(set_))
            timeless.insert(circle.begin(), circle.end());
        std::vector<std::vector<std::size_t>> taken(graph.nodes.size());
        for (const StateGraph::Edge& edge : graph.edges)
            if (edge.kind != EdgeKind::Never)
                taken[edge.from].push_back(edge.to);
        for (StateGraph::Node& node : graph.nodes) {
            node.reached = false;
            node.timeless = node.target.kind == TargetKind::State && timeless.contains(node.target.number);
        }
        std::vector<std::size_t> toFollow;
        const auto reach = [&](std::size_t node) {
            if (!std::exchange(graph.nodes[node].reached, true))
                toFollow.push_back(node);
        };
        for (const StateGraph::Entry& entry : graph.entries)
            reach(entry.node);
        while (!toFollow.empty()) {
            const std::size_t from = toFollow.back();
            toFollow.pop_back();
            for (const std::size_t to : taken[from])
                reach(to);
        }
    }

    const PatchSet &set_, &defaults_;
    const EngineConfiguration& engine_;
    std::size_t most_;
    Leads leads_;
    std::vector<Target> targets_;
    std::unordered_map<Target, std::size_t, TargetHash> places_; // in `targets_`
};

} // namespace

std::optional<std::size_t> StateGraph::Find(const Target& target) const {
    const auto found = std::ranges::find(nodes, target, &Node::target);
    return found == nodes.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - nodes.begin()));
}

StateGraph GraphOf(const PatchData& patch, const EngineConfiguration& engine, std::span<const FixedUse> fixedUses,
                   RecordKind kind, std::int32_t number, std::size_t most) {
    return GraphMaker(patch, engine, fixedUses, most).Make(kind, number);
}

std::optional<RecordId> NearestUser(const PatchSet& set, const EngineConfiguration& engine, std::int32_t state) {
    std::unordered_map<std::int32_t, std::vector<RecordId>> before; // by state
    LinkWalk(set, engine).ForEach([&before](const Link& link) {
        if (link.to.kind == TargetKind::State && !link.to.IsNone())
            before[link.to.number].emplace_back(link.from.kind, link.from.index);
    });
    std::vector<std::int32_t> states{state};
    std::unordered_set<std::int32_t> seen{state};
    for (std::size_t next = 0; next < states.size(); ++next)
        for (const auto& [kind, number] : before[states[next]]) {
            if (kind != RecordKind::State)
                return RecordId{kind, number};
            if (seen.insert(number).second)
                states.push_back(number);
        }
    return std::nullopt;
}

} // namespace plinket3
