// One stereo sound on OpenAL: opens a device, holds the sound, plays it from a frame on. Depends on
// OpenAL Soft and the debug channel. Main thread only; OpenAL's mixer has a thread of its own.
#pragma once

#include <AL/al.h>
#include <AL/alc.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

class SoundOutput {
  public:
    // The default device, else OpenAL's null device; null when neither can be had.
    static std::unique_ptr<SoundOutput> open();
    ~SoundOutput();
    SoundOutput(const SoundOutput&) = delete;
    SoundOutput& operator=(const SoundOutput&) = delete;

    // False when the device has gone (unplugged, or its server ended); nothing is heard from then
    // on.
    bool connected() const;

    // Takes over a sound, stopped. `stereo`: left and right in turn. False when OpenAL refuses it.
    bool setSound(std::span<const std::int16_t> stereo, std::uint32_t framesPerSecond);
    void clearSound();

    // Plays from a frame on; a frame past the end is silence.
    void playFrom(std::uint64_t frame);
    void pause();
    // Goes on from the exact frame of the last pause; false when the sound is not paused.
    bool resume();
    void stop();
    // The frame that is being played, or that it was paused at; nothing when it is neither.
    std::optional<std::uint64_t> frame() const;

  private:
    SoundOutput() = default;
    bool start();
    void preferBestResampler();

    ALCdevice* device_ = nullptr;
    ALCcontext* context_ = nullptr;
    ALuint source_ = 0;
    ALuint buffer_ = 0;
    std::uint64_t frameCount_ = 0;
};
