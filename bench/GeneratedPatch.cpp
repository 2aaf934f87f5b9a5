#include "bench/GeneratedPatch.h"

#include "core/Files.h"
#include "patch/modPatchFiles.h"
#include "patch/modTables.h"
#include "tools/EngineBuilder.h"

#include <algorithm>
#include <string>
#include <system_error>

namespace plinket3::bench {

namespace {

/// Whether a patch for the engine made up here has the field.
template <class Record> constexpr bool IsWritten(const Field<Record>& field) {
    return field.inPatch && field.since == FieldLevel::Doom;
}

/// The lines of a section with its header and the empty line behind it.
template <class Record> constexpr std::size_t LinesOf() {
    const auto& fields = fieldTable<Record>;
    return static_cast<std::size_t>(std::count_if(fields.begin(), fields.end(), IsWritten<Record>)) + 2;
}
constexpr std::size_t linesOfThing = LinesOf<ThingRecord>(), linesOfState = LinesOf<StateRecord>();

template <class Record> Record RecordFor(std::size_t index) {
    Record record;
    std::int32_t value = static_cast<std::int32_t>(index % 30000) + 1000; // 4 or 5 digits
    for (const Field<Record>& field : fieldsOf<Record>)
        if (IsWritten(field))
            record.*field.member = value++;
    return record;
}

} // namespace

GeneratedPatch GeneratePatch(std::size_t lines) {
    GeneratedPatch generated;
    EngineConfiguration& engine = generated.engine;
    engine.name = "Made up for measuring";
    engine.version = 19;
    engine.fileName = "bench.cfg";
    engine.table = "bench.tbl";

    PatchSet& defaults = generated.patch.defaults;
    PatchSet& current = generated.patch.current;
    const std::size_t things = lines / 10 / linesOfThing;
    const std::size_t states = (lines - things * linesOfThing) / linesOfState;
    defaults.things.resize(things);
    for (std::size_t i = 0; i < things; ++i)
        defaults.things[i].name = "Thing" + std::to_string(i);
    defaults.states.resize(states);
    for (const ThingRecord& thing : defaults.things.Dense())
        engine.thingNames.push_back(thing.name);
    engine.itemCounts.things = static_cast<std::int32_t>(things);
    engine.itemCounts.states = static_cast<std::int32_t>(states);

    current = defaults;
    for (std::size_t i = 0; i < things; ++i)
        static_cast<ThingNumbers&>(current.things[i]) = RecordFor<ThingRecord>(i);
    for (std::size_t i = 0; i < states; ++i)
        current.states[i] = RecordFor<StateRecord>(i);
    generated.patch.doomVersion = engine.version;
    generated.patch.engineConfig = engine.fileName;
    generated.patch.iwadPath = "doom2.wad";
    return generated;
}

Status WriteDataFolder(const std::filesystem::path& folder) {
    std::error_code ignored; // a folder that is missing shows when a file in it is written
    std::filesystem::create_directories(folder / "config", ignored);
    std::filesystem::create_directories(folder / "tables", ignored);
    const auto write = [](const std::filesystem::path& file, const std::string& bytes) {
        const Status written = WriteFileAtomically(file, bytes);
        return written ? written : Status::Failure(file.string() + ": " + written.Reason());
    };
    const GeneratedPatch large = GeneratePatch(1'000'000), small = GeneratePatch(1'000);
    Status status = write(folder / "config" / large.engine.fileName, tools::FormatEngine(large.engine));
    if (status)
        status = write(folder / "tables" / large.engine.table,
                       modTables::FormatTable(large.patch.defaults, large.engine.dialect));
    if (status)
        status = write(folder / "large.deh", modPatchFiles::FormatPatch(large.patch, large.engine));
    if (status)
        status = write(folder / "small.deh", modPatchFiles::FormatPatch(small.patch, small.engine));
    return status;
}

} // namespace plinket3::bench
