#include "editor/ui_screen_gate.h"

#include "editor/ui_master.h"
#include "platform/window.h"

namespace {

constexpr Vec4 kGround = {0.025f, 0.025f, 0.03f, 1};

// A key that is held down repeats. Steps in time may, and modifiers, which switch nothing; all
// others are switches. Whoever types has the capture, and does not ask here.
bool MayRepeat(std::int32_t key) {
    return (key >= kKeyLeft && key <= kKeyDown) || (key >= kKeyShift && key <= kKeyAlt);
}

}  // namespace

UI_ScreenGate::UI_ScreenGate(int gateWidth, int gateHeight) {
    SetSize(gateWidth, gateHeight);
}

void UI_ScreenGate::Draw() {
    master->SetColor(kGround);
    master->FillRect(x, y, width, height);
}

bool UI_ScreenGate::HandleEvent(UI_Event* event) {
    if (overlays && overlays(*event)) return true;
    if (event->type != UI_EventType::KeyDown) return false;
    if (event->repeat && !MayRepeat(event->value)) return true;
    return shortcuts && shortcuts(*event);
}
