// A float as a handle on a track, as the colour selector has four of them. With ctrl the handle
// follows the pointer at a twentieth of its speed. Main thread.
#pragma once

#include <string>

#include "editor/ui_value_widget.h"

class UI_Slider : public UI_BoundWidget<ValueFloat> {
  public:
    UI_Slider(std::string sliderLabel, int sliderY);

    void Draw() override;
    // Rewrites the value from the handle at every event; tells the listener of changes.
    bool HandleEvent(UI_Event* event) override;

    float handle = 0;  // pixels from the start of the track
    bool dragging = false;
    int trackStart = 0, trackEnd = 0;  // pixels of the screen
    float fineFactor = 1.0f;

  private:
    void layOut();
    void drag(const UI_Event& event, bool& changed);
    bool startDrag(const UI_Event& event);
    void writeValue();
};
