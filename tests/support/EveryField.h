#pragma once

#include "core/modConfig.h"
#include "patch/PatchSet.h"

#include <filesystem>
#include <functional>

namespace plinket3::test {

/// The engine `name` ("boom19") of a build with its own data, as a new patch. Throws when there is none.
PatchData BuiltEngine(const std::filesystem::path& dataFolder, const std::string& name, EngineConfiguration& engine);

/// The value that a field is changed to.
using NewValue = std::function<std::int32_t(FieldUnit unit, std::int32_t value)>;

/// Another value that the engine has a use for: references stay within the engine's tables.
NewValue UsableValue(const PatchSet& set);

/// Changes every number of every record that a patch for an engine of that level can hold, and every name.
void ChangeEveryNumber(PatchSet& set, FieldLevel level, const NewValue& newValue);

/// Gives each action of the engine to a state from `first` on.
void UseEveryAction(PatchSet& set, const EngineConfiguration& engine, std::size_t first);

/// Gives every state just the arguments that its action takes.
void GiveEveryArgument(PatchSet& set, const EngineConfiguration& engine);

/// Makes a few things, states, sounds and sprites of high numbers, with other values than new ones, which name each
/// other; gives names to them and others to some that the engine has.
void MakeRecords(PatchSet& set, const EngineConfiguration& engine);

/// Gives every state that can get another code pointer that of another state, weapons' states those of weapons' states.
void ChangeEveryCodePointer(PatchSet& set, const EngineConfiguration& engine);

/// Changes one letter of every cheat and of every text for which `usable` holds. Of texts alike only the first can be
/// changed by a normal patch.
void ChangeEveryText(PatchSet& set, const EngineConfiguration& engine,
                     const std::function<bool(const std::string&)>& usable);

} // namespace plinket3::test
