#pragma once

#include <QPalette>

namespace plinket3 {

/// On a dark palette, the roles whose text would be hard to read, in colours in which it is not: placeholders, what is
/// disabled, and links where they are as dark as the background; and quiet stripes for lists. All other roles of the
/// result are unset; on a light palette none is set.
QPalette LegibleRoles(const QPalette& palette);

} // namespace plinket3
