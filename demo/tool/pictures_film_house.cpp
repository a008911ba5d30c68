// The film's house: a brick wall in the rain with one lit window, and what can be seen inside; and
// the mast that sends the picture on.
#include <array>

#include "pictures_film.h"

namespace pictures {

namespace {

// The hole for the window: x 760 to 1240, y 330 to 990 of the wall.
Layer paintWall() {
    constexpr int kWidth = 2000, kHeight = 1300;
    Layer layer = drawnLayer(kWidth, kHeight, [](Pen& pen) {
        Random random(14);
        pen.flat(hexColour(0x120d2a)).box(0, 0, kWidth, kHeight);
        for (int row = 0; row < 44; ++row) {
            for (int column = -1; column < 28; ++column) {
                const double x = column * 74 + row % 2 * 37, y = row * 30;
                const Colour brick = mix(hexColour(0x2a1c50), hexColour(0x3a2462), random.unit());
                pen.flat(mix(brick, kInk, random.chance(0.12f) ? 0.35f : 0))
                    .box(x + 1.5, y + 1.5, 71, 27);
                pen.flat(hexColour(0x5c3c8c), 0.35).box(x + 1.5, y + 1.5, 71, 2);
            }
        }
        // Light: pink from the sign at the left, warm from the window, dark above and below.
        pen.round(
            90, 620, 900,
            {{0, hexColour(0xff3fa0), 0.50}, {0.5, hexColour(0xb02a90), 0.16}, {1, kMagenta, 0}});
        pen.box(0, 0, kWidth, kHeight);
        pen.round(1000, 1010, 520, {{0, hexColour(0xffa850), 0.50}, {1, hexColour(0xff8040), 0}});
        pen.box(0, 0, kWidth, kHeight);
        pen.down(0, kHeight,
                 {{0, kInk, 0.75}, {0.35, kInk, 0.05}, {0.8, kInk, 0.1}, {1, kInk, 0.7}});
        pen.box(0, 0, kWidth, kHeight);
        // Lintel and sill of stone.
        pen.down(270, 330, {{0, hexColour(0x54407e)}, {1, hexColour(0x2c1f52)}})
            .box(700, 268, 600, 62);
        pen.flat(hexColour(0x7a60a8)).box(700, 268, 600, 5);
        pen.down(990, 1050,
                 {{0, hexColour(0xb88a80)}, {0.2, hexColour(0x5a4070)}, {1, hexColour(0x221840)}});
        pen.box(690, 990, 620, 56);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_CLEAR);
        pen.box(760, 330, 480, 660);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_OVER);
    });
    return layer;
}

// What the window shows: a warm wall with shelves, a lamp, a picture.
Layer paintInside() {
    Layer layer = drawnLayer(900, 900, [](Pen& pen) {
        pen.down(0, 900,
                 {{0, hexColour(0x8a4030)}, {0.6, hexColour(0xd07a3c)}, {1, hexColour(0x8a4028)}});
        pen.box(0, 0, 900, 900);
        pen.round(560, 300, 480,
                  {{0, hexColour(0xffe6a0), 0.95}, {0.4, hexColour(0xffb860), 0.5}, {1, kGold, 0}});
        pen.box(0, 0, 900, 900);
        pen.flat(hexColour(0x4a1f26)).box(140, 330, 250, 12).box(140, 470, 250, 12);
        Random random(6);
        for (const double shelf : {330.0, 470.0}) {
            for (double x = 150; x < 370;) {
                const double wide = random.range(10, 24), tall = random.range(50, 92);
                pen.flat(mix(hexColour(0x6a2434), hexColour(0x2c5a6a), random.unit()));
                pen.box(x, shelf - tall, wide - 2, tall);
                x += wide;
            }
        }
        pen.flat(hexColour(0x4a1f26)).box(648, 300, 8, 600);
        pen.down(180, 300, {{0, hexColour(0xffdc90)}, {1, hexColour(0xfff4d0)}});
        pen.shape({{610, 180}, {694, 180}, {740, 300}, {564, 300}});
        pen.flat(hexColour(0x3a1820)).frame(430, 170, 100, 130, 6);
        pen.flat(hexColour(0x7a4a70)).box(434, 174, 92, 122);
        pen.flat(hexColour(0xffd080)).circle(480, 220, 20);
        pen.flat(hexColour(0x402850))
            .shape({{434, 296}, {470, 240}, {498, 268}, {526, 236}, {526, 296}});
        pen.flat(hexColour(0x5a2a30)).box(0, 760, 900, 140);
    });
    return layer;
}

