#include "patch/CellText.h"

#include "core/Text.h"
#include "patch/Arguments.h"
#include "patch/NewRecords.h"
#include "patch/StepNames.h"
#include "patch/ValueText.h"
#include "patch/modPatchText.h"

#include <optional>

namespace plinket3 {

namespace {

/// The argument that a row of a state holds; absent when its action takes none there.
std::optional<StateArgument> ArgumentAt(const PatchSet& set, const EngineConfiguration& engine, const Cell& cell) {
    if (cell.kind != RecordKind::State || cell.field < 0)
        return std::nullopt;
    if (const auto* action = engine.ActionOf(RecordOrNew(set.states, cell.index)->codePointer))
        for (const StateArgument& argument : ArgumentsOf(engine.dialect, *action))
            if (argument.field == cell.field)
                return argument;
    return std::nullopt;
}

std::string FrameLetters(std::int32_t frame) {
    std::string letters(1, static_cast<char>('A' + (frame & ~litBit & 31)));
    return (frame & litBit) != 0 ? letters + ", lit" : letters;
}

/// The sprite and its frame that a state shows.
std::string PictureOf(const PatchSet& set, std::int32_t state) {
    const StateRecord* record = set.states.Find(state);
    return record == nullptr ? std::string() : PictureName(set, *record);
}

std::string WithName(const std::string& number, std::string_view name) {
    return name.empty() ? number : number + " (" + std::string(name) + ")";
}

std::string MeantText(const PatchSet& set, const EngineConfiguration& engine, const ValueMeaning& meaning,
                      std::int32_t value) {
    for (const EngineConfiguration::Choice& choice : ChoicesOf(set, engine, meaning))
        if (choice.value == value)
            return choice.name;
    std::string name = ValueName(set, engine, meaning, value);
    return meaning.kind == ValueMeaning::Kind::State ? WithName(name, PictureOf(set, value)) : name;
}

std::string NumberText(const PatchSet& set, const EngineConfiguration& engine, const Cell& cell, std::int32_t value) {
    const std::string number = std::to_string(value);
    if (cell.field == existsField)
        return value != 0 ? "made" : "none";
    if (cell.field == codePointerField) {
        const std::string* mnemonic = engine.MnemonicOf(value);
        return mnemonic == nullptr || mnemonic->empty() ? number : std::string(Trim(*mnemonic));
    }
    if (cell.field == listField)
        return number + " s";
    if (const auto argument = ArgumentAt(set, engine, cell))
        return MeantText(set, engine, MeaningOf(set, *argument->facts), value);
    switch (FactsOf(cell.kind, cell.field).unit) {
    case FieldUnit::Sprite:
        return WithName(number, set.SpriteName(value));
    case FieldUnit::SpriteFrame:
        return FrameLetters(value);
    case FieldUnit::AmmoType:
        return set.ammo.Has(value) ? set.ammo[value].name : number;
    case FieldUnit::Infight:
        return value == monstersFight ? "yes" : value == monstersDoNotFight ? "no" : number;
    default:
        return MeantText(set, engine, MeaningOf(set, cell), value);
    }
}

} // namespace

std::string RecordTitle(const PatchSet& set, const EngineConfiguration& engine, RecordKind kind, std::int32_t index) {
    const auto place = static_cast<std::size_t>(index);
    switch (kind) {
    case RecordKind::Misc:
        return "Miscellaneous";
    case RecordKind::Par:
        return "Patch";
    case RecordKind::Cheat:
        return place < cheatLabels.size() ? std::string(cheatLabels[place]) : "Cheat " + std::to_string(index);
    case RecordKind::String:
        return "String " + (place < engine.strings.size() ? engine.strings[place].mnemonic : std::to_string(index));
    default:
        break;
    }
    std::string title = MadeName(kind, index);
    title[0] = static_cast<char>(title[0] - 'a' + 'A');
    const Cell name{kind, index, HasLumpName(kind) ? lumpNameField : nameField};
    return WithName(title,
                    kind == RecordKind::State ? PictureOf(set, index) : std::get<std::string>(ReadCell(set, name)));
}

std::string CellTitle(const PatchSet& set, const EngineConfiguration& engine, const Cell& cell) {
    const auto argument = ArgumentAt(set, engine, cell);
    return argument && !argument->facts->name.empty() ? WithName(FieldName(cell), argument->facts->name)
                                                      : FieldName(cell);
}

std::string CellText(const PatchSet& set, const EngineConfiguration& engine, const Cell& cell, const CellValue& value) {
    if (const auto* number = std::get_if<std::int32_t>(&value))
        return NumberText(set, engine, cell, *number);
    if (const auto* text = std::get_if<std::string>(&value))
        return modPatchText::EscapeText(*text);
    return cell.field == listField ? "none" : "unset";
}

bool HoldsBits(const Cell& cell) { return cell.field >= 0 && FactsOf(cell.kind, cell.field).unit == FieldUnit::Flags; }

std::string BitsChange(const EngineConfiguration& engine, BitSet set, std::int32_t from, std::int32_t to) {
    const std::vector<std::string>& names = engine.BitNames(set);
    std::string change;
    for (int bit = 0; bit < 32; ++bit) {
        const bool had = modPatchText::GetFlag(from, bit), has = modPatchText::GetFlag(to, bit);
        if (had == has)
            continue;
        const auto place = static_cast<std::size_t>(bit);
        change += change.empty() ? "" : " ";
        change += has ? '+' : '-';
        change += place < names.size() && !names[place].empty() ? names[place] : "bit " + std::to_string(bit);
    }
    return change;
}

} // namespace plinket3
