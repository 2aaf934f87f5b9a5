#include "tools/EngineFacts.h"

#include "core/Files.h"
#include "core/Text.h"
#include "patch/Cells.h"
#include "patch/LabelIndex.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

namespace plinket3::tools {

namespace {

// No address inside an executable is known. These two are made up, so that one sound can refer to another by an address
// as it does in the game.
constexpr std::int32_t soundTableAddress = 65536, addressCorrection = 0;
constexpr std::int32_t soundSizeInGame = sizeof(SoundNumbers); // nine numbers there as here
constexpr std::size_t flagCount = 32;

std::int32_t CountOf(const TsvTable& table) { return static_cast<std::int32_t>(table.RowCount()); }

/// The numbers of what a field can name: so many from 0 up, and those of a table that adds to them.
struct Numbers {
    std::int32_t count = 0;
    std::set<std::int32_t> more{};
};
struct Targets {
    Numbers states, sounds, sprites, ammoTypes, things;
};

/// A cell that names something; `first` is the number of the first one from 0 up.
std::int32_t ReadTarget(const TsvTable& table, std::size_t row, std::string_view column, const Numbers& numbers,
                        std::int32_t first = 0) {
    if (numbers.more.empty() || !table.Text(row, column).starts_with('-'))
        return table.Number(row, column, 0, numbers.count - 1 + first);
    const std::int32_t number = table.Number(row, column);
    if (!numbers.more.contains(number - first))
        table.Report(row, column, std::to_string(number) + " is none of those that there are");
    return number;
}

template <class Record> std::int32_t ReadField(const TsvTable& table, std::size_t row, std::string_view column,
                                               const Field<Record>& field, const Targets& targets) {
    switch (field.unit) {
    case FieldUnit::State:
        return ReadTarget(table, row, column, targets.states);
    case FieldUnit::Sound:
        return ReadTarget(table, row, column, targets.sounds);
    case FieldUnit::Sprite:
        return ReadTarget(table, row, column, targets.sprites);
    case FieldUnit::Thing: // counted from 1, 0 for none
        return ReadTarget(table, row, column, targets.things, 1);
    case FieldUnit::AmmoType:
        return ReadTarget(table, row, column, targets.ammoTypes);
    default:
        return field.width == FieldWidth::Byte ? table.Number(row, column, 0, 255) : table.Number(row, column);
    }
}

/// The columns are named by the fields' labels. A routine is no number in the tables and stays 0.
template <class Record> Record ReadRecord(const TsvTable& table, std::size_t row, const Targets& targets) {
    Record record;
    for (const Field<Record>& field : fieldsOf<Record>)
        if (field.unit != FieldUnit::CodePointer && field.since == FieldLevel::Doom)
            record.*field.member = ReadField(table, row, field.label, field, targets);
    return record;
}

template <class Record> NumberedList<Record> ReadRecords(const TsvTable& table, const Targets& targets) {
    table.ExpectIndex("index");
    NumberedList<Record> records;
    for (std::size_t row = 0; row < table.RowCount(); ++row)
        records.push_back(ReadRecord<Record>(table, row, targets));
    return records;
}

std::vector<std::string> ReadTexts(const TsvTable& table, std::string_view column) {
    std::vector<std::string> texts;
    for (std::size_t row = 0; row < table.RowCount(); ++row)
        texts.emplace_back(table.Text(row, column));
    return texts;
}

bool IsKey(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char character) {
        const char upper = ToUpper(character);
        return (upper >= 'A' && upper <= 'Z') || (character >= '0' && character <= '9') || character == '_';
    });
}

std::string NotAKey(std::string_view text) {
    return '"' + std::string(text) + "\" is not made of letters, digits and underscores";
}

/// The cells of a column without their blanks, which a configuration's keys cannot hold.
std::vector<std::string> ReadKeys(const TsvTable& table, std::string_view column) {
    std::vector<std::string> keys;
    std::set<std::string> known;
    for (std::size_t row = 0; row < table.RowCount(); ++row) {
        keys.push_back(ReplaceAll(table.Text(row, column), " ", ""));
        if (!IsKey(keys.back()))
            table.Report(row, column, NotAKey(keys.back()));
        if (!known.insert(keys.back()).second)
            table.Report(row, column, '"' + keys.back() + "\" stands in an earlier row, too");
    }
    return keys;
}

