#include "wad/clsWad.h"

#include "core/Bytes.h"
#include "core/Text.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::size_t headerSize = 12;
constexpr std::size_t nameLength = 8;
constexpr std::uint64_t sevenBits = 0x7F7F'7F7F'7F7F'7F7F;

/// Up to eight characters as one number, padded with blanks; the first is the lowest byte.
constexpr std::uint64_t PackName(std::string_view name) {
    std::uint64_t packed = 0;
    for (std::size_t i = nameLength; i-- > 0;)
        packed = packed << 8 | static_cast<unsigned char>(i < name.size() ? name[i] : ' ');
    return packed;
}

/// Makes every NUL a blank and moves leading blanks to the end, all eight characters at once: a WAD has thousands of
/// names, and all of them are made ready while it is opened.
std::uint64_t NormalName(std::uint64_t name) {
    // In each byte the highest bit tells whether the byte is 0; two places lower it is a blank.
    const std::uint64_t zeros = ~(((name & sevenBits) + sevenBits) | name | sevenBits);
    name |= zeros >> 2;
    for (std::size_t moved = 0; moved < nameLength && (name & 0xFF) == ' '; ++moved)
        name = name >> 8 | std::uint64_t{' '} << 56;
    return name;
}

} // namespace

void clsWad::OpenWad(std::filesystem::path FileName) {
    std::error_code ignored;
    const std::filesystem::file_type type = std::filesystem::status(FileName, ignored).type();
    if (type == std::filesystem::file_type::not_found)
        return;
    CloseWad();
    if (type != std::filesystem::file_type::regular) // opening a pipe would wait for its writer
        return;
    if (!file_.Open(FileName))
        return;

    // What a short header lacks reads as 0: such a WAD has no lumps.
    std::array<char, headerSize> header{};
    file_.ReadAt(0, header.data(), header.size());
    const std::string_view identification(header.data(), identification_.size());
    if (identification != "IWAD" && identification != "PWAD") {
        CloseWad();
        return;
    }
    std::copy(identification.begin(), identification.end(), identification_.begin());
    fileName_ = std::move(FileName);

    ByteReader counts({header.data(), header.size()}, identification.size());
    const std::int64_t count = counts.Int32();
    const std::int64_t offset = counts.Int32();
    static_assert(sizeof(Entry) == 16 && std::endian::native == std::endian::little, "entries are read in place");
    const std::int64_t room = offset < 0 ? 0 : (WadSize() - offset) / static_cast<std::int64_t>(sizeof(Entry));
    const std::int64_t taken = std::max<std::int64_t>(0, std::min({count, room, std::int64_t{largestDirectory}}));
    directory_.resize(static_cast<std::size_t>(taken));
    directory_.resize(
        file_.ReadAt(static_cast<std::uint64_t>(offset), directory_.data(), directory_.size() * sizeof(Entry)) /
        sizeof(Entry));
    for (Entry& entry : directory_)
        entry.name = NormalName(entry.name);
    CreateSpriteIndex();
}

std::vector<std::uint8_t> clsWad::ReadLump(int lump, std::int64_t most) const {
    auto bytes = ReadEntry<std::vector<std::uint8_t>>(lump, most, 1);
    if (const Entry* entry = Find(lump);
        entry != nullptr && std::cmp_equal(bytes.size(), entry->size) && entry->size < most)
        bytes.push_back(0);
    return bytes;
}

std::string clsWad::ReadLumpString(int lump, std::int64_t most) const { return ReadEntry<std::string>(lump, most, 0); }

int clsWad::WadType() const { return identification_[0] == 'I' ? 0 : 1; }

void clsWad::WadType(int type) {
    if (type == 0 || type == 1)
        identification_[0] = type == 0 ? 'I' : 'P';
}

std::string clsWad::WadLumps() const { return std::to_string(LumpCount() - 1); }

std::string clsWad::lumpName(int lump) const {
    const Entry* entry = Find(lump);
    if (entry == nullptr)
        return {};
    std::string text;
    for (std::uint64_t rest = entry->name; rest != 0; rest >>= 8)
        text += static_cast<char>(rest & 0xFF);
    return std::string(Trim(text));
}

std::int32_t clsWad::LumpSize(int lump) const {
    const Entry* entry = Find(lump);
    return entry == nullptr ? 0 : entry->size;
}

std::int32_t clsWad::LumpOffset(int lump) const {
    const Entry* entry = Find(lump);
    return entry == nullptr ? 0 : entry->offset;
}

std::int64_t clsWad::WadSize() const { return static_cast<std::int64_t>(file_.Size()); }

int clsWad::NumForName(std::string_view name) const {
    const std::string key = ToUpper(Trim(name));
    if (key.size() > nameLength)
        return -1;
    const auto found = std::find_if(directory_.begin(), directory_.end(),
                                    [packed = PackName(key)](const Entry& entry) { return entry.name == packed; });
    return found == directory_.end() ? -1 : static_cast<int>(found - directory_.begin());
}

int clsWad::NumForSprite(std::string_view sprite, std::string_view frame) const {
    if (sprite.size() != 4 || frame.size() != 2)
        return -1;
    const auto name = static_cast<std::uint32_t>(PackName(sprite));
    const auto pair = static_cast<std::uint16_t>(PackName(frame));
    const auto found = std::find_if(spriteIndex_.begin(), spriteIndex_.end(), [&](int lump) {
        const std::uint64_t packed = directory_[static_cast<std::size_t>(lump)].name;
        return static_cast<std::uint32_t>(packed) == name &&
               (static_cast<std::uint16_t>(packed >> 32) == pair || static_cast<std::uint16_t>(packed >> 48) == pair);
    });
    return found == spriteIndex_.end() ? -1 : *found;
}

std::vector<std::string> clsWad::SpriteLumpNames() const {
    std::vector<std::string> names;
    names.reserve(spriteIndex_.size());
    for (const int lump : spriteIndex_)
        names.push_back(lumpName(lump));
    return names;
}

void clsWad::CreateSpriteIndex() {
    constexpr std::uint64_t starts[]{PackName("S_START"), PackName("SS_START")};
    constexpr std::uint64_t ends[]{PackName("S_END"), PackName("SS_END")};
    spriteIndex_.clear();
    bool inside = false;
    for (int lump = 0; lump < LumpCount(); ++lump) {
        const std::uint64_t name = directory_[static_cast<std::size_t>(lump)].name;
        if (name == starts[0] || name == starts[1])
            inside = true;
        else if (name == ends[0] || name == ends[1])
            return;
        else if (inside)
            spriteIndex_.push_back(lump);
    }
}

void clsWad::CloseWad() { *this = clsWad(); }

const clsWad::Entry* clsWad::Find(int lump) const {
    return lump < 0 || lump >= LumpCount() ? nullptr : &directory_[static_cast<std::size_t>(lump)];
}

template <class Bytes> Bytes clsWad::ReadEntry(int lump, std::int64_t most, int more) const {
    const Entry* entry = Find(lump);
    if (entry == nullptr || entry->offset < 0 || entry->size < 0)
        return {};
    const std::int64_t wanted = std::min<std::int64_t>(std::int64_t{entry->size} + more, most);
    Bytes bytes(static_cast<std::size_t>(std::clamp<std::int64_t>(WadSize() - entry->offset, 0, wanted)), 0);
    bytes.resize(file_.ReadAt(static_cast<std::uint64_t>(entry->offset), bytes.data(), bytes.size()));
    return bytes;
}

} // namespace plinket3
