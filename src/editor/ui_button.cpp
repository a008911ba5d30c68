#include "editor/ui_button.h"

#include <algorithm>

#include "editor/ui_master.h"

namespace {

constexpr int kTextSize = 12;  // pixels
constexpr Vec4 kHovered = {0.32f, 0.32f, 0.32f, 1};
constexpr int kTooltipGap = 6;  // pixels below the button

}  // namespace

UI_Button::UI_Button(std::string buttonText, int buttonX, int buttonY, int buttonWidth,
                     int buttonHeight)
    : text(std::move(buttonText)) {
    x = buttonX;
    y = buttonY;
    width = buttonWidth;
    height = buttonHeight;
}

// Nothing lights up while another widget has the mouse.
bool UI_Button::isUnderPointer() const {
    return Contains(master->mouseX, master->mouseY) &&
           (master->captured == nullptr || hasCapture());
}

void UI_Button::Draw() {
    if (hidden) {
        hoveredDraws_ = 0;
        return;
    }
    const bool hovered = isUnderPointer();
    const bool down = pressed && hovered;
    const Vec4* colors = master->colorSlots;
    master->SetColor(down ? colors[kColorSelection] : hovered ? kHovered : colors[kColorWidget]);
    master->FillRect(x, y, width, height);
    master->SetColor(colors[keyed ? kColorKeyed : kColorPanelBorder]);
    master->OutlineRect(x, y, width, height);
    const int shift = down ? 1 : 0;
    const int textX = x + (width - master->MeasureText(kTextSize, text)) / 2;
    master->DrawText(textX + shift, y + height / 2 + 4 + shift, kTextSize, colors[kColorText],
                     text);
    drawTooltip(hovered && !pressed);
}

void UI_Button::drawTooltip(bool hovered) {
    hoveredDraws_ = hovered ? std::min(hoveredDraws_ + 1, kDrawsUntilTooltip) : 0;
    if (hoveredDraws_ < kDrawsUntilTooltip || tooltip.empty()) return;
    master->ShowTooltip(tooltip, x, y + height + kTooltipGap);
}

bool UI_Button::HandleEvent(UI_Event* event) {
    if (hidden) {
        pressed = false;
        releaseCapture();
        return false;
    }
    // The second press of two quick ones comes as a double click.
    if (event->type == UI_EventType::LeftDown || event->type == UI_EventType::LeftDoubleClick) {
        if (!pressed) pressed = Contains(event->x, event->y) && takeCapture(false);
        return pressed;
    }
    if (!pressed) return false;
    if (event->type == UI_EventType::LeftUp) {
        pressed = false;
        releaseCapture();
        if (Contains(event->x, event->y) && listener != nullptr) {
            listener->OnCommand(this, argument);
        }
    }
    return true;
}
