#include <array>

#include "pictures_noise.h"
#include "pictures_painters.h"

namespace pictures {

namespace {

constexpr int kMandalaSize = 1024;
constexpr double kTurn = 2 * M_PI;

void setColour(cairo_t* cairo, Colour colour, double alpha = 1) {
    cairo_set_source_rgba(cairo, colour.r, colour.g, colour.b, alpha);
}

// Draws `one`, made for the direction straight up, `count` times around the middle.
template <typename DrawOne>
void around(cairo_t* cairo, int count, double offset, DrawOne one) {
    for (int i = 0; i < count; ++i) {
        cairo_save(cairo);
        cairo_translate(cairo, kMandalaSize / 2.0, kMandalaSize / 2.0);
        cairo_rotate(cairo, kTurn * (i + offset) / count);
        one(cairo);
        cairo_restore(cairo);
    }
}

// A petal from radius `from` to `to`, bulging to `width` on both sides, pointed outside.
void addPetal(cairo_t* cairo, double from, double to, double width) {
    const double length = to - from;
    cairo_move_to(cairo, 0, -from);
    cairo_curve_to(cairo, width * 1.25, -(from + length * 0.22), width * 0.95,
                   -(from + length * 0.66), 0, -to);
    cairo_curve_to(cairo, -width * 0.95, -(from + length * 0.66), -width * 1.25,
                   -(from + length * 0.22), 0, -from);
    cairo_close_path(cairo);
}

struct PetalRing {
    int count;
    double offset, from, to, width;
    Colour root, tip;
};

constexpr std::array kPetals{
    PetalRing{32, 0.5, 300, 496, 30, kNight, kViolet},
    PetalRing{16, 0.0, 270, 474, 58, kIndigo, hexColour(0xb4257f)},
    PetalRing{16, 0.5, 225, 420, 52, hexColour(0x1b1150), kMagenta},
    PetalRing{16, 0.0, 190, 345, 44, kIndigo, hexColour(0x2f7fe0)},
    PetalRing{8, 0.0, 96, 268, 66, hexColour(0x571180), kOrange},
    PetalRing{8, 0.5, 88, 236, 50, hexColour(0x2a1280), kMagenta},
    PetalRing{16, 0.0, 58, 150, 20, hexColour(0x8a1c60), kGold},
    PetalRing{8, 0.0, 20, 92, 24, hexColour(0x220d5c), kCyan},
};

void drawPetals(cairo_t* cairo, const PetalRing& ring) {
    around(cairo, ring.count, ring.offset, [&](cairo_t* c) {
        for (int inset = 0; inset < 3; ++inset) {
            const double shrink = 0.16 * inset, length = ring.to - ring.from;
            const double from = ring.from + length * shrink * 0.9, to = ring.to - length * shrink;
            cairo_pattern_t* paint = cairo_pattern_create_linear(0, -from, 0, -to);
            const Colour root = mix(ring.root, ring.tip, 0.22f * static_cast<float>(inset));
            const Colour tip = mix(ring.tip, kCream, 0.24f * static_cast<float>(inset));
            cairo_pattern_add_color_stop_rgba(paint, 0, root.r, root.g, root.b, 0.95);
            cairo_pattern_add_color_stop_rgba(paint, 1, tip.r, tip.g, tip.b, 0.95);
            addPetal(c, from, to, ring.width * (1 - shrink * 1.5));
            cairo_set_source(c, paint);
            cairo_fill_preserve(c);
            cairo_pattern_destroy(paint);
            setColour(c, inset == 0 ? kGold : mix(ring.tip, kCream, 0.5f), inset == 0 ? 0.9 : 0.5);
            cairo_set_line_width(c, inset == 0 ? 2.2 : 1.1);
            cairo_stroke(c);
        }
    });
}

void addCircle(cairo_t* cairo, double radius) {
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, kMandalaSize / 2.0, kMandalaSize / 2.0, radius, 0, kTurn);
}

// A row of beads, each a dot in a ring.
void drawBeads(cairo_t* cairo, int count, double offset, double radius, double size,
               Colour colour) {
    around(cairo, count, offset, [&](cairo_t* c) {
        cairo_arc(c, 0, -radius, size, 0, kTurn);
        setColour(c, kInk);
        cairo_fill_preserve(c);
        setColour(c, kGold);
        cairo_set_line_width(c, std::max(1.0, size * 0.25));
        cairo_stroke(c);
        cairo_arc(c, 0, -radius, size * 0.52, 0, kTurn);
        setColour(c, colour);
        cairo_fill(c);
        cairo_arc(c, -size * 0.14, -radius - size * 0.16, size * 0.17, 0, kTurn);
        setColour(c, kCream, 0.9);
        cairo_fill(c);
    });
}

// A band of small arches that lean on each other, as on old domes.
void drawArches(cairo_t* cairo, int count, double radius, double tall, Colour colour) {
    around(cairo, count, 0.5, [&](cairo_t* c) {
        const double half = M_PI * radius / count;
        for (int nested = 0; nested < 3; ++nested) {
            const double share = 1 - 0.3 * nested;
            cairo_move_to(c, -half * share, -radius);
            cairo_curve_to(c, -half * share, -radius - tall * share, half * share,
                           -radius - tall * share, half * share, -radius);
            setColour(c, mix(colour, kCream, 0.25f * static_cast<float>(nested)),
                      nested == 0 ? 0.95 : 0.7);
            cairo_set_line_width(c, nested == 0 ? 2.4 : 1.4);
            cairo_stroke(c);
        }
    });
}

void drawRosette(cairo_t* cairo) {
    for (const double radius : {58.0, 154.0, 272.0, 424.0, 500.0}) {
        addCircle(cairo, radius);
        addCircle(cairo, radius - 7);
    }
    setColour(cairo, kGold, 0.9);
    cairo_set_line_width(cairo, 1.8);
    cairo_stroke(cairo);
}

void drawHeart(cairo_t* cairo) {
    addCircle(cairo, 34);
    setColour(cairo, kInk);
    cairo_fill(cairo);
    around(cairo, 12, 0, [](cairo_t* c) {
        addPetal(c, 6, 33, 6);
        setColour(c, kGold);
        cairo_fill(c);
    });
    addCircle(cairo, 10);
    setColour(cairo, kCream);
    cairo_fill(cairo);
}

}  // namespace

