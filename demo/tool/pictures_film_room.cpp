// The film's room: a desk at night, a screen that shows a live picture, and who made it.
#include <array>

#include "pictures_film.h"

namespace pictures {

namespace {

constexpr Colour kDark = hexColour(0x0a0a1e);

// The hole of the window: x 1340 to 1820, y 170 to 620.
Layer paintRoomWall() {
    constexpr int kWidth = 2200, kHeight = 1240;
    return drawnLayer(kWidth, kHeight, [](Pen& pen) {
        pen.down(0, kHeight,
                 {{0, hexColour(0x0e0f2c)}, {0.7, hexColour(0x1b1a48)}, {1, hexColour(0x0a0a20)}});
        pen.box(0, 0, kWidth, kHeight);
        pen.round(
            1060, 620, 760,
            {{0, hexColour(0x3f7ad8), 0.55}, {0.5, hexColour(0x4a3ab0), 0.25}, {1, kIndigo, 0}});
        pen.box(0, 0, kWidth, kHeight);
        pen.round(330, 560, 520, {{0, hexColour(0xff9048), 0.55}, {1, kOrange, 0}});
        pen.box(0, 0, kWidth, kHeight);
        pen.flat(kDark, 0.5).box(0, 1010, kWidth, 230);
        pen.flat(kDark).frame(1330, 160, 500, 470, 26);
        pen.flat(hexColour(0x3c3a78)).frame(1322, 152, 516, 486, 3);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_CLEAR);
        pen.box(1340, 170, 480, 450);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_OVER);
        pen.flat(kDark).box(1572, 170, 14, 450).box(1340, 380, 480, 10);
        pen.flat(kDark).box(1310, 628, 540, 20);
        pen.flat(hexColour(0x4a5aa0)).box(1310, 628, 540, 3);
        for (int i = 0; i < 7; ++i) pen.flat(kDark, 0.8).box(1340, 176 + i * 13.0, 480, 6);
    });
}

// Posters with pictures of our own.
Layer paintPosters() {
    return drawnLayer(640, 460, [](Pen& pen) {
        pen.down(20, 400,
                 {{0, hexColour(0x1c1048)}, {0.55, hexColour(0xb03a90)}, {1, hexColour(0xff9a58)}});
        pen.box(20, 20, 270, 380);
        pen.down(110, 260, {{0, hexColour(0xffe890)}, {1, hexColour(0xff5a80)}})
            .circle(155, 190, 74);
        for (int i = 0; i < 5; ++i)
            pen.flat(hexColour(0xb03a90)).box(70, 206 + i * 12.0, 170, 3 + i * 1.2);
        pen.flat(hexColour(0x1a0e3c))
            .shape(
                {{20, 400}, {20, 330}, {90, 270}, {150, 320}, {220, 262}, {290, 322}, {290, 400}});
        pen.flat(kCream);
        letter(pen, "DUSK", 155, 48, 34, 5);
        pen.down(60, 420, {{0, hexColour(0x0c2a4a)}, {1, hexColour(0x1a6a80)}})
            .box(340, 60, 250, 350);
        pen.flat(kCyan, 0.9);
        for (int i = 0; i < 9; ++i) pen.ring(465, 220, 14 + i * 12.0, 3);
        pen.flat(kCream);
        letter(pen, "SIGNAL", 465, 362, 24, 4);
        pen.flat(kDark, 0.42).box(0, 0, 640, 460);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_DEST_IN);
        pen.flat({1, 1, 1}).shape({{20, 20}, {590, 20}, {590, 410}, {20, 410}});
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_CLEAR);
        pen.box(290, 0, 50, 460).box(0, 400, 300, 60).box(330, 0, 310, 60);
        cairo_set_operator(pen.cairo(), CAIRO_OPERATOR_OVER);
    });
}