// Somebody at a desk, seen from the side, lit by a screen.
Layer paintSitter() {
    return drawnLayer(420, 440, [](Pen& pen) {
        pen.flat(hexColour(0x2a1020));
        pen.oval(150, 110, 44, 54)
            .blob({{120, 60},
                   {160, 46},
                   {198, 70},
                   {196, 110},
                   {170, 90},
                   {130, 100},
                   {112, 130},
                   {102, 100}});
        pen.blob({{130, 160},
                  {176, 160},
                  {214, 200},
                  {226, 300},
                  {220, 440},
                  {70, 440},
                  {76, 300},
                  {92, 210}});
        pen.curve({{190, 220}, {236, 290}, {310, 310}}, 34);
        pen.box(250, 322, 170, 16).box(380, 330, 20, 110);
        pen.shape({{330, 322}, {306, 226}, {318, 222}, {344, 322}});
        pen.flat(hexColour(0x9fe8ff)).shape({{306, 228}, {310, 226}, {333, 312}, {329, 314}});
        pen.flat(hexColour(0x8fe0ff), 0.8).curve({{196, 84}, {196, 112}, {186, 146}}, 4);
        pen.flat(hexColour(0x8fe0ff), 0.6).curve({{206, 210}, {240, 274}, {300, 292}}, 4);
    });
}

Layer paintFrame() {
    return drawnLayer(560, 740, [](Pen& pen) {
        pen.flat(hexColour(0x1c1236));
        pen.box(20, 20, 520, 26).box(20, 20, 26, 700).box(514, 20, 26, 700).box(20, 690, 520, 30);
        pen.box(270, 20, 18, 690).box(20, 300, 520, 16);
        pen.flat(hexColour(0x6a4a80), 0.8)
            .box(20, 20, 520, 4)
            .box(288, 46, 3, 254)
            .box(46, 316, 224, 3);
        pen.flat(hexColour(0xffd0a0), 0.5)
            .box(46, 46, 3, 254)
            .box(46, 316, 3, 374)
            .box(292, 316, 3, 374);
        // Rain on the panes.
        Random random(3);
        for (int i = 0; i < 160; ++i) {
            const double x = random.range(50, 510), y = random.range(50, 680),
                         size = random.range(1, 2.6f);
            pen.flat(hexColour(0xfff0d8), 0.35).oval(x, y, size, size * 1.4);
            if (random.chance(0.2f))
                pen.flat(hexColour(0xfff0d8), 0.14).line({{x, y - 40}, {x, y}}, 1.6);
        }
    });
}

Layer paintCurtain() {
    return drawnLayer(220, 680, [](Pen& pen) {
        pen.across(0, 220,
                   {{0, hexColour(0x7a2c40)},
                    {0.3, hexColour(0xc05848)},
                    {0.5, hexColour(0x8a3440)},
                    {0.75, hexColour(0xc86850)},
                    {1, hexColour(0x7a2c40)}});
        pen.blob({{0, -60},
                  {110, -40},
                  {216, -20},
                  {196, 180},
                  {130, 330},
                  {70, 430},
                  {84, 560},
                  {110, 700},
                  {0, 740},
                  {-60, 340}});
        for (const double x : {40.0, 80.0, 120.0})
            pen.flat(hexColour(0x4a1a30), 0.4)
                .curve({{x * 1.6, 0}, {x * 1.3, 200}, {x * 0.7, 400}, {x * 0.7, 680}}, 5);
    });
}

