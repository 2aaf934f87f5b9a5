#include "patch/PatchSet.h"

#include "core/Text.h"

namespace plinket3 {

std::string PatchSet::SoundName(std::int32_t sound) const {
    const SoundRecord* record = sounds.Find(sound);
    if (record == nullptr)
        return {};
    std::string name(record->name.begin(), record->name.end());
    std::replace(name.begin(), name.end(), '\0', ' ');
    return std::string(Trim(name));
}

std::string_view PatchSet::SpriteName(std::int32_t sprite) const {
    const SpriteRecord* record = sprites.Find(sprite);
    return record == nullptr ? std::string_view() : std::string_view(record->name.data(), record->name.size());
}

std::string_view PatchSet::TextOf(RecordKind kind, std::int32_t number, int textField) const {
    const auto found = texts.find({kind, number, textField});
    return found == texts.end() ? std::string_view() : std::string_view(found->second);
}

} // namespace plinket3
