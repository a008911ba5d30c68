// Drawing inside a rectangle of the screen only, while the object lives. Main thread.
#pragma once

#include "editor/ui_master.h"

class UI_Clip {
  public:
    // Pixels, origin top left; empty rectangles draw nothing.
    UI_Clip(UI_Master& hub, int x, int y, int width, int height) : master_(hub) {
        const int w = width > 0 ? width : 0, h = height > 0 ? height : 0;
        master_.PushScissor(x, master_.height - y - h, w, h);
    }
    ~UI_Clip() { master_.PopScissor(); }
    UI_Clip(const UI_Clip&) = delete;
    UI_Clip& operator=(const UI_Clip&) = delete;

  private:
    UI_Master& master_;
};