Layer paintFlowers() {
    return drawnLayer(600, 190, [](Pen& pen) {
        Random random(22);
        for (int i = 0; i < 70; ++i) {
            const double x = random.range(30, 570), y = random.range(30, 110);
            pen.flat(mix(hexColour(0x10202c), hexColour(0x24503c), random.unit()));
            pen.curve({{x, 130},
                       {x + random.range(-14, 14), (y + 130) / 2},
                       {x + random.range(-24, 24), y}},
                      5);
        }
        for (int i = 0; i < 26; ++i) {
            const double x = random.range(40, 560), y = random.range(24, 96);
            const Colour petal = random.chance(0.5f) ? hexColour(0xff5a8a) : hexColour(0xffb050);
            for (int k = 0; k < 5; ++k)
                pen.flat(petal).circle(x + 6 * std::cos(k * 1.257), y + 6 * std::sin(k * 1.257), 5);
            pen.flat(kCream).circle(x, y, 3.4);
        }
        pen.down(112, 185, {{0, hexColour(0x6a3448)}, {1, hexColour(0x2a1430)}});
        pen.box(10, 112, 580, 70);
        pen.flat(hexColour(0xffb070), 0.6).box(10, 112, 580, 4);
    });
}

// Iron stairs, close to the lens.
Layer paintStairs() {
    const Layer sharp = drawnLayer(700, 800, [](Pen& pen) {
        pen.flat(hexColour(0x06050f));
        pen.box(0, 96, 640, 12).box(0, 700, 640, 14);
        for (int i = 0; i < 12; ++i) pen.box(20 + i * 54.0, 0, 5, 100);
        pen.box(0, 0, 640, 7).box(0, 596, 640, 6);
        for (int i = 0; i < 12; ++i) pen.box(20 + i * 54.0, 600, 5, 104);
        pen.line({{60, 700}, {520, 108}}, 12).line({{130, 720}, {590, 116}}, 12);
        for (int i = 0; i < 13; ++i)
            pen.line({{70 + i * 36.0, 690 - i * 46.0}, {136 + i * 36.0, 700 - i * 46.0}}, 6);
        pen.flat(kPink, 0.5).box(0, 94, 640, 2).box(0, 698, 640, 2);
    });
    return softened(sharp, 2);
}

Layer paintMastSky() {
    constexpr std::array kStops{Stop{0, hexColour(0x04051a)}, Stop{0.5f, hexColour(0x0d1c54)},
                                Stop{0.8f, hexColour(0x2a5a90)}, Stop{1, hexColour(0x60a8b0)}};
    constexpr std::array kLights{SkyLight{480, 600, 240, hexColour(0x58e0d0), 0.30f}};
    Layer layer = paintedSky(1000, 620, kStops, kLights);
    Random random(9);
    for (int i = 0; i < 420; ++i) {
        const float y = random.range(0, 480);
        layer.spot(random.range(0, 1000), y, random.range(0.5f, 1.0f), {0.85f, 0.95f, 1},
                   random.range(0.1f, 0.8f) * (1 - y / 500));
    }
    return layer;
}

Layer paintMast() {
    return drawnLayer(420, 1200, [](Pen& pen) {
        pen.flat(hexColour(0x050a1c));
        const auto half = [](double y) { return 14 + 120 * (y / 1200) * (y / 1200); };
        for (int i = 0; i < 16; ++i) {
            const double y0 = 130 + i * 67.0, y1 = y0 + 67;
            const double a = half(y0), b = half(y1);
            for (const double sign : {-1.0, 1.0}) {
                pen.line({{210 + sign * a, y0}, {210 + sign * b, y1}}, 8);
                pen.line({{210 - sign * a, y0}, {210 + sign * b, y1}}, 3.5);
            }
            pen.line({{210 - a, y0}, {210 + a, y0}}, 4);
        }
        pen.line({{210, 20}, {210, 140}}, 6);
        for (const double y : {60.0, 84.0, 108.0}) pen.line({{176, y}, {244, y}}, 4);
        pen.oval(150, 300, 34, 48).oval(276, 420, 36, 50).oval(146, 540, 38, 54);
        pen.flat(hexColour(0x2c5a80)).curve({{116, 300}, {128, 258}, {150, 252}}, 3);
        pen.curve({{240, 420}, {252, 378}, {276, 370}}, 3)
            .curve({{108, 540}, {122, 494}, {146, 486}}, 3);
    });
}

