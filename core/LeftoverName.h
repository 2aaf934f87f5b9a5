#pragma once

#include <array>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

namespace plinket3 {

/// How many of these names are tried: programs that save the same file at once, or that were killed where nothing can
/// be locked.
inline constexpr int mostLeftovers = 100;

/// The name, in the folder of the file called `replaced`, of what is to replace that once it is written. It depends
/// only on that name, so that the next save takes the place of what a killed one has left, but does not contain it, as
/// that may be as long as the file system allows.
inline std::filesystem::path LeftoverName(const std::filesystem::path& replaced, int number) {
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx",
                  static_cast<unsigned long long>(std::hash<std::filesystem::path::string_type>{}(replaced.native())));
    return ".plinket3-" + std::string(digits.data()) + "-" + std::to_string(number);
}

} // namespace plinket3
