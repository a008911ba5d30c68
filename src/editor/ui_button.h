// A button with a text: a press and a release inside raise its command. It lights up under the
// pointer, and after a moment there a line tells what it is for. Main thread.
#pragma once

#include <string>

#include "editor/ui_object.h"

class UI_Button : public UI_Object {
  public:
    UI_Button(std::string buttonText, int buttonX, int buttonY, int buttonWidth, int buttonHeight);

    void Draw() override;
    // Raises OnCommand(this, argument) of the listener as the last thing that it does.
    bool HandleEvent(UI_Event* event) override;

    static constexpr int kDrawsUntilTooltip = 30;  // half a second

    std::string text;
    std::string tooltip;  // empty: none
    int argument = 0;
    bool hidden = false;  // neither seen nor pressed
    bool pressed = false;

  private:
    bool isUnderPointer() const;
    void drawTooltip(bool hovered);

    int hoveredDraws_ = 0;
};
