#pragma once

#include "core/clsConfiguration.h"

#include <filesystem>
#include <string>

namespace plinket3 {

/// What an IWAD file is, in one line: the game's name by `iwadDetect` where that knows the file's, its size and its
/// levels, "Freedoom: Phase 2, 28.6 MB, MAP01-MAP32". Of a file that is none it says so, in a sentence.
std::string IwadFacts(const clsConfiguration& iwadDetect, const std::filesystem::path& file);

} // namespace plinket3
