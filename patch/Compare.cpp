#include "patch/Compare.h"

#include "patch/OtherCells.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

namespace plinket3 {

namespace {

using ParTimes = std::map<Level, CellValue>;

constexpr Cell parList{RecordKind::Par, 0, listField};

/// Whether a record has the same values in two sets.
bool IsSame(const PatchSet& left, const PatchSet& right, const RecordId& record) {
    return std::ranges::all_of(EveryCellOf(record.first, record.second),
                               [&](const Cell& cell) { return ReadCell(left, cell) == ReadCell(right, cell); });
}

/// Whether one side has changed a record that the other has removed.
bool IsFoughtOver(const PatchSet& here, const PatchSet& there, const PatchSet& ancestor, const RecordId& record) {
    const auto& [kind, index] = record;
    return HasRecord(ancestor, kind, index) && !IsSame(HasRecord(here, kind, index) ? here : there, ancestor, record);
}

ChangedIn SideOf(const Difference& difference) {
    return difference.here == difference.ancestor    ? ChangedIn::There
           : difference.there == difference.ancestor ? ChangedIn::Here
                                                     : ChangedIn::Both;
}

/// An engine takes the last entry of a level.
ParTimes TimesIn(const PatchSet& set) {
    ParTimes times;
    for (const ParRecord& par : set.pars)
        times[{par.episode, par.map}] = par.seconds;
    return times;
}

CellValue TimeOf(const ParTimes& times, const Level& level) {
    const auto found = times.find(level);
    return found == times.end() ? CellValue(Unset()) : found->second;
}

void CompareTimes(const PatchSet& here, const PatchSet& there, const PatchSet& ancestor,
                  std::vector<Difference>& differences) {
    const ParTimes ours = TimesIn(here), theirs = TimesIn(there), old = TimesIn(ancestor);
    ParTimes levels = ours;
    levels.insert(theirs.begin(), theirs.end());
    for (const auto& [level, ignored] : levels) {
        Difference time{parList, TimeOf(ours, level), TimeOf(theirs, level), TimeOf(old, level), {}, level};
        time.side = SideOf(time);
        if (time.here != time.there)
            differences.push_back(std::move(time));
    }
}

/// The list with other times for these levels, or none.
std::vector<ParRecord> WithTimes(const std::vector<ParRecord>& pars, ParTimes times) {
    std::vector<ParRecord> changed;
    for (auto par = pars.rbegin(); par != pars.rend(); ++par) {
        const auto found = times.find({par->episode, par->map});
        if (found == times.end()) {
            changed.push_back(*par);
        } else if (const auto* seconds = std::get_if<std::int32_t>(&found->second)) {
            changed.push_back({par->episode, par->map, *seconds});
            times.erase(found); // earlier entries do not count
        }
    }
    std::ranges::reverse(changed);
    for (const auto& [level, time] : times)
        if (const auto* seconds = std::get_if<std::int32_t>(&time))
            changed.push_back({level.first, level.second, *seconds});
    return changed;
}

} // namespace

std::vector<Difference> Compare(const PatchSet& here, const PatchSet& there, const PatchSet& ancestor) {
    std::vector<Difference> differences;
    std::set<RecordId> fought;
    ForEachOtherCell(here, there, [&](const Cell& cell) {
        const RecordId record{cell.kind, cell.index};
        if (cell.field == existsField && IsFoughtOver(here, there, ancestor, record))
            fought.insert(record);
        Difference& difference = differences.emplace_back(
            Difference{cell, ReadCell(here, cell), ReadCell(there, cell), ReadCell(ancestor, cell), {}, {}});
        difference.side = fought.contains(record) ? ChangedIn::Both : SideOf(difference);
    });
    std::ranges::stable_sort(differences, {}, [](const Difference& difference) {
        return std::pair(difference.cell.kind, static_cast<std::uint32_t>(difference.cell.index));
    });
    CompareTimes(here, there, ancestor, differences);
    return differences;
}

std::vector<Assignment> TakeOver(std::span<const Difference> differences, const PatchSet& here, const PatchSet& there) {
    std::vector<Assignment> makes, values, removals;
    std::set<RecordId> made, removed;
    const auto take = [&](std::vector<Assignment>& into, const Cell& cell) {
        into.push_back({cell, ReadCell(there, cell)});
    };
    for (const Difference& difference : differences) {
        const auto& [kind, index, field] = difference.cell;
        if (field != existsField || HasRecord(there, kind, index) || !removed.insert({kind, index}).second)
            continue;
        for (const Cell& cell : EveryCellOf(kind, index))
            if (ReadCell(here, cell) != ReadCell(there, cell))
                take(removals, cell);
    }
    ParTimes times;
    for (const Difference& difference : differences) {
        const Cell& cell = difference.cell;
        const RecordId record{cell.kind, cell.index};
        if (difference.level) {
            times[*difference.level] = difference.there;
            continue;
        }
        if (!HasRecord(here, cell.kind, cell.index) && HasRecord(there, cell.kind, cell.index) &&
            made.insert(record).second) {
            take(makes, {cell.kind, cell.index, existsField});
            if (HasLumpName(cell.kind))
                take(makes, {cell.kind, cell.index, lumpNameField});
        }
        if (cell.field == existsField || removed.contains(record))
            continue;
        values.push_back({cell, difference.there});
        for (const Cell& derived : DerivedFrom(cell))
            take(values, derived);
    }
    if (!times.empty())
        values.push_back({parList, WithTimes(here.pars, std::move(times))});
    for (std::vector<Assignment>* more : {&values, &removals})
        std::ranges::move(*more, std::back_inserter(makes));
    return makes;
}

} // namespace plinket3
