// What the widgets share that are bound to one parameter: a copy of its value object, whose pointer
// aims at the node's own member, the label, and the gestures for keyframes. S sets and removes the
// animation of the value, P writes a key, and a change of an animated value writes a key. The
// node's member must outlive the widget. Main thread.
#pragma once

#include <string>
#include <string_view>

#include "core/value_object.h"
#include "editor/ui_master.h"
#include "editor/ui_object.h"

class UI_ValueWidget : public UI_Object {
  public:
    // `keyed` as the value's handler tells it; without a handler it stays.
    void SyncKeyed() override;

    std::string label;

  protected:
    UI_ValueWidget(std::string widgetLabel, int widgetX, int widgetY, int widgetWidth,
                   int widgetHeight);
    virtual const Value_Object& boundValue() const = 0;

    // True when the event is a press of S, which then has had its effect.
    bool toggleKeyed(const UI_Event& event);
    // Writes a key when an animated value `changed`, and at a press of P in any case.
    void keepKeyframes(const UI_Event& event, bool changed);
    void writeKeyframe();

    void useColor(UI_ColorSlot slot) { master->SetColor(master->colorSlots[slot]); }
    void fillBackground(UI_ColorSlot slot);
    // Of size 12 in the colour of text, baseline relative to the widget's corner.
    void drawText(int left, int baseline, std::string_view text);
    void drawKeyedOutline();
};

// The widget of one kind of value. A copy without `data` is drawn as far as that goes.
template <typename Value>
class UI_BoundWidget : public UI_ValueWidget {
  public:
    Value value{"", ""};

  protected:
    using UI_ValueWidget::UI_ValueWidget;
    const Value_Object& boundValue() const override { return value; }
};

// Is the event that kind of event for that virtual key?
bool IsKeyEvent(const UI_Event& event, UI_EventType type, int virtualKey);
bool IsSetKeyframePress(const UI_Event& event);
