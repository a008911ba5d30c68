// The first widget of the authoring screen: paints its ground, and hears of every event before the
// others do, for the keys that hold everywhere and for what lies over the other widgets. Repeats of
// held keys end here, but for those of arrows and modifiers. Main thread.
#pragma once

#include <functional>

#include "editor/ui_object.h"

class UI_ScreenGate : public UI_Object {
  public:
    UI_ScreenGate(int gateWidth, int gateHeight);

    void Draw() override;
    bool HandleEvent(UI_Event* event) override;

    // True when the event is theirs. May be empty.
    std::function<bool(const UI_Event&)> overlays;
    std::function<bool(const UI_Event&)> shortcuts;  // presses of keys
};

// Draws what lies over the other widgets; hears nothing.
class UI_OverlayPainter : public UI_Object {
  public:
    void Draw() override {
        if (paint) paint();
    }
    bool HandleEvent(UI_Event* /*event*/) override { return false; }

    std::function<void()> paint;
};
