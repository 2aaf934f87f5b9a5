#include "patch/EngineJumps.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace plinket3 {

namespace {

template <class Record> struct JumpByField {
    std::string_view action;
    std::int32_t Record::*field;
    std::string_view when;
};
constexpr JumpByField<ThingRecord> jumpsOfThings[]{
    {"Look", &ThingRecord::firstMovingState, "a target is found"},
    {"Chase", &ThingRecord::closeAttackState, "the target is near"},
    {"Chase", &ThingRecord::farAttackState, "it attacks from afar"},
    {"Chase", &ThingRecord::initialState, "there is no target"},
    {"CPosRefire", &ThingRecord::firstMovingState, "the target is dead or out of sight"},
    {"SpidRefire", &ThingRecord::firstMovingState, "the target is dead or out of sight"},
};
constexpr JumpByField<WeaponRecord> jumpsOfWeapons[]{
    {"WeaponReady", &WeaponRecord::shootingState, "fire is pressed"},
    {"WeaponReady", &WeaponRecord::selectState, "another weapon is chosen"},
    {"ReFire", &WeaponRecord::shootingState, "fire is held"},
    {"Lower", &WeaponRecord::deselectState, "it is all the way down and comes up again"},
    {"Raise", &WeaponRecord::bobbingState, "it is all the way up"},
};

/// Actions that do what another one does, too.
constexpr std::array<std::pair<std::string_view, std::string_view>, 6> sameJumps{{{"VileChase", "Chase"},
                                                                                  {"HealChase", "Chase"},
                                                                                  {"Hoof", "Chase"},
                                                                                  {"Metal", "Chase"},
                                                                                  {"BabyMetal", "Chase"},
                                                                                  {"CloseShotgun2", "ReFire"}}};
/// The only one that enters a state by its number; the numbers of others are those of a flash or of other things.
constexpr std::string_view entersByNumber = "VileChase";
constexpr std::string_view entered = "entered when ";

} // namespace

bool EntersIt(const FixedUse& use) {
    return use.target.kind == TargetKind::State && use.what.starts_with("entered") &&
           !use.what.starts_with("entered by");
}

std::vector<EngineJump> EngineJumpsOf(const Session& session, const StateRecord& state,
                                      const std::optional<Target>& owner) {
    const PatchSet& set = session.patch.current;
    const EngineConfiguration::Action* action = session.engine.ActionOf(state.codePointer);
    std::vector<EngineJump> jumps;
    if (action == nullptr || !owner)
        return jumps;
    const auto add = [&](std::int32_t target, std::string_view when) {
        if (target == 0 || !set.states.Has(target))
            return;
        if (const auto same = std::ranges::find(jumps, target, &EngineJump::target); same != jumps.end())
            same->when.append(", ").append(when);
        else
            jumps.push_back({target, std::string(when)});
    };
    const auto addOf = [&](const auto& rows, const auto* record) {
        const auto same = std::ranges::find(sameJumps, action->mnemonic, [](const auto& each) { return each.first; });
        const std::string_view name = same == sameJumps.end() ? std::string_view(action->mnemonic) : same->second;
        for (const auto& row : rows)
            if (record != nullptr && row.action == name)
                add(record->*row.field, row.when);
    };
    if (owner->kind == TargetKind::Weapon)
        addOf(jumpsOfWeapons, set.weapons.Find(owner->number));
    if (owner->kind == TargetKind::Thing)
        addOf(jumpsOfThings, set.things.Find(owner->number));
    if (owner->kind == TargetKind::Thing && action->mnemonic == entersByNumber)
        for (const FixedUse& use : session.fixedUses)
            if (use.action == state.codePointer && EntersIt(use) && use.what.starts_with(entered))
                add(use.target.number, std::string_view(use.what).substr(entered.size()));
    return jumps;
}

} // namespace plinket3
