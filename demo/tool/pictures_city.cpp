#include <array>

#include "pictures_letters.h"
#include "pictures_noise.h"
#include "pictures_painters.h"

namespace pictures {

namespace {

constexpr int kWidth = 1920, kHeight = 1080;

void setColour(cairo_t* cairo, Colour colour, double alpha = 1) {
    cairo_set_source_rgba(cairo, colour.r, colour.g, colour.b, alpha);
}

void box(cairo_t* cairo, double x, double y, double width, double height) {
    cairo_rectangle(cairo, x, y, width, height);
    cairo_fill(cairo);
}

// A house front; all in pixels.
struct Tower {
    float x, top, width;
    uint32_t seed;
};

struct Windows {
    float cellWidth, cellHeight;  // pixels from one window to the next
    float fillX, fillY;           // share of the cell that is glass
    float lit;                    // share of windows with light
};

constexpr std::array kLamps{hexColour(0xffd38a), hexColour(0xffb35a), hexColour(0xffe9c4),
                            hexColour(0xff8fb8), hexColour(0x8fd8ff), hexColour(0xffc06a)};

// What stands on a roof, from plain to needle; drawn in the colour that is set.
void drawRoof(cairo_t* cairo, const Tower& tower, Random& random) {
    const float w = tower.width, x = tower.x, top = tower.top;
    const float middle = x + w * random.range(0.35f, 0.65f);
    switch (random.below(5)) {
        case 0:
            box(cairo, x + w * 0.18, top - w * 0.14, w * 0.64, w * 0.14 + 1);
            box(cairo, x + w * 0.32, top - w * 0.30, w * 0.36, w * 0.30 + 1);
            box(cairo, x + w * 0.49, top - w * 0.95, w * 0.022 + 1, w * 0.7);
            break;
        case 1:
            cairo_move_to(cairo, x, top + 1);
            cairo_line_to(cairo, x + w, top + 1);
            cairo_line_to(cairo, x + w, top - w * 0.35);
            cairo_close_path(cairo);
            cairo_fill(cairo);
            break;
        case 2:
            box(cairo, middle, top - w * 0.8, w * 0.018 + 1, w * 0.8 + 1);
            box(cairo, middle - w * 0.10, top - w * 0.5, w * 0.20, 1.5);
            box(cairo, middle - w * 0.06, top - w * 0.62, w * 0.12, 1.5);
            box(cairo, x + w * 0.08, top - w * 0.09, w * 0.22, w * 0.09 + 1);
            break;
        case 3:
            box(cairo, x + w * 0.58, top - w * 0.12, w * 0.03, w * 0.12 + 1);
            box(cairo, x + w * 0.79, top - w * 0.12, w * 0.03, w * 0.12 + 1);
            box(cairo, x + w * 0.55, top - w * 0.34, w * 0.30, w * 0.24);
            cairo_move_to(cairo, x + w * 0.53, top - w * 0.34);
            cairo_line_to(cairo, x + w * 0.70, top - w * 0.44);
            cairo_line_to(cairo, x + w * 0.87, top - w * 0.34);
            cairo_fill(cairo);
            break;
        default:
            box(cairo, x + w * 0.10, top - w * 0.06, w * 0.80, w * 0.06 + 1);
            box(cairo, x + w * 0.60, top - w * 0.16, w * 0.16, w * 0.16 + 1);
    }
}

void drawTower(cairo_t* cairo, const Tower& tower, Colour front, Colour edge) {
    Random random(tower.seed);
    setColour(cairo, front);
    drawRoof(cairo, tower, random);
    box(cairo, tower.x, tower.top, tower.width, kHeight - tower.top);
    // The side away from the glow is darker, the corner between catches a line of light.
    const float turn = tower.width * random.range(0.58f, 0.80f);
    setColour(cairo, front * 0.62f);
    box(cairo, tower.x + turn, tower.top, tower.width - turn, kHeight - tower.top);
    setColour(cairo, edge, 0.55);
    box(cairo, tower.x, tower.top, std::max(1.0f, tower.width * 0.012f), kHeight - tower.top);
    box(cairo, tower.x, tower.top, tower.width, std::max(1.0f, tower.width * 0.010f));
}

// What of a house is drawn: the walls with their dark panes, or the lit panes alone.
enum class Part { Walls, Lamps };

void drawWindows(cairo_t* cairo, const Tower& tower, const Windows& windows, Part part) {
    Random random(tower.seed + 1000);
    const int columns = std::max(2, static_cast<int>(tower.width * 0.92f / windows.cellWidth));
    const float left =
        tower.x + (tower.width - static_cast<float>(columns) * windows.cellWidth) / 2;
    const Colour house = kLamps[random.below(static_cast<int>(kLamps.size()))];
    const float share = windows.lit * random.range(0.5f, 1.3f);
    for (float y = tower.top + windows.cellHeight; y < kHeight; y += windows.cellHeight) {
        const bool officeFloor = random.chance(0.10f);
        for (int column = 0; column < columns; ++column) {
            const bool lit = random.chance(officeFloor ? 0.85f : share);
            const float glow = random.range(0.35f, 1.0f);
            const bool own = random.chance(0.3f);
            const Colour lamp = own ? kLamps[random.below(static_cast<int>(kLamps.size()))] : house;
            if (lit != (part == Part::Lamps)) continue;
            if (lit) {
                setColour(cairo, lamp, glow);
            } else {
                setColour(cairo, hexColour(0x2b3a86), 0.22);
            }
            box(cairo,
                left + (static_cast<float>(column) + (1 - windows.fillX) / 2) * windows.cellWidth,
                y, windows.cellWidth * windows.fillX, windows.cellHeight * windows.fillY);
        }
    }
}

// A row of houses from side to side of the picture.
struct Row {
    uint32_t seed;
    float middleTop, swing;    // pixels: mean height of the roofs in the picture, their spread
    float minWidth, maxWidth;  // of a house, pixels
    Windows windows;
    Colour front, edge, haze;
    float hazeTop, hazeShare;  // where haze begins, pixels; how thick it is at the foot
    float lampShare;           // how much of the lamps' light gets through the haze
    float beacon;              // size of the red lights on the roofs, pixels
};

std::vector<Tower> towersOf(const Row& row) {
    Random random(row.seed);
    std::vector<Tower> towers;
    for (float x = -row.minWidth * 0.6f; x < kWidth;) {
        const float width = std::round(random.range(row.minWidth, row.maxWidth));
        const float hill = gradientNoise(x / 380, 0.5f, row.seed + 3) * 0.6f;
        const float top = row.middleTop - row.swing * (hill + random.range(-0.5f, 0.5f));
        towers.push_back({std::round(x), std::round(top), width, random.next()});
        x += width * random.range(0.80f, 1.06f);
    }
    return towers;
}

// For the lamps each house first wipes out those of the houses that it hides.
void drawRow(cairo_t* cairo, const Row& row, const std::vector<Tower>& towers, Part part) {
    for (const Tower& tower : towers) {
        if (part == Part::Lamps) cairo_set_operator(cairo, CAIRO_OPERATOR_CLEAR);
        drawTower(cairo, tower, row.front, row.edge);
        cairo_set_operator(cairo, CAIRO_OPERATOR_OVER);
        drawWindows(cairo, tower, row.windows, part);
    }
}

void addBeacons(Layer& layer, const std::vector<Tower>& towers, float size) {
    for (const Tower& tower : towers) {
        if (tower.seed % 3 != 0) continue;
        const float x = tower.x + tower.width * 0.1f, y = tower.top - size;
        layer.spot(x, y, size * 4, hexColour(0xff2440), 0.35f);
        layer.spot(x, y, size, hexColour(0xff8080), 1.2f);
    }
}

void paintRow(Layer& layer, const Row& row, const std::vector<Tower>& towers) {
    const Drawing lamps = [&](cairo_t* cairo) { drawRow(cairo, row, towers, Part::Lamps); };
    layer.draw([&](cairo_t* cairo) { drawRow(cairo, row, towers, Part::Walls); });
    layer.tint([&](int, int) { return row.haze; },
               [&](int, int y) {
                   return row.hazeShare * smoothstep(row.hazeTop, kHeight, static_cast<float>(y));
               });
    Layer lit(kWidth, kHeight);
    lit.draw(lamps);
    layer.cover(lit, row.lampShare);
    const Mask shine = Mask::drawn(kWidth, kHeight, lamps);
    layer.light(shine.blurred(row.windows.cellWidth * 0.45f), kOrange, 0.42f * row.lampShare);
    layer.light(shine.blurred(row.windows.cellWidth * 2), kMagenta, 0.40f * row.lampShare);
    addBeacons(layer, towers, row.beacon);
}

}  // namespace

Layer paintCityFar() {
    constexpr std::array kRows{
        Row{60,
            660,
            230,
            26,
            58,
            {5, 8, 0.55f, 0.45f, 0.32f},
            hexColour(0x3a2b86),
            kMagenta,
            hexColour(0xa63f9a),
            480,
            0.72f,
            0.62f,
            1.2f},
        Row{67,
            760,
            200,
            34,
            76,
            {6, 10, 0.55f, 0.45f, 0.30f},
            hexColour(0x231d64),
            kMagenta,
            hexColour(0x8e3596),
            520,
            0.55f,
            0.80f,
            1.2f},
    };
    Layer layer(kWidth, kHeight);
    for (const Row& row : kRows) paintRow(layer, row, towersOf(row));
    return layer;
}

namespace {

struct Sign {
    float x;       // pixels; it moves to the nearest house
    float height;  // of its letters, pixels
    const char* text;
    Colour colour;
    bool upright;  // letters one below the other
};

constexpr std::array kSigns{
    Sign{250, 30, "SYNTH", kCyan, true},    Sign{1640, 25, "ARCADE", kMagenta, true},
    Sign{1030, 46, "VORN", kOrange, false}, Sign{640, 28, "NODES", kPink, true},
    Sign{1390, 30, "230 S", kCyan, false},
};

struct Place {
    double x, y;
};

void addSign(cairo_t* cairo, const Sign& sign, Place place, const LetterStyle& style) {
    if (!sign.upright) {
        addText(cairo, sign.text, place.x - textWidth(sign.text, style) / 2, place.y, style);
        return;
    }
    for (const char* letter = sign.text; *letter != '\0'; ++letter) {
        const std::string_view one(letter, 1);
        addText(cairo, one, place.x - textWidth(one, style) / 2, place.y, style);
        place.y += sign.height * 1.5;
    }
}

const Tower& nearestTower(const std::vector<Tower>& towers, float x) {
    return *std::min_element(towers.begin(), towers.end(), [x](const Tower& a, const Tower& b) {
        return std::fabs(a.x + a.width / 2 - x) < std::fabs(b.x + b.width / 2 - x);
    });
}

// Stands on the roof of its house, on two posts.
void paintSign(Layer& layer, const Sign& sign, const Tower& tower) {
    const LetterStyle style{.height = sign.height, .stroke = sign.height * 0.13, .tracking = 0.2};
    const double letters = static_cast<double>(std::string_view(sign.text).size());
    const double width =
        sign.upright ? sign.height * 1.5 : textWidth(sign.text, style) + sign.height;
    const double height = sign.height * (sign.upright ? letters * 1.5 + 0.4 : 1.9);
    const Place place{tower.x + tower.width / 2, tower.top - 26 - height + sign.height * 0.45};
    const double left = place.x - width / 2, top = place.y - sign.height * 0.45;
    layer.draw([&](cairo_t* cairo) {
        setColour(cairo, hexColour(0x080718));
        box(cairo, left, top, width, height);
        for (const double share : {0.2, 0.8})
            box(cairo, left + width * share - 2, top, 4, height + 26);
    });
    const Mask frame = Mask::drawn(kWidth, kHeight, [&](cairo_t* cairo) {
        cairo_set_line_width(cairo, 2);
        cairo_rectangle(cairo, left + 3, top + 3, width - 6, height - 6);
        cairo_stroke(cairo);
        addSign(cairo, sign, place, style);
        cairo_set_line_width(cairo, style.stroke);
        cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
        cairo_stroke(cairo);
    });
    neon(layer, frame, sign.colour, sign.height * 0.16f, 0.9f);
}

}  // namespace

Layer paintCityNear() {
    constexpr Row kBack{210,
                        740,
                        300,
                        80,
                        150,
                        {12, 17, 0.52f, 0.50f, 0.28f},
                        hexColour(0x15133f),
                        kViolet,
                        hexColour(0x5c2288),
                        700,
                        0.50f,
                        0.92f,
                        2};
    constexpr Row kFront{241,
                         880,
                         260,
                         130,
                         230,
                         {19, 26, 0.52f, 0.50f, 0.26f},
                         hexColour(0x0a0a24),
                         kViolet,
                         hexColour(0x3c1a70),
                         760,
                         0.40f,
                         1,
                         2};
    Layer layer(kWidth, kHeight);
    const std::vector<Tower> back = towersOf(kBack), front = towersOf(kFront);
    paintRow(layer, kBack, back);
    for (const Sign& sign : kSigns) {
        if (sign.upright) paintSign(layer, sign, nearestTower(back, sign.x));
    }
    paintRow(layer, kFront, front);
    for (const Sign& sign : kSigns) {
        if (!sign.upright) paintSign(layer, sign, nearestTower(front, sign.x));
    }
    return layer;
}

}  // namespace pictures
