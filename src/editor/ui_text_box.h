// A line of text. A click begins typing, return takes the text over, another click and Escape drop
// it. The middle button asks for a file and takes its name. Main thread.
#pragma once

#include <string>

#include "editor/ui_value_widget.h"

class UI_TextBox : public UI_BoundWidget<ValueString> {
  public:
    UI_TextBox(const ValueString& boundTo, int boxX, int boxY, int boxWidth);

    void Draw() override;
    bool HandleEvent(UI_Event* event) override;
    // Shows the value's text as it stands, dropping what is being typed.
    void TakeValue();

    static constexpr std::size_t kMostBytes = 1023;  // of a text that the box can hold
    static constexpr std::size_t kMostTyped = 80;    // typing ends at this length

    std::string buffer;  // what is shown and edited
    bool focused = false;
    bool keyable = true;  // false: S does nothing, for texts that nothing can animate

  private:
    bool handleUnfocused(const UI_Event& event);
    void handleFocused(const UI_Event& event);
    void askForFile(const UI_Event& event);
    void type(std::int32_t character);
    void loseFocus();
    void setText(const std::string& text, const UI_Event& event);
    std::string shownText() const;
};

// Takes the last character off: one byte, or the bytes of one character of UTF-8.
void EraseLastCharacter(std::string& text);
