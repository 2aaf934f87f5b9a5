#pragma once

#include "core/Dialect.h"
#include "core/Status.h"
#include "patch/modTableDef.h"

#include <string_view>

namespace plinket3 {

/// Whether patches can give sprites and sounds names of their own by number, whatever the name.
inline bool CanRenameLumps(const Dialect& dialect) { return dialect.EngineRules() && dialect.unlimited; }

/// Whether `name` can be that of a sprite or sound, of which lumps' names are made; the reason why not, for the user.
Status MayBeLumpName(RecordKind kind, std::string_view name);

} // namespace plinket3
