// A colour with alpha: a swatch and four sliders. Main thread.
#pragma once

#include "editor/ui_slider.h"
#include "editor/ui_value_widget.h"

class UI_ColorSelector : public UI_BoundWidget<ValueVec4>, private UI_Evt_ValueChanged {
  public:
    UI_ColorSelector(const ValueVec4& boundTo, int selectorY);

    void Draw() override;
    int GetHeight() const override { return height; }
    bool HandleEvent(UI_Event* event) override;
    void SetMaster(UI_Master* newMaster) override;
    bool Holds(const UI_Object* widget) const override;

    UI_Slider sliders[4] = {{"Red", 0}, {"Green", 0}, {"Blue", 0}, {"Alpha", 0}};

  private:
    // A slider that holds the capture gets its events past the selector, and tells it here.
    void OnValueEdited(UI_Object* sender) override;
    void OnCommand(UI_Object* /*sender*/, int /*argument*/) override {}

    void bindSliders();
    void drawSwatch();
    bool sendToSlider(UI_Event* event);
};
