#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

/// The least work that could do the same job: what the figures are compared with.
namespace plinket3::bench {

/// Splits the bytes into lines, trims both sides of each "=" and reads the number behind it. Returns a sum, so that no
/// part of it can be left out.
std::int64_t SplitLines(std::string_view bytes);

/// Copies the bytes line by line into one growing buffer.
std::string CopyLines(std::string_view bytes);

/// Opens a WAD, reads its directory in one block and closes it. Returns the number of lumps; 0 when it cannot.
std::int64_t ReadDirectory(const std::filesystem::path& file);

} // namespace plinket3::bench
