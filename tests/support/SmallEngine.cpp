#include "tests/support/SmallEngine.h"

#include "patch/Cells.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <array>

namespace plinket3::test {

EngineConfiguration SmallEngine(bool extended) {
    EngineConfiguration engine;
    engine.name = "Small";
    engine.fileName = "small.cfg";
    engine.table = "small.tbl";
    engine.version = 19;
    engine.dialect = Dialect::Of(extended);
    engine.flagNames = {"SPECIAL", "SOLID", "FLOAT", "INFLOAT"};
    engine.codePointerStates = {1, 2, 3, 5};
    std::int32_t value = 0;
    for (const char* mnemonic : {"NULL", "Light0", "Fire", "Last", "Spare"}) {
        engine.mnemonicByValue[value] = mnemonic;
        engine.valueByMnemonic[mnemonic] = value++;
    }
    if (extended)
        engine.strings = {{"GOTARMOR", "Armor."}, {"E1TEXT", R"(one\ntwo)"}, {"QUIT", "Quit?"}};
    return engine;
}

EngineConfiguration SmallMbf21Engine() {
    EngineConfiguration engine = SmallEngine(true);
    engine.dialect.engineRulesOnly = true;
    engine.dialect.engineFields = FieldLevel::Mbf21;
    engine.dialect = engine.dialect.By(Rules::Kept);
    engine.laterBits = {{{}, {{"LOGRAV", "RIP"}, {}}, {{"SKILL5FAST"}, {}}, {{"NOTHRUST", "SILENT"}, {}}}};
    using Kind = EngineConfiguration::Argument::Kind;
    for (const auto& [value, mnemonic] : engine.mnemonicByValue)
        engine.actions.push_back({value, mnemonic, ""});
    std::ranges::sort(engine.actions, {}, &EngineConfiguration::Action::value);
    engine.actions[2].arguments = {{"Unknown 1", "type", Kind::Thing, 0, "", ""}};
    engine.actions[3].arguments = {{"Args1", "state", Kind::State, 0, "", ""},
                                   {"Args2", "sound", Kind::Sound, 0, "", ""},
                                   {"Args3", "dice", Kind::Number, 3, "the engine crashes", ""}};
    return engine;
}

EngineConfiguration SmallId24Engine() {
    EngineConfiguration engine = SmallMbf21Engine();
    engine.dialect.unlimited = true;
    engine.dialect.engineFields = FieldLevel::Id24;
    engine.dialect = engine.dialect.By(Rules::Kept);
    engine.laterBits[static_cast<std::size_t>(BitSet::Things24)] = {{"NORESPAWN"}, {}};
    engine.pickupItems = {{-1, "none"}, {0, "message"}};
    engine.pickupCategories = {{-1, "none"}, {0, "clip"}};
    return engine;
}

PatchSet SmallDefaults(const EngineConfiguration& engine) {
    PatchSet set;
    for (const char* name : {"Player", "Zombie Man", "Imp"})
        set.things.emplace_back().name = name;
    set.things[0].hitPoints = 100;
    set.states.resize(6);
    for (std::size_t state = 0; state < set.states.size(); ++state) {
        set.states[state].action = std::array{0, 1, 2, 2, 0, 3}[state];
        set.states[state].codePointer = set.states[state].action;
    }
    set.sounds.resize(4);
    set.sounds[1].name = {'p', 'i', 's', 't', 'o', 'l'};
    set.sounds[2].name = {'p', 'u', 'n', 'c', 'h', ' '};
    set.sounds[3].name = {'b', 'f', 'g', '\0', '\0', '\0'};
    set.sprites = {{{'T', 'R', 'O', 'O'}, 10}, {{'S', 'H', 'T', 'G'}, 11}, {{'P', 'U', 'N', 'G'}, 12}};
    for (const char* name : {"Fist", "Pistol"})
        set.weapons.emplace_back().name = name;
    set.ammo = {{{200, 10}, "Bullets"}, {{50, 4}, "Shells"}};
    set.cheats.resize(cheatLabels.size());
    set.cheats[0] = {6, "idmus", 0};
    set.misc.initialHealth = 100;
    set.misc.bfgCells = 40;
    set.misc.monstersInfight = monstersDoNotFight;
    DeriveMisc(set.misc);
    if (engine.dialect.IsExtended()) {
        for (const EngineConfiguration::String& string : engine.strings)
            set.strings.push_back({0, 0, modPatchText::UnescapeText(string.text)});
    } else {
        for (const char* text : {"demo1", "one\ntwo", "twice", "twice"})
            set.strings.push_back({0, 0, text});
    }
    for (StringRecord& string : set.strings.Dense())
        string.length = static_cast<std::int32_t>(string.text.size());
    if (engine.dialect.engineFields >= FieldLevel::Id24) {
        ThingRecord& ghoul = set.things.Add(firstNegative);
        ghoul.name = "Ghoul";
        ghoul.id = -28672;
        ghoul.initialState = firstNegative;
        set.states.Add(firstNegative).sprite = firstNegative;
        set.sounds.Add(firstNegative).name = {'g', 'h', 'l', 'a', 'c', 't'};
        set.sprites.Add(firstNegative).name = {'G', 'H', 'U', 'L'};
        set.weapons.Add(firstNegative).name = "Flamer";
        set.ammo.Add(firstNegative).name = "Fuel";
        WriteCell(set, {RecordKind::Weapon, 1, TextCell(3)}, "SMPISG");
    }
    return set;
}

PatchData SmallPatch(const EngineConfiguration& engine) {
    PatchData patch;
    patch.defaults = SmallDefaults(engine);
    patch.current = patch.defaults;
    patch.doomVersion = engine.version;
    patch.engineConfig = engine.fileName;
    patch.iwadPath = "doom2.wad";
    return patch;
}

} // namespace plinket3::test
