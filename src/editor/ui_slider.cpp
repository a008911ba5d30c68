#include "editor/ui_slider.h"

#include <cmath>

#include "editor/ui_labels.h"
#include "editor/ui_pixels.h"
#include "platform/window.h"

namespace {

constexpr int kLeft = 105, kWidth = 280, kHeight = 30;  // pixels
constexpr float kFineFactor = 0.05f;

}  // namespace

UI_Slider::UI_Slider(std::string sliderLabel, int sliderY)
    : UI_BoundWidget(std::move(sliderLabel), kLeft, sliderY, kWidth, kHeight) {
    value.defaultValue = 0.5f;
}

// Track and handle for the value as it stands.
void UI_Slider::layOut() {
    trackStart = x + width / 3;
    trackEnd = x + width - 5;
    const float range = value.max - value.min;
    const float track = static_cast<float>(trackEnd - trackStart);
    const float number = value.data == nullptr ? value.min : *value.data;
    handle = range == 0 ? 0 : (number - value.min) * track / range;
}

void UI_Slider::Draw() {
    layOut();
    const int middle = y + height / 2;
    fillBackground(kColorWidget);
    useColor(kColorForeground);
    master->DrawThickLine(1, trackStart, middle, trackEnd, middle);
    master->DrawThickLine(1, trackStart, middle - 3, trackStart, middle + 3);
    master->DrawThickLine(1, trackEnd, middle - 3, trackEnd, middle + 3);
    const int handleX = trackStart + TruncateToPixel(handle);
    master->DrawThickLine(2, handleX, middle - 10, handleX, middle + 10);
    drawText(10, 20, label);
    if (value.data != nullptr) {
        drawText(trackStart - 40 - x, 20, NumberText(*value.data, value.decimals));
    }
    drawKeyedOutline();
}

bool UI_Slider::HandleEvent(UI_Event* event) {
    if (value.data == nullptr) return false;
    if (!dragging) layOut();
    bool consumed = false, changed = false;
    if (IsKeyEvent(*event, UI_EventType::KeyDown, kKeyControl)) {
        fineFactor = kFineFactor;
        consumed = true;
    }
    if (toggleKeyed(*event)) consumed = true;
    if (IsKeyEvent(*event, UI_EventType::KeyUp, kKeyControl)) {
        fineFactor = 1.0f;
        handle = std::floor(handle);
        consumed = changed = true;
    }
    if (dragging) {
        drag(*event, changed);
        consumed = true;
    } else if (startDrag(*event)) {
        consumed = changed = true;
    }
    writeValue();
    if (event->type == UI_EventType::RightUp) {
        *value.data = value.defaultValue;
        layOut();
        changed = true;
    }
    if (changed && listener != nullptr) listener->OnValueEdited(this);
    keepKeyframes(*event, changed && consumed);
    return consumed || changed;
}

void UI_Slider::drag(const UI_Event& event, bool& changed) {
    const int track = trackEnd - trackStart;
    if (event.type == UI_EventType::LeftUp) {
        dragging = false;
        releaseCapture();
        fineFactor = 1.0f;
    }
    if (event.type == UI_EventType::MouseMove) {
        handle += (static_cast<float>(event.x - trackStart) - handle) * fineFactor;
        changed = true;
    }
    if (TruncateToPixel(handle) > track) handle = static_cast<float>(track);
    if (handle < 0) handle = 0;
}

bool UI_Slider::startDrag(const UI_Event& event) {
    if (event.type != UI_EventType::LeftDown || event.x < trackStart || event.x > trackEnd) {
        return false;
    }
    if (!takeCapture(false)) return false;
    dragging = true;
    handle = static_cast<float>(event.x - trackStart);
    return true;
}

void UI_Slider::writeValue() {
    const int track = trackEnd - trackStart;
    if (track <= 0) return;
    *value.data = handle / static_cast<float>(track) * (value.max - value.min) + value.min;
}
