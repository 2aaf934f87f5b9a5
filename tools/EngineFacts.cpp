#include "tools/EngineFacts.h"

#include "core/Files.h"
#include "core/Text.h"
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

/// How many there are of what a field can name.
struct Targets {
    std::int32_t states = 0, sounds = 0, sprites = 0, ammoTypes = 0, things = 0;
};

template <class Record> std::int32_t ReadField(const TsvTable& table, std::size_t row, std::string_view column,
                                               const Field<Record>& field, const Targets& targets) {
    switch (field.unit) {
    case FieldUnit::State:
        return table.Number(row, column, 0, targets.states - 1);
    case FieldUnit::Sound:
        return table.Number(row, column, 0, targets.sounds - 1);
    case FieldUnit::Sprite:
        return table.Number(row, column, 0, targets.sprites - 1);
    case FieldUnit::Thing:
        return table.Number(row, column, 0, targets.things);
    case FieldUnit::AmmoType:
        return table.Number(row, column, 0, targets.ammoTypes - 1);
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

/// Names of at most `size` characters, filled up with NULs.
template <std::size_t size> std::vector<std::array<char, size>> ReadNames(const TsvTable& table, std::size_t shortest) {
    std::vector<std::array<char, size>> names(table.RowCount());
    for (std::size_t row = 0; row < names.size(); ++row) {
        const std::string_view name = table.Text(row, "name");
        if (name.size() < shortest || name.size() > size)
            table.Report(row, "name",
                         '"' + std::string(name) + "\" is not of " + std::to_string(shortest) + " to " +
                             std::to_string(size) + " characters");
        names[row].fill('\0');
        std::copy_n(name.begin(), std::min(name.size(), size), names[row].begin());
    }
    return names;
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
        const Targets targets{CountOf(states), CountOf(sounds), CountOf(sprites), CountOf(Open("ammotypes")),
                              CountOf(Open("things"))};
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
        constexpr std::array<std::string_view, bitSetCount> tables{"", "thing_bits", "state_bits", "weapon_bits"};
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

    /// Fields that have no column in the tables of their records.
    void ReadLaterFields(const TsvTable& table, const Targets& targets) {
        for (std::size_t row = 0; row < table.RowCount(); ++row) {
            const std::string_view record = table.Text(row, "record");
            if (record == "thing")
                ReadLaterField(table, row, facts_.defaults.things.Dense(), targets);
            else if (record == "state")
                ReadLaterField(table, row, facts_.defaults.states.Dense(), targets);
            else if (record == "weapon")
                ReadLaterField(table, row, facts_.defaults.weapons.Dense(), targets);
            else
                table.Report(row, "record", "is neither \"thing\" nor \"state\" nor \"weapon\"");
        }
    }

    template <class Record>
    void ReadLaterField(const TsvTable& table, std::size_t row, std::vector<Record>& records, const Targets& targets) {
        const std::int32_t index = table.Number(row, "index", 0, static_cast<std::int32_t>(records.size()) - 1);
        if (records.empty()) // reported already
            return;
        const Field<Record>* field = FindField<Record>(table.Text(row, "field"));
        if (field == nullptr || field->since == FieldLevel::Doom || field->since > source_.fields)
            return table.Report(row, "field", "is no field that has no column of its own");
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
            const std::string_view mnemonic = table.Text(row, "action");
            const std::optional<std::int32_t> action = facts_.engine.CodePointerOf(mnemonic);
            if (!action)
                table.Report(row, "action", "no routine is called \"" + std::string(mnemonic) + '"');
            StateRecord& state = facts_.defaults.states[row];
            state.action = state.codePointer = action.value_or(0);
        }
    }

    void ReadSounds(const TsvTable& table) {
        table.ExpectIndex("index");
        facts_.engine.itemCounts.sounds = CountOf(table);
        const auto names = ReadNames<6>(table, 0);
        for (std::size_t row = 0; row < table.RowCount(); ++row) {
            SoundRecord sound;
            sound.zeroOne = table.Number(row, "singularity");
            sound.value = table.Number(row, "priority");
            sound.negOne1 = table.Number(row, "pitch");
            sound.negOne2 = table.Number(row, "volume");
            if (const std::int32_t link = table.Number(row, "link", 0, CountOf(table) - 1); link != 0)
                sound.zero1 = soundTableAddress - addressCorrection + soundSizeInGame * link;
            sound.name = names[row];
            facts_.defaults.sounds.push_back(sound);
        }
    }

    void ReadSprites(const TsvTable& table) {
        table.ExpectIndex("index");
        facts_.engine.itemCounts.sprites = CountOf(table);
        for (const auto& name : ReadNames<4>(table, 4))
            facts_.defaults.sprites.push_back({name, 0});
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
            facts_.engine.codePointerStates.push_back(table.Number(row, "state", 0, targets.states - 1));
    }

    void ReadExtendedStrings() {
        const TsvTable table = Open("strings");
        const std::vector<std::string> mnemonics = ReadKeys(table, "mnemonic");
        facts_.engine.itemCounts.strings = CountOf(table);
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
