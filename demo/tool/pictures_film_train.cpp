// The film's journey: a night train over a viaduct, and the compartment that looks out of it.
#include <array>

#include "pictures_film.h"
#include "pictures_trees.h"

namespace pictures {

namespace {

Layer paintSky() {
    constexpr std::array kStops{Stop{0, hexColour(0x060a2a)}, Stop{0.4f, hexColour(0x14246e)},
                                Stop{0.7f, hexColour(0x3a5ab0)}, Stop{0.9f, hexColour(0x90a0d8)},
                                Stop{1, hexColour(0xd8b8d0)}};
    constexpr std::array kLights{SkyLight{330, 250, 210, hexColour(0x9ab8ff), 0.5f}};
    Layer layer = paintedSky(1120, 600, kStops, kLights);
    Random random(17);
    for (int i = 0; i < 300; ++i) {
        const float y = random.range(0, 400);
        layer.spot(random.range(0, 1120), y, random.range(0.5f, 0.95f), {0.9f, 0.95f, 1},
                   random.range(0.1f, 0.8f) * (1 - y / 420));
    }
    return layer;
}

// A ridge with snow on its upper slopes, the side towards the moon lit.
Layer ridge(int width, int height, const HillLook& look, Colour snow, Colour rock, Colour foot) {
    const Mask mask = hillMask(width, height, look);
    Layer layer(width, height);
    layer.cover(mask, [&](int x, int y) {
        const auto px = static_cast<float>(x), py = static_cast<float>(y);
        const float depth = py - hillHeight(look, px);
        const float s = (px + depth * 0.35f) / (look.scale * 0.16f),
                    t = depth / (look.scale * 0.4f);
        const float slope = ridgedNoise(s + 0.06f, t, 3, look.seed + 3) -
                            ridgedNoise(s - 0.06f, t, 3, look.seed + 3);
        const float lit = smoothstep(-0.10f, 0.16f, -slope);
        const float white =
            1 - smoothstep(look.rise * 0.18f, look.rise * 0.75f,
                           depth + 60 * fractalNoise(px / 90, py / 60, 3, look.seed + 5));
        const Colour colour =
            mix(mix(rock, snow, white * 0.8f), mix(rock, kInk, 0.25f), (1 - lit) * 0.75f);
        return mix(colour, foot, smoothstep(look.rise * 0.3f, look.rise * 1.5f, depth));
    });
    return layer;
}

Layer paintPeaks() {
    return ridge(1700, 420, {170, 260, 420, 40, 44}, hexColour(0xc8d4ff), hexColour(0x4a5ea8),
                 hexColour(0x7a86c4));
}

Layer paintPeaksNear() {
    return ridge(1900, 460, {190, 250, 330, 30, 61}, hexColour(0x8a9ae0), hexColour(0x26346e),
                 hexColour(0x33406e));
}

Layer paintLake() {
    constexpr int kWidth = 1200, kHeight = 200;
    Layer layer(kWidth, kHeight);
    layer.fill([&](int x, int y) {
        const float px = static_cast<float>(x), down = static_cast<float>(y) / kHeight;
        const float wave =
            fractalNoise(px / (20 + 90 * down), static_cast<float>(y) / (2.5f + 9 * down), 4, 3);
        Colour colour = mix(hexColour(0x7a8ac8), hexColour(0x101c50), smoothstep(0, 0.9f, down));
        const float off = (px - 420) / (46 + 110 * down);
        colour = colour + hexColour(0xd8e4ff) *
                              (std::exp(-off * off) * smoothstep(-0.1f, 0.5f, wave) * 0.8f);
        return colour + hexColour(0x6080d0) * (0.25f * std::max(0.0f, wave));
    });
    return layer;
}

Layer paintViaduct() {
    constexpr int kWidth = 2800, kHeight = 620;
    return drawnLayer(kWidth, kHeight, [](Pen& pen) {
        pen.down(0, kHeight,
                 {{0, hexColour(0x2c3468)}, {0.3, hexColour(0x1a2048)}, {1, hexColour(0x2c3868)}});
        pen.box(0, 40, kWidth, 580);
        pen.flat(hexColour(0x46508c)).box(0, 30, kWidth, 20);
        pen.flat(hexColour(0x8a9ade)).box(0, 28, kWidth, 4);
        for (int row = 0; row < 24; ++row)
            for (int i = 0; i < 50; ++i)
                pen.flat(hexColour(0x0c1030), 0.28)
                    .frame(i * 58.0 + row % 2 * 29, 56 + row * 24.0, 58, 24, 1.2);
        for (int arch = 0; arch < 11; ++arch) {
            const double x = arch * 260 + 20;
            cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_CLEAR);
            pen.roundBox(x + 20, 130, 190, 700, 95);
            cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_OVER);
            pen.flat(hexColour(0x7a8ad0), 0.7);
            pen.curve({{x + 206, 560}, {x + 206, 240}, {x + 180, 166}, {x + 115, 128}}, 4);
            pen.flat(hexColour(0x0a0e28))
                .curve({{x + 115, 128}, {x + 50, 166}, {x + 22, 240}, {x + 22, 620}}, 8);
            pen.flat(hexColour(0x0c1030), 0.6).box(x - 14, 130, 8, 490);
        }
        for (int i = 0; i < 35; ++i) {
            pen.flat(hexColour(0x141a3c));
            pen.box(i * 80.0 + 8, 4, 5, 28);
        }
        pen.box(0, 8, kWidth, 4);
    });
}

