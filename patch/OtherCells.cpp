#include "patch/OtherCells.h"

#include <set>

namespace plinket3 {

void ForEachOtherCell(const PatchSet& before, const PatchSet& after, const std::function<void(const Cell&)>& visit) {
    const auto visitCell = [&](const Cell& cell) {
        if (ReadCell(before, cell) != ReadCell(after, cell))
            visit(cell);
    };
    const auto visitRecord = [&](RecordKind kind, std::int32_t index) {
        visitCell({kind, index, existsField});
        for (const Cell& cell : CellsOf(kind, index))
            if (TextFieldAt(cell.field) == nullptr && (cell.field < 0 || FactsOf(kind, cell.field).inPatch))
                visitCell(cell);
        if (HasLumpName(kind))
            visitCell({kind, index, lumpNameField});
    };
    VisitKinds([&](const auto& kind) {
        const auto &records = kind.In(before), &others = kind.In(after);
        for (const auto& [number, record] : records)
            if (const auto* other = others.Find(number); other == nullptr || *other != record)
                visitRecord(kind.kind, number);
        for (const auto& [number, record] : others)
            if (!records.Has(number))
                visitRecord(kind.kind, number);
    });
    visitRecord(RecordKind::Misc, 0);
    for (const Cell& cell : OtherTexts(before, after))
        visit(cell);
    std::set<RecordId> noted;
    for (const Notes* notes : {&before.notes, &after.notes})
        for (const auto& [record, note] : *notes)
            noted.insert(record);
    for (const auto& [kind, index] : noted)
        if (const Cell cell{kind, index, noteField}; ReadCell(before, cell) != ReadCell(after, cell))
            visit(cell);
}

} // namespace plinket3
