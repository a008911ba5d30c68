#include <array>

#include "pictures_noise.h"
#include "pictures_painters.h"
#include "pictures_stars.h"

namespace pictures {

namespace {

constexpr int kWidth = 1920, kHeight = 1080;

float unitX(int x) {
    return (static_cast<float>(x) + 0.5f) / kWidth;
}
float unitY(int y) {
    return (static_cast<float>(y) + 0.5f) / kHeight;
}

constexpr std::array kNightStops{
    Stop{0.00f, hexColour(0x03040f)}, Stop{0.28f, hexColour(0x0a0d33)},
    Stop{0.50f, hexColour(0x24186a)}, Stop{0.66f, hexColour(0x66248f)},
    Stop{0.78f, hexColour(0xc23a8e)}, Stop{0.88f, hexColour(0xff7a55)},
    Stop{1.00f, hexColour(0xffc070)},
};

// Veils of gas, 0 to 1: bright where warped noise is high. Painted at half size, since they are
// soft.
Mask nebula(uint32_t seed) {
    constexpr int kShrink = 2;
    Mask gas(kWidth / kShrink, kHeight / kShrink);
    for (int y = 0; y < gas.height; ++y) {
        for (int x = 0; x < gas.width; ++x) {
            const float u = unitX(x * kShrink) * 16 / 9, v = unitY(y * kShrink);
            const float warp = fractalNoise(u * 2, v * 2, 3, seed);
            gas.at(x, y) =
                smoothstep(-0.1f, 0.75f, fractalNoise(u * 3 + warp, v * 3 - warp, 5, seed + 40));
        }
    }
    return gas.enlarged(kShrink, Edge::Empty);
}

}  // namespace

Layer paintSkyNight() {
    const Mask blueGas = nebula(11), roseGas = nebula(23);
    Layer layer(kWidth, kHeight);
    layer.fill([&](int x, int y) {
        const float u = unitX(x) * 16 / 9, v = unitY(y);
        const float arch = (unitX(x) - 0.5f) * (unitX(x) - 0.5f) * 0.30f;
        Colour colour = gradient(kNightStops, v - arch);
        const float high = 1 - smoothstep(0.30f, 0.75f, v);
        const float band = std::exp(-std::pow((v - 0.42f + (u - 0.9f) * 0.35f) * 4.5f, 2.0f));

        colour = colour + hexColour(0x3a46d8) * (blueGas.at(x, y) * (0.10f + 0.42f * band) * high);
        colour = colour + hexColour(0xb02c9c) * (roseGas.at(x, y) * band * high * 0.36f);
        return colour;
    });
    Random random(7);
    const auto region = StarRegion{0, 0, kWidth, kHeight * 0.78f};
    scatterStars(layer, random, region, {.count = 2600, .brightCount = 22, .fadeDown = true});
    return layer;
}

Layer paintStars() {
    const Mask blueGas = nebula(51), roseGas = nebula(61);
    Layer layer(kWidth, kHeight);
    layer.fill([&](int x, int y) {
        const float u = unitX(x) * 16 / 9, v = unitY(y);
        const float across =
            (v - 0.5f) + (u - 0.9f) * 0.42f + 0.10f * fractalNoise(u * 2, v * 2, 3, 3);
        const float band = std::exp(-across * across * 26);
        const float dust = smoothstep(0.05f, 0.5f, fractalNoise(u * 4, v * 6, 5, 71)) *
                           std::exp(-across * across * 120);
        const float gas = blueGas.at(x, y), rose = roseGas.at(x, y);
        Colour colour = mix(kInk, kNight, 0.5f + 0.5f * gas);
        colour = colour + hexColour(0x3a3fb8) * (band * (0.26f + 0.62f * gas));
        colour = colour + hexColour(0xc2418f) * (band * rose * 0.52f);
        colour = colour + kGold * (band * band * gas * 0.30f);
        return colour * (1 - 0.7f * dust);
    });
    Random random(19);
    scatterStars(layer, random, {0, 0, kWidth, kHeight}, {.count = 5200, .brightCount = 46});
    for (int i = 0; i < 5200; ++i) {
        const float along = random.range(-0.1f, 1.1f);
        const float across = (random.unit() + random.unit() + random.unit() - 1.5f) * 0.22f;
        const float x = along * kWidth, y = (0.873f - along * 0.747f + across) * kHeight;
        layer.spot(x, y, random.range(0.5f, 0.8f), mix(kMist, kCream, random.unit()),
                   random.range(0.08f, 0.5f));
    }
    return layer;
}

namespace {

constexpr float kHorizon = 0.60f * kHeight;
constexpr float kSunX = 0.5f * kWidth, kSunY = 0.415f * kHeight, kSunRadius = 290;

constexpr std::array kDuskStops{
    Stop{0.00f, hexColour(0x05051a)}, Stop{0.22f, hexColour(0x130f45)},
    Stop{0.40f, hexColour(0x3d1a7c)}, Stop{0.52f, hexColour(0x8f2a92)},
    Stop{0.60f, hexColour(0xff5c86)},
};
constexpr std::array kSunStops{Stop{0.0f, hexColour(0xfff3a8)}, Stop{0.35f, hexColour(0xffc04e)},
                               Stop{0.62f, hexColour(0xff6a5a)}, Stop{1.0f, hexColour(0xff1f8f)}};

// How much of the pixel at `distance` below the sun's top is sun and not slit, 0 to 1.
float sunStripes(float distance) {
    const float below = distance / kSunRadius - 0.86f;
    if (below < 0) return 1;
    constexpr float kPitch = 0.155f;
    const float phase = below / kPitch - std::floor(below / kPitch);
    const float gap = 0.14f + 0.34f * below;
    const float soft = 1.2f / (kPitch * kSunRadius);
    return smoothstep(gap - soft, gap + soft, phase) * (1 - smoothstep(1 - soft, 1, phase)) +
           smoothstep(1 - soft, 1, phase) * 0.5f;
}

Colour duskSky(float x, float y) {
    const float away = std::hypot(x - kSunX, y - kSunY);
    Colour colour = gradient(kDuskStops, y / kHeight - std::fabs(x - kSunX) / kWidth * 0.10f);
    colour = colour + kMagenta * (0.42f * std::exp(-std::fabs(away - kSunRadius) / 150));
    colour = colour + kOrange * (0.30f * std::exp(-std::fabs(away - kSunRadius) / 46));
    const float inside = 1 - smoothstep(kSunRadius - 1, kSunRadius + 1, away);
    const float distance = y - (kSunY - kSunRadius);
    return mix(colour, gradient(kSunStops, distance / (2 * kSunRadius)),
               inside * sunStripes(distance));
}

// Brightness of a line at whole numbers of `place`, `footprint` of which one pixel spans.
float gridLine(float place, float footprint) {
    const float away = std::fabs(place - std::round(place));
    const float core = std::max(0.016f, footprint * 0.8f);
    constexpr float kMean = 0.055f;  // what lines that are finer than pixels look like
    const float sharp =
        std::exp(-away * away / (core * core)) * std::min(1.0f, 0.016f / core + 0.25f) +
        0.16f * std::exp(-away / 0.085f);
    return mix(sharp, kMean, smoothstep(0.12f, 0.55f, footprint));
}

Colour neonFloor(float x, float y) {
    const float drop = (y - kHorizon) / (kHeight - kHorizon);
    const float depth = 1 / std::max(0.002f, drop);
    const float across = (x - kSunX) / 165 * depth * 0.62f;
    const float lines = gridLine(across + 0.5f, std::hypot(depth * 0.62f / 165,
                                                           across * depth / (kHeight - kHorizon))) +
                        gridLine(depth * 2.2f, depth * depth * 2.2f / (kHeight - kHorizon));
    const float nearSun = std::exp(-std::pow((x - kSunX) / 330, 2.0f));
    Colour colour = mix(hexColour(0x2a0f58), hexColour(0x070518), smoothstep(0, 0.7f, drop));
    colour = colour + mix(kMagenta, kOrange, 0.4f) * (nearSun * 0.42f * std::exp(-drop * 3.2f));
    colour = colour + mix(kPink, mix(kMagenta, kViolet, 0.3f), smoothstep(0, 0.8f, drop)) *
                          (lines * (0.55f + 0.75f * drop));
    return colour + kPink * (0.9f * std::exp(-drop * 60));
}

}  // namespace

Layer paintSunGrid() {
    Layer layer(kWidth, kHeight);
    layer.fill([](int x, int y) {
        const auto pixelX = static_cast<float>(x), pixelY = static_cast<float>(y);
        return pixelY < kHorizon ? duskSky(pixelX, pixelY) : neonFloor(pixelX, pixelY);
    });
    Random random(31);
    for (int i = 0; i < 700; ++i) {
        const float x = random.range(0, kWidth), y = random.range(0, kHorizon * 0.8f);
        const float away = std::hypot(x - kSunX, y - kSunY);
        const float size = random.range(0.5f, 1.0f), gain = random.range(0.15f, 0.8f);
        if (away < kSunRadius + 20) continue;
        layer.spot(x, y, size, mix(kMist, kCream, random.unit()), gain * (1 - y / kHorizon));
    }
    // Low hills stand before the sun's foot and frame the view.
    const Mask hills = Mask::drawn(kWidth, kHeight, [](cairo_t* cairo) {
        cairo_move_to(cairo, 0, kHorizon);
        for (int x = 0; x <= kWidth; x += 12) {
            const auto place = static_cast<float>(x);
            const float side = std::fabs(place - kSunX) / (kWidth * 0.5f);
            const float rise = smoothstep(0.36f, 1.0f, side) * 150;
            const float jag = 0.45f + ridgedNoise(place / 210, 3.3f, 4, 5);
            cairo_line_to(cairo, place, kHorizon - rise * jag);
        }
        cairo_line_to(cairo, kWidth, kHorizon);
        cairo_fill_preserve(cairo);
    });
    layer.cover(hills, [](int, int y) {
        const float up = (kHorizon - static_cast<float>(y)) / 200;
        return mix(hexColour(0x5a1a80), hexColour(0x120a38), smoothstep(0, 0.7f, up));
    });
    return layer;
}

Layer paintClouds() {
    constexpr int kCells = 5;
    Mask density(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const float u = unitX(x) * kCells, v = unitY(y) * 5.2f;
            const float warp = gradientNoise(u * 2, v * 2, 81, {kCells * 2, 0}) * 0.35f;
            const float billow = fractalNoise(u + warp, v + warp, 6, 91, {kCells, 0});
            const float height = unitY(y);
            const float belt =
                smoothstep(0.02f, 0.42f, height) * (1 - smoothstep(0.60f, 0.97f, height));
            density.at(x, y) = billow * 0.9f + belt * 0.74f - 0.44f;
        }
    }
    Mask cover(kWidth, kHeight);
    for (size_t i = 0; i < cover.values.size(); ++i) {
        cover.values[i] = 0.96f * smoothstep(0, 0.42f, density.values[i]);
    }
    const Mask soft = density.blurred(14, Edge::Wrap);
    Layer layer(kWidth, kHeight);
    layer.cover(cover, [&](int x, int y) {
        // Lit from the low sun: where density falls off downwards the belly glows, upwards it is
        // blue.
        const float below = soft.at(x, std::min(kHeight - 1, y + 30));
        const float above = soft.at(x, std::max(0, y - 30));
        const float fine = density.at(x, y) - soft.at(x, y);
        const float belly = std::clamp(0.42f + (above - below) * 1.7f + fine * 0.9f, 0.0f, 1.0f);
        const float thick = smoothstep(0.0f, 0.6f, density.at(x, y));
        const Colour crown = mix(hexColour(0x4a4fb4), hexColour(0x20205e), thick);
        const Colour warm =
            mix(hexColour(0xff6fae), hexColour(0xffb27a), smoothstep(0.5f, 1, belly));
        return mix(crown, warm, smoothstep(0.30f, 0.95f, belly));
    });
    return layer;
}

}  // namespace pictures
