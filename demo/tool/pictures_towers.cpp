#include "pictures_towers.h"

#include <array>

namespace pictures {

namespace {

void setColour(cairo_t* cairo, Colour colour, double alpha = 1) {
    cairo_set_source_rgba(cairo, colour.r, colour.g, colour.b, alpha);
}

void box(cairo_t* cairo, double x, double y, double width, double height) {
    cairo_rectangle(cairo, x, y, width, height);
    cairo_fill(cairo);
}

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

void drawTower(cairo_t* cairo, const Tower& tower, float foot, Colour front, Colour edge) {
    Random random(tower.seed);
    setColour(cairo, front);
    drawRoof(cairo, tower, random);
    box(cairo, tower.x, tower.top, tower.width, foot - tower.top);
    // The side away from the glow is darker, the corner between catches a line of light.
    const float turn = tower.width * random.range(0.58f, 0.80f);
    setColour(cairo, front * 0.62f);
    box(cairo, tower.x + turn, tower.top, tower.width - turn, foot - tower.top);
    setColour(cairo, edge, 0.55);
    box(cairo, tower.x, tower.top, std::max(1.0f, tower.width * 0.012f), foot - tower.top);
    box(cairo, tower.x, tower.top, tower.width, std::max(1.0f, tower.width * 0.010f));
}

// What of a house is drawn: the walls with their dark panes, or the lit panes alone.
enum class Part { Walls, Lamps };

void drawWindows(cairo_t* cairo, const Tower& tower, const TowerWindows& windows, float foot,
                 Part part) {
    Random random(tower.seed + 1000);
    const int columns = std::max(2, static_cast<int>(tower.width * 0.92f / windows.cellWidth));
    const float left =
        tower.x + (tower.width - static_cast<float>(columns) * windows.cellWidth) / 2;
    const Colour house = kLamps[random.below(static_cast<int>(kLamps.size()))];
    const float share = windows.lit * random.range(0.5f, 1.3f);
    for (float y = tower.top + windows.cellHeight; y < foot; y += windows.cellHeight) {
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

// For the lamps each house first wipes out those of the houses that it hides.
void drawRow(cairo_t* cairo, const TowerRow& row, const std::vector<Tower>& towers, Part part) {
    const auto foot = static_cast<float>(row.height);
    for (const Tower& tower : towers) {
        if (part == Part::Lamps) cairo_set_operator(cairo, CAIRO_OPERATOR_CLEAR);
        drawTower(cairo, tower, foot, row.front, row.edge);
        cairo_set_operator(cairo, CAIRO_OPERATOR_OVER);
        drawWindows(cairo, tower, row.windows, foot, part);
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

}  // namespace

std::vector<Tower> towersOf(const TowerRow& row) {
    Random random(row.seed);
    std::vector<Tower> towers;
    for (float x = -row.minWidth * 0.6f; x < static_cast<float>(row.width);) {
        const float width = std::round(random.range(row.minWidth, row.maxWidth));
        const float hill = gradientNoise(x / 380, 0.5f, row.seed + 3) * 0.6f;
        const float top = row.middleTop - row.swing * (hill + random.range(-0.5f, 0.5f));
        towers.push_back({std::round(x), std::round(top), width, random.next()});
        x += width * random.range(0.80f, 1.06f);
    }
    return towers;
}

void paintTowerRow(Layer& layer, const TowerRow& row, const std::vector<Tower>& towers) {
    const Drawing lamps = [&](cairo_t* cairo) { drawRow(cairo, row, towers, Part::Lamps); };
    layer.draw([&](cairo_t* cairo) { drawRow(cairo, row, towers, Part::Walls); });
    layer.tint([&](int, int) { return row.haze; },
               [&](int, int y) {
                   return row.hazeShare * smoothstep(row.hazeTop, static_cast<float>(row.height),
                                                     static_cast<float>(y));
               });
    Layer lit(row.width, row.height);
    lit.draw(lamps);
    layer.cover(lit, row.lampShare);
    const Mask shine = Mask::drawn(row.width, row.height, lamps);
    layer.light(shine.blurred(row.windows.cellWidth * 0.45f), kOrange, 0.42f * row.lampShare);
    layer.light(shine.blurred(row.windows.cellWidth * 2), kMagenta, 0.40f * row.lampShare);
    if (row.beacon > 0) addBeacons(layer, towers, row.beacon);
}

}  // namespace pictures
