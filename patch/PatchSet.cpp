#include "patch/PatchSet.h"

#include "core/Text.h"

namespace plinket3 {

std::string PatchSet::SoundName(std::int32_t sound) const {
    if (sound < 0 || static_cast<std::size_t>(sound) >= sounds.size())
        return {};
    const auto& stored = sounds[static_cast<std::size_t>(sound)].name;
    std::string name(stored.begin(), stored.end());
    std::replace(name.begin(), name.end(), '\0', ' ');
    return std::string(Trim(name));
}

std::string_view PatchSet::SpriteName(std::int32_t sprite) const {
    if (sprite < 0 || static_cast<std::size_t>(sprite) >= sprites.size())
        return {};
    const auto& stored = sprites[static_cast<std::size_t>(sprite)].name;
    return {stored.data(), stored.size()};
}

} // namespace plinket3
