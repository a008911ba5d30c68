#include <array>

#include "pictures_letters.h"
#include "pictures_noise.h"
#include "pictures_painters.h"

namespace pictures {

namespace {

constexpr int kWidth = 1920, kHeight = 1080;
constexpr double kMiddleX = kWidth / 2.0, kMiddleY = kHeight / 2.0;
constexpr LetterStyle kWordStyle{.height = 230, .stroke = 30, .tracking = 0.22};
constexpr double kWordTop = kMiddleY - 115;

Mask wordMask(std::string_view word) {
    return textMask(kWidth, kHeight, word, kMiddleX, kWordTop, kWordStyle);
}

// Broad letters with a vertical change of colour, a rim of light and a glow about them.
void paintLetters(Layer& layer, const Mask& letters, Colour top, Colour bottom) {
    layer.light(letters.blurred(60), mix(top, bottom, 0.5f), 0.75f);
    layer.light(letters.blurred(16), mix(top, bottom, 0.5f), 0.45f);
    layer.cover(letters, [&](int, int y) {
        const float down = (static_cast<float>(y) - static_cast<float>(kWordTop)) / 230;
        return mix(mix(top, {1, 1, 1}, 0.35f), bottom, smoothstep(0, 1, down));
    });
    // The middle of each stroke, found where the blurred letters are fullest, runs hot as in a
    // tube.
    const Mask soft = letters.blurred(7);
    Mask hot = soft;
    for (float& value : hot.values) value = smoothstep(0.62f, 0.95f, value);
    layer.cover(hot, {1, 1, 1}, 0.85f);
}

}  // namespace

Layer paintWordLight() {
    Layer layer(kWidth, kHeight);
    const Mask letters = wordMask("LIGHT");
    // Rays: the letters drawn again and again, larger and fainter, from a lamp above the middle.
    Mask rays(kWidth, kHeight);
    constexpr int kSteps = 48;
    const Mask soft = letters.blurred(3);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            float sum = 0;
            for (int step = 0; step < kSteps; ++step) {
                const float share = static_cast<float>(step) / kSteps;
                const float scale = 1 - 0.62f * share;
                const int fromX = static_cast<int>(960 + (static_cast<float>(x) - 960) * scale);
                const int fromY = static_cast<int>(540 + (static_cast<float>(y) - 540) * scale);
                sum += soft.at(fromX, fromY) * (1 - share) * (1 - share);
            }
            rays.at(x, y) = sum / kSteps;
        }
    }
    layer.light(rays, mix(kGold, kOrange, 0.45f), 2.6f);
    paintLetters(layer, letters, kCream, kOrange);
    return layer;
}

Layer paintWordMotion() {
    Layer layer(kWidth, kHeight);
    const auto slanted = [](double shift) {
        return Mask::drawn(kWidth, kHeight, [shift](cairo_t* cairo) {
            cairo_matrix_t lean;
            cairo_matrix_init(&lean, 1, 0, -0.22, 1, 0.22 * kMiddleY + shift, 0);
            cairo_transform(cairo, &lean);
            LetterStyle style = kWordStyle;
            style.height = 210, style.tracking = 0.16;
            addText(cairo, "MOTION", kMiddleX - textWidth("MOTION", style) / 2, kMiddleY - 105,
                    style);
            cairo_set_line_width(cairo, style.stroke);
            cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
            cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
            cairo_stroke(cairo);
        });
    };
    const Mask letters = slanted(60);
    // Trails: light that each row of the letters leaves behind it, in streaks.
    Mask trail(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        const float streak =
            0.25f +
            0.75f * smoothstep(-0.2f, 0.5f, gradientNoise(0.5f, static_cast<float>(y) / 5, 44));
        const float keep = 1 - 1 / (60 + 240 * streak);
        float light = 0;
        for (int x = kWidth - 1; x >= 0; --x) {
            light = std::max(light * keep, letters.at(x, y) * streak);
            trail.at(x, y) = light * smoothstep(0, 260, static_cast<float>(x));
        }
    }
    layer.light(trail, mix(kCyan, kMist, 0.5f), 0.55f);
    for (int ghost = 3; ghost >= 1; --ghost) {
        layer.light(slanted(60 - ghost * 26), kMagenta, 0.34f / static_cast<float>(ghost));
    }
    paintLetters(layer, letters, kCyan, hexColour(0x4a5cff));
    return layer;
}

