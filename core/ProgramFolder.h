#pragma once

#include <filesystem>

namespace plinket3 {

/// The folder of the running executable itself, symbolic links followed. `invokedAs` (the first word of the command
/// line) serves where the system does not tell.
std::filesystem::path ProgramFolder(const std::filesystem::path& invokedAs);

} // namespace plinket3
