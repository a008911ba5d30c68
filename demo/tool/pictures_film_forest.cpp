// The film's morning: a forest at dawn, and balloons over misty hills.
#include <array>

#include "pictures_film.h"
#include "pictures_trees.h"

namespace pictures {

namespace {

Layer paintSky() {
    constexpr std::array kStops{Stop{0, hexColour(0x2a4a8a)}, Stop{0.35f, hexColour(0x8a7ab8)},
                                Stop{0.62f, hexColour(0xf0a090)}, Stop{0.85f, hexColour(0xffd8a0)},
                                Stop{1, hexColour(0xfff0c8)}};
    constexpr std::array kLights{SkyLight{340, 330, 200, hexColour(0xffd080), 0.55f}};
    Layer layer = paintedSky(1120, 600, kStops, kLights);
    addClouds(layer, {230, 0.42f, hexColour(0xffd0b0), hexColour(0x9a80b0), 0.7f, 19});
    return layer;
}

struct WoodRow {
    int width, height, trees;
    float tall;
    uint32_t seed;
    Colour crown, foot;
};

Layer woodRow(const WoodRow& look) {
    const auto height = static_cast<float>(look.height);
    const Mask mask = drawnMask(look.width, look.height, [&](Pen& pen) {
        Random random(look.seed);
        const auto ground = [&](float x) {
            return height * 0.80f + height * 0.09f * gradientNoise(x / 380, 0.5f, look.seed);
        };
        for (int i = 0; i < look.trees; ++i) {
            const float share =
                (static_cast<float>(i) + random.unit()) / static_cast<float>(look.trees);
            const float x = share * static_cast<float>(look.width);
            const float side = std::fabs(share - 0.5f) * 2;
            addSpruce(pen.cairo(), random, x, ground(x) + 14,
                      look.tall * (0.5f + 0.5f * side) * random.range(0.65f, 1.2f));
        }
        cairo_move_to(pen.cairo(), 0, look.height);
        for (int x = 0; x <= look.width; x += 8)
            cairo_line_to(pen.cairo(), x, ground(static_cast<float>(x)));
        cairo_line_to(pen.cairo(), look.width, look.height);
        cairo_fill(pen.cairo());
    });
    return shaded(mask, height * 0.15f, height * 0.95f, look.crown, look.foot);
}

Layer paintWoodFar() {
    return woodRow({1800, 260, 130, 120, 4, hexColour(0xb08aa8), hexColour(0xffd0a8)});
}
Layer paintWoodMiddle() {
    return woodRow({2100, 420, 84, 280, 6, hexColour(0x6a5a86), hexColour(0xe8a890)});
}
Layer paintWoodNear() {
    return woodRow({2400, 640, 46, 500, 12, hexColour(0x2c2a50), hexColour(0x9a6470)});
}

// Two trunks with their lowest boughs, a rim of sun on the left sides.
Layer paintTrunks() {
    constexpr int kWidth = 900, kHeight = 1500;
    return drawnLayer(kWidth, kHeight, [](Pen& pen) {
        Random random(3);
        const auto trunk = [&](double x, double foot, double wide) {
            pen.across(
                x - wide, x + wide,
                {{0, hexColour(0x6a3c3c)}, {0.18, hexColour(0x2a1a30)}, {1, hexColour(0x0c0a1c)}});
            pen.shape({{x - wide * 0.62, -10},
                       {x + wide * 0.6, -10},
                       {x + wide * 0.8, foot - 200},
                       {x + wide * 1.7, foot},
                       {x - wide * 1.8, foot},
                       {x - wide * 0.85, foot - 200}});
            for (int i = 0; i < 90; ++i) {
                const double y = random.range(0, static_cast<float>(foot) - 60),
                             at = x + wide * random.range(-0.6f, 0.6f);
                pen.flat(hexColour(0x080614), 0.5)
                    .line({{at, y}, {at + random.range(-5, 5), y + random.range(20, 70)}}, 2.4);
            }
            pen.flat(hexColour(0xffb878), 0.85)
                .line({{x - wide * 0.62, 0}, {x - wide * 0.84, foot - 200}}, 4);
            pen.flat(hexColour(0x151026));
            for (int i = 0; i < 7; ++i) {
                const double y = 60 + i * 120 + random.range(-30, 30), side = i % 2 ? 1 : -1,
                             reach = random.range(120, 260);
                pen.curve({{x, y}, {x + side * reach * 0.5, y - 6}, {x + side * reach, y + 46}}, 9);
                for (int k = 2; k < 26; ++k) {
                    const double at = x + side * reach * k / 26.0, h = y + 46.0 * k * k / 676;
                    const double tall = random.range(16, 62) * (1.1 - k / 40.0);
                    pen.shape(
                        {{at - 7, h}, {at + 7, h}, {at + side * random.range(0, 22), h + tall}});
                }
            }
        };
        trunk(300, 1480, 74);
        trunk(690, 1400, 46);
        pen.flat(hexColour(0x0c0a1c))
            .blob({{-40, 1440}, {300, 1390}, {700, 1370}, {960, 1440}, {960, 1560}, {-40, 1560}});
    });
}

Layer paintDeer() {
    return drawnLayer(520, 560, [](Pen& pen) {
        pen.flat(hexColour(0x1a1430));
        pen.blob({{120, 300},
                  {170, 262},
                  {300, 270},
                  {370, 250},
                  {410, 290},
                  {390, 360},
                  {300, 384},
                  {180, 376},
                  {126, 350}});
        pen.blob(
            {{350, 300}, {372, 220}, {398, 168}, {430, 160}, {440, 200}, {420, 260}, {410, 310}});
        pen.blob(
            {{394, 172}, {420, 130}, {452, 136}, {500, 172}, {494, 192}, {446, 196}, {412, 196}});
        pen.shape({{412, 140}, {384, 112}, {398, 150}});
        pen.line({{424, 132}, {414, 84}, {372, 34}}, 8)
            .line({{414, 84}, {436, 40}}, 6)
            .line({{394, 60}, {376, 66}}, 5);
        pen.line({{438, 130}, {446, 84}, {490, 30}}, 8)
            .line({{446, 84}, {438, 36}}, 6)
            .line({{468, 58}, {496, 62}}, 5);
        for (const double x : {158.0, 200.0, 344.0, 386.0}) {
            const double back = x < 250 ? -16 : 4;
            pen.shape({{x - 20, 330},
                       {x + 20, 330},
                       {x + back + 7, 440},
                       {x + 5, 540},
                       {x - 7, 540},
                       {x + back - 7, 440}});
            pen.shape({{x - 8, 536}, {x + 8, 536}, {x + 12, 546}, {x - 8, 546}});
        }
        pen.blob({{124, 292}, {104, 300}, {98, 340}, {114, 344}, {130, 320}});
        pen.flat(hexColour(0xffc890), 0.9)
            .curve({{122, 298}, {170, 262}, {300, 270}, {362, 246}, {396, 170}, {420, 132}}, 4);
    });
}

Layer paintKnoll() {
    const HillLook look{120, 60, 700, 20, 15};
    Layer layer =
        shaded(hillMask(2700, 520, look), 60, 360, hexColour(0x5a3a5a), hexColour(0x120c20));
    layer.draw([&](cairo_t* cairo) {
        Pen pen(cairo);
        Random random(20);
        for (int i = 0; i < 900; ++i) {
            const float x = random.range(0, 2700), y = hillHeight(look, x) + random.range(0, 30);
            pen.flat(mix(hexColour(0x3a2848), hexColour(0xc88a70), random.unit() * random.unit()));
            pen.line({{x, y + 14}, {x + random.range(-9, 9), y - random.range(10, 34)}}, 2.2);
        }
    });
    return layer;
}

Layer paintFern() {
    return softened(
        drawnLayer(1300, 420,
                   [](Pen& pen) {
                       Random random(50);
                       pen.flat(hexColour(0x08060f)).box(0, 330, 1300, 90);
                       for (int i = 0; i < 30; ++i) {
                           const double x = random.range(0, 1300), tall = random.range(140, 330),
                                        lean = random.range(-150, 150);
                           for (int leaf = 0; leaf < 18; ++leaf) {
                               const double s = leaf / 18.0, px = x + lean * s * s,
                                            py = 380 - tall * s + lean * lean * s * s * 0.002;
                               const double reach = 44 * (1 - s) + 5;
                               pen.shape({{px - reach, py - 10},
                                          {px, py + 8},
                                          {px + reach, py - 10},
                                          {px, py - 3}});
                           }
                       }
                   }),
        3);
}

// --- the balloons

Layer paintMorning() {
    constexpr std::array kStops{Stop{0, hexColour(0x3a7ac0)}, Stop{0.45f, hexColour(0x90b8d8)},
                                Stop{0.75f, hexColour(0xffd8b0)}, Stop{1, hexColour(0xffc090)}};
    constexpr std::array kLights{SkyLight{800, 400, 210, hexColour(0xffe0a0), 0.6f}};
    Layer layer = paintedSky(1120, 600, kStops, kLights);
    addClouds(layer, {270, 0.50f, hexColour(0xfff4e4), hexColour(0xb0a8d0), 0.85f, 27});
    return layer;
}

Layer paintHillsFar() {
    return shaded(hillMask(1800, 360, {110, 190, 360, 26, 71}), 60, 300, hexColour(0x8a94c4),
                  hexColour(0xffe0c0));
}
Layer paintHillsMiddle() {
    return shaded(hillMask(2100, 420, {120, 200, 420, 22, 84}), 60, 360, hexColour(0x5a6aa0),
                  hexColour(0xf0c8b8));
}
Layer paintHillsNear() {
    return shaded(hillMask(2500, 520, {130, 190, 520, 26, 95}), 60, 460, hexColour(0x2c4678),
                  hexColour(0xb8a0b8));
}

Layer balloon(Colour first, Colour second, uint32_t pattern) {
    constexpr int kWidth = 420, kHeight = 620;
    return drawnLayer(kWidth, kHeight, [&](Pen& pen) {
        // Gores: ovals of falling width, alternating in colour.
        constexpr int kGores = 7;
        for (int i = 0; i < kGores; ++i) {
            const double radius = 196 * std::cos(i * M_PI / 2 / kGores);
            pen.flat(i % 2 == static_cast<int>(pattern % 2) ? first : second);
            cairo_save(pen.cairo());
            cairo_rectangle(pen.cairo(), 0, 0, kWidth, 500);
            cairo_clip(pen.cairo());
            pen.blob({{210, 12},
                      {210 + radius * 0.75, 66},
                      {210 + radius, 200},
                      {210 + radius * 0.72, 340},
                      {210 + radius * 0.2, 476},
                      {210 - radius * 0.2, 476},
                      {210 - radius * 0.72, 340},
                      {210 - radius, 200},
                      {210 - radius * 0.75, 66}});
            cairo_restore(pen.cairo());
        }
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_ATOP);
        pen.flat(kCream, 0.9).box(0, 196, kWidth, 26);
        pen.across(10, 410,
                   {{0, hexColour(0x101040), 0.45},
                    {0.5, kInk, 0.05},
                    {0.8, kCream, 0.28},
                    {1, hexColour(0xfff0d0), 0.5}});
        pen.box(0, 0, kWidth, 500);
        pen.round(210, 480, 150, {{0, hexColour(0xffd070), 0.8}, {1, kOrange, 0}})
            .box(0, 300, kWidth, 200);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_OVER);
        pen.flat(hexColour(0x3a2430))
            .line({{176, 476}, {184, 556}}, 2.5)
            .line({{244, 476}, {236, 556}}, 2.5);
        pen.line({{210, 478}, {210, 556}}, 2);
        pen.down(552, 604, {{0, hexColour(0xb07848)}, {1, hexColour(0x5a3428)}})
            .roundBox(178, 552, 64, 52, 8);
        pen.flat(hexColour(0x2a1a24))
            .circle(200, 540, 8)
            .circle(222, 538, 8)
            .box(193, 544, 14, 10)
            .box(215, 544, 14, 10);
    });
}

