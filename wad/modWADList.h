#pragma once

#include "wad/clsWad.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// Where a lump was found.
struct LumpResult {
    std::shared_ptr<clsWad> wad;
    int num = 0;      // the lump's index in that WAD
    int wadIndex = 0; // the WAD's place in the list, 0 for the IWAD
    std::string name; // as asked for; of a sprite, the lump's own name
};

/// The WADs of a session in the order in which they were registered: the IWAD, then the data WAD. Searched from the
/// last one back, so that a data WAD's lump replaces the IWAD's.
class WadList {
public:
    /// False when `wad` is null or a WAD of the same path (upper and lower case alike) is registered already.
    [[nodiscard]] bool RegisterWad(std::shared_ptr<clsWad> wad);
    std::optional<LumpResult> FindLump(std::string_view name) const;
    /// `sprite` has 4 characters, `frame` 2: frame letter and rotation digit.
    std::optional<LumpResult> FindSprite(std::string_view sprite, std::string_view frame) const;
    /// How many lumps each sprite has, by the 4 characters that their names begin with; one that a later WAD replaces
    /// counts once.
    std::map<std::string, int, std::less<>> SpriteLumps() const;
    void ClearWads() { wads_.clear(); }
    std::size_t Count() const { return wads_.size(); }

private:
    std::vector<std::shared_ptr<clsWad>> wads_;
};

/// Whether there is a picture of a sprite's frame, which counts from 0 ("A"), without the full-bright bit.
bool HasSpriteFrame(const WadList& wads, std::string_view sprite, int frame);

/// The lump that a preview of a sprite's frame shows. `frame` counts from 0 ("A"), without the full-bright bit.
/// Kept: of a frame that has both a lump for rotation 0 and one for rotation 1, the first is taken when they are in
/// different WADs, and none when they are in the same one. docs/kept-behaviour.md
std::optional<LumpResult> ChooseSpriteFrame(const WadList& wads, std::string_view sprite, int frame);

} // namespace plinket3
