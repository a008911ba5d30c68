// Floats of 16 bits, as pictures keep them. Any thread.
#pragma once

#include <bit>
#include <cstdint>

// The bits of the nearest half float, ties to even; what is too large becomes infinity.
// All cases are computed and one is chosen, so that loops over it become vector code.
inline std::uint16_t HalfBits(float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::uint32_t size = bits & 0x7FFFFFFFu;
    const std::uint32_t normal = (size + 0x0FFFu + (size >> 13 & 1u) - 0x38000000u) >> 13;
    // No normal half float: steps of 2^-24, to which the sum with 0.5 rounds.
    const std::uint32_t tiny =
        std::bit_cast<std::uint32_t>(std::bit_cast<float>(size) + 0.5f) - 0x3F000000u;
    std::uint32_t half = size < 0x38800000u ? tiny : normal;  // 2^-14
    half = size >= 0x477FF000u ? 0x7C00u : half;              // 65520
    half = size > 0x7F800000u ? 0x7E00u : half;               // no number
    return static_cast<std::uint16_t>(half | (bits >> 16 & 0x8000u));
}