Layer paintTrain() {
    constexpr int kWidth = 2600, kHeight = 170;
    Layer layer = drawnLayer(kWidth, kHeight, [](Pen& pen) {
        const auto body = [&](double x, double width) {
            pen.down(
                40, 140,
                {{0, hexColour(0x3c4690)}, {0.2, hexColour(0x1e2454)}, {1, hexColour(0x0c1030)}});
            pen.roundBox(x, 44, width, 94, 12);
            pen.flat(hexColour(0x9aa8f0), 0.9).box(x + 10, 44, width - 20, 2.5);
            pen.flat(kMagenta, 0.8).box(x, 114, width, 5);
            pen.flat(hexColour(0x06081a));
            for (double wheel = x + 40; wheel<x + width - 20; wheel += width> 300 ? 56 : 60) {
                if (wheel > x + 110 && wheel < x + width - 130) continue;
                pen.circle(wheel, 144, 13);
            }
            pen.box(x - 12, 124, 24, 8);
        };
        Random random(5);
        for (int car = 0; car < 5; ++car) {
            const double x = 30 + car * 408;
            body(x, 396);
            for (int i = 0; i < 9; ++i) {
                const double left = x + 24 + i * 39.5;
                pen.down(62, 102, {{0, hexColour(0xfff0c0)}, {1, hexColour(0xffb860)}})
                    .roundBox(left, 62, 30, 38, 5);
                if (!random.chance(0.4f)) continue;
                pen.flat(hexColour(0x2a1a34))
                    .circle(left + 15, 84, 6)
                    .roundBox(left + 6, 90, 18, 12, 5);
            }
        }
        // The engine, with a slanting front.
        pen.down(40, 140,
                 {{0, hexColour(0x4a58b0)}, {0.2, hexColour(0x26306c)}, {1, hexColour(0x0e1236)}});
        pen.blob({{2070, 44},
                  {2320, 42},
                  {2440, 60},
                  {2520, 104},
                  {2530, 132},
                  {2480, 140},
                  {2070, 140}});
        pen.flat(hexColour(0x90e0ff)).shape({{2390, 60}, {2430, 66}, {2480, 92}, {2400, 92}});
        pen.flat(kMagenta, 0.9).box(2070, 114, 452, 5);
        pen.flat(kCream, 0.9);
        letter(pen, "VORN", 2220, 66, 26, 4.5);
        pen.flat(hexColour(0x06081a));
        for (const double wheel : {2120.0, 2180.0, 2390.0, 2450.0}) pen.circle(wheel, 144, 14);
        pen.line({{2170, 44}, {2200, 18}, {2160, 6}}, 4);
    });
    layer.spot(2518, 112, 26, hexColour(0xfff0c0), 0.8f);
    layer.spot(2520, 112, 8, hexColour(0xffffff), 1.6f);
    return layer;
}

Layer wood(int width, int height, int trees, float tall, uint32_t seed, Colour crown, Colour foot) {
    const Mask mask = drawnMask(width, height, [&](Pen& pen) {
        Random random(seed);
        const auto ground = [&](float x) {
            return static_cast<float>(height) * 0.86f + 26 * gradientNoise(x / 300, 0.5f, seed);
        };
        for (int i = 0; i < trees; ++i) {
            const float x = (static_cast<float>(i) + random.unit()) * static_cast<float>(width) /
                            static_cast<float>(trees);
            addSpruce(pen.cairo(), random, x, ground(x) + 12, tall * random.range(0.55f, 1.2f));
        }
        cairo_move_to(pen.cairo(), 0, height);
        for (int x = 0; x <= width; x += 8)
            cairo_line_to(pen.cairo(), x, ground(static_cast<float>(x)));
        cairo_line_to(pen.cairo(), width, height);
        cairo_fill(pen.cairo());
    });
    return shaded(mask, static_cast<float>(height) * 0.2f, static_cast<float>(height) * 0.95f,
                  crown, foot);
}