// Shelf with synthesizer, cassettes, a plant, a small robot.
Layer paintShelf() {
    return drawnLayer(760, 330, [](Pen& pen) {
        Random random(11);
        pen.flat(kDark).box(10, 250, 740, 16);
        pen.flat(hexColour(0x4a4a8c)).box(10, 248, 740, 3);
        pen.flat(hexColour(0x14132e)).shape({{60, 190}, {350, 190}, {360, 250}, {50, 250}});
        for (int i = 0; i < 22; ++i)
            pen.flat(hexColour(0xc8c4e0), 0.75).box(66 + i * 13.0, 226, 11, 22);
        for (int i = 0; i < 9; ++i) pen.flat(hexColour(0x3a3a70)).circle(84 + i * 30.0, 206, 6);
        for (double x = 400; x < 560;) {
            const double wide = random.range(12, 22), tall = random.range(70, 118);
            pen.flat(mix(hexColour(0x3a2060), hexColour(0x206a80), random.unit()))
                .box(x, 250 - tall, wide - 2, tall);
            pen.flat(kCream, 0.3).box(x + 3, 250 - tall + 12, wide - 8, 5);
            x += wide;
        }
        pen.flat(hexColour(0x7a3a3c)).shape({{610, 210}, {690, 210}, {680, 250}, {620, 250}});
        for (int i = 0; i < 16; ++i) {
            const double lean = (i - 7.5) * 11;
            pen.flat(mix(hexColour(0x123a38), hexColour(0x2a7a58), random.unit()));
            pen.curve({{650, 212},
                       {650 + lean * 0.6, 150},
                       {650 + lean * 1.2, 120 + std::fabs(lean) * 0.7}},
                      7);
        }
    });
}

Layer paintDesk() {
    return drawnLayer(2300, 460, [](Pen& pen) {
        pen.down(40, 120, {{0, hexColour(0x3a3466)}, {1, hexColour(0x1a1638)}})
            .shape({{120, 40}, {2180, 40}, {2300, 120}, {0, 120}});
        pen.round(
            1130, 60, 620,
            {{0, hexColour(0x68c8ff), 0.6}, {0.6, hexColour(0x4a5ad8), 0.16}, {1, kIndigo, 0}});
        pen.shape({{120, 40}, {2180, 40}, {2300, 120}, {0, 120}});
        pen.round(440, 60, 360, {{0, hexColour(0xffb060), 0.8}, {1, kOrange, 0}});
        pen.shape({{120, 40}, {2180, 40}, {2300, 120}, {0, 120}});
        pen.down(120, 460, {{0, hexColour(0x17142f)}, {1, hexColour(0x05050e)}})
            .box(0, 120, 2300, 340);
        pen.flat(hexColour(0x6a8ad0), 0.7).box(0, 118, 2300, 3);
    });
}

// The hole for the picture: x 74 to 826, y 66 to 489.
Layer paintMonitor() {
    return drawnLayer(900, 680, [](Pen& pen) {
        pen.flat(hexColour(0x0c0c20)).shape({{380, 560}, {520, 560}, {560, 650}, {340, 650}});
        pen.flat(hexColour(0x14142c)).roundBox(260, 640, 380, 26, 12);
        pen.down(20, 570,
                 {{0, hexColour(0x34345c)}, {0.1, hexColour(0x1c1c3a)}, {1, hexColour(0x0c0c1e)}});
        pen.roundBox(24, 20, 852, 552, 34);
        pen.flat(hexColour(0x04040c)).roundBox(58, 50, 784, 456, 26);
        pen.flat(hexColour(0x7a90d8), 0.8).line({{60, 21}, {840, 21}}, 2);
        pen.flat(hexColour(0x5a5a8c));
        letter(pen, "VORN", 450, 526, 16, 3);
        pen.flat(hexColour(0x40ff90)).circle(790, 540, 5);
    });
}

Layer paintScreen() {
    return drawnLayer(752, 424, [](Pen& pen) {
        pen.down(0, 424, {{0, hexColour(0x6a90e0)}, {1, hexColour(0x385090)}});
        pen.roundBox(0, 0, 752, 424, 20);
    });
}

