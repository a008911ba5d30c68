#include <array>

#include "pictures_painters.h"
#include "pictures_trees.h"

namespace pictures {

namespace {

constexpr int kWidth = 1920, kHeight = 1080;

struct Ridge {
    float baseline, rise,
        scale;  // pixels: middle of the crest line, its swing, width of one mountain
    uint32_t seed;
    Colour lit, shaded, mist;
};

constexpr std::array kRidges{
    Ridge{640, 300, 520, 3, hexColour(0x8d55c8), hexColour(0x4a2f9a), hexColour(0xd0559e)},
    Ridge{760, 250, 400, 14, hexColour(0x5b3aa8), hexColour(0x2a1f72), hexColour(0x9a3f9c)},
    Ridge{880, 190, 300, 29, hexColour(0x2f2478), hexColour(0x14123f), hexColour(0x4c2684)},
};

float crestHeight(const Ridge& ridge, float x) {
    const float broad = ridgedNoise(x / ridge.scale, 0.37f, 6, ridge.seed);
    const float swell = gradientNoise(x / ridge.scale / 2.7f, 5.5f, ridge.seed + 50);
    return ridge.baseline - ridge.rise * (broad - 0.5f) - ridge.rise * 0.4f * swell;
}

using Crest = std::vector<float>;  // a height in the picture for each column

// What lies below `crest` and not behind the nearer one.
Mask ridgeMask(const Crest& crest, const Crest& nearer) {
    Mask mask(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        const auto height = static_cast<float>(y);
        for (int x = 0; x < kWidth; ++x) {
            if (height > nearer[x] + 1) continue;
            mask.at(x, y) = std::clamp(height + 1 - crest[x], 0.0f, 1.0f);
        }
    }
    return mask;
}

void paintRidge(Layer& layer, const Ridge& ridge, const Crest& crest, const Crest& nearer) {
    layer.cover(ridgeMask(crest, nearer), [&](int x, int y) {
        const auto px = static_cast<float>(x), py = static_cast<float>(y);
        const float depth = py - crest[x];
        // Ribs run down from the crest and lean apart; the side towards the sun is lit.
        const float lean = fractalNoise(px / 190, py / 150, 3, ridge.seed + 9) * 46;
        const float s = (px + lean + depth * 0.22f) / (ridge.scale * 0.24f);
        const float t = depth / (ridge.scale * 0.75f);
        constexpr float kStep = 0.05f;
        const float rib = ridgedNoise(s + kStep, t, 4, ridge.seed + 70) -
                          ridgedNoise(s - kStep, t, 4, ridge.seed + 70);
        const float slope = rib * 2.6f + 0.38f - depth / (ridge.rise * 2.6f);
        Colour colour = mix(ridge.shaded, ridge.lit, smoothstep(-0.25f, 0.75f, slope));
        colour = mix(colour, mix(ridge.lit, kPink, 0.55f), 0.75f * std::exp(-depth / 5));
        const float fog = smoothstep(20, ridge.rise * 1.5f, depth);
        return mix(colour, ridge.mist, fog * 0.72f);
    });
}

}  // namespace

Layer paintMountains() {
    Layer layer(kWidth, kHeight);
    std::vector<Crest> crests(kRidges.size() + 1, Crest(kWidth, kHeight));
    for (size_t i = 0; i < kRidges.size(); ++i) {
        for (int x = 0; x < kWidth; ++x)
            crests[i][x] = crestHeight(kRidges[i], static_cast<float>(x));
    }
    // From the back; a ridge may dip below the crest of one before it, which then hides it.
    for (size_t i = 0; i < kRidges.size(); ++i) {
        paintRidge(layer, kRidges[i], crests[i], crests[i + 1]);
    }
    // The foot sinks into the night, so that a city can stand before it.
    layer.tint([](int, int) { return kNight; },
               [](int, int y) { return 0.85f * smoothstep(900, 1080, static_cast<float>(y)); });
    return layer;
}

namespace {

struct Wood {
    int trees;
    float foot, tall, spread;  // pixels: mean foot line, mean height, swing of the foot line
    uint32_t seed;
    Colour crown, floor;
};

constexpr std::array kWoods{
    Wood{150, 850, 190, 40, 3, hexColour(0x3b2f86), hexColour(0x7a3f9e)},
    Wood{95, 950, 290, 34, 7, hexColour(0x1d1a56), hexColour(0x4a2a80)},
    Wood{46, 1012, 430, 22, 15, hexColour(0x070820), hexColour(0x0d0c2c)},
};

void drawWood(cairo_t* cairo, const Wood& wood) {
    Random random(wood.seed);
    const auto ground = [&](float x) {
        return wood.foot + wood.spread * gradientNoise(x / 420, 0.5f, wood.seed);
    };
    cairo_move_to(cairo, 0, kHeight);
    for (int x = 0; x <= kWidth; x += 8) {
        const auto place = static_cast<float>(x);
        cairo_line_to(cairo, x,
                      ground(place) + 4 * fractalNoise(place / 14, 0.3f, 3, wood.seed + 5));
    }
    cairo_line_to(cairo, kWidth, kHeight);
    cairo_fill(cairo);
    for (int i = 0; i < wood.trees; ++i) {
        const float x = (static_cast<float>(i) + random.range(-0.3f, 1.3f)) * kWidth /
                        static_cast<float>(wood.trees);
        // Taller towards the sides: the middle stays open for what stands behind.
        const float side = std::fabs(x / kWidth - 0.5f) * 2;
        const float tall = wood.tall * (0.45f + 0.62f * side * side) * random.range(0.7f, 1.28f);
        // The front row leaves gaps in the middle, through which the mist behind it shows.
        const bool gap = random.chance(wood.trees < 60 ? 0.7f * (1 - side) : 0.0f);
        if (!gap) addSpruce(cairo, random, x, ground(x) + tall * 0.06f + 6, tall);
    }
}

}  // namespace

Layer paintForest() {
    Layer layer(kWidth, kHeight);
    for (const Wood& wood : kWoods) {
        const Mask mask =
            Mask::drawn(kWidth, kHeight, [&](cairo_t* cairo) { drawWood(cairo, wood); });
        layer.cover(mask, [&](int x, int y) {
            const auto py = static_cast<float>(y);
            const float drift =
                34 * fractalNoise(static_cast<float>(x) / 260, py / 90, 4, wood.seed);
            const float low = smoothstep(wood.foot - wood.tall * 0.75f, wood.foot + 30, py + drift);
            return mix(wood.crown, wood.floor, low);
        });
    }
    return layer;
}

}  // namespace pictures
