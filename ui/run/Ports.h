#pragma once

#include "core/modConfig.h"

#include <QString>

#include <filesystem>
#include <vector>

namespace plinket3 {

/// The ports that are known by the names of their programs and installed: in the search path and the folders where
/// games usually are.
std::vector<Settings::Port> FindPorts();

/// A port with its name and the arguments that suit its program; those of most ports for a program that is not known.
Settings::Port PortOf(const std::filesystem::path& program);

/// The ports of the options; those that are found when there are none.
std::vector<Settings::Port> PortsToUse(const Settings& settings);

/// Why a port cannot be started, in a few words; empty when nothing speaks against it.
QString FaultOf(const Settings::Port& port);

} // namespace plinket3