// Glass: a slanting reflection and a dark rim over the picture.
Layer paintGlass() {
    return drawnLayer(752, 424, [](Pen& pen) {
        pen.round(376, 212, 470, {{0, kInk, 0}, {0.7, kInk, 0}, {1, kInk, 0.6}})
            .roundBox(0, 0, 752, 424, 20);
        pen.across(0, 400, {{0, {1, 1, 1}, 0.13}, {1, {1, 1, 1}, 0.02}})
            .shape({{20, 4}, {330, 4}, {130, 420}, {20, 420}});
    });
}

Layer paintKeyboard() {
    return drawnLayer(760, 190, [](Pen& pen) {
        pen.flat(hexColour(0x0a0a1c)).shape({{70, 30}, {690, 30}, {750, 176}, {10, 176}});
        pen.flat(hexColour(0x4a78c8), 0.8).line({{70, 30}, {690, 30}}, 2);
        for (int row = 0; row < 5; ++row) {
            const double y = 42 + row * 25.0, half = 302 + row * 12.0;
            for (int key = 0; key < 20; ++key) {
                const double x = 380 - half + key * half / 10;
                pen.flat(
                    mix(hexColour(0x2c3c70), hexColour(0x171830), static_cast<float>(row) / 5));
                pen.roundBox(x + 2, y, half / 10 - 5, 19, 4);
                pen.flat(kCyan, 0.35 - row * 0.05).box(x + 5, y + 1, half / 10 - 11, 1.6);
            }
        }
    });
}

Layer paintDeskLamp() {
    Layer layer = drawnLayer(420, 620, [](Pen& pen) {
        pen.flat(hexColour(0x0b0a1a));
        pen.line({{130, 570}, {90, 340}}, 12).line({{90, 340}, {230, 150}}, 12);
        pen.circle(90, 340, 14).roundBox(60, 566, 150, 24, 10);
        pen.blob(
            {{196, 118}, {246, 100}, {300, 140}, {350, 236}, {290, 262}, {204, 248}, {176, 180}});
        pen.flat(hexColour(0xffe2a0)).shape({{206, 248}, {348, 234}, {334, 258}, {218, 268}});
        pen.flat(kOrange, 0.8).curve({{196, 118}, {246, 100}, {300, 140}, {350, 236}}, 3);
    });
    layer.spot(280, 256, 20, hexColour(0xfff0c0), 1.0f);
    return layer;
}

// From behind, with headphones; the screen draws the rim.
Layer paintMaker() {
    return drawnLayer(820, 760, [](Pen& pen) {
        pen.flat(hexColour(0x06060f));
        pen.blob({{330, 330},
                  {490, 330},
                  {640, 400},
                  {730, 520},
                  {760, 780},
                  {60, 780},
                  {90, 520},
                  {180, 400}});
        pen.box(356, 270, 108, 110);
        pen.blob({{410, 60},
                  {490, 84},
                  {530, 160},
                  {516, 250},
                  {470, 316},
                  {410, 332},
                  {350, 316},
                  {304, 250},
                  {290, 160},
                  {330, 84}});
        pen.blob({{410, 44},
                  {476, 56},
                  {520, 110},
                  {504, 128},
                  {470, 104},
                  {440, 120},
                  {400, 98},
                  {370, 120},
                  {340, 100},
                  {306, 136},
                  {300, 108},
                  {344, 58}});
        pen.ring(410, 190, 140, 0.01);
        pen.flat(hexColour(0x15152c));
        pen.curve({{282, 190}, {300, 96}, {410, 34}, {520, 96}, {538, 190}}, 20);
        pen.roundBox(258, 164, 46, 104, 20).roundBox(516, 164, 46, 104, 20);
        pen.flat(kCyan, 0.9);
        pen.curve({{286, 176}, {306, 96}, {410, 28}, {514, 96}, {534, 176}}, 3.5);
        pen.curve({{186, 402}, {260, 360}, {350, 334}}, 4)
            .curve({{634, 402}, {560, 360}, {470, 334}}, 4);
        pen.curve({{92, 520}, {124, 456}, {184, 404}}, 3)
            .curve({{728, 520}, {696, 456}, {636, 404}}, 3);
        pen.flat(kOrange, 0.6)
            .curve({{66, 700}, {78, 590}, {94, 520}}, 5)
            .line({{259, 180}, {259, 250}}, 4);
    });
}

