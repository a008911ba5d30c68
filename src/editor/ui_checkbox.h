// A switch: a square that a click fills and empties. Main thread.
#pragma once

#include "editor/ui_value_widget.h"

class UI_Checkbox : public UI_BoundWidget<ValueBool> {
  public:
    UI_Checkbox(const ValueBool& boundTo, int boxY);

    void Draw() override;
    bool HandleEvent(UI_Event* event) override;  // never consumes
};