Layer paintWordSound() {
    Layer layer(kWidth, kHeight);
    // Bars above and below, as high as a chord of sines; the letters stand where they part.
    const Mask bars = Mask::drawn(kWidth, kHeight, [](cairo_t* cairo) {
        cairo_set_line_width(cairo, 8);
        cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
        for (int x = 120; x <= kWidth - 120; x += 16) {
            const double t = (x - 120.0) / (kWidth - 240.0);
            const double hull = std::pow(std::sin(M_PI * t), 0.8);
            const double wave = 0.5 + 0.3 * std::sin(t * 31) + 0.2 * std::sin(t * 83 + 1);
            const double tall = 12 + 190 * hull * wave * wave;
            for (const double side : {-1.0, 1.0}) {
                cairo_move_to(cairo, x, kMiddleY + side * 178);
                cairo_line_to(cairo, x, kMiddleY + side * (178 + tall));
                cairo_stroke(cairo);
            }
        }
    });
    layer.light(bars.blurred(14), kMagenta, 0.4f);
    layer.cover(bars, [](int, int y) {
        const float away = (std::fabs(static_cast<float>(y) - 540) - 178) / 190;
        return mix(kOrange, mix(kMagenta, kViolet, 0.4f), smoothstep(0, 1, away));
    });
    paintLetters(layer, wordMask("SOUND"), kPink, kMagenta);
    return layer;
}

namespace {

// The graph behind a word: boxes, and the links between them.
struct Box {
    double x, y;
    Colour colour;
};
constexpr std::array kBoxes{Box{250, 220, kCyan},     Box{620, 150, kMagenta},
                            Box{1010, 250, kOrange},  Box{1420, 170, kCyan},
                            Box{1710, 300, kGold},    Box{210, 830, kMagenta},
                            Box{560, 910, kGold},     Box{960, 830, kCyan},
                            Box{1350, 920, kMagenta}, Box{1700, 800, kOrange}};
constexpr std::array<std::array<int, 2>, 11> kLinks{
    {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {5, 6}, {6, 7}, {7, 8}, {8, 9}, {0, 5}, {4, 9}, {2, 7}}};

Mask wiresMask() {
    return Mask::drawn(kWidth, kHeight, [](cairo_t* cairo) {
        cairo_set_line_width(cairo, 4);
        for (const auto& [from, to] : kLinks) {
            const Box &a = kBoxes[from], &b = kBoxes[to];
            const bool across = std::fabs(b.x - a.x) > 120;
            const double bend = across ? (b.x - a.x) / 2 : (b.y - a.y) / 2;
            cairo_move_to(cairo, a.x, a.y);
            if (across) {
                cairo_curve_to(cairo, a.x + bend, a.y, b.x - bend, b.y, b.x, b.y);
            } else {
                cairo_curve_to(cairo, a.x, a.y + bend, b.x, b.y - bend, b.x, b.y);
            }
            cairo_stroke(cairo);
        }
    });
}

// Plates of the boxes of one colour, filled, or their edges where a width is given.
Mask platesMask(Colour colour, double lineWidth) {
    return Mask::drawn(kWidth, kHeight, [&](cairo_t* cairo) {
        for (const Box& node : kBoxes) {
            if (node.colour.g != colour.g) continue;
            cairo_rectangle(cairo, node.x - 84, node.y - 38, 168, 76);
        }
        cairo_set_line_width(cairo, lineWidth);
        cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
        if (lineWidth == 0) cairo_fill(cairo);
        cairo_stroke(cairo);
    });
}

void drawLabels(cairo_t* cairo) {
    for (const Box& node : kBoxes) {
        cairo_set_source_rgb(cairo, node.colour.r, node.colour.g, node.colour.b);
        cairo_rectangle(cairo, node.x - 74, node.y - 28, 148, 14);
        cairo_fill(cairo);
        cairo_set_source_rgba(cairo, 0.6, 0.65, 1, 0.55);
        for (int row = 0; row < 2; ++row) {
            cairo_rectangle(cairo, node.x - 74, node.y - 2 + row * 17, 100 - 34 * row, 7);
            cairo_fill(cairo);
        }
    }
}

}  // namespace

