#pragma once

#include "core/Status.h"
#include "patch/Program.h"

#include <filesystem>
#include <string>
#include <string_view>

/// Table files: an engine's default data in one binary file. docs/formats.md draws the layout.
namespace plinket3::modTables {

/// Reads a table into `set`. A table that ends early reads as zeros from there on. Fails, with `set` left as it was,
/// with "Invalid table Id.", "Invalid table version." or "Damaged table file.", for a count below -1 or above 1,048,575
/// and for one above 10,000 of more records than the rest of the file has room for. In extended mode the file holds no
/// strings and they are the configuration's.
Status ParseTable(std::string_view bytes, const EngineConfiguration& engine, PatchSet& set);

/// A set as a table file's bytes; par times and records beyond the dense parts of its lists are not part of it. Texts
/// longer than 65,535 characters are cut where the layout counts them in 16 bits.
std::string FormatTable(const PatchSet& set, const Dialect& dialect);

/// The path of the configuration's table file: "tables" below the program folder, upper and lower case alike.
std::filesystem::path TablePath(const std::filesystem::path& programFolder, const EngineConfiguration& engine);

/// Loads a table as the default set of `patch`, logs the counts and resets `patch`. Shows why when it fails; `patch` is
/// then as it was.
[[nodiscard]] bool LoadTable(Environment& environment, const EngineConfiguration& engine,
                             const std::filesystem::path& file, PatchData& patch);

/// `LoadTable` with the configuration's own table. Shows "No table file for engine configuration." when there is none.
[[nodiscard]] bool LoadEngineTable(Environment& environment, const EngineConfiguration& engine, PatchData& patch);

/// The engine of a configuration that was found and its own data, without a word to anybody. False when one of them
/// cannot be read.
[[nodiscard]] bool ReadEngine(const std::filesystem::path& programFolder, const modConfig::EngineEntry& entry,
                              EngineConfiguration& engine, PatchSet& defaults);

/// Writes the current set as a table file.
Status SaveTable(const Session& session, const std::filesystem::path& file);

/// Makes the current set a copy of the default set and `patch` a new patch: no par times, format 6, the engine's
/// version, neither changed nor named, in `folder` under the name "unnamed.deh" or "unnamed.bex".
void ResetPatchData(const EngineConfiguration& engine, const std::filesystem::path& folder, PatchData& patch,
                    clsLog& log);

} // namespace plinket3::modTables
