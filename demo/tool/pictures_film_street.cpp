// The film's street: house fronts that run towards one vanishing point, the wet road, and who is
// out in the rain.
#include <array>

#include "pictures_film.h"

namespace pictures {

namespace {

// Of the frame: what lies on the horizon, and how a wall beside the street is seen. A point at
// depth z on the wall is kReach / z beside the vanishing point and kEye * height / z below it.
constexpr double kVanishX = 960, kVanishY = 540, kReach = 1150, kEye = 430;

struct Wall {
    double nearZ, farZ;
    double top;  // height of the roof over the eye, in heights of the eye over the road
    int floors, columns;
    Colour front, haze;
    float hazeShare;
    uint32_t seed;
    double left, up;  // pixels of the frame at the picture's top left corner
    int width, height;
};

constexpr std::array kGlass{hexColour(0xffc070), hexColour(0xff9a50), hexColour(0x78c8ff),
                            hexColour(0xff70b8), hexColour(0xffe0a0)};

Layer wall(const Wall& look) {
    return drawnLayer(look.width, look.height, [&](Pen& pen) {
        Random random(look.seed);
        const auto dot = [&](double z, double height) {
            return Dot{kVanishX - kReach / z - look.left, kVanishY + kEye * height / z - look.up};
        };
        const auto depth = [&](double share) {
            return look.nearZ + (look.farZ - look.nearZ) * share;
        };
        const auto cell = [&](double u0, double u1, double low, double high) {
            pen.shape({dot(depth(u0), low), dot(depth(u1), low), dot(depth(u1), high),
                       dot(depth(u0), high)});
        };
        const Colour front = mix(look.front, look.haze, look.hazeShare);
        const Dot foot = dot(look.nearZ, 1), roof = dot(look.nearZ, -look.top);
        pen.down(
            roof.y, foot.y,
            {{0, mix(front, look.haze, 0.10f)}, {0.7, front}, {1, mix(front, kMagenta, 0.16f)}});
        cell(0, 1, 1, -look.top);
        // Floors with their ledges, windows with frames; the ground floor is all shop.
        const double step = (look.top + 0.25) / look.floors;
        for (int floor = 0; floor < look.floors; ++floor) {
            const double low = 0.1 - floor * step;
            pen.flat(mix(front, kInk, 0.55f))
                .shape({dot(depth(0), low), dot(depth(1), low), dot(depth(1), low + 0.05),
                        dot(depth(0), low + 0.05)});
            for (int column = 0; column < look.columns; ++column) {
                const double u0 = (column + 0.24) / look.columns,
                             u1 = (column + 0.76) / look.columns;
                const double bottom = low - step * 0.22, top = low - step * 0.80;
                const bool lit = random.chance(0.36f);
                const Colour lamp = kGlass[static_cast<size_t>(random.below(5))];
                const double alpha = random.range(0.5f, 1.0f) * (1 - look.hazeShare * 0.5);
                pen.flat(mix(front, kInk, 0.7f));
                cell(u0 - 0.02, u1 + 0.02, bottom + step * 0.04, top - step * 0.04);
                pen.flat(lit ? lamp : mix(front, hexColour(0x3a4aa0), 0.35f), lit ? alpha : 0.9);
                cell(u0, u1, bottom, top);
                if (lit && random.chance(0.6f)) {
                    pen.flat(mix(lamp, kInk, 0.55f), 0.8);
                    cell(u0, u0 + (u1 - u0) * 0.3, bottom, top);
                }
                pen.flat(mix(front, kInk, 0.7f));
                cell((u0 + u1) / 2 - 0.008, (u0 + u1) / 2 + 0.008, bottom, top);
            }
        }
        for (int shop = 0; shop < 2; ++shop) {
            const double u0 = 0.07 + shop * 0.48, u1 = u0 + 0.38;
            const Colour lamp = kGlass[static_cast<size_t>(random.below(5))];
            pen.flat(mix(lamp, {1, 1, 1}, 0.25f), 0.9 - look.hazeShare * 0.4);
            cell(u0, u1, 0.86, 0.28);
            pen.flat(mix(front, kInk, 0.6f));
            for (const double bar : {0.25, 0.5, 0.75})
                cell(u0 + (u1 - u0) * bar - 0.005, u0 + (u1 - u0) * bar + 0.005, 0.86, 0.28);
            pen.flat(mix(kGlass[static_cast<size_t>(random.below(5))], kInk, 0.62f));
            cell(u0 - 0.03, u1 + 0.03, 0.30, 0.16);
        }
        // The corner that ends the wall catches light from the street.
        pen.flat(mix(front, kPink, 0.5f), 0.7);
        cell(0.985, 1, 1, -look.top);
    });
}

Layer paintLeftNear() {
    return wall({0.72, 1.30, 3.4, 5, 4, hexColour(0x17133c), hexColour(0x8a3a9a), 0.0f, 3, -660,
                 -1160, 740, 2300});
}
Layer paintLeftMiddle() {
    return wall({1.36, 2.20, 3.0, 7, 5, hexColour(0x1e1850), hexColour(0x8a3a9a), 0.25f, 8, 110,
                 -460, 340, 1340});
}
Layer paintLeftFar() {
    return wall({2.3, 4.6, 3.8, 9, 7, hexColour(0x241c60), hexColour(0x9a44a0), 0.5f, 13, 455, -220,
                 260, 960});
}
Layer paintRightNear() {
    return wall({0.72, 1.30, 2.7, 4, 4, hexColour(0x1a1238), hexColour(0x8a3a9a), 0.0f, 24, -660,
                 -1100, 740, 2240});
}
Layer paintRightMiddle() {
    return wall({1.36, 2.20, 3.9, 9, 5, hexColour(0x1b1a4c), hexColour(0x8a3a9a), 0.25f, 35, 110,
                 -720, 340, 1600});
}

Layer paintSky() {
    constexpr std::array kStops{Stop{0, hexColour(0x0a0a30)}, Stop{0.4f, hexColour(0x2b1a6a)},
                                Stop{0.75f, hexColour(0x9a3a94)}, Stop{1, hexColour(0xff7a90)}};
    constexpr std::array kLights{SkyLight{480, 300, 130, hexColour(0xff8a9a), 0.4f}};
    Layer layer = paintedSky(960, 400, kStops, kLights);
    addClouds(layer, {210, 0.5f, hexColour(0x7a4ab0), hexColour(0x241858), 0.7f, 8});
    return layer;
}

constexpr int kRoadWidth = 2000, kRoadHeight = 560;

// Wet asphalt: lights of the signs run down it in broken streaks.
void addSheen(Layer& road) {
    struct Streak {
        float x, width;
        Colour colour;
        float gain;
    };
    constexpr std::array kStreaks{Streak{1000, 90, hexColour(0xff8aa8), 0.75f},
                                  Streak{700, 46, kCyan, 0.55f},
                                  Streak{1310, 52, kMagenta, 0.65f},
                                  Streak{480, 60, kPink, 0.5f},
                                  Streak{1540, 60, kOrange, 0.5f},
                                  Streak{1150, 24, kGold, 0.5f},
                                  Streak{860, 22, hexColour(0x9a6bff), 0.6f}};
    road.fill([&](int x, int y) {
        const auto px = static_cast<float>(x), py = static_cast<float>(y);
        const float down = py / kRoadHeight;
        Colour colour = mix(hexColour(0x8a3c88), hexColour(0x0b0a20), smoothstep(0, 0.55f, down));
        const float wet =
            0.55f + 0.75f * fractalNoise(px / (60 + 200 * down), py / (5 + 22 * down), 4, 6);
        for (const Streak& streak : kStreaks) {
            // Streaks fan out from the vanishing point as the road does.
            const float middle = 1000 + (streak.x - 1000) * (0.35f + 1.1f * down);
            const float off = (px - middle + 26 * fractalNoise(py / 12, streak.x, 2, 9)) /
                              (streak.width * (0.4f + 1.5f * down));
            colour = colour + streak.colour * (streak.gain * std::exp(-off * off) *
                                               (1 - 0.55f * down) * std::clamp(wet, 0.0f, 1.2f));
        }
        return colour;
    });
}

void drawRoadMarks(cairo_t* cairo) {
    Pen pen(cairo);
    const auto side = [](double x, double down) {
        return 1000 + (x - 1000) * (0.16 + 0.84 * down);
    };
    pen.flat(hexColour(0xffe8f4), 0.20);
    for (int i = -6; i <= 6; ++i) {
        const double x = 1000 + i * 190;
        pen.shape({{side(x - 46, 0.50), 300},
                   {side(x + 46, 0.50), 300},
                   {side(x + 46, 0.72), 400},
                   {side(x - 46, 0.72), 400}});
    }
    // Kerbs.
    for (const double sign : {-1.0, 1.0}) {
        pen.flat(hexColour(0x0a0818), 0.75);
        pen.shape({{1000 + sign * 150, 0},
                   {1000 + sign * 1160, 560},
                   {1000 + sign * 2200, 560},
                   {1000 + sign * 300, 0}});
        pen.flat(kPink, 0.4).line({{1000 + sign * 150, 0}, {1000 + sign * 1160, 560}}, 4);
    }
}

Layer paintRoad() {
    Layer layer(kRoadWidth, kRoadHeight);
    addSheen(layer);
    layer.draw(drawRoadMarks);
    // The far end melts into the light of the street.
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < kRoadWidth; ++x) {
            float* pixel = layer.pixel(x, y);
            const float share = smoothstep(0, 60, static_cast<float>(y));
            for (int channel = 0; channel < 4; ++channel) pixel[channel] *= share;
        }
    }
    return layer;
}

