// The surfaces of the hall, each painted with the light of all its lamps upon it, what is seen
// through its windows, and the surroundings that polished things mirror.
#include <array>
#include <functional>

#include "hall_plan.h"
#include "mesh_builder.h"
#include "pictures_noise.h"
#include "pictures_painters.h"

namespace pictures {

namespace {

// Light is smooth: it is computed at every 16th pixel, and blended between.
class LightMap {
  public:
    LightMap(int width, int height, const std::function<Colour(float, float)>& lightAt)
        : columns_(width / kStep + 2), scaleX_(1.0f / kStep), scaleY_(1.0f / kStep) {
        const int rows = height / kStep + 2;
        for (int y = 0; y < rows; ++y) {
            for (int x = 0; x < columns_; ++x) {
                const float u = static_cast<float>(x * kStep) / static_cast<float>(width);
                const float v = 1 - static_cast<float>(y * kStep) / static_cast<float>(height);
                values_.push_back(lightAt(std::min(u, 1.0f), std::max(v, 0.0f)));
            }
        }
    }

    Colour at(int x, int y) const {
        const int column = x / kStep, row = y / kStep;
        const float shareX = static_cast<float>(x % kStep) * scaleX_;
        const float shareY = static_cast<float>(y % kStep) * scaleY_;
        const auto value = [&](int c, int r) {
            return values_[static_cast<size_t>(r) * columns_ + c];
        };
        return mix(mix(value(column, row), value(column + 1, row), shareX),
                   mix(value(column, row + 1), value(column + 1, row + 1), shareX), shareY);
    }

  private:
    static constexpr int kStep = 16;
    int columns_;
    float scaleX_, scaleY_;
    std::vector<Colour> values_;
};

const hall::Lighting& lighting() {
    static const hall::Lighting lamps;
    return lamps;
}

constexpr Colour kShade = hexColour(0x2a2556);  // light that comes from everywhere

// What a surface of this paint looks like under this light, as a film sees it: bright places turn
// white slowly.
Colour lit(Colour paint, Colour light) {
    const auto film = [](float value) { return 1 - std::exp(-3.0f * value); };
    return {film(paint.r * (light.r + kShade.r)), film(paint.g * (light.g + kShade.g)),
            film(paint.b * (light.b + kShade.b))};
}

LightMap lightOn(const hall::Surface& surface, int width, int height) {
    return LightMap(width, height, [&](float u, float v) {
        return lighting().at(surface.at(u, v), surface.normal());
    });
}

// Distance to the nearest whole multiple of `step`.
float toGrid(float place, float step) {
    const float share = place / step;
    return std::fabs(share - std::round(share)) * step;
}

constexpr float kPixelsPerMetre = 64;

float metres(int pixel) {
    return (static_cast<float>(pixel) + 0.5f) / kPixelsPerMetre;
}

// Dark stone in slabs, with veins.
Colour floorPaint(float x, float y) {
    const float vein = ridgedNoise(x * 0.55f + 3, y * 0.55f, 4, 77);
    const uint32_t slab = hashPoint(static_cast<int>(x), static_cast<int>(y), 5);
    const float tone = 0.30f + 0.10f * static_cast<float>(slab & 255) / 255;
    Colour stone =
        mix(hexColour(0x565064), hexColour(0x3c3654), static_cast<float>(slab >> 8 & 255) / 255) *
        (tone * 2.6f);
    stone = mix(stone, hexColour(0xb9a6c8), 0.55f * smoothstep(0.82f, 0.99f, vein));
    const float joint = std::min(toGrid(x, 1), toGrid(y, 1));
    return mix(hexColour(0x17131f), stone, smoothstep(0.008f, 0.028f, joint));
}

// Plaster cast in boards, on a dark base; `height` from the floor.
Colour wallPaint(float x, float height) {
    const float cloud = 0.5f + 0.5f * fractalNoise(x * 0.8f, height * 0.8f, 5, 19);
    const float board =
        0.5f + 0.5f * gradientNoise(x * 0.12f, std::floor(height / 0.5f) * 7.3f + 0.5f, 91);
    Colour plaster = mix(hexColour(0x8d8496), hexColour(0xb4aab8), 0.6f * cloud + 0.4f * board);
    const float joint = std::min(toGrid(height, 0.5f), toGrid(x + 2, 4));
    plaster = plaster * mix(0.55f, 1.0f, smoothstep(0.006f, 0.022f, joint));
    const float base = smoothstep(0.54f, 0.52f, height);
    return mix(plaster, hexColour(0x2e2838), base);
}

Colour ceilingPaint(float x, float y) {
    const float coffer = std::min(toGrid(x, 2), toGrid(y, 2));
    const float cloud = 0.5f + 0.5f * fractalNoise(x, y, 4, 29);
    return mix(hexColour(0x3c3548), mix(hexColour(0x6e6678), hexColour(0x7d7486), cloud),
               smoothstep(0.05f, 0.16f, coffer));
}

template <typename PaintAt>
void paintSurface(Layer& layer, int left, const hall::Surface& surface, int width,
                  PaintAt paintAt) {
    const LightMap light = lightOn(surface, width, layer.height);
    for (int y = 0; y < layer.height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Colour colour =
                lit(paintAt(metres(x), metres(layer.height - 1 - y)), light.at(x, y));
            float* out = layer.pixel(left + x, y);
            out[0] = colour.r, out[1] = colour.g, out[2] = colour.b, out[3] = 1;
        }
    }
}

template <typename PaintAt>
Layer surfacePicture(const hall::Surface& surface, PaintAt paintAt) {
    const auto pixels = [](const Vec3& side) {
        return static_cast<int>(std::lround(std::sqrt(models::dot(side, side)) * kPixelsPerMetre));
    };
    Layer layer(pixels(surface.right), pixels(surface.up));
    paintSurface(layer, 0, surface, layer.width, paintAt);
    return layer;
}

}  // namespace

