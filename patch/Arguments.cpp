#include "patch/Arguments.h"

#include "patch/LabelIndex.h"
#include "patch/ValueText.h"

#include <algorithm>
#include <utility>

namespace plinket3 {

namespace {

using Argument = EngineConfiguration::Argument;

constexpr std::string_view damageBase = "damagebase", damageDice = "damagedice";

const Field<StateRecord>& RowOf(const StateArgument& argument) {
    return fieldTable<StateRecord>[static_cast<std::size_t>(argument.field)];
}

/// Whether a number keeps its meaning.
bool AreAlike(Argument::Kind left, Argument::Kind right) {
    const auto whole = [](Argument::Kind kind) {
        return kind == Argument::Kind::Unsigned ? Argument::Kind::Number : kind;
    };
    return whole(left) == whole(right);
}

const StateArgument* Named(std::span<const StateArgument> arguments, std::string_view name) {
    const auto found =
        std::ranges::find_if(arguments, [name](const StateArgument& each) { return each.facts->name == name; });
    return found == arguments.end() ? nullptr : &*found;
}

const StateArgument* InField(std::span<const StateArgument> arguments, int field) {
    const auto found = std::ranges::find(arguments, field, &StateArgument::field);
    return found == arguments.end() ? nullptr : &*found;
}

} // namespace

std::vector<StateArgument> ArgumentsOf(const Dialect& dialect, const EngineConfiguration::Action& action) {
    std::vector<StateArgument> arguments;
    for (const Argument& argument : action.arguments)
        if (const Field<StateRecord>* row = FindField<StateRecord>(argument.field);
            row != nullptr && row->since <= dialect.fields)
            arguments.push_back({&argument, static_cast<int>(row - fieldTable<StateRecord>.data())});
    return arguments;
}

ArgumentTable::ArgumentTable(const EngineConfiguration& engine) {
    for (const EngineConfiguration::Action& action : engine.actions)
        if (std::vector<StateArgument> arguments = ArgumentsOf(engine.dialect, action); !arguments.empty())
            byAction_.try_emplace(action.value, std::move(arguments));
}

std::span<const StateArgument> ArgumentTable::Of(std::int32_t codePointer) const& {
    const auto found = byAction_.find(codePointer);
    return found == byAction_.end() ? std::span<const StateArgument>() : found->second;
}

FieldValue ArgumentOf(const StateRecord& state, const StateArgument& argument) {
    return ValueOf(state, RowOf(argument));
}

bool IsGiven(const StateRecord& state, const StateArgument& argument) {
    return RowOf(argument).givenBit >= 0 ? ArgumentOf(state, argument).has_value() : state.*RowOf(argument).member != 0;
}

bool IsThing(const StateArgument& argument) { return argument.facts->kind == Argument::Kind::Thing; }
bool IsState(const StateArgument& argument) { return argument.facts->kind == Argument::Kind::State; }

std::vector<ClearedArgument> ArgumentsToClear(const ArgumentTable& table, const StateRecord& state,
                                              std::int32_t newAction) {
    const std::span<const StateArgument> before = table.Of(state.codePointer), after = table.Of(newAction);
    std::vector<ClearedArgument> cleared;
    for (std::size_t row = 0; row < fieldTable<StateRecord>.size(); ++row) {
        const Field<StateRecord>& field = fieldTable<StateRecord>[row];
        const int number = static_cast<int>(row);
        const StateArgument* taken = InField(before, number);
        const StateArgument* takes = InField(after, number);
        const bool mayBeUnset = field.givenBit >= 0;
        if (takes != nullptr && (taken == nullptr || AreAlike(taken->facts->kind, takes->facts->kind)))
            continue;
        const bool stays = mayBeUnset ? field.unit != FieldUnit::Argument || !ValueOf(state, field)
                                      : taken == nullptr || state.*field.member == 0;
        if (!stays)
            cleared.push_back({number, taken != nullptr ? taken->facts->name : std::string(field.label),
                               mayBeUnset ? CellValue(Unset()) : CellValue(0)});
    }
    return cleared;
}

std::vector<ShownArgument> ShownArguments(const PatchSet& set, const EngineConfiguration& engine,
                                          std::span<const StateArgument> arguments, const StateRecord& state) {
    std::vector<ShownArgument> shown;
    const StateArgument *base = Named(arguments, damageBase), *dice = Named(arguments, damageDice);
    const bool damage = base != nullptr && dice != nullptr && (IsGiven(state, *base) || IsGiven(state, *dice));
    for (const StateArgument& argument : arguments) {
        const auto number = [&state](const StateArgument& each) {
            return ArgumentOf(state, each).value_or(each.facts->standard);
        };
        if (damage && &argument == base)
            shown.push_back(
                {base->field, "damage " + std::to_string(number(*base)) + "d" + std::to_string(number(*dice))});
        if ((damage && (&argument == base || &argument == dice)) || !IsGiven(state, argument))
            continue;
        const ValueMeaning meaning = MeaningOf(set, *argument.facts);
        shown.push_back({argument.field, argument.facts->name + (RefersToRecord(meaning) ? ": " : " ") +
                                             ValueName(set, engine, meaning, number(argument))});
    }
    return shown;
}

std::string ArgumentsText(const PatchSet& set, const EngineConfiguration& engine,
                          std::span<const StateArgument> arguments, const StateRecord& state) {
    std::string text;
    for (const ShownArgument& argument : ShownArguments(set, engine, arguments, state))
        text += (text.empty() ? "" : ", ") + argument.text;
    return text;
}

} // namespace plinket3
