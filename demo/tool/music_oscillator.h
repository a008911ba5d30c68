// Sound sources and shapes over time that the instruments are built from: band-limited saw and
// pulse, sine, envelope, soft clipping. Depends on music_timing.h. Each object belongs to one note
// and one thread; the per-sample functions are inline because they run some hundred million times.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "music_timing.h"

namespace music {

// Hertz of a MIDI pitch, 69 = A4 = 440 Hz; fractions are allowed.
inline float hertzOfPitch(float pitch) {
    return 440.0f * std::exp2((pitch - 69.0f) / 12.0f);
}

// Sine of a phase in turns (any value within +-2^31), by the parabola through its zeros and peaks
// with the usual correction term; off by at most 0.0011, which is below what a mix lets one hear.
inline float sineOfTurns(float turns) {
    float phase = turns - static_cast<float>(static_cast<int>(turns));
    if (phase < 0.0f) phase += 1.0f;
    const float centred = phase - 0.5f;
    const float parabola = -8.0f * centred + 16.0f * centred * std::fabs(centred);
    return 0.225f * (parabola * std::fabs(parabola) - parabola) + parabola;
}

// Odd, smooth, exactly +-1 beyond +-1.5: the cubic soft clipper.
inline float softClip(float value) {
    const float x = std::clamp(value, -1.5f, 1.5f);
    return x - x * x * x * (4.0f / 27.0f);
}

inline float lerp(float from, float to, float amount) {
    return from + (to - from) * amount;
}

// A ramp from 0 to 1 that is wrapped once a cycle; the phase that all oscillators share.
class Phase {
  public:
    explicit Phase(float start = 0.0f) : phase_(start) {}
    void setHertz(float hertz) { step_ = hertz * kSecondsPerFrame; }
    float value() const { return phase_; }
    float step() const { return step_; }
    void advance() {
        phase_ += step_;
        if (phase_ >= 1.0f) phase_ -= 1.0f;
    }

  private:
    float phase_;
    float step_ = 0.0f;
};

// What a step of height 2 at the wrap of `phase` needs so that it does not alias: the two-sample
// polynomial residual known as polyBLEP (Valimaki and Huovilainen, 2007).
inline float stepResidual(float phase, float step) {
    if (phase < step) {
        const float t = phase / step;
        return t + t - t * t - 1.0f;
    }
    if (phase > 1.0f - step) {
        const float t = (phase - 1.0f) / step;
        return t * t + t + t + 1.0f;
    }
    return 0.0f;
}

class SawOscillator {
  public:
    explicit SawOscillator(float startPhase = 0.0f) : phase_(startPhase) {}
    void setHertz(float hertz) { phase_.setHertz(hertz); }
    float next() {
        const float value =
            2.0f * phase_.value() - 1.0f - stepResidual(phase_.value(), phase_.step());
        phase_.advance();
        return value;
    }

  private:
    Phase phase_;
};

// A rectangle that is high for `width` of its cycle, without DC: the difference of two saws.
class PulseOscillator {
  public:
    explicit PulseOscillator(float startPhase = 0.0f) : phase_(startPhase) {}
    void setHertz(float hertz) { phase_.setHertz(hertz); }
    void setWidth(float width) { width_ = width; }
    float next() {
        const float rise = phase_.value();
        float fall = rise + 1.0f - width_;
        if (fall >= 1.0f) fall -= 1.0f;
        const float value = 2.0f * (fall - rise) + stepResidual(rise, phase_.step()) -
                            stepResidual(fall, phase_.step());
        phase_.advance();
        return value;
    }

  private:
    Phase phase_;
    float width_ = 0.5f;
};

class SineOscillator {
  public:
    explicit SineOscillator(float startPhase = 0.0f) : phase_(startPhase) {}
    void setHertz(float hertz) { phase_.setHertz(hertz); }
    float next() {
        const float value = sineOfTurns(phase_.value());
        phase_.advance();
        return value;
    }

  private:
    Phase phase_;
};

// Falls from 1 by a factor e every `seconds`.
class Decay {
  public:
    explicit Decay(float seconds) : factor_(std::exp(-kSecondsPerFrame / seconds)) {}
    float next() {
        const float value = value_;
        value_ *= factor_;
        return value;
    }

  private:
    float value_ = 1.0f;
    float factor_;
};

struct EnvelopeShape {
    float attackSeconds = 0.005f;
    float decaySeconds = 0.2f;  // time constant of the way from 1 down to `sustain`
    float sustain = 1.0f;
    float releaseSeconds = 0.05f;  // to exact zero, so that a note's end never clicks
};

// Attack, decay, sustain and release of a note whose key is down for `gateFrames`.
class Envelope {
  public:
    Envelope(const EnvelopeShape& shape, std::size_t gateFrames)
        : gateFrames_(gateFrames),
          releaseFrames_(std::max<std::size_t>(1, framesOfSeconds(shape.releaseSeconds))),
          attackStep_(kSecondsPerFrame / shape.attackSeconds),
          decayFactor_(std::exp(-kSecondsPerFrame / shape.decaySeconds)),
          sustain_(shape.sustain) {}

    std::size_t totalFrames() const { return gateFrames_ + releaseFrames_; }
    float next() {
        const std::size_t frame = frame_++;
        if (frame >= gateFrames_) return level_ * releaseGain(frame - gateFrames_);
        if (attacking_) {
            level_ = std::min(1.0f, level_ + attackStep_);
            attacking_ = level_ < 1.0f;
        } else {
            level_ = sustain_ + (level_ - sustain_) * decayFactor_;
        }
        return level_;
    }

  private:
    float releaseGain(std::size_t frame) const {
        const float left = 1.0f - static_cast<float>(frame) / static_cast<float>(releaseFrames_);
        return left > 0.0f ? left * left : 0.0f;
    }

    std::size_t gateFrames_;
    std::size_t releaseFrames_;
    std::size_t frame_ = 0;
    float attackStep_;
    float decayFactor_;
    float sustain_;
    float level_ = 0.0f;
    bool attacking_ = true;
};

}  // namespace music
