// The part of the canvas that is on the screen: a zoom and a shift between places on the canvas and
// pixels of the screen. Without zoom and shift the two are the same. No state of others; any
// thread.
#pragma once

#include "gpu/math_types.h"

struct CanvasView {
    static constexpr float kLeastZoom = 0.1f, kMostZoom = 2.0f;  // of the wheel
    static constexpr float kLeastFrameZoom = 0.00001f;           // so that all goes on the screen

    float zoom = 1;
    Vec2 shift = {0, 0};  // screen pixels

    Vec2 toScreen(const Vec2& place) const;
    Vec2 toCanvas(const Vec2& pixel) const;
    // A place of a box, rounded to a pixel; without zoom and shift it stays as it is.
    int screenX(int x) const;
    int screenY(int y) const;
    int scaled(int length) const;  // a length on the canvas in pixels of the screen
    // Multiplies the zoom, within its bounds or from further out inward; the place under the pixel
    // stays where it is.
    void zoomAbout(const Vec2& pixel, float factor);
    // Shows the rectangle as large as it goes into the screen's, at most at zoom 1, in its middle.
    void frame(const Vec2& least, const Vec2& most, const Vec2& screenLeast,
               const Vec2& screenMost);
};
