// The effects of the mix: ping-pong delay, reverb, side-chain ducking, limiter. Depends on
// music_filter.h. One object of each per mixdown, used by one thread; all work sample by sample
// but the limiter, which needs to see a little ahead.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "music_filter.h"
#include "music_oscillator.h"

namespace music {

struct StereoSample {
    float left = 0.0f;
    float right = 0.0f;
};

// A fixed delay of a whole number of frames.
class DelayLine {
  public:
    explicit DelayLine(std::size_t frames) : samples_(frames, 0.0f) {}
    float read() const { return samples_[position_]; }
    void write(float value) {
        samples_[position_] = value;
        if (++position_ == samples_.size()) position_ = 0;
    }

  private:
    std::vector<float> samples_;
    std::size_t position_ = 0;
};

// Echoes a dotted eighth apart that jump between left and right and get duller each time.
class PingPongDelay {
  public:
    explicit PingPongDelay(float feedback);
    StereoSample process(StereoSample input);

  private:
    DelayLine left_;
    DelayLine right_;
    OnePoleFilter lowpassLeft_, lowpassRight_, highpassLeft_, highpassRight_;
    float feedback_;
};

// A hall: pre-delay, four diffusing all-passes a side, then eight delay lines that feed each other
// through a Hadamard matrix (the feedback delay network of Jot and Chaigne, 1991).
class Reverb {
  public:
    explicit Reverb(float decaySeconds);
    StereoSample process(StereoSample input);

  private:
    static constexpr std::size_t kLines = 8;
    static constexpr std::size_t kDiffusers = 4;

    float diffuse(std::span<DelayLine> diffusers, float value) const;

    DelayLine preDelayLeft_, preDelayRight_;
    std::vector<DelayLine> diffusersLeft_, diffusersRight_;
    std::vector<DelayLine> lines_;
    std::array<OnePoleFilter, kLines> damping_;
    std::array<float, kLines> gains_{};
    OnePoleFilter highpassLeft_, highpassRight_;
};

// The breathing of a side-chain compressor, driven by the kick's times and not by its level.
class Ducker {
  public:
    void trigger() { framesSinceKick_ = 0; }
    // How far to pull down, 0 to 1: at once after a kick, and gone before the next beat.
    float next();

  private:
    std::size_t framesSinceKick_ = kFramesPerBeat;
    float amount_ = 0.0f;
};

// Keeps a stereo signal within +-ceiling. Works in chunks of kChunkFrames and delays by one of
// them: the gain moves in straight lines between chunk borders, and at a border it is no more than
// either neighbour needs, so that no sample between can exceed the ceiling.
class Limiter {
  public:
    static constexpr std::size_t kChunkFrames = 120;  // 2.5 ms

    Limiter(float ceiling, float releaseSeconds);
    // In place; both spans have the same size, a multiple of kChunkFrames.
    void process(std::span<float> left, std::span<float> right);

  private:
    void processChunk(std::span<float> left, std::span<float> right);

    std::array<float, kChunkFrames> heldLeft_{}, heldRight_{};
    float ceiling_;
    float releaseShare_;
    float heldNeed_ = 1.0f;
    float gain_ = 1.0f;
};

}  // namespace music
