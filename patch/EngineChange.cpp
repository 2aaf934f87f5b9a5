#include "patch/EngineChange.h"

#include "patch/Arguments.h"
#include "patch/EngineTerms.h"
#include "patch/LumpNames.h"
#include "patch/NewRecords.h"
#include "patch/OtherCells.h"
#include "patch/PatchDocument.h"
#include "patch/ValueText.h"
#include "patch/modPatchDiff.h"
#include "patch/modPatchFiles.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace plinket3 {

namespace {

/// Takes over what a patch changes, cell by cell.
class Taker {
public:
    Taker(const PatchData& patch, const EngineConfiguration& from, const EngineConfiguration& to,
          const PatchSet& defaults)
        : kept(patch.current), wanted(defaults), patch_(patch), from_(from), to_(to), defaults_(defaults),
          arguments_(to) {
        wanted.pars = patch.current.pars;
        std::vector<Cell> cells;
        ForEachOtherCell(patch.defaults, patch.current, [&cells](const Cell& cell) { cells.push_back(cell); });
        // Records that the patch makes are there before anything refers to them; actions before their arguments.
        const auto order = [](const Cell& cell) {
            return cell.field == existsField ? 0 : cell.field == codePointerField ? 1 : 2;
        };
        std::ranges::stable_sort(cells, {}, order);
        for (const Cell& cell : cells)
            if (!Take(cell))
                WriteCell(kept, cell, ReadCell(patch.defaults, cell));
        DeriveMisc(wanted.misc);
    }

    PatchSet kept;   // by the former engine what the new one can hold
    PatchSet wanted; // the same by the new one

private:
    /// False for what the engine cannot hold at all; what it holds a part of is limited in `kept`, too.
    bool Take(const Cell& cell) {
        const CellValue value = ReadCell(patch_.current, cell);
        if (cell.field == existsField)
            return value == CellValue(1) && Make(cell);
        if (cell.kind == RecordKind::String)
            return TakeString(cell, value);
        if (cell.kind != RecordKind::Par && !HasRecord(wanted, cell.kind, cell.index))
            return false;
        if (cell.field == lumpNameField && !CanRenameLump(to_.dialect, defaults_, cell.kind, cell.index))
            return false;
        if (const TextField* text = TextFieldAt(cell.field); text != nullptr && text->since > to_.dialect.fields)
            return false;
        if (const auto* helper = std::get_if<std::int32_t>(&value);
            helper != nullptr && cell.field == helperField && !Exists(MeaningOf(wanted, cell), *helper))
            return false;
        if (cell.field == helperField && !HasHelper(to_.dialect))
            return false;
        if (cell.field == codePointerField)
            return TakeAction(cell, std::get<std::int32_t>(value));
        if (cell.field >= 0 && std::holds_alternative<std::int32_t>(value))
            return TakeNumber(cell, std::get<std::int32_t>(value));
        if (cell.field >= 0 && FactsOf(cell.kind, cell.field).since > to_.dialect.fields)
            return false;
        WriteCell(wanted, cell, value);
        return true;
    }

    bool Make(const Cell& record) {
        if (!HasRecord(wanted, record.kind, record.index) && to_.dialect.unlimited && CanBeMade(record.kind))
            WriteCell(wanted, record, 1);
        return HasRecord(wanted, record.kind, record.index);
    }

    bool TakeAction(const Cell& cell, std::int32_t codePointer) {
        const auto value = ActionIn(to_, from_, codePointer);
        if (value)
            WriteCell(wanted, cell, *value);
        return value.has_value();
    }

    bool TakeNumber(const Cell& cell, std::int32_t number) {
        const RowFacts facts = FactsOf(cell.kind, cell.field);
        if (facts.since > to_.dialect.fields || !Exists(cell, facts.unit, number))
            return false;
        if (facts.unit == FieldUnit::Flags) {
            const auto standard = std::get<std::int32_t>(ReadCell(patch_.defaults, cell));
            number &= ~(BitsLostIn(to_, from_, facts.bits) & ~standard);
            WriteCell(kept, cell, number);
        }
        WriteCell(wanted, cell, number);
        return true;
    }

