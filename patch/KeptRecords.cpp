#include "patch/KeptRecords.h"

#include "core/Numbers.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace plinket3 {

namespace {

constexpr std::string_view prefix = "Plinket3 keeps:";

struct Word {
    RecordKind kind;
    std::string_view word;
    std::int32_t first = 0; // the number of the first one as patches count
};
constexpr std::array words{Word{RecordKind::Thing, "Thing", 1}, Word{RecordKind::State, "Frame"},
                           Word{RecordKind::Sound, "Sound"}, Word{RecordKind::Sprite, "Sprite"}};

std::optional<std::int64_t> Number(std::string_view text) {
    const auto number = WholeNumber(Trim(text));
    return number && *number >= 0 ? number : std::nullopt;
}

template <class Visit> void VisitLines(std::string_view notes, Visit visit) {
    while (!notes.empty()) {
        const std::string_view line = TakeUpTo(notes, '\n');
        visit(line, Trim(line).starts_with(prefix));
    }
}

} // namespace

KeptRecords::KeptRecords(std::string_view patchNotes) {
    VisitLines(patchNotes, [this](std::string_view line, bool kept) {
        if (!kept)
            return;
        for (std::string_view kinds = Trim(line).substr(prefix.size()); !kinds.empty();) {
            std::string_view list = Trim(TakeUpTo(kinds, ';'));
            const std::string_view name = TakeUpTo(list, ' ');
            const auto word =
                std::ranges::find_if(words, [name](const Word& each) { return EqualIgnoringCase(each.word, name); });
            while (word != words.end() && !list.empty()) {
                std::string_view range = TakeUpTo(list, ',');
                const auto first = Number(TakeUpTo(range, '-')), last = range.empty() ? first : Number(range);
                if (first && last && *first <= *last)
                    ranges_[word->kind].emplace_back(*first - word->first, *last - word->first);
            }
        }
    });
    for (auto& [kind, ranges] : ranges_) {
        std::ranges::sort(ranges);
        std::vector<Range> joined;
        for (const Range& range : ranges)
            if (!joined.empty() && range.first <= joined.back().second + 1)
                joined.back().second = std::max(joined.back().second, range.second);
            else
                joined.push_back(range);
        ranges = std::move(joined);
    }
}

bool KeptRecords::Has(RecordKind kind, std::int32_t number) const {
    const auto found = ranges_.find(kind);
    return found != ranges_.end() && std::ranges::any_of(found->second, [number](const Range& range) {
               return range.first <= number && number <= range.second;
           });
}

void KeptRecords::Set(RecordKind kind, std::int32_t number, bool kept) {
    if (Has(kind, number) == kept)
        return;
    std::vector<Range> changed;
    Range added{number, number};
    for (const Range& range : ranges_[kind])
        if (kept && range.second + 1 == number) {
            added.first = range.first;
        } else if (kept && range.first - 1 == number) {
            added.second = range.second;
        } else if (!kept && range.first <= number && number <= range.second) {
            if (range.first < number)
                changed.emplace_back(range.first, number - 1);
            if (range.second > number)
                changed.emplace_back(number + 1, range.second);
        } else {
            changed.push_back(range);
        }
    if (kept)
        changed.push_back(added);
    std::ranges::sort(changed);
    ranges_[kind] = std::move(changed);
}

std::string KeptRecords::In(std::string_view patchNotes) const {
    std::string notes, kept;
    VisitLines(patchNotes, [&notes](std::string_view line, bool isKept) {
        if (!isKept)
            notes += std::string(line) + '\n';
    });
    for (const Word& word : words) {
        const auto found = ranges_.find(word.kind);
        if (found == ranges_.end() || found->second.empty())
            continue;
        kept += (kept.empty() ? " " : "; ") + std::string(word.word);
        std::string_view comma = " ";
        for (const auto& [first, last] : found->second) {
            kept += comma;
            kept += std::to_string(first + word.first);
            if (last != first)
                kept += '-' + std::to_string(last + word.first);
            comma = ", ";
        }
    }
    if (kept.empty()) {
        if (!notes.empty())
            notes.pop_back();
        return notes;
    }
    return notes + std::string(prefix) + kept;
}

} // namespace plinket3
