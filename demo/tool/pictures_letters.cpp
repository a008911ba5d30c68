#include "pictures_letters.h"

#include <cctype>
#include <cstdlib>
#include <string>
#include <vector>

namespace pictures {

namespace {

// Strokes apart by ';', each a row of vertices: s sharp, r rounded, then x,y from the top left; z
// closes.
struct Glyph {
    char letter;
    double width;
    const char* strokes;
};

constexpr Glyph kGlyphs[] = {
    {'A', 0.74, "s0,1 s.37,0 s.74,1;s.12,.68 s.62,.68"},
    {'B', 0.62, "s.3,.48 r.57,.48 r.57,0 s0,0 s0,1 r.62,1 r.62,.48 s0,.48"},
    {'C', 0.64, "s.64,0 r0,0 r0,1 s.64,1"},
    {'D', 0.66, "s0,0 r.66,0 r.66,1 s0,1 z"},
    {'E', 0.56, "s.56,0 s0,0 s0,1 s.56,1;s0,.49 s.48,.49"},
    {'F', 0.56, "s.56,0 s0,0 s0,1;s0,.49 s.48,.49"},
    {'G', 0.68, "s.66,0 r0,0 r0,1 r.68,1 s.68,.52 s.38,.52"},
    {'H', 0.64, "s0,0 s0,1;s.64,0 s.64,1;s0,.49 s.64,.49"},
    {'I', 0.00, "s0,0 s0,1"},
    {'J', 0.50, "s.5,0 r.5,1 r0,1 s0,.66"},
    {'K', 0.62, "s0,0 s0,1;s.6,0 s.08,.5 s.62,1"},
    {'L', 0.54, "s0,0 s0,1 s.54,1"},
    {'M', 0.80, "s0,1 s0,0 s.4,.6 s.8,0 s.8,1"},
    {'N', 0.66, "s0,1 s0,0 s.66,1 s.66,0"},
    {'O', 0.72, "r0,0 r.72,0 r.72,1 r0,1 z"},
    {'P', 0.60, "s0,1 s0,0 r.6,0 r.6,.54 s0,.54"},
    {'Q', 0.72, "r0,0 r.72,0 r.72,1 r0,1 z;s.46,.72 s.76,1.06"},
    {'R', 0.62, "s0,1 s0,0 r.6,0 r.6,.53 s0,.53;s.28,.53 s.62,1"},
    {'S', 0.62, "s.6,0 r0,0 r0,.49 r.62,.49 r.62,1 s0,1"},
    {'T', 0.66, "s0,0 s.66,0;s.33,0 s.33,1"},
    {'U', 0.66, "s0,0 r0,1 r.66,1 s.66,0"},
    {'V', 0.74, "s0,0 s.37,1 s.74,0"},
    {'W', 1.04, "s0,0 s.26,1 s.52,.3 s.78,1 s1.04,0"},
    {'X', 0.66, "s0,0 s.66,1;s.66,0 s0,1"},
    {'Y', 0.70, "s0,0 s.35,.5 s.7,0;s.35,.5 s.35,1"},
    {'Z', 0.62, "s0,0 s.62,0 s0,1 s.62,1"},
    {'0', 0.60, "r0,0 r.6,0 r.6,1 r0,1 z"},
    {'1', 0.24, "s0,.2 s.24,0 s.24,1"},
    {'2', 0.60, "s0,0 r.6,0 r.6,.5 r0,.5 s0,1 s.6,1"},
    {'3', 0.60, "s0,0 r.6,0 r.6,1 s0,1;s.14,.49 s.6,.49"},
    {'4', 0.66, "s.48,1 s.48,0 s0,.68 s.66,.68"},
    {'5', 0.60, "s.58,0 s0,0 s0,.46 r.6,.46 r.6,1 s0,1"},
    {'6', 0.60, "s.56,0 r0,0 r0,1 r.6,1 r.6,.48 s0,.48"},
    {'7', 0.60, "s0,0 s.6,0 s.2,1"},
    {'8', 0.60, "r0,0 r.6,0 r.6,1 r0,1 z;s0,.49 s.6,.49"},
    {'9', 0.60, "s.04,1 r.6,1 r.6,0 r0,0 r0,.52 s.6,.52"},
    {'-', 0.36, "s0,.52 s.36,.52"},
    {'.', 0.00, "s0,.95 s0,1"},
    {',', 0.06, "s.06,.93 s0,1.12"},
    {':', 0.00, "s0,.3 s0,.35;s0,.8 s0,.85"},
    {'!', 0.00, "s0,0 s0,.68;s0,.95 s0,1"},
};

constexpr double kSpaceWidth = 0.34;

struct Vertex {
    double x, y;
    bool round;
};

const Glyph* findGlyph(char letter) {
    for (const Glyph& glyph : kGlyphs) {
        if (glyph.letter == std::toupper(static_cast<unsigned char>(letter))) return &glyph;
    }
    return nullptr;
}

// Rounds the corner at `corner` on the way from `before` to `after`, or goes straight to it.
void addCorner(cairo_t* cairo, Vertex before, Vertex corner, Vertex after, double radius) {
    if (!corner.round) {
        cairo_line_to(cairo, corner.x, corner.y);
        return;
    }
    const double inLength = std::hypot(before.x - corner.x, before.y - corner.y);
    const double outLength = std::hypot(after.x - corner.x, after.y - corner.y);
    const double cut = std::min({radius, inLength / 2, outLength / 2});
    const auto along = [&](Vertex end, double length, double distance) {
        return Vertex{corner.x + (end.x - corner.x) / length * distance,
                      corner.y + (end.y - corner.y) / length * distance, false};
    };
    constexpr double kArcHandle = 1 - 0.5523;  // of a quarter circle as a cubic curve
    const Vertex start = along(before, inLength, cut), end = along(after, outLength, cut);
    const Vertex first = along(before, inLength, cut * kArcHandle);
    const Vertex second = along(after, outLength, cut * kArcHandle);
    cairo_line_to(cairo, start.x, start.y);
    cairo_curve_to(cairo, first.x, first.y, second.x, second.y, end.x, end.y);
}

void addStroke(cairo_t* cairo, const std::vector<Vertex>& vertices, bool closed, double radius) {
    const size_t count = vertices.size();
    cairo_new_sub_path(cairo);
    if (!closed) {
        cairo_move_to(cairo, vertices[0].x, vertices[0].y);
        for (size_t i = 1; i + 1 < count; ++i) {
            addCorner(cairo, vertices[i - 1], vertices[i], vertices[i + 1], radius);
        }
        cairo_line_to(cairo, vertices.back().x, vertices.back().y);
        return;
    }
    cairo_move_to(cairo, (vertices.back().x + vertices[0].x) / 2,
                  (vertices.back().y + vertices[0].y) / 2);
    for (size_t i = 0; i < count; ++i) {
        addCorner(cairo, vertices[(i + count - 1) % count], vertices[i], vertices[(i + 1) % count],
                  radius);
    }
    cairo_close_path(cairo);
}

void addGlyph(cairo_t* cairo, const Glyph& glyph, double x, double y, const LetterStyle& style) {
    std::vector<Vertex> vertices;
    bool closed = false;
    const auto flush = [&] {
        if (!vertices.empty()) addStroke(cairo, vertices, closed, style.corner * style.height);
        vertices.clear();
        closed = false;
    };
    for (const char* at = glyph.strokes; *at != '\0';) {
        if (*at == ';') flush();
        if (*at == 'z') closed = true;
        if (*at != 's' && *at != 'r') {
            ++at;
            continue;
        }
        const bool round = *at == 'r';
        char* end = nullptr;
        const double glyphX = std::strtod(at + 1, &end);
        const double glyphY = std::strtod(end + 1, &end);
        vertices.push_back({x + glyphX * style.height, y + glyphY * style.height, round});
        at = end;
    }
    flush();
}

double advance(char letter, const LetterStyle& style) {
    const Glyph* glyph = findGlyph(letter);
    const double width = glyph ? glyph->width : kSpaceWidth;
    return (width + style.tracking) * style.height + style.stroke;
}

}  // namespace

double textWidth(std::string_view text, const LetterStyle& style) {
    double width = 0;
    for (const char letter : text) width += advance(letter, style);
    return text.empty() ? 0 : width - style.tracking * style.height - style.stroke;
}

void addText(cairo_t* cairo, std::string_view text, double x, double y, const LetterStyle& style) {
    for (const char letter : text) {
        if (const Glyph* glyph = findGlyph(letter)) addGlyph(cairo, *glyph, x, y, style);
        x += advance(letter, style);
    }
}

Mask textMask(int width, int height, std::string_view text, double centreX, double y,
              const LetterStyle& style) {
    return Mask::drawn(width, height, [&](cairo_t* cairo) {
        addText(cairo, text, centreX - textWidth(text, style) / 2, y, style);
        cairo_set_line_width(cairo, style.stroke);
        cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
        cairo_stroke(cairo);
    });
}

}  // namespace pictures
