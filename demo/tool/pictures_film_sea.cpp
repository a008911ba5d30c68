// The film's coast: a lighthouse in a rising storm.
#include <array>

#include "pictures_film.h"

namespace pictures {

namespace {

Layer paintSky() {
    constexpr std::array kStops{Stop{0, hexColour(0x0a1230)}, Stop{0.45f, hexColour(0x1e3a6a)},
                                Stop{0.8f, hexColour(0x4a8090)}, Stop{1, hexColour(0xe8a878)}};
    constexpr std::array kLights{SkyLight{860, 560, 220, hexColour(0xff9060), 0.4f}};
    Layer layer = paintedSky(1120, 560, kStops, kLights);
    addClouds(layer, {330, 0.72f, hexColour(0x5a7a98), hexColour(0x101a38), 0.92f, 63});
    return layer;
}

// A row of waves, its crest lit; the picture repeats from side to side.
struct Wave {
    int height;
    double length, rise;
    Colour crest, body, foot;
    uint32_t seed;
};

Layer wave(const Wave& look) {
    constexpr int kWidth = 1600;
    const auto crest = [&](double x) {
        const double turn = 2 * M_PI * x / kWidth;
        const double cycles = std::round(kWidth / look.length);
        const double base = std::sin(turn * cycles) * 0.6 +
                            std::sin(turn * (cycles * 2 + 1) + look.seed) * 0.22 +
                            std::sin(turn * (cycles - 2) + look.seed * 2) * 0.35;
        // Steeper crests than troughs, and small waves on the large ones.
        const double steep = base - 0.25 * std::cos(2 * turn * cycles) * std::fabs(base);
        const double chop =
            gradientNoise(static_cast<float>(x) / 16, 0.5f, look.seed, {100, 0}) * 0.16 +
            gradientNoise(static_cast<float>(x) / 40, 0.5f, look.seed + 1, {40, 0}) * 0.22;
        return look.rise * (1.5 - steep - chop);
    };
    Layer layer(kWidth, look.height);
    Mask mask(kWidth, look.height);
    for (int x = 0; x < kWidth; ++x) {
        const auto top = static_cast<float>(crest(x));
        for (int y = 0; y < look.height; ++y)
            mask.at(x, y) = std::clamp(static_cast<float>(y) + 1 - top, 0.0f, 1.0f);
    }
    layer.cover(mask, [&](int x, int y) {
        const float depth = static_cast<float>(y) - static_cast<float>(crest(x));
        const auto px = static_cast<float>(x);
        const Period period{20, 0};
        const float ripple =
            fractalNoise(px / 80, (static_cast<float>(y) + depth * 0.3f) / 9, 3, look.seed, period);
        Colour colour = mix(look.body, look.foot,
                            smoothstep(0, static_cast<float>(look.height) * 0.75f, depth));
        colour =
            mix(colour, look.crest, smoothstep(0.18f, 0.5f, ripple) * 0.5f * std::exp(-depth / 70));
        return mix(colour, look.crest,
                   0.85f * std::exp(-depth / (3 + 4 * std::max(0.0f, ripple + 0.4f))));
    });
    return layer;
}

Layer paintWaveFar() {
    return wave({180, 130, 9, hexColour(0xd8b8a0), hexColour(0x4a7a90), hexColour(0x1e4868), 2});
}
Layer paintWaveMiddle() {
    return wave({260, 270, 20, hexColour(0xa8d0d0), hexColour(0x24587a), hexColour(0x0e2a4c), 3});
}
Layer paintWaveNear() {
    return wave({420, 540, 44, hexColour(0x98c8d8), hexColour(0x123a60), hexColour(0x061428), 5});
}

Layer paintRock() {
    constexpr int kWidth = 1300, kHeight = 520;
    const Mask mask = drawnMask(kWidth, kHeight, [](Pen& pen) {
        pen.shape({{20, 520},
                   {70, 420},
                   {150, 390},
                   {210, 300},
                   {290, 286},
                   {360, 200},
                   {470, 178},
                   {560, 150},
                   {760, 146},
                   {850, 190},
                   {930, 210},
                   {990, 300},
                   {1080, 340},
                   {1140, 420},
                   {1240, 450},
                   {1290, 520}});
    });
    Layer layer(kWidth, kHeight);
    layer.cover(mask, [](int x, int y) {
        const auto px = static_cast<float>(x), py = static_cast<float>(y);
        // Slabs: noise drawn out down the slope, lit from the right where the evening is.
        const float a = ridgedNoise(px / 120 + py / 300, py / 46, 4, 8),
                    b = ridgedNoise((px + 10) / 120 + py / 300, py / 46, 4, 8);
        const float lit = smoothstep(-0.05f, 0.12f, a - b);
        Colour colour = mix(hexColour(0x0c1428), hexColour(0x4a5878), lit * 0.8f);
        colour = mix(colour, hexColour(0xd89a78), lit * 0.4f * smoothstep(500, 1300, px));
        return mix(colour, hexColour(0x060c1c), smoothstep(240, 520, py));
    });
    return layer;
}

Layer paintTower() {
    return drawnLayer(360, 860, [](Pen& pen) {
        const auto half = [](double y) { return 62 + 42 * (y - 200) / 640; };
        for (int band = 0; band < 6; ++band) {
            const double y0 = 200 + band * 107.0, y1 = y0 + 108;
            const bool red = band % 2 == 0;
            pen.across(180 - half(y1), 180 + half(y1),
                       {{0, red ? hexColour(0x3c1224) : hexColour(0x4a5070)},
                        {0.6, red ? hexColour(0xb03040) : hexColour(0xd8d4d8)},
                        {0.9, red ? hexColour(0xe86850) : hexColour(0xffeadc)},
                        {1, red ? hexColour(0xa84040) : hexColour(0xd0b8b0)}});
            pen.shape({{180 - half(y0), y0},
                       {180 + half(y0), y0},
                       {180 + half(y1), y1},
                       {180 - half(y1), y1}});
        }
        pen.flat(hexColour(0x0c1024))
            .box(96, 186, 168, 16)
            .box(104, 148, 4, 40)
            .box(252, 148, 4, 40)
            .box(100, 148, 160, 4);
        for (int i = 0; i < 9; ++i) pen.box(112 + i * 17.0, 150, 2, 36);
        pen.down(84, 186, {{0, hexColour(0xfff0b8)}, {1, hexColour(0xffb860)}})
            .box(134, 84, 92, 102);
        pen.flat(hexColour(0x0c1024));
        for (const double x : {130.0, 160.0, 196.0, 224.0}) pen.box(x, 84, 5, 102);
        pen.blob({{118, 88}, {140, 50}, {180, 30}, {220, 50}, {242, 88}})
            .box(116, 80, 128, 10)
            .line({{180, 34}, {180, 6}}, 4);
        for (const double y : {300.0, 470.0, 640.0}) {
            pen.flat(hexColour(0x0c1024)).roundBox(166, y, 28, 44, 12);
            pen.flat(hexColour(0xffc878)).roundBox(170, y + 4, 20, 36, 9);
        }
        pen.flat(hexColour(0x1a1428)).roundBox(150, 776, 60, 80, 26);
        pen.flat(hexColour(0xffb868), 0.5).roundBox(156, 784, 48, 76, 22);
    });
}

Layer paintLantern() {
    Layer layer(240, 240);
    layer.spot(120, 120, 34, hexColour(0xffc878), 0.5f);
    layer.spot(120, 120, 14, hexColour(0xfff4d8), 1.8f);
    return layer;
}

Layer paintShip() {
    Layer layer = drawnLayer(560, 300, [](Pen& pen) {
        pen.flat(hexColour(0x0a1024));
        pen.blob({{30, 196}, {120, 206}, {420, 206}, {536, 180}, {500, 270}, {80, 276}});
        pen.box(120, 130, 240, 80).box(150, 84, 160, 50).box(190, 40, 34, 50).box(250, 30, 34, 60);
        pen.line({{400, 200}, {400, 50}}, 5)
            .line({{400, 60}, {520, 184}}, 2)
            .line({{400, 60}, {284, 90}}, 2);
        pen.flat(hexColour(0xb03848)).box(250, 44, 34, 12).box(190, 54, 34, 12);
        pen.flat(hexColour(0xffd080));
        for (int i = 0; i < 8; ++i) pen.box(134 + i * 28.0, 152, 14, 13);
        for (int i = 0; i < 5; ++i) pen.box(164 + i * 28.0, 100, 14, 13);
        for (int i = 0; i < 11; ++i) pen.circle(110 + i * 34.0, 226, 4);
        pen.flat(hexColour(0xffa880), 0.7).curve({{420, 205}, {500, 192}, {536, 180}}, 3);
    });
    layer.spot(400, 50, 16, hexColour(0xff4050), 0.9f);
    return layer;
}

Layer paintFoam() {
    Layer layer(500, 260);
    Mask mask(500, 260);
    Random random(90);
    for (int i = 0; i < 900; ++i) {
        const float u = random.range(-1, 1), v = random.unit();
        const float x = 250 + u * 210 * (0.4f + 0.6f * v),
                    y = 250 - (1 - u * u) * 220 * v * random.range(0.4f, 1);
        const float size = random.range(1, 5) * (1.3f - v);
        const int reach = static_cast<int>(size) + 1;
        for (int dy = -reach; dy <= reach; ++dy)
            for (int dx = -reach; dx <= reach; ++dx) {
                const int px = static_cast<int>(x) + dx, py = static_cast<int>(y) + dy;
                if (px < 0 || py < 0 || px >= 500 || py >= 260) continue;
                const float far = std::sqrt(static_cast<float>(dx * dx + dy * dy)) / size;
                mask.at(px, py) = std::max(mask.at(px, py), 0.8f * (1 - smoothstep(0.5f, 1, far)));
            }
    }
    layer.cover(mask.blurred(7), hexColour(0xb8d8e0), 0.8f);
    layer.cover(mask, hexColour(0xe8f4f4), 0.8f);
    return layer;
}

constexpr PictureEntry kPictures[] = {
    {"film/sea-sky.png", PngColour::Rgb, paintSky},
    {"film/wave-far.png", PngColour::Rgba, paintWaveFar},
    {"film/wave-middle.png", PngColour::Rgba, paintWaveMiddle},
    {"film/wave-near.png", PngColour::Rgba, paintWaveNear},
    {"film/sea-rock.png", PngColour::Rgba, paintRock},
    {"film/lighthouse.png", PngColour::Rgba, paintTower},
    {"film/Neon-lantern.png", PngColour::Rgba, paintLantern},
    {"film/ship.png", PngColour::Rgba, paintShip},
    {"film/foam.png", PngColour::Rgba, paintFoam},
};

}  // namespace

std::span<const PictureEntry> filmSea() {
    return kPictures;
}

}  // namespace pictures
