#include "tests/support/EveryField.h"

#include "core/Files.h"
#include "patch/Cells.h"
#include "patch/LabelIndex.h"
#include "patch/PointerTargets.h"
#include "patch/modTables.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace plinket3::test {

namespace {

void Require(const Status& status) {
    if (!status)
        throw std::runtime_error(status.Reason());
}

/// The same text with another letter in its last place, blanks and line ends aside; false when there is none.
bool ChangeLetter(std::string& text) {
    const auto isLetter = [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    };
    for (std::size_t at = text.size(); at-- > 0;) {
        // A letter behind a percent sign or a backslash has a meaning of its own.
        if (!isLetter(text[at]) || (at > 0 && (text[at - 1] == '%' || text[at - 1] == '\\')))
            continue;
        text[at] = text[at] == 'q' ? 'z' : 'q';
        return true;
    }
    return false;
}

} // namespace

PatchData BuiltEngine(const std::filesystem::path& dataFolder, const std::string& name, EngineConfiguration& engine) {
    Require(modConfig::LoadEngine(dataFolder / "config" / (name + ".cfg"), engine));
    PatchData patch;
    std::string table;
    Require(ReadWholeFile(modTables::TablePath(dataFolder, engine), table));
    Require(modTables::ParseTable(table, engine, patch.defaults));
    patch.current = patch.defaults;
    patch.doomVersion = engine.version;
    patch.engineConfig = engine.fileName;
    return patch;
}

NewValue UsableValue(const PatchSet& set) {
    const auto things = static_cast<std::int32_t>(set.things.size()),
               states = static_cast<std::int32_t>(set.states.size()),
               sounds = static_cast<std::int32_t>(set.sounds.size()),
               sprites = static_cast<std::int32_t>(set.sprites.size());
    return [=](FieldUnit unit, std::int32_t value) {
        constexpr std::int32_t shadow = 1 << 18; // a flag that no engine needs for spawning a thing
        switch (unit) {
        case FieldUnit::Flags:
            return value ^ shadow;
        case FieldUnit::Thing:
            return value % things + 1;
        case FieldUnit::State:
            return (value + 1) % states;
        case FieldUnit::Sound:
            return (value + 1) % sounds;
        case FieldUnit::Sprite:
            return (value + 1) % sprites;
        case FieldUnit::SpriteFrame:
            return value ^ litBit;
        case FieldUnit::AmmoType:
            return (value + 1) % 4;
        case FieldUnit::Infight:
            return value == monstersFight ? monstersDoNotFight : monstersFight;
        default: // a state of no duration would never end
            return value == -1 ? 5 : value + 1;
        }
    };
}

void ChangeEveryNumber(PatchSet& set, FieldLevel level, const NewValue& newValue) {
    const auto change = [&](auto& record) {
        using Record = std::remove_reference_t<decltype(record)>;
        for (const Field<Record>& field : fieldsOf<Record>)
            if (field.inPatch && field.since <= level)
                SetValue(record, field, FitWidth(field, newValue(field.unit, record.*field.member)));
    };
    VisitKinds([&](const auto& kind) {
        for (const auto& [number, record] : kind.In(set)) {
            change(record);
            if constexpr (isNamed<RecordOf<decltype(kind)>>)
                record.name += " 2";
        }
    });
    change(set.misc);
    DeriveMisc(set.misc);
}

void UseEveryAction(PatchSet& set, const EngineConfiguration& engine, std::size_t first) {
    for (const EngineConfiguration::Action& action : engine.actions)
        set.states.Dense().at(first++).codePointer = action.value;
}

void GiveEveryArgument(PatchSet& set, const EngineConfiguration& engine) {
    using Kind = EngineConfiguration::Argument::Kind;
    for (StateRecord& state : set.states.Dense()) {
        state.given = 0;
        state.arg1 = state.arg2 = state.arg3 = state.arg4 = state.arg5 = state.arg6 = state.arg7 = state.arg8 = 0;
        const EngineConfiguration::Action* action = engine.ActionOf(state.codePointer);
        if (action == nullptr)
            continue;
        for (const EngineConfiguration::Argument& argument : action->arguments)
            SetValue(state, *FindField<StateRecord>(argument.field), argument.kind == Kind::Flag ? 1 : 2);
    }
}

void MakeRecords(PatchSet& set, const EngineConfiguration& engine) {
    constexpr std::int32_t last = 5000;
    const auto write = [&set](const Cell& cell, const CellValue& value) { WriteCell(set, cell, value); };
    for (const std::int32_t number : {4000, 4001, last}) {
        for (const RecordKind kind : {RecordKind::Thing, RecordKind::State, RecordKind::Sound, RecordKind::Sprite})
            write({kind, number, existsField}, 1);
        write({RecordKind::Sprite, number, lumpNameField}, std::to_string(number));
        write({RecordKind::Sound, number, lumpNameField}, "n" + std::to_string(number));
        StateRecord& state = set.states[number];
        state.sprite = state.nextState = last;
        state.duration = 5;
        state.codePointer = engine.CodePointerOf("PlaySound").value();
        state.unknown1 = last;
        ThingRecord& thing = set.things[number];
        thing.name = "New " + std::to_string(number);
        thing.initialState = thing.deathState = thing.alertSound = thing.ripSound = last;
        thing.droppedItem = last + 1;
        set.sounds[number].value = 64;
    }
    write({RecordKind::Sprite, 0, lumpNameField}, "IMPX");
    write({RecordKind::Sound, 200, lumpNameField}, "none"); // which has no name in the engine
    write({RecordKind::Sound, 1, lumpNameField}, "bang");
}

void ChangeEveryCodePointer(PatchSet& set, const EngineConfiguration& engine) {
    constexpr std::size_t firstThingState = 90; // those before are the weapons'
    const PointerTargets targets(set.states, engine.codePointerStates);
    std::vector<std::int32_t> standard;
    for (const StateRecord& state : set.states.Dense())
        standard.push_back(state.codePointer);
    for (std::size_t state = 0; state < standard.size(); ++state) {
        const std::size_t begin = state < firstThingState ? 0 : firstThingState;
        const std::size_t end = state < firstThingState ? firstThingState : standard.size();
        for (std::size_t step = 1; standard[state] != 0 && step < end - begin; ++step) {
            const std::int32_t other = standard[begin + (state - begin + step) % (end - begin)];
            if (other == 0 || other == standard[state] ||
                (!engine.dialect.IsExtended() && !targets.CanExpress(static_cast<std::int32_t>(state), other)))
                continue;
            set.states[state].codePointer = other;
            break;
        }
    }
}

void ChangeEveryText(PatchSet& set, const EngineConfiguration& engine,
                     const std::function<bool(const std::string&)>& usable) {
    for (CheatRecord& cheat : set.cheats.Dense())
        ChangeLetter(cheat.text);
    std::set<std::string> seen;
    for (StringRecord& string : set.strings.Dense())
        if (usable(string.text) && (engine.dialect.IsExtended() || seen.insert(string.text).second))
            ChangeLetter(string.text);
}

} // namespace plinket3::test