/// A name of at most `size` characters, filled up with NULs.
template <std::size_t size>
std::array<char, size> ReadName(const TsvTable& table, std::size_t row, std::size_t shortest) {
    const std::string_view name = table.Text(row, "name");
    if (name.size() < shortest || name.size() > size)
        table.Report(row, "name",
                     '"' + std::string(name) + "\" is not of " + std::to_string(shortest) + " to " +
                         std::to_string(size) + " characters");
    std::array<char, size> stored{};
    PutLumpName(stored, name);
    return stored;
}

template <class Record> void GiveNames(NumberedList<Record>& records, std::vector<std::string> names) {
    for (std::size_t row = 0; row < records.size(); ++row)
        records[row].name = std::move(names[row]);
}

/// A name that becomes part of a path.
std::string CheckedFolder(const TsvTable& table, std::size_t row, std::string_view column, std::string_view folder) {
    if (!IsKey(folder))
        table.Report(row, column, NotAKey(folder));
    return std::string(folder);
}

std::string ReadFolder(const TsvTable& table, std::size_t row, std::string_view column) {
    return CheckedFolder(table, row, column, table.Text(row, column));
}

/// Folders that are parted by blanks; there may be none.
std::vector<std::string> ReadFolders(const TsvTable& table, std::size_t row, std::string_view column) {
    std::vector<std::string> folders;
    for (std::string_view rest = table.Text(row, column); !rest.empty();) {
        const std::size_t end = std::min(rest.find(' '), rest.size());
        folders.push_back(CheckedFolder(table, row, column, rest.substr(0, end)));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
}

/// The place of a cell in `choices`; 0 when it is none of them.
std::size_t OneOf(const TsvTable& table, std::size_t row, std::string_view column,
                  std::span<const std::string_view> choices) {
    const std::string_view text = table.Text(row, column);
    const auto found = std::ranges::find(choices, text);
    if (found != choices.end())
        return static_cast<std::size_t>(found - choices.begin());
    table.Report(row, column, '"' + std::string(text) + "\" is none of those that there are");
    return 0;
}

class EngineReader {
public:
    EngineReader(const std::filesystem::path& folder, const EngineSource& source, Fault& fault)
        : folder_(folder), source_(source), fault_(fault) {}

    EngineFacts Read() {
        NameEngine();
        const TsvTable sprites = Open("sprites"), sounds = Open("sounds"), states = Open("states");
        const Targets targets{NumbersOf(states, "more_states"), NumbersOf(sounds, "more_sounds"),
                              NumbersOf(sprites, "more_sprites"), NumbersOf(Open("ammotypes"), "more_ammo"),
                              NumbersOf(Open("things"), "more_things")};
        ReadActions();
        ReadArguments();
        ReadStates(states, targets);
        ReadSounds(sounds);
        ReadSprites(sprites);
        ReadThings(targets);
        ReadFlags();
        ReadWeaponsAndAmmo(targets);
        ReadCheats();
        ReadMisc();
        ReadPointers(targets);
        ReadLaterBits();
        ReadPickups();
        ReadMore(targets);
        for (const std::string& folder : Folders("fields"))
            ReadLaterFields(OpenIn(folder, "fields"), targets);
        if (source_.extended)
            ReadExtendedStrings();
        else
            ReadTextsOfProgram();
        return std::move(facts_);
    }

private:
    static std::string FileOf(std::string_view name) { return std::string(name) + ".tsv"; }
    /// The folders that have a table of that name, the engine's own one last.
    std::vector<std::string> Folders(std::string_view name) const {
        std::vector<std::string> folders;
        for (auto base = source_.bases.rbegin(); base != source_.bases.rend(); ++base)
            if (FileExists(folder_ / *base / FileOf(name)))
                folders.push_back(*base);
        if (FileExists(folder_ / source_.folder / FileOf(name)))
            folders.push_back(source_.folder);
        return folders;
    }
    /// The engine's own table, or else that of the nearest base.
    TsvTable Open(std::string_view name) const {
        const std::vector<std::string> folders = Folders(name);
        return OpenIn(folders.empty() ? source_.folder : folders.back(), name);
    }
    TsvTable OpenIn(std::string_view folder, std::string_view name) const {
        return {folder_ / folder / FileOf(name), fault_};
    }

    Numbers NumbersOf(const TsvTable& table, std::string_view more) const {
        Numbers numbers{CountOf(table)};
        if (!Folders(more).empty()) {
            const TsvTable others = Open(more);
            for (std::size_t row = 0; row < others.RowCount(); ++row)
                numbers.more.insert(others.Number(row, "index", INT32_MIN, noRecord - 1));
        }
        return numbers;
    }

    void NameEngine() {
        facts_.engine.name = source_.name;
        facts_.engine.version = source_.version;
        facts_.engine.table = source_.folder + ".tbl";
        facts_.engine.dialect = Dialect::Of(source_.extended);
        facts_.engine.dialect.engineRulesOnly = source_.engineRulesOnly;
        facts_.engine.dialect.engineFields = source_.fields;
        facts_.engine.dialect.unlimited = source_.unlimited;
        facts_.engine.dialect = facts_.engine.dialect.By(Rules::Kept);
        facts_.engine.offsets.sounds = soundTableAddress;
        facts_.engine.offsets.dataSegment = addressCorrection;
    }

    void ReadActions() {
        const TsvTable table = Open("actions");
        table.ExpectIndex("id");
        const std::vector<std::string> mnemonics = ReadKeys(table, "mnemonic");
        for (std::size_t row = 0; row < table.RowCount(); ++row) {
            const auto id = static_cast<std::int32_t>(row);
            facts_.engine.actions.push_back(
                {id, mnemonics[row], modPatchText::EscapeText(table.Text(row, "description"))});
            facts_.engine.valueByMnemonic.emplace(mnemonics[row], id);
        }
    }

    /// Those of all folders, in their order.
    void ReadArguments() {
        for (const std::string& folder : Folders("arguments")) {
            const TsvTable table = OpenIn(folder, "arguments");
            for (std::size_t row = 0; row < table.RowCount(); ++row) {
                EngineConfiguration::Argument argument;
                argument.field = table.Text(row, "field");
                if (FindField<StateRecord>(argument.field) == nullptr)
                    table.Report(row, "field", "is no field of a state");
                argument.name = table.Text(row, "name");
                argument.kind =
                    static_cast<EngineConfiguration::Argument::Kind>(OneOf(table, row, "kind", argumentWords));
                argument.standard = table.Number(row, "default");
                argument.zero = table.Text(row, "zero");
                argument.meaning = table.Text(row, "meaning");
                const std::string_view mnemonic = table.Text(row, "action");
                auto& actions = facts_.engine.actions;
                const auto action = std::ranges::find(actions, mnemonic, &EngineConfiguration::Action::mnemonic);
                if (action == actions.end())
                    table.Report(row, "action", "no routine is called \"" + std::string(mnemonic) + '"');
                else
                    action->arguments.push_back(std::move(argument));
            }
        }
    }

    /// The sets of bits that the engine's fields hold beside the thing flags.
    void ReadLaterBits() {
        constexpr std::array<std::string_view, bitSetCount> tables{"", "thing_bits", "state_bits", "weapon_bits",
                                                                   "thing_bits24"};
        for (std::size_t set = 1; set < bitSetCount; ++set) {
            if (Folders(tables[set]).empty())
                continue;
            const TsvTable table = Open(tables[set]);
            table.ExpectIndex("bit");
            if (table.RowCount() > flagCount)
                table.Report(flagCount, "bit", "is more than a field has");
            facts_.engine.laterBits[set] = {ReadKeys(table, "mnemonic"), Tooltips(table)};
        }
    }

    std::vector<EngineConfiguration::Choice> Choices(std::string_view name) const {
        std::vector<EngineConfiguration::Choice> choices;
        if (Folders(name).empty())
            return choices;
        const TsvTable table = Open(name);
        for (std::size_t row = 0; row < table.RowCount(); ++row)
            choices.push_back({table.Number(row, "value"), std::string(table.Text(row, "name"))});
        return choices;
    }

    void ReadPickups() {
        facts_.engine.pickupItems = Choices("pickup_items");
        facts_.engine.pickupCategories = Choices("pickup_categories");
    }

    /// Records with negative numbers, which stand beside those of the bases.
    void ReadMore(const Targets& targets) {
        VisitTableKinds([&](const auto& kind) {
            const std::string name = "more_" + std::string(kind.plural);
            if (kind.kind == RecordKind::String || Folders(name).empty())
                return;
            const TsvTable table = Open(name);
            for (std::size_t row = 0; row < table.RowCount(); ++row) {
                const std::int32_t number = table.Number(row, "index", INT32_MIN, noRecord - 1);
                auto& records = kind.In(facts_.defaults);
                if (records.Has(number))
                    table.Report(row, "index", "stands in an earlier row, too");
                records.Add(number, ReadOther<RecordOf<decltype(kind)>>(table, row, kind.kind, number, targets));
            }
        });
    }

    /// Each column is a field's; an empty cell stands for its usual value.
    template <class Record> Record ReadOther(const TsvTable& table, std::size_t row, RecordKind kind,
                                             std::int32_t number, const Targets& targets) {
        if constexpr (std::is_same_v<Record, SoundRecord>)
            return ReadSound(table, row);
        Record record;
        if constexpr (hasLumpName<Record>)
            record.name = ReadName<std::tuple_size_v<decltype(record.name)>>(table, row, 4);
        for (const std::string& column : table.Columns()) {
            if (column == "index" || table.Text(row, column).empty())
                continue;
            if constexpr (std::is_same_v<Record, StateRecord>)
                if (column == "action") {
                    record.action = record.codePointer = ReadAction(table, row);
                    continue;
                }
            if constexpr (isNamed<Record>)
                if (column == "name") {
                    record.name = table.Text(row, column);
                    continue;
                }
            if constexpr (!fieldTable<Record>.empty()) {
                const Field<Record>* field = FindField<Record>(column);
                if (field != nullptr)
                    SetValue(record, *field, ReadField(table, row, column, *field, targets));
                else if (!ReadTextField(table, row, column, column, {kind, number, 0}))
                    table.Report(row, column, "is no field of such a record");
            }
        }
        return record;
    }

    /// False when the cell's kind has no text field of that label.
    bool ReadTextField(const TsvTable& table, std::size_t row, std::string_view column, std::string_view label,
                       Cell cell) {
        const auto* field = std::ranges::find_if(textFields, [&](const TextField& each) {
            return each.kind == cell.kind && each.label == label && each.since <= source_.fields;
        });
        if (field == textFields.end())
            return false;
        const auto place = static_cast<int>(field - textFields.begin());
        facts_.defaults.texts[{cell.kind, cell.index, place}] = table.Text(row, column);
        return true;
    }

    /// Fields that have no column in the tables of their records, and values that differ from those of a base.
    void ReadLaterFields(const TsvTable& table, const Targets& targets) {
        for (std::size_t row = 0; row < table.RowCount(); ++row) {
            const std::string_view record = table.Text(row, "record");
            if (record == "thing")
                ReadLaterField(table, row, RecordKind::Thing, facts_.defaults.things.Dense(), targets);
            else if (record == "state")
                ReadLaterField(table, row, RecordKind::State, facts_.defaults.states.Dense(), targets);
            else if (record == "weapon")
                ReadLaterField(table, row, RecordKind::Weapon, facts_.defaults.weapons.Dense(), targets);
            else
                table.Report(row, "record", "is neither \"thing\" nor \"state\" nor \"weapon\"");
        }
    }

    template <class Record> void ReadLaterField(const TsvTable& table, std::size_t row, RecordKind kind,
                                                std::vector<Record>& records, const Targets& targets) {
        const std::int32_t index = table.Number(row, "index", 0, static_cast<std::int32_t>(records.size()) - 1);
        if (records.empty()) // reported already
            return;
        const std::string_view label = table.Text(row, "field");
        const Field<Record>* field = FindField<Record>(label);
        if (field == nullptr && ReadTextField(table, row, "value", label, {kind, index, 0}))
            return;
        if (field == nullptr || field->since > source_.fields)
            return table.Report(row, "field", "is no field of such a record");
        if constexpr (std::is_same_v<Record, ThingRecord>)
            if (field->member == &ThingRecord::projectileGroup && table.Text(row, "value") == "shared")
                return facts_.engine.sharedProjectileGroup.push_back(index);
        const std::int32_t value = ReadField(table, row, "value", *field, targets);
        SetValue(records[static_cast<std::size_t>(index)], *field, value);
        if (field->since == FieldLevel::Dehextra && facts_.engine.dialect.fields == FieldLevel::Doom)
            facts_.engine.droppedItems.emplace_back(index, value);
    }

    void ReadStates(const TsvTable& table, const Targets& targets) {
        facts_.defaults.states = ReadRecords<StateRecord>(table, targets);
        facts_.engine.itemCounts.states = CountOf(table);
        for (std::size_t row = 0; row < table.RowCount(); ++row) {
            StateRecord& state = facts_.defaults.states[row];
            state.action = state.codePointer = ReadAction(table, row);
        }
    }

    std::int32_t ReadAction(const TsvTable& table, std::size_t row) const {
        const std::string_view mnemonic = table.Text(row, "action");
        const std::optional<std::int32_t> action = facts_.engine.CodePointerOf(mnemonic);
        if (!action)
            table.Report(row, "action", "no routine is called \"" + std::string(mnemonic) + '"');
        return action.value_or(0);
    }

    void ReadSounds(const TsvTable& table) {
        table.ExpectIndex("index");
        facts_.engine.itemCounts.sounds = CountOf(table);
        for (std::size_t row = 0; row < table.RowCount(); ++row)
            facts_.defaults.sounds.push_back(ReadSound(table, row));
    }

    static SoundRecord ReadSound(const TsvTable& table, std::size_t row) {
        SoundRecord sound;
        sound.zeroOne = table.Number(row, "singularity");
        sound.value = table.Number(row, "priority");
        sound.negOne1 = table.Number(row, "pitch");
        sound.negOne2 = table.Number(row, "volume");
        if (const std::int32_t link = table.Number(row, "link", 0, CountOf(table) - 1); link != 0)
            sound.zero1 = soundTableAddress - addressCorrection + soundSizeInGame * link;
        sound.name = ReadName<6>(table, row, 0);
        return sound;
    }

    void ReadSprites(const TsvTable& table) {
        table.ExpectIndex("index");
        facts_.engine.itemCounts.sprites = CountOf(table);
        for (std::size_t row = 0; row < table.RowCount(); ++row)
            facts_.defaults.sprites.push_back({ReadName<4>(table, row, 4), 0});
    }

    void ReadThings(const Targets& targets) {
        const TsvTable table = Open("things");
        facts_.defaults.things = ReadRecords<ThingRecord>(table, targets);
        GiveNames(facts_.defaults.things, ReadTexts(table, "name"));
        facts_.engine.itemCounts.things = CountOf(table);
        facts_.engine.thingNames = ReadKeys(table, "name");
    }

    void ReadFlags() {
        const TsvTable table = Open("flags");
        table.ExpectRowCount(flagCount);
        table.ExpectIndex("bit");
        facts_.engine.flagNames = ReadKeys(table, "mnemonic");
        facts_.engine.flagTooltips = Tooltips(table);
    }

    static std::vector<std::string> Tooltips(const TsvTable& table) {
        std::vector<std::string> tooltips;
        for (std::size_t row = 0; row < table.RowCount(); ++row)
            tooltips.push_back(std::string(table.Text(row, "name")) + ": " + std::string(table.Text(row, "tooltip")));
        return tooltips;
    }

    void ReadWeaponsAndAmmo(const Targets& targets) {
        const TsvTable weapons = Open("weapons"), ammo = Open("ammo");
        facts_.defaults.weapons = ReadRecords<WeaponRecord>(weapons, targets);
        facts_.engine.weaponNames = ReadTexts(weapons, "name");
        GiveNames(facts_.defaults.weapons, facts_.engine.weaponNames);
        facts_.engine.itemCounts.weapons = CountOf(weapons);
        facts_.defaults.ammo = ReadRecords<AmmoRecord>(ammo, targets);
        facts_.engine.ammoNames = ReadTexts(ammo, "name");
        GiveNames(facts_.defaults.ammo, facts_.engine.ammoNames);
        facts_.engine.itemCounts.ammunition = CountOf(ammo);
    }

    void ReadCheats() {
        const TsvTable table = Open("cheats");
        ExpectLabels(table, "label", cheatLabels);
        facts_.engine.itemCounts.cheats = CountOf(table);
        for (std::size_t row = 0; row < table.RowCount(); ++row) {
            const std::int32_t longest = table.Number(row, "max", 0, 0xffff);
            facts_.engine.cheatLengths.push_back(longest);
            facts_.defaults.cheats.push_back({longest, std::string(table.Text(row, "text")), 0});
        }
    }

    void ReadMisc() {
        const TsvTable table = Open("misc");
        const auto fields = fieldsOf<MiscRecord>;
        std::vector<std::string_view> labels;
        std::ranges::transform(fields, std::back_inserter(labels), &Field<MiscRecord>::label);
        ExpectLabels(table, "field", labels);
        for (std::size_t row = 0; row < std::min(table.RowCount(), fields.size()); ++row)
            facts_.defaults.misc.*fields[row].member = ReadField(table, row, "value", fields[row], {});
    }

    void ReadPointers(const Targets& targets) {
        const TsvTable table = OpenIn(source_.pointerFolder, "pointers");
        table.ExpectIndex("pointer");
        ReadKeys(table, "state"); // the states are keys in the configuration
        for (std::size_t row = 0; row < table.RowCount(); ++row)
            facts_.engine.codePointerStates.push_back(table.Number(row, "state", 0, targets.states.count - 1));
    }

    /// Those of the engine or its base, and those that it adds.
    void ReadExtendedStrings() {
        ReadStrings(Open("strings"));
        if (!Folders("more_strings").empty())
            ReadStrings(Open("more_strings"));
        facts_.engine.itemCounts.strings = static_cast<std::int32_t>(facts_.engine.strings.size());
    }

    void ReadStrings(const TsvTable& table) {
        const std::vector<std::string> mnemonics = ReadKeys(table, "mnemonic");
        for (std::size_t row = 0; row < table.RowCount(); ++row) {
            std::string escaped = modPatchText::EscapeText(table.Text(row, "text"));
            if (modPatchText::UnescapeText(escaped) != table.Text(row, "text"))
                table.Report(row, "text", "would come back changed from a patch");
            facts_.engine.strings.push_back({mnemonics[row], std::move(escaped)});
        }
    }

    void ReadTextsOfProgram() {
        const TsvTable table = Open("texts");
        table.ExpectIndex("index");
        facts_.engine.itemCounts.strings = CountOf(table);
        for (std::size_t row = 0; row < table.RowCount(); ++row) {
            const std::string_view text = table.Text(row, "text");
            const std::int32_t length = table.Number(row, "length", 0);
            if (std::cmp_not_equal(text.size(), length))
                table.Report(row, "length", "the text has " + std::to_string(text.size()) + " characters");
            facts_.defaults.strings.push_back({0, length, std::string(text)});
        }
    }

    /// For tables whose rows are in the order of our own labels.
    template <class Labels>
    static void ExpectLabels(const TsvTable& table, std::string_view column, const Labels& labels) {
        table.ExpectRowCount(labels.size());
        table.ExpectIndex("index");
        for (std::size_t row = 0; row < std::min(table.RowCount(), labels.size()); ++row)
            if (table.Text(row, column) != labels[row])
                table.Report(row, column, "should be \"" + std::string(labels[row]) + '"');
    }

    const std::filesystem::path& folder_;
    const EngineSource& source_;
    Fault& fault_;
    EngineFacts facts_;
};

} // namespace

