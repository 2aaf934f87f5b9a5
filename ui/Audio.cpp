#include "ui/Audio.h"

#include "core/Text.h"
#include "wad/SoundLump.h"

#include <SDL.h>

#include <limits>
#include <string>

namespace plinket3 {

namespace {

constexpr Uint16 samplesPerBuffer = 512;

Status SdlFailure() { return Status::Failure(SDL_GetError()); }

} // namespace

Status Audio::Start() {
    if (started_)
        return {};
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1"); // Ctrl+C is to end the program as ever
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0)
        return SdlFailure();
    started_ = true;
    return {};
}

void Audio::CloseDevice() {
    if (device_ != 0)
        SDL_CloseAudioDevice(device_);
    device_ = 0;
}

void Audio::Stop() {
    CloseDevice();
    if (started_)
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
    started_ = false;
}

Status Audio::Play(int rate, const std::uint8_t* samples, std::size_t count) {
    // SDL takes another rate for 0 and hangs for one below, and accepts an empty sound.
    if (rate <= 0)
        return Status::Failure("the sample rate is " + std::to_string(rate));
    if (count == 0 || count > std::numeric_limits<Uint32>::max())
        return Status::Failure("the sound has no samples");
    // A device that was unplugged has stopped for good.
    if (device_ != 0 && (rate_ != rate || SDL_GetAudioDeviceStatus(device_) == SDL_AUDIO_STOPPED))
        CloseDevice();
    if (device_ == 0) {
        SDL_AudioSpec wanted{};
        wanted.freq = rate;
        wanted.format = AUDIO_U8;
        wanted.channels = 1;
        wanted.samples = samplesPerBuffer;
        device_ = SDL_OpenAudioDevice(nullptr, 0, &wanted, nullptr, 0);
        if (device_ == 0)
            return SdlFailure();
        rate_ = rate;
        SDL_PauseAudioDevice(device_, 0);
    }
    SDL_ClearQueuedAudio(device_);
    if (SDL_QueueAudio(device_, samples, static_cast<Uint32>(count)) != 0)
        return SdlFailure();
    return {};
}

void Audio::PlaySoundLump(const Session& session, clsLog& log, std::int32_t sound) {
    const PatchSet& set = session.patch.current;
    const SoundRecord* record = set.sounds.Find(sound);
    if (sound == 0 || record == nullptr || record->zero1 != 0)
        return;
    if (device_ != 0)
        SDL_ClearQueuedAudio(device_);
    const std::string name = "DS" + ToUpper(set.SoundName(sound));
    const auto found = session.wads.FindLump(name);
    if (!found)
        return;
    const std::vector<std::uint8_t> lump = found->wad->ReadLump(found->num, longestSoundLump);
    const SoundLump read = ReadSoundLump(lump);
    if (const Status status = Play(read.rate, read.samples.data(), read.samples.size()); !status) {
        log.Add("Could not create sample. BASS error code 0: " + status.Reason());
        return;
    }
    log.Add("Playing sound lump " + std::to_string(found->num) + " (" + name + ") " + std::to_string(read.rate) +
            " Hz, " + std::to_string(read.samples.size()) + " bytes");
}

} // namespace plinket3
