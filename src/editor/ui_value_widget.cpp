#include "editor/ui_value_widget.h"

#include "core/value_keyframe_handler.h"

namespace {

constexpr int kTextSize = 12;  // pixels
constexpr int kKeyToggle = 'S';
constexpr int kKeyToggleSmall = 's';  // as a key code it is F4, which has the same effect
constexpr int kKeySetKeyframe = 'P';

}  // namespace

bool IsKeyEvent(const UI_Event& event, UI_EventType type, int virtualKey) {
    return event.type == type && event.value == virtualKey;
}

bool IsSetKeyframePress(const UI_Event& event) {
    return !event.ctrl && IsKeyEvent(event, UI_EventType::KeyDown, kKeySetKeyframe);
}

UI_ValueWidget::UI_ValueWidget(std::string widgetLabel, int widgetX, int widgetY, int widgetWidth,
                               int widgetHeight)
    : label(std::move(widgetLabel)) {
    x = widgetX;
    y = widgetY;
    width = widgetWidth;
    height = widgetHeight;
}

void UI_ValueWidget::SyncKeyed() {
    const Value_Object& bound = boundValue();
    if (bound.handler != nullptr) keyed = bound.handler->isAnimated(bound.nodeId, bound.name);
}

bool UI_ValueWidget::toggleKeyed(const UI_Event& event) {
    const bool press = IsKeyEvent(event, UI_EventType::KeyDown, kKeyToggle) ||
                       IsKeyEvent(event, UI_EventType::KeyDown, kKeyToggleSmall);
    // With ctrl it is a shortcut; held while a widget has the mouse, it switches once.
    if (!press || event.ctrl || event.repeat) return false;
    keyed = !keyed;
    const Value_Object& bound = boundValue();
    if (bound.handler == nullptr) return true;
    if (keyed) {
        bound.handler->addAnimation(bound.nodeId, label);
    } else {
        bound.handler->removeAnimation(bound.nodeId, label);
    }
    return true;
}

void UI_ValueWidget::keepKeyframes(const UI_Event& event, bool changed) {
    if ((changed && keyed) || IsSetKeyframePress(event)) writeKeyframe();
}

void UI_ValueWidget::writeKeyframe() {
    const Value_Object& bound = boundValue();
    if (bound.handler != nullptr) bound.handler->setKeyframe(bound.nodeId, bound.name);
}

void UI_ValueWidget::fillBackground(UI_ColorSlot slot) {
    useColor(slot);
    master->FillRect(x, y, width, height);
}

void UI_ValueWidget::drawText(int left, int baseline, std::string_view text) {
    master->DrawText(x + left, y + baseline, kTextSize, master->colorSlots[kColorText], text);
}

void UI_ValueWidget::drawKeyedOutline() {
    if (!keyed) return;
    useColor(kColorKeyed);
    master->OutlineRect(x, y, width, height);
}
