#pragma once

#include "core/modConfig.h"
#include "patch/Cells.h"

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace plinket3 {

/// A number that the action of a state takes, and the row of the states' table in which it stands.
struct StateArgument {
    const EngineConfiguration::Argument* facts = nullptr;
    int field = 0;
    bool operator==(const StateArgument&) const = default;
};

/// What an action takes, in the order of the configuration. Arguments in fields that the engine's patches do not have
/// are left out. They refer to `action`.
std::vector<StateArgument> ArgumentsOf(const Dialect& dialect, const EngineConfiguration::Action& action);

/// The same for all actions, by their code pointer values: for work on many states.
class ArgumentTable {
public:
    /// `engine` must stay as it is while the table is used.
    explicit ArgumentTable(const EngineConfiguration& engine);

    /// None for an action without arguments, or an unknown one.
    std::span<const StateArgument> Of(std::int32_t codePointer) const&;
    std::span<const StateArgument> Of(std::int32_t codePointer) && = delete; // they would not outlive the table
    bool Empty() const { return byAction_.empty(); }

private:
    std::unordered_map<std::int32_t, std::vector<StateArgument>> byAction_;
};

/// The argument's number in a state; absent when it is unset, and the action then takes the argument's standard.
FieldValue ArgumentOf(const StateRecord& state, const StateArgument& argument);

/// What an argument's number refers to.
bool IsThing(const StateArgument& argument);
bool IsState(const StateArgument& argument);

struct ClearedArgument {
    int field = 0;
    std::string name; // as the former action calls it, else the field's label
    CellValue value;  // that the field gets
};
/// What is cleared when a state gets another action: arguments that the new one does not take in that field, or takes
/// as something else. Of fields that cannot be unset only those that the former action takes, which become 0.
std::vector<ClearedArgument> ArgumentsToClear(const ArgumentTable& table, const StateRecord& state,
                                              std::int32_t newAction);

/// Whether an argument of a state has anything to show: not one that is unset, or 0 in a field that cannot be.
bool IsGiven(const StateRecord& state, const StateArgument& argument);

/// What lists show of an argument, and the row in which it stands.
struct ShownArgument {
    int field = 0;
    std::string text; // "type: Imp"
};
/// The arguments that the action of a state takes by value, as lists show them: "type: Imp", "angle 45(degree sign)";
/// base and dice of a damage as "damage 3d8". Those that are not given are left out.
std::vector<ShownArgument> ShownArguments(const PatchSet& set, const EngineConfiguration& engine,
                                          std::span<const StateArgument> arguments, const StateRecord& state);
/// All of them: "type: Imp, angle 45(degree sign)".
std::string ArgumentsText(const PatchSet& set, const EngineConfiguration& engine,
                          std::span<const StateArgument> arguments, const StateRecord& state);

} // namespace plinket3
