#include "patch/WeaponView.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace plinket3 {

namespace {

// Shows the weapon's flash state behind the one in which it shoots first.
constexpr std::string_view chaingun = "FireCGun";
constexpr std::int32_t firstChaingunState = 52; // from which the engine counts
constexpr std::string_view flashTo = "GunFlashTo";
constexpr std::array<std::string_view, 5> flashActions{"GunFlash", "FirePistol", "FireShotgun", "FireShotgun2",
                                                       "FirePlasma"};
/// Each by its place lightens the view.
constexpr std::array<std::string_view, 3> lightActions{"Light0", "Light1", "Light2"};

/// The state with which a flash begins when a state's action is done; absent when it begins none.
std::optional<std::int32_t> FlashOf(const EngineConfiguration& engine, const WeaponRecord& weapon, std::int32_t number,
                                    const StateRecord& state) {
    const std::string* action = engine.MnemonicOf(state.codePointer);
    if (action == nullptr)
        return std::nullopt;
    if (*action == flashTo)
        return state.arg1;
    if (*action == chaingun)
        return static_cast<std::int32_t>(std::int64_t{weapon.firingState} + number - firstChaingunState);
    if (std::ranges::find(flashActions, *action) != flashActions.end())
        return weapon.firingState;
    return std::nullopt;
}

void Lighten(WeaponView& view, const EngineConfiguration& engine, const StateRecord& state) {
    const std::string* action = engine.MnemonicOf(state.codePointer);
    const auto found = action == nullptr ? lightActions.end() : std::ranges::find(lightActions, *action);
    if (found != lightActions.end())
        view.light = static_cast<int>(found - lightActions.begin());
}

/// What is `tics` after a flash began with `state`: the state that it shows, 0 when it is over, and its light.
void Flash(WeaponView& view, const PatchSet& set, const EngineConfiguration& engine, std::int32_t state,
           std::int64_t tics) {
    constexpr int longestRun = 1000; // states; no flash comes near, but a circle has no end
    for (int passed = 0; passed < longestRun && state != 0; ++passed) {
        const StateRecord* record = set.states.Find(state);
        if (record == nullptr)
            break;
        Lighten(view, engine, *record);
        if (record->duration < 0 || record->duration > tics) {
            view.flash = state;
            break;
        }
        tics -= record->duration;
        state = record->nextState;
    }
}

void Place(WeaponView& view, const StateRecord& state) {
    if (state.unknown1 == 0)
        return;
    view.x = static_cast<std::int16_t>(state.unknown1); // games shift the rest out
    view.y = static_cast<std::int16_t>(state.unknown2);
}

} // namespace

WeaponView ViewOfWeapon(const PatchSet& set, const EngineConfiguration& engine, std::int32_t weapon,
                        std::int32_t state) {
    WeaponView view;
    const WeaponRecord* record = set.weapons.Find(weapon);
    const StateRecord* shown = set.states.Find(state);
    if (record == nullptr || shown == nullptr)
        return view;
    std::int32_t flash = 0;
    std::int64_t sinceFlash = 0;
    std::set<std::int32_t> seen;
    std::int32_t at = record->shootingState;
    while (const StateRecord* next = at == 0 || !seen.insert(at).second ? nullptr : set.states.Find(at)) {
        const std::string* action = engine.MnemonicOf(next->codePointer);
        if (action != nullptr && *action == "WeaponReady")
            break;
        Place(view, *next);
        Lighten(view, engine, *next);
        if (const auto begun = FlashOf(engine, *record, at, *next)) {
            flash = *begun;
            sinceFlash = 0;
        }
        if (at == state) {
            Flash(view, set, engine, flash, sinceFlash);
            return view;
        }
        sinceFlash += std::max(next->duration, 0);
        at = next->nextState;
    }
    view = {};
    Place(view, *shown);
    Lighten(view, engine, *shown);
    return view;
}

} // namespace plinket3
