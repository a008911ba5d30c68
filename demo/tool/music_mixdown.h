// Turns the score into sound, a bar at a time: plays the notes into buses, ducks them under the
// kick, adds delay and reverb, and limits the sum. Depends on the arrangement, the instruments and
// the effects. One object per rendering, used by one thread.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "music_arrangement.h"
#include "music_buffer.h"
#include "music_effects.h"

namespace music {

// No sample of a bar is above this: -2 dBFS, since a lossy codec puts peaks of its own on top.
inline constexpr float kCeiling = 0.8f;

class Mixdown {
  public:
    // Begins at a bar of the song with all echoes silent.
    explicit Mixdown(int firstBar);

    // Renders the next bar: kFramesPerBar frames, left and right interleaved. It sounds
    // Limiter::kChunkFrames later than written. After the song's end come the echoes' remains.
    std::span<const float> nextBar();

  private:
    enum BusIndex { kKick, kDrums, kBass, kChords, kArpeggio, kLead, kBells, kSpace, kBusCount };
    struct BusSettings;
    static const std::array<BusSettings, kBusCount> kSettings;
    static BusIndex busOf(Instrument instrument);

    void playNotes();
    void fillDucking();
    void mixBuses();
    void master();
    void fadeOut();

    int bar_;
    std::vector<StereoBuffer> buses_;
    std::vector<std::size_t> kickFrames_;  // of this bar, in order
    std::vector<float> ducking_;
    std::vector<float> left_, right_, interleaved_;
    Ducker ducker_;
    PingPongDelay delay_;
    Reverb reverb_;
    StateVariableFilter highpassLeft_, highpassRight_;
    Limiter limiter_;
};

}  // namespace music
