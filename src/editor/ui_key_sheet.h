// The sheet of all keys and gestures, over everything else until a key or a button is pressed. Main
// thread.
#pragma once

#include "editor/ui_object.h"

class UI_KeySheet : public UI_Object {
  public:
    void Draw() override;
    bool HandleEvent(UI_Event* event) override;
    // Takes the capture, so that nothing below it hears of the press that closes it.
    void Open();
    void Close();
    bool isOpen() const { return hasCapture(); }

  private:
    void drawSheet();
};
