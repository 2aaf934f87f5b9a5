#pragma once

#include "patch/Program.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace plinket3 {

/// What a patch is edited against, as the user chose it.
struct SessionChoice {
    std::size_t engine = 0;            // place in `Environment::engines`
    std::size_t iwad = 0;              // place in the list of known IWADs
    std::vector<std::string> dataWads; // paths as typed; later ones replace what earlier ones have
    // "Doom version" of the patch that is opened; -1 for a new one, and by engine rules, for which it decides nothing
    std::int32_t version = -1;
    Rules rules = Rules::Kept;
};

/// What is said when a patch's version is not its engine's.
inline constexpr std::string_view otherEngine =
    "The patch file is not compatible with the selected engine configuration.";

enum class SessionResult {
    Loaded,
    Incompatible, // the engine is not the patch's: nothing was loaded, the user may choose again
    Failed        // a message was shown
};

/// Loads engine configuration, engine table, IWAD, data WADs and palette into `session`, in this order, and logs each
/// step. The patch is then the engine's own data. Remembers engine and IWAD in the settings. The open session of
/// `program` is not touched: whoever opens a patch puts `session` in its place when everything has worked.
[[nodiscard]] SessionResult LoadSession(Environment& environment, const SessionChoice& choice, Session& session);

} // namespace plinket3
