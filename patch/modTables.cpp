#include "patch/modTables.h"

#include "core/Bytes.h"
#include "core/Files.h"
#include "core/Paths.h"
#include "patch/Cells.h"
#include "patch/LabelIndex.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace plinket3::modTables {

namespace {

constexpr std::string_view magic = "ETBL";
constexpr int majorVersion = 1, plainMinorVersion = 3, fieldsMinorVersion = 4, minorVersion = 5;
constexpr std::int32_t largestUpperBound = 1048575;
constexpr std::size_t mostWithoutBytes = 10'000; // more records than any engine has that comes with the program
constexpr std::size_t longestCountedText = std::numeric_limits<std::uint16_t>::max();

/// The number of elements that an upper bound in the file stands for; absent when it cannot be one.
std::optional<std::size_t> ReadCount(ByteReader& reader) {
    const std::int32_t upperBound = reader.Int32();
    if (upperBound < -1 || upperBound > largestUpperBound)
        return std::nullopt;
    return static_cast<std::size_t>(upperBound + 1);
}

void WriteCount(ByteWriter& writer, std::size_t count) { writer.Int32(static_cast<std::int32_t>(count) - 1); }

template <class Record> std::size_t BytesOfOne();

/// Reads values from a table file, in the calls in which `TableWriter` writes them.
class TableReader {
public:
    explicit TableReader(std::string_view bytes) : bytes_(bytes) {}

