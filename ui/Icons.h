#pragma once

#include <QIcon>
#include <QPalette>

namespace plinket3 {

/// One of the program's own icons, drawn in the palette's text colour where it is not coloured, so that it reads on
/// light and dark. `name` is the file's without its ending.
QIcon ProgramIcon(const char* name, const QPalette& palette);

} // namespace plinket3
