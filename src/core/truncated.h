// Conversion of floats that come from users and files. Any thread.
#pragma once

#include <cstdint>
#include <limits>

// Truncated; what 32 bits cannot hold, and what is no number, is the smallest integer.
inline std::int32_t TruncatedInt(float value) {
    if (value >= -2147483648.0f && value < 2147483648.0f) return static_cast<std::int32_t>(value);
    return std::numeric_limits<std::int32_t>::min();
}