    void Int32(std::int32_t& value) { value = bytes_.Int32(); }
    void Byte(std::int32_t& value) { value = bytes_.Byte(); }
    void Text(std::string& text, std::int32_t length) { text = bytes_.Text(length); }
    void CountedText(std::string& text) {
        const std::uint16_t length = bytes_.UInt16();
        text = bytes_.Text(length);
    }
    template <class Element, std::size_t size> void Block(std::array<Element, size>& block) {
        const std::string_view text = bytes_.Text(size);
        std::copy(text.begin(), text.end(), block.begin());
    }
    /// Calls one(record) for each record that the file has; those behind its end stay what they are without a value.
    template <class Record, class One> void Each(std::vector<Record>& records, One one) {
        for (std::size_t i = 0; i < records.size() && !bytes_.AtEnd(); ++i)
            one(records[i]);
    }
    /// One value of each record, under a count of its own. False for a count that cannot be one.
    template <class Record> bool CountedColumn(std::vector<Record>& records, std::int32_t Record::*value) {
        const auto count = ReadCount(bytes_);
        for (std::size_t i = 0; count && i < *count && !bytes_.AtEnd(); ++i) {
            const std::int32_t number = bytes_.Int32();
            if (i < records.size())
                records[i].*value = number;
        }
        return count.has_value();
    }
    /// Makes the records. False for a count that cannot be one: a table that ends early reads as zeros, but only as far
    /// as that costs no memory to speak of.
    template <class Record> bool Count(std::vector<Record>& records) {
        const auto count = ReadCount(bytes_);
        if (!count || (*count > mostWithoutBytes && *count > bytes_.Left() / BytesOfOne<Record>()))
            return false;
        records.resize(*count);
        return true;
    }
    ByteReader& Rest() { return bytes_; }

private:
    ByteReader bytes_;
};

class TableWriter {
public:
    void Int32(std::int32_t value) { bytes_.Int32(value); }
    void Byte(std::int32_t value) { bytes_.Byte(value); }
    void Text(std::string_view text, std::int32_t) { bytes_.Text(text); }
    void CountedText(std::string_view text) {
        text = text.substr(0, longestCountedText);
        bytes_.UInt16(static_cast<std::int32_t>(text.size()));
        bytes_.Text(text);
    }
    template <class Element, std::size_t size> void Block(const std::array<Element, size>& block) {
        for (const Element element : block)
            bytes_.Byte(element);
    }
    template <class Record, class One> void Each(const std::vector<Record>& records, One one) {
        std::for_each(records.begin(), records.end(), one);
    }
    template <class Record> bool CountedColumn(const std::vector<Record>& records, std::int32_t Record::*value) {
        WriteCount(bytes_, records.size());
        for (const Record& record : records)
            bytes_.Int32(record.*value);
        return true;
    }
    template <class Record> bool Count(const std::vector<Record>& records) {
        WriteCount(bytes_, records.size());
        return true;
    }
    ByteWriter& Rest() { return bytes_; }
    std::string Take() { return bytes_.Take(); }

private:
    ByteWriter bytes_;
};

template <class File, class Record> void Rows(File& file, Record& record) {
    for (const auto& field : fieldsOf<std::remove_const_t<Record>>) {
        if (field.since != FieldLevel::Doom) // stand behind all else, and only where an engine has them
            continue;
        if (field.width == FieldWidth::Byte)
            file.Byte(record.*field.member);
        else
            file.Int32(record.*field.member);
    }
}

/// Reads or writes all records of a kind, column by column as they stand in the file. False for a count that cannot be
/// one.
template <class File, class Records> bool Columns(File& file, Records& records) {
    using Record = typename Records::value_type;
    if (!file.Count(records))
        return false;
    if constexpr (isNamed<Record>)
        file.Each(records, [&file](auto& record) { file.CountedText(record.name); });
    if constexpr (std::is_same_v<Record, SpriteRecord>)
        file.Each(records, [&file](auto& record) { file.Int32(record.value); });
    if constexpr (std::is_same_v<Record, SoundRecord> || std::is_same_v<Record, SpriteRecord>)
        file.Each(records, [&file](auto& record) { file.Block(record.name); });
    if constexpr (!fieldTable<Record>.empty())
        file.Each(records, [&file](auto& record) { Rows(file, record); });
    if constexpr (std::is_same_v<Record, ThingRecord>)
        file.Each(records, [&file](auto& record) { file.Block(record.extra); });
    if constexpr (std::is_same_v<Record, StateRecord>)
        return file.CountedColumn(records, &StateRecord::codePointer);
    if constexpr (std::is_same_v<Record, StringRecord>)
        file.Each(records, [&file](auto& record) {
            auto length = static_cast<std::int32_t>(record.text.size());
            file.Int32(length);
            file.Int32(record.position);
            file.Text(record.text, length);
        });
    if constexpr (std::is_same_v<Record, CheatRecord>)
        file.Each(records, [&file](auto& record) {
            auto length = static_cast<std::int32_t>(std::min(record.text.size(), longestCountedText));
            file.Int32(length); // stands there twice
            file.Int32(record.maximumLength);
            file.CountedText(record.text);
            file.Int32(record.spare);
        });
    return true;
}

/// What a record takes at least in a table file, in bytes.
template <class Record> std::size_t BytesOfOne() {
    const auto size = [](std::size_t count) {
        TableWriter writer;
        const std::vector<Record> records(count);
        Columns(writer, records);
        return writer.Take().size();
    };
    return size(2) - size(1);
}

/// Reads or writes a whole set. False for a count that cannot be one.
template <class File, class Set> bool Content(File& file, Set& set, const Dialect& dialect) {
    bool possible = true;
    VisitTableKinds([&](const auto& kind) {
        const bool inConfiguration = kind.kind == RecordKind::String && dialect.keyedTexts;
        if (!inConfiguration)
            possible = possible && Columns(file, kind.In(set).Dense());
    });
    Rows(file, set.misc);
    return possible;
}

// Behind all else, in the newer version: what records have in fields that came later, column by column, each under its
// label, so that a reader can pass over those that it does not know.

static_assert(static_cast<int>(RecordKind::State) == 1 && static_cast<int>(RecordKind::Weapon) == 5,
              "stand in the files");
constexpr std::size_t bytesOfLaterField = 9; // record, whether it is set, number
constexpr std::size_t bytesOfText = 2 * sizeof(std::int32_t) + sizeof(std::uint16_t); // record, its lengths

using LaterValue = std::pair<std::int32_t, FieldValue>;

/// The records in which a field has another value than in a new record.
template <class Record>
std::vector<LaterValue> LaterValues(const NumberedList<Record>& records, const Field<Record>& field) {
    std::vector<LaterValue> values;
    const FieldValue standard = ValueOf(Record(), field);
    for (const auto& [number, record] : records)
        if (const FieldValue value = ValueOf(record, field); value != standard)
            values.emplace_back(number, value);
    return values;
}

void WriteLaterFields(ByteWriter& file, const PatchSet& set, FieldLevel level) {
    ByteWriter columns;
    std::size_t count = 0;
    VisitTableKinds([&](const auto& kind) {
        for (const auto& field : fieldsOf<RecordOf<decltype(kind)>>) {
            if (field.since == FieldLevel::Doom || field.since > level)
                continue;
            ++count;
            columns.Byte(static_cast<std::int32_t>(kind.kind));
            columns.UInt16(static_cast<std::int32_t>(field.label.size()));
            columns.Text(field.label);
            const auto values = LaterValues(kind.In(set), field);
            WriteCount(columns, values.size());
            for (const auto& [record, value] : values) {
                columns.Int32(record);
                columns.Byte(value ? 1 : 0);
                columns.Int32(value.value_or(0));
            }
        }
    });
    WriteCount(file, count);
    file.Text(columns.Take());
}

/// False for a count that cannot be one.
bool ReadLaterFields(ByteReader& file, PatchSet& set, FieldLevel level) {
    const auto columns = ReadCount(file);
    for (std::size_t column = 0; columns && column < *columns && !file.AtEnd(); ++column) {
        const auto kindNumber = static_cast<RecordKind>(file.Byte());
        const std::uint16_t length = file.UInt16();
        const std::string_view label = file.Text(length);
        const auto count = ReadCount(file);
        if (!count || *count > file.Left() / bytesOfLaterField)
            return false;
        for (std::size_t i = 0; i < *count; ++i) {
            const std::int32_t index = file.Int32();
            const bool given = file.Byte() != 0;
            const std::int32_t number = file.Int32();
            VisitKind(kindNumber, [&](const auto& kind) {
                using Record = RecordOf<decltype(kind)>;
                if constexpr (!fieldTable<Record>.empty())
                    if (const Field<Record>* field = FindField<Record>(label);
                        field != nullptr && field->since != FieldLevel::Doom && field->since <= level)
                        if (Record* record = kind.In(set).Find(index))
                            SetValue(*record, *field, given ? FieldValue(number) : FieldValue());
            });
        }
    }
    return columns.has_value();
}

// In the newest version, where a set has them: before the later fields the records of any number, each kind under a
// count, first the numbers, then the records as ever; behind these fields the names that text fields hold.

template <class Record> std::vector<std::int32_t> OtherNumbers(const NumberedList<Record>& records) {
    std::vector<std::int32_t> numbers = records.Numbers();
    numbers.erase(numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(records.DenseSize()));
    return numbers;
}

bool NeedsNewestVersion(const PatchSet& set) {
    bool needs = !set.texts.empty();
    VisitTableKinds([&](const auto& kind) { needs = needs || kind.In(set).size() != kind.In(set).DenseSize(); });
    return needs;
}

void WriteOtherRecords(TableWriter& file, const PatchSet& set) {
    VisitTableKinds([&](const auto& kind) {
        const auto& records = kind.In(set);
        std::vector<RecordOf<decltype(kind)>> others;
        WriteCount(file.Rest(), records.size() - records.DenseSize());
        for (const std::int32_t number : OtherNumbers(records)) {
            file.Int32(number);
            others.push_back(records[number]);
        }
        Columns(file, others);
    });
}

/// False for a count that cannot be one.
bool ReadOtherRecords(TableReader& file, PatchSet& set) {
    bool possible = true;
    VisitTableKinds([&](const auto& kind) {
        const auto count = possible ? ReadCount(file.Rest()) : std::nullopt;
        possible = count && *count <= file.Rest().Left() / sizeof(std::int32_t);
        if (!possible)
            return;
        std::vector<std::int32_t> numbers(*count);
        for (std::int32_t& number : numbers)
            file.Int32(number);
        std::vector<RecordOf<decltype(kind)>> others;
        possible = Columns(file, others) && others.size() == numbers.size();
        for (std::size_t i = 0; possible && i < numbers.size(); ++i)
            kind.In(set).Add(numbers[i], std::move(others[i]));
    });
    return possible;
}

void WriteTexts(TableWriter& file, const PatchSet& set) {
    WriteCount(file.Rest(), set.texts.size());
    for (const auto& [key, text] : set.texts) {
        const auto& [kind, number, field] = key;
        file.Int32(number);
        file.Byte(static_cast<std::int32_t>(kind));
        file.CountedText(textFields[static_cast<std::size_t>(field)].label);
        file.CountedText(text);
    }
}

/// False for a count that cannot be one. Passes over fields that there are not.
bool ReadTexts(TableReader& file, PatchSet& set, FieldLevel level) {
    const auto count = ReadCount(file.Rest());
    if (!count || *count > file.Rest().Left() / bytesOfText)
        return false;
    for (std::size_t i = 0; i < *count; ++i) {
        std::int32_t number = 0, kind = 0;
        std::string label, text;
        file.Int32(number);
        file.Byte(kind);
        file.CountedText(label);
        file.CountedText(text);
        for (std::size_t field = 0; field < textFields.size(); ++field)
            if (textFields[field].kind == static_cast<RecordKind>(kind) && textFields[field].label == label &&
                textFields[field].since <= level && !text.empty() && HasRecord(set, textFields[field].kind, number))
                set.texts[{textFields[field].kind, number, static_cast<int>(field)}] = text;
    }
    return true;
}

/// What tables of the plain version do not hold.
void DroppedItemsOfConfiguration(const EngineConfiguration& engine, PatchSet& set) {
    for (const auto& [thing, dropped] : engine.droppedItems)
        if (ThingRecord* record = set.things.Find(thing))
            record->droppedItem = dropped;
}

void StringsOfConfiguration(const EngineConfiguration& engine, PatchSet& set) {
    set.strings.clear();
    set.strings.reserve(engine.strings.size());
    for (const EngineConfiguration::String& string : engine.strings) {
        std::string text = modPatchText::UnescapeText(string.text);
        const auto length = static_cast<std::int32_t>(text.size());
        set.strings.push_back({0, length, std::move(text)});
    }
}

} // namespace