    /// Whether the engine has what a number refers to.
    bool Exists(const Cell& cell, FieldUnit unit, std::int32_t number) const {
        if (unit == FieldUnit::Sprite)
            return HasRecord(wanted, RecordKind::Sprite, number);
        if (cell.kind == RecordKind::State)
            for (const StateArgument& argument : arguments_.Of(wanted.states[cell.index].codePointer))
                if (argument.field == cell.field)
                    return Exists(MeaningOf(wanted, *argument.facts), number);
        return Exists(MeaningOf(wanted, cell), number);
    }
    bool Exists(const ValueMeaning& meaning, std::int32_t number) const {
        switch (meaning.kind) {
        case ValueMeaning::Kind::Thing:
            return number == 0 || (number != INT32_MIN && HasRecord(wanted, RecordKind::Thing, number - 1));
        case ValueMeaning::Kind::State:
            return HasRecord(wanted, RecordKind::State, number);
        case ValueMeaning::Kind::Sound:
            return HasRecord(wanted, RecordKind::Sound, number);
        default:
            return true;
        }
    }

    bool TakeString(const Cell& cell, const CellValue& value) {
        const auto number = StringIn(to_, defaults_, from_, patch_.defaults, cell.index);
        const Cell same{RecordKind::String, number.value_or(noRecord), textField};
        if (!HasCell(wanted, same))
            return false;
        WriteCell(wanted, same, value);
        return true;
    }

    const PatchData& patch_;
    const EngineConfiguration& from_;
    const EngineConfiguration& to_;
    const PatchSet& defaults_; // of the new one
    ArgumentTable arguments_;
};

/// The patch's own lines under the new engine; false when they cannot be kept.
bool KeepLines(const PatchData& patch, const EngineConfiguration& from, const EngineConfiguration& to,
               const PatchSet& kept, PatchData& changed) {
    PatchDocument merged;
    if (!patch.document || !to.dialect.EngineRules() || from.dialect.keyedTexts != to.dialect.keyedTexts ||
        !MergeIntoDocument(*patch.document, kept, patch.defaults, from, merged))
        return false;
    std::optional<std::string> bytes = modPatchFiles::UpdateHeader(merged, changed, true);
    auto document = std::make_shared<PatchDocument>();
    if (!document->Read(bytes ? *std::move(bytes) : merged.Bytes(), to, changed.defaults, changed.current).status)
        return false;
    changed.document = std::move(document);
    return true;
}

/// The names of `wanted` that lines which were kept do not give: one that goes by number means nothing to an engine
/// with limits.
std::vector<std::string> NamesUnsaid(const PatchSet& current, const PatchSet& wanted, const EngineConfiguration& to) {
    PatchSet named = current;
    for (const RecordKind kind : lumpNamedKinds)
        for (const std::int32_t number : RecordNumbers(current, kind))
            WriteCell(named, {kind, number, lumpNameField}, ReadCell(wanted, {kind, number, lumpNameField}));
    return modPatchDiff::Differences(current, named, to);
}

/// Leaves out what a new patch does not say of `changed`; sounds count only by engine rules, as others read them one
/// number later than they write them.
std::vector<std::string> LeaveOutUnsaid(const EngineConfiguration& to, PatchData& changed) {
    PatchSet said;
    if (!modPatchFiles::ParsePatch(modPatchFiles::FormatPatch(changed, to), to, changed.defaults, said).status)
        return {};
    const PatchSet wanted = changed.current;
    ForEachOtherCell(wanted, said, [&](const Cell& cell) {
        if (cell.field != noteField && (cell.kind != RecordKind::Sound || to.dialect.EngineRules()))
            WriteCell(changed.current, cell, ReadCell(said, cell));
    });
    changed.current.pars = said.pars;
    DeriveMisc(changed.current.misc);
    return modPatchDiff::Differences(changed.current, wanted, to);
}

} // namespace

EngineChange ChangeEngine(const PatchData& patch, const EngineConfiguration& from, const EngineConfiguration& to,
                          const PatchSet& defaults) {
    Taker taker(patch, from, to, defaults);
    EngineChange change{patch, modPatchDiff::Differences(taker.kept, patch.current, from)};
    PatchData& changed = change.patch;
    changed.defaults = defaults;
    changed.doomVersion = to.version;
    changed.patchFormat = to.dialect.patchFormat;
    changed.engineConfig = to.fileName;
    changed.changed = true;
    std::vector<std::string> unsaid;
    if (KeepLines(patch, from, to, taker.kept, changed)) {
        unsaid = NamesUnsaid(changed.current, taker.wanted, to);
    } else {
        changed.document.reset();
        changed.current = std::move(taker.wanted);
        unsaid = LeaveOutUnsaid(to, changed);
    }
    for (std::string& line : unsaid)
        change.lost.push_back(std::move(line));
    return change;
}

} // namespace plinket3
