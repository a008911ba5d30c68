// The grid that the song is written on: sample rate, tempo, bars, and the conversions between them.
// Depends on nothing. Pure constants, safe on any thread.
#pragma once

#include <cstddef>

namespace music {

inline constexpr int kSampleRate = 48000;
inline constexpr float kSecondsPerFrame = 1.0f / kSampleRate;
inline constexpr int kBeatsPerMinute = 120;
inline constexpr int kBeatsPerBar = 4;
// A step is a sixteenth note, the finest division that the score uses.
inline constexpr int kStepsPerBar = 16;
inline constexpr std::size_t kFramesPerBeat = std::size_t{kSampleRate} * 60 / kBeatsPerMinute;
inline constexpr std::size_t kFramesPerBar = kFramesPerBeat * kBeatsPerBar;
inline constexpr std::size_t kFramesPerStep = kFramesPerBar / kStepsPerBar;
inline constexpr int kSongBars = 115;
inline constexpr std::size_t kSongFrames = kFramesPerBar * kSongBars;
inline constexpr float kSecondsPerBar = static_cast<float>(kFramesPerBar) / kSampleRate;

inline constexpr std::size_t framesOfSeconds(double seconds) {
    return seconds <= 0.0 ? 0 : static_cast<std::size_t>(seconds * kSampleRate + 0.5);
}

}  // namespace music
