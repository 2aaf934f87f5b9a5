#include "patch/LumpNames.h"

#include "patch/EngineNames.h"

#include <algorithm>

namespace plinket3 {

namespace {

constexpr std::size_t spriteLength = 4, longestSound = 6;

/// What stands in names of lumps.
bool IsLumpCharacter(char character) {
    constexpr std::string_view signs = "[]-_\\";
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || signs.find(character) != std::string_view::npos;
}

} // namespace

std::string NameInTexts(const PatchSet& defaults, RecordKind kind, std::int32_t number) {
    if (kind == RecordKind::Sprite) {
        const std::string name(defaults.SpriteName(number));
        return IndexByName(defaults.sprites, name) == number ? name : std::string();
    }
    // What is the name of a sprite, too, renames that.
    std::string name = defaults.SoundName(number);
    return IndexByName(defaults.sounds, name) == number && !IndexByName(defaults.sprites, name) ? name : std::string();
}

bool CanRenameLump(const Dialect& dialect, const PatchSet& defaults, RecordKind kind, std::int32_t number) {
    return CanRenameLumps(dialect) && (dialect.unlimited || !NameInTexts(defaults, kind, number).empty());
}

Status MayBeLumpName(RecordKind kind, std::string_view name) {
    if (const auto other = std::ranges::find_if_not(name, IsLumpCharacter); other != name.end())
        return Status::Failure("Names of lumps have letters, digits and [ ] - _ \\ only.");
    if (kind == RecordKind::Sprite && name.size() != spriteLength)
        return Status::Failure("The name of a sprite has 4 characters.");
    if (kind == RecordKind::Sound && (name.empty() || name.size() > longestSound))
        return Status::Failure("The name of a sound has 1 to 6 characters.");
    return {};
}

} // namespace plinket3
