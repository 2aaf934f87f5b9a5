#include "patch/StateWalk.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <unordered_set>

namespace plinket3 {

namespace {

constexpr std::string_view chanceName = "chance";
/// Names a state of the flash, not one for what runs through the states.
constexpr std::string_view flashAction = "GunFlashTo";
/// Longer ways that take no time are taken for endless ones: chance may lead out of a circle at any round.
constexpr std::size_t mostAtOnce = 20'000;

} // namespace

bool LeadsToItsState(const EngineConfiguration::Action& action) { return action.mnemonic != flashAction; }

std::optional<StateJump> JumpOf(const EngineConfiguration& engine, const StateRecord& state) {
    const EngineConfiguration::Action* action = engine.ActionOf(state.codePointer);
    if (action == nullptr || action->arguments.empty() || !LeadsToItsState(*action))
        return std::nullopt;
    std::optional<std::int32_t> target, chance;
    for (const StateArgument& argument : ArgumentsOf(engine.dialect, *action)) {
        const std::int32_t number = ArgumentOf(state, argument).value_or(argument.facts->standard);
        if (IsState(argument))
            target = number;
        else if (argument.facts->name == chanceName)
            chance = std::clamp(number, 0, certainChance);
    }
    return target && chance != 0 ? std::optional(StateJump{*target, chance}) : std::nullopt;
}

JumpChoice StateWalk::Choice(std::int32_t state) const {
    const auto found = choices_.find(state);
    return found == choices_.end() ? JumpChoice() : found->second;
}

std::optional<std::int32_t> StateWalk::JumpFrom(std::int32_t state, const StateRecord& record) const {
    const auto [at, target] = Choice(state);
    if (at == AtJump::Engine) {
        const std::vector<EngineJump> jumps = EngineJumpsOf(session_, record, owner_);
        return std::ranges::find(jumps, target, &EngineJump::target) != jumps.end() ? std::optional(target)
                                                                                    : std::nullopt;
    }
    const auto jump = at == AtJump::GoOn ? std::nullopt : JumpOf(session_.engine, record);
    if (!jump)
        return std::nullopt;
    const bool made =
        at == AtJump::Jump || (jump->chance && (*jump->chance == certainChance || dice_() < *jump->chance));
    return made ? std::optional(jump->target) : std::nullopt;
}

void StateWalk::Start(std::int32_t state) {
    state_.reset();
    tic_ = 0;
    Enter(state);
}

void StateWalk::Tic() {
    entered_.clear();
    if (end_ != End::None)
        return;
    ++tic_;
    if (tic_ <= duration_)
        return;
    const StateRecord* shown = session_.patch.current.states.Find(*state_); // it may be removed meanwhile
    Enter(shown != nullptr ? shown->nextState : *state_);
}

void StateWalk::Enter(std::int32_t state) {
    entered_.clear();
    end_ = End::None;
    for (;;) {
        const StateRecord* record = session_.patch.current.states.Find(state);
        if (state == 0 || record == nullptr || entered_.size() == mostAtOnce) {
            end_ = state == 0 ? End::Removed : record == nullptr ? End::NoState : End::NoTime;
            return;
        }
        entered_.push_back(state);
        if (const auto jump = JumpFrom(state, *record)) {
            state = *jump;
        } else if (record->duration == 0) {
            state = record->nextState;
        } else {
            state_ = state;
            tic_ = 1;
            duration_ = record->duration;
            end_ = duration_ < 0 ? End::ForEver : End::None;
            return;
        }
    }
}

std::optional<std::int64_t> StraightRun::BeginOf(std::int32_t state) const {
    const auto found = std::ranges::find(shown, state, &Step::state);
    return found == shown.end() ? std::nullopt : std::optional(found->begins);
}

StraightRun StraightRunFrom(const Session& session, std::int32_t state) {
    const PatchSet& set = session.patch.current;
    constexpr std::int32_t noLuck = std::numeric_limits<std::int32_t>::max();
    StraightRun run;
    std::unordered_map<std::int32_t, std::int64_t> begins;
    StateWalk walk(session, [] { return noLuck; });
    for (walk.Start(state);; walk.Start(set.states.Find(*walk.State())->nextState)) {
        const bool shows = walk.Ended() == StateWalk::End::None || walk.Ended() == StateWalk::End::ForEver;
        if (!shows) {
            run.end = walk.Ended();
            return run;
        }
        if (const auto [known, isNew] = begins.try_emplace(*walk.State(), run.tics); !isNew) {
            run.back = known->second;
            return run;
        }
        run.shown.push_back({*walk.State(), run.tics});
        if (walk.Ended() == StateWalk::End::ForEver) {
            run.end = StateWalk::End::ForEver;
            return run;
        }
        run.tics += set.states.Find(*walk.State())->duration;
    }
}

std::vector<std::int32_t> ReachOf(const Session& session, std::int32_t state, const std::optional<Target>& owner) {
    const PatchSet& set = session.patch.current;
    std::vector<std::int32_t> reach;
    std::unordered_set<std::int32_t> met;
    const auto meet = [&](std::int32_t to) {
        if (to != 0 && set.states.Has(to) && met.insert(to).second)
            reach.push_back(to);
    };
    meet(state);
    for (std::size_t at = 0; at < reach.size(); ++at) {
        const StateRecord& record = *set.states.Find(reach[at]);
        const auto jump = JumpOf(session.engine, record);
        if (jump)
            meet(jump->target);
        for (const EngineJump& each : EngineJumpsOf(session, record, owner))
            meet(each.target);
        if ((!jump || jump->chance != certainChance) && record.duration >= 0)
            meet(record.nextState);
    }
    return reach;
}

} // namespace plinket3
