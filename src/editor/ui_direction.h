// A two-float direction of length 0 to 1 on a dial. With ctrl it snaps to eight directions, an
// eighth of a turn apart, at length 1 or 0.5. Main thread.
#pragma once

#include "editor/ui_value_widget.h"

class UI_Direction : public UI_BoundWidget<ValueVec2> {
  public:
    UI_Direction(const ValueVec2& boundTo, int dialY);

    void Draw() override;
    int GetHeight() const override { return height; }
    bool HandleEvent(UI_Event* event) override;  // never consumes

    bool snapping = false;
    bool dragging = false;

  private:
    int radius() const { return height / 2 - 10; }
    int centerX() const { return x - 5 + width - radius(); }
    int centerY() const { return y + 5 + height / 2; }
    void drawDial();
    void sample(const UI_Event& event);
};
