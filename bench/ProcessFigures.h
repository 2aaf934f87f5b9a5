#pragma once

namespace plinket3 {

/// Prints "NAME MILLISECONDS KIB", the KiB being this process's peak memory. Linux only.
void PrintFigure(const char* name, double milliseconds);

/// Milliseconds since this process was started.
double ProcessMilliseconds();

} // namespace plinket3
