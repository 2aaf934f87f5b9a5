#pragma once

#include "core/BytePieces.h"
#include "patch/PatchDocument.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace plinket3 {

/// What is to stand elsewhere in a document's bytes, gathered in any order. The document must outlive it.
class DocumentChanges {
public:
    /// A place in the bytes where something else is to stand.
    struct Replacement {
        std::size_t offset = 0, length = 0;
        std::string text;
    };

    explicit DocumentChanges(const PatchDocument& document) : document_(document) {}

    void Replace(std::size_t offset, std::size_t length, std::string text);
    /// With the line's end.
    void ReplaceLine(std::size_t line, std::string text);
    /// Puts lines before `line`; a last line without an end gets one.
    void Insert(std::size_t line, std::string text);
    bool HasInsertedAt(std::size_t line) const { return insertedAt_.contains(line); }

    const std::vector<Replacement>& All() const { return replacements_; }
    /// The document's bytes with all of it, most of them borrowed.
    void Apply(BytePieces& merged);

private:
    const PatchDocument& document_;
    std::vector<Replacement> replacements_;
    std::set<std::size_t> insertedAt_; // lines
};

} // namespace plinket3
