// The colours that can lie behind the picture, as swatches; a click chooses one. Main thread.
#pragma once

#include <cstdint>

#include "editor/ui_object.h"

class UI_BackdropChoice : public UI_Object {
  public:
    // `chosenIndex` is not owned and must outlive the widget.
    UI_BackdropChoice(std::int32_t& chosenIndex, int choiceX, int choiceY, int choiceWidth);

    void Draw() override;
    bool HandleEvent(UI_Event* event) override;

  private:
    int swatchLeft(int index) const;

    std::int32_t& chosen_;
};
