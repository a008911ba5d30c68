// The film's end: a cinema in which the picture of the demo runs, its curtains, and who watches.
#include <array>

#include "pictures_film.h"

namespace pictures {

namespace {

// The hole for the screen: x 560 to 1640, y 240 to 848.
Layer paintHall() {
    constexpr int kWidth = 2200, kHeight = 1300;
    return drawnLayer(kWidth, kHeight, [](Pen& pen) {
        pen.down(0, kHeight,
                 {{0, hexColour(0x16081c)}, {0.5, hexColour(0x2c0e26)}, {1, hexColour(0x0c0412)}})
            .box(0, 0, kWidth, kHeight);
        pen.round(1100, 560, 1100,
                  {{0, hexColour(0x8a4ad8), 0.6}, {0.6, hexColour(0x4a1a60), 0.2}, {1, kIndigo, 0}})
            .box(0, 0, kWidth, kHeight);
        // Panels with lamps along the sides.
        for (const double side : {-1.0, 1.0}) {
            for (int i = 0; i < 3; ++i) {
                const double x = 1100 + side * (720 + i * 150.0), wide = 110;
                pen.down(120, 1000, {{0, hexColour(0x4a1834)}, {1, hexColour(0x1c0818)}})
                    .roundBox(x - wide / 2, 120, wide, 900, 16);
                pen.flat(hexColour(0xd89a58), 0.7).frame(x - wide / 2 + 8, 128, wide - 16, 884, 2);
                pen.round(x, 430, 190, {{0, hexColour(0xffc070), 0.75}, {1, kOrange, 0}})
                    .box(x - wide / 2, 240, wide, 380);
                pen.flat(hexColour(0xfff0c8))
                    .shape({{x - 16, 430}, {x + 16, 430}, {x + 9, 480}, {x - 9, 480}});
                pen.flat(hexColour(0x8a5a30)).box(x - 11, 480, 22, 8);
            }
        }
        // The golden arch about the screen.
        pen.across(500, 1700,
                   {{0, hexColour(0x6a3c20)},
                    {0.25, hexColour(0xe8b060)},
                    {0.5, hexColour(0xfff0b8)},
                    {0.75, hexColour(0xe8b060)},
                    {1, hexColour(0x6a3c20)}});
        pen.roundBox(500, 176, 1200, 720, 60);
        pen.flat(hexColour(0x2a0e1c)).roundBox(516, 192, 1168, 690, 50);
        pen.flat(hexColour(0xd89a58)).roundBox(530, 206, 1140, 664, 44);
        pen.flat(hexColour(0x0a0410)).roundBox(538, 214, 1124, 650, 40);
        for (int i = 0; i < 29; ++i) {
            const double x = 560 + i * 38.6;
            pen.flat(hexColour(0x8a5028))
                .blob({{x - 18, 150}, {x, 128}, {x + 18, 150}, {x + 12, 176}, {x - 12, 176}});
        }
        pen.down(870, 1000, {{0, hexColour(0x5a2438)}, {1, hexColour(0x1a0814)}})
            .shape({{420, 890}, {1780, 890}, {1900, 1000}, {300, 1000}});
        pen.flat(hexColour(0xd89a58), 0.8).box(420, 888, 1360, 4);
        pen.flat(hexColour(0x0c0412)).box(0, 1000, kWidth, 300);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_CLEAR);
        pen.roundBox(560, 240, 1080, 608, 16);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_OVER);
    });
}

Layer paintScreen() {
    return drawnLayer(1120, 630, [](Pen& pen) {
        pen.down(0, 630, {{0, hexColour(0x808ad0)}, {1, hexColour(0x505aa0)}}).box(0, 0, 1120, 630);
    });
}

