// Playing one decoded sound: the interface that the music player stands on, and its making. The
// implementation decodes files whole on a thread of its own (libsndfile for WAV, FLAC, Ogg and MP3,
// libopenmpt for tracker modules) and plays through OpenAL Soft; where there is no sound device it
// plays on OpenAL's null device, or, if even that fails, keeps silent. Main thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class SoundSystem {
  public:
    virtual ~SoundSystem() = default;

    // Starts decoding a file in the background and forgets the sound before it. A file that cannot
    // be decoded stays silent; one line on the debug channel tells so, which counts as a bad file
    // but for names that choose no file: the empty one and those of folders ("data\").
    virtual void load(std::string_view windowsName) = 0;
    virtual void unload() = 0;
    virtual bool loaded() const = 0;   // decoded and ready to play
    virtual bool loading() const = 0;  // still being decoded

    // Plays from the present position; while the file is still being decoded the start is kept in
    // mind, and the sound falls in at the place where it would be by then.
    virtual void play() = 0;
    virtual void pause() = 0;
    virtual bool playing() const = 0;

    // Sets the position, in milliseconds from the start; a place past the end is silence.
    virtual void setPositionMilliseconds(std::uint32_t positionMs) = 0;
    virtual std::uint32_t positionMilliseconds() const = 0;

    // Once a frame: takes up finished decodes and restarts what a device change stopped.
    virtual void update() = 0;
};

// `enabled` false gives a system that is silent, opens no device and decodes nothing (shots,
// benchmarks); it still tells of files that are missing.
std::unique_ptr<SoundSystem> MakeSoundSystem(bool enabled);

// A decoded sound, interleaved 16-bit samples. For the sound system and its tests.
struct DecodedSound {
    std::vector<std::int16_t> samples;  // frames * channels
    std::uint32_t channels = 0;         // 1 or 2
    std::uint32_t framesPerSecond = 0;
};
// False with `reason` in a few words when the file cannot be read as a sound. At most 10 minutes
// are decoded. Any thread.
bool DecodeSoundFile(std::string_view windowsName, DecodedSound& sound, std::string& reason);
