#include "geometry/random_materials.h"

#include <cstdint>
#include <cstdlib>

#include "core/random.h"
#include "core/truncated.h"

void SeedMaterials(float seed) {
    Random::seed(static_cast<std::uint32_t>(TruncatedInt(seed)));
}

float Drift(int random, float phase, float amount) {
    constexpr int kHalfPeriod = 10000;
    const std::int64_t at = std::int64_t{random} + TruncatedInt(phase * 10000.0f);
    const auto wave = static_cast<int>(at % (2 * kHalfPeriod)) - kHalfPeriod;
    return static_cast<float>(kHalfPeriod - std::abs(wave)) * amount / 10000.0f;
}

void VaryColour(MaterialData& material, const MaterialVariation& variation) {
    float* const colour = material.illumColor;
    for (int channel = 0; channel < 3; ++channel) {
        colour[channel] *= 1.0f - Drift(Random::next(), variation.phase, variation.randomize);
    }
    Random::next();
    const float luma = colour[0] * 0.2125f + colour[1] * 0.7154f + colour[2] * 0.0721f;
    for (int channel = 0; channel < 3; ++channel) {
        colour[channel] =
            (1.0f - variation.saturation) * luma + variation.saturation * colour[channel];
    }
}
