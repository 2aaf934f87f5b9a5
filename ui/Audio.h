#pragma once

#include "core/Status.h"
#include "patch/Program.h"

#include <cstdint>

namespace plinket3 {

/// Plays one sound at a time through SDL's audio device, which runs at the sound's own rate.
class Audio {
public:
    Audio() = default;
    ~Audio() { Stop(); }
    Audio(const Audio&) = delete;
    Audio& operator=(const Audio&) = delete;

    Status Start();
    /// Cuts off what is playing. Does nothing when the audio was never started.
    void Stop();

    /// Plays the sound of the current sound table at that index, cutting off the one before. Nothing happens for sound
    /// 0, for a sound that refers to another one and for one that no WAD has. What goes wrong is logged.
    void PlaySoundLump(const Session& session, clsLog& log, std::int32_t sound);

private:
    Status Play(int rate, const std::uint8_t* samples, std::size_t count);
    void CloseDevice();

    bool started_ = false;
    std::uint32_t device_ = 0; // 0: none is open
    int rate_ = 0;             // of the open device
};

} // namespace plinket3
