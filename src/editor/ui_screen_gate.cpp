#include "editor/ui_screen_gate.h"

#include "editor/ui_master.h"
#include "platform/window.h"

namespace {

constexpr Vec4 kGround = {0.025f, 0.025f, 0.03f, 1};

}  // namespace

UI_ScreenGate::UI_ScreenGate(int gateWidth, int gateHeight) {
    SetSize(gateWidth, gateHeight);
}

void UI_ScreenGate::Draw() {
    master->SetColor(kGround);
    master->FillRect(x, y, width, height);
}

// A key that is held down repeats. Steps in time may, switches may not.
bool UI_ScreenGate::isRepeat(const UI_Event& event) {
    if (event.type == UI_EventType::KeyUp && event.value == heldKey_) heldKey_ = 0;
    if (event.type != UI_EventType::KeyDown) return false;
    const bool steps = event.value >= kKeyLeft && event.value <= kKeyDown;
    const bool repeats = event.value == heldKey_ && !steps;
    heldKey_ = event.value;
    return repeats;
}

bool UI_ScreenGate::HandleEvent(UI_Event* event) {
    const bool repeats = isRepeat(*event);
    if (overlays && overlays(*event)) return true;
    if (event->type != UI_EventType::KeyDown || repeats) return false;
    return shortcuts && shortcuts(*event);
}
