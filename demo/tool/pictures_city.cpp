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

void drawWindows(cairo_t* cairo, const Tower& tower, const Windows& windows) {
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

// Fills the width with towers whose tops swing about `middleTop`, higher where `peak` is.
std::vector<Tower> rowOfTowers(uint32_t seed, float middleTop, float swing, float minWidth,
                               float maxWidth) {
    Random random(seed);
    std::vector<Tower> towers;
    for (float x = -minWidth * 0.6f; x < kWidth;) {
        const float width = std::round(random.range(minWidth, maxWidth));
        const float hill = gradientNoise(x / 380, 0.5f, seed + 3) * 0.6f;
        const float top = middleTop - swing * (hill + random.range(-0.5f, 0.5f));
        towers.push_back({std::round(x), std::round(top), width, random.next()});
        x += width * random.range(0.80f, 1.06f);
    }
    return towers;
}

// Light in the windows, as coverage, to be blurred into a shine over the street.
void addShine(Layer& layer, const Drawing& lamps, float sigma, Colour colour, float gain) {
    const Mask mask = Mask::drawn(kWidth, kHeight, lamps);
    layer.light(mask.blurred(sigma), colour, gain);
}

void beacons(Layer& layer, const std::vector<Tower>& towers, float size) {
    for (const Tower& tower : towers) {
        if (tower.seed % 3 != 0) continue;
        const float x = tower.x + tower.width * 0.1f, y = tower.top - size;
        layer.spot(x, y, size * 4, hexColour(0xff2440), 0.35f);
        layer.spot(x, y, size, hexColour(0xff8080), 1.2f);
    }
}

}  // namespace

Layer paintCityFar() {
    Layer layer(kWidth, kHeight);
    constexpr std::array kRows{std::array{660.0f, 230.0f, 26.0f, 58.0f},
                               std::array{760.0f, 200.0f, 34.0f, 76.0f}};
    constexpr std::array kFronts{hexColour(0x3a2b86), hexColour(0x231d64)};
    for (size_t row = 0; row < kRows.size(); ++row) {
        const auto [top, swing, minWidth, maxWidth] = kRows[row];
        const auto towers =
            rowOfTowers(60 + static_cast<uint32_t>(row) * 7, top, swing, minWidth, maxWidth);
        const auto scale = static_cast<float>(row + 1);
        const Windows windows{4 + scale, 6 + 2 * scale, 0.55f, 0.45f, 0.30f};
        layer.draw([&](cairo_t* cairo) {
            for (const Tower& tower : towers) {
                drawTower(cairo, tower, kFronts[row], kMagenta);
                drawWindows(cairo, tower, windows);
            }
        });
        const float haze = row == 0 ? 0.78f : 0.55f;
        layer.tint([](int, int) { return hexColour(0xa63f9a); },
                   [&](int, int y) { return haze * smoothstep(480, 1080, static_cast<float>(y)); });
        beacons(layer, towers, 1.2f);
    }
    return layer;
}

namespace {

struct Sign {
    float x, y, height;  // pixels, of the letters
    const char* text;
    Colour colour;
    bool upright;  // letters one below the other
};

constexpr std::array kSigns{
    Sign{236, 560, 34, "SYNTH", kCyan, true},    Sign{1608, 520, 38, "ARCADE", kMagenta, true},
    Sign{1040, 742, 44, "VORN", kOrange, false}, Sign{640, 690, 30, "NODES", kPink, true},
    Sign{1335, 770, 30, "230 S", kCyan, false},
};

void addSign(cairo_t* cairo, const Sign& sign, const LetterStyle& style) {
    if (!sign.upright) {
        addText(cairo, sign.text, sign.x - textWidth(sign.text, style) / 2, sign.y, style);
        return;
    }
    double y = sign.y;
    for (const char* letter = sign.text; *letter != '\0'; ++letter) {
        const std::string_view one(letter, 1);
        addText(cairo, one, sign.x - textWidth(one, style) / 2, y, style);
        y += sign.height * 1.5;
    }
}

void paintSign(Layer& layer, const Sign& sign) {
    const LetterStyle style{.height = sign.height, .stroke = sign.height * 0.13, .tracking = 0.2};
    const double letters = static_cast<double>(std::string_view(sign.text).size());
    const double width =
        sign.upright ? sign.height * 1.5 : textWidth(sign.text, style) + sign.height;
    const double height = sign.height * (sign.upright ? letters * 1.5 + 0.4 : 1.9);
    const double left = sign.x - width / 2, top = sign.y - sign.height * 0.45;
    layer.draw([&](cairo_t* cairo) {
        setColour(cairo, hexColour(0x080718));
        box(cairo, left, top, width, height);
    });
    const Mask frame = Mask::drawn(kWidth, kHeight, [&](cairo_t* cairo) {
        cairo_set_line_width(cairo, 2);
        cairo_rectangle(cairo, left + 3, top + 3, width - 6, height - 6);
        cairo_stroke(cairo);
        addSign(cairo, sign, style);
        cairo_set_line_width(cairo, style.stroke);
        cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
        cairo_stroke(cairo);
    });
    neon(layer, frame, sign.colour, sign.height * 0.16f, 0.9f);
}

}  // namespace

Layer paintCityNear() {
    Layer layer(kWidth, kHeight);
    constexpr std::array kRows{std::array{740.0f, 300.0f, 80.0f, 150.0f},
                               std::array{880.0f, 260.0f, 130.0f, 230.0f}};
    constexpr std::array kFronts{hexColour(0x15133f), hexColour(0x0a0a24)};
    for (size_t row = 0; row < kRows.size(); ++row) {
        const auto [top, swing, minWidth, maxWidth] = kRows[row];
        const auto towers =
            rowOfTowers(210 + static_cast<uint32_t>(row) * 31, top, swing, minWidth, maxWidth);
        const auto scale = static_cast<float>(row);
        const Windows windows{12 + 7 * scale, 17 + 9 * scale, 0.52f, 0.50f, 0.26f};
        layer.draw([&](cairo_t* cairo) {
            for (const Tower& tower : towers) {
                drawTower(cairo, tower, kFronts[row], kViolet);
                drawWindows(cairo, tower, windows);
            }
        });
        addShine(
            layer,
            [&](cairo_t* cairo) {
                for (const Tower& tower : towers) drawWindows(cairo, tower, windows);
            },
            9, kOrange, 0.30f);
        layer.tint([](int, int) { return hexColour(0x5c2288); },
                   [&](int, int y) {
                       return (row == 0 ? 0.55f : 0.25f) *
                              smoothstep(700, 1080, static_cast<float>(y));
                   });
        beacons(layer, towers, 2.0f);
    }
    for (const Sign& sign : kSigns) paintSign(layer, sign);
    return layer;
}

}  // namespace pictures
