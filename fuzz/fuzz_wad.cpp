#include "core/Text.h"
#include "wad/GameColours.h"
#include "wad/PngLump.h"
#include "wad/SoundLump.h"
#include "wad/clsBitmap.h"
#include "wad/modWADList.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

using namespace plinket3;

namespace {

/// The input as a file that never touches the disk.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : handle_(memfd_create("input.wad", MFD_CLOEXEC)) {
        if (handle_ < 0 || write(handle_, data, size) != static_cast<ssize_t>(size))
            std::abort();
    }
    ~MemoryFile() { close(handle_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    std::string Path() const { return "/proc/self/fd/" + std::to_string(handle_); }

private:
    int handle_;
};

void Check(bool holds) {
    if (!holds)
        std::abort();
}

/// Blanks in `sprite` may be those that a shorter name is padded with.
bool StartsWith(const std::string& name, const std::string& sprite) {
    return (name + std::string(sprite.size(), ' ')).starts_with(sprite);
}

void ReadOneLump(const clsWad& wad, int lump, std::size_t fileSize) {
    const std::string text = wad.ReadLumpString(lump);
    const std::vector<std::uint8_t> bytes = wad.ReadLump(lump);
    Check(text.size() <= fileSize && bytes.size() <= fileSize + 1 && text.size() <= bytes.size());

    const SoundLump sound = ReadSoundLump(bytes);
    Check(sound.samples.size() <= bytes.size());

    clsBitmap bitmap;
    if (DecodePicture(text, text, bitmap))
        bitmap.renderDoomImage(text, -bitmap.Width() / 2, -bitmap.Height() / 2);
    if (bitmap.Create(16, 16, 0))
        bitmap.renderDoomImage(text, -1, 1);

    if (auto picture = ReadGamePicture(text)) {
        MapColours(*picture, LightColours(text, static_cast<int>(text.size()), Nearness::Thing));
        GamePicture screen{4, 4, 0, 0, std::vector<std::uint8_t>(16), std::vector<bool>(16)};
        DrawOver(screen, *picture, -picture->left, -picture->top, 3);
        DrawOver(screen, Mirrored(*picture), 2 - picture->width, -1, 4);
    }
    if (const auto png = ReadPngHead(text))
        Check(IsPng(text) && png->width <= largestPngSide && png->height <= largestPngSide);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file(data, size);
    auto wad = std::make_shared<clsWad>();
    wad->OpenWad(file.Path());
    WadList wads;
    Check(wads.RegisterWad(wad));
    Check(static_cast<std::size_t>(wad->LumpCount()) <= size / 16);

    for (int lump = -1; lump <= wad->LumpCount(); ++lump) {
        ReadOneLump(*wad, lump, size);
        const std::string name = wad->lumpName(lump);
        const int found = wad->NumForName(name);
        Check(found == -1 || wad->lumpName(found) == ToUpper(name));
        if (name.size() >= 6) {
            const std::string sprite = name.substr(0, 4);
            const int frame = wad->NumForSprite(sprite, name.substr(4, 2));
            Check(frame == -1 || StartsWith(wad->lumpName(frame), sprite));
            const auto chosen = ChooseSpriteFrame(wads, sprite, static_cast<unsigned char>(name[4]) - 'A');
            Check(!chosen || StartsWith(chosen->name, sprite));
        }
    }
    return 0;
}
