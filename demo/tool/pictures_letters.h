// Lettering of our own: capitals, figures and a few signs as centre lines in a box of height 1, to
// be stroked as neon tubes or broad strokes, and the word mark VORN as filled shapes. Depends on
// Cairo; any thread.
#pragma once

#include <cairo.h>

#include <string_view>

#include "pictures_layer.h"

namespace pictures {

struct LetterStyle {
    double height = 100;     // of the centre lines, pixels
    double stroke = 12;      // width of the stroke, pixels; widens the spacing
    double tracking = 0.16;  // extra space between letters, in heights
    double corner = 0.26;    // radius of the rounded corners, in heights
};

// Pixels from the left end of the first centre line to the right end of the last.
double textWidth(std::string_view text, const LetterStyle& style);

// Adds the letters to the current path with their top left corner at x, y. Unknown letters are
// spaces.
void addText(cairo_t* cairo, std::string_view text, double x, double y, const LetterStyle& style);

// The text stroked, with its middle at `centreX` and its top at `y`.
Mask textMask(int width, int height, std::string_view text, double centreX, double y,
              const LetterStyle& style);

// Where a word mark lies: `height` is that of its capitals.
struct MarkPlace {
    double centreX, centreY, height;
};

// The word mark in chrome with a neon rim, and its shine; leaves the rest of the layer as it is.
void paintWordMark(Layer& layer, const MarkPlace& place);

}  // namespace pictures
