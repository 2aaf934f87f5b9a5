#pragma once

#include "patch/PatchDocument.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace plinket3 {

struct CellHash {
    std::size_t operator()(const Cell& cell) const {
        const auto index = static_cast<std::size_t>(static_cast<std::uint32_t>(cell.index));
        return index * 64 + static_cast<std::size_t>(cell.field & 0x3f) +
               static_cast<std::size_t>(cell.kind) * 0x9e3779b1;
    }
};

/// Numbers a few cells, from 0, and finds among a million lines those that have set one of them.
class CellIndex {
public:
    void Add(const Cell& cell) {
        numbers_.try_emplace(cell, numbers_.size());
        likely_.set(CellHash{}(cell) % likely_.size());
    }
    bool Has(const Cell& cell) const { return numbers_.contains(cell); }
    std::size_t Count() const { return numbers_.size(); }
    /// Calls visit(cell, number) for each.
    template <class Visit> void VisitCells(Visit visit) const {
        for (const auto& [cell, number] : numbers_)
            visit(cell, number);
    }
    /// Calls visit(line, number of the cell) for each line that has set one, in order.
    template <class Visit> void VisitLines(const std::vector<DocumentLine>& lines, Visit visit) const {
        for (std::size_t line = 0; line < lines.size(); ++line) {
            const DocumentLine& each = lines[line];
            const Cell cell{each.kind, each.index, each.field};
            if ((each.what != LineKind::Value && each.what != LineKind::Text) ||
                !likely_.test(CellHash{}(cell) % likely_.size()))
                continue;
            if (const auto found = numbers_.find(cell); found != numbers_.end())
                visit(line, found->second);
        }
    }

private:
    std::unordered_map<Cell, std::size_t, CellHash> numbers_;
    std::bitset<65536> likely_; // the hashes of the cells: most lines are told from them by one look
};

} // namespace plinket3