Layer paintHallFloor() {
    return surfacePicture(hall::kFloorPlane, [](float x, float y) {
        return floorPaint(x, y) * hall::openness(x - hall::kHalfWidth, hall::kHalfLength - y);
    });
}

Layer paintHallCeiling() {
    return surfacePicture(hall::kCeilingPlane, ceilingPaint);
}

Layer paintHallLeft() {
    return surfacePicture(hall::kLeftWall, wallPaint);
}

Layer paintHallRight() {
    return surfacePicture(hall::kRightWall, wallPaint);
}

Layer paintHallEnds() {
    constexpr int kWidth = static_cast<int>(2 * hall::kHalfWidth * kPixelsPerMetre);
    Layer layer(2 * kWidth, static_cast<int>(hall::kHeight * kPixelsPerMetre));
    paintSurface(layer, 0, hall::kBackWall, kWidth, wallPaint);
    paintSurface(layer, kWidth, hall::kFrontWall, kWidth, wallPaint);
    return layer;
}

// A strip for each column: around from left to right, its height from the bottom up.
Layer paintHallColumns() {
    constexpr int kStrip = 64, kHeight = 384;
    Layer layer(kStrip * hall::kColumnCount, kHeight);
    for (int column = 0; column < hall::kColumnCount; ++column) {
        const Vec3 foot = hall::columnFoot(column);
        const LightMap light(kStrip, kHeight, [&](float u, float v) {
            const float angle = u * 2 * kPi;
            const Vec3 out{std::sin(angle), 0, std::cos(angle)};
            return lighting().at({foot.x + out.x * hall::kColumnRadius, foot.y + v * hall::kHeight,
                                  foot.z + out.z * hall::kColumnRadius},
                                 out);
        });
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kStrip; ++x) {
                const float grain =
                    0.5f + 0.5f * fractalNoise(static_cast<float>(x) * 0.25f,
                                               static_cast<float>(y) * 0.08f, 3, 31, {16, 0});
                const Colour paint = mix(hexColour(0x9a90a4), hexColour(0xbcb2c0), grain);
                const Colour colour = lit(paint, light.at(x, y));
                float* out = layer.pixel(column * kStrip + x, y);
                out[0] = colour.r, out[1] = colour.g, out[2] = colour.b, out[3] = 1;
            }
        }
    }
    return layer;
}

// Burnished bronze, nearly black; repeats both ways.
Layer paintHallMetal() {
    Layer layer(256, 256);
    layer.fill([](int x, int y) {
        const auto place = [](int i, float cells) {
            return (static_cast<float>(i) + 0.5f) / 256 * cells;
        };
        const float brush = fractalNoise(place(x, 4), place(y, 64), 3, 41, {4, 64});
        const float cloud = fractalNoise(place(x, 4), place(y, 4), 4, 43, {4, 4});
        return mix(hexColour(0x17131f), hexColour(0x3a3145), 0.45f + 0.35f * cloud + 0.2f * brush);
    });
    return layer;
}

// Gold with a deep red in its shade; repeats both ways.
Layer paintHallGold() {
    Layer layer(256, 256);
    layer.fill([](int x, int y) {
        const auto place = [](int i, float cells) {
            return (static_cast<float>(i) + 0.5f) / 256 * cells;
        };
        const float cloud = fractalNoise(place(x, 16), place(y, 2), 3, 47, {16, 2});
        return mix(hexColour(0xb8602a), hexColour(0xf2ae4e), 0.55f + 0.45f * cloud);
    });
    return layer;
}

