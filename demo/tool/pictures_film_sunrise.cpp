// The film's return: the same city with the sun coming up behind it, and the burst of light that
// dodges everything.
#include <array>

#include "pictures_film.h"
#include "pictures_towers.h"

namespace pictures {

namespace {

Layer paintSky() {
    constexpr std::array kStops{Stop{0, hexColour(0x243a80)}, Stop{0.3f, hexColour(0x6a5aa8)},
                                Stop{0.55f, hexColour(0xe87a80)}, Stop{0.8f, hexColour(0xffb868)},
                                Stop{1, hexColour(0xffe0a0)}};
    constexpr std::array kLights{SkyLight{560, 430, 190, hexColour(0xffc060), 0.55f}};
    Layer layer = paintedSky(1120, 600, kStops, kLights);
    addClouds(layer, {280, 0.56f, hexColour(0xffc8a0), hexColour(0x8a5a98), 0.85f, 77});
    return layer;
}

Layer paintSun() {
    constexpr int kSize = 480;
    Layer layer(kSize, kSize);
    const Mask disc = drawnMask(kSize, kSize, [](Pen& pen) { pen.circle(240, 240, 150); });
    layer.light(disc.blurred(34), hexColour(0xffb050), 0.8f);
    layer.cover(disc, [](int, int y) {
        return mix(hexColour(0xfff6d0), hexColour(0xffb060),
                   smoothstep(120, 390, static_cast<float>(y)));
    });
    return layer;
}

Layer row(const TowerRow& look) {
    Layer layer(look.width, look.height);
    paintTowerRow(layer, look, towersOf(look));
    return layer;
}

Layer paintFar() {
    return row({71,
                170,
                190,
                24,
                56,
                {5, 8, 0.55f, 0.45f, 0.05f},
                hexColour(0xb87898),
                kGold,
                hexColour(0xffc890),
                40,
                0.9f,
                0.4f,
                0,
                2200,
                380});
}
Layer paintMiddle() {
    return row({92,
                250,
                240,
                58,
                120,
                {9, 13, 0.54f, 0.48f, 0.06f},
                hexColour(0x7a4a80),
                kGold,
                hexColour(0xf09a88),
                120,
                0.8f,
                0.5f,
                0,
                2320,
                560});
}
Layer paintNear() {
    return row({131,
                380,
                300,
                130,
                240,
                {19, 27, 0.52f, 0.52f, 0.08f},
                hexColour(0x3c2a5c),
                kOrange,
                hexColour(0xa85a78),
                260,
                0.7f,
                0.7f,
                0,
                2560,
                760});
}

// The roof's edge, with the two of the street sitting on it, and the cat.
Layer paintEdge() {
    constexpr int kWidth = 2700, kHeight = 520;
    return drawnLayer(kWidth, kHeight, [](Pen& pen) {
        pen.flat(hexColour(0x1c1030)).box(0, 210, kWidth, 310);
        pen.flat(hexColour(0xffb070), 0.9).box(0, 208, kWidth, 4);
        pen.down(212, 520, {{0, hexColour(0x3a2048)}, {1, hexColour(0x0c0818)}})
            .box(0, 212, kWidth, 308);
        pen.flat(hexColour(0x1c1030))
            .box(520, 40, 120, 180)
            .box(506, 28, 148, 20)
            .box(2060, 90, 260, 130);
        pen.line({{2190, 92}, {2190, -10}}, 6)
            .line({{2130, 20}, {2250, 20}}, 4)
            .line({{2146, 46}, {2234, 46}}, 4);
        pen.flat(hexColour(0xffb070), 0.9)
            .box(636, 48, 4, 160)
            .box(2060, 88, 260, 4)
            .box(652, 28, 3, 20);
    });
}

Layer paintPair() {
    return drawnLayer(520, 420, [](Pen& pen) {
        pen.flat(hexColour(0x140a20));
        const auto sitter = [&](double x, double scale) {
            const auto at = [&](double dx, double dy) {
                return Dot{x + dx * scale, 330 + dy * scale};
            };
            pen.oval(at(0, -246).x, at(0, -246).y, 38 * scale, 46 * scale);
            pen.blob({at(-20, -206), at(20, -206), at(72, -168), at(84, -60), at(76, 8), at(-76, 8),
                      at(-84, -60), at(-72, -168)});
        };
        sitter(170, 0.94);
        sitter(310, 0.86);
        pen.curve({{240, 190}, {270, 170}, {330, 196}, {372, 236}}, 26);
        pen.curve({{300, 70}, {324, 88}, {346, 136}, {340, 176}}, 20);
        pen.flat(hexColour(0xffc080), 0.95);
        pen.curve({{176, 58}, {200, 76}, {206, 110}, {194, 138}}, 4)
            .curve({{312, 76}, {340, 92}, {352, 136}, {346, 180}}, 4);
        pen.curve({{136, 60}, {140, 56}, {176, 58}}, 3)
            .curve({{108, 176}, {94, 230}, {92, 280}}, 3.5);
        pen.curve({{366, 196}, {380, 240}, {382, 300}}, 3.5);
    });
}

// Light that dodges what lies under it: black leaves it as it is, white burns it out. It covers the
// frame, from the sun at its middle height.
Layer paintBurst() {
    constexpr int kWidth = 960, kHeight = 540;
    Layer layer(kWidth, kHeight);
    layer.fill([](int x, int y) {
        const float dx = (static_cast<float>(x) - 480) / 540,
                    dy = (static_cast<float>(y) - 300) / 540;
        const float far = std::sqrt(dx * dx + dy * dy), angle = std::atan2(dy, dx);
        const float turn = angle / (2 * kPi) * 24;
        const float rays =
            smoothstep(0.0f, 0.5f, fractalNoise(turn + 24, 0.5f, 3, 31, {24, 0}) + 0.1f);
        const float core = std::exp(-far * far * 26), halo = std::exp(-far * 3.4f);
        const float shaft = rays * std::exp(-far * 2.0f) * smoothstep(0.02f, 0.2f, far);
        const float ring = std::exp(-std::pow((far - 0.42f) / 0.02f, 2.0f)) * 0.10f;
        return hexColour(0xffe8b8) * (core * 0.95f) + hexColour(0xff9a50) * (halo * 0.55f) +
               hexColour(0xffb468) * (shaft * 0.55f) + hexColour(0x60a0ff) * ring;
    });
    return layer;
}

constexpr PictureEntry kPictures[] = {
    {"film/sunrise-sky.png", PngColour::Rgb, paintSky},
    {"film/Neon-sun.png", PngColour::Rgba, paintSun},
    {"film/sunrise-far.png", PngColour::Rgba, paintFar},
    {"film/sunrise-middle.png", PngColour::Rgba, paintMiddle},
    {"film/sunrise-near.png", PngColour::Rgba, paintNear},
    {"film/sunrise-edge.png", PngColour::Rgba, paintEdge},
    {"film/sunrise-pair.png", PngColour::Rgba, paintPair},
    {"film/burst.png", PngColour::Rgb, paintBurst},
};

}  // namespace

std::span<const PictureEntry> filmSunrise() {
    return kPictures;
}

}  // namespace pictures