Layer paintMug() {
    return drawnLayer(150, 150, [](Pen& pen) {
        pen.across(
            20, 110,
            {{0, hexColour(0xa85838)}, {0.3, hexColour(0x5a2a34)}, {1, hexColour(0x3a60a0)}});
        pen.roundBox(20, 40, 90, 100, 14);
        pen.flat(hexColour(0x3a4a80));
        pen.curve({{106, 62}, {140, 70}, {138, 108}, {106, 116}}, 11);
        pen.flat(hexColour(0x1a0c14)).oval(65, 46, 40, 9);
    });
}

Layer paintSteam() {
    Layer layer(120, 240);
    const Mask mask = drawnMask(120, 240, [](Pen& pen) {
        pen.curve({{60, 236}, {44, 180}, {74, 130}, {50, 80}, {64, 14}}, 14);
        pen.curve({{72, 236}, {84, 180}, {54, 140}, {80, 70}}, 9);
    });
    layer.cover(mask.blurred(9), hexColour(0xd0d8ff), 0.55f);
    return layer;
}

Layer paintLights() {
    Layer layer(520, 60);
    constexpr std::array kHues{hexColour(0x40ff90), kCyan, kMagenta, kOrange,
                               hexColour(0x40ff90), kPink, kCyan};
    for (size_t i = 0; i < kHues.size(); ++i) {
        const float x = 40 + 73 * static_cast<float>(i);
        layer.spot(x, 30, 9, kHues[i], 0.6f);
        layer.spot(x, 30, 3, mix(kHues[i], {1, 1, 1}, 0.6f), 1.6f);
    }
    return layer;
}

Layer paintPlant() {
    return softened(
        drawnLayer(640, 900,
                   [](Pen& pen) {
                       Random random(40);
                       pen.flat(hexColour(0x04060c));
                       for (int i = 0; i < 15; ++i) {
                           const double lean = (i - 6) * 34.0,
                                        top = 120 + std::fabs(lean) * 0.9 + random.range(-30, 60);
                           pen.curve({{290, 900}, {290 + lean * 0.4, 560}, {290 + lean, top}}, 8);
                           for (int leaf = 0; leaf < 12; ++leaf) {
                               const double share = 0.35 + leaf * 0.055,
                                            x = 290 + lean * share * share * 1.05,
                                            y = 900 - (900 - top) * share;
                               for (const double side : {-1.0, 1.0})
                                   pen.blob({{x, y},
                                             {x + side * 30, y - 20},
                                             {x + side * 62, y - 6},
                                             {x + side * 30, y + 8}});
                           }
                       }
                   }),
        5);
}

constexpr PictureEntry kPictures[] = {
    {"film/room-wall.png", PngColour::Rgba, paintRoomWall},
    {"film/room-posters.png", PngColour::Rgba, paintPosters},
    {"film/room-shelf.png", PngColour::Rgba, paintShelf},
    {"film/room-desk.png", PngColour::Rgba, paintDesk},
    {"film/room-monitor.png", PngColour::Rgba, paintMonitor},
    {"film/Neon Screen-Mask monitor.png", PngColour::Rgba, paintScreen},
    {"film/room-glass.png", PngColour::Rgba, paintGlass},
    {"film/room-keyboard.png", PngColour::Rgba, paintKeyboard},
    {"film/room-lamp.png", PngColour::Rgba, paintDeskLamp},
    {"film/room-maker.png", PngColour::Rgba, paintMaker},
    {"film/room-mug.png", PngColour::Rgba, paintMug},
    {"film/steam.png", PngColour::Rgba, paintSteam},
    {"film/Neon-lights.png", PngColour::Rgba, paintLights},
    {"film/room-plant.png", PngColour::Rgba, paintPlant},
};

}  // namespace

std::span<const PictureEntry> filmRoom() {
    return kPictures;
}

}  // namespace pictures