Layer paintBalloonRose() {
    return balloon(hexColour(0xe83a6a), hexColour(0xffb050), 0);
}
Layer paintBalloonBlue() {
    return balloon(hexColour(0x2a6ad0), hexColour(0x38c8d8), 1);
}
Layer paintBalloonViolet() {
    return balloon(hexColour(0x7a3ac8), hexColour(0xff80b8), 0);
}

Layer paintFlame() {
    Layer layer(120, 160);
    layer.spot(60, 90, 20, hexColour(0xff8030), 0.8f);
    layer.spot(60, 84, 9, hexColour(0xffe0a0), 1.6f);
    layer.spot(60, 66, 6, hexColour(0xffd080), 1.0f);
    return layer;
}

// Pine tops right under the lens.
Layer paintTops() {
    const Mask mask = drawnMask(1300, 360, [](Pen& pen) {
        Random random(66);
        for (int i = 0; i < 18; ++i) {
            const float x = random.range(0, 1300), tall = random.range(160, 330);
            addSpruce(pen.cairo(), random, x, 400, tall);
        }
        pen.box(0, 330, 1300, 30);
    });
    return softened(shaded(mask, 60, 340, hexColour(0x16284c), hexColour(0x0a1430)), 1.5f);
}

constexpr PictureEntry kPictures[] = {
    {"film/forest-sky.png", PngColour::Rgb, paintSky},
    {"film/forest-far.png", PngColour::Rgba, paintWoodFar},
    {"film/forest-middle.png", PngColour::Rgba, paintWoodMiddle},
    {"film/forest-near.png", PngColour::Rgba, paintWoodNear},
    {"film/forest-trunks.png", PngColour::Rgba, paintTrunks},
    {"film/deer.png", PngColour::Rgba, paintDeer},
    {"film/forest-knoll.png", PngColour::Rgba, paintKnoll},
    {"film/fern.png", PngColour::Rgba, paintFern},
    {"film/hills-sky.png", PngColour::Rgb, paintMorning},
    {"film/hills-far.png", PngColour::Rgba, paintHillsFar},
    {"film/hills-middle.png", PngColour::Rgba, paintHillsMiddle},
    {"film/hills-near.png", PngColour::Rgba, paintHillsNear},
    {"film/balloon-rose.png", PngColour::Rgba, paintBalloonRose},
    {"film/balloon-blue.png", PngColour::Rgba, paintBalloonBlue},
    {"film/balloon-violet.png", PngColour::Rgba, paintBalloonViolet},
    {"film/Neon-flame.png", PngColour::Rgba, paintFlame},
    {"film/hills-tops.png", PngColour::Rgba, paintTops},
};

}  // namespace

std::span<const PictureEntry> filmForest() {
    return kPictures;
}

}  // namespace pictures