Status ParseTable(std::string_view bytes, const EngineConfiguration& engine, PatchSet& set) {
    if (!bytes.starts_with(magic))
        return Status::Failure("Invalid table Id.");
    ByteReader version(bytes, magic.size());
    const int major = version.Byte(), minor = version.Byte();
    if (major != majorVersion || minor < plainMinorVersion || minor > minorVersion)
        return Status::Failure("Invalid table version.");

    PatchSet read;
    TableReader file(bytes.substr(magic.size() + 2));
    const FieldLevel level = engine.dialect.engineFields;
    const bool newest = minor == minorVersion;
    if (!Content(file, read, engine.dialect) || (newest && !ReadOtherRecords(file, read)) ||
        (minor > plainMinorVersion && !ReadLaterFields(file.Rest(), read, level)) ||
        (newest && !ReadTexts(file, read, level)))
        return Status::Failure("Damaged table file.");
    if (minor == plainMinorVersion)
        DroppedItemsOfConfiguration(engine, read);
    // What a patch quotes is the text that there is, whatever a damaged file promises.
    for (StringRecord& string : read.strings.Dense())
        string.length = static_cast<std::int32_t>(string.text.size());
    if (engine.dialect.keyedTexts)
        StringsOfConfiguration(engine, read);
    set = std::move(read);
    return {};
}

