#include "patch/PatchSet.h"

#include "core/Text.h"

#include <array>
#include <span>

namespace plinket3 {

namespace {

constexpr std::array<std::string_view, 67> musicNames{
    "e1m1",   "e1m2",   "e1m3",   "e1m4",   "e1m5",   "e1m6",   "e1m7",   "e1m8",   "e1m9",   "e2m1",
    "e2m2",   "e2m3",   "e2m4",   "e2m5",   "e2m6",   "e2m7",   "e2m8",   "e2m9",   "e3m1",   "e3m2",
    "e3m3",   "e3m4",   "e3m5",   "e3m6",   "e3m7",   "e3m8",   "e3m9",   "inter",  "intro",  "bunny",
    "victor", "introa", "runnin", "stalks", "countd", "betwee", "doom",   "the_da", "shawn",  "ddtblu",
    "in_cit", "dead",   "stlks2", "theda2", "doom2",  "ddtbl2", "runni2", "dead2",  "stlks3", "romero",
    "shawn2", "messag", "count2", "ddtbl3", "ampie",  "theda3", "adrian", "messg2", "romer2", "tense",
    "shawn3", "openin", "evil",   "ultima", "read_m", "dm2ttl", "dm2int"};

NumberedList<MusicRecord> MusicOf(std::span<const std::string_view> names) {
    NumberedList<MusicRecord> music;
    for (std::size_t i = 0; i < names.size(); ++i)
        PutLumpName(music.Add(static_cast<std::int32_t>(i) + 1).name, names[i]);
    return music;
}

} // namespace

NumberedList<MusicRecord> EngineMusic() {
    static const NumberedList<MusicRecord> music = MusicOf(musicNames);
    return music;
}

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
