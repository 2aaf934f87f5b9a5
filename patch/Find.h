#pragma once

#include "patch/Cells.h"
#include "patch/Program.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// What is found stands together by kinds of records; notes of all kinds are one more group.
enum class FindGroup : std::uint8_t {
    Things,
    States,
    Sounds,
    Sprites,
    Music,
    Strings,
    Weapons,
    Ammo,
    Cheats,
    Misc,
    Pars,
    Notes
};
inline constexpr std::size_t findGroupCount = 12;

struct FindQuery {
    /// A part of what is looked for. Numbers are those of patches (things count from 1); "frame 12" is one of a kind.
    /// Escapes as in the string editor stand for their characters in texts.
    std::string_view text;
    bool matchCase = false;
    std::size_t most = 8;             // results of each group, ...
    std::optional<FindGroup> whole{}; // ... but of this one
};

struct Found {
    Cell cell;          // of the record, or of its field in which it was found
    std::string title;  // "12 Imp"
    std::string detail; // what else tells records apart, or the place in a text
    bool operator==(const Found&) const = default;
};
struct FoundGroup {
    FindGroup group = FindGroup::Things;
    std::vector<Found> found; // the best first: the number or name itself, then beginnings, then parts
    std::size_t count = 0;    // with those beyond `FindQuery::most`
};

/// Looks for numbers, names, ID numbers of things, actions of states and their arguments (as numbers, or in words as
/// lists show them; "SpawnObject(Imp)" is both), text fields, keys and texts of strings, cheats, labels of
/// miscellaneous values, levels and notes. Groups with something in them, those with the best results first; none for
/// an empty text.
std::vector<FoundGroup> FindAnything(const Session& session, const FindQuery& query);

/// The record of a kind that a number or name stands for: that one itself, else the first that begins so, else the
/// first with such a part. A number is one record's alone. Absent when there is none.
std::optional<Found> FindRecord(const Session& session, RecordKind kind, std::string_view text);

/// Where `what` (not empty) begins in `text` from `from` on; npos when it does not.
std::size_t FindText(std::string_view text, std::string_view what, bool matchCase, std::size_t from = 0);

} // namespace plinket3
