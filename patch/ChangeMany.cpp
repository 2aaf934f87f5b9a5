#include "patch/ChangeMany.h"

#include "core/Numbers.h"
#include "core/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <set>
#include <utility>

namespace plinket3 {

namespace {

using Kind = ValueMeaning::Kind;

constexpr std::int32_t special = -1;

bool IsReckonable(FieldUnit unit) {
    switch (unit) {
    case FieldUnit::Number:
    case FieldUnit::Fixed16:
    case FieldUnit::ProjectileSpeed:
    case FieldUnit::Thing:
    case FieldUnit::State:
    case FieldUnit::Sound:
    case FieldUnit::Sprite:
    case FieldUnit::SpriteFrame:
    case FieldUnit::Argument:
        return true;
    default:
        return false;
    }
}

/// Whether -1 is no number there, but stands for "for ever", "none" or "the normal one".
bool HasSpecial(const NumberCell& number) {
    return number.meaning.limits.lowest == special ||
           (number.cell.kind == RecordKind::Thing && number.cell.field == RowOf(&ThingRecord::fastSpeed));
}

bool Stays(const NumberCell& number, std::int32_t value) {
    return RefersToRecord(number.meaning) ? value == 0 : HasSpecial(number) && value == special;
}

bool IsSpriteFrame(const Cell& cell) { return FactsOf(cell.kind, cell.field).unit == FieldUnit::SpriteFrame; }

/// The number without what else its cell keeps: a sprite's frame has the lit bit beside it.
std::optional<std::int32_t> NumberIn(const PatchSet& set, const Cell& cell) {
    const CellValue value = ReadCell(set, cell);
    const auto* number = std::get_if<std::int32_t>(&value);
    return number == nullptr ? std::nullopt : std::optional(IsSpriteFrame(cell) ? *number & ~litBit : *number);
}

Assignment Put(const PatchSet& set, const Cell& cell, Limits limits, double value) {
    std::int32_t number = limits.Apply(RoundToInt32(value));
    if (IsSpriteFrame(cell))
        number |= std::get<std::int32_t>(ReadCell(set, cell)) & litBit;
    return {cell, number};
}

double Changed(double value, const NumberChange& change, double unit) {
    switch (change.kind) {
    case NumberChange::Kind::Add:
        return value + change.by * unit;
    case NumberChange::Kind::Multiply:
        return value * change.by;
    default:
        return value / change.by;
    }
}

/// Calls visit(link) for what can be replaced.
template <class Visit>
void ForEachLink(const PatchSet& set, const EngineConfiguration& engine, const ManyRecords& records, Visit visit) {
    if (records.kind == RecordKind::Sound)
        return; // sounds keep addresses of each other, no numbers
    const LinkWalk walk(set, engine);
    for (const std::int32_t record : records.numbers)
        if (records.kind != RecordKind::State || record != 0)
            walk.ForEachOf(records.kind, record, [&visit](const Link& link) {
                const TargetKind kind = link.to.kind;
                if (kind == TargetKind::Thing || kind == TargetKind::State || kind == TargetKind::Sound ||
                    kind == TargetKind::Sprite)
                    visit(link);
            });
}

} // namespace

bool BeginsChange(std::string_view text) {
    const std::string_view trimmed = Trim(text);
    return trimmed.starts_with('*') || trimmed.starts_with('/') || trimmed.starts_with('+');
}

TypedChange ReadChange(std::string_view text) {
    using ChangeKind = NumberChange::Kind;
    const std::string_view trimmed = Trim(text);
    if (!BeginsChange(trimmed))
        return {{}, "A change begins with *, / or +."};
    const ChangeKind kind = trimmed.front() == '*'   ? ChangeKind::Multiply
                            : trimmed.front() == '/' ? ChangeKind::Divide
                                                     : ChangeKind::Add;
    const std::string_view number = TrimLeft(trimmed.substr(1));
    double by = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), by, std::chars_format::fixed);
    if (read.ec != std::errc() || read.ptr != number.data() + number.size() || !std::isfinite(by))
        return {{}, "A number follows *, / or +, such as *0.5, /2, +10 or +-10."};
    if (kind == ChangeKind::Divide && by == 0)
        return {{}, "Nothing can be divided by 0."};
    return {NumberChange{kind, by}, {}};
}

