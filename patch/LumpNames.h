#pragma once

#include "core/Dialect.h"
#include "core/Status.h"
#include "patch/PatchSet.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace plinket3 {

/// Whether patches can give sprites, sounds and music other names.
inline bool CanRenameLumps(const Dialect& dialect) { return dialect.EngineRules(); }
/// The engine's own name of a sprite, sound or music, by which a text renames it; empty where none can, as for a second
/// one of that name.
std::string NameInTexts(const PatchSet& defaults, RecordKind kind, std::int32_t number);
/// Whether patches can give this one another name: by number where the engine knows no limits, else by a text.
bool CanRenameLump(const Dialect& dialect, const PatchSet& defaults, RecordKind kind, std::int32_t number);

/// Whether `name` can be that of a sprite, sound or music, of which lumps' names are made; the reason why not, for the
/// user.
Status MayBeLumpName(RecordKind kind, std::string_view name);

} // namespace plinket3
