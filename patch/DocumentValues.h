#pragma once

#include "patch/DocumentSections.h"
#include "patch/PointerTargets.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// Writes values of a set as lines of a patch have them, by engine rules. All that it is given must outlive it.
class DocumentValues {
public:
    /// `end` is how lines end.
    DocumentValues(const PatchSet& current, const PatchSet& defaults, const EngineConfiguration& engine,
                   std::string_view end)
        : current_(current), defaults_(defaults), engine_(engine), dialect_(engine.dialect), end_(end) {}

    /// What stands behind "=". Bits are names if `names` and there are some for all of them; `old` is what stood there.
    std::string ValueText(const Cell& cell, bool names, std::string_view old = {});
    std::string LumpName(const Cell& cell);
    std::string StringText(const Cell& cell);
    /// A whole "Text" entry.
    std::string TextEntry(const Cell& cell);
    std::string ParLine(const ParRecord& par) const;
    /// The lines that a section gets for a value that it has none for yet.
    std::string NewLines(const Cell& cell);
    /// What a new section begins with; with the record's name if `named`, or if it is another one.
    std::string HeaderText(const SectionPlace& place, bool named);
    /// The lines of the cell's note as comments.
    std::vector<std::string> NoteOf(const Cell& cell);

    /// Whether a record is one that the patch makes.
    bool IsMade(RecordKind kind, std::int32_t number) const;

    /// A failure that tells which value cannot be written so that games read it back, the first of them.
    const Status& Outcome() const { return status_; }

private:
    std::string TextFieldText(const Cell& cell, const std::string& text);
    std::string CodePointerText(const Cell& cell, std::int32_t codePointer, std::string_view old);
    std::string TextEntry(const std::string& old, const std::string& text) const;
    const PointerTargets& Targets();
    void Fail(const Cell& cell, std::string_view reason);

    const PatchSet& current_;
    const PatchSet& defaults_;
    const EngineConfiguration& engine_;
    const Dialect& dialect_;
    const std::string_view end_;
    std::optional<PointerTargets> targets_;
    Status status_;
};

} // namespace plinket3
