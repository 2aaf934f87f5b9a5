#pragma once

#include "patch/PatchDocument.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

// The comments of a patch that are notes: those directly above the last section of a record are the record's, those at
// the head of the file are the patch's.

/// Comments that mean something to Chocolate Doom wherever they stand in the line, and how those of map editors begin.
/// They are no part of a note.
inline constexpr std::array<std::string_view, 3> engineComments{"*allow-extended-strings*", "*allow-long-strings*",
                                                                "*allow-long-cheats*"};
inline constexpr std::string_view editorComment = "#$Editor";
bool IsForPrograms(std::string_view comment);

/// How a patch's first line begins, in any letter case.
bool IsFirstLine(std::string_view line);

/// Whether `line` is the header of a record that comments above it are notes of.
bool HasNoteAbove(const DocumentLine& line);
/// The lines of `document` that are the note above the section that begins in line `header`.
std::vector<std::size_t> NoteLinesAbove(const PatchDocument& document, std::size_t header);
/// The lines that are the patch's own notes, with the empty lines between them.
std::vector<std::size_t> PatchNoteLines(const PatchDocument& document);

/// What a comment says, without its sign and one blank; nothing for another line.
std::string_view NoteLine(std::string_view comment);
/// The lines of a note as a patch has them, without line ends.
std::vector<std::string> CommentLines(std::string_view note);

/// Every note of `document`.
Notes ReadNotes(const PatchDocument& document);

} // namespace plinket3
