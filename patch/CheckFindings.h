#pragma once

#include "patch/PatchLines.h"
#include "patch/modPatchCheck.h"
#include "patch/modPatchFiles.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace plinket3::modPatchCheck {

/// Gathers what there is to say of a patch's lines while they are read.
class CheckFindings : public modPatchFiles::ReadObserver {
public:
    CheckFindings(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults)
        : bytes_(bytes), engine_(engine), defaults_(defaults) {}

    void Ignored(std::size_t offset, std::string_view reason) override { Add(offset, reason); }
    void Selected(std::size_t offset, RecordKind kind, std::int32_t index) override {
        cells_.emplace_back(offset, Cell{kind, index, existsField});
    }
    void Stored(std::size_t offset, const Cell& cell, std::string_view) override { cells_.emplace_back(offset, cell); }

    /// What was gathered, in the order of the lines.
    std::vector<Finding> TakeFindings();

protected:
    /// The line begins the sentence that `reason` ends. `mend`: see `Finding`.
    void Add(std::size_t offset, std::string_view reason, Severity severity = Severity::Wrong,
             std::optional<CellValue> mend = {});
    /// Tells of a number that names what the engine does not have. Where it knows no limits, that shows only when the
    /// whole patch is known, by `FinishReferences`.
    void Reference(std::size_t offset, FieldUnit unit, std::int32_t value);
    void FinishReferences(const PatchSet& set);
    /// Tells of escapes in the string whose lines stand from `begin` to `end` that game engines do not undo.
    void Escapes(std::size_t begin, std::size_t end);
    /// The line that begins at `offset`.
    std::string_view LineFrom(std::size_t offset) const { return PatchLines(bytes_.substr(offset)).Next(); }
    /// A text in quotation marks, cut when it is long.
    static std::string Quoted(std::string_view text);

    std::string_view bytes_;
    const EngineConfiguration& engine_;
    const PatchSet& defaults_;

private:
    struct Place {
        std::size_t offset = 0;
        std::string text;
        Severity severity = Severity::Wrong;
        std::optional<CellValue> mend;
    };
    struct Later {
        std::size_t offset = 0;
        FieldUnit unit = FieldUnit::Number;
        std::int32_t value = 0;
    };
    void ReferenceIn(const PatchSet& set, const Later& reference);

    /// What the line at `offset` has set first, or the record that it has selected.
    std::optional<Cell> CellOf(std::size_t offset) const;

    std::vector<std::pair<std::size_t, Cell>> cells_; // by the place of the line
    std::vector<Place> places_;
    std::vector<Later> later_;
};

} // namespace plinket3::modPatchCheck
