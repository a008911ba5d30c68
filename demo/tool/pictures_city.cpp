#include <array>

#include "pictures_letters.h"
#include "pictures_painters.h"
#include "pictures_towers.h"

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

}  // namespace

Layer paintCityFar() {
    constexpr std::array kRows{
        TowerRow{60,
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
        TowerRow{67,
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
    for (const TowerRow& row : kRows) paintTowerRow(layer, row, towersOf(row));
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
    constexpr TowerRow kBack{210,
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
    constexpr TowerRow kFront{241,
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
    paintTowerRow(layer, kBack, back);
    for (const Sign& sign : kSigns) {
        if (sign.upright) paintSign(layer, sign, nearestTower(back, sign.x));
    }
    paintTowerRow(layer, kFront, front);
    for (const Sign& sign : kSigns) {
        if (!sign.upright) paintSign(layer, sign, nearestTower(front, sign.x));
    }
    return layer;
}

}  // namespace pictures
