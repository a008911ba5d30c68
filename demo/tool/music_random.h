// The song's own random numbers, so that every run on every machine makes the same noise (the
// standard library's distributions may differ between implementations). Depends on nothing; each
// voice owns its generator, so there is nothing shared between threads.
#pragma once

#include <cstdint>

namespace music {

// Marsaglia's xorshift with 32 bits of state: plenty for noise, and one of the fastest there is.
class Random {
  public:
    // Seeds that follow one another are spread by a hash, so that seeds 1, 2, 3 sound unrelated.
    explicit Random(std::uint32_t seed) : state_(spread(seed)) {}

    std::uint32_t bits() {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return state_;
    }
    // In [0, 1).
    float unit() { return static_cast<float>(bits() >> 8) * (1.0f / 16777216.0f); }
    // In [-1, 1).
    float noise() { return static_cast<float>(static_cast<std::int32_t>(bits())) * 0x1p-31f; }

  private:
    static std::uint32_t spread(std::uint32_t value) {
        value = (value ^ (value >> 16)) * 0x7feb352du;
        value = (value ^ (value >> 15)) * 0x846ca68bu;
        value ^= value >> 16;
        return value != 0 ? value : 0x9e3779b9u;  // zero would stay zero for ever
    }

    std::uint32_t state_;
};

}  // namespace music
