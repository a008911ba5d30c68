// Floats of 16 bits, as pictures keep them. Any thread.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

// The bits of the nearest half float, ties to even; what is too large becomes infinity.
inline std::uint16_t HalfBits(float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const auto sign = static_cast<std::uint16_t>(bits >> 16 & 0x8000u);
    const float size = std::fabs(value);
    if (std::isnan(value)) return static_cast<std::uint16_t>(sign | 0x7E00u);
    if (size >= 65520.0f) return static_cast<std::uint16_t>(sign | 0x7C00u);
    if (size < 6.103515625e-05f) {  // no normal half float: steps of 2^-24
        const auto steps = static_cast<std::uint16_t>(std::nearbyint(size * 16777216.0f));
        return static_cast<std::uint16_t>(sign | steps);
    }
    const std::uint32_t whole = bits & 0x7FFFFFFFu;
    const std::uint32_t rounded = whole + 0x0FFFu + (whole >> 13 & 1u);
    return static_cast<std::uint16_t>(sign | ((rounded - 0x38000000u) >> 13));
}
