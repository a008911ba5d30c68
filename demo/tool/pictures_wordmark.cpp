#include <array>
#include <span>

#include "pictures_letters.h"

namespace pictures {

namespace {

struct Point {
    double x, y;
};

// Outlines in a box of height 1, top left corner at 0, 0.
constexpr Point kV[] = {{0, 0}, {.29, 0}, {.52, .66}, {.75, 0}, {1.04, 0}, {.66, 1}, {.38, 1}};
constexpr Point kR[] = {{0, 0},   {.70, 0},   {.92, .18}, {.92, .46}, {.76, .60}, {.96, 1},
                        {.66, 1}, {.48, .66}, {.26, .66}, {.26, 1},   {0, 1}};
constexpr Point kRHole[] = {{.26, .22}, {.26, .44}, {.58, .44}, {.66, .38}, {.66, .28}, {.58, .22}};
constexpr Point kN[] = {{0, 1},   {0, 0},   {.28, 0}, {.70, .60}, {.70, 0},
                        {.96, 0}, {.96, 1}, {.68, 1}, {.26, .40}, {.26, 1}};

constexpr double kOvershoot = 0.04;  // a round letter of true height would look small
constexpr double kRingRadius = 0.5 + kOvershoot, kRingHole = 0.315, kSunRadius = 0.228;
constexpr double kStartO = 1.04 + 0.02, kStartR = kStartO + 2 * kRingRadius + 0.12;
constexpr double kStartN = kStartR + 0.96 + 0.14, kMarkWidth = kStartN + 0.96;

// Maps a point of the mark's own box into the picture.
struct MarkBox {
    double left, top, scale;

    explicit MarkBox(const MarkPlace& place)
        : left(place.centreX - kMarkWidth / 2 * place.height),
          top(place.centreY - place.height / 2),
          scale(place.height) {}

    double sunX() const { return left + (kStartO + kRingRadius) * scale; }
    double sunY() const { return top + 0.5 * scale; }
};

void addOutline(cairo_t* cairo, const MarkBox& box, double startX, std::span<const Point> points) {
    cairo_new_sub_path(cairo);
    for (const Point& point : points) {
        cairo_line_to(cairo, box.left + (startX + point.x) * box.scale,
                      box.top + point.y * box.scale);
    }
    cairo_close_path(cairo);
}

void addMark(cairo_t* cairo, const MarkBox& box) {
    addOutline(cairo, box, 0, kV);
    addOutline(cairo, box, kStartR, kR);
    addOutline(cairo, box, kStartR, kRHole);
    addOutline(cairo, box, kStartN, kN);
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, box.sunX(), box.sunY(), kRingRadius * box.scale, 0, 2 * M_PI);
    cairo_new_sub_path(cairo);
    cairo_arc_negative(cairo, box.sunX(), box.sunY(), kRingHole * box.scale, 2 * M_PI, 0);
}

Mask markMask(const Layer& layer, const MarkBox& box, double grow) {
    return Mask::drawn(layer.width, layer.height, [&](cairo_t* cairo) {
        cairo_set_fill_rule(cairo, CAIRO_FILL_RULE_EVEN_ODD);
        addMark(cairo, box);
        cairo_fill_preserve(cairo);
        // A stroke in clear paint eats the rim away, one in solid paint lets it grow.
        if (grow < 0) cairo_set_operator(cairo, CAIRO_OPERATOR_CLEAR);
        cairo_set_line_width(cairo, 2 * std::fabs(grow));
        cairo_set_miter_limit(cairo, 8);
        if (grow == 0) cairo_new_path(cairo);
        cairo_stroke(cairo);
    });
}

Mask sunMask(const Layer& layer, const MarkBox& box) {
    return Mask::drawn(layer.width, layer.height, [&](cairo_t* cairo) {
        const double radius = kSunRadius * box.scale;
        cairo_arc(cairo, box.sunX(), box.sunY(), radius, 0, 2 * M_PI);
        cairo_fill(cairo);
        cairo_set_operator(cairo, CAIRO_OPERATOR_CLEAR);
        for (int slit = 0; slit < 4; ++slit) {
            const double y = box.sunY() + radius * (0.08 + 0.23 * slit);
            cairo_rectangle(cairo, box.sunX() - radius, y, 2 * radius,
                            radius * (0.035 + 0.025 * slit));
            cairo_fill(cairo);
        }
    });
}

// The sky above the mirrored horizon, warm ground below it: the usual way to paint chrome.
constexpr std::array kChrome{
    Stop{0.00f, hexColour(0xf4f8ff)}, Stop{0.16f, hexColour(0xa9c4ff)},
    Stop{0.36f, hexColour(0x4350d8)}, Stop{0.495f, hexColour(0x140b4a)},
    Stop{0.51f, hexColour(0xfff6e2)}, Stop{0.60f, hexColour(0xffb1d8)},
    Stop{0.78f, hexColour(0xff3f9d)}, Stop{1.00f, hexColour(0xff9a45)},
};

constexpr std::array kSun{Stop{0.0f, hexColour(0xffe9a6)}, Stop{0.5f, hexColour(0xff9442)},
                          Stop{1.0f, hexColour(0xff2a86)}};

}  // namespace

void paintWordMark(Layer& layer, const MarkPlace& place) {
    const MarkBox box(place);
    const auto scale = static_cast<float>(box.scale);
    const auto top = static_cast<float>(box.top);
    const Mask whole = markMask(layer, box, 0);
    const Mask inner = markMask(layer, box, -0.022 * box.scale);
    const Mask face = markMask(layer, box, -0.034 * box.scale);
    Mask rim = whole;
    for (size_t i = 0; i < rim.values.size(); ++i) rim.values[i] -= inner.values[i];

    layer.light(whole.blurred(scale * 0.30f), kViolet, 0.85f);
    layer.light(whole.blurred(scale * 0.10f), kMagenta, 0.34f);

    layer.cover(whole, kInk);
    layer.cover(
        face, [&](int, int y) { return gradient(kChrome, (static_cast<float>(y) - top) / scale); });
    neon(layer, rim, kMagenta, scale * 0.016f, 0.75f);

    const Mask sun = sunMask(layer, box);
    const auto sunTop = static_cast<float>(box.sunY() - kSunRadius * box.scale);
    layer.light(sun.blurred(scale * 0.09f), kOrange, 0.55f);
    layer.cover(sun, [&](int, int y) {
        return gradient(
            kSun, (static_cast<float>(y) - sunTop) / (2 * static_cast<float>(kSunRadius) * scale));
    });
}

}  // namespace pictures
