#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// Paths as one text: a single one as it is, several each in quotes with a blank between them ("a.wad" "b.wad"); empty
/// for none. One with a quote in it cannot be among several.
std::string JoinPaths(const std::vector<std::string>& paths);

/// The first of several paths that such a text cannot hold; null when it can hold all.
const std::string* FirstNotJoinable(const std::vector<std::string>& paths);

/// The paths of such a text; one that is no list of at least two quoted paths is a single path.
std::vector<std::string> SplitPaths(std::string_view text);

} // namespace plinket3
