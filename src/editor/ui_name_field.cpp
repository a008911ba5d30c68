#include "editor/ui_name_field.h"

#include "editor/ui_master.h"
#include "editor/ui_text_box.h"
#include "platform/window.h"

namespace {

constexpr int kTextSize = 12;  // pixels
constexpr int kMargin = 5;

// What can be seen, or be a part of it: no control characters, and no halves of surrogate pairs.
bool IsLetter(std::int32_t point) {
    const bool control = point < 32 || (point >= 127 && point < 160);
    const bool surrogate = point >= 0xd800 && point < 0xe000;
    return !control && !surrogate && point <= 0x10ffff;
}

void AppendUtf8(std::string& text, std::int32_t point) {
    const auto add = [&text](std::int32_t byte) { text.push_back(static_cast<char>(byte)); };
    const auto addRest = [&](int shift) { add(0x80 | (point >> shift & 0x3f)); };
    if (point < 0x80) {
        add(point);
    } else if (point < 0x800) {
        add(0xc0 | point >> 6);
        addRest(0);
    } else if (point < 0x10000) {
        add(0xe0 | point >> 12);
        addRest(6);
        addRest(0);
    } else {
        add(0xf0 | point >> 18);
        addRest(12);
        addRest(6);
        addRest(0);
    }
}

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
    if (event->type == UI_EventType::CharInput && IsLetter(event->value)) {
        if (fresh_) text.clear();
        fresh_ = false;
        if (text.size() < kMostBytes) AppendUtf8(text, event->value);
    }
    if (event->type == UI_EventType::LeftDown || event->type == UI_EventType::RightDown) {
        if (!Contains(event->x, event->y)) take();
        fresh_ = false;
    } else if (event->type == UI_EventType::KeyDown) {
        if (event->value == kKeyEscape) close();
        if (event->value == kKeyReturn) take();
        if (event->value == kKeyBack) {
            if (fresh_) text.clear();
            EraseLastCharacter(text);
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
