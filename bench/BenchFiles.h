#pragma once

#include <filesystem>

/// The files that are measured with; `main` sets both before anything runs.
namespace plinket3::bench {

/// The folder that holds config/ and tables/: the one of plinket3_bench itself.
inline std::filesystem::path dataFolder;
/// The IWAD to measure with.
inline std::filesystem::path iwadFile;

} // namespace plinket3::bench
