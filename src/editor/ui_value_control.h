// A float as a number that can be dragged, typed, reset and keyed. Main thread.
#pragma once

#include <string>

#include "editor/ui_value_widget.h"

// A number outside the range ends at its bounds when the value can be animated, and comes in again
// on the other side when it cannot: such values are phases that go round.
class UI_ValueControl : public UI_BoundWidget<ValueFloat> {
  public:
    // Not `keyable`: S and P do nothing, and no change writes a key.
    UI_ValueControl(std::string controlLabel, int controlX, int controlY, int controlWidth,
                    bool isKeyable);

    void Draw() override;
    // Tells the listener of changes.
    bool HandleEvent(UI_Event* event) override;

    static constexpr std::size_t kMostTyped = 80;  // typing ends at this length

    bool percentFormat = false;  // shown and typed a hundredfold, with a "%"
    int numberWidth = 0;         // pixels, of the underlined number
    bool editing = false;
    std::string editText;
    float dragStartValue = 0;
    int dragStartX = 0;  // pixels
    float fineFactor = 1.0f;
    bool keyable;

  private:
    struct Outcome {
        bool changed = false;
        bool consumed = false;
    };
    int numberLeft() const { return x + width / 2; }
    std::string numberText() const;
    float limited(float number) const;
    void handleTyping(const UI_Event& event, Outcome& outcome);
    void handleKeys(const UI_Event& event, Outcome& outcome);
    void handleMouse(const UI_Event& event, Outcome& outcome);
    void endEditing();
    void storeTyped();
    void startEditing();
    bool isOnNumber(int pointX);
    void drag(int pointX);
};
