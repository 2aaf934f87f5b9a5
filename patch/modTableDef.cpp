#include "patch/modTableDef.h"

#include <algorithm>
#include <array>

namespace plinket3 {

namespace {

/// An amount of ammunition is another one, multiplied and divided, rounded down.
struct AmountRule {
    std::int32_t AmmoNumbers::*amount;
    std::int32_t AmmoNumbers::*from;
    std::int64_t times = 1, part = 1;
};
constexpr std::array amountRules{
    AmountRule{&AmmoRecord::maxUpgradedAmmo, &AmmoRecord::maxAmmo, 2},
    AmountRule{&AmmoRecord::boxAmmo, &AmmoRecord::perAmmo, 5},
    AmountRule{&AmmoRecord::backpackAmmo, &AmmoRecord::perAmmo},
    AmountRule{&AmmoRecord::weaponAmmo, &AmmoRecord::perAmmo, 2},
    AmountRule{&AmmoRecord::droppedAmmo, &AmmoRecord::perAmmo, 1, 2},
    AmountRule{&AmmoRecord::droppedBoxAmmo, &AmmoRecord::boxAmmo, 1, 2},
    AmountRule{&AmmoRecord::droppedBackpackAmmo, &AmmoRecord::backpackAmmo, 1, 2},
    AmountRule{&AmmoRecord::droppedWeaponAmmo, &AmmoRecord::weaponAmmo, 1, 2},
    AmountRule{&AmmoRecord::deathmatchWeaponAmmo, &AmmoRecord::perAmmo, 5},
};

} // namespace

std::optional<std::int32_t> DerivedAmount(const AmmoRecord& ammo, const Field<AmmoRecord>& field) {
    const auto* rule = std::ranges::find_if(amountRules, [&](const AmountRule& each) {
        return field.member == static_cast<std::int32_t AmmoRecord::*>(each.amount);
    });
    if (rule == amountRules.end())
        return std::nullopt;
    const Field<AmmoRecord>& from = FieldOf(rule->from);
    const FieldValue given = ValueOf(ammo, from);
    const std::int64_t amount = given ? *given : DerivedAmount(ammo, from).value_or(0);
    return static_cast<std::int32_t>(amount * rule->times / rule->part); // as engines wrap it
}

void DeriveMisc(MiscRecord& misc) {
    for (const Field<MiscRecord>& field : fieldsOf<MiscRecord>)
        if (field.secondCopy != nullptr)
            misc.*field.secondCopy = misc.*field.member;
    misc.spare2 = misc.spare1 == misc.bfgCells ? 255 : 0;
}

} // namespace plinket3
