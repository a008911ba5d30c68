// A line of text that others set. Takes no events. Main thread.
#pragma once

#include <string>

#include "editor/ui_master.h"
#include "editor/ui_object.h"

class UI_Label : public UI_Object {
  public:
    UI_Label(std::string labelText, int labelX, int labelY, int labelWidth);

    void Draw() override;
    bool HandleEvent(UI_Event* /*event*/) override { return false; }

    std::string text;
    UI_ColorSlot color = kColorText;
    int textSize = 12;  // pixels
};