// Two under one umbrella, from behind, rimmed by the light of the signs.
Layer paintCouple() {
    Layer layer = drawnLayer(440, 640, [](Pen& pen) {
        pen.flat(hexColour(0x07060f));
        addFigure(pen, 176, 630, 420);
        addFigure(pen, 270, 632, 388);
        pen.shape({{124, 396}, {228, 396}, {240, 520}, {112, 520}});
        pen.line({{222, 190}, {222, 420}}, 5);
        pen.blob({{30, 190},
                  {56, 122},
                  {120, 74},
                  {222, 54},
                  {324, 74},
                  {388, 122},
                  {414, 190},
                  {368, 172},
                  {318, 192},
                  {270, 172},
                  {222, 194},
                  {174, 172},
                  {126, 192},
                  {76, 172}});
        pen.flat(kPink, 0.85).curve({{222, 54}, {324, 74}, {388, 122}, {414, 188}}, 3.5);
        pen.flat(kCyan, 0.75).curve({{222, 54}, {120, 74}, {56, 122}, {31, 188}}, 3.5);
        pen.flat(kPink, 0.6).curve({{306, 310}, {318, 360}, {314, 470}}, 3);
        pen.flat(kCyan, 0.5).curve({{132, 300}, {122, 360}, {126, 450}}, 3);
    });
    return layer;
}

