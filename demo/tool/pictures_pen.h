// A pen over a Cairo context for the film's pictures: paints in one call each, shapes in one call
// each, so that a painter reads as the list of what is in its picture. Depends on Cairo; any
// thread.
#pragma once

#include <cairo.h>

#include <initializer_list>
#include <span>

#include "pictures_colour.h"

namespace pictures {

struct Dot {
    double x, y;
};

// A paint of a gradient: where it is, and how solid there.
struct Tint {
    double at;
    Colour colour;
    double alpha = 1;
};

class Pen {
  public:
    explicit Pen(cairo_t* cairo) : cairo_(cairo) {}

    // What the following shapes are filled with.
    Pen& flat(Colour colour, double alpha = 1);
    Pen& down(double top, double bottom, std::initializer_list<Tint> tints);
    Pen& across(double left, double right, std::initializer_list<Tint> tints);
    Pen& round(double x, double y, double radius, std::initializer_list<Tint> tints);

    Pen& box(double x, double y, double width, double height);
    Pen& roundBox(double x, double y, double width, double height, double radius);
    Pen& circle(double x, double y, double radius);
    Pen& oval(double x, double y, double radiusX, double radiusY);
    Pen& shape(std::span<const Dot> corners);
    Pen& shape(std::initializer_list<Dot> corners);
    // A closed smooth curve through the dots (Catmull and Rom's).
    Pen& blob(std::initializer_list<Dot> dots);

    // Lines of a width, with round ends.
    Pen& line(std::initializer_list<Dot> corners, double width);
    Pen& curve(std::initializer_list<Dot> dots, double width);
    Pen& ring(double x, double y, double radius, double width);
    Pen& frame(double x, double y, double width, double height, double lineWidth);

    cairo_t* cairo() { return cairo_; }

  private:
    Pen& setGradient(cairo_pattern_t* pattern, std::initializer_list<Tint> tints);
    void trace(std::span<const Dot> dots, bool isClosed);
    Pen& stroke(double width);

    cairo_t* cairo_;
};

}  // namespace pictures
