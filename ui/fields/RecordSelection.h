#pragma once

#include <cstdint>
#include <vector>

namespace plinket3 {

/// The records of one kind whose fields are shown, in ascending order.
struct RecordSelection {
    std::vector<std::int32_t> records;
    std::int32_t current = 0; // the one clicked last; one of `records`, if there are any

    bool Several() const { return records.size() > 1; }
    bool operator==(const RecordSelection&) const = default;
};

} // namespace plinket3
