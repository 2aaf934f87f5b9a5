#pragma once

#include "core/Status.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// The arguments with which a port is started, as the user writes them: "-iwad %i -file %d".
namespace plinket3 {

/// Parts a text into words at blanks and tabs. What stands between two quotation marks of a kind, " or ', belongs to
/// one word with its blanks and the marks of the other kind; all else, a backslash too, means itself. Fails, with
/// `words` left empty, for a quotation mark that nothing closes.
Status SplitWords(std::string_view text, std::vector<std::string>& words);

/// What the tokens stand for, by the letter behind "%": any number of texts each.
using TokenValues = std::map<char, std::vector<std::string>>;

/// Puts the values in the place of the tokens. A word that is nothing but a token becomes a word for each of its
/// values; with none it is left out, and so is the option before it, a word that begins with "-" or "+". Within a
/// longer word the values are parted by blanks. "%%" is one "%"; a "%" before another letter stays as it is.
std::vector<std::string> ExpandTokens(const std::vector<std::string>& words, const TokenValues& values);

} // namespace plinket3
