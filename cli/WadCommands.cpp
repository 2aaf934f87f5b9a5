#include "cli/Command.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "wad/clsBitmap.h"

#include <array>
#include <memory>
#include <optional>

namespace plinket3::cli {

namespace {

constexpr char firstFrameLetter = 'A';

std::shared_ptr<clsWad> OpenWad(const std::string& file) {
    auto wad = std::make_shared<clsWad>();
    wad->OpenWad(PathOf(file));
    if (wad->WadFileName().empty())
        throw Refused(file + ": is not a WAD file that can be read");
    return wad;
}

int NotFound(Run& run, std::string_view what) {
    Complain(run.err, std::string(what) + ": there is no such lump");
    return no;
}

int Directory(Run& run, const clsWad& wad) {
    for (int lump = 0; lump < wad.LumpCount(); ++lump)
        run.out << lump << '\t' << Printable(wad.lumpName(lump)) << '\t' << wad.LumpOffset(lump) << '\t'
                << wad.LumpSize(lump) << '\n';
    return done;
}

/// A frame as a number from 0 or as the letter that stands in a lump's name.
int FrameNumber(const std::string& frame) {
    if (frame.size() == 1 && frame[0] >= firstFrameLetter)
        return frame[0] - firstFrameLetter;
    if (frame.empty() || frame.find_first_not_of("0123456789") != std::string::npos)
        throw Refused(frame + ": a frame is a number from 0 or a letter");
    return LeadingInt32(frame);
}

int Sprite(Run& run) {
    const WadList wads = OpenWads(run.arguments.files);
    const auto found = ChooseSpriteFrame(wads, run.arguments.sprite[0], FrameNumber(run.arguments.sprite[1]));
    if (!found)
        return no;
    run.out << found->wadIndex << '\t' << found->num << '\t' << Printable(found->name) << '\n';
    return done;
}

int Wad(Run& run) {
    if (!run.arguments.sprite.empty())
        return Sprite(run);
    const std::vector<std::string>& files = run.arguments.files;
    const std::shared_ptr<clsWad> wad = OpenWad(files[0]);
    if (files.size() == 1)
        return Directory(run, *wad);
    const int lump = wad->NumForName(files[1]);
    if (lump < 0)
        return NotFound(run, files[1]);
    run.out << wad->ReadLumpString(lump);
    return done;
}

std::string PixelMap(const clsBitmap& bitmap) {
    std::string text = "P6\n" + std::to_string(bitmap.Width()) + " " + std::to_string(bitmap.Height()) + "\n255\n";
    for (int y = 0; y < bitmap.Height(); ++y) {
        for (int x = 0; x < bitmap.Width(); ++x) {
            const Colour colour = bitmap.Palette()[bitmap.Pixel(x, y)];
            text += static_cast<char>(colour.red);
            text += static_cast<char>(colour.green);
            text += static_cast<char>(colour.blue);
        }
    }
    return text;
}

int Picture(Run& run) {
    const std::vector<std::string>& files = run.arguments.files;
    const WadList wads = OpenWads(std::span(files).subspan(1, files.size() - 2));
    const auto lump = wads.FindLump(files[0]);
    if (!lump)
        return NotFound(run, files[0]);
    const auto palette = wads.FindLump("PLAYPAL");
    if (!palette)
        return NotFound(run, "PLAYPAL");
    clsBitmap bitmap;
    if (!DecodePicture(lump->wad->ReadLumpString(lump->num, longestPictureLump),
                       palette->wad->ReadLumpString(palette->num, clsBitmap::paletteSize), bitmap))
        throw Refused(files[0] + ": is not a picture");
    WriteOutput(files.back(), PixelMap(bitmap));
    return done;
}

constexpr std::array wadCommands{
    Command{"wad", "FILE [LUMP] | --sprite NAME FRAME IWAD [DATAWAD]",
            "Print a WAD's directory, a lump's bytes, or the lump that shows a sprite's frame", "sprite", 1, 2, Wad},
    Command{"picture", "LUMP IWAD [DATAWAD] OUT.ppm", "Draw a picture through the palette", "", 3, 4, Picture},
};

} // namespace

WadList OpenWads(std::span<const std::string> files) {
    WadList wads;
    for (const std::string& file : files)
        if (!wads.RegisterWad(OpenWad(file)))
            throw Refused(file + ": is given twice");
    return wads;
}

std::span<const Command> WadCommands() { return wadCommands; }

} // namespace plinket3::cli
