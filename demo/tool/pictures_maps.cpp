#include <array>
#include <numeric>

#include "pictures_noise.h"
#include "pictures_painters.h"

namespace pictures {

namespace {

constexpr int kWidth = 1920, kHeight = 1080;

float unitX(int x) {
    return (static_cast<float>(x) + 0.5f) / kWidth;
}
float unitY(int y) {
    return (static_cast<float>(y) + 0.5f) / kHeight;
}

}  // namespace

// Red and green move pixels sideways and up, blue is a third, finer field; grey moves nothing.
// Repeats both ways.
Layer paintDisplaceMap() {
    Layer layer(kWidth, kHeight);
    layer.fill([](int x, int y) {
        constexpr Period kPeriod{8, 4};
        const float u = unitX(x) * kPeriod.x, v = unitY(y) * kPeriod.y;
        const auto field = [&](int octaves, uint32_t seed) {
            return std::clamp(0.5f + 0.62f * fractalNoise(u, v, octaves, seed, kPeriod), 0.02f,
                              0.98f);
        };
        return Colour{field(2, 101), field(2, 151), field(3, 211)};
    });
    return layer;
}

Layer paintVignette() {
    Layer layer(kWidth, kHeight);
    Mask shade(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const float dx = (unitX(x) - 0.5f) * 2, dy = (unitY(y) - 0.5f) * 2;
            // Between an ellipse and a box, as a lens in a hood.
            const float away =
                std::pow(std::pow(std::fabs(dx), 2.6f) + std::pow(std::fabs(dy), 2.6f), 1 / 2.6f);
            shade.at(x, y) = 0.92f * std::pow(smoothstep(0.42f, 1.28f, away), 1.25f);
        }
    }
    layer.cover(shade, [](int, int) { return hexColour(0x020208); });
    return layer;
}

namespace {

struct Leak {
    float x, y, radiusX, radiusY, lean;  // shares of the picture's height
    Colour colour;
    float gain;
};

constexpr std::array kLeaks{
    Leak{-0.05f, 0.30f, 0.62f, 0.85f, 0.35f, hexColour(0xff5a1e), 0.95f},
    Leak{-0.02f, 0.62f, 0.30f, 0.62f, 0.20f, kGold, 0.80f},
    Leak{0.35f, 0.95f, 0.75f, 0.26f, -0.20f, kMagenta, 0.42f},
    Leak{1.80f, 0.05f, 0.52f, 0.62f, -0.45f, kMagenta, 0.72f},
    Leak{1.84f, 0.16f, 0.24f, 0.40f, -0.30f, kOrange, 0.75f},
    Leak{1.25f, -0.06f, 0.50f, 0.20f, 0.10f, kViolet, 0.50f},
};

}  // namespace

Layer paintLightLeak() {
    Layer layer(kWidth, kHeight);
    layer.fill([](int x, int y) {
        const float u = unitX(x) * 16 / 9, v = unitY(y);
        const float drift = 0.10f * fractalNoise(u * 1.5f, v * 1.5f, 3, 9);
        Colour colour;
        for (const Leak& leak : kLeaks) {
            const float dy = v - leak.y + drift, dx = u - leak.x + drift - dy * leak.lean;
            const float away =
                dx * dx / (leak.radiusX * leak.radiusX) + dy * dy / (leak.radiusY * leak.radiusY);
            colour = colour + leak.colour * (leak.gain * std::exp(-away * 2.4f));
        }
        // Faint stripes, as of light through the edge of a film gate.
        const float stripe = 0.5f + 0.5f * gradientNoise((u + v * 0.22f) * 7, 0.5f, 33);
        const float floorCut = smoothstep(0.0f, 0.12f, colour.r + colour.g + colour.b);
        return colour * ((0.78f + 0.34f * stripe) * floorCut);
    });
    return layer;
}

// Every grey is as frequent as any other, so that a threshold that moves evenly dissolves evenly.
Layer paintNoiseMask() {
    std::vector<float> field(static_cast<size_t>(kWidth) * kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const float u = unitX(x) * 8, v = unitY(y) * 4;
            field[static_cast<size_t>(y) * kWidth + x] = fractalNoise(u, v, 6, 301, {8, 4});
        }
    }
    constexpr int kBins = 4096;
    const auto bin = [](float value) {
        return std::clamp(static_cast<int>((value + 1.2f) / 2.4f * kBins), 0, kBins - 1);
    };
    std::vector<double> share(kBins, 0.0);
    for (const float value : field) share[bin(value)] += 1.0 / static_cast<double>(field.size());
    std::partial_sum(share.begin(), share.end(), share.begin());
    Layer layer(kWidth, kHeight);
    layer.fill([&](int x, int y) {
        const auto grey =
            static_cast<float>(share[bin(field[static_cast<size_t>(y) * kWidth + x])]);
        return Colour{grey, grey, grey};
    });
    return layer;
}

}  // namespace pictures
