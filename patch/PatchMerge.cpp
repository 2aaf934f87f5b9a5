#include "patch/PatchMerge.h"

#include "core/Text.h"
#include "patch/Compare.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace plinket3 {

namespace {

using CellKey = std::tuple<RecordKind, std::int32_t, int>;

CellKey KeyOf(const Cell& cell) { return {cell.kind, cell.index, cell.field}; }

/// The cells that a patch's lines set, in order.
std::vector<CellKey> SetByLines(const PatchDocument& document) {
    std::vector<CellKey> cells;
    for (const DocumentLine& line : document.Lines())
        if (line.what == LineKind::Value || line.what == LineKind::Text)
            cells.emplace_back(line.kind, line.index, line.field);
    std::ranges::sort(cells);
    return cells;
}

void Apply(const std::vector<Difference>& differences, const PatchSet& theirs, PatchSet& ours) {
    for (const auto& [cell, value] : TakeOver(differences, ours, theirs))
        WriteCell(ours, cell, value);
}

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
    const std::vector<CellKey> lines = SetByLines(theirs);
    std::vector<Difference> differences = Compare(ours, theirs.Said(), defaults);
    std::erase_if(differences, [&lines](const Difference& difference) {
        if (difference.level)
            return difference.there == CellValue(Unset());
        return difference.cell.field == noteField || // our comments stay
               (difference.side == ChangedIn::Here && !std::ranges::binary_search(lines, KeyOf(difference.cell)));
    });
    Apply(differences, theirs.Said(), ours);
}

PatchSet MergeChanges(const PatchDocument& theirs, const PatchDocument& original, PatchSet& ours) {
    std::vector<Difference> changes, conflicts;
    for (Difference& difference : Compare(ours, theirs.Said(), original.Said()))
        if (difference.side != ChangedIn::Here)
            (difference.side == ChangedIn::Both ? conflicts : changes).push_back(std::move(difference));
    Apply(changes, theirs.Said(), ours);
    PatchSet refused = ours;
    Apply(conflicts, theirs.Said(), refused);
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