Layer paintWordGraph() {
    Layer layer(kWidth, kHeight);
    neon(layer, wiresMask(), kMist, 5, 0.7f);
    for (const Colour colour : {kCyan, kMagenta, kOrange, kGold}) {
        layer.cover(platesMask(colour, 0), kNight);
        neon(layer, platesMask(colour, 4), colour, 4, 0.5f);
    }
    layer.draw(drawLabels);
    // The word is read before the wires that pass behind it.
    const Mask letters = wordMask("GRAPH");
    layer.cover(letters.blurred(18), kInk, 1.4f);
    paintLetters(layer, letters, kCyan, kViolet);
    return layer;
}

namespace {

constexpr double kIconX = kMiddleX - 476, kIconY = kMiddleY - 30, kTimelineY = kMiddleY + 250;

void addIcon(cairo_t* cairo, double size) {
    cairo_move_to(cairo, kIconX - size * 0.5, kIconY - size * 0.87);
    cairo_line_to(cairo, kIconX + size, kIconY);
    cairo_line_to(cairo, kIconX - size * 0.5, kIconY + size * 0.87);
    cairo_close_path(cairo);
}

// A diamond, as keys are shown on a time line.
void addKey(cairo_t* cairo, double x, double size) {
    cairo_move_to(cairo, x - size, kTimelineY);
    cairo_line_to(cairo, x, kTimelineY - size);
    cairo_line_to(cairo, x + size, kTimelineY);
    cairo_line_to(cairo, x, kTimelineY + size);
    cairo_close_path(cairo);
}

}  // namespace

Layer paintWordPlay() {
    constexpr double kLeft = kMiddleX - 620, kRight = kMiddleX + 620, kNow = kMiddleX - 120;
    Layer layer(kWidth, kHeight);
    const Mask tubes = Mask::drawn(kWidth, kHeight, [](cairo_t* cairo) {
        cairo_set_line_width(cairo, 9);
        cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
        cairo_arc(cairo, kIconX, kIconY, 140, 0, 2 * M_PI);
        cairo_stroke(cairo);
        cairo_move_to(cairo, kLeft, kTimelineY);
        cairo_line_to(cairo, kNow, kTimelineY);
        cairo_stroke(cairo);
        for (const double x : {kLeft + 130, kLeft + 330}) addKey(cairo, x, 17);
        cairo_fill(cairo);
        cairo_arc(cairo, kNow, kTimelineY, 22, 0, 2 * M_PI);
        cairo_fill(cairo);
    });
    const Mask ahead = Mask::drawn(kWidth, kHeight, [](cairo_t* cairo) {
        cairo_set_line_width(cairo, 4);
        cairo_move_to(cairo, kNow + 22, kTimelineY);
        cairo_line_to(cairo, kRight, kTimelineY);
        for (const double x : {kNow + 210, kNow + 300, kNow + 560}) addKey(cairo, x, 15);
        cairo_stroke(cairo);
    });
    neon(layer, ahead, kMist, 4, 0.6f);
    neon(layer, tubes, kOrange, 9, 0.7f);
    const Mask icon = Mask::drawn(kWidth, kHeight, [](cairo_t* cairo) {
        cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_width(cairo, 24);
        addIcon(cairo, 68);
        cairo_fill_preserve(cairo);
        cairo_stroke(cairo);
    });
    layer.light(icon.blurred(20), kMagenta, 0.5f);
    layer.cover(icon, [](int, int y) {
        const float down = (static_cast<float>(y) - (static_cast<float>(kIconY) - 90)) / 180;
        return mix(hexColour(0xffdf8a), kMagenta, smoothstep(0, 1, down));
    });
    const Mask letters =
        textMask(kWidth, kHeight, "PLAY", kMiddleX + 180, kIconY - 115, kWordStyle);
    paintLetters(layer, letters, kGold, kMagenta);
    return layer;
}

}  // namespace pictures