Layer paintMandala() {
    Layer layer(kMandalaSize, kMandalaSize);
    const Mask disc = Mask::drawn(kMandalaSize, kMandalaSize, [](cairo_t* cairo) {
        addCircle(cairo, 440);
        cairo_fill(cairo);
    });
    layer.light(disc.blurred(24), kViolet, 0.5f);
    layer.cover(disc, kNight, 0.92f);
    layer.draw([](cairo_t* cairo) {
        drawArches(cairo, 32, 462, 44, kCyan);
        for (size_t i = 0; i < 4; ++i) drawPetals(cairo, kPetals[i]);
        drawRosette(cairo);
        drawBeads(cairo, 32, 0.5, 462, 7, kCyan);
        drawBeads(cairo, 16, 0.5, 437, 11, kMagenta);
        drawArches(cairo, 24, 272, 40, kPink);
        for (size_t i = 4; i < kPetals.size(); ++i) drawPetals(cairo, kPetals[i]);
        drawBeads(cairo, 48, 0, 272, 6, kOrange);
        drawBeads(cairo, 16, 0.5, 154, 6, kCyan);
        drawBeads(cairo, 8, 0.5, 250, 9, kGold);
        drawHeart(cairo);
    });
    // Gilding shines: the brightest lines glow over their surroundings.
    const Mask gilding = Mask::drawn(kMandalaSize, kMandalaSize, [](cairo_t* cairo) {
        for (const PetalRing& ring : kPetals) {
            around(cairo, ring.count, ring.offset, [&](cairo_t* c) {
                cairo_arc(c, 0, -ring.to, 3.2, 0, kTurn);
                cairo_fill(c);
            });
        }
        drawHeart(cairo);
    });
    layer.light(gilding.blurred(7), kGold, 0.9f);
    layer.cover(gilding, kCream, 0.8f);
    return layer;
}

namespace {

constexpr int kTileSize = 512, kTileCells = 8;
constexpr double kCell = static_cast<double>(kTileSize) / kTileCells;

// Quarter circles that join the middles of neighbouring sides of a cell, one of two ways by chance
// (Truchet's tiles, in Smith's form); `across`: distance from the middle line.
void addArcs(cairo_t* cairo, double across) {
    for (int row = 0; row < kTileCells; ++row) {
        for (int column = 0; column < kTileCells; ++column) {
            const double x = column * kCell, y = row * kCell;
            const bool turned = (hashPoint(column, row, 41) >> 9 & 1) != 0;
            for (const double side : {-1.0, 1.0}) {
                const double radius = kCell / 2 + side * across;
                cairo_new_sub_path(cairo);
                cairo_arc(cairo, turned ? x + kCell : x, y, radius, turned ? M_PI / 2 : 0,
                          turned ? M_PI : M_PI / 2);
                cairo_new_sub_path(cairo);
                cairo_arc(cairo, turned ? x : x + kCell, y + kCell, radius,
                          turned ? -M_PI / 2 : M_PI, turned ? 0 : 1.5 * M_PI);
                if (across == 0) break;
            }
        }
    }
}

Mask arcMask(double across, double lineWidth) {
    return Mask::drawn(kTileSize, kTileSize, [=](cairo_t* cairo) {
        addArcs(cairo, across);
        cairo_set_line_width(cairo, lineWidth);
        cairo_stroke(cairo);
    });
}

}  // namespace

Layer paintTiles() {
    Layer layer(kTileSize, kTileSize);
    layer.fill([](int x, int y) {
        const auto place = [](int i) { return (static_cast<float>(i) + 0.5f) / kTileSize * 4; };
        const float cloud = fractalNoise(place(x), place(y), 4, 12, {4, 4});
        return mix(kNight, kIndigo, smoothstep(-0.6f, 0.7f, cloud)) * 0.8f;
    });
    const Mask bed = arcMask(0, 27);
    layer.cover(bed.blurred(5, Edge::Wrap), kInk, 0.9f);
    layer.cover(bed, [](int x, int y) {
        const float sheen =
            0.5f + 0.5f * std::sin((static_cast<float>(x + y) + 1) * 2 * kPi / kTileSize);
        return mix(hexColour(0x1a1150), hexColour(0x35197a), sheen);
    });
    const auto tube = [&](const Mask& mask, Colour colour) {
        layer.light(mask.blurred(9, Edge::Wrap), colour, 0.8f);
        layer.light(mask.blurred(2.5f, Edge::Wrap), colour, 0.8f);
        layer.cover(mask, mix(colour, {1, 1, 1}, 0.6f));
    };
    tube(arcMask(13, 2), kMagenta);
    tube(arcMask(0, 2.4), kCyan);
    return layer;
}

}  // namespace pictures