std::string FormatTable(const PatchSet& set, const Dialect& dialect) {
    TableWriter file;
    file.Text(magic, 0);
    file.Byte(majorVersion);
    const bool newest = NeedsNewestVersion(set), plain = dialect.fields == FieldLevel::Doom && !newest;
    file.Byte(plain ? plainMinorVersion : newest ? minorVersion : fieldsMinorVersion);
    Content(file, set, dialect);
    if (newest)
        WriteOtherRecords(file, set);
    if (!plain)
        WriteLaterFields(file.Rest(), set, dialect.fields);
    if (newest)
        WriteTexts(file, set);
    return file.Take();
}

std::filesystem::path TablePath(const std::filesystem::path& programFolder, const EngineConfiguration& engine) {
    return ResolveIgnoringCase(programFolder / "tables" / PathOf(engine.table));
}

bool LoadTable(Environment& environment, const EngineConfiguration& engine, const std::filesystem::path& file,
               PatchData& patch) {
    environment.log.Add("  Loading tables from " + PathText(file) + "...");
    std::string bytes;
    Status status = ReadWholeFile(file, bytes);
    if (!status) {
        environment.notifier.Show(MessageKind::Exclamation,
                                  "Could not read " + PathText(file) + ": " + status.Reason() + ".");
        return false;
    }
    PatchSet set;
    status = ParseTable(bytes, engine, set);
    if (!status) {
        environment.notifier.Show(MessageKind::Exclamation, status.Reason());
        return false;
    }
    patch.defaults = std::move(set);
    const PatchSet& loaded = patch.defaults;
    const std::pair<std::size_t, std::string_view> counts[] = {
        {loaded.things.size(), "things"},          {loaded.states.size(), "states"},
        {loaded.sounds.size(), "sounds"},          {loaded.sprites.size(), "sprites"},
        {engine.MnemonicCount(), "code pointers"}, {loaded.strings.size(), "strings"},
        {loaded.weapons.size(), "weapons"},        {loaded.ammo.size(), "ammo entries"},
        {loaded.cheats.size(), "cheat strings"}};
    for (const auto& [count, what] : counts)
        environment.log.Add("    Loaded " + std::to_string(count) + " " + std::string(what));
    ResetPatchData(engine, environment.documentsFolder, patch, environment.log);
    return true;
}