Layer paintPines() {
    return wood(2600, 360, 70, 230, 9, hexColour(0x0c1438), hexColour(0x1c2858));
}

Layer paintPole() {
    return drawnLayer(360, 1200, [](Pen& pen) {
        pen.flat(hexColour(0x04061a))
            .box(170, 30, 20, 1170)
            .box(60, 90, 240, 14)
            .box(90, 160, 180, 12);
        for (const double x : {70.0, 120.0, 240.0, 290.0}) pen.box(x - 5, 66, 10, 26);
        pen.line({{180, 230}, {90, 104}}, 8).line({{180, 230}, {270, 104}}, 8);
        pen.flat(hexColour(0x5a6ac0), 0.7).box(170, 30, 3, 1170);
    });
}

// Outside, as it flies by: trees drawn out sideways.
Layer paintPassing() {
    Layer sharp = wood(1600, 480, 26, 330, 31, hexColour(0x060a20), hexColour(0x0a1030));
    Layer layer(sharp.width, sharp.height);
    constexpr int kReach = 26;
    for (int y = 0; y < sharp.height; ++y) {
        for (int x = 0; x < sharp.width; ++x) {
            for (int channel = 0; channel < 4; ++channel) {
                float sum = 0;
                for (int i = -kReach; i <= kReach; i += 2)
                    sum += sharp.pixel((x + i + sharp.width) % sharp.width, y)[channel];
                layer.pixel(x, y)[channel] = sum / (kReach + 1);
            }
        }
    }
    return layer;
}

// Panelled wall with a wide window; the hole: x 420 to 1780, y 260 to 900.
Layer paintCabin() {
    constexpr int kWidth = 2200, kHeight = 1300;
    return drawnLayer(kWidth, kHeight, [](Pen& pen) {
        pen.down(0, kHeight,
                 {{0, hexColour(0x1c0e20)}, {0.5, hexColour(0x4a2430)}, {1, hexColour(0x1a0c1c)}});
        pen.box(0, 0, kWidth, kHeight);
        for (int i = 0; i < 20; ++i) {
            pen.flat(hexColour(0x140a18), 0.6)
                .box(i * 112.0, 920, 4, 380)
                .box(i * 112.0, 0, 4, 230);
            pen.flat(hexColour(0x9a5a50), 0.25)
                .box(i * 112.0 + 4, 920, 2, 380)
                .box(i * 112.0 + 4, 0, 2, 230);
        }
        pen.round(380, 700, 560, {{0, hexColour(0xffb060), 0.55}, {1, kOrange, 0}})
            .box(0, 0, kWidth, kHeight);
        pen.round(1100, 560, 900, {{0, hexColour(0x5a7ae0), 0.30}, {1, kIndigo, 0}})
            .box(0, 0, kWidth, kHeight);
        pen.flat(hexColour(0x120818)).roundBox(370, 210, 1460, 740, 70);
        pen.flat(hexColour(0xb87a58)).roundBox(384, 224, 1432, 712, 60);
        pen.down(224, 936, {{0, hexColour(0x6a3c38)}, {1, hexColour(0x3a1e28)}})
            .roundBox(392, 232, 1416, 696, 54);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_CLEAR);
        pen.roundBox(420, 260, 1360, 640, 40);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_OVER);
        pen.flat(hexColour(0x2a141e)).box(1090, 260, 20, 640);
        pen.flat(hexColour(0xb87a58), 0.7).box(1090, 260, 3, 640);
        // Reflection of the lit wall in the pane.
        pen.across(1200, 1700, {{0, {1, 1, 1}, 0.07}, {1, {1, 1, 1}, 0}})
            .shape({{1300, 260}, {1560, 260}, {1360, 900}, {1110, 900}});
    });
}

Layer paintSeat() {
    return drawnLayer(620, 900, [](Pen& pen) {
        pen.across(40, 420,
                   {{0, hexColour(0x3c1230)},
                    {0.5, hexColour(0x8a2c48)},
                    {0.9, hexColour(0xb84a50)},
                    {1, hexColour(0x6a2038)}});
        pen.blob({{70, 40},
                  {200, 10},
                  {310, 50},
                  {350, 300},
                  {380, 560},
                  {390, 920},
                  {20, 920},
                  {30, 400}});
        pen.blob({{300, 560}, {480, 560}, {600, 580}, {610, 650}, {590, 900}, {300, 920}});
        pen.flat(hexColour(0x2a0c22), 0.6).curve({{310, 60}, {346, 300}, {372, 560}}, 6);
        pen.curve({{372, 600}, {480, 606}, {600, 620}}, 4);
        pen.flat(hexColour(0xffb080), 0.6).curve({{200, 14}, {306, 52}, {342, 280}, {370, 550}}, 3);
        pen.flat(kCream, 0.55).roundBox(110, 44, 180, 120, 30);
    });
}

