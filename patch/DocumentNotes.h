#pragma once

#include "core/Dialect.h"
#include "patch/DocumentChanges.h"

#include <cstddef>
#include <string>
#include <vector>

namespace plinket3 {

/// The records with another note than the document says; not the patch's own notes.
std::vector<Cell> ChangedNotes(const PatchSet& current, const PatchSet& said);

/// Puts `lines`, those of a note, in the place of the document's lines `old`, or before `line` where there are none. A
/// line that says the same as one of `old` is written as that one. Returns those of `old` that go.
std::vector<std::size_t> ReplaceNoteLines(const PatchDocument& document, const Dialect& dialect,
                                          const std::vector<std::size_t>& old, std::vector<std::string> lines,
                                          std::size_t line, DocumentChanges& changed);

} // namespace plinket3
