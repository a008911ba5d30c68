#include "pictures_noise.h"
#include "pictures_painters.h"

namespace pictures {

namespace {

float share(int place, int size) {
    return (static_cast<float>(place) + 0.5f) / static_cast<float>(size);
}

// 1 at `middle`, 0 from `halfWidth` on.
float bump(float value, float middle, float halfWidth) {
    return smoothstep(halfWidth, 0, std::fabs(value - middle));
}

// A lamp with soft edges in a room that is told by the turn, 0 to 1, and the height, -1 to 1.
struct SoftBox {
    float turn, height, halfTurn, halfHeight;
    Colour colour;
    float gain;
};

float boxLight(const SoftBox& box, float turn, float height) {
    float away = std::fabs(turn - box.turn);
    away = std::min(away, 1 - away);
    return smoothstep(box.halfTurn, box.halfTurn * 0.55f, away) *
           smoothstep(box.halfHeight, box.halfHeight * 0.55f, std::fabs(height - box.height));
}

}  // namespace

// The room around the dancer, all the way round and from the floor to the ceiling: what shells and
// floor mirror.
Layer paintStageRoom() {
    constexpr int kWidth = 1024, kHeight = 512;
    constexpr SoftBox kBoxes[] = {
        {0.12f, 0.25f, 0.06f, 0.42f, kCyan, 0.95f},   {0.38f, 0.10f, 0.035f, 0.60f, kMist, 0.80f},
        {0.62f, 0.20f, 0.05f, 0.45f, kMagenta, 1.0f}, {0.86f, 0.05f, 0.04f, 0.60f, kViolet, 1.1f},
        {0.50f, 0.72f, 0.20f, 0.14f, kCream, 0.85f},  {0.00f, 0.78f, 0.16f, 0.10f, kPink, 0.60f},
    };
    Layer layer(kWidth, kHeight);
    layer.fill([&](int x, int y) {
        const float turn = share(x, kWidth), height = 1 - 2 * share(y, kHeight);
        Colour colour = mix(kNight, kInk, smoothstep(-0.9f, 0.2f, std::fabs(height)));
        colour = colour + kIndigo * (0.5f * bump(height, 0.02f, 0.35f));
        for (const SoftBox& box : kBoxes) {
            colour = colour + box.colour * (box.gain * boxLight(box, turn, height));
        }
        return colour;
    });
    return layer;
}

// The puppet's shells, wrapped around every limb from its lower end to the upper.
Layer paintStageShell() {
    constexpr int kSize = 512;
    constexpr Colour kSteel = hexColour(0x6f7ba6), kShadow = hexColour(0x20263c);
    Layer layer(kSize, kSize);
    layer.fill([&](int x, int y) {
        const float u = share(x, kSize), v = share(y, kSize);
        const float grain = fractalNoise(u * 24, v * 6, 4, 71, {24, 6});
        const float ends = smoothstep(0.10f, 0.0f, std::min(v, 1 - v));
        const Colour shell = mix(kSteel, kShadow, 0.75f * ends);
        return shell * (1.0f + 0.22f * grain);
    });
    return layer;
}

// Where the shells glow by themselves: hair-thin lines and a grid of points.
Layer paintStageMask() {
    constexpr int kSize = 512;
    Layer layer(kSize, kSize);
    layer.fill([&](int x, int y) {
        const float u = share(x, kSize) * 24, v = share(y, kSize) * 28;
        const float du = u - std::floor(u) - 0.5f, dv = v - std::floor(v) - 0.5f;
        const float points = smoothstep(0.20f, 0.08f, std::hypot(du, dv)) *
                             smoothstep(0.25f, 0.5f, bump(share(y, kSize), 0.5f, 0.45f));
        const float lines =
            std::max(bump(share(y, kSize), 0.16f, 0.008f), bump(share(y, kSize), 0.84f, 0.008f));
        return kCream * std::max(0.55f * points, lines);
    });
    return layer;
}

// The floor: rings of tiles around the middle, which fade into the dark.
Layer paintStageFloor() {
    constexpr int kSize = 1024;
    Layer layer(kSize, kSize);
    layer.fill([&](int x, int y) {
        const float dx = 2 * share(x, kSize) - 1, dy = 2 * share(y, kSize) - 1;
        const float away = std::hypot(dx, dy), turn = std::atan2(dy, dx) / (2 * kPi);
        const float ring = away * 26;
        const float joint = std::fabs(ring - std::round(ring));
        const float spokes = turn * 48;
        const float spoke = std::fabs(spokes - std::round(spokes)) * away * 6;
        const float seam =
            std::max(smoothstep(0.07f, 0.02f, joint), smoothstep(0.07f, 0.02f, spoke));
        const float fade = smoothstep(0.95f, 0.05f, away);
        const float grain = fractalNoise(dx * 16 + 16, dy * 16 + 16, 3, 19, {32, 32});
        const Colour tile = mix(kNight, kIndigo, 0.35f + 0.25f * grain) * (0.9f * fade);
        return tile + kCyan * (0.28f * seam * fade * fade);
    });
    return layer;
}

// A lamp: bright, and a little darker towards its rim.
Layer paintStageLamp() {
    constexpr int kSize = 64;
    Layer layer(kSize, kSize);
    layer.fill([&](int x, int y) {
        const float away =
            std::max(std::fabs(2 * share(x, kSize) - 1), std::fabs(2 * share(y, kSize) - 1));
        const float bright = mix(1.0f, 0.62f, smoothstep(0.5f, 1.0f, away));
        return Colour{bright, bright, bright};
    });
    return layer;
}

}  // namespace pictures
