// A line of text over a box of the canvas, to give it another name. It has the capture from open to
// close: Enter and a press elsewhere take the text, Escape leaves things as they were. Main thread.
#pragma once

#include <functional>
#include <string>

#include "editor/ui_object.h"

class UI_NameField : public UI_Object {
  public:
    // False when another widget has the capture.
    bool open(int fieldX, int fieldY, int fieldWidth, std::string startText);
    void close();
    bool isOpen() const { return open_; }

    void Draw() override;
    bool HandleEvent(UI_Event* event) override;

    // Gets the text when it is taken; the field is closed by then.
    std::function<void(const std::string&)> onTaken;
    std::string text;

    static constexpr int kHeight = 20;
    static constexpr std::size_t kMostBytes = 64;  // of UTF-8; typing ends at this length

  private:
    void take();

    bool open_ = false;
    bool fresh_ = false;  // the first letter replaces the text
};
