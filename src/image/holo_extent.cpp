#include "image/holo_extent.h"

#include <algorithm>
#include <cmath>

namespace {

// Rounding in the field, here and on the GPU.
constexpr float kNearlyAll = 0.999f;

float SquaredGap(float at, float low, float high) {
    const float gap = std::max({low - at, at - high, 0.0f});
    return gap * gap;
}

}  // namespace

SlicePart SlicePart::grown(float margin) const {
    if (!(margin >= 0.0f && margin < 1.0f)) return {};
    return {std::max(left - margin, 0.0f), std::max(low - margin, 0.0f),
            std::min(right + margin, 1.0f), std::min(high + margin, 1.0f)};
}

HoloExtent::HoloExtent(const HoloFrame& frame, float dimension) {
    const float size = 2.0f * dimension / kTiles;
    for (int b = 0; b < MAX_BALLS; ++b) {
        const HoloFrame::Ball& ball = frame.balls[b];
        ballZ_[b] = ball.z;
        weight_[b] = ball.w < 0.0f ? 0.0f : ball.w;
        for (int tile = 0; tile < kTiles; ++tile) {
            const float low = -dimension + static_cast<float>(tile) * size;
            distanceX_[b][tile] = SquaredGap(ball.x, low, low + size);
            distanceY_[b][tile] = SquaredGap(ball.y, low, low + size);
        }
    }
}

SlicePart HoloExtent::above(float threshold, float z) const {
    int left = kTiles, right = 0, low = kTiles, high = 0;
    for (int y = 0; y < kTiles; ++y) {
        float bound[kTiles] = {};
        for (int b = 0; b < MAX_BALLS; ++b) {
            const float fixed = (ballZ_[b] - z) * (ballZ_[b] - z) + distanceY_[b][y];
            for (int x = 0; x < kTiles; ++x) {
                bound[x] += weight_[b] / std::max(0.001f, std::sqrt(fixed + distanceX_[b][x]));
            }
        }
        for (int x = 0; x < kTiles; ++x) {
            if (bound[x] < threshold * kNearlyAll) continue;  // what is no number may be anything
            left = std::min(left, x);
            right = std::max(right, x + 1);
            low = std::min(low, y);
            high = std::max(high, y + 1);
        }
    }
    const auto place = [](int tile) { return static_cast<float>(tile) / kTiles; };
    return {place(left), place(low), place(right), place(high)};
}
