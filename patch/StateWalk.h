#pragma once

#include "patch/Arguments.h"
#include "patch/EngineJumps.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

namespace plinket3 {

/// Whether the state that an argument of the action names is where the action leads to; another one is for what the
/// action starts.
bool LeadsToItsState(const EngineConfiguration::Action& action);

/// That the action of a state leads to another one than the next.
struct StateJump {
    std::int32_t target = 0;
    std::optional<std::int32_t> chance; // out of `certainChance`; absent when only a game knows whether it jumps
    bool operator==(const StateJump&) const = default;
};
inline constexpr std::int32_t certainChance = 256;

/// Where a state's action may jump to; absent when it never does. The flash of a weapon is no jump.
std::optional<StateJump> JumpOf(const EngineConfiguration& engine, const StateRecord& state);

/// A number from 0 to 255, as games roll their dice.
using Dice = std::function<std::int32_t()>;

/// What is done where a state may jump. By chance means by the argument's, and not to jump where only a game knows; an
/// engine's jump is one of `EngineJumpsOf`.
enum class AtJump : std::uint8_t { ByChance, GoOn, Jump, Engine };
struct JumpChoice {
    AtJump at = AtJump::ByChance;
    std::int32_t target = 0; // of the engine's jump
    bool operator==(const JumpChoice&) const = default;
};

/// Goes through states as a game does, a tic after the other. States of no duration are passed at once, and so are
/// those whose jump is made. A loop does not end it.
class StateWalk {
public:
    enum class End : std::uint8_t {
        None,
        Removed, // state 0 was reached
        ForEver, // a state that lasts for ever is shown
        NoState, // a number that no state has was reached
        NoTime   // states of no duration go round
    };
    /// `session` must outlive the walk; its patch may change meanwhile.
    StateWalk(const Session& session, Dice dice) : session_(session), dice_(std::move(dice)) {}

    /// The thing or weapon that goes through the states; at first none.
    void Owner(const std::optional<Target>& owner) { owner_ = owner; }
    /// What to do at the jumps of a state from now on, until `ForgetChoices`. A jump that there is no longer is not
    /// made.
    void Choose(std::int32_t state, JumpChoice choice) { choices_[state] = choice; }
    JumpChoice Choice(std::int32_t state) const;
    void ForgetChoices() { choices_.clear(); }

    /// Begins anew with the first tic of a state.
    void Start(std::int32_t state);
    /// A tic goes by. Nothing happens once it has ended.
    void Tic();

    End Ended() const { return end_; }
    /// The state that is shown; the last one that was, when it has ended; absent when none was.
    std::optional<std::int32_t> State() const { return state_; }
    /// From 1, since the state was entered.
    std::int32_t TicOfState() const { return tic_; }
    /// The states that were entered when this tic began, shown or passed, in order.
    const std::vector<std::int32_t>& Entered() const { return entered_; }

private:
    void Enter(std::int32_t state);
    std::optional<std::int32_t> JumpFrom(std::int32_t state, const StateRecord& record) const;

    const Session& session_;
    Dice dice_;
    std::optional<Target> owner_;
    std::unordered_map<std::int32_t, JumpChoice> choices_;
    End end_ = End::None;
    std::optional<std::int32_t> state_;
    std::int32_t tic_ = 0, duration_ = 0;
    std::vector<std::int32_t> entered_;
};

/// How playing goes from a state on when no jump is made but those that are certain.
struct StraightRun {
    struct Step {
        std::int32_t state = 0;
        std::int64_t begins = 0; // after so many tics
    };
    std::vector<Step> shown;                   // each once
    std::int64_t tics = 0;                     // until it comes round or ends
    std::int64_t back = 0;                     // tics before the state that it comes round to
    StateWalk::End end = StateWalk::End::None; // None when it comes round

    /// Absent for a state that is not shown.
    std::optional<std::int64_t> BeginOf(std::int32_t state) const;
};
StraightRun StraightRunFrom(const Session& session, std::int32_t state);

/// All states that the thing or weapon can enter from one on, whichever jumps are made, in the order in which they are
/// found.
std::vector<std::int32_t> ReachOf(const Session& session, std::int32_t state, const std::optional<Target>& owner);

} // namespace plinket3
