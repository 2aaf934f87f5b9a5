#pragma once

namespace plinket3 {

/// Prints "NAME MILLISECONDS KIB": the time since this process was started, the loading of its libraries included, and
/// its peak memory. Linux only, as the figures are.
void PrintProcessFigures(const char* name);

/// Milliseconds since this process was started.
double ProcessMilliseconds();

} // namespace plinket3
