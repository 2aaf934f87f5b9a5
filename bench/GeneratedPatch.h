#pragma once

#include "core/Status.h"
#include "core/modConfig.h"
#include "patch/PatchSet.h"

#include <cstddef>
#include <filesystem>

namespace plinket3::bench {

/// An engine made up for measuring, as large as needed, and a patch that changes every field of its things and states.
struct GeneratedPatch {
    EngineConfiguration engine;
    PatchData patch;
};

/// The patch is written in about `lines` lines of about 17 bytes.
GeneratedPatch GeneratePatch(std::size_t lines);

/// Writes a data folder for `plinket3-cli --data`: the engine "bench" that a patch of a million lines needs, that patch
/// ("large.deh") and one of a thousand lines ("small.deh").
Status WriteDataFolder(const std::filesystem::path& folder);

} // namespace plinket3::bench
