#include "patch/DocumentChanges.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace plinket3 {

void DocumentChanges::Replace(std::size_t offset, std::size_t length, std::string text) {
    replacements_.push_back({offset, length, std::move(text)});
}

void DocumentChanges::ReplaceLine(std::size_t line, std::string text) {
    const std::size_t offset = document_.Lines()[line].offset;
    Replace(offset, document_.End(line) - offset, std::move(text));
}

void DocumentChanges::Insert(std::size_t line, std::string text) {
    insertedAt_.insert(line);
    const std::vector<DocumentLine>& lines = document_.Lines();
    const std::size_t offset = line < lines.size() ? lines[line].offset : document_.Bytes().size();
    if (offset > 0 && document_.Bytes()[offset - 1] != '\n') {
        const std::string_view end = document_.LineEnd();
        text.insert(0, end);
        if (text.ends_with(end))
            text.resize(text.size() - end.size());
    }
    Replace(offset, 0, std::move(text));
}

void DocumentChanges::Apply(BytePieces& merged) {
    // What is put before a line stands before what takes the line's place.
    std::ranges::stable_sort(replacements_, {},
                             [](const Replacement& each) { return std::pair(each.offset, each.length > 0); });
    const std::string_view bytes = document_.Bytes();
    std::size_t done = 0;
    for (const Replacement& each : replacements_) {
        merged.Borrow(bytes.substr(done, each.offset - done));
        merged.Own(each.text);
        done = each.offset + each.length;
    }
    merged.Borrow(bytes.substr(done));
}

} // namespace plinket3
