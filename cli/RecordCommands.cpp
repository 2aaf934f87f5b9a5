#include "cli/Command.h"
#include "core/Files.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "patch/EngineNames.h"
#include "patch/FreeRecords.h"
#include "patch/PastePlan.h"
#include "patch/StepNames.h"
#include "patch/Uses.h"

#include <algorithm>
#include <array>
#include <optional>

namespace plinket3::cli {

namespace {

/// Loads the patch at that place of the plain arguments, or the engine's own data when there is none.
void LoadPatchAt(Run& run, std::size_t place) {
    const std::vector<std::string>& files = run.arguments.files;
    LoadPatch(run, place < files.size() ? files[place] : standardSet);
    run.program.fixedUses = LoadFixedUses(run.program.programFolder, run.program.engine);
}

template <class Records> std::int32_t IndexOf(const Records& records, std::string_view name) {
    for (const auto& [number, record] : records)
        if (EqualIgnoringCase(record.name, name))
            return number;
    return noRecord;
}

/// A record by its number or name, or an action by its mnemonic or code pointer value. Throws `Refused`.
Target TargetNamed(const Run& run, std::string_view word, const std::string& name) {
    const PatchSet& set = run.program.patch.current;
    const EngineConfiguration& engine = run.program.engine;
    const auto kind = TargetKindNamed(word);
    if (!kind)
        throw Refused(std::string(word) + ": there is no such kind; see --help");
    Target target{*kind, noRecord};
    if (const auto number = WholeNumber(name))
        target.number = *number;
    else if (*kind == TargetKind::Action)
        target.number = engine.CodePointerOf(name).value_or(noRecord);
    else if (*kind == TargetKind::Sprite)
        target.number = IndexByName(set.sprites, name).value_or(noRecord);
    else if (*kind == TargetKind::Sound)
        target.number = IndexByName(set.sounds, name).value_or(noRecord);
    else if (*kind == TargetKind::Thing)
        target.number = IndexOf(set.things, name);
    else if (*kind == TargetKind::Weapon)
        target.number = IndexOf(set.weapons, name);
    else if (*kind == TargetKind::Ammo)
        target.number = IndexOf(set.ammo, name);
    else if (*kind == TargetKind::String)
        for (std::size_t i = 0; i < engine.strings.size(); ++i)
            if (EqualIgnoringCase(engine.strings[i].mnemonic, name))
                target.number = static_cast<std::int32_t>(i);
    if (!HasTarget(set, engine, target))
        throw Refused("there is no " + std::string(word) + " " + name);
    return target;
}

int Uses(Run& run) {
    LoadPatchAt(run, 2);
    const Target target = TargetNamed(run, run.arguments.files[0], run.arguments.files[1]);
    const Program& program = run.program;
    const std::vector<Use> uses = UsesOf(program.patch.current, program.engine, program.fixedUses, target);
    for (const Use& use : uses)
        run.out << Printable(use.text) << '\n';
    return uses.empty() ? no : done;
}

int Free(Run& run) {
    const std::vector<std::string>& files = run.arguments.files;
    const auto count = files.size() > 1 ? WholeNumber(files[1]) : std::nullopt;
    if (count && *count < 1)
        throw Refused("free: COUNT is 1 or more");
    if (files.size() > 2 && !count)
        throw Refused(files[1] + ": COUNT is a number");
    LoadPatchAt(run, count ? 2 : 1);
    const auto target = TargetKindNamed(files[0]);
    const auto kind = target ? RecordKindOf(*target) : std::nullopt;
    if (!kind || *kind > RecordKind::Sprite)
        throw Refused(files[0] + ": only things, states, sounds and sprites can be free");
    const PatchSet& set = run.program.patch.current;
    const FreeRecords free =
        FindFree(set, run.program.patch.defaults, run.program.engine, run.program.fixedUses, *kind);
    const auto wanted = static_cast<std::size_t>(count.value_or(1));
    const std::vector<std::int32_t> numbers =
        count ? free.Take(set, *kind, wanted) : free.Take(set, *kind, std::max(free.Count(), std::size_t{1}));
    for (const std::int32_t number : numbers)
        run.out << number << '\n';
    return numbers.size() < wanted ? no : done;
}

/// "3,5-7" as numbers. Throws `Refused`.
std::vector<std::int32_t> NumbersIn(const std::string& text) {
    std::vector<std::int32_t> numbers;
    for (std::string_view rest = text; !rest.empty();) {
        std::string_view range = TakeUpTo(rest, ',');
        const bool single = range.find('-', 1) == std::string_view::npos; // a number may begin with it
        const auto first = WholeNumber(single ? range : TakeUpTo(range, '-')),
                   last = single ? first : WholeNumber(range);
        if (!first || !last || *last < *first ||
            static_cast<std::int64_t>(*last) - *first >= std::int64_t{mostClipRecords})
            throw Refused(text + ": numbers are given as 3,5-7");
        for (std::int64_t number = *first; number <= *last; ++number)
            numbers.push_back(static_cast<std::int32_t>(number));
    }
    return numbers;
}

int Copy(Run& run) {
    const std::vector<std::string>& files = run.arguments.files;
    LoadPatchAt(run, 2);
    const auto target = TargetKindNamed(files[0]);
    const auto kind = target ? RecordKindOf(*target) : std::nullopt;
    if (!kind)
        throw Refused(files[0] + ": there is no such kind of records; see --help");
    const PatchData& patch = run.program.patch;
    std::vector<RecordId> records;
    for (const std::int32_t number : NumbersIn(files[1])) {
        if (!HasRecord(patch.current, *kind, number))
            throw Refused("there is no " + files[0] + " " + std::to_string(number));
        records.emplace_back(*kind, number);
    }
    std::set<RecordId> copied(records.begin(), records.end());
    if (run.arguments.withStates)
        for (const Companion& companion : CompanionsOf(patch, run.program.engine, records))
            if (companion.proposed)
                copied.insert(companion.record);
    run.out << modPatchFiles::FormatRecords(patch, run.program.engine, copied);
    return done;
}

int Paste(Run& run) {
    const std::vector<std::string>& files = run.arguments.files;
    std::string text;
    Require(ReadWholeFile(PathOf(files[1]), text), files[1]);
    LoadPatch(run, files[0]);
    Program& program = run.program;
    program.fixedUses = LoadFixedUses(program.programFolder, program.engine);
    Clip clip;
    Require(ReadClip(program, program, text, clip), files[1]);
    PastePlan plan;
    Require(PlanPaste(clip, program, run.arguments.same ? PasteTo::Same : PasteTo::Free, {}, plan), files[1]);
    for (const Assignment& assignment : plan.assignments)
        WriteCell(program.patch.current, assignment.cell, assignment.value);
    if (files[0] == standardSet)
        program.patch.document.reset();
    SaveTo(run, files[2]);
    for (const PastePlan::Place& place : plan.places)
        if (!place.isThere && place.from.first != RecordKind::Misc) // of which there is one, everywhere
            run.out << Printable(RecordName(clip.patch.current, place.from.first, place.from.second)) << " -> "
                    << MadeName(place.from.first, place.to) << '\n';
    for (const auto* lines : {&clip.ignored, &plan.told, &plan.lost})
        for (const std::string& line : *lines)
            Complain(run.err, line);
    return plan.lost.empty() && clip.ignored.empty() ? done : no;
}

constexpr std::array recordCommands{
    Command{"uses", "KIND NAME [PATCH]",
            "Print all that uses a thing, state, sound, sprite, string, weapon, ammo or action, by its number (counted "
            "from 0) or name",
            "engine lump", 2, 3, Uses},
    Command{"free", "KIND [COUNT] [PATCH]",
            "Print the numbers (from 0) of things, states, sounds or sprites that nothing uses, the best first: all "
            "there are, or COUNT of them",
            "engine lump", 1, 3, Free},
    Command{"copy", "KIND NUMBERS PATCH",
            "Print records as a patch's text with all that they hold; NUMBERS count from 0 and are given as 3,5-7",
            "engine lump with-states", 3, 3, Copy},
    Command{
        "paste", "BASE CLIP OUT",
        "Put the records of CLIP, which \"copy\" has printed or somebody has written, into BASE and write it to OUT",
        "engine lump free same", 3, 3, Paste},
};

} // namespace

std::span<const Command> RecordCommands() { return recordCommands; }

} // namespace plinket3::cli
