#pragma once

#include "patch/Clip.h"
#include "patch/Edits.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace plinket3 {

/// Where records are pasted to: things and states to free numbers, or all to the numbers that they have.
enum class PasteTo { Free, Same };

/// What is done with the first thing or weapon of a clip.
struct PasteChanges {
    std::optional<std::string> name;
    std::optional<std::int32_t> id;
    std::optional<std::int32_t> weapon; // the number of the weapon whose place it takes
    std::string sprite;                 // that all states show in place of those of the first state; empty for none
};

struct PastePlan {
    struct Place {
        RecordId from;
        std::int32_t to = 0;
        bool isThere = false; // a sound or sprite of that name, which serves as it is
    };
    std::vector<Place> places;
    std::vector<std::string> lost; // what the engine cannot hold or lacks, in words
    std::vector<std::string> told; // what else is good to know
    std::vector<Assignment> assignments;
};
/// Works out what pasting does to the open patch; changes nothing. Fails, for the user, when there are too few free
/// records.
Status PlanPaste(const Clip& clip, const Session& open, PasteTo to, const PasteChanges& changes, PastePlan& plan);

} // namespace plinket3
