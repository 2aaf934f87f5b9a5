#include "patch/DocumentNotes.h"

#include "patch/PatchNotes.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace plinket3 {

std::vector<Cell> ChangedNotes(const PatchSet& current, const PatchSet& said) {
    std::vector<Cell> cells;
    const auto add = [&](const auto& key) {
        const Cell cell{key.first, key.second, noteField};
        if (cell != patchNotes && ReadCell(current, cell) != ReadCell(said, cell))
            cells.push_back(cell);
    };
    for (const auto& [key, note] : current.notes)
        add(key);
    for (const auto& [key, note] : said.notes)
        if (!current.notes.contains(key))
            add(key);
    return cells;
}

std::vector<std::size_t> ReplaceNoteLines(const PatchDocument& document, const Dialect& dialect,
                                          const std::vector<std::size_t>& old, std::vector<std::string> lines,
                                          std::size_t line, DocumentChanges& changed) {
    std::unordered_map<std::string_view, std::vector<std::string_view>> known;
    for (auto each = old.rbegin(); each != old.rend(); ++each)
        known[NoteLine(document.Text(*each))].push_back(document.Text(*each));
    for (std::string& each : lines)
        if (const auto same = known.find(NoteLine(each)); same != known.end() && !same->second.empty()) {
            each = same->second.back();
            same->second.pop_back();
        }
    // An empty line without the sign belongs to the note only between comments.
    const auto isComment = [&dialect](const std::string& each) { return each.starts_with(dialect.comment); };
    std::fill(lines.begin(), std::ranges::find_if(lines, isComment), std::string(1, dialect.comment));
    std::fill(std::find_if(lines.rbegin(), lines.rend(), isComment).base(), lines.end(),
              std::string(1, dialect.comment));

    std::size_t first = 0, oldEnd = old.size(), newEnd = lines.size();
    while (first < oldEnd && first < newEnd && lines[first] == document.Text(old[first]))
        ++first;
    while (oldEnd > first && newEnd > first && lines[newEnd - 1] == document.Text(old[oldEnd - 1])) {
        --oldEnd;
        --newEnd;
    }
    std::string text;
    for (std::size_t each = first; each < newEnd; ++each)
        text.append(lines[each]).append(document.LineEnd());
    if (!text.empty())
        changed.Insert(first < old.size() ? old[first] : old.empty() ? line : old.back() + 1, std::move(text));
    std::vector gone(old.begin() + static_cast<std::ptrdiff_t>(first),
                     old.begin() + static_cast<std::ptrdiff_t>(oldEnd));
    for (const std::size_t each : gone)
        changed.ReplaceLine(each, {});
    return gone;
}

} // namespace plinket3
