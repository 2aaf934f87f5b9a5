#pragma once

#include "patch/Edits.h"
#include "patch/FreeRecords.h"
#include "patch/Program.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace plinket3 {

/// A run of states that is to be made of free ones.
struct NewChain {
    struct Frame {
        std::int32_t frame = 0, duration = 4;
        std::int32_t action = 0; // a code pointer value
        bool operator==(const Frame&) const = default;
    };
    enum class End {
        Loop,  // to the first state
        GoOn,  // to the state `next`
        Stay,  // in the last one for ever, whatever its duration
        Vanish // to state 0, which removes the thing
    };

    std::int32_t sprite = 0;
    bool lit = false;
    std::vector<Frame> frames;
    End end = End::Loop;
    std::int32_t next = 0;
    std::optional<Cell> begins; // a field that then holds the first state
};

struct MadeChain {
    std::vector<std::int32_t> states;    // in their order
    std::vector<Assignment> assignments; // for one step
};

/// Takes a state of `free` for each frame, the best first, and says what makes a run of them; of what they held nothing
/// is left but their notes. In an engine whose patches only move the actions that there are, a state is taken only for
/// an action that it can have. Fails, and says why, when there are too few, or when what `chain` refers to is not
/// there; `made` is then as it was.
Status MakeChain(const Session& session, const FreeRecords& free, const NewChain& chain, MadeChain& made);

} // namespace plinket3
