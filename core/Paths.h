#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace plinket3 {

// Paths as texts, in settings, patches, messages and arguments, are UTF-8 on every system, whatever its code page is.
// Where file names are bytes, they are those bytes.

/// The path that a text names. Of a text that is no UTF-8, where names are characters, each byte is a Latin-1 one.
std::filesystem::path PathOf(std::string_view text);

/// The text that names a path.
std::string PathText(const std::filesystem::path& path);

} // namespace plinket3
