#pragma once

namespace plinket3 {

/// The program's title and version in the forms that the log, the patches, the splash window and `--version` show. The
/// number is the one that CMakeLists.txt gives the project.
inline constexpr const char* programTitle = "Plinket3";
extern const char* const programLogVersion;
extern const char* const programVersion;
extern const char* const programVersionLabel;

} // namespace plinket3
