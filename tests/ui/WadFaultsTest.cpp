#include "tests/ui/UiTest.h"
#include "tests/wad/WadBytes.h"
#include "ui/Audio.h"
#include "ui/editors/frmEditStates.h"
#include "ui/editors/frmEditThings.h"
#include "ui/fields/SpriteView.h"
#include "ui/states/StatePlayer.h"

#include <QTableView>
#include <QToolButton>

namespace plinket3::test {
namespace {

constexpr int player = 0, imp = 11, pistolSound = 1;
constexpr int walking = 450;

/// A sound, and a picture of four columns for each frame of the imp.
std::string ImpWad() {
    const std::string post("\0\3\0abc\0\xff", 8);
    std::vector<Lump> lumps{{"PLAYPAL", std::string(768, '\x40')},
                            {"DSPISTOL", std::string("\3\0\x11\x2b\4\0\0\0", 8) + std::string(400, 'x')},
                            {"S_START", ""}};
    for (const char frame : std::string_view("ABCDEFGH"))
        lumps.push_back({std::string("TROO") + frame + '1', PictureBytes(4, 3, {24, 24, 24, 24}, post)});
    lumps.push_back({"S_END", ""});
    return WadBytes(lumps);
}

struct Fault {
    const char* name;
    void (*happens)(const std::filesystem::path& wad);
    bool stillShown; // the program holds the file that it opened
};

void Overwrite(const std::filesystem::path& wad, char byte) {
    WriteFile(wad, std::string(std::filesystem::file_size(wad), byte));
}

class WadFault : public EditorTest, public ::testing::WithParamInterface<Fault> {
protected:
    /// Shows the imp and plays its states and a sound, from before the fault to behind it.
    void RunThrough(bool asDataWad) {
        const std::filesystem::path file = folder / "imp.wad";
        WriteFile(file, ImpWad());
        LoadEngine("doom19");
        if (!asDataWad)
            program.wads.ClearWads();
        auto wad = std::make_shared<clsWad>();
        wad->OpenWad(file);
        ASSERT_TRUE(program.wads.RegisterWad(wad));
        const std::filesystem::path log = folder / "log.txt";
        ASSERT_TRUE(program.log.StartLog(log, false));
        qputenv("SDL_AUDIODRIVER", "dummy");
        Audio audio;
        ASSERT_TRUE(audio.Start());

        auto& things = Open<frmEditThings>();
        auto& states = Open<frmEditStates>();
        const auto pictureOfImp = [&things] {
            things.ShowCell({RecordKind::Thing, player, existsField});
            things.ShowCell({RecordKind::Thing, imp, existsField});
            return !things.findChild<SpriteView*>("picThing")->Picture().isNull();
        };
        EXPECT_TRUE(pictureOfImp());
        ClickRow(Find<QTableView>(states, "lvwStates"), walking);
        auto& animation = *states.findChild<StatePlayer*>();
        QTest::mouseClick(&Find<QToolButton>(states, "cmdPlay"), Qt::LeftButton);
        ASSERT_TRUE(animation.IsPlaying());

        GetParam().happens(file);
        for (int tic = 0; tic < StatePlayer::ticsPerSecond; ++tic)
            animation.Advance();
        EXPECT_EQ(pictureOfImp(), GetParam().stillShown);
        EXPECT_EQ(!states.findChild<SpriteView*>("picSprite")->Picture().isNull(), GetParam().stillShown);
        things.grab();
        states.grab();
        audio.PlaySoundLump(program, program.log, pistolSound);
        EXPECT_EQ(ReadFile(log).find("Playing sound lump") != std::string::npos, GetParam().stillShown);
        audio.Stop();
    }

    TemporaryFolder folder;
};

TEST_P(WadFault, OfTheIwadIsSurvived) { RunThrough(false); }
TEST_P(WadFault, OfTheDataWadIsSurvived) { RunThrough(true); }

INSTANTIATE_TEST_SUITE_P(
    WhileTheProgramRuns, WadFault,
    ::testing::Values(Fault{"Emptied", [](const auto& wad) { std::filesystem::resize_file(wad, 0); }, false},
                      Fault{"Shortened", [](const auto& wad) { std::filesystem::resize_file(wad, 800); }, false},
                      Fault{"OverwrittenWithZeros", [](const auto& wad) { Overwrite(wad, '\0'); }, false},
                      Fault{"OverwrittenWithOnes", [](const auto& wad) { Overwrite(wad, '\xff'); }, false},
                      Fault{"Removed", [](const auto& wad) { std::filesystem::remove(wad); }, true},
                      Fault{"Replaced",
                            [](const auto& wad) {
                                WriteFile(wad.parent_path() / "other.wad", "PWAD");
                                std::filesystem::rename(wad.parent_path() / "other.wad", wad);
                            },
                            true}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace plinket3::test
