#include "patch/modTableDef.h"

#include "core/Text.h"

#include <algorithm>

namespace plinket3 {

void DeriveMisc(MiscRecord& misc) {
    for (const Field<MiscRecord>& field : fieldsOf<MiscRecord>)
        if (field.secondCopy != nullptr)
            misc.*field.secondCopy = misc.*field.member;
    misc.spare2 = misc.spare1 == misc.bfgCells ? 255 : 0;
}

std::string PatchSet::SoundName(std::int32_t sound) const {
    if (sound < 0 || static_cast<std::size_t>(sound) >= soundNames.size())
        return {};
    const auto& stored = soundNames[static_cast<std::size_t>(sound)];
    std::string name(stored.begin(), stored.end());
    std::replace(name.begin(), name.end(), '\0', ' ');
    return std::string(Trim(name));
}

std::string_view PatchSet::SpriteName(std::int32_t sprite) const {
    if (sprite < 0 || static_cast<std::size_t>(sprite) >= spriteNames.size())
        return {};
    const auto& stored = spriteNames[static_cast<std::size_t>(sprite)];
    return {stored.data(), stored.size()};
}

} // namespace plinket3