Layer paintCurtain() {
    constexpr int kWidth = 620, kHeight = 760;
    Layer layer(kWidth, kHeight);
    layer.fill([](int x, int y) {
        const auto px = static_cast<float>(x), py = static_cast<float>(y);
        const float fold =
            px / 44 + 0.35f * std::sin(px / 90) + 0.12f * std::sin(py / 130 + px / 60);
        const float wave = 0.5f + 0.5f * std::sin(fold * 2 * kPi * 0.5f);
        Colour colour = mix(hexColour(0x3a0618), hexColour(0xc82844), wave * wave);
        colour = mix(colour, hexColour(0xff7a70), 0.45f * smoothstep(0.86f, 1.0f, wave));
        colour = colour * (0.5f + 0.5f * smoothstep(-200, 300, py)) *
                 (1 - 0.4f * smoothstep(500, 760, py));
        const float trim = smoothstep(716, 720, py) * (1 - smoothstep(744, 748, py));
        return mix(colour, hexColour(0xe8b050) * (0.4f + 0.6f * wave), trim);
    });
    return layer;
}

Layer paintPelmet() {
    return drawnLayer(1240, 150, [](Pen& pen) {
        for (int i = 0; i < 10; ++i) {
            const double x = i * 124;
            pen.down(
                0, 130,
                {{0, hexColour(0x5a0a20)}, {0.6, hexColour(0xb82440)}, {1, hexColour(0x6a1028)}});
            pen.blob({{x - 6, -40},
                      {x + 130, -40},
                      {x + 128, 30},
                      {x + 104, 96},
                      {x + 62, 124},
                      {x + 20, 96},
                      {x - 4, 30}});
            pen.flat(hexColour(0xe8b050))
                .curve({{x - 4, 30}, {x + 20, 96}, {x + 62, 124}, {x + 104, 96}, {x + 128, 30}}, 6);
            for (int k = 1; k < 4; ++k)
                pen.flat(hexColour(0x3a0616), 0.5)
                    .curve({{x + 31 * k, -6},
                            {x + 62 + (k - 2) * 20.0, 60},
                            {x + 62 + (k - 2) * 10.0, 110}},
                           4);
        }
    });
}

// Bulbs about the arch; two pictures take turns.
Layer bulbs(int first) {
    constexpr int kWidth = 1240, kHeight = 760;
    Layer layer(kWidth, kHeight);
    int index = 0;
    const auto bulb = [&](double x, double y) {
        if (index++ % 2 != first) return;
        layer.spot(static_cast<float>(x), static_cast<float>(y), 12, hexColour(0xffa848), 0.7f);
        layer.spot(static_cast<float>(x), static_cast<float>(y), 5, hexColour(0xfff0c0), 1.6f);
    };
    for (int i = 0; i < 18; ++i) bulb(26, 700 - i * 36.0);
    for (int i = 0; i < 32; ++i) bulb(60 + i * 36.2, 34);
    for (int i = 0; i < 18; ++i) bulb(1214, 88 + i * 36.0);
    return layer;
}
Layer paintBulbsOdd() {
    return bulbs(1);
}
Layer paintBulbsEven() {
    return bulbs(0);
}

Layer paintIntermission() {
    constexpr int kWidth = 1160, kHeight = 360;
    return neonSign(kWidth, kHeight, kPink, 10, [](Pen& pen) {
        letter(pen, "INTERMISSION", 580, 124, 86, 10.5);
        pen.curve({{200, 268}, {390, 250}, {580, 272}, {770, 250}, {960, 268}}, 5.5);
    });
}

Layer paintExit() {
    return neonSign(200, 100, hexColour(0x30ff90), 4, [](Pen& pen) {
        letter(pen, "EXIT", 100, 34, 30, 4.5);
        pen.frame(38, 22, 124, 54, 2.5);
    });
}

