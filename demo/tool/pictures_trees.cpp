#include "pictures_trees.h"

#include <cmath>

namespace pictures {

namespace {

// One side of a spruce, top to foot (side 1) or foot to top (side -1).
void addBoughs(cairo_t* cairo, Random& random, float x, float top, float tall, float side) {
    const int boughs = 9 + static_cast<int>(tall / 22);
    const auto step = [&](int i) {
        const float share = static_cast<float>(i) / static_cast<float>(boughs);
        const float y = top + tall * (0.04f + 0.90f * share);
        const float reach =
            tall * (0.018f + 0.20f * std::pow(share, 0.85f)) * random.range(0.72f, 1.15f);
        const float droop = tall * 0.030f * random.range(0.6f, 1.4f);
        const float inner = reach * random.range(0.28f, 0.46f);
        if (side > 0) {
            cairo_line_to(cairo, x + reach, y + droop);
            cairo_line_to(cairo, x + inner, y + droop * 0.25f);
        } else {
            cairo_line_to(cairo, x - inner, y + droop * 0.25f);
            cairo_line_to(cairo, x - reach, y + droop);
        }
    };
    if (side > 0) {
        for (int i = 0; i <= boughs; ++i) step(i);
    } else {
        for (int i = boughs; i >= 0; --i) step(i);
    }
}

}  // namespace

void addSpruce(cairo_t* cairo, Random& random, float x, float foot, float tall) {
    const float top = foot - tall;
    cairo_move_to(cairo, x, top);
    addBoughs(cairo, random, x, top, tall, 1);
    cairo_line_to(cairo, x + tall * 0.018f, foot - tall * 0.04f);
    cairo_line_to(cairo, x + tall * 0.022f, foot + 40);
    cairo_line_to(cairo, x - tall * 0.022f, foot + 40);
    cairo_line_to(cairo, x - tall * 0.018f, foot - tall * 0.04f);
    addBoughs(cairo, random, x, top, tall, -1);
    cairo_close_path(cairo);
    cairo_fill(cairo);
}

}  // namespace pictures
