#pragma once

#include "patch/PatchSet.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace plinket3 {

/// The records that a patch's notes ask to keep: they are never handed out as free ones. The notes say so in a line of
/// their own, which people may write, too: "Plinket3 keeps: Frame 1100-1120, 1130; Thing 151", with the words and the
/// numbers of patches.
class KeptRecords {
public:
    /// Reads the notes of a patch. What makes no sense in such a line is passed over.
    explicit KeptRecords(std::string_view patchNotes);

    bool Has(RecordKind kind, std::int32_t number) const;
    void Set(RecordKind kind, std::int32_t number, bool kept);
    /// The notes with one such line, the last one, or with none when nothing is kept.
    std::string In(std::string_view patchNotes) const;

private:
    using Range = std::pair<std::int64_t, std::int64_t>; // both ends belong to it
    std::map<RecordKind, std::vector<Range>> ranges_;    // in order, none touches another
};

} // namespace plinket3