std::vector<int> NumberFields(RecordKind kind, const EngineConfiguration& engine) {
    std::vector<int> fields;
    VisitKind(kind, [&]<class List>(const List&) {
        const auto rows = fieldsOf<RecordOf<List>>;
        for (std::size_t row = 0; row < rows.size(); ++row)
            if (rows[row].inPatch && rows[row].since <= engine.dialect.fields && IsReckonable(rows[row].unit))
                fields.push_back(static_cast<int>(row));
    });
    return fields;
}

std::vector<NumberCell> NumberCells(const PatchSet& set, const EngineConfiguration& engine, const ManyRecords& records,
                                    int field) {
    std::vector<NumberCell> cells;
    const bool argumentsOnly = FactsOf(records.kind, field).unit == FieldUnit::Argument;
    const ArgumentTable table(engine);
    for (const std::int32_t record : records.numbers) {
        const Cell cell{records.kind, record, field};
        if (!HasCell(set, cell) || (records.kind == RecordKind::State && record == 0))
            continue;
        NumberCell number{cell, MeaningOf(set, cell)};
        bool takes = !argumentsOnly;
        if (records.kind == RecordKind::State)
            for (const StateArgument& argument : table.Of(set.states[record].codePointer))
                if (argument.field == field) {
                    number.meaning = MeaningOf(set, *argument.facts);
                    takes = number.meaning.kind != Kind::Bits && number.meaning.kind != Kind::Truth;
                }
        if (takes)
            cells.push_back(number);
    }
    return cells;
}

std::vector<Assignment> ChangeNumbers(const PatchSet& set, const std::vector<NumberCell>& cells,
                                      const NumberChange& change) {
    std::vector<Assignment> values;
    for (const NumberCell& each : cells) {
        const auto number = NumberIn(set, each.cell);
        if (!number || Stays(each, *number))
            continue;
        Limits limits = each.meaning.limits;
        double value = Changed(*number, change, UnitOf(each.meaning));
        if (limits.lowest == special)
            limits.lowest = 0;
        else if (HasSpecial(each) && RoundToInt32(value) == special)
            value = 0;
        values.push_back(Put(set, each.cell, limits, value));
    }
    return values;
}

std::vector<Assignment> NumberSeries(const PatchSet& set, const std::vector<NumberCell>& cells, double first,
                                     double step) {
    std::vector<Assignment> values;
    values.reserve(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const NumberCell& each = cells[i];
        const double typed = first + step * static_cast<double>(i);
        const double unit = each.meaning.kind == Kind::FastSpeed && typed == special ? 1 : UnitOf(each.meaning);
        values.push_back(Put(set, each.cell, each.meaning.limits, typed * unit));
    }
    return values;
}

std::vector<Assignment> NextInOrder(const std::vector<std::int32_t>& states, bool ring) {
    std::vector<std::int32_t> order = states;
    std::erase(order, 0);
    std::vector<Assignment> values;
    for (std::size_t i = 0; i < order.size(); ++i)
        if (i + 1 < order.size() || ring)
            values.push_back(
                {{RecordKind::State, order[i], RowOf(&StateRecord::nextState)}, order[(i + 1) % order.size()]});
    return values;
}

std::vector<Target> TargetsOf(const PatchSet& set, const EngineConfiguration& engine, const ManyRecords& records) {
    std::set<std::pair<TargetKind, std::int32_t>> found;
    ForEachLink(set, engine, records, [&found](const Link& link) { found.emplace(link.to.kind, link.to.number); });
    std::vector<Target> targets;
    targets.reserve(found.size());
    for (const auto& [kind, number] : found)
        targets.push_back({kind, number});
    return targets;
}

std::vector<Assignment> ReplaceTarget(const PatchSet& set, const EngineConfiguration& engine,
                                      const ManyRecords& records, const Target& from, std::int32_t to) {
    std::vector<Assignment> values;
    ForEachLink(set, engine, records, [&](const Link& link) {
        if (link.to == from)
            values.push_back({link.from, LinkValue(link, to)});
    });
    return values;
}

} // namespace plinket3
