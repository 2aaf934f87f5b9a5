#include "ui/Audio.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

namespace plinket3 {
namespace {

using test::ReadFile;
using test::WriteFile;

/// A sound lump of that rate.
std::string Sound(int rate, std::string_view samples) {
    std::string lump("\x03\0\0\0\0\0\0\0", 8);
    lump[2] = static_cast<char>(rate & 0xff);
    lump[3] = static_cast<char>(rate >> 8 & 0xff);
    return lump + std::string(samples);
}

class AudioTest : public ::testing::Test {
protected:
    AudioTest() {
        setenv("SDL_AUDIODRIVER", "disk", 1);
        setenv("SDL_DISKAUDIOFILE", (folder / "played.raw").c_str(), 1);
        setenv("SDL_DISKAUDIODELAY", "1", 1);
        EXPECT_TRUE(log.StartLog(folder / "log.txt", false));
        PatchSet& set = session.patch.current;
        set.sounds.resize(4);
        set.sounds[1].name = {'b', 'e', 'e', 'p', 0, 0};
        set.sounds[2].name = {'b', 'o', 'o', 'm', ' ', ' '};
        set.sounds[3].name = {'n', 'o', 'n', 'e'};
    }

    void AddWad(const std::vector<std::pair<std::string, std::string>>& lumps) {
        std::string bytes = "PWAD", directory;
        const auto number = [](std::string& text, std::size_t value) {
            for (int shift = 0; shift < 32; shift += 8)
                text += static_cast<char>(value >> shift & 0xff);
        };
        std::string data;
        for (const auto& [name, lump] : lumps) {
            number(directory, 12 + data.size());
            number(directory, lump.size());
            std::string padded = name;
            padded.resize(8);
            directory += padded;
            data += lump;
        }
        number(bytes, lumps.size());
        number(bytes, 12 + data.size());
        const std::filesystem::path file = folder / ("test" + std::to_string(session.wads.Count()) + ".wad");
        WriteFile(file, bytes + data + directory);
        auto wad = std::make_shared<clsWad>();
        wad->OpenWad(file);
        ASSERT_TRUE(session.wads.RegisterWad(wad));
    }

    std::string Log() const { return ReadFile(folder / "log.txt"); }
    /// Gives the device the time to take what is queued, then closes it.
    std::string Played() {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        audio.Stop();
        return ReadFile(folder / "played.raw");
    }

    test::TemporaryFolder folder;
    clsLog log;
    Session session;
    Audio audio;
};

TEST_F(AudioTest, PlaysTheLumpsSamplesAtItsRate) {
    const std::string samples = "\x10\x90\x30\xb0 these are the samples \xff\x01";
    AddWad({{"DSBEEP", Sound(11025, samples)}});
    ASSERT_TRUE(audio.Start());
    audio.PlaySoundLump(session, log, 1);
    EXPECT_NE(Played().find(samples), std::string::npos);
    EXPECT_NE(Log().find("Playing sound lump 0 (DSBEEP) 11025 Hz, " + std::to_string(samples.size()) + " bytes"),
              std::string::npos);
}

TEST_F(AudioTest, ASecondSoundCutsOffTheFirst) {
    AddWad({{"DSBEEP", Sound(8000, std::string(400000, 'a'))}, {"DSBOOM", Sound(8000, "the second one")}});
    ASSERT_TRUE(audio.Start());
    audio.PlaySoundLump(session, log, 1);
    audio.PlaySoundLump(session, log, 2);
    const std::string played = Played();
    EXPECT_NE(played.find("the second one"), std::string::npos);
    EXPECT_LT(std::count(played.begin(), played.end(), 'a'), 400000);
}

TEST_F(AudioTest, ADataWadsSoundReplacesTheIwads) {
    AddWad({{"DSBEEP", Sound(11025, "of the first WAD")}});
    AddWad({{"DSBEEP", Sound(22050, "of the second WAD")}});
    ASSERT_TRUE(audio.Start());
    audio.PlaySoundLump(session, log, 1);
    EXPECT_NE(Played().find("of the second WAD"), std::string::npos);
    EXPECT_NE(Log().find("22050 Hz"), std::string::npos);
}

TEST_F(AudioTest, SilentSoundsDoNothing) {
    AddWad({{"DSBEEP", Sound(11025, "x")}, {"DS", Sound(11025, "x")}});
    ASSERT_TRUE(audio.Start());
    session.patch.current.sounds[1].zero1 = 36;
    for (const int sound : {-1, 0, 1, 3, 4})
        audio.PlaySoundLump(session, log, sound);
    EXPECT_EQ(Log().find("Playing"), std::string::npos);
    EXPECT_EQ(Log().find("Could not"), std::string::npos);
}

TEST_F(AudioTest, ImpossibleSoundsAreLogged) {
    AddWad({{"DSBEEP", Sound(40000, "x")}, {"DSBOOM", Sound(11025, "")}});
    ASSERT_TRUE(audio.Start());
    audio.PlaySoundLump(session, log, 1); // read as a signed number, the rate is below 0
    audio.PlaySoundLump(session, log, 2);
    EXPECT_NE(Log().find("Could not create sample. BASS error code 0: the sample rate is -25536"), std::string::npos);
    EXPECT_NE(Log().find("Could not create sample. BASS error code 0: the sound has no samples"), std::string::npos);
}

TEST_F(AudioTest, AMissingDeviceIsLogged) {
    setenv("SDL_DISKAUDIOFILE", "/nowhere/played.raw", 1);
    AddWad({{"DSBEEP", Sound(11025, "x")}});
    ASSERT_TRUE(audio.Start());
    audio.PlaySoundLump(session, log, 1);
    EXPECT_NE(Log().find("Could not create sample. BASS error code 0: "), std::string::npos);
}

} // namespace
} // namespace plinket3
