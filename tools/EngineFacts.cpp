#include "tools/EngineFacts.h"

#include "core/Text.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
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
    std::int32_t states = 0, sounds = 0, sprites = 0, ammoTypes = 0;
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
        if (field.unit != FieldUnit::CodePointer)
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
std::string ReadFolder(const TsvTable& table, std::size_t row, std::string_view column) {
    std::string folder(table.Text(row, column));
    if (!IsKey(folder))
        table.Report(row, column, NotAKey(folder));
    return folder;
}

class EngineReader {
public:
    EngineReader(const std::filesystem::path& folder, const EngineSource& source, Fault& fault)
        : folder_(folder), source_(source), fault_(fault) {}

    EngineFacts Read() {
        NameEngine();
        const TsvTable sprites = Open("sprites"), sounds = Open("sounds"), states = Open("states");
        const Targets targets{CountOf(states), CountOf(sounds), CountOf(sprites), CountOf(Open("ammotypes"))};
        ReadActions();
        ReadStates(states, targets);
        ReadSounds(sounds);
        ReadSprites(sprites);
        ReadThings(targets);
        ReadFlags();
        ReadWeaponsAndAmmo(targets);
        ReadCheats();
        ReadMisc();
        ReadPointers(targets);
        if (source_.extended)
            ReadExtendedStrings();
        else
            ReadTextsOfProgram();
        return std::move(facts_);
    }

private:
    TsvTable Open(std::string_view name) const { return OpenIn(source_.folder, name); }
    TsvTable OpenIn(std::string_view folder, std::string_view name) const {
        return {folder_ / folder / (std::string(name) + ".tsv"), fault_};
    }

    void NameEngine() {
        facts_.engine.name = source_.name;
        facts_.engine.version = source_.version;
        facts_.engine.table = source_.folder + ".tbl";
        facts_.engine.dialect = Dialect::Of(source_.extended);
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
        for (std::size_t row = 0; row < table.RowCount(); ++row)
            facts_.engine.flagTooltips.push_back(std::string(table.Text(row, "name")) + ": " +
                                                 std::string(table.Text(row, "tooltip")));
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
