#pragma once

#include "patch/ValueText.h"
#include "ui/EditorContext.h"
#include "ui/fields/SelectedField.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace plinket3 {

/// One value of the selected records, whatever it means: a field, or what an action takes from it.
class SelectedValue {
public:
    using Argument = EngineConfiguration::Argument;

    /// `argument` is null for a field that means the same in every record.
    SelectedValue(SelectedField field, const EditorContext& context, std::shared_ptr<const Argument> argument = {})
        : context_(context), field_(std::move(field)), argument_(std::move(argument)) {}

    const RecordSelection& Selection() const { return *field_.selection; }
    const std::shared_ptr<const RecordSelection>& SharedSelection() const { return field_.selection; }
    RecordKind Kind() const { return field_.kind; }
    int Field() const { return field_.field; }
    const char* Many() const { return field_.many; }
    /// The records that may be changed: not state 0, which stands for none.
    std::vector<std::int32_t> Editable() const;
    /// Whether it is a text, which is unset where it is empty.
    bool IsName() const { return plinket3::IsName(MeaningOf(0)); }
    bool MayBeUnset() const { return IsName() || plinket3::MayBeUnset(CellOf(0)); }
    CellValue UnsetValue() const { return IsName() ? CellValue(std::string()) : CellValue(Unset()); }

    Cell CellOf(std::int32_t record) const { return {field_.kind, record, field_.field}; }
    /// The step that changes it in these records: "hit points of 3 things".
    std::string StepName(const std::vector<std::int32_t>& records) const;

    CellValue Of(std::int32_t record) const { return context_.edits.Value(CellOf(record)); }
    CellValue DefaultOf(std::int32_t record) const { return context_.edits.DefaultValue(CellOf(record)); }
    bool Differs(std::int32_t record) const { return Of(record) != DefaultOf(record); }
    ValueMeaning MeaningOf(std::int32_t record) const { return Meaning(Current(), record); }
    /// What it can stand for now; none where that is not one of few things.
    std::vector<EngineConfiguration::Choice> Choices() const;
    /// What all selected records have; absent when they differ or there are none.
    std::optional<CellValue> Common() const;

    /// The value as it is typed; empty when it is unset.
    QString TextOf(std::int32_t record) const { return Text(Current(), record); }
    QString DefaultTextOf(std::int32_t record) const { return Text(context_.program.patch.defaults, record); }
    /// What stands for an unset value: what then counts, if that is one value for all selected records, or just that.
    QString UnsetWord() const;
    /// The engine's own value in words.
    QString DefaultWord(std::int32_t record) const;
    struct Typed {
        std::optional<CellValue> value; // absent when the text is none, or the beginning of one
        std::string refusal;            // why it can become none; empty when it can
    };
    Typed Read(const QString& text, std::int32_t record) const;

    /// Gives every editable record `valueOf(record)` as one step.
    void Store(const std::function<CellValue(std::int32_t record)>& valueOf, bool typing);
    void Restore();

private:
    const PatchSet& Current() const { return context_.program.patch.current; }
    ValueMeaning Meaning(const PatchSet& set, std::int32_t record) const;
    QString Text(const PatchSet& set, std::int32_t record) const;
    /// Absent where nothing is known to count.
    std::optional<std::int32_t> CountsUnset(const PatchSet& set, std::int32_t record) const;
    QString UnsetWord(std::optional<std::int32_t> counts) const;

    EditorContext context_;
    SelectedField field_;
    std::shared_ptr<const Argument> argument_;
};

} // namespace plinket3
