#include "patch/StateWalk.h"

#include <algorithm>
#include <string_view>

namespace plinket3 {

namespace {

constexpr std::uint8_t timesThroughALoop = 2;
constexpr std::int32_t certain = 256; // chances are out of so many
constexpr std::string_view chanceName = "chance";
/// Names a state of the flash, not one for what runs through the states.
constexpr std::string_view flashAction = "GunFlashTo";

} // namespace

bool LeadsToItsState(const EngineConfiguration::Action& action) { return action.mnemonic != flashAction; }

std::optional<std::int32_t> StateWalk::Start(std::int32_t state) {
    timesEntered_.clear();
    return Enter(state);
}

std::optional<std::int32_t> StateWalk::After(std::int32_t state) {
    const StateRecord* record = set_.states.Find(state);
    if (record == nullptr || record->duration < 0)
        return std::nullopt;
    return Enter(record->nextState);
}

std::vector<std::int32_t> StateWalk::Shown(std::int32_t state) {
    std::vector<std::int32_t> shown;
    for (auto next = Start(state); next; next = After(*next))
        if (std::ranges::find(shown, *next) == shown.end())
            shown.push_back(*next);
    return shown;
}

/// As none is entered more than twice, this ends.
std::optional<std::int32_t> StateWalk::Enter(std::int32_t state) {
    for (;;) {
        const StateRecord* record = set_.states.Find(state);
        if (state == 0 || record == nullptr || timesEntered_[state] == timesThroughALoop)
            return std::nullopt;
        const bool again = timesEntered_[state]++ > 0;
        if (const auto target = Jump(*record, again))
            state = *target;
        else if (record->duration == 0)
            state = record->nextState;
        else
            return state;
    }
}

/// Where the action of a state leads to; absent when it leads nowhere.
std::optional<std::int32_t> StateWalk::Jump(const StateRecord& state, bool again) const {
    const EngineConfiguration::Action* action = engine_.ActionOf(state.codePointer);
    if (action == nullptr || action->arguments.empty() || !LeadsToItsState(*action))
        return std::nullopt;
    const std::vector<StateArgument> arguments = ArgumentsOf(engine_.dialect, *action);
    std::optional<std::int32_t> target;
    bool jumps = again;
    for (const StateArgument& argument : arguments) {
        const std::int32_t number = ArgumentOf(state, argument).value_or(argument.facts->standard);
        if (IsState(argument))
            target = number;
        else if (argument.facts->name == chanceName)
            jumps = number >= certain || (number > 0 && again);
    }
    return jumps ? target : std::nullopt;
}

} // namespace plinket3
