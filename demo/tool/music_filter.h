// The filters that the instruments and the mix use. Depends on music_timing.h. Each object is one
// channel of one voice or bus, and belongs to one thread.
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

#include "music_timing.h"

namespace music {

// Two-pole state variable filter with the trapezoidal rule (Zavalishin, "The Art of VA Filter
// Design", chapter 4): stays stable and in tune while its cutoff is swept.
class StateVariableFilter {
  public:
    // `resonance`: 0.7 is flat, above it peaks. The cutoff is kept below the Nyquist frequency.
    void set(float cutoffHertz, float resonance) {
        const float hertz = std::clamp(cutoffHertz, 10.0f, 0.45f * kSampleRate);
        const float g = std::tan(std::numbers::pi_v<float> * hertz * kSecondsPerFrame);
        damping_ = 1.0f / resonance;
        a1_ = 1.0f / (1.0f + g * (g + damping_));
        a2_ = g * a1_;
        a3_ = g * a2_;
    }
    float low(float input) {
        advance(input);
        return low_;
    }
    // Unity gain at the cutoff, whatever the resonance.
    float band(float input) {
        advance(input);
        return band_ * damping_;
    }
    float high(float input) {
        advance(input);
        return input - damping_ * band_ - low_;
    }

  private:
    void advance(float input) {
        const float rest = input - state2_;
        band_ = a1_ * state1_ + a2_ * rest;
        low_ = state2_ + a2_ * state1_ + a3_ * rest;
        state1_ = 2.0f * band_ - state1_;
        state2_ = 2.0f * low_ - state2_;
    }

    float a1_ = 1.0f, a2_ = 0.0f, a3_ = 0.0f, damping_ = 1.0f;
    float state1_ = 0.0f, state2_ = 0.0f;
    float low_ = 0.0f, band_ = 0.0f;
};

// One-pole low-pass; high() is what it takes away.
class OnePoleFilter {
  public:
    explicit OnePoleFilter(float cutoffHertz = 1000.0f)
        : amount_(1.0f -
                  std::exp(-2.0f * std::numbers::pi_v<float> * cutoffHertz * kSecondsPerFrame)) {}
    float low(float input) {
        state_ += amount_ * (input - state_);
        return state_;
    }
    float high(float input) { return input - low(input); }

  private:
    float amount_;
    float state_ = 0.0f;
};

}  // namespace music
