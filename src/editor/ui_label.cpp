#include "editor/ui_label.h"

namespace {

constexpr int kHeight = 30;  // pixels

}  // namespace

UI_Label::UI_Label(std::string labelText, int labelX, int labelY, int labelWidth)
    : text(std::move(labelText)) {
    x = labelX;
    y = labelY;
    width = labelWidth;
    height = kHeight;
}

void UI_Label::Draw() {
    master->DrawText(x, y + height / 2 + 5, textSize, master->colorSlots[color], text);
}