Layer paintWalker() {
    return drawnLayer(220, 420, [](Pen& pen) {
        pen.flat(hexColour(0x0b0918));
        addFigure(pen, 110, 412, 280);
        pen.shape({{70, 190}, {150, 190}, {164, 330}, {56, 330}});
        pen.line({{126, 130}, {126, 250}}, 4);
        pen.blob({{14, 128},
                  {46, 72},
                  {124, 50},
                  {190, 78},
                  {212, 130},
                  {164, 116},
                  {112, 130},
                  {62, 116}});
        pen.flat(kOrange, 0.8).curve({{124, 50}, {190, 78}, {212, 128}}, 3);
    });
}

Layer paintTram() {
    Layer layer = drawnLayer(420, 480, [](Pen& pen) {
        pen.flat(hexColour(0x05040c), 0.7).oval(210, 452, 190, 20);
        pen.across(40, 380,
                   {{0, hexColour(0x3a1238)},
                    {0.3, hexColour(0xa02c50)},
                    {0.8, hexColour(0x7a2048)},
                    {1, hexColour(0x2a0c2c)}});
        pen.roundBox(40, 60, 340, 390, 40);
        pen.flat(hexColour(0x140a1e)).roundBox(66, 110, 288, 150, 18);
        pen.down(118, 252, {{0, hexColour(0xffd890)}, {1, hexColour(0xd08038)}});
        pen.roundBox(74, 118, 272, 134, 12);
        pen.flat(hexColour(0x140a1e)).box(205, 110, 10, 150);
        pen.oval(140, 190, 17, 20).roundBox(110, 208, 60, 50, 18);
        pen.oval(280, 196, 14, 17).roundBox(256, 210, 48, 46, 16);
        pen.flat(hexColour(0x1a1024)).roundBox(130, 70, 160, 34, 8);
        pen.flat(hexColour(0xffe6b0));
        letter(pen, "230 VORN", 210, 79, 15, 3);
        pen.flat(hexColour(0xe8a060)).box(44, 290, 332, 8);
        pen.flat(hexColour(0x1a0a1c)).box(50, 410, 320, 40);
        pen.line({{210, 60}, {180, 20}, {240, 20}, {210, 60}}, 4).line({{150, 18}, {270, 18}}, 5);
    });
    for (const float x : {110.0f, 310.0f}) {
        layer.spot(x, 350, 40, hexColour(0xffe0a0), 0.45f);
        layer.spot(x, 350, 13, hexColour(0xfff6e0), 1.6f);
    }
    return layer;
}

