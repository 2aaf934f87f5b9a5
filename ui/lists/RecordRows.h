#pragma once

#include <Qt>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace plinket3 {

/// Under this role a list's rows tell the numbers of their records.
inline constexpr int recordRole = Qt::UserRole + 1;

/// Which record stands in which row of a list.
class RecordRows {
public:
    RecordRows() = default;
    /// `numbers` in the order of a `NumberedList`.
    explicit RecordRows(std::vector<std::int32_t> numbers) : numbers_(std::move(numbers)) {}

    int Count() const { return static_cast<int>(numbers_.size()); }
    std::int32_t At(int row) const { return numbers_[static_cast<std::size_t>(row)]; }
    /// -1 for a record that is not in the list.
    int RowOf(std::int32_t record) const {
        const auto place = [](std::int32_t number) { return static_cast<std::uint32_t>(number); };
        const auto found = std::ranges::lower_bound(numbers_, place(record), {}, place);
        return found == numbers_.end() || *found != record ? -1 : static_cast<int>(found - numbers_.begin());
    }
    /// The record itself, else the next one in the list, else the last one. There must be one.
    std::int32_t Nearest(std::int32_t record) const {
        const auto place = [](std::int32_t number) { return static_cast<std::uint32_t>(number); };
        const auto next = std::ranges::lower_bound(numbers_, place(record), {}, place);
        return next == numbers_.end() ? numbers_.back() : *next;
    }
    const std::vector<std::int32_t>& Numbers() const { return numbers_; }

private:
    std::vector<std::int32_t> numbers_;
};

} // namespace plinket3
