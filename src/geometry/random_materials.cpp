#include "geometry/random_materials.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "core/random.h"

namespace {

// The whole part of a number; numbers that no 32-bit integer holds give 0.
std::int32_t WholePart(float number) {
    return std::fabs(number) < 2147483520.0f ? static_cast<std::int32_t>(number) : 0;
}

}  // namespace

void SeedMaterials(float seed) {
    Random::seed(static_cast<std::uint32_t>(WholePart(seed)));
}

float Drift(int random, float phase, float amount) {
    const std::int64_t moved = std::int64_t{random} + WholePart(phase * 10000.0f);
    const int v = static_cast<int>(moved % 20000) - 10000;
    return static_cast<float>(10000 - std::abs(v)) * amount / 10000.0f;
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
