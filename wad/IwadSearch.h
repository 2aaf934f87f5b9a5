#pragma once

#include <filesystem>
#include <vector>

namespace plinket3 {

/// The IWADs (by their identification, not their names) that lie directly in these folders, each once, in the order of
/// the folders and then of their names. Folders that do not exist are passed over.
std::vector<std::filesystem::path> FindIwads(const std::vector<std::filesystem::path>& folders);

} // namespace plinket3