bool LoadEngineTable(Environment& environment, const EngineConfiguration& engine, PatchData& patch) {
    const std::filesystem::path file = TablePath(environment.programFolder, engine);
    if (!FileExists(file)) {
        environment.notifier.Show(MessageKind::Exclamation, "No table file for engine configuration.");
        return false;
    }
    return LoadTable(environment, engine, file, patch);
}

bool ReadEngine(const std::filesystem::path& programFolder, const modConfig::EngineEntry& entry,
                EngineConfiguration& engine, PatchSet& defaults) {
    if (entry.configuration == nullptr)
        return false;
    engine = *entry.configuration;
    std::string table;
    return ReadWholeFile(TablePath(programFolder, engine), table) && ParseTable(table, engine, defaults);
}

Status SaveTable(const Session& session, const std::filesystem::path& file) {
    return WriteFileAtomically(file, FormatTable(session.patch.current, session.engine.dialect));
}

void ResetPatchData(const EngineConfiguration& engine, const std::filesystem::path& folder, PatchData& patch,
                    clsLog& log) {
    patch.current = patch.defaults;
    patch.current.pars.clear();
    patch.doomVersion = engine.version;
    patch.patchFormat = engine.dialect.patchFormat;
    patch.engineConfig = engine.fileName;
    patch.fileName = folder / ("unnamed" + std::string(engine.dialect.fileEnding));
    patch.changed = false;
    patch.named = false;
    patch.document.reset();
    log.Add("  Reset patch data");
}

} // namespace plinket3::modTables
