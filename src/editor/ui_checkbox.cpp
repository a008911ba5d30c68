#include "editor/ui_checkbox.h"

namespace {

constexpr int kLeft = 5, kWidth = 380, kHeight = 30;  // pixels
constexpr int kSquare = 20;
constexpr float kLine = 1.5f;

}  // namespace

UI_Checkbox::UI_Checkbox(const ValueBool& boundTo, int boxY)
    : UI_BoundWidget(boundTo.name, kLeft, boxY, kWidth, kHeight) {
    value = boundTo;
}

void UI_Checkbox::Draw() {
    const int left = x + width - 25, top = y + height / 2 - 10;
    const int right = left + kSquare, bottom = top + kSquare;
    fillBackground(kColorWidget);
    useColor(kColorForeground);
    if (value.data != nullptr && *value.data) {
        master->FillRect(left, top, kSquare, kSquare);
    } else {
        master->DrawThickLine(kLine, left, top, right, top);
        master->DrawThickLine(kLine, right, top, right, bottom);
        master->DrawThickLine(kLine, right, bottom, left, bottom);
        master->DrawThickLine(kLine, left, bottom, left, top);
    }
    drawText(10, 20, label);
}

bool UI_Checkbox::HandleEvent(UI_Event* event) {
    if (value.data == nullptr) return false;
    const int left = x + width - 25, top = y + height / 2 - 10;
    if (event->type == UI_EventType::LeftUp && event->x >= left && event->x <= left + kSquare &&
        event->y >= top && event->y <= top + kSquare) {
        *value.data = !*value.data;
    }
    if (event->type == UI_EventType::RightUp) *value.data = value.defaultValue;
    return false;
}
