#include "editor/ui_name_field.h"

#include "editor/ui_master.h"
#include "platform/window.h"

namespace {

constexpr int kTextSize = 12;  // pixels
constexpr int kMargin = 5;
constexpr int kFirstLetter = 32, kLastLetter = 126;

}  // namespace

bool UI_NameField::open(int fieldX, int fieldY, int fieldWidth, std::string startText) {
    if (!takeCapture(true)) return false;
    SetPosition(fieldX, fieldY);
    SetSize(fieldWidth, kHeight);
    text = std::move(startText);
    open_ = fresh_ = true;
    return true;
}

void UI_NameField::close() {
    open_ = false;
    releaseCapture();
}

void UI_NameField::Draw() {
    if (!open_) return;
    const Vec4* colors = master->colorSlots;
    const int textWidth = master->MeasureText(kTextSize, text);
    const int fieldWidth = std::max(width, textWidth + 2 * kMargin + 6);
    master->SetColor(colors[kColorFocused]);
    master->FillRect(x, y, fieldWidth, height);
    if (fresh_) {
        master->SetColor({0.45f, 0.35f, 0.1f, 1});
        master->FillRect(x + kMargin - 1, y + 3, textWidth + 2, height - 6);
    }
    master->SetColor(colors[kColorKeyed]);
    master->OutlineRect(x, y, fieldWidth, height);
    master->DrawText(x + kMargin, y + 15, kTextSize, colors[kColorText], text);
    master->FillRect(x + kMargin + textWidth + 1, y + 3, 1, height - 6);
}

bool UI_NameField::HandleEvent(UI_Event* event) {
    if (!open_) return false;
    if (event->type == UI_EventType::CharInput && event->value >= kFirstLetter &&
        event->value <= kLastLetter) {
        if (fresh_) text.clear();
        fresh_ = false;
        if (text.size() < kMostCharacters) text.push_back(static_cast<char>(event->value));
    }
    if (event->type == UI_EventType::LeftDown || event->type == UI_EventType::RightDown) {
        if (!Contains(event->x, event->y)) take();
        fresh_ = false;
    } else if (event->type == UI_EventType::KeyDown) {
        if (event->value == kKeyEscape) close();
        if (event->value == kKeyReturn) take();
        if (event->value == kKeyBack) {
            if (fresh_) text.clear();
            if (!text.empty()) text.pop_back();
            fresh_ = false;
        }
    }
    return true;
}

void UI_NameField::take() {
    close();
    const std::string taken = text;  // the caller may open the field again
    if (onTaken) onTaken(taken);
}
