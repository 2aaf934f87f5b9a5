#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace plinket3::cli {

/// Exit codes of every command.
enum Exit { done = 0, no = 1, refused = 2 };

/// Runs one command line (without the program's own name). Nothing is written to `out` when input is refused; the one
/// line that says why goes to `err`. `programFolder` holds the engine configurations and tables.
int RunCli(const std::vector<std::string>& arguments, const std::filesystem::path& programFolder, std::ostream& out,
           std::ostream& err);

} // namespace plinket3::cli
