#include "music_effects.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace music {

namespace {

// Far below hearing, far above where floats become slow denormals: keeps feedback loops fast.
constexpr float kKeepAwake = 1e-18f;

// Frames; primes, so that the lines' echoes never pile up on each other.
constexpr std::array<std::size_t, 8> kLineFrames = {1423, 1733, 1999, 2287, 2593, 2879, 3163, 3559};
constexpr std::array<std::size_t, 4> kDiffuserFramesLeft = {211, 337, 557, 829};
constexpr std::array<std::size_t, 4> kDiffuserFramesRight = {229, 359, 523, 797};
constexpr float kDiffusion = 0.62f;
constexpr std::size_t kPreDelayFrames = 960;  // 20 ms
constexpr float kDampingHertz = 5200.0f;

std::vector<DelayLine> makeLines(std::span<const std::size_t> lengths) {
    std::vector<DelayLine> lines;
    for (const std::size_t frames : lengths) lines.emplace_back(frames);
    return lines;
}

// The fast Walsh-Hadamard transform of eight values, scaled to keep their energy.
void mixHadamard(std::array<float, 8>& values) {
    for (std::size_t width = 1; width < values.size(); width *= 2) {
        for (std::size_t block = 0; block < values.size(); block += 2 * width) {
            for (std::size_t i = block; i < block + width; ++i) {
                const float a = values[i];
                const float b = values[i + width];
                values[i] = a + b;
                values[i + width] = a - b;
            }
        }
    }
    for (float& value : values) value *= 0.35355339f;  // 1 / sqrt(8)
}

}  // namespace

PingPongDelay::PingPongDelay(float feedback)
    : left_(3 * kFramesPerStep),
      right_(3 * kFramesPerStep),
      lowpassLeft_(3800.0f),
      lowpassRight_(3800.0f),
      highpassLeft_(240.0f),
      highpassRight_(240.0f),
      feedback_(feedback) {}

StereoSample PingPongDelay::process(StereoSample input) {
    const StereoSample echo = {left_.read(), right_.read()};
    const float intoLeft = 0.7f * (input.left + input.right) + feedback_ * echo.right + kKeepAwake;
    left_.write(highpassLeft_.high(lowpassLeft_.low(intoLeft)));
    right_.write(highpassRight_.high(lowpassRight_.low(0.8f * echo.left + kKeepAwake)));
    return echo;
}

Reverb::Reverb(float decaySeconds)
    : preDelayLeft_(kPreDelayFrames),
      preDelayRight_(kPreDelayFrames + 173),
      diffusersLeft_(makeLines(kDiffuserFramesLeft)),
      diffusersRight_(makeLines(kDiffuserFramesRight)),
      lines_(makeLines(kLineFrames)),
      highpassLeft_(180.0f),
      highpassRight_(180.0f) {
    damping_.fill(OnePoleFilter(kDampingHertz));
    for (std::size_t i = 0; i < kLines; ++i) {
        const float seconds = static_cast<float>(kLineFrames[i]) * kSecondsPerFrame;
        gains_[i] = std::pow(10.0f, -3.0f * seconds / decaySeconds);  // -60 dB after the decay
    }
}

float Reverb::diffuse(std::span<DelayLine> diffusers, float value) const {
    for (DelayLine& line : diffusers) {
        const float delayed = line.read();
        const float into = value - kDiffusion * delayed;
        line.write(into);
        value = delayed + kDiffusion * into;
    }
    return value;
}

StereoSample Reverb::process(StereoSample input) {
    const float left = diffuse(diffusersLeft_, highpassLeft_.high(preDelayLeft_.read()));
    const float right = diffuse(diffusersRight_, highpassRight_.high(preDelayRight_.read()));
    preDelayLeft_.write(input.left + kKeepAwake);
    preDelayRight_.write(input.right + kKeepAwake);

    std::array<float, kLines> values;
    for (std::size_t i = 0; i < kLines; ++i)
        values[i] = gains_[i] * damping_[i].low(lines_[i].read());
    const StereoSample output = {values[0] - values[2] + values[4] - values[6],
                                 values[1] - values[3] + values[5] - values[7]};
    mixHadamard(values);
    for (std::size_t i = 0; i < kLines; ++i)
        lines_[i].write(values[i] + (i % 2 == 0 ? left : right));
    return output;
}

float Ducker::next() {
    constexpr float kRecoverFrames = 0.36f * kSampleRate;
    constexpr float kSmoothing = 0.012f;  // about 2 ms, so that the pull-down does not click
    const float recovered =
        std::min(1.0f, static_cast<float>(framesSinceKick_) * (1.0f / kRecoverFrames));
    ++framesSinceKick_;
    // Slow to let go at first and at the end: the swell that one hears as pumping.
    const float target = 1.0f - recovered * recovered * (3.0f - 2.0f * recovered);
    amount_ += kSmoothing * (target - amount_);
    return amount_;
}

Limiter::Limiter(float ceiling, float releaseSeconds)
    : ceiling_(ceiling),
      releaseShare_(
          1.0f - std::exp(-static_cast<float>(kChunkFrames) * kSecondsPerFrame / releaseSeconds)) {}

void Limiter::process(std::span<float> left, std::span<float> right) {
    assert(left.size() == right.size() && left.size() % kChunkFrames == 0);
    for (std::size_t start = 0; start < left.size(); start += kChunkFrames)
        processChunk(left.subspan(start, kChunkFrames), right.subspan(start, kChunkFrames));
}

void Limiter::processChunk(std::span<float> left, std::span<float> right) {
    float peak = 0.0f;
    for (std::size_t i = 0; i < kChunkFrames; ++i)
        peak = std::max({peak, std::fabs(left[i]), std::fabs(right[i])});
    const float need = peak > ceiling_ ? ceiling_ / peak : 1.0f;
    const float released = gain_ + (1.0f - gain_) * releaseShare_;
    const float endGain = std::min({heldNeed_, need, released});
    for (std::size_t i = 0; i < kChunkFrames; ++i) {
        const float gain = lerp(gain_, endGain, static_cast<float>(i) / kChunkFrames);
        std::swap(left[i], heldLeft_[i]);
        std::swap(right[i], heldRight_[i]);
        left[i] *= gain;
        right[i] *= gain;
    }
    gain_ = endGain;
    heldNeed_ = need;
}

}  // namespace music