// A row of seats with heads over some of them, lit from the screen.
Layer seats(uint32_t seed, double size, Colour cloth, Colour rim) {
    constexpr int kWidth = 2400;
    const int height = static_cast<int>(size * 2.3);
    return drawnLayer(kWidth, height, [&](Pen& pen) {
        Random random(seed);
        const double step = size * 1.12, top = size * 0.95;
        for (double x = -size * 0.4; x < kWidth; x += step) {
            const double middle = x + step / 2;
            if (random.chance(0.62f)) {
                const double head = top - size * random.range(0.16f, 0.34f),
                             wide = size * random.range(0.19f, 0.23f);
                const double lean = size * random.range(-0.08f, 0.08f);
                const bool knot = random.chance(0.3f), curls = random.chance(0.3f);
                // Each head twice: lit by the screen, and a little lower in the dark.
                for (const bool lit : {true, false}) {
                    const double y = lit ? head : head + size * 0.016, x2 = middle + lean;
                    pen.flat(lit ? rim : hexColour(0x07030c));
                    pen.oval(x2, y, wide, wide * 1.2);
                    if (knot) pen.circle(x2, y - wide * 1.3, wide * 0.45);
                    if (curls) pen.oval(x2, y + wide * 0.2, wide * 1.22, wide * 1.24);
                }
                pen.blob({{middle - size * 0.16, head + wide},
                          {middle + size * 0.16, head + wide},
                          {middle + size * 0.44, top + size * 0.24},
                          {middle + size * 0.44, height + 9.0},
                          {middle - size * 0.44, height + 9.0},
                          {middle - size * 0.44, top + size * 0.24}});
            }
            pen.down(top, top + size * 1.2,
                     {{0, mix(cloth, rim, 0.25f)}, {0.15, cloth}, {1, mix(cloth, kInk, 0.8f)}});
            pen.roundBox(x + size * 0.06, top, step - size * 0.12, size * 1.6, size * 0.2);
            pen.flat(rim, 0.6).line({{x + size * 0.24, top + 2}, {x + step - size * 0.24, top + 2}},
                                    size * 0.014);
        }
        pen.down(top + size * 0.7, height,
                 {{0, hexColour(0x050208), 0}, {1, hexColour(0x050208), 1}})
            .box(0, top + size * 0.7, kWidth, height);
    });
}

Layer paintSeatsFar() {
    return seats(3, 96, hexColour(0x5a1a34), hexColour(0xc89aff));
}
Layer paintSeatsMiddle() {
    return seats(8, 150, hexColour(0x46122c), hexColour(0xb080ff));
}
Layer paintSeatsNear() {
    return softened(seats(21, 260, hexColour(0x240a1c), hexColour(0x9a68f0)), 3);
}

// The projector's light, from above the lens towards the screen.
Layer paintProjection() {
    constexpr int kWidth = 960, kHeight = 540;
    Layer layer(kWidth, kHeight);
    layer.fill([](int x, int y) {
        const float px = static_cast<float>(x), py = static_cast<float>(y);
        const float down = (py + 40) / 420, middle = 480;
        const float half = 20 + 240 * (1 - std::clamp(down, 0.0f, 1.0f)) * 0.35f + 40;
        const float off = std::fabs(px - middle) / (half * (0.4f + down));
        const float ray = 0.6f + 0.6f * fractalNoise((px - middle) / (20 + 40 * down), 0.5f, 3, 12);
        const float fade = smoothstep(0, 30, py) * (1 - smoothstep(200, 420, py));
        return hexColour(0xb0c8ff) * (0.5f * std::exp(-off * off * 2) * ray * fade);
    });
    return layer;
}

constexpr PictureEntry kPictures[] = {
    {"film/hall.png", PngColour::Rgba, paintHall},
    {"film/Neon Screen-Mask cinema.png", PngColour::Rgba, paintScreen},
    {"film/cinema-curtain.png", PngColour::Rgb, paintCurtain},
    {"film/pelmet.png", PngColour::Rgba, paintPelmet},
    {"film/Neon-bulbs-odd.png", PngColour::Rgba, paintBulbsOdd},
    {"film/Neon-bulbs-even.png", PngColour::Rgba, paintBulbsEven},
    {"film/Neon-intermission.png", PngColour::Rgba, paintIntermission},
    {"film/Neon-exit.png", PngColour::Rgba, paintExit},
    {"film/seats-far.png", PngColour::Rgba, paintSeatsFar},
    {"film/seats-middle.png", PngColour::Rgba, paintSeatsMiddle},
    {"film/seats-near.png", PngColour::Rgba, paintSeatsNear},
    {"film/projection.png", PngColour::Rgb, paintProjection},
};

}  // namespace

std::span<const PictureEntry> filmCinema() {
    return kPictures;
}

}  // namespace pictures
