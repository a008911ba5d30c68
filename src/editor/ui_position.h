// A two-float place as two numbers. Main thread.
#pragma once

#include "editor/ui_value_control.h"
#include "editor/ui_value_widget.h"

class UI_Position : public UI_BoundWidget<ValueVec2>, public UI_Evt_ValueChanged {
  public:
    UI_Position(const ValueVec2& boundTo, int positionY);

    void Draw() override;
    int GetHeight() const override { return height; }
    bool HandleEvent(UI_Event* event) override;  // never consumes
    void SetMaster(UI_Master* newMaster) override;
    bool Holds(const UI_Object* widget) const override {
        return widget == this || widget == &controlX || widget == &controlY;
    }

    // From the two numbers.
    void OnValueEdited(UI_Object* sender) override;
    void OnCommand(UI_Object* /*sender*/, int /*argument*/) override {}

    UI_ValueControl controlX{"X", 0, 0, 190, false};
    UI_ValueControl controlY{"Y", 0, 0, 190, false};

  private:
    void bind(UI_ValueControl& control, float* component, float defaultValue);
    void placeControls();
};
