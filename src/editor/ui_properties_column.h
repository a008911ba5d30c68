// The column of the nodes' properties panels: they stand below each other in the order in which
// they were opened, and the column scrolls by the wheel and by its bar. Main thread.
#pragma once

#include "editor/ui_panel.h"

class UI_PropertiesColumn : public UI_Panel {
  public:
    UI_PropertiesColumn(int columnX, int columnY, int columnWidth, int columnHeight);

    void Draw() override;
    bool HandleEvent(UI_Event* event) override;
    bool HandleOwnEvent(UI_Event* event) override;

    // Puts every panel in its place.
    void Arrange();
    // Scrolls so far that the panel is seen.
    void ShowPanel(const UI_Panel* panel);

  private:
    int contentHeight() const;
    void clampScroll();
    bool dragBar(const UI_Event& event);
    void drawBar();
    void drawEmpty();

    int scrolled_ = 0;  // pixels
    int dragStartY_ = 0, dragStartScroll_ = 0;
};
