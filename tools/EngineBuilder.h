#pragma once

#include "core/Status.h"
#include "core/modConfig.h"

#include <filesystem>
#include <string>

namespace plinket3::tools {

/// An engine configuration as the text of its file: what `modConfig::LoadEngine` reads, without what is not known of
/// any engine ("cheatoffsets", "codepointeroffsets", "miscellaneousoffsets"). Strings are written in extended mode
/// only.
std::string FormatEngine(const EngineConfiguration& engine);

/// Writes config/NAME.cfg and tables/NAME.tbl below `output` from the fact tables in engines/ below `data`. Fails,
/// before anything is written, at the first table that is not sound; the reason names file, line and column.
Status BuildEngines(const std::filesystem::path& data, const std::filesystem::path& output);

} // namespace plinket3::tools