// A board high on the wall; the mask is the part that shows the live picture.
Layer paintBoard() {
    return drawnLayer(620, 420, [](Pen& pen) {
        pen.flat(hexColour(0x08071a));
        pen.line({{90, 330}, {40, 420}}, 8).line({{530, 330}, {580, 420}}, 8);
        pen.roundBox(10, 10, 600, 350, 20);
        pen.flat(hexColour(0x3c3480)).frame(18, 18, 584, 334, 4);
        for (int i = 0; i < 8; ++i)
            pen.flat(hexColour(0xffe0b0), 0.8).circle(54 + i * 73.0, 350, 4);
    });
}

Layer paintBoardScreen() {
    return drawnLayer(560, 315, [](Pen& pen) {
        pen.down(0, 315, {{0, hexColour(0x8088d0)}, {1, hexColour(0x5058a0)}});
        pen.roundBox(2, 2, 556, 311, 14);
    });
}

constexpr PictureEntry kPictures[] = {
    {"film/street-sky.png", PngColour::Rgb, paintSky},
    {"film/street-left-near.png", PngColour::Rgba, paintLeftNear},
    {"film/street-left-middle.png", PngColour::Rgba, paintLeftMiddle},
    {"film/street-far.png", PngColour::Rgba, paintLeftFar},
    {"film/street-right-near.png", PngColour::Rgba, paintRightNear},
    {"film/street-right-middle.png", PngColour::Rgba, paintRightMiddle},
    {"film/street-road.png", PngColour::Rgba, paintRoad},
    {"film/couple.png", PngColour::Rgba, paintCouple},
    {"film/walker.png", PngColour::Rgba, paintWalker},
    {"film/tram.png", PngColour::Rgba, paintTram},
    {"film/board.png", PngColour::Rgba, paintBoard},
    {"film/Neon Screen-Mask board.png", PngColour::Rgba, paintBoardScreen},
};

}  // namespace

std::span<const PictureEntry> filmStreet() {
    return kPictures;
}

}  // namespace pictures
