#include "editor/ui_direction.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "editor/ui_labels.h"
#include "editor/ui_pixels.h"
#include "platform/window.h"

namespace {

constexpr int kLeft = 5, kWidth = 380, kHeight = 200;  // pixels
constexpr int kDecimals = 2;
constexpr float kDimmed = 0.75f;  // of the inner ring and the axes, alpha too
constexpr Vec4 kTipShadow = {0, 0, 0, 0.5f};

// The one of eight directions next to a vector, at length 1, or 0.5 for one shorter than that.
// Twice the unit vector cut to whole numbers is one of eight. A vector of length 0 has no direction
// and gives what is no number.
Vec2 Snap(const Vec2& v) {
    const float length = std::sqrt(v.x * v.x + v.y * v.y);
    const float scale = length < 0.5f ? 0.5f : 1.0f;
    const Vec2 u = {std::trunc(v.x / length * 2), std::trunc(v.y / length * 2)};
    const float steps = std::sqrt(u.x * u.x + u.y * u.y);
    return {u.x / steps * scale, u.y / steps * scale};
}

}  // namespace

UI_Direction::UI_Direction(const ValueVec2& boundTo, int dialY)
    : UI_BoundWidget(boundTo.name, kLeft, dialY, kWidth, kHeight) {
    value = boundTo;
}

void UI_Direction::Draw() {
    fillBackground(kColorWidget);
    drawText(10, 20, label);
    if (value.data != nullptr) {
        drawText(15, 40, "X: " + NumberText(value.data[0], kDecimals));
        drawText(15, 56, "Y: " + NumberText(value.data[1], kDecimals));
        drawDial();
    }
    drawKeyedOutline();
}

void UI_Direction::drawDial() {
    const int cx = centerX(), cy = centerY(), r = radius();
    const Vec4& bright = master->colorSlots[kColorText];
    useColor(kColorText);
    master->DrawRing(cx, cy, r);
    master->SetColor(
        {bright.r * kDimmed, bright.g * kDimmed, bright.b * kDimmed, bright.a * kDimmed});
    master->DrawRing(cx, cy, r / 2);
    master->DrawThickLine(1, cx, cy - 10, cx, cy + 10);
    master->DrawThickLine(1, cx - 10, cy, cx + 10, cy);
    const float size = static_cast<float>(r);
    const int tipX = TruncateToPixel(static_cast<float>(cx) + size * value.data[0]);
    const int tipY = TruncateToPixel(static_cast<float>(cy) + size * value.data[1]);
    useColor(kColorText);
    master->DrawThickLine(1, cx, cy, tipX, tipY);
    master->SetColor(kTipShadow);
    master->FillRect(tipX - 1, tipY - 1, 7, 7);
    useColor(kColorText);
    master->FillRect(tipX - 3, tipY - 3, 6, 6);
}

bool UI_Direction::HandleEvent(UI_Event* event) {
    if (value.data == nullptr) return false;
    toggleKeyed(*event);
    bool changed = false;
    if (event->type == UI_EventType::LeftDown && event->x > x + width / 3 && takeCapture(true)) {
        snapping = false;
        dragging = true;
        sample(*event);
        changed = true;
    }
    if (event->type == UI_EventType::MouseMove && dragging) {
        sample(*event);
        changed = true;
    }
    if (IsKeyEvent(*event, UI_EventType::KeyDown, kKeyControl)) snapping = true;
    if (IsKeyEvent(*event, UI_EventType::KeyUp, kKeyControl)) snapping = false;
    if (event->type == UI_EventType::LeftUp && master->captured != nullptr) {
        releaseCapture();
        dragging = false;
    }
    if (event->type == UI_EventType::RightUp) {
        std::copy(std::begin(value.defaultValue), std::end(value.defaultValue), value.data);
        changed = true;
    }
    keepKeyframes(*event, changed);
    return false;
}

void UI_Direction::sample(const UI_Event& event) {
    const float r = static_cast<float>(radius());
    Vec2 v = {static_cast<float>(event.x - centerX()) / r,
              static_cast<float>(event.y - centerY()) / r};
    const float length = std::sqrt(v.x * v.x + v.y * v.y);
    if (length > 1) v = {v.x / length, v.y / length};
    if (snapping) v = Snap(v);
    value.data[0] = v.x;
    value.data[1] = v.y;
}
