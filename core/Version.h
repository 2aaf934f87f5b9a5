#pragma once

namespace plinket3 {

/// The program's title and version in the forms that the log, the patches, the splash window and `--version` show.
inline constexpr const char* programTitle = "Plinket3";
inline constexpr const char* programLogVersion = "Plinket3 version 0.99 build 245";
inline constexpr const char* programVersion = "Plinket3 0.99 build 245 beta";
inline constexpr const char* programVersionLabel = "Version 0.99 build 245 beta";

} // namespace plinket3
