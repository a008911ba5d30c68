// Light and weather that every place of the film shares: glows to be screened, rain that repeats
// from top to bottom, mist, motes, rays.
#include "pictures_film.h"

namespace pictures {

namespace {

Layer glow(Colour colour) {
    constexpr int kSize = 320;
    Layer layer(kSize, kSize);
    layer.fill([&](int x, int y) {
        const float dx = (static_cast<float>(x) + 0.5f) / (kSize / 2) - 1;
        const float dy = (static_cast<float>(y) + 0.5f) / (kSize / 2) - 1;
        const float far = std::sqrt(dx * dx + dy * dy);
        const float edge = 1 - smoothstep(0.75f, 1.0f, far);
        return colour * (edge * std::exp(-far * far * 5.5f)) +
               Colour{1, 1, 1} * (edge * 0.35f * std::exp(-far * far * 60));
    });
    return layer;
}

Layer paintGlowWarm() {
    return glow(hexColour(0xff9a48));
}
Layer paintGlowCool() {
    return glow(hexColour(0x4f8dff));
}
Layer paintGlowPink() {
    return glow(hexColour(0xff3fa0));
}

struct Rain {
    int drops;
    double length, width, opacity;
};

Layer rain(const Rain& look, uint32_t seed) {
    constexpr int kWidth = 1200, kHeight = 1080;
    return drawnLayer(kWidth, kHeight, [&](Pen& pen) {
        Random random(seed);
        for (int i = 0; i < look.drops; ++i) {
            const double x = random.range(0, kWidth), y = random.range(0, kHeight);
            const double length = look.length * random.range(0.5f, 1.3f);
            const double alpha = look.opacity * random.range(0.3f, 1.0f);
            // Drops that cross the foot come in again at the top.
            for (const double shift : {0.0, -1.0 * kHeight}) {
                pen.down(y + shift, y + shift + length,
                         {{0, hexColour(0xa8c4ff), 0},
                          {0.8, hexColour(0xc8dcff), alpha},
                          {1, hexColour(0xe8f2ff), alpha * 0.4}});
                pen.line({{x, y + shift}, {x - length * 0.09, y + shift + length}}, look.width);
            }
        }
    });
}

Layer paintRainFar() {
    return rain({900, 60, 1.1, 0.34}, 5);
}
Layer paintRainNear() {
    return rain({110, 210, 2.6, 0.34}, 6);
}

Layer mist(Colour colour, uint32_t seed) {
    constexpr int kWidth = 1200, kHeight = 240;
    Layer layer(kWidth, kHeight);
    Mask mask(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const auto px = static_cast<float>(x), py = static_cast<float>(y);
            const float cloud = 0.5f + 0.7f * fractalNoise(px / 260, py / 80, 4, seed);
            const float rise = smoothstep(0, 110, py) * (1 - smoothstep(130, 240, py));
            const float side = smoothstep(0, 200, px) * (1 - smoothstep(1000, 1200, px));
            mask.at(x, y) = 0.85f * rise * side * std::clamp(cloud, 0.0f, 1.0f);
        }
    }
    layer.cover(mask, colour);
    return layer;
}

Layer paintMistNight() {
    return mist(hexColour(0x4a4a9c), 3);
}
Layer paintMistRose() {
    return mist(hexColour(0xd68ab4), 4);
}
Layer paintMistGold() {
    return mist(hexColour(0xffd9a8), 9);
}

Layer paintDust() {
    Layer layer(1200, 800);
    Random random(12);
    for (int i = 0; i < 150; ++i) {
        const float size = random.range(0.8f, 2.6f);
        layer.spot(random.range(10, 1190), random.range(10, 790), size,
                   mix(kGold, {1, 1, 1}, random.unit()), random.range(0.15f, 0.8f));
    }
    for (int i = 0; i < 14; ++i) {
        const float x = random.range(60, 1140), y = random.range(60, 740);
        layer.spot(x, y, random.range(7, 15), kGold, random.range(0.05f, 0.16f));
    }
    return layer;
}

// Shafts of light from the upper left, to be screened.
Layer paintRays() {
    constexpr int kWidth = 960, kHeight = 720;
    Layer layer(kWidth, kHeight);
    layer.fill([&](int x, int y) {
        const float dx = static_cast<float>(x) - 90, dy = static_cast<float>(y) + 260;
        const float angle = std::atan2(dx, dy), far = std::sqrt(dx * dx + dy * dy);
        const float shaft = smoothstep(-0.10f, 0.65f, fractalNoise(angle * 9, 0.5f, 3, 17));
        const float fade = smoothstep(260, 420, far) * (1 - smoothstep(520, 1020, far));
        const float px = static_cast<float>(x), py = static_cast<float>(y);
        const float side = smoothstep(0, 90, px) * (1 - smoothstep(kWidth - 160, kWidth, px)) *
                           (1 - smoothstep(kHeight - 160, kHeight, py)) * smoothstep(0, 60, py);
        return hexColour(0xffd08a) * (0.62f * shaft * fade * side);
    });
    return layer;
}

// A cone of light that opens to the right, from a lamp at the middle of its left side.
Layer paintBeam() {
    constexpr int kWidth = 960, kHeight = 320;
    Layer layer(kWidth, kHeight);
    layer.fill([&](int x, int y) {
        const auto px = static_cast<float>(x);
        const float half = 7 + px * 0.125f;
        const float off = std::fabs(static_cast<float>(y) + 0.5f - kHeight / 2) / half;
        const float core = std::exp(-off * off * 2.2f) * (1 - smoothstep(0.8f, 1.25f, off));
        const float fade = std::exp(-px / 330) * (1 - smoothstep(700, 960, px));
        const float smoke = 0.8f + 0.4f * fractalNoise(px / 120, static_cast<float>(y) / 60, 3, 21);
        return hexColour(0xfff0cc) * (1.25f * core * fade * smoke);
    });
    return layer;
}

// The long flat streak that a lens draws through a lamp.
Layer paintStreak() {
    constexpr int kWidth = 960, kHeight = 80;
    Layer layer(kWidth, kHeight);
    layer.fill([&](int x, int y) {
        const float u = std::fabs((static_cast<float>(x) + 0.5f) / (kWidth / 2) - 1);
        const float v = std::fabs((static_cast<float>(y) + 0.5f) / (kHeight / 2) - 1);
        const float along = (1 - u) * (1 - u) * (1 - u);
        const float core = std::exp(-v * v * 90) * along,
                    wide = std::exp(-v * v * 12) * along * along;
        const float rim = 1 - smoothstep(0.7f, 1.0f, v);
        return (hexColour(0xa8c8ff) * core + hexColour(0x4868ff) * (wide * 0.5f)) * rim;
    });
    return layer;
}

Layer paintBlack() {
    Layer layer(16, 16);
    layer.fill([](int, int) { return Colour{}; });
    return layer;
}

Layer paintGullUp() {
    return drawnLayer(160, 80, [](Pen& pen) {
        pen.flat(hexColour(0x10122c));
        pen.curve({{10, 14}, {42, 20}, {70, 52}, {80, 58}}, 6);
        pen.curve({{150, 10}, {118, 20}, {92, 52}, {80, 58}}, 6);
        pen.oval(80, 57, 15, 5);
    });
}

Layer paintGullDown() {
    return drawnLayer(160, 80, [](Pen& pen) {
        pen.flat(hexColour(0x10122c));
        pen.curve({{8, 62}, {38, 36}, {64, 32}, {80, 40}}, 6);
        pen.curve({{152, 60}, {122, 36}, {96, 32}, {80, 40}}, 6);
        pen.oval(80, 41, 15, 5);
    });
}

constexpr PictureEntry kPictures[] = {
    {"black.png", PngColour::Rgb, paintBlack},
    {"film/glow-warm.png", PngColour::Rgb, paintGlowWarm},
    {"film/glow-cool.png", PngColour::Rgb, paintGlowCool},
    {"film/glow-pink.png", PngColour::Rgb, paintGlowPink},
    {"film/rain-far.png", PngColour::Rgba, paintRainFar},
    {"film/rain-near.png", PngColour::Rgba, paintRainNear},
    {"film/mist-night.png", PngColour::Rgba, paintMistNight},
    {"film/mist-rose.png", PngColour::Rgba, paintMistRose},
    {"film/mist-gold.png", PngColour::Rgba, paintMistGold},
    {"film/dust.png", PngColour::Rgba, paintDust},
    {"film/rays.png", PngColour::Rgb, paintRays},
    {"film/beam.png", PngColour::Rgb, paintBeam},
    {"film/streak.png", PngColour::Rgb, paintStreak},
    {"film/gull-up.png", PngColour::Rgba, paintGullUp},
    {"film/gull-down.png", PngColour::Rgba, paintGullDown},
};

}  // namespace

std::span<const PictureEntry> filmLights() {
    return kPictures;
}

}  // namespace pictures
