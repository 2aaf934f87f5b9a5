#include "ui/Audio.h"
#include "tests/support/TestSupport.h"
#include "tests/wad/WadBytes.h"

#include <gtest/gtest.h>

#include <SDL.h>
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

namespace {

SDL_AudioSpec opened{}; // what the last device was opened with

} // namespace

/// Stands before SDL's own function, which it calls: SDL's test device writes samples but tells no rate.
extern "C" SDL_AudioDeviceID SDLCALL SDL_OpenAudioDevice(const char* device, int capture, const SDL_AudioSpec* wanted,
                                                         SDL_AudioSpec* got, int changes) {
    opened = *wanted;
    static const auto real = reinterpret_cast<decltype(&SDL_OpenAudioDevice)>(dlsym(RTLD_NEXT, "SDL_OpenAudioDevice"));
    return real(device, capture, wanted, got, changes);
}

namespace plinket3 {
namespace {

using test::ReadFile;

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
    void Start(const std::vector<test::Lump>& lumps) {
        test::WriteFile(folder / "test.wad", test::WadBytes(lumps));
        auto wad = std::make_shared<clsWad>();
        wad->OpenWad(folder / "test.wad");
        ASSERT_TRUE(session.wads.RegisterWad(wad));
        ASSERT_TRUE(audio.Start());
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
    Start({{"DSBEEP", Sound(22050, "first")}, {"DSBOOM", Sound(8000, samples)}});
    audio.PlaySoundLump(session, log, 1);
    EXPECT_EQ(opened.freq, 22050);
    audio.PlaySoundLump(session, log, 2);
    EXPECT_EQ(std::tuple(opened.freq, opened.format, opened.channels), std::tuple(8000, AUDIO_U8, 1));
    EXPECT_NE(Played().find(samples), std::string::npos);
    EXPECT_TRUE(
        Log().ends_with("Playing sound lump 1 (DSBOOM) 8000 Hz, " + std::to_string(samples.size()) + " bytes\r\n"));
}

TEST_F(AudioTest, ASecondSoundCutsOffTheFirst) {
    Start({{"DSBEEP", Sound(8000, std::string(400000, 'a'))}, {"DSBOOM", Sound(8000, "the second one")}});
    audio.PlaySoundLump(session, log, 1);
    audio.PlaySoundLump(session, log, 2);
    const std::string played = Played();
    EXPECT_NE(played.find("the second one"), std::string::npos);
    EXPECT_LT(std::count(played.begin(), played.end(), 'a'), 400000);
}

TEST_F(AudioTest, WhatCannotBePlayedIsSilentOrLogged) {
    Start({{"DSBEEP", Sound(40000, "x")}, {"DSBOOM", Sound(11025, "")}, {"DS", Sound(11025, "x")}});
    session.patch.current.sounds[1].zero1 = 36; // another one is played instead
    for (const int sound : {-1, 0, 1, 3, 4})
        audio.PlaySoundLump(session, log, sound);
    EXPECT_TRUE(Log().ends_with("---\r\n")) << Log();

    session.patch.current.sounds[1].zero1 = 0;
    audio.PlaySoundLump(session, log, 1); // read as a signed number, the rate is below 0
    audio.PlaySoundLump(session, log, 2);
    EXPECT_NE(Log().find("Could not create sample. BASS error code 0: the sample rate is -25536"), std::string::npos);
    EXPECT_NE(Log().find("Could not create sample. BASS error code 0: the sound has no samples"), std::string::npos);
    setenv("SDL_DISKAUDIOFILE", "/nowhere/played.raw", 1); // a device that is missing
    session.patch.current.sounds[3].name = {};
    audio.PlaySoundLump(session, log, 3);
    EXPECT_EQ(Log().find("Playing"), std::string::npos);
}

} // namespace
} // namespace plinket3
