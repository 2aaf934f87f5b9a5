#include "patch/PatchDocument.h"
#include "patch/modPatchDiff.h"
#include "tests/support/SmallEngine.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace plinket3;

namespace {

void Check(bool holds) {
    if (!holds)
        std::abort();
}

/// Stores a number of the input in a numeric cell that its other bytes choose.
void Edit(PatchSet& set, std::string_view choice) {
    const auto byte = [choice](std::size_t at) { return static_cast<unsigned char>(choice[at]); };
    constexpr RecordKind kinds[]{RecordKind::Thing,  RecordKind::State, RecordKind::Sound,
                                 RecordKind::Weapon, RecordKind::Ammo,  RecordKind::Misc};
    const RecordKind kind = kinds[byte(0) % std::size(kinds)];
    const auto index = static_cast<std::int32_t>(byte(1) % RecordCount(set, kind));
    const std::vector<Cell> cells = CellsOf(kind, index);
    const Cell cell = cells[byte(2) % cells.size()];
    if (cell.field >= 0 && FactsOf(kind, cell.field).inPatch)
        WriteCell(set, cell, static_cast<std::int32_t>(byte(3)));
    DeriveMisc(set.misc);
}

} // namespace

/// A patch that is read by engine rules is saved as it was; with an edit that the last bytes of the input choose it
/// reads back edited, or the save is refused.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const bool extended : {false, true}) {
        EngineConfiguration engine = test::SmallEngine(extended);
        engine.dialect = engine.dialect.AsEngines();
        const PatchSet defaults = test::SmallDefaults(engine);
        PatchDocument document, merged;
        PatchSet set;
        if (!document.Read(std::string(bytes), engine, defaults, set).status)
            continue;
        Check(static_cast<bool>(MergeIntoDocument(document, set, defaults, engine, merged)));
        Check(merged.Bytes() == bytes);
        constexpr std::size_t choiceSize = 4;
        if (size < choiceSize)
            continue;
        Edit(set, bytes.substr(size - choiceSize));
        if (MergeIntoDocument(document, set, defaults, engine, merged))
            Check(modPatchDiff::Differences(set, merged.Said(), engine).empty());
    }
    return 0;
}
