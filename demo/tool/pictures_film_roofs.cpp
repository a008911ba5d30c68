// The film's first place: the roofs of the night city in rain, with the word mark as a sign over
// them.
#include <array>

#include "pictures_film.h"
#include "pictures_towers.h"

namespace pictures {

namespace {

Layer paintSky() {
    constexpr std::array kStops{Stop{0, hexColour(0x050619)}, Stop{0.35f, hexColour(0x0d1140)},
                                Stop{0.62f, hexColour(0x2b1d6e)}, Stop{0.8f, hexColour(0x7a2c86)},
                                Stop{1, hexColour(0xd05a8c)}};
    constexpr std::array kLights{SkyLight{735, 140, 190, hexColour(0x5f86e8), 0.42f},
                                 SkyLight{330, 560, 260, hexColour(0xff6a70), 0.22f}};
    Layer layer = paintedSky(1120, 640, kStops, kLights);
    Random random(4);
    for (int i = 0; i < 260; ++i) {
        const float y = random.range(0, 340);
        layer.spot(random.range(0, 1120), y, random.range(0.5f, 0.9f), {0.9f, 0.93f, 1},
                   random.range(0.1f, 0.7f) * (1 - y / 360));
    }
    return layer;
}

Layer paintCloudBank() {
    Layer layer(1600, 400);
    addClouds(layer, {300, 0.62f, hexColour(0x7c86d8), hexColour(0x1c1c54), 0.9f, 31});
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
                {5, 8, 0.55f, 0.45f, 0.34f},
                hexColour(0x46308c),
                kMagenta,
                hexColour(0xc05898),
                60,
                0.85f,
                0.7f,
                1.1f,
                2200,
                380});
}

Layer paintMiddle() {
    return row({92,
                250,
                240,
                58,
                120,
                {9, 13, 0.54f, 0.48f, 0.30f},
                hexColour(0x241b62),
                kMagenta,
                hexColour(0x8a3a94),
                160,
                0.72f,
                0.85f,
                1.6f,
                2320,
                560});
}

Layer paintNear() {
    return row({131,
                380,
                300,
                130,
                240,
                {19, 27, 0.52f, 0.52f, 0.26f},
                hexColour(0x110f34),
                kViolet,
                hexColour(0x4a2080),
                320,
                0.55f,
                1,
                2.2f,
                2560,
                760});
}

// The scaffold that carries the sign: posts, struts, and the dark board behind the letters.
Layer paintSignFrame() {
    return drawnLayer(860, 520, [](Pen& pen) {
        pen.flat(hexColour(0x0b0a22));
        for (int i = 0; i <= 8; ++i) {
            const double x = 60 + i * 92.5;
            pen.line({{x, 250}, {x, 520}}, 7);
            if (i < 8)
                pen.line({{x, 512}, {x + 92.5, 300}}, 4).line({{x, 300}, {x + 92.5, 512}}, 4);
        }
        pen.line({{40, 400}, {820, 400}}, 6);
        pen.down(40, 300, {{0, hexColour(0x1b1440)}, {1, hexColour(0x0b0822)}});
        pen.roundBox(20, 40, 820, 262, 14);
        pen.flat(hexColour(0x4a3a90), 0.8).frame(28, 48, 804, 246, 3);
        for (int i = 0; i < 40; ++i)
            pen.flat(hexColour(0x2a2060), 0.5).box(40 + i * 20, 52, 2, 238);
    });
}

Layer paintNeonVorn() {
    return neonSign(1000, 440, kMagenta, 15, [](Pen& pen) {
        letter(pen, "VORN", 500, 138, 150, 17);
        pen.frame(100, 92, 800, 244, 5);
    });
}

Layer paintNeonArrow() {
    return neonSign(360, 320, kCyan, 8, [](Pen& pen) {
        pen.curve({{70, 80}, {150, 90}, {215, 150}, {238, 220}}, 9);
        pen.line({{196, 196}, {242, 236}, {276, 184}}, 9);
    });
}

void addTank(Pen& pen, double x, double foot, double size) {
    const double top = foot - size;
    for (const double leg : {-0.32, -0.1, 0.1, 0.32})
        pen.line({{x + leg * size, foot}, {x + leg * size * 0.9, foot - size * 0.4}}, size * 0.035);
    pen.line({{x - 0.32 * size, foot - 0.05 * size}, {x + 0.3 * size, foot - 0.38 * size}}, 4);
    pen.line({{x + 0.32 * size, foot - 0.05 * size}, {x - 0.3 * size, foot - 0.38 * size}}, 4);
    pen.box(x - size * 0.36, top + size * 0.08, size * 0.72, size * 0.54);
    pen.shape({{x - size * 0.40, top + size * 0.1},
               {x, top - size * 0.16},
               {x + size * 0.40, top + size * 0.1}});
}

