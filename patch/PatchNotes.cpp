#include "patch/PatchNotes.h"

#include "core/Text.h"

#include <algorithm>

namespace plinket3 {

namespace {

constexpr char sign = '#';

bool IsComment(const PatchDocument& document, std::size_t line) {
    return document.Lines()[line].what == LineKind::Comment && document.Text(line).starts_with(sign);
}

bool IsBlank(const PatchDocument& document, std::size_t line) { return document.Lines()[line].what == LineKind::Blank; }

/// The first of the comments that stand directly above `line`; `line` itself when there is none.
std::size_t FirstAbove(const PatchDocument& document, std::size_t line) {
    while (line > 0 && IsComment(document, line - 1))
        --line;
    return line;
}

std::string NoteOf(const PatchDocument& document, const std::vector<std::size_t>& lines) {
    std::string note;
    for (const std::size_t line : lines) {
        if (line != lines.front())
            note += '\n';
        note += NoteLine(document.Text(line));
    }
    return note;
}

} // namespace

bool IsForPrograms(std::string_view comment) {
    return comment.starts_with(editorComment) || std::ranges::any_of(engineComments, [comment](std::string_view each) {
               return comment.find(each) != std::string_view::npos;
           });
}

bool IsFirstLine(std::string_view line) {
    constexpr std::string_view start = "Patch File for DeHackEd v";
    return EqualIgnoringCase(line.substr(0, start.size()), start);
}

bool HasNoteAbove(const DocumentLine& line) {
    return line.what == LineKind::Header && line.index != noRecord &&
           KindOf(static_cast<Section>(line.field)) != RecordKind::Par;
}

std::vector<std::size_t> NoteLinesAbove(const PatchDocument& document, std::size_t header) {
    std::vector<std::size_t> lines;
    for (std::size_t line = FirstAbove(document, header); line < header; ++line)
        if (!IsForPrograms(document.Text(line)))
            lines.push_back(line);
    return lines;
}

std::vector<std::size_t> PatchNoteLines(const PatchDocument& document) {
    const std::vector<DocumentLine>& all = document.Lines();
    std::size_t end = 0;
    while (end < all.size() && (IsComment(document, end) || IsBlank(document, end) || IsFirstLine(document.Text(end))))
        ++end;
    if (end < all.size() && (all[end].what == LineKind::Header || all[end].what == LineKind::Text))
        end = FirstAbove(document, end); // they belong to what they stand above
    std::vector<std::size_t> lines;
    std::size_t noted = 0; // of `lines`, up to the last comment
    for (std::size_t line = 0; line < end; ++line) {
        const bool note = IsComment(document, line) && !IsForPrograms(document.Text(line));
        if (note || (IsBlank(document, line) && !lines.empty()))
            lines.push_back(line);
        if (note)
            noted = lines.size();
    }
    lines.resize(noted);
    return lines;
}

std::string_view NoteLine(std::string_view comment) {
    if (!comment.starts_with(sign))
        return {};
    comment.remove_prefix(1);
    comment.remove_prefix(comment.starts_with(' ') ? 1 : 0);
    return comment;
}

std::vector<std::string> CommentLines(std::string_view note) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at <= note.size() && !note.empty();) {
        const std::size_t end = std::min(note.find('\n', at), note.size());
        lines.push_back(std::string(1, sign) + (end > at ? " " : ""));
        lines.back() += note.substr(at, end - at);
        at = end + 1;
    }
    return lines;
}

Notes ReadNotes(const PatchDocument& document) {
    Notes notes;
    const auto put = [&](const Cell& cell, const std::vector<std::size_t>& lines) {
        std::string note = NoteOf(document, lines);
        if (!note.empty())
            notes[{cell.kind, cell.index}] = std::move(note);
        else if (!notes.empty())
            notes.erase({cell.kind, cell.index});
    };
    put(patchNotes, PatchNoteLines(document));
    const std::vector<DocumentLine>& lines = document.Lines();
    for (std::size_t line = 0; line < lines.size(); ++line)
        if (HasNoteAbove(lines[line]))
            put({lines[line].kind, lines[line].index, noteField}, NoteLinesAbove(document, line));
    return notes;
}

} // namespace plinket3
