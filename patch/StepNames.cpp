#include "patch/StepNames.h"

#include "core/Text.h"
#include "patch/NewRecords.h"

namespace plinket3 {

std::int64_t PatchNumber(RecordKind kind, std::int32_t index) {
    std::int64_t number = index;
    VisitKind(kind, [&number](const auto& list) {
        if (list.section != nullptr)
            number += (Dialect().AsEngines().*list.section).firstWritten;
    });
    return number;
}

std::string MadeName(RecordKind kind, std::int32_t index) {
    std::string_view word;
    VisitKind(kind, [&word](const auto& list) {
        word = list.section != nullptr ? (Dialect().*list.section).word : list.plural;
    });
    if (kind == RecordKind::Sprite)
        word = "sprite";
    return ToLower(word) + " " + std::to_string(PatchNumber(kind, index));
}

namespace {

bool IsNameless(const PatchSet& set, RecordKind kind, std::int32_t index) {
    const Cell name{kind, index, kind == RecordKind::Thing ? nameField : lumpNameField};
    return CanBeMade(kind) && kind != RecordKind::State && HasCell(set, {kind, index, existsField}) &&
           std::get<std::string>(ReadCell(set, name)).empty();
}

} // namespace

std::string RecordName(const PatchSet& set, RecordKind kind, std::int32_t index) {
    if (IsNameless(set, kind, index))
        return MadeName(kind, index);
    switch (kind) {
    case RecordKind::State:
        return "frame " + std::to_string(index);
    case RecordKind::Sound:
        return "sound " + set.SoundName(index);
    case RecordKind::Sprite:
        return "sprite " + std::string(set.SpriteName(index));
    case RecordKind::Music:
        return "music " + std::get<std::string>(ReadCell(set, {kind, index, lumpNameField}));
    case RecordKind::String:
        return "string " + std::to_string(index);
    case RecordKind::Cheat:
        return "cheat " + (static_cast<std::size_t>(index) < cheatLabels.size()
                               ? std::string(cheatLabels[static_cast<std::size_t>(index)])
                               : std::to_string(index));
    case RecordKind::Misc:
        return {};
    case RecordKind::Par:
        return "par times";
    default:
        return std::get<std::string>(ReadCell(set, {kind, index, nameField}));
    }
}

std::string RecordsName(const PatchSet& set, RecordKind kind, const std::vector<std::int32_t>& records,
                        std::string_view many) {
    return records.size() == 1 ? RecordName(set, kind, records.front())
                               : std::to_string(records.size()) + " " + std::string(many);
}

namespace {

struct KindWords {
    std::string_view one, many;
};
/// In the order of the kinds.
constexpr KindWords kindWords[]{{"thing", "things"},
                                {"frame", "frames"},
                                {"sound", "sounds"},
                                {"sprite", "sprites"},
                                {"string", "strings"},
                                {"weapon", "weapons"},
                                {"kind of ammunition", "kinds of ammunition"},
                                {"cheat", "cheats"},
                                {"miscellaneous record", "miscellaneous records"},
                                {"list of par times", "lists of par times"},
                                {"piece of music", "pieces of music"}};

} // namespace

std::string_view PluralOf(RecordKind kind) { return kindWords[static_cast<std::size_t>(kind)].many; }

std::string CountOf(RecordKind kind, std::size_t count) {
    const KindWords& words = kindWords[static_cast<std::size_t>(kind)];
    return std::to_string(count) + " " + std::string(count == 1 ? words.one : words.many);
}

std::string PictureName(const PatchSet& set, const StateRecord& state) {
    std::string name(set.SpriteName(state.sprite));
    constexpr std::int32_t frames = 31; // what else the number holds would be no letter, and could end a line
    name += static_cast<char>('A' + (state.subnumber & frames));
    return name;
}

std::string FieldName(const Cell& cell) {
    switch (cell.field) {
    case nameField:
    case lumpNameField:
        return "Name";
    case codePointerField:
        return "Action";
    case noteField:
        return "Note";
    case existsField:
        return "Record";
    case textField:
        return "Text";
    case listField:
        return "Par times";
    case helperField:
        return "Helper";
    default:
        const TextField* text = TextFieldAt(cell.field);
        return std::string(text != nullptr ? text->label : FactsOf(cell.kind, cell.field).label);
    }
}

std::string CellsName(const PatchSet& set, const std::vector<Cell>& cells, std::string_view many) {
    const Cell& cell = cells.front();
    if (cell == patchNotes)
        return "patch notes";
    std::vector<std::int32_t> records;
    records.reserve(cells.size());
    for (const Cell& each : cells)
        records.push_back(each.index);
    std::string record = RecordsName(set, cell.kind, records, many);
    if (cell.field == textField || cell.field == listField)
        return record;
    std::string label = FieldName(cell);
    const bool abbreviation = label.size() > 1 && ToLower(label[1]) != label[1];
    if (!label.empty() && !abbreviation)
        label[0] = ToLower(label[0]);
    return record.empty() ? label : label + " of " + record;
}

} // namespace plinket3
