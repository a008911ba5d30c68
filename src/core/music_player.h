// The demo's music: one file on one channel. The music follows the clock and never leads it: it is
// told its place when playback starts and when the user seeks. Main thread.
#pragma once

#include <memory>
#include <string>

#include "platform/sound_system.h"

class MusicPlayer {
  public:
    // `soundSystem` is not owned and may be null: silence.
    explicit MusicPlayer(SoundSystem* soundSystem) : system(soundSystem) {}

    // True when a new sound was asked for; the name of the sound that is loaded changes nothing.
    bool setFile(const std::string& path);
    // Starts the sound, or goes on with one that was paused.
    void play();
    void pause();
    // Moves a channel that is live; seconds below 0 count as 0.
    void seek(double seconds);
    // Once a frame.
    void update();

    SoundSystem* system;
    bool channelLive = false;  // play has been called for this sound
    std::string fileName;
};