std::vector<EngineSource> ReadEngineList(const std::filesystem::path& folder, Fault& fault) {
    const TsvTable table(folder / "engines.tsv", fault);
    const std::vector<std::string> configurations = ReadKeys(table, "config");
    std::vector<EngineSource> sources;
    for (std::size_t row = 0; row < table.RowCount(); ++row) {
        EngineSource source;
        source.configuration = configurations[row];
        source.folder = ReadFolder(table, row, "folder");
        source.pointerFolder = ReadFolder(table, row, "pointers");
        source.bases = ReadFolders(table, row, "bases");
        source.engineRulesOnly = OneOf(table, row, "rules", ruleWords) == 1;
        source.fields = static_cast<FieldLevel>(OneOf(table, row, "fields", levelWords));
        source.unlimited = OneOf(table, row, "numbers", numberWords) == 1;
        source.version = static_cast<std::int16_t>(table.Number(row, "version", 0, INT16_MAX));
        source.name = table.Text(row, "name");
        source.extended = table.Text(row, "mode") == "extended";
        if (!source.extended && table.Text(row, "mode") != "normal")
            table.Report(row, "mode", "is neither \"normal\" nor \"extended\"");
        sources.push_back(std::move(source));
    }
    return sources;
}

EngineFacts ReadEngineFacts(const std::filesystem::path& folder, const EngineSource& source, Fault& fault) {
    return EngineReader(folder, source, fault).Read();
}

} // namespace plinket3::tools
