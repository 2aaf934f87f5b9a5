#pragma once

#include <string>
#include <string_view>

namespace plinket3::modParse {

/// The value of `option` in a command line (everything after the program's own path), lower-cased and trimmed; empty
/// when the option is absent. The option is searched without regard to case.
/// Kept: a value that is followed by another "-" does not stop there but runs on for twice the option's length less
/// one character, or to the end. docs/kept-behaviour.md
std::string OptionValue(std::string_view commandLine, std::string_view option);

/// A path from a command line without its blanks and quotes: trims, turns a double quote at either end into a blank and
/// trims again.
std::string CleanPath(std::string_view path);

} // namespace plinket3::modParse
