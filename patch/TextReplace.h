#pragma once

#include "core/Status.h"
#include "patch/Edits.h"
#include "patch/Program.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// How many characters the text of a string or cheat can have in the open patch; absent for any number.
std::optional<std::int32_t> RoomFor(const Session& session, const Cell& text);
/// Whether the open patch can hold `value` as this text; the reason why not. A text that is too long already may stay
/// as long.
Status MayHold(const Session& session, const Cell& text, std::string_view value);

struct TextChange {
    std::string find, with; // escapes as in the string editor stand for their characters; `find` is not empty
    bool matchCase = false;
};
struct ReplacedTexts {
    std::vector<Assignment> texts; // strings and cheats with their new texts
    std::size_t places = 0;        // in them
    struct Refused {
        Cell text;
        std::string reason;
    };
    std::vector<Refused> refused; // those that cannot hold theirs
};

/// The strings and cheats of the open patch, in their order.
std::vector<Cell> EditedTexts(const Session& session);
/// What replacing every occurrence in these texts would make of them. Changes nothing.
ReplacedTexts ReplaceInTexts(const Session& session, const std::vector<Cell>& texts, const TextChange& change);

} // namespace plinket3
