#include "patch/ThingLook.h"

#include "patch/modTableDef.h"

#include <cstdint>

namespace plinket3 {

namespace {

// Of a thing's bits.
constexpr int shadowBit = 18, playerColourBit = 26, translucentBit = 31;
constexpr std::uint32_t playerColourMask = 3;

} // namespace

GameLook LookOf(const EngineConfiguration& engine, const ThingRecord* thing, const StateRecord& state) {
    GameLook look;
    look.fullBright = (state.subnumber & litBit) != 0;
    if (thing == nullptr)
        return look;
    const auto bits = static_cast<std::uint32_t>(thing->bits);
    look.fuzzy = (bits >> shadowBit & 1) != 0;
    look.translation = static_cast<int>(bits >> playerColourBit & playerColourMask);
    const bool glass = engine.flagNames.size() > translucentBit && engine.flagNames[translucentBit] == "TRANSLUCENT";
    look.translucent = glass && look.translation == 0 && (bits >> translucentBit & 1) != 0;
    return look;
}

} // namespace plinket3
