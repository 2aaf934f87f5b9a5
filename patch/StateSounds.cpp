#include "patch/StateSounds.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace plinket3 {

namespace {

struct SoundOfThing {
    std::string_view action;
    std::int32_t ThingRecord::*sound;
    std::int32_t chance = certainChance;
};
/// Actions that play a sound of the thing that calls them, whatever it meets.
constexpr SoundOfThing soundsOfThings[]{
    {"Pain", &ThingRecord::painSound},
    {"Scream", &ThingRecord::deathSound},
    {"Chase", &ThingRecord::actionSound, 3},
    {"SkullAttack", &ThingRecord::attackSound},
    {"BetaSkullAttack", &ThingRecord::attackSound},
    {"MonsterBulletAttack", &ThingRecord::attackSound},
};

struct SoundOfField {
    std::int32_t ThingRecord::*field;
    std::int32_t ThingRecord::*sound;
    std::string_view action; // whose routine makes it go there
};
constexpr SoundOfField soundsOfStarts[]{
    {&ThingRecord::firstMovingState, &ThingRecord::alertSound, "Look"},
    {&ThingRecord::closeAttackState, &ThingRecord::attackSound, "Chase"},
};

/// Actions that launch the thing of an argument.
constexpr std::array<std::string_view, 2> launchers{"MonsterProjectile", "WeaponProjectile"};

/// In the words of the table: whether a sound is played at each call, or at each hit, which is taken to be one.
bool IsHeard(std::string_view what) {
    return what == "plays" || what == "plays everywhere" || what == "plays on a hit" || what.starts_with("plays; ");
}

bool IsOf(const FixedUse& use, TargetKind kind, std::int32_t action) {
    return use.target.kind == kind && use.action == action;
}

std::optional<std::int32_t> Heard(std::int32_t sound) { return sound > 0 ? std::optional(sound) : std::nullopt; }

/// One of the sounds that an action plays in the place of `sound` by turns of chance; mostly itself.
std::optional<std::int32_t> Varied(const Session& session, std::int32_t sound, std::int32_t action, const Dice& dice) {
    const auto& uses = session.fixedUses;
    const auto own = std::ranges::find_if(uses, [&](const FixedUse& use) {
        return IsOf(use, TargetKind::Sound, action) && use.target.number == sound && !IsHeard(use.what);
    });
    if (own == uses.end())
        return Heard(sound);
    std::vector<std::int32_t> variants;
    for (const FixedUse& use : uses)
        if (IsOf(use, TargetKind::Sound, action) && use.what == own->what)
            variants.push_back(use.target.number);
    return variants[static_cast<std::size_t>(dice()) % variants.size()];
}

std::optional<std::int32_t> AlertOf(const PatchSet& set, std::int32_t thing) {
    const ThingRecord* launched = set.things.Find(thing);
    return launched != nullptr ? Heard(launched->alertSound) : std::nullopt;
}

/// By an argument: a sound, but for one that goes with a jump, or a thing that is launched.
std::optional<std::int32_t> SoundOfArguments(const Session& session, const EngineConfiguration::Action& action,
                                             const StateRecord& state) {
    const std::vector<StateArgument> arguments = ArgumentsOf(session.engine.dialect, action);
    if (std::ranges::any_of(arguments, IsState))
        return std::nullopt;
    const bool launches = std::ranges::find(launchers, action.mnemonic) != launchers.end();
    for (const StateArgument& argument : arguments) {
        const std::int32_t number = ArgumentOf(state, argument).value_or(argument.facts->standard);
        const auto sound = argument.facts->kind == EngineConfiguration::Argument::Kind::Sound ? Heard(number)
                           : launches && IsThing(argument) && number > 0 ? AlertOf(session.patch.current, number - 1)
                                                                         : std::nullopt;
        if (sound)
            return sound;
    }
    return std::nullopt;
}

std::optional<std::int32_t> FixedSound(const Session& session, std::int32_t action) {
    std::optional<std::int32_t> launched;
    for (const FixedUse& use : session.fixedUses)
        if (IsOf(use, TargetKind::Sound, action) && IsHeard(use.what))
            return use.target.number;
        else if (IsOf(use, TargetKind::Thing, action) && use.what.starts_with("launches") && !launched)
            launched = AlertOf(session.patch.current, use.target.number);
    return launched;
}

} // namespace

std::optional<std::int32_t> SoundOfState(const Session& session, std::int32_t state, std::optional<std::int32_t> thing,
                                         const Dice& dice) {
    const PatchSet& set = session.patch.current;
    const StateRecord* record = set.states.Find(state);
    const EngineConfiguration::Action* action =
        record != nullptr ? session.engine.ActionOf(record->codePointer) : nullptr;
    if (action == nullptr)
        return std::nullopt;
    if (const ThingRecord* owner = thing ? set.things.Find(*thing) : nullptr)
        if (const auto row = std::ranges::find(soundsOfThings, action->mnemonic, &SoundOfThing::action);
            row != std::end(soundsOfThings) && (row->chance == certainChance || dice() < row->chance))
            return Varied(session, owner->*row->sound, action->value, dice);
    if (const auto sound = SoundOfArguments(session, *action, *record))
        return sound;
    return FixedSound(session, action->value);
}

std::optional<std::int32_t> SoundOfStart(const Session& session, std::int32_t ThingRecord::*field, std::int32_t thing,
                                         const Dice& dice) {
    const ThingRecord* record = session.patch.current.things.Find(thing);
    const auto row = std::ranges::find(soundsOfStarts, field, &SoundOfField::field);
    if (record == nullptr || row == std::end(soundsOfStarts))
        return std::nullopt;
    const auto action = session.engine.CodePointerOf(row->action);
    return action ? Varied(session, record->*row->sound, *action, dice) : Heard(record->*row->sound);
}

} // namespace plinket3
