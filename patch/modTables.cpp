#include "patch/modTables.h"

#include "core/Bytes.h"
#include "core/Files.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace plinket3::modTables {

namespace {

constexpr std::string_view magic = "ETBL";
constexpr int majorVersion = 1, minorVersion = 3;
constexpr std::int32_t largestUpperBound = 1048575;
constexpr std::size_t longestCountedText = std::numeric_limits<std::uint16_t>::max();

/// The number of elements that an upper bound in the file stands for; absent when it cannot be one.
std::optional<std::size_t> ReadCount(ByteReader& reader) {
    const std::int32_t upperBound = reader.Int32();
    if (upperBound < -1 || upperBound > largestUpperBound)
        return std::nullopt;
    return static_cast<std::size_t>(upperBound + 1);
}

void WriteCount(ByteWriter& writer, std::size_t count) { writer.Int32(static_cast<std::int32_t>(count) - 1); }

template <class Record> Record ReadRecord(ByteReader& reader) {
    Record record;
    for (const Field<Record>& field : fieldsOf<Record>)
        record.*field.member = field.width == FieldWidth::Byte ? reader.Byte() : reader.Int32();
    return record;
}

template <class Record> void WriteRecord(ByteWriter& writer, const Record& record) {
    for (const Field<Record>& field : fieldsOf<Record>) {
        if (field.width == FieldWidth::Byte)
            writer.Byte(record.*field.member);
        else
            writer.Int32(record.*field.member);
    }
}

/// Makes `count` elements and reads them one by one; from where the file ends they stay what they are without a value.
template <class Element, class Read>
void ReadElements(const ByteReader& reader, std::size_t count, std::vector<Element>& elements, Read read) {
    elements.resize(count);
    for (std::size_t i = 0; i < count && !reader.AtEnd(); ++i)
        elements[i] = read();
}

template <class Record> void ReadRecords(ByteReader& reader, std::size_t count, std::vector<Record>& records) {
    ReadElements(reader, count, records, [&reader] { return ReadRecord<Record>(reader); });
}

template <class Record> void WriteRecords(ByteWriter& writer, const std::vector<Record>& records) {
    for (const Record& record : records)
        WriteRecord(writer, record);
}

void ReadNames(ByteReader& reader, std::size_t count, std::vector<std::string>& names) {
    ReadElements(reader, count, names, [&reader] {
        const std::uint16_t length = reader.UInt16();
        return std::string(reader.Text(length));
    });
}

void WriteCountedText(ByteWriter& writer, std::string_view text) {
    text = text.substr(0, longestCountedText);
    writer.UInt16(static_cast<std::int32_t>(text.size()));
    writer.Text(text);
}

template <class Element, std::size_t size>
void ReadBlocks(ByteReader& reader, std::size_t count, std::vector<std::array<Element, size>>& blocks) {
    ReadElements(reader, count, blocks, [&reader] {
        std::array<Element, size> block{};
        const std::string_view bytes = reader.Text(size);
        std::copy(bytes.begin(), bytes.end(), block.begin());
        return block;
    });
}

template <class Element, std::size_t size>
void WriteBlocks(ByteWriter& writer, const std::vector<std::array<Element, size>>& blocks) {
    for (const auto& block : blocks)
        for (const Element element : block)
            writer.Byte(element);
}

void ReadNumbers(ByteReader& reader, std::size_t count, std::vector<std::int32_t>& numbers) {
    ReadElements(reader, count, numbers, [&reader] { return reader.Int32(); });
}

bool ReadThings(ByteReader& reader, PatchSet& set) {
    const auto count = ReadCount(reader);
    if (!count)
        return false;
    ReadNames(reader, *count, set.thingNames);
    ReadRecords(reader, *count, set.things);
    ReadBlocks(reader, *count, set.thingExtras);
    return true;
}

bool ReadStates(ByteReader& reader, PatchSet& set) {
    const auto count = ReadCount(reader);
    if (!count)
        return false;
    ReadRecords(reader, *count, set.states);
    const auto pointers = ReadCount(reader);
    if (!pointers)
        return false;
    ReadNumbers(reader, *pointers, set.codePointers);
    set.codePointers.resize(*count); // every state has one, whatever the file says
    return true;
}

bool ReadSoundsAndSprites(ByteReader& reader, PatchSet& set) {
    const auto sounds = ReadCount(reader);
    if (!sounds)
        return false;
    ReadBlocks(reader, *sounds, set.soundNames);
    ReadRecords(reader, *sounds, set.sounds);
    const auto sprites = ReadCount(reader);
    if (!sprites)
        return false;
    ReadNumbers(reader, *sprites, set.spriteValues);
    ReadBlocks(reader, *sprites, set.spriteNames);
    return true;
}

bool ReadStrings(ByteReader& reader, PatchSet& set) {
    const auto count = ReadCount(reader);
    if (!count)
        return false;
    ReadElements(reader, *count, set.strings, [&reader] {
        StringRecord string;
        const std::int32_t length = reader.Int32();
        string.position = reader.Int32();
        string.text = reader.Text(length);
        // What a patch quotes is the text that there is, whatever a damaged file promises.
        string.length = static_cast<std::int32_t>(string.text.size());
        return string;
    });
    return true;
}

bool ReadWeaponsAndAmmo(ByteReader& reader, PatchSet& set) {
    const auto weapons = ReadCount(reader);
    if (!weapons)
        return false;
    ReadNames(reader, *weapons, set.weaponNames);
    ReadRecords(reader, *weapons, set.weapons);
    const auto ammo = ReadCount(reader);
    if (!ammo)
        return false;
    ReadNames(reader, *ammo, set.ammoNames);
    ReadRecords(reader, *ammo, set.ammo);
    return true;
}

bool ReadCheats(ByteReader& reader, PatchSet& set) {
    const auto count = ReadCount(reader);
    if (!count)
        return false;
    ReadElements(reader, *count, set.cheats, [&reader] {
        CheatRecord cheat;
        reader.Int32(); // repeats the length of the text
        cheat.maximumLength = reader.Int32();
        const std::uint16_t length = reader.UInt16();
        cheat.text = reader.Text(length);
        cheat.spare = reader.Int32();
        return cheat;
    });
    return true;
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
    ByteReader reader(bytes);
    if (reader.Text(static_cast<std::int64_t>(magic.size())) != magic)
        return Status::Failure("Invalid table Id.");
    const int major = reader.Byte(), minor = reader.Byte();
    if (major != majorVersion || minor != minorVersion)
        return Status::Failure("Invalid table version.");

    PatchSet read;
    if (!ReadThings(reader, read) || !ReadStates(reader, read) || !ReadSoundsAndSprites(reader, read) ||
        (!engine.extended && !ReadStrings(reader, read)) || !ReadWeaponsAndAmmo(reader, read) ||
        !ReadCheats(reader, read))
        return Status::Failure("Damaged table file.");
    read.misc = ReadRecord<MiscRecord>(reader);
    if (engine.extended)
        StringsOfConfiguration(engine, read);
    set = std::move(read);
    return {};
}

std::string FormatTable(const PatchSet& set, bool extended) {
    ByteWriter writer;
    writer.Text(magic);
    writer.Byte(majorVersion);
    writer.Byte(minorVersion);

    WriteCount(writer, set.things.size());
    for (const std::string& name : set.thingNames)
        WriteCountedText(writer, name);
    WriteRecords(writer, set.things);
    WriteBlocks(writer, set.thingExtras);

    WriteCount(writer, set.states.size());
    WriteRecords(writer, set.states);
    WriteCount(writer, set.codePointers.size());
    for (const std::int32_t codePointer : set.codePointers)
        writer.Int32(codePointer);

    WriteCount(writer, set.sounds.size());
    WriteBlocks(writer, set.soundNames);
    WriteRecords(writer, set.sounds);

    WriteCount(writer, set.spriteNames.size());
    for (const std::int32_t value : set.spriteValues)
        writer.Int32(value);
    WriteBlocks(writer, set.spriteNames);

    if (!extended) {
        WriteCount(writer, set.strings.size());
        for (const StringRecord& string : set.strings) {
            writer.Int32(static_cast<std::int32_t>(string.text.size()));
            writer.Int32(string.position);
            writer.Text(string.text);
        }
    }

    WriteCount(writer, set.weapons.size());
    for (const std::string& name : set.weaponNames)
        WriteCountedText(writer, name);
    WriteRecords(writer, set.weapons);

    WriteCount(writer, set.ammo.size());
    for (const std::string& name : set.ammoNames)
        WriteCountedText(writer, name);
    WriteRecords(writer, set.ammo);

    WriteCount(writer, set.cheats.size());
    for (const CheatRecord& cheat : set.cheats) {
        writer.Int32(static_cast<std::int32_t>(std::min(cheat.text.size(), longestCountedText)));
        writer.Int32(cheat.maximumLength);
        WriteCountedText(writer, cheat.text);
        writer.Int32(cheat.spare);
    }
    WriteRecord(writer, set.misc);
    return writer.Take();
}

std::filesystem::path TablePath(const std::filesystem::path& programFolder, const EngineConfiguration& engine) {
    return ResolveIgnoringCase(programFolder / "tables" / engine.table);
}

bool LoadTable(Environment& environment, const EngineConfiguration& engine, const std::filesystem::path& file,
               PatchData& patch) {
    environment.log.Add("  Loading tables from " + file.string() + "...");
    std::string bytes;
    Status status = ReadWholeFile(file, bytes);
    if (!status) {
        environment.notifier.Show(MessageKind::Exclamation,
                                  "Could not read " + file.string() + ": " + status.Reason() + ".");
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
        {loaded.sounds.size(), "sounds"},          {loaded.spriteNames.size(), "sprites"},
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

Status SaveTable(const PatchData& patch, const std::filesystem::path& file) {
    return WriteFileAtomically(file, FormatTable(patch.current, patch.extended));
}

void ResetPatchData(const EngineConfiguration& engine, const std::filesystem::path& folder, PatchData& patch,
                    clsLog& log) {
    patch.current = patch.defaults;
    patch.current.pars.clear();
    patch.extended = engine.extended;
    patch.doomVersion = engine.version;
    patch.patchFormat = supportedPatchFormat;
    patch.engineConfig = engine.fileName;
    patch.fileName = folder / (engine.extended ? "unnamed.bex" : "unnamed.deh");
    patch.changed = false;
    patch.named = false;
    log.Add("  Reset patch data");
}

} // namespace plinket3::modTables
