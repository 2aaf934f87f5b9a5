#pragma once

#include "core/BytePieces.h"
#include "patch/Cells.h"
#include "patch/SectionWords.h"
#include "patch/modPatchFiles.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// What a line of a patch is.
enum class LineKind : std::uint8_t {
    Blank,
    Comment,
    Header, // of a section or a record
    Value,  // has set a cell
    Text,   // has set a string by its old text, which it quotes
    Other,  // is kept and not edited
};

/// A line, with those that it goes on in: of a text over several lines there is one. It ends where the next one begins.
struct DocumentLine {
    std::uint32_t offset = 0;
    std::int32_t index = noRecord; // of the record that a header selects or a value belongs to
    std::int16_t field = 0;        // of the cell; for a header its `Section`
    RecordKind kind = RecordKind::Par;
    LineKind what = LineKind::Other;
};

/// A patch as it stands in its file: the bytes, and for each line what it is and which cell it has set. By engine rules
/// a patch is saved by merging what was changed into it.
class PatchDocument {
public:
    struct OtherString {
        std::string key, text;
    };
    struct Rename {
        RecordKind kind; // one whose records have names of lumps
        std::string from, to;
    };

    /// Reads `bytes` by engine rules over `defaults` into `set`, with the notes, which after a failure holds what was
    /// read so far.
    modPatchFiles::ReadResult Read(std::string bytes, const EngineConfiguration& engine, const PatchSet& defaults,
                                   PatchSet& set, const modPatchFiles::IncludeReader& includes = {});

    const std::string& Bytes() const { return bytes_; }
    const std::vector<DocumentLine>& Lines() const { return lines_; }
    /// What a line says, without its end.
    std::string_view Text(std::size_t line) const;
    /// Where the line behind `line` begins; the size of the bytes behind the last one.
    std::size_t End(std::size_t line) const {
        return line + 1 < lines_.size() ? lines_[line + 1].offset : bytes_.size();
    }
    /// The set that the bytes say.
    const PatchSet& Said() const { return said_; }
    /// Strings that the engine does not know, and what has another name, in the file's order.
    const std::vector<OtherString>& OtherStrings() const { return otherStrings_; }
    const std::vector<Rename>& Renames() const { return renames_; }
    /// How the file's lines end.
    std::string_view LineEnd() const { return lineEnd_; }

private:
    class Builder;

    std::string bytes_;
    std::vector<DocumentLine> lines_;
    PatchSet said_;
    std::vector<OtherString> otherStrings_;
    std::vector<Rename> renames_;
    std::string_view lineEnd_ = "\n";
};

/// The document with the values of `current` in place of those that it says. Lines whose values did not change stay as
/// they are, byte for byte; a value that is the engine's own again loses its line. Reads back what it made: fails, with
/// `merged` of no use, for a value that game engines would not read back.
Status MergeIntoDocument(const PatchDocument& document, const PatchSet& current, const PatchSet& defaults,
                         const EngineConfiguration& engine, PatchDocument& merged);
/// The bytes alone of the same, in less time. Most of them are the document's, which must outlive them.
Status MergedBytes(const PatchDocument& document, const PatchSet& current, const PatchSet& defaults,
                   const EngineConfiguration& engine, BytePieces& bytes);

} // namespace plinket3
