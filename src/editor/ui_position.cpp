#include "editor/ui_position.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int kLeft = 5, kWidth = 380, kHeight = 40;  // pixels
constexpr float kFurthest = 99999;
constexpr int kDecimals = 3;

}  // namespace

UI_Position::UI_Position(const ValueVec2& boundTo, int positionY)
    : UI_BoundWidget(boundTo.name, kLeft, positionY, kWidth, kHeight) {
    value = boundTo;
    if (value.data == nullptr) return;
    bind(controlX, value.data, value.defaultValue[0]);
    bind(controlY, value.data + 1, value.defaultValue[1]);
}

// The numbers have no handler of their own: the place is keyed as a whole.
void UI_Position::bind(UI_ValueControl& control, float* component, float defaultValue) {
    control.value.data = component;
    control.value.min = -kFurthest;
    control.value.max = kFurthest;
    control.value.animatable = true;
    control.value.defaultValue = defaultValue;
    control.value.decimals = kDecimals;
    control.listener = this;
}

void UI_Position::SetMaster(UI_Master* newMaster) {
    UI_BoundWidget::SetMaster(newMaster);
    controlX.SetMaster(newMaster);
    controlY.SetMaster(newMaster);
}

void UI_Position::placeControls() {
    controlX.SetPosition(x, y + height / 2);
    controlY.SetPosition(x + width / 2, y + height / 2);
}

void UI_Position::Draw() {
    placeControls();
    fillBackground(kColorWidget);
    drawText(10, 18, label);
    controlX.Draw();
    controlY.Draw();
    drawKeyedOutline();
}

bool UI_Position::HandleEvent(UI_Event* event) {
    if (value.data == nullptr) return false;
    placeControls();
    for (UI_ValueControl* control : {&controlX, &controlY}) {
        if (control->Contains(event->x, event->y) && control->HandleEvent(event)) return false;
    }
    toggleKeyed(*event);
    const bool resets = event->type == UI_EventType::RightUp;
    if (resets) std::copy(std::begin(value.defaultValue), std::end(value.defaultValue), value.data);
    keepKeyframes(*event, resets);
    return false;
}

void UI_Position::OnValueEdited(UI_Object* /*sender*/) {
    if (keyed) writeKeyframe();
}
