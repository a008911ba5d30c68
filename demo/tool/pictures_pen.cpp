#include "pictures_pen.h"

namespace pictures {

Pen& Pen::flat(Colour colour, double alpha) {
    cairo_set_source_rgba(cairo_, colour.r, colour.g, colour.b, alpha);
    return *this;
}

Pen& Pen::setGradient(cairo_pattern_t* pattern, std::initializer_list<Tint> tints) {
    for (const Tint& tint : tints) {
        cairo_pattern_add_color_stop_rgba(pattern, tint.at, tint.colour.r, tint.colour.g,
                                          tint.colour.b, tint.alpha);
    }
    cairo_set_source(cairo_, pattern);
    cairo_pattern_destroy(pattern);
    return *this;
}

Pen& Pen::down(double top, double bottom, std::initializer_list<Tint> tints) {
    return setGradient(cairo_pattern_create_linear(0, top, 0, bottom), tints);
}

Pen& Pen::across(double left, double right, std::initializer_list<Tint> tints) {
    return setGradient(cairo_pattern_create_linear(left, 0, right, 0), tints);
}

Pen& Pen::round(double x, double y, double radius, std::initializer_list<Tint> tints) {
    return setGradient(cairo_pattern_create_radial(x, y, 0, x, y, radius), tints);
}

Pen& Pen::box(double x, double y, double width, double height) {
    cairo_rectangle(cairo_, x, y, width, height);
    cairo_fill(cairo_);
    return *this;
}

Pen& Pen::roundBox(double x, double y, double width, double height, double radius) {
    cairo_new_sub_path(cairo_);
    cairo_arc(cairo_, x + width - radius, y + radius, radius, -M_PI / 2, 0);
    cairo_arc(cairo_, x + width - radius, y + height - radius, radius, 0, M_PI / 2);
    cairo_arc(cairo_, x + radius, y + height - radius, radius, M_PI / 2, M_PI);
    cairo_arc(cairo_, x + radius, y + radius, radius, M_PI, M_PI * 1.5);
    cairo_close_path(cairo_);
    cairo_fill(cairo_);
    return *this;
}

Pen& Pen::circle(double x, double y, double radius) {
    return oval(x, y, radius, radius);
}

Pen& Pen::oval(double x, double y, double radiusX, double radiusY) {
    cairo_save(cairo_);
    cairo_translate(cairo_, x, y);
    cairo_scale(cairo_, radiusX, radiusY);
    cairo_arc(cairo_, 0, 0, 1, 0, 2 * M_PI);
    cairo_restore(cairo_);
    cairo_fill(cairo_);
    return *this;
}

Pen& Pen::shape(std::span<const Dot> corners) {
    for (const Dot& corner : corners) cairo_line_to(cairo_, corner.x, corner.y);
    cairo_close_path(cairo_);
    cairo_fill(cairo_);
    return *this;
}

Pen& Pen::shape(std::initializer_list<Dot> corners) {
    return shape(std::span(corners.begin(), corners.size()));
}

void Pen::trace(std::span<const Dot> dots, bool isClosed) {
    const auto count = static_cast<int>(dots.size());
    const auto dot = [&](int i) {
        if (isClosed) return dots[static_cast<size_t>((i + count) % count)];
        return dots[static_cast<size_t>(std::clamp(i, 0, count - 1))];
    };
    cairo_move_to(cairo_, dots[0].x, dots[0].y);
    for (int i = 0; i < (isClosed ? count : count - 1); ++i) {
        const Dot before = dot(i - 1), from = dot(i), to = dot(i + 1), after = dot(i + 2);
        cairo_curve_to(cairo_, from.x + (to.x - before.x) / 6, from.y + (to.y - before.y) / 6,
                       to.x - (after.x - from.x) / 6, to.y - (after.y - from.y) / 6, to.x, to.y);
    }
}

Pen& Pen::blob(std::initializer_list<Dot> dots) {
    trace(std::span(dots.begin(), dots.size()), true);
    cairo_fill(cairo_);
    return *this;
}

Pen& Pen::stroke(double width) {
    cairo_set_line_width(cairo_, width);
    cairo_set_line_cap(cairo_, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cairo_, CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(cairo_);
    return *this;
}

Pen& Pen::line(std::initializer_list<Dot> corners, double width) {
    for (const Dot& corner : corners) cairo_line_to(cairo_, corner.x, corner.y);
    return stroke(width);
}

Pen& Pen::curve(std::initializer_list<Dot> dots, double width) {
    trace(std::span(dots.begin(), dots.size()), false);
    return stroke(width);
}

Pen& Pen::ring(double x, double y, double radius, double width) {
    cairo_new_sub_path(cairo_);
    cairo_arc(cairo_, x, y, radius, 0, 2 * M_PI);
    return stroke(width);
}

Pen& Pen::frame(double x, double y, double width, double height, double lineWidth) {
    cairo_rectangle(cairo_, x, y, width, height);
    return stroke(lineWidth);
}

}  // namespace pictures
