#include "patch/PatchMerge.h"

#include "core/Text.h"
#include "patch/OtherCells.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>

namespace plinket3 {

namespace {

using Level = std::pair<std::int32_t, std::int32_t>;
using ParTimes = std::map<Level, std::int32_t>;

/// The names of lumps that lines of two patches give, each once.
std::vector<Cell> LumpNames(const PatchDocument& one, const PatchDocument& other) {
    std::set<Notes::key_type> named;
    for (const PatchDocument* document : {&one, &other})
        for (const DocumentLine& line : document->Lines())
            if ((line.what == LineKind::Value || line.what == LineKind::Text) && line.field == lumpNameField)
                named.insert({line.kind, line.index});
    std::vector<Cell> cells;
    cells.reserve(named.size());
    for (const auto& [kind, index] : named)
        cells.push_back({kind, index, lumpNameField});
    return cells;
}

/// Whether a record has the same values in two sets.
bool IsSame(const PatchSet& left, const PatchSet& right, RecordKind kind, std::int32_t index) {
    std::vector<Cell> cells = CellsOf(kind, index);
    for (const int field : {existsField, noteField})
        cells.push_back({kind, index, field});
    if (HasLumpName(kind))
        cells.push_back({kind, index, lumpNameField});
    return std::ranges::all_of(cells, [&](const Cell& cell) { return ReadCell(left, cell) == ReadCell(right, cell); });
}

/// An engine takes the last entry of a level.
ParTimes TimesIn(const PatchSet& set) {
    ParTimes times;
    for (const ParRecord& par : set.pars)
        times[{par.episode, par.map}] = par.seconds;
    return times;
}

std::optional<std::int32_t> TimeOf(const ParTimes& times, const Level& level) {
    const auto found = times.find(level);
    return found == times.end() ? std::nullopt : std::optional(found->second);
}

/// Gives levels other times, or none.
void SetTimes(std::map<Level, std::optional<std::int32_t>> times, std::vector<ParRecord>& pars) {
    std::vector<ParRecord> changed;
    for (auto par = pars.rbegin(); par != pars.rend(); ++par) {
        const auto found = times.find({par->episode, par->map});
        if (found == times.end()) {
            changed.push_back(*par);
        } else if (found->second) {
            changed.push_back({par->episode, par->map, *found->second});
            times.erase(found); // earlier entries do not count
        }
    }
    std::ranges::reverse(changed);
    for (const auto& [level, seconds] : times)
        if (seconds)
            changed.push_back({level.first, level.second, *seconds});
    pars = std::move(changed);
}

/// What one patch changes in another one.
struct Changes {
    std::vector<Cell> cells;
    std::map<Level, std::optional<std::int32_t>> times;

    void Apply(const PatchSet& theirs, PatchSet& ours) {
        // Only what exists can be given values.
        std::stable_partition(cells.begin(), cells.end(), [](const Cell& cell) { return cell.field == existsField; });
        for (const Cell& cell : cells)
            WriteCell(ours, cell, ReadCell(theirs, cell));
        DeriveMisc(ours.misc);
        if (!times.empty())
            SetTimes(times, ours.pars);
    }
};

bool SaysWhatItWasMadeFor(std::string_view line) {
    constexpr std::string_view firstLine = "Patch File for DeHackEd v";
    modPatchFiles::Header header;
    return EqualIgnoringCase(line.substr(0, firstLine.size()), firstLine) ||
           (modPatchFiles::ScanHeader(line, header) && !header.empty());
}

/// A line, whatever ends it and those in which it goes on.
std::string Plain(const PatchDocument& document, std::size_t line) {
    return std::string(Trim(ReplaceAll(std::string(document.Text(line)), "\r\n", "\n")));
}

} // namespace

void MergePatch(const PatchDocument& theirs, const PatchSet& defaults, PatchSet& ours) {
    const PatchSet& said = theirs.Said();
    Changes changes;
    for (const DocumentLine& line : theirs.Lines())
        if ((line.what == LineKind::Value || line.what == LineKind::Text) && line.kind != RecordKind::Par)
            changes.cells.push_back({line.kind, line.index, line.field});
    // What has no line of its own, such as names.
    ForEachOtherCell(defaults, said, [&changes](const Cell& cell) {
        if (cell.field != noteField) // our comments stay
            changes.cells.push_back(cell);
    });
    for (const auto& [level, seconds] : TimesIn(said))
        changes.times.emplace(level, seconds);
    changes.Apply(said, ours);
}

PatchSet MergeChanges(const PatchDocument& theirs, const PatchDocument& original, PatchSet& ours) {
    const PatchSet &said = theirs.Said(), &old = original.Said();
    Changes changes, conflicts;
    std::set<Notes::key_type> staying; // that are gone in `theirs`, but were changed here
    const auto sort = [&](const Cell& cell) {
        const CellValue value = ReadCell(ours, cell), now = ReadCell(said, cell);
        bool conflict = value != ReadCell(old, cell) && value != now;
        if (cell.field == existsField && now == CellValue(0) && !IsSame(old, ours, cell.kind, cell.index)) {
            staying.insert({cell.kind, cell.index});
            conflict = true;
        } else if (staying.contains({cell.kind, cell.index})) {
            return;
        }
        (conflict ? conflicts : changes).cells.push_back(cell);
    };
    ForEachOtherCell(old, said, sort);
    for (const Cell& name : LumpNames(original, theirs))
        if (ReadCell(old, name) != ReadCell(said, name))
            sort(name);
    const ParTimes times = TimesIn(said), oldTimes = TimesIn(old), ourTimes = TimesIn(ours);
    ParTimes levels = times;
    levels.insert(oldTimes.begin(), oldTimes.end());
    for (const auto& [level, ignored] : levels) {
        const std::optional<std::int32_t> now = TimeOf(times, level), then = TimeOf(oldTimes, level),
                                          here = TimeOf(ourTimes, level);
        if (now != then)
            (here != then && here != now ? conflicts : changes).times.emplace(level, now);
    }
    changes.Apply(said, ours);
    PatchSet refused = ours;
    conflicts.Apply(said, refused);
    return refused;
}

std::vector<std::size_t> LinesNotMerged(const PatchDocument& theirs, const PatchDocument* original,
                                        const PatchDocument& merged) {
    std::unordered_set<std::string> known;
    for (const PatchDocument* document : {original, &merged})
        for (std::size_t line = 0; document != nullptr && line < document->Lines().size(); ++line)
            known.insert(Plain(*document, line));
    std::vector<std::size_t> lines;
    for (std::size_t line = 0; line < theirs.Lines().size(); ++line) {
        const DocumentLine& facts = theirs.Lines()[line];
        const bool text = facts.what == LineKind::Header && facts.field == static_cast<int>(Section::Text);
        if (facts.what != LineKind::Other && !text && (facts.what != LineKind::Comment || original == nullptr))
            continue;
        if (!known.contains(Plain(theirs, line)) && (original != nullptr || !SaysWhatItWasMadeFor(theirs.Text(line))))
            lines.push_back(line);
    }
    return lines;
}

} // namespace plinket3