// Night after the sun has gone, over hills, as wide as all windows together.
Layer paintHallView() {
    constexpr std::array kStops{Stop{0.0f, hexColour(0x0a0c3a)},  Stop{0.35f, hexColour(0x2b2090)},
                                Stop{0.55f, hexColour(0x7a2fae)}, Stop{0.70f, hexColour(0xd0468e)},
                                Stop{0.80f, hexColour(0xff8a4c)}, Stop{0.86f, hexColour(0xffc874)}};
    Layer layer(1536, 512);
    layer.fill([&](int x, int y) {
        const float u = (static_cast<float>(x) + 0.5f) / 512,
                    v = (static_cast<float>(y) + 0.5f) / 512;
        const float cloud = smoothstep(0.05f, 0.6f, fractalNoise(u * 2, v * 9, 5, 57));
        Colour colour = gradient(kStops, v);
        colour = mix(colour, gradient(kStops, v + 0.14f) * 1.1f, cloud * 0.7f);
        for (int range = 0; range < 3; ++range) {
            const float size = 3.0f + 2.2f * static_cast<float>(range);
            const float line =
                0.80f + 0.055f * static_cast<float>(range) -
                0.10f * ridgedNoise(u * size * 0.5f, 0.5f + static_cast<float>(range), 4,
                                    61u + static_cast<uint32_t>(range));
            const Colour hill =
                mix(hexColour(0x6a2a86), hexColour(0x0d0a2c), static_cast<float>(range) / 2);
            colour = mix(colour, hill, smoothstep(line, line + 0.006f, v));
        }
        return colour;
    });
    return layer;
}

// The sun of the demo's world, in stripes that grow towards its foot.
Layer paintHallSun() {
    constexpr int kSize = 512;
    Layer layer(kSize, kSize);
    layer.fill([](int, int y) {
        const float v = (static_cast<float>(y) + 0.5f) / kSize;
        constexpr std::array kStops{Stop{0.05f, hexColour(0xffe9a8)}, Stop{0.40f, kGold},
                                    Stop{0.65f, kOrange}, Stop{0.95f, kMagenta}};
        const float stripe = toGrid(v, 0.085f);
        const float gap = 0.004f + 0.036f * smoothstep(0.38f, 1.0f, v);
        const float open = v < 0.36f ? 1 : smoothstep(gap - 0.003f, gap + 0.003f, stripe);
        return mix(hexColour(0x180818), gradient(kStops, v), open);
    });
    return layer;
}

namespace {

// A lamp of a studio as a mirror sees it: a bright field with soft edges. Shares of the picture.
struct Lamp {
    float u, v, halfWidth, halfHeight, softness;
    Colour colour;
};

constexpr std::array kLamps{
    Lamp{0.50f, 0.17f, 0.17f, 0.055f, 0.02f, hexColour(0xfff4ff)},
    Lamp{0.24f, 0.34f, 0.030f, 0.17f, 0.012f, hexColour(0xff3fa6)},
    Lamp{0.30f, 0.34f, 0.010f, 0.17f, 0.008f, hexColour(0xffb0dc)},
    Lamp{0.76f, 0.34f, 0.030f, 0.17f, 0.012f, hexColour(0x35d2ff)},
    Lamp{0.70f, 0.34f, 0.010f, 0.17f, 0.008f, hexColour(0xb0f0ff)},
    Lamp{0.02f, 0.27f, 0.060f, 0.10f, 0.03f, kGold},
    Lamp{0.10f, 0.40f, 0.012f, 0.08f, 0.01f, kOrange},
    Lamp{0.92f, 0.40f, 0.012f, 0.08f, 0.01f, kViolet},
    Lamp{0.42f, 0.08f, 0.040f, 0.02f, 0.01f, kCream},
    Lamp{0.60f, 0.08f, 0.040f, 0.02f, 0.01f, kCream},
};

float field(float away, float half, float softness) {
    return smoothstep(half + softness, half - softness, std::fabs(away));
}

}  // namespace

// All directions at once: longitude across, the zenith at the top. Closes sideways.
Layer paintStudio() {
    constexpr int kWidth = 2048, kHeight = 1024;
    constexpr std::array kStops{
        Stop{0.0f, hexColour(0x141033)},   Stop{0.30f, hexColour(0x2a1c6c)},
        Stop{0.44f, hexColour(0x7a2f9c)},  Stop{0.495f, hexColour(0xff8f62)},
        Stop{0.505f, hexColour(0x4a1c58)}, Stop{0.62f, hexColour(0x20124a)},
        Stop{1.0f, hexColour(0x0a0820)}};
    Layer layer(kWidth, kHeight);
    layer.fill([&](int x, int y) {
        const float u = (static_cast<float>(x) + 0.5f) / kWidth,
                    v = (static_cast<float>(y) + 0.5f) / kHeight;
        Colour colour = gradient(kStops, v);
        const float cloud = fractalNoise(u * 8, v * 10, 5, 87, {8, 0});
        if (v < 0.5f) colour = colour * (1 + 0.35f * cloud);
        // The lamps again in a dark polished floor, faintly.
        const bool below = v > 0.5f;
        const float mirrored = below ? 1 - v : v;
        for (const Lamp& lamp : kLamps) {
            float across = u - lamp.u;
            across -= std::round(across);
            const float share = field(across, lamp.halfWidth, lamp.softness) *
                                field(mirrored - lamp.v, lamp.halfHeight, lamp.softness);
            colour = mix(colour, lamp.colour,
                         below ? share * 0.42f * smoothstep(1.0f, 0.55f, v) : share);
        }
        return colour;
    });
    return layer;
}

// For lamps, whose colour the material gives.
Layer paintWhite() {
    Layer layer(16, 16);
    layer.fill([](int, int) { return Colour{1, 1, 1}; });
    return layer;
}

}  // namespace pictures
