// The curve of a link on the screen: a cubic Bezier curve that leaves an output downward and comes
// to a socket from above. No state of others; any thread.
#pragma once

#include "gpu/math_types.h"

class LinkCurve {
  public:
    // Pixels of the screen.
    LinkCurve(const Vec2& from, const Vec2& to, float zoom);

    Vec2 at(float t) const;      // t from 0 to 1
    Vec2 normal(float t) const;  // of length 1
    // In how many straight pieces it looks round.
    int pieces() const;
    // True when the line from a to b meets it.
    bool crosses(const Vec2& a, const Vec2& b) const;

    // A rectangle that holds it.
    Vec2 least, most;
    float length;  // about, pixels

  private:
    Vec2 points_[4];
};
