#include "editor/ui_backdrop_choice.h"

#include "editor/ui_image_panel.h"
#include "editor/ui_master.h"

namespace {

constexpr int kHeight = 30;               // pixels
constexpr int kSwatch = 22, kPitch = 30;  // pixels
constexpr int kTextSize = 12;             // pixels

}  // namespace

UI_BackdropChoice::UI_BackdropChoice(std::int32_t& chosenIndex, int choiceX, int choiceY,
                                     int choiceWidth)
    : chosen_(chosenIndex) {
    SetPosition(choiceX, choiceY);
    SetSize(choiceWidth, kHeight);
}

int UI_BackdropChoice::swatchLeft(int index) const {
    return x + width / 3 + 4 + index * kPitch;
}

void UI_BackdropChoice::Draw() {
    const Vec4* colors = master->colorSlots;
    master->SetColor(colors[kColorWidget]);
    master->FillRect(x, y, width, height);
    master->DrawText(x + 10, y + 20, kTextSize, colors[kColorText], "Backdrop");
    for (int i = 0; i < UI_ImagePanel::kBackdropCount; ++i) {
        const int left = swatchLeft(i), top = y + (height - kSwatch) / 2;
        master->SetColor(UI_ImagePanel::kBackdrops[i]);
        master->FillRect(left, top, kSwatch, kSwatch);
        master->SetColor(colors[i == chosen_ ? kColorKeyed : kColorPanelBorder]);
        master->OutlineRect(left, top, kSwatch, kSwatch);
        if (i == chosen_) master->OutlineRect(left - 2, top - 2, kSwatch + 4, kSwatch + 4);
    }
}

bool UI_BackdropChoice::HandleEvent(UI_Event* event) {
    if (event->type != UI_EventType::LeftDown) return false;
    for (int i = 0; i < UI_ImagePanel::kBackdropCount; ++i) {
        if (event->x < swatchLeft(i) || event->x >= swatchLeft(i) + kSwatch) continue;
        chosen_ = i;
        return true;
    }
    return false;
}