// The roof that the camera looks over: parapet, tank, chimneys, aerials and a skylight.
Layer paintRoofFront() {
    constexpr int kWidth = 2900, kHeight = 760;
    Layer layer = drawnLayer(kWidth, kHeight, [](Pen& pen) {
        pen.flat(hexColour(0x070718));
        addTank(pen, 470, 500, 380);
        pen.box(900, 360, 90, 180).box(885, 345, 120, 24).box(1010, 420, 60, 120);
        pen.box(2060, 380, 330, 170).shape({{2040, 384}, {2225, 300}, {2410, 384}});
        for (const double x : {1280.0, 1930.0, 2600.0}) {
            const double tall = x > 1700 ? 190 : 230;
            pen.line({{x, 540}, {x, 540 - tall}}, 6);
            for (int i = 0; i < 5; ++i) {
                const double y = 552 - tall + i * 24, half = 62 - i * 9;
                pen.line({{x - half, y}, {x + half, y}}, 4);
            }
        }
        pen.curve({{1280, 330}, {1500, 372}, {1930, 355}}, 2.5);
        pen.curve({{1930, 355}, {2250, 372}, {2600, 262}}, 2.5);
        pen.box(0, 520, kWidth, 240);
        pen.flat(hexColour(0x191644)).box(0, 520, kWidth, 16);
        pen.flat(hexColour(0x2e2668)).box(0, 518, kWidth, 4);
        for (int i = 0; i < 58; ++i) {
            for (int j = 0; j < 5; ++j) {
                pen.flat(hexColour(0x1a1746), 0.35);
                pen.frame(i * 54 - j % 2 * 27, 548 + j * 30, 54, 30, 1.6);
            }
        }
        pen.down(540, 760, {{0, hexColour(0x04040e), 0}, {1, hexColour(0x04040e), 0.95}});
        pen.box(0, 540, kWidth, 220);
        // Light of the sign on the wet edges.
        pen.flat(kMagenta, 0.35).box(1180, 516, 900, 3);
        pen.flat(kPink, 0.45).box(1420, 515, 420, 2);
        pen.flat(kMagenta, 0.30)
            .line({{2042, 382}, {2225, 299}}, 3)
            .line({{330, 158}, {470, 60}}, 3);
    });
    layer.spot(2130, 470, 30, kGold, 0.25f);
    layer.draw([](cairo_t* cairo) {
        Pen pen(cairo);
        pen.flat(hexColour(0xffc878)).box(2100, 430, 56, 70);
        pen.flat(hexColour(0x070718)).box(2126, 430, 4, 70).box(2100, 462, 56, 4);
    });
    return layer;
}

Layer paintCat() {
    return drawnLayer(200, 220, [](Pen& pen) {
        pen.flat(hexColour(0x05050f));
        pen.blob({{92, 80},
                  {124, 100},
                  {138, 150},
                  {134, 204},
                  {100, 212},
                  {66, 208},
                  {60, 150},
                  {70, 100}});
        pen.circle(88, 66, 30);
        pen.shape({{62, 54}, {58, 18}, {84, 42}}).shape({{92, 40}, {114, 16}, {116, 54}});
        pen.curve({{130, 200}, {168, 200}, {182, 170}, {172, 136}, {182, 112}}, 13);
        pen.flat(kPink, 0.6).curve({{116, 88}, {132, 112}, {141, 150}, {139, 190}}, 2.5);
        pen.flat(kPink, 0.6).curve({{114, 20}, {118, 56}, {114, 82}}, 2);
    });
}

// Wires across the lens, out of focus; half size will do.
Layer paintWires() {
    const Layer sharp = drawnLayer(1400, 200, [](Pen& pen) {
        pen.flat(hexColour(0x05050f), 0.9);
        pen.curve({{-20, 30}, {350, 95}, {750, 105}, {1420, 15}}, 4.5);
        pen.curve({{-20, 60}, {400, 135}, {800, 135}, {1420, 55}}, 3.5);
        pen.curve({{-20, 75}, {380, 165}, {780, 170}, {1420, 95}}, 5);
    });
    return softened(sharp, 2);
}

constexpr PictureEntry kPictures[] = {
    {"film/roofs-sky.png", PngColour::Rgb, paintSky},
    {"film/cloud-bank.png", PngColour::Rgba, paintCloudBank},
    {"film/roofs-far.png", PngColour::Rgba, paintFar},
    {"film/roofs-middle.png", PngColour::Rgba, paintMiddle},
    {"film/roofs-near.png", PngColour::Rgba, paintNear},
    {"film/sign-frame.png", PngColour::Rgba, paintSignFrame},
    {"film/Neon-vorn.png", PngColour::Rgba, paintNeonVorn},
    {"film/Neon-arrow.png", PngColour::Rgba, paintNeonArrow},
    {"film/roof-front.png", PngColour::Rgba, paintRoofFront},
    {"film/cat.png", PngColour::Rgba, paintCat},
    {"film/wires.png", PngColour::Rgba, paintWires},
};

}  // namespace

std::span<const PictureEntry> filmRoofs() {
    return kPictures;
}

}  // namespace pictures
