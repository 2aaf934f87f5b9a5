#include "patch/LumpNames.h"

#include "patch/Cells.h"
#include "patch/EngineNames.h"

#include <algorithm>
#include <optional>

namespace plinket3 {

namespace {

constexpr std::size_t spriteLength = 4, longestName = 6;

/// What stands in names of lumps.
bool IsLumpCharacter(char character) {
    constexpr std::string_view signs = "[]-_\\";
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || signs.find(character) != std::string_view::npos;
}

} // namespace

std::string NameInTexts(const PatchSet& defaults, RecordKind kind, std::int32_t number) {
    std::string name = std::get<std::string>(ReadCell(defaults, {kind, number, lumpNameField}));
    // A name that several have renames the sprite, else the sound.
    const auto sprite = IndexByName(defaults.sprites, name), sound = IndexByName(defaults.sounds, name);
    const std::optional<std::int32_t> renamed = kind == RecordKind::Sprite  ? sprite
                                                : sprite.has_value()        ? std::nullopt
                                                : kind == RecordKind::Sound ? sound
                                                : sound.has_value()         ? std::nullopt
                                                                            : IndexByName(defaults.music, name);
    return renamed == number ? name : std::string();
}

bool CanRenameLump(const Dialect& dialect, const PatchSet& defaults, RecordKind kind, std::int32_t number) {
    return CanRenameLumps(dialect) && (dialect.unlimited || !NameInTexts(defaults, kind, number).empty());
}

Status MayBeLumpName(RecordKind kind, std::string_view name) {
    if (const auto other = std::ranges::find_if_not(name, IsLumpCharacter); other != name.end())
        return Status::Failure("Names of lumps have letters, digits and [ ] - _ \\ only.");
    if (kind == RecordKind::Sprite && name.size() != spriteLength)
        return Status::Failure("The name of a sprite has 4 characters.");
    if (kind != RecordKind::Sprite && (name.empty() || name.size() > longestName))
        return Status::Failure(std::string("The name of ") + (kind == RecordKind::Music ? "music" : "a sound") +
                               " has 1 to 6 characters.");
    return {};
}

} // namespace plinket3
