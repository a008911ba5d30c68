// What the pitched instruments share: detuned saws, control-rate brightness, panning. Depends on
// music_oscillator.h and music_note.h; each object belongs to one note and one thread.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "music_note.h"
#include "music_oscillator.h"
#include "music_random.h"

namespace music {

// Filters and vibrato move once in so many frames (a third of a millisecond).
inline constexpr std::size_t kControlFrames = 16;

// Hertz of a brightness from 0 (100 Hz) to 1 (12800 Hz): an octave every seventh.
inline float cutoffOfBrightness(float brightness) {
    return 100.0f * std::exp2(7.0f * std::min(brightness, 1.05f));
}

// The note's brightness at a frame: a straight line while the key is down, then held.
inline float brightnessAt(const Note& note, std::size_t frame) {
    const float along = static_cast<float>(frame) / static_cast<float>(note.lengthFrames);
    return lerp(note.brightness, note.endBrightness, std::min(1.0f, along));
}

// Equal-power gains of a pan position, 1 and 1 in the middle.
struct PanGains {
    explicit PanGains(float pan)
        : left(std::numbers::sqrt2_v<float> *
               std::cos((pan + 1.0f) * 0.25f * std::numbers::pi_v<float>)),
          right(std::numbers::sqrt2_v<float> *
                std::sin((pan + 1.0f) * 0.25f * std::numbers::pi_v<float>)) {}

    float left;
    float right;
};

// N saws a little out of tune with each other, at random phases.
template <std::size_t N>
class SawStack {
  public:
    // `spreadCents`: between the lowest and the highest; `offsetCents`: of the whole stack.
    SawStack(float spreadCents, float offsetCents, Random& random) {
        for (std::size_t i = 0; i < N; ++i) {
            const float place =
                N == 1 ? 0.0f : static_cast<float>(i) / static_cast<float>(N - 1) - 0.5f;
            ratios_[i] = std::exp2((offsetCents + place * spreadCents) / 1200.0f);
            saws_[i] = SawOscillator(random.unit());
        }
    }
    void setHertz(float hertz) {
        for (std::size_t i = 0; i < N; ++i) saws_[i].setHertz(hertz * ratios_[i]);
    }
    float next() {
        float sum = 0.0f;
        for (SawOscillator& saw : saws_) sum += saw.next();
        return sum * (1.0f / N);
    }

  private:
    std::array<SawOscillator, N> saws_;
    std::array<float, N> ratios_{};
};

}  // namespace music
