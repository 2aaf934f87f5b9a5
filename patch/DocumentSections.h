#pragma once

#include "core/Dialect.h"
#include "patch/PatchDocument.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace plinket3 {

/// Where a value of the kind stands that no line holds yet.
Section SectionOf(const Cell& cell, const Dialect& dialect);

/// A section that holds one record.
bool IsOfOneRecord(Section section);

/// The lines from a header up to the next one.
struct SectionRange {
    std::size_t header = 0, end = 0;
    Section section = Section::None;
};

/// Where new lines go: behind those of a section that there is, or into a new one of this record. Ordered as sections
/// stand in a patch.
struct SectionPlace {
    Section section = Section::None;
    std::int32_t record = noRecord;                      // for a section of one record, and for a text
    RecordKind kind = RecordKind::Par;                   // for a text
    std::size_t existing = static_cast<std::size_t>(-1); // among the sections
    bool operator<(const SectionPlace& other) const;
};

/// The sections of a document, which must outlive them. They are looked for when they are asked for: most edits need
/// none.
class DocumentSections {
public:
    DocumentSections(const PatchDocument& document, const Dialect& dialect)
        : document_(document), lines_(document.Lines()), dialect_(dialect) {}

    const std::vector<SectionRange>& All() const;
    /// The last one of a record, of those that are not about its pointer; null when there is none.
    const SectionRange* Of(RecordKind kind, std::int32_t index) const;
    SectionPlace PlaceOf(const Cell& cell) const;
    bool IsThere(const SectionPlace& place) const { return place.existing < All().size(); }

    /// The line before which a section's new lines stand: engines still count it to the section.
    std::size_t EndOfLines(const SectionRange& section) const;
    /// The line before which a new section stands: behind the last of its kind or of those that come before it.
    std::size_t LineForNew(Section section) const;
    /// Whether the patch's headers have names, as those of most patches do.
    bool HaveNames() const;

private:
    bool BeginsWithBlank(std::size_t line) const { return document_.Text(line).starts_with(' '); }

    const PatchDocument& document_;
    const std::vector<DocumentLine>& lines_;
    const Dialect& dialect_;
    mutable std::optional<std::vector<SectionRange>> sections_;
};

} // namespace plinket3