Layer paintTraveller() {
    return drawnLayer(560, 760, [](Pen& pen) {
        pen.flat(hexColour(0x0e0714));
        pen.oval(300, 190, 70, 86);
        pen.blob({{180, 150}, {300, 120}, {420, 156}, {430, 172}, {300, 176}, {176, 172}});
        pen.blob({{230, 150}, {240, 70}, {300, 50}, {360, 74}, {372, 150}});
        pen.blob({{250, 260},
                  {350, 256},
                  {440, 330},
                  {470, 480},
                  {480, 780},
                  {150, 780},
                  {150, 480},
                  {180, 330}});
        pen.curve({{190, 380}, {150, 520}, {60, 560}}, 62);
        pen.flat(hexColour(0x8aa8ff), 0.8).curve({{236, 170}, {228, 210}, {244, 260}}, 4);
        pen.curve({{182, 334}, {152, 460}, {90, 528}}, 4)
            .curve({{236, 146}, {246, 72}, {300, 48}}, 4);
        pen.flat(hexColour(0xffb070), 0.7).curve({{440, 330}, {468, 470}, {478, 700}}, 4);
    });
}

// A table under the window, with a lamp; the plate that shows a picture leans on it.
Layer paintTable() {
    Layer layer = drawnLayer(900, 560, [](Pen& pen) {
        pen.down(300, 350, {{0, hexColour(0xd89060)}, {1, hexColour(0x5a2c30)}})
            .roundBox(60, 300, 780, 40, 12);
        pen.flat(hexColour(0x1a0c18)).box(420, 340, 60, 220);
        pen.flat(hexColour(0x2a1420)).box(208, 190, 14, 112).roundBox(170, 288, 90, 14, 6);
        pen.down(60, 190, {{0, hexColour(0xffb860)}, {1, hexColour(0xfff0c8)}})
            .shape({{170, 70}, {260, 70}, {302, 196}, {128, 196}});
        pen.flat(kCream).roundBox(640, 240, 74, 62, 12);
        pen.flat(hexColour(0xa8a0c0), 0.7).roundBox(690, 240, 24, 62, 10);
        pen.flat(hexColour(0x100814)).shape({{350, 90}, {610, 90}, {622, 302}, {338, 302}});
        pen.flat(hexColour(0x6a7ac8)).line({{352, 91}, {608, 91}}, 2);
    });
    layer.spot(215, 190, 60, hexColour(0xffc878), 0.25f);
    return layer;
}

Layer paintPlate() {
    return drawnLayer(256, 190, [](Pen& pen) {
        pen.down(0, 190, {{0, hexColour(0x80a0f0)}, {1, hexColour(0x4868b0)}})
            .roundBox(2, 2, 252, 186, 8);
    });
}

Layer paintRack() {
    return softened(
        drawnLayer(2400, 220,
                   [](Pen& pen) {
                       pen.flat(hexColour(0x0c0610)).box(0, 160, 2400, 16).box(0, 120, 2400, 8);
                       for (int i = 0; i < 24; ++i) pen.box(30 + i * 104.0, 120, 6, 50);
                       pen.roundBox(420, 20, 330, 140, 20)
                           .roundBox(1500, 50, 260, 110, 40)
                           .roundBox(1800, 10, 200, 150, 16);
                       pen.flat(hexColour(0xb06048), 0.5).box(0, 174, 2400, 3);
                   }),
        2);
}

constexpr PictureEntry kPictures[] = {
    {"film/train-sky.png", PngColour::Rgb, paintSky},
    {"film/train-peaks.png", PngColour::Rgba, paintPeaks},
    {"film/train-peaks-near.png", PngColour::Rgba, paintPeaksNear},
    {"film/train-lake.png", PngColour::Rgb, paintLake},
    {"film/viaduct.png", PngColour::Rgba, paintViaduct},
    {"film/Neon-train.png", PngColour::Rgba, paintTrain},
    {"film/train-pines.png", PngColour::Rgba, paintPines},
    {"film/train-pole.png", PngColour::Rgba, paintPole},
    {"film/train-passing.png", PngColour::Rgba, paintPassing},
    {"film/cabin.png", PngColour::Rgba, paintCabin},
    {"film/cabin-seat.png", PngColour::Rgba, paintSeat},
    {"film/cabin-traveller.png", PngColour::Rgba, paintTraveller},
    {"film/cabin-table.png", PngColour::Rgba, paintTable},
    {"film/Neon Screen-Mask plate.png", PngColour::Rgba, paintPlate},
    {"film/cabin-rack.png", PngColour::Rgba, paintRack},
};

}  // namespace

std::span<const PictureEntry> filmTrain() {
    return kPictures;
}

}  // namespace pictures
