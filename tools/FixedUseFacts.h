#pragma once

#include "tools/EngineFacts.h"

namespace plinket3::tools {

/// What an engine's own code uses by number, out of hardcoded/uses.tsv below `folder`, as `ParseFixedUses` reads it. A
/// row that names a record or an action which the engine does not have is reported.
std::string FormatFixedUses(const std::filesystem::path& folder, const EngineSource& source, const EngineFacts& facts,
                            Fault& fault);

} // namespace plinket3::tools
