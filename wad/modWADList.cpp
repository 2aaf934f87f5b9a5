#include "wad/modWADList.h"

#include "core/Paths.h"
#include "core/Text.h"

#include <algorithm>
#include <set>
#include <utility>

namespace plinket3 {

namespace {

/// The result of the last WAD of `wads` in which `search` (from a clsWad to a lump index) finds something.
template <class Search>
std::optional<LumpResult> FindBackwards(const std::vector<std::shared_ptr<clsWad>>& wads, Search search) {
    for (std::size_t i = wads.size(); i-- > 0;)
        if (const int lump = search(*wads[i]); lump != -1)
            return LumpResult{wads[i], lump, static_cast<int>(i), {}};
    return std::nullopt;
}

} // namespace

bool WadList::RegisterWad(std::shared_ptr<clsWad> wad) {
    if (!wad)
        return false;
    const bool known = std::any_of(wads_.begin(), wads_.end(), [&](const std::shared_ptr<clsWad>& other) {
        return EqualIgnoringCase(PathText(other->WadFileName()), PathText(wad->WadFileName()));
    });
    if (!known)
        wads_.push_back(std::move(wad));
    return !known;
}

std::optional<LumpResult> WadList::FindLump(std::string_view name) const {
    auto result = FindBackwards(wads_, [&](const clsWad& wad) { return wad.NumForName(name); });
    if (result)
        result->name = name;
    return result;
}

std::optional<LumpResult> WadList::FindSprite(std::string_view sprite, std::string_view frame) const {
    auto result = FindBackwards(wads_, [&](const clsWad& wad) { return wad.NumForSprite(sprite, frame); });
    if (result)
        result->name = result->wad->lumpName(result->num);
    return result;
}

std::map<std::string, int, std::less<>> WadList::SpriteLumps() const {
    constexpr std::size_t spriteLength = 4;
    std::set<std::string> names;
    for (const std::shared_ptr<clsWad>& wad : wads_)
        for (std::string& name : wad->SpriteLumpNames())
            names.insert(std::move(name));
    std::map<std::string, int, std::less<>> counts;
    for (const std::string& name : names)
        ++counts[name.substr(0, spriteLength)];
    return counts;
}

} // namespace plinket3
