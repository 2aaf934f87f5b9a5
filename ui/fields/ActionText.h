#pragma once

#include "core/modConfig.h"

#include <QString>

namespace plinket3 {

/// An action's name as lists show it.
QString ActionName(const EngineConfiguration::Action& action);
/// What it does, as the engine's configuration tells.
QString ActionDescription(const EngineConfiguration::Action& action);
/// The text in which a search for an action looks: both.
QString ActionSearchText(const EngineConfiguration::Action& action);

} // namespace plinket3
