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
    const std::vector<std::int32_t> numbers = RecordNumbers(set, kind);
    const std::vector<Cell> cells = CellsOf(kind, numbers[byte(1) % numbers.size()]);
    const Cell cell = cells[byte(2) % cells.size()];
    if (TextFieldAt(cell.field) != nullptr)
        WriteCell(set, cell, "N" + std::to_string(byte(3)));
    else if (cell.field >= 0 && FactsOf(kind, cell.field).inPatch)
        WriteCell(set, cell, static_cast<std::int32_t>(byte(3)));
    DeriveMisc(set.misc);
}

} // namespace

/// A patch that is read by engine rules is saved as it was; with an edit that the last bytes of the input choose it
/// reads back edited, or the save is refused.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    EngineConfiguration unlimited = test::SmallMbf21Engine();
    unlimited.dialect.unlimited = true;
    for (EngineConfiguration engine : {test::SmallEngine(false), test::SmallEngine(true), test::SmallMbf21Engine(),
                                       unlimited, test::SmallId24Engine()}) {
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
