#include "editor/canvas_view.h"

#include <algorithm>
#include <cmath>

namespace {

// Places past this are of no screen, and their differences would leave the range of whole numbers.
constexpr float kFurthest = 100000000;

int Round(float value) {
    if (!(value == value)) return 0;
    return static_cast<int>(std::floor(std::clamp(value, -kFurthest, kFurthest) + 0.5f));
}

}  // namespace

Vec2 CanvasView::toScreen(const Vec2& place) const {
    return {place.x * zoom + shift.x, place.y * zoom + shift.y};
}

Vec2 CanvasView::toCanvas(const Vec2& pixel) const {
    const auto place = [this](float at, float origin) {
        return std::clamp((at - origin) / zoom, -kFurthest, kFurthest);
    };
    return {place(pixel.x, shift.x), place(pixel.y, shift.y)};
}

// At zoom 1 in whole numbers: a float holds no place beyond 16 million exactly.
int CanvasView::screenX(int x) const {
    return zoom == 1 ? x + Round(shift.x) : Round(static_cast<float>(x) * zoom + shift.x);
}

int CanvasView::screenY(int y) const {
    return zoom == 1 ? y + Round(shift.y) : Round(static_cast<float>(y) * zoom + shift.y);
}

int CanvasView::scaled(int length) const {
    return zoom == 1 ? length : Round(static_cast<float>(length) * zoom);
}

void CanvasView::zoomAbout(const Vec2& pixel, float factor) {
    const Vec2 place = toCanvas(pixel);
    // What `frame` has made smaller comes back in the same steps, and goes no further out.
    zoom = std::clamp(zoom * factor, std::min(kLeastZoom, zoom), kMostZoom);
    // So that steps out and in again come back to the boxes' own pixels.
    constexpr float kNearOne = 0.3f;  // of a step
    if (std::fabs(zoom - 1) < kNearOne * std::fabs(factor - 1)) zoom = 1;
    shift = {std::round(pixel.x - place.x * zoom), std::round(pixel.y - place.y * zoom)};
}

void CanvasView::frame(const Vec2& least, const Vec2& most, const Vec2& screenLeast,
                       const Vec2& screenMost) {
    const float width = std::max(most.x - least.x, 1.0f);
    const float height = std::max(most.y - least.y, 1.0f);
    zoom =
        std::min((screenMost.x - screenLeast.x) / width, (screenMost.y - screenLeast.y) / height);
    zoom = std::clamp(zoom, kLeastFrameZoom, 1.0f);
    shift.x = std::round((screenLeast.x + screenMost.x - (least.x + most.x) * zoom) / 2);
    shift.y = std::round((screenLeast.y + screenMost.y - (least.y + most.y) * zoom) / 2);
}
