#pragma once

#include "patch/Program.h"

#include <cstddef>
#include <filesystem>
#include <string>

namespace plinket3 {

/// What a patch is edited against, as the user chose it.
struct SessionChoice {
    std::size_t engine = 0;    // place in `Program::engines`
    std::size_t iwad = 0;      // place in the list of known IWADs
    std::string dataWad;       // its path as typed; empty for none
    std::int32_t version = -1; // "Doom version" of the patch that is opened, -1 for a new one
};

enum class SessionResult {
    Loaded,
    Incompatible, // the engine is not the patch's: nothing was loaded, the user may choose again
    Failed        // a message was shown, the former session is as it was
};

/// Loads engine configuration, engine table, IWAD, data WAD and palette, in this order, and logs each step. Everything is
/// loaded beside the open session and takes its place only when all of it is there; the patch is then the engine's own
/// data. Remembers engine and IWAD in the settings.
[[nodiscard]] SessionResult LoadSession(Program& program, const SessionChoice& choice);

} // namespace plinket3
