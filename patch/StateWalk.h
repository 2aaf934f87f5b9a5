#pragma once

#include "patch/Arguments.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace plinket3 {

/// Whether the state that an argument of the action names is where the action leads to; another one is for what the
/// action starts.
bool LeadsToItsState(const EngineConfiguration::Action& action);

/// Goes through states as a game does: to the state that follows, or to one that an argument of the action names. A
/// jump that is up to chance, or to something that only a game knows, is not made the first time but the second. Ends
/// where the states come to an end (state 0), and before a state is entered for the third time.
class StateWalk {
public:
    /// Both must outlive the walk; the set may change meanwhile.
    StateWalk(const PatchSet& set, const EngineConfiguration& engine) : set_(set), engine_(engine) {}

    /// Begins anew at a state and returns the first that is shown: states of no duration are passed at once, and so are
    /// those whose jump is made. Absent when none is.
    std::optional<std::int32_t> Start(std::int32_t state);
    /// The one that is shown behind `state`.
    std::optional<std::int32_t> After(std::int32_t state);
    /// All that are shown from a state on, each once, in the order in which they are first.
    std::vector<std::int32_t> Shown(std::int32_t state);

private:
    std::optional<std::int32_t> Enter(std::int32_t state);
    std::optional<std::int32_t> Jump(const StateRecord& state, bool again) const;

    const PatchSet& set_;
    const EngineConfiguration& engine_;
    std::unordered_map<std::int32_t, std::uint8_t> timesEntered_;
};

} // namespace plinket3
