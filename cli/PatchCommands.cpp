#include "cli/Command.h"
#include "core/Files.h"
#include "core/Numbers.h"
#include "core/PathList.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "patch/EngineChange.h"
#include "patch/PatchDocument.h"
#include "patch/PatchMerge.h"
#include "patch/PatchPlace.h"
#include "patch/RulesChoice.h"
#include "patch/SessionChoice.h"
#include "patch/StateUse.h"
#include "patch/modPatchCheck.h"
#include "patch/modPatchDiff.h"
#include "patch/modTables.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <utility>

namespace plinket3::cli {

namespace {

using modPatchFiles::Header;

std::filesystem::path ConfigFolder(const Program& program) { return program.programFolder / "config"; }

void FindEngines(Run& run) {
    run.program.engines = modConfig::EnumerateEngines(
        ConfigFolder(run.program), [&run](std::string_view reason) { run.skippedEngines.emplace_back(reason); });
}

void RequireEngines(const Program& program) {
    if (program.engines.empty())
        throw Refused(PathText(ConfigFolder(program)) + ": there are no engine configurations");
}

std::size_t EngineNamed(const Run& run, const std::string& name) {
    const Program& program = run.program;
    for (const std::string& file : {name, name + ".cfg"}) {
        for (std::size_t i = 0; i < program.engines.size(); ++i)
            if (program.engines[i].file.filename() == PathOf(file))
                return i;
        for (const std::string& reason : run.skippedEngines)
            if (reason.starts_with(PathText(ConfigFolder(program) / PathOf(file)) + ":"))
                throw Refused(reason);
    }
    throw Refused(name + ": there is no such engine; \"plinket3-cli engines\" lists them");
}

/// Where a patch stands that was given as a plain argument: of a WAD it is a lump.
PatchPlace PlaceOf(const Run& run, const std::filesystem::path& file) {
    const std::string& lump = run.arguments.lump;
    if (IsWad(file))
        return {file, lump.empty() ? std::string(patchLump) : lump};
    if (!lump.empty() && FileExists(file) && std::ranges::none_of(run.arguments.files, IsWad))
        throw Refused("--lump: none of the files is a WAD");
    return file;
}

/// A patch as it was given on the command line. Its name is that of its place.
struct PatchFile {
    PatchPlace place;
    std::string name, bytes;
    Header header;
};

PatchFile ReadPatchFile(const Run& run, const std::string& file) {
    PatchFile patch;
    patch.place = PlaceOf(run, PathOf(file));
    patch.name = patch.place.Name();
    Require(ReadPlace(patch.place, patch.bytes), patch.name);
    const Status scanned = modPatchFiles::ScanHeader(std::string_view(patch.bytes), patch.header);
    if (run.arguments.rules == "kept") // engines do not mind what stands twice
        Require(scanned, patch.name);
    return patch;
}

std::size_t EngineFor(const Run& run, const PatchFile& patch, std::string_view rules) {
    const RulesSetting setting = rules == "kept"     ? RulesSetting::Kept
                                 : rules == "engine" ? RulesSetting::Engine
                                                     : RulesSetting::Recommend;
    if (const auto found =
            RecommendEngine(run.program, patch.header, patch.bytes, patch.place.file, std::nullopt, setting).index)
        return *found;
    if (!patch.header.contains("engineversion"))
        return 0;
    throw Refused("there is no engine configuration for patches with \"Doom version = " +
                  modPatchFiles::HeaderValue(patch.header, "engineversion") + "\"");
}

void LoadEntry(Run& run, const modConfig::EngineEntry& engine) {
    Program& program = run.program;
    const auto refuse = [&](const std::filesystem::path& file) {
        const std::string reason = run.notifier.Messages().back();
        const bool named = reason.find(PathText(file)) != std::string::npos;
        throw Refused(named ? reason : PathText(file) + ": " + reason);
    };
    if (engine.configuration != nullptr)
        program.engine = *engine.configuration;
    else if (!modConfig::LoadEngineConfiguration(engine.file, program.engine, program.notifier)) // says why it was not
        refuse(engine.file);
    if (!modTables::LoadEngineTable(program, program.engine, program.patch))
        refuse(modTables::TablePath(program.programFolder, program.engine));
}

/// Loads the engine that -e names, else the one that `patch` is likely made for by these rules, with its table. Throws
/// `Refused`.
void LoadEngine(Run& run, const PatchFile& patch, std::string_view rules) {
    Program& program = run.program;
    FindEngines(run);
    const std::string& name = run.arguments.engine;
    if (!name.empty())
        return LoadEntry(run, program.engines[EngineNamed(run, name)]);
    RequireEngines(program);
    LoadEntry(run, program.engines[EngineFor(run, patch, rules)]);
}

void LoadEngine(Run& run, const PatchFile& patch) { LoadEngine(run, patch, run.arguments.rules); }

/// By which rules a patch is read, and why.
RulesAdvice RulesFor(const Run& run, const PatchFile& patch) {
    if (run.arguments.rules == "kept" && !run.program.engine.dialect.engineRulesOnly)
        return {};
    if (run.arguments.rules == "engine")
        return {Rules::Engine, "asked for"};
    return RecommendRules(patch.bytes, run.program.engine, run.program.patch.defaults);
}

EngineConfiguration EngineWith(Rules rules, EngineConfiguration engine) {
    engine.dialect = engine.dialect.By(rules);
    return engine;
}

/// Says on standard error when the engine rules were taken unasked.
Rules TellRules(Run& run, const PatchFile& patch) {
    const RulesAdvice advice = RulesFor(run, patch);
    if (advice.rules == Rules::Engine && run.arguments.rules == "auto")
        Complain(run.err, Printable(patch.name) + ": engine rules: " + advice.reason);
    return advice.rules;
}

/// Reads a patch over the engine's own data; `document` gets the file by engine rules.
PatchSet ReadSet(Run& run, const PatchFile& patch, const EngineConfiguration& engine,
                 std::shared_ptr<const PatchDocument>* document = nullptr,
                 const modPatchFiles::IncludeReader& includes = {}) {
    PatchSet set;
    modPatchFiles::ReadResult read;
    if (engine.dialect.EngineRules()) {
        auto made = std::make_shared<PatchDocument>();
        read = made->Read(patch.bytes, engine, run.program.patch.defaults, set, includes);
        if (document != nullptr)
            *document = std::move(made);
    } else {
        read = modPatchFiles::ParsePatch(patch.bytes, engine, run.program.patch.defaults, set);
    }
    Require(read.status, patch.name + ":" + std::to_string(LineAt(patch.bytes, read.offset)));
    if (read.unsupported)
        Complain(run.err, patch.name + ": " + std::string(modPatchFiles::unsupportedEntries));
    return set;
}

/// What the patch's INCLUDE lines may name; games take none in a lump.
modPatchFiles::IncludeReader IncludesOf(const PatchFile& patch) {
    if (!patch.place.lump.empty())
        return {};
    return modPatchFiles::IncludesBeside(patch.place.file);
}

/// Loads the engine and reads `file` ("-": the engine's own data) into the open patch. Where there is no file, the
/// engine is the one for `other`. `included`: what it includes counts.
void LoadInto(Run& run, const std::string& file, const PatchFile& other = {}, bool included = false) {
    Program& program = run.program;
    if (file == standardSet) {
        LoadEngine(run, other);
        if (run.arguments.rules == "engine")
            program.engine = EngineWith(Rules::Engine, program.engine);
        return;
    }
    const PatchFile patch = ReadPatchFile(run, file);
    LoadEngine(run, patch);
    program.engine = EngineWith(TellRules(run, patch), program.engine);
    program.patch.current = ReadSet(run, patch, program.engine, &program.patch.document,
                                    included ? IncludesOf(patch) : modPatchFiles::IncludeReader());
    program.patch.fileName = patch.place.file;
    program.patch.lump = patch.place.lump;
    program.patch.named = true;
    if (program.patch.document) // what -e names is no reason to change the file
        program.patch.engineConfig = modPatchFiles::HeaderValue(patch.header, "engineconfig");
    program.patch.iwadPath = modPatchFiles::HeaderValue(patch.header, "iwad");
    program.patch.dataWadPaths = SplitPaths(modPatchFiles::HeaderValue(patch.header, "datawad"));
}

/// The one plain argument of a command that may go without it.
std::string PatchArgument(const Run& run) { return run.arguments.files.empty() ? standardSet : run.arguments.files[0]; }

int Engines(Run& run) {
    FindEngines(run);
    RequireEngines(run.program);
    for (const std::string& reason : run.skippedEngines)
        Complain(run.err, reason);
    for (const modConfig::EngineEntry& engine : run.program.engines)
        run.out << PathText(engine.file.filename()) << '\t' << engine.name << '\t' << engine.version << '\t'
                << (engine.extended ? "extended" : "normal") << '\n';
    return done;
}

int Info(Run& run) {
    PatchFile patch = ReadPatchFile(run, run.arguments.files[0]);
    Header& header = patch.header;
    header["filename"] = PathText(patch.place.file);
    for (const std::string_view name : {"patchversion", "engineversion", "engineconfig", "datawad", "iwad", "filename"})
        if (const auto found = header.find(name); found != header.end())
            run.out << name << " = " << Printable(found->second) << '\n';
    if (!patch.place.lump.empty())
        run.out << "lump = " << Printable(patch.place.lump) << '\n';
    if (run.arguments.rules == "kept")
        return done;
    LoadEngine(run, patch);
    const RulesAdvice advice = RulesFor(run, patch);
    ReadSet(run, patch, EngineWith(advice.rules, run.program.engine)); // refuses what is no patch
    run.out << "rules = " << (advice.rules == Rules::Engine ? "engine" : "kept") << "\nreason = "
            << (advice.reason.empty() ? "nothing would be lost or read otherwise" : Printable(advice.reason)) << '\n';
    return done;
}

int Dump(Run& run) {
    LoadPatch(run, PatchArgument(run));
    DumpJson(run.program, run.out);
    run.out << '\n';
    return done;
}

int Diff(Run& run) {
    const bool two = run.arguments.files.size() > 1;
    const std::string second = two ? run.arguments.files[1] : standardSet;
    const PatchFile patch = second == standardSet ? PatchFile() : ReadPatchFile(run, second);
    LoadInto(run, run.arguments.files[0], patch, true);
    Program& program = run.program;
    PatchSet other = program.patch.defaults;
    if (second != standardSet) {
        const EngineConfiguration engine = EngineWith(TellRules(run, patch), program.engine);
        other = ReadSet(run, patch, engine, nullptr, IncludesOf(patch));
        if (engine.dialect.EngineRules()) // its numbers are those that games know
            program.engine.dialect = engine.dialect;
        else
            program.patch.current.notes.clear(); // nobody knows what the other one's comments say
    }
    const std::vector<std::string> lines =
        two ? modPatchDiff::Differences(program.patch.current, other, program.engine)
            : modPatchDiff::Differences(other, program.patch.current, program.engine);
    for (const std::string& line : lines)
        run.out << Printable(line) << '\n';
    return lines.empty() ? done : no;
}

/// Whether the WADs that are named have a picture; nothing when none is named.
modPatchCheck::HasPicture PicturesOf(const Run& run) {
    std::vector<std::string> files = run.arguments.dataWads;
    if (!run.arguments.iwad.empty())
        files.insert(files.begin(), run.arguments.iwad);
    if (files.empty())
        return {};
    return [wads = OpenWads(files)](std::string_view sprite, int frame) { return HasSpriteFrame(wads, sprite, frame); };
}

int Check(Run& run) {
    const PatchFile patch = ReadPatchFile(run, run.arguments.files[0]);
    LoadEngine(run, patch);
    run.program.engine = EngineWith(TellRules(run, patch), run.program.engine);
    const modPatchCheck::CheckResult result = modPatchCheck::CheckPatch(
        patch.bytes, run.program.engine, run.program.patch.defaults, IncludesOf(patch), PicturesOf(run));
    Require(result.status, patch.name + ":" + std::to_string(result.failedLine));
    for (const modPatchCheck::Finding& finding : result.findings)
        run.out << Printable(patch.name) << ':' << finding.line << ": warning: " << Printable(finding.text) << '\n';
    return result.findings.empty() ? done : no;
}

/// Takes the open patch over to the engine that --to names; false when that cannot hold all of it, which standard error
/// then tells.
bool TakeOver(Run& run) {
    Program& program = run.program;
    const EngineConfiguration from = program.engine;
    const PatchData patch = program.patch;
    LoadEntry(run, program.engines[EngineNamed(run, run.arguments.to)]);
    program.engine = EngineWith(from.dialect.rules, program.engine);
    EngineChange change = ChangeEngine(patch, from, program.engine, program.patch.defaults);
    program.patch = std::move(change.patch);
    for (const std::string& line : change.lost)
        Complain(run.err, Printable(program.engine.name + " cannot hold: " + line));
    return change.lost.empty();
}

int Convert(Run& run) {
    if (run.arguments.engine.empty() && run.arguments.to.empty())
        throw Refused("-e or --to is required; see --help");
    LoadPatch(run, run.arguments.files[0]);
    Program& program = run.program;
    const bool whole = run.arguments.to.empty() || TakeOver(run);
    if (run.arguments.fresh || run.arguments.files[0] == standardSet)
        program.patch.document.reset();
    if (!run.arguments.iwad.empty())
        program.patch.iwadPath = run.arguments.iwad;
    if (!run.arguments.dataWads.empty())
        program.patch.dataWadPaths = run.arguments.dataWads;
    SaveTo(run, run.arguments.files[1]);
    return whole ? done : no;
}

/// A patch of a merge, by engine rules.
PatchDocument ReadDocument(Run& run, const PatchFile& patch) {
    PatchDocument document;
    PatchSet set;
    const modPatchFiles::ReadResult read =
        document.Read(patch.bytes, run.program.engine, run.program.patch.defaults, set);
    Require(read.status, patch.name + ":" + std::to_string(LineAt(patch.bytes, read.offset)));
    return document;
}

/// Tells of lines that stay out of a merge; false when there are none.
bool TellLeftOut(Run& run, const PatchFile& patch, const PatchDocument& document,
                 const std::vector<std::size_t>& lines) {
    for (const std::size_t line : lines) {
        const std::string_view text = document.Text(line);
        Complain(run.err, patch.name + ":" + std::to_string(LineAt(patch.bytes, document.Lines()[line].offset)) +
                              ": is not merged: " + std::string(Trim(text.substr(0, text.find_first_of("\r\n")))));
    }
    return !lines.empty();
}

int Merge(Run& run) {
    if (run.arguments.rules == "kept")
        throw Refused("merge: patches are merged by engine rules only");
    const std::vector<std::string>& files = run.arguments.files;
    std::vector<PatchFile> patches;
    for (const std::string& file : std::span(files).first(files.size() - 1))
        patches.push_back(ReadPatchFile(run, file));
    const PatchFile& base = patches.front();
    PatchFile all = base; // one engine must do for what stands in any of them
    for (const PatchFile& patch : std::span(patches).subspan(1))
        all.bytes += "\n\n" + patch.bytes;
    LoadEngine(run, all, "engine");
    const EngineConfiguration& engine = run.program.engine = EngineWith(Rules::Engine, run.program.engine);
    const PatchSet& defaults = run.program.patch.defaults;
    const PatchDocument document = ReadDocument(run, base);
    std::optional<PatchDocument> original;
    if (!run.arguments.base.empty())
        original = ReadDocument(run, ReadPatchFile(run, run.arguments.base));

    PatchSet ours = document.Said();
    std::vector<std::string> conflicts;
    std::vector<PatchDocument> documents;
    for (const PatchFile& patch : std::span(patches).subspan(1)) {
        const PatchDocument& theirs = documents.emplace_back(ReadDocument(run, patch));
        if (original) {
            const PatchSet refused = MergeChanges(theirs, *original, ours);
            for (const std::string& line : modPatchDiff::Differences(ours, refused, engine))
                conflicts.push_back("conflict: " + line);
        } else {
            MergePatch(theirs, defaults, ours);
        }
    }
    PatchDocument merged;
    Require(MergeIntoDocument(document, ours, defaults, engine, merged), base.name);
    const PatchPlace out = PlaceOf(run, PathOf(files.back()));
    Require(WritePlace(out, BytePieces(merged.Bytes()), false, MissingLump::IsAdded), out.Name());
    std::vector<std::string> lines = modPatchDiff::Differences(document.Said(), ours, engine);
    lines.insert(lines.end(), conflicts.begin(), conflicts.end());
    for (const std::string& line : lines)
        run.out << Printable(line) << '\n';
    bool leftOut = false;
    for (std::size_t i = 0; i < documents.size(); ++i)
        leftOut |= TellLeftOut(run, patches[i + 1], documents[i],
                               LinesNotMerged(documents[i], original ? &*original : nullptr, merged));
    return conflicts.empty() && !leftOut ? done : no;
}

int Table(Run& run) {
    const bool patched = run.arguments.files.size() > 1;
    LoadPatch(run, patched ? run.arguments.files[0] : standardSet);
    const std::string& file = run.arguments.files.back();
    Require(modTables::SaveTable(run.program, PathOf(file)), file);
    return done;
}

int Config(Run& run) {
    clsConfiguration configuration;
    const std::string& file = run.arguments.files[0];
    if (const Status status = configuration.LoadConfiguration(PathOf(file)); !status)
        throw Refused(status.Reason());
    run.out << configuration.OutputConfiguration("\r\n", !run.arguments.compact);
    return done;
}

int States(Run& run) {
    const bool byThing = run.arguments.thing.has_value(), byWeapon = run.arguments.weapon.has_value();
    if (byThing + byWeapon + run.arguments.unused != 1)
        throw Refused("states: give one of --thing, --weapon and --unused; see --help");
    LoadPatch(run, PatchArgument(run));
    const PatchSet& set = run.program.patch.current;
    const auto require = [](std::int32_t number, const auto& records, std::string_view what) {
        if (!records.Has(number))
            throw Refused("there is no " + std::string(what) + " " + std::to_string(number) + ", the last one is " +
                          std::to_string(records.empty() ? -1 : records.Highest()));
        return number;
    };
    const std::vector<std::int32_t> states =
        byThing    ? StatesOfThing(set, run.program.engine, require(*run.arguments.thing, set.things, "thing"))
        : byWeapon ? StatesOfWeapon(set, run.program.engine, require(*run.arguments.weapon, set.weapons, "weapon"))
                   : UnusedStates(set, run.program.engine);
    for (const std::int32_t state : states)
        run.out << state << '\n';
    return done;
}

constexpr std::array patchCommands{
    Command{"engines", "", "List the engine configurations: file, name, version, mode", "", 0, 0, Engines},
    Command{"info", "PATCH", "Print what the patch's header says", "lump", 1, 1, Info},
    Command{"dump", "[PATCH]", "Print every record as JSON, the engine's own without PATCH", "engine lump", 0, 1, Dump},
    Command{"diff", "A [B]", "Print what differs between two patches, or between the engine and a patch", "engine lump",
            1, 2, Diff},
    Command{"check", "PATCH", "Print the lines that do not do what they seem to, and data that a save would lose",
            "engine iwad data-wad lump", 1, 1, Check},
    Command{"convert", "IN OUT", "Read IN (\"-\": the engine's own data) and write OUT as saving does",
            "engine to iwad data-wad fresh lump", 2, 2, Convert},
    Command{"merge", "BASE PATCH... OUT",
            "Set in BASE what the PATCHes set, write it to OUT and print what has changed", "base engine lump", 3,
            std::numeric_limits<int>::max(), Merge},
    Command{"table", "[PATCH] OUT.tbl", "Write the patched records as a table file", "!engine lump", 1, 2, Table},
    Command{"config", "FILE", "Read a configuration text and print it as the program writes it", "compact", 1, 1,
            Config},
    Command{"states", "[PATCH]", "Print the numbers of the states that something uses, or nothing",
            "!engine thing weapon unused lump", 0, 1, States},
};

} // namespace

void LoadPatch(Run& run, const std::string& file) { LoadInto(run, file); }

void SaveTo(Run& run, const std::string& file) {
    const PatchPlace out = PlaceOf(run, PathOf(file));
    Require(modPatchFiles::SavePatch(run.program, out, false, MissingLump::IsAdded), out.Name());
}

std::span<const Command> PatchCommands() { return patchCommands; }

} // namespace plinket3::cli
