#pragma once

#include "core/modConfig.h"
#include "patch/PatchSet.h"

#include <cstdint>
#include <optional>

namespace plinket3 {

/// The code pointer value that an action of one engine has for another one: of the same mnemonic, or the same value
/// when it has none; absent when the other engine does not have it.
std::optional<std::int32_t> ActionIn(const EngineConfiguration& to, const EngineConfiguration& from,
                                     std::int32_t codePointer);

/// The bits of a set that `from` has by a name that is another bit for `to`, or none.
std::int32_t BitsLostIn(const EngineConfiguration& to, const EngineConfiguration& from, BitSet set);

/// The number that a string of one engine has for another one: of the same key or, where one of them knows no keys, of
/// the same text by default; absent when the other engine does not have it.
std::optional<std::int32_t> StringIn(const EngineConfiguration& to, const PatchSet& toDefaults,
                                     const EngineConfiguration& from, const PatchSet& fromDefaults,
                                     std::int32_t number);

} // namespace plinket3
