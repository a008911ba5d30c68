// The line at the foot of the authoring screen: what a command has done, for some seconds, and else
// what the gestures under the pointer do. Main thread.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "editor/ui_object.h"

class UI_StatusLine : public UI_Object {
  public:
    UI_StatusLine(int lineX, int lineY, int lineWidth, int lineHeight);

    void Draw() override;
    bool HandleEvent(UI_Event* /*event*/) override { return false; }
    enum class Tone { News, Fault };
    // Stays for kMessageDraws frames; a fault is red.
    void Tell(std::string_view text, Tone tone);

    static constexpr int kMessageDraws = 240;

    bool hidden = false;
    std::string message;
    Tone messageTone = Tone::News;
    std::function<std::string()> hint;  // of the moment; may be empty

  private:
    int drawsLeft_ = 0;
};
