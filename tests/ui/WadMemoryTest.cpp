#include "tests/ui/UiTest.h"
#include "tests/wad/WadBytes.h"
#include "ui/Audio.h"
#include "ui/editors/frmEditThings.h"
#include "ui/fields/SpriteView.h"

#include <sys/resource.h>

namespace plinket3::test {
namespace {

TEST_F(EditorTest, LumpsOfGigabytesCostNoMemory) {
    TemporaryFolder folder;
    constexpr std::int32_t size = 2'000'000'000;
    constexpr std::int32_t begin = 12 + 5 * 16, sound = begin + 100;
    std::string bytes = WadHeader("PWAD", 5, 12) + WadEntry(begin, size, "PLAYPAL") +
                        WadEntry(sound, size, "DSPISTOL") + WadEntry(0, 0, "S_START") +
                        WadEntry(begin, size, "TROOA1") + WadEntry(0, 0, "S_END");
    const std::filesystem::path file = folder / "huge.wad";
    bytes += PictureBytes(4, 3, {24, 24, 24, 24}, std::string("\0\3\0abc\0\xff", 8));
    bytes.resize(sound);
    WriteFile(file, bytes + std::string("\3\0\x11\x2b\4\0\0\0", 8));
    std::filesystem::resize_file(file, std::uintmax_t{sound} + size); // no room on disk either
    LoadEngine("doom19");
    auto wad = std::make_shared<clsWad>();
    wad->OpenWad(file);
    program.wads.ClearWads();
    ASSERT_TRUE(program.wads.RegisterWad(wad));
    qputenv("SDL_AUDIODRIVER", "dummy");
    Audio audio;
    ASSERT_TRUE(audio.Start());
    auto& things = Open<frmEditThings>();
    things.ShowCell({RecordKind::Thing, 11, existsField});
    EXPECT_FALSE(things.findChild<SpriteView*>("picThing")->Picture().isNull());
    audio.PlaySoundLump(program, program.log, 1);
    audio.Stop();
    rusage used{};
    ASSERT_EQ(getrusage(RUSAGE_SELF, &used), 0);
    EXPECT_LT(used.ru_maxrss / 1024, 500) << "MiB at most";
}

} // namespace
} // namespace plinket3::test
