// Neon signs of the film's street, each on its dark board with a margin for the glow.
#include "pictures_film.h"

namespace pictures {

namespace {

Layer boardSign(int width, int height, Colour colour, double tube,
                const std::function<void(Pen&)>& drawing) {
    const double inset = tube * 8;
    Layer layer = drawnLayer(width, height, [&](Pen& pen) {
        pen.flat(hexColour(0x0a0818), 0.94);
        pen.roundBox(inset * 0.62, inset * 0.62, width - inset * 1.24, height - inset * 1.24, 12);
        pen.flat(hexColour(0x2a2450))
            .frame(inset * 0.7, inset * 0.7, width - inset * 1.4, height - inset * 1.4, 2);
    });
    layer.cover(neonSign(width, height, colour, static_cast<float>(tube), drawing));
    return layer;
}

void upright(Pen& pen, std::string_view text, double x, double y, double height, double stroke) {
    for (const char& sign : text) {
        letter(pen, std::string_view(&sign, 1), x, y, height, stroke);
        y += height * 1.42;
    }
}

Layer paintHotel() {
    return boardSign(240, 640, kPink, 8, [](Pen& pen) {
        upright(pen, "HOTEL", 120, 96, 66, 8);
        pen.frame(62, 66, 116, 508, 4);
    });
}

Layer paintArcade() {
    return boardSign(220, 620, kCyan, 7, [](Pen& pen) {
        upright(pen, "ARCADE", 110, 88, 52, 7);
        pen.frame(58, 60, 104, 500, 3.5);
    });
}

Layer paintBowl() {
    return boardSign(400, 320, kOrange, 7, [](Pen& pen) {
        pen.curve({{96, 176}, {112, 226}, {160, 254}, {240, 254}, {288, 226}, {304, 176}}, 8);
        pen.line({{84, 172}, {316, 172}}, 8).line({{160, 258}, {240, 258}}, 8);
        for (const double x : {150.0, 200.0, 250.0})
            pen.curve({{x, 152}, {x - 12, 128}, {x + 10, 106}, {x - 4, 78}}, 6);
        pen.line({{226, 168}, {312, 80}}, 5).line({{246, 168}, {330, 92}}, 5);
    });
}

Layer paintGlass() {
    return boardSign(320, 420, kCyan, 7, [](Pen& pen) {
        pen.line({{84, 100}, {236, 100}, {160, 206}, {84, 100}}, 7);
        pen.line({{160, 206}, {160, 300}}, 7).line({{112, 304}, {208, 304}}, 7);
        pen.line({{108, 132}, {212, 132}}, 5).line({{176, 150}, {226, 66}}, 5);
        letter(pen, "BAR", 160, 326, 30, 5);
    });
}

Layer paintOpen() {
    return boardSign(420, 220, kMagenta, 7, [](Pen& pen) {
        letter(pen, "OPEN", 210, 82, 56, 7);
        pen.frame(64, 58, 292, 104, 4);
    });
}

Layer paintHeart() {
    return boardSign(320, 300, kMagenta, 7, [](Pen& pen) {
        pen.curve({{160, 236},
                   {92, 170},
                   {74, 118},
                   {104, 80},
                   {146, 88},
                   {160, 124},
                   {174, 88},
                   {216, 80},
                   {246, 118},
                   {228, 170},
                   {160, 236}},
                  8);
        pen.line({{60, 150}, {128, 150}, {146, 118}, {168, 186}, {186, 150}, {260, 150}}, 5);
    });
}

Layer paintSynth() {
    return boardSign(560, 240, hexColour(0x9a6bff), 8, [](Pen& pen) {
        letter(pen, "SYNTH", 280, 76, 62, 8);
        pen.curve({{80, 172},
                   {120, 152},
                   {160, 172},
                   {200, 190},
                   {240, 172},
                   {280, 152},
                   {320, 172},
                   {360, 190},
                   {400, 172},
                   {440, 152},
                   {480, 172}},
                  5);
    });
}

// Paper lanterns on a sagging line.
Layer paintLanterns() {
    constexpr int kWidth = 1200, kHeight = 260;
    Layer layer = drawnLayer(kWidth, kHeight, [](Pen& pen) {
        pen.flat(hexColour(0x0a0818));
        pen.curve({{0, 40}, {300, 96}, {600, 116}, {900, 96}, {1200, 40}}, 3);
    });
    for (int i = 0; i < 9; ++i) {
        const float u = (static_cast<float>(i) - 4) / 4;
        const float x = 600 + 500 * u, y = 152 - 62 * u * u;
        layer.spot(x, y, 34, hexColour(0xff6a38), 0.5f);
        layer.draw([&](cairo_t* cairo) {
            Pen pen(cairo);
            pen.round(
                x, y, 30,
                {{0, hexColour(0xfff0c0)}, {0.5, hexColour(0xffa858)}, {1, hexColour(0xe04a38)}});
            pen.oval(x, y, 24, 28);
            pen.flat(hexColour(0x50122a)).box(x - 9, y - 31, 18, 5).box(x - 9, y + 26, 18, 5);
            pen.flat(hexColour(0x8a2030), 0.5)
                .curve({{x - 22, y - 9}, {x, y - 5}, {x + 22, y - 9}}, 1.5);
            pen.curve({{x - 22, y + 9}, {x, y + 13}, {x + 22, y + 9}}, 1.5);
        });
    }
    return layer;
}

constexpr PictureEntry kPictures[] = {
    {"film/Neon-hotel.png", PngColour::Rgba, paintHotel},
    {"film/Neon-arcade.png", PngColour::Rgba, paintArcade},
    {"film/Neon-bowl.png", PngColour::Rgba, paintBowl},
    {"film/Neon-glass.png", PngColour::Rgba, paintGlass},
    {"film/Neon-open.png", PngColour::Rgba, paintOpen},
    {"film/Neon-heart.png", PngColour::Rgba, paintHeart},
    {"film/Neon-synth.png", PngColour::Rgba, paintSynth},
    {"film/Neon-lanterns.png", PngColour::Rgba, paintLanterns},
};

}  // namespace

std::span<const PictureEntry> filmSigns() {
    return kPictures;
}

}  // namespace pictures