Layer paintRing() {
    constexpr int kSize = 640;
    Layer layer(kSize, kSize);
    const Mask tube = drawnMask(kSize, kSize, [](Pen& pen) { pen.ring(320, 320, 250, 7); });
    layer.light(tube.blurred(14), kCyan, 1.2f);
    layer.light(tube.blurred(3), kCyan, 0.9f);
    layer.cover(tube, mix(kCyan, {1, 1, 1}, 0.6f), 0.9f);
    return layer;
}

Layer paintLamp() {
    Layer layer(120, 120);
    layer.spot(60, 60, 16, hexColour(0xff2040), 0.7f);
    layer.spot(60, 60, 6, hexColour(0xff9090), 1.8f);
    return layer;
}

Layer paintHill() {
    const HillLook look{150, 190, 900, 26, 5};
    Layer layer =
        shaded(hillMask(2600, 620, look), 80, 420, hexColour(0x0c2038), hexColour(0x03060f));
    layer.draw([&](cairo_t* cairo) {
        Pen pen(cairo);
        Random random(8);
        pen.flat(hexColour(0x040a18));
        for (int i = 0; i < 60; ++i) {
            const float x = random.range(20, 2580);
            if (std::fabs(x - 1300) < 260) continue;
            const float y = hillHeight(look, x), tall = random.range(18, 46);
            pen.blob({{x, y - tall},
                      {x + tall * 0.5, y - tall * 0.5},
                      {x + tall * 0.5, y + 10},
                      {x - tall * 0.5, y + 10},
                      {x - tall * 0.5, y - tall * 0.5}});
        }
        const double y = hillHeight(look, 1120);
        pen.box(1080, y - 70, 110, 90).shape({{1070, y - 68}, {1135, y - 106}, {1200, y - 68}});
        pen.flat(hexColour(0xffd080)).box(1104, y - 44, 24, 28);
    });
    return layer;
}

Layer paintGrass() {
    return softened(
        drawnLayer(1400, 300,
                   [](Pen& pen) {
                       Random random(30);
                       pen.flat(hexColour(0x02040c)).box(0, 200, 1400, 100);
                       for (int i = 0; i < 420; ++i) {
                           const double x = random.range(0, 1400), tall = random.range(50, 170),
                                        lean = random.range(-40, 50);
                           pen.shape({{x - 4, 230}, {x + lean, 230 - tall}, {x + 4, 230}});
                       }
                   }),
        2.2f);
}

constexpr PictureEntry kPictures[] = {
    {"film/house-wall.png", PngColour::Rgba, paintWall},
    {"film/house-inside.png", PngColour::Rgba, paintInside},
    {"film/house-sitter.png", PngColour::Rgba, paintSitter},
    {"film/house-frame.png", PngColour::Rgba, paintFrame},
    {"film/house-curtain.png", PngColour::Rgba, paintCurtain},
    {"film/house-flowers.png", PngColour::Rgba, paintFlowers},
    {"film/house-stairs.png", PngColour::Rgba, paintStairs},
    {"film/mast-sky.png", PngColour::Rgb, paintMastSky},
    {"film/mast.png", PngColour::Rgba, paintMast},
    {"film/Neon-ring.png", PngColour::Rgba, paintRing},
    {"film/Neon-lamp-red.png", PngColour::Rgba, paintLamp},
    {"film/mast-hill.png", PngColour::Rgba, paintHill},
    {"film/grass.png", PngColour::Rgba, paintGrass},
};

}  // namespace

std::span<const PictureEntry> filmHouse() {
    return kPictures;
}

}  // namespace pictures
