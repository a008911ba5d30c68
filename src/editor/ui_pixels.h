// Places on the screen from numbers that may be anything. No state; any thread.
#pragma once

#include <algorithm>

// Toward zero. Numbers past what a screen could ever hold end there, and what is no number is 0.
inline int TruncateToPixel(float value) {
    constexpr float kFurthest = 500000000;
    if (!(value == value)) return 0;
    return static_cast<int>(std::clamp(value, -kFurthest, kFurthest));
}
