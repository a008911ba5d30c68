#include "editor/ui_value_control.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "editor/ui_labels.h"
#include "platform/window.h"

namespace {

constexpr int kHeight = 18;                          // pixels
constexpr int kNumberSize = 12, kEditTextSize = 14;  // pixels
constexpr int kWidthOfCharacter = 8;                 // pixels, of the underlining
constexpr float kFineFactor = 0.05f;
constexpr Vec4 kWhite = {1, 1, 1, 1};

bool IsNumberCharacter(std::int32_t character) {
    return (character >= '0' && character <= '9') || (character >= ',' && character <= '.');
}

}  // namespace

UI_ValueControl::UI_ValueControl(std::string controlLabel, int controlX, int controlY,
                                 int controlWidth, bool isKeyable)
    : UI_BoundWidget(std::move(controlLabel), controlX, controlY, controlWidth, kHeight),
      keyable(isKeyable) {
    value.defaultValue = 0.5f;
}

std::string UI_ValueControl::numberText() const {
    if (value.data == nullptr) return {};
    if (percentFormat) return NumberText(*value.data * 100, value.decimals) + "%";
    return NumberText(*value.data, value.decimals);
}

void UI_ValueControl::Draw() {
    const std::string number = numberText();
    fillBackground(kColorWidget);
    drawText(10, 14, label);
    numberWidth = kWidthOfCharacter * static_cast<int>(number.size());
    const Vec4& numberColor = master->colorSlots[kColorKeyed];
    if (editing) {
        master->DrawText(numberLeft(), y + 14, kEditTextSize, kWhite, editText + "|");
    } else {
        master->DrawText(numberLeft(), y + 14, kNumberSize, numberColor, number);
        master->SetColor(numberColor);
        master->DrawThickLine(1, numberLeft() - 2, y + 15, numberLeft() - 2 + numberWidth, y + 15);
    }
    drawKeyedOutline();
}

bool UI_ValueControl::HandleEvent(UI_Event* event) {
    if (value.data == nullptr) return false;
    Outcome outcome;
    if (editing) {
        handleTyping(*event, outcome);
    } else {
        handleKeys(*event, outcome);
    }
    handleMouse(*event, outcome);
    if (listener != nullptr && outcome.changed) listener->OnValueEdited(this);
    if (keyable) keepKeyframes(*event, outcome.changed && outcome.consumed);
    return outcome.consumed || outcome.changed;
}

// Return takes the number over, escape drops it.
void UI_ValueControl::handleTyping(const UI_Event& event, Outcome& outcome) {
    outcome.consumed = true;
    if (event.type == UI_EventType::CharInput && IsNumberCharacter(event.value) &&
        editText.size() < kMostTyped) {
        editText.push_back(static_cast<char>(event.value));
    }
    if (IsKeyEvent(event, UI_EventType::KeyDown, kKeyBack) && !editText.empty()) {
        editText.pop_back();
    }
    if (IsKeyEvent(event, UI_EventType::KeyUp, kKeyReturn)) {
        endEditing();
        storeTyped();
        outcome.changed = true;
    }
    if (IsKeyEvent(event, UI_EventType::KeyUp, kKeyEscape)) endEditing();
}

void UI_ValueControl::handleKeys(const UI_Event& event, Outcome& outcome) {
    if (IsKeyEvent(event, UI_EventType::KeyDown, kKeyControl)) {
        fineFactor = kFineFactor;
        outcome.consumed = true;
    }
    if (keyable && toggleKeyed(event)) outcome.consumed = true;
    if (IsKeyEvent(event, UI_EventType::KeyUp, kKeyControl)) {
        fineFactor = 1.0f;
        outcome.changed = outcome.consumed = true;
    }
}

void UI_ValueControl::handleMouse(const UI_Event& event, Outcome& outcome) {
    if (event.type == UI_EventType::MouseMove && hasCapture() && !editing) {
        drag(event.x);
        outcome.changed = outcome.consumed = true;
    }
    if (event.type == UI_EventType::LeftDoubleClick && !editing) {
        startEditing();
        outcome.consumed = true;
    }
    if (event.type == UI_EventType::LeftDown && !outcome.consumed && isOnNumber(event.x)) {
        takeCapture(false);
        dragStartX = event.x;
        dragStartValue = *value.data;
        outcome.consumed = true;
    }
    if (event.type == UI_EventType::LeftUp && !editing) releaseCapture();
    if (event.type == UI_EventType::RightUp) {
        *value.data = value.defaultValue;
        outcome.changed = outcome.consumed = true;
    }
}

void UI_ValueControl::endEditing() {
    editing = false;
    releaseCapture();
}

// What is no number counts as 0.
void UI_ValueControl::storeTyped() {
    constexpr double kMost = std::numeric_limits<float>::max();
    const double number = std::atof(editText.c_str()) / (percentFormat ? 100 : 1);
    *value.data = limited(static_cast<float>(std::clamp(number, -kMost, kMost)));
}

void UI_ValueControl::startEditing() {
    if (hasCapture()) {
        *value.data = dragStartValue;
    } else {
        takeCapture(true);
    }
    editing = true;
    editText = numberText();
}

bool UI_ValueControl::isOnNumber(int pointX) {
    numberWidth = kWidthOfCharacter * static_cast<int>(numberText().size());
    const int start = numberLeft() - 2;
    return pointX >= start && pointX <= start + numberWidth;
}

// A hundred pixels are the range, or 1 for percents.
void UI_ValueControl::drag(int pointX) {
    const float delta = static_cast<float>(pointX - dragStartX) * fineFactor / 100;
    const float range = percentFormat ? 1.0f : value.max - value.min;
    *value.data = limited(dragStartValue + range * delta);
}

float UI_ValueControl::limited(float number) const {
    if (value.animatable) return std::min(std::max(number, value.min), value.max);
    return std::fmod(number - value.min, value.max - value.min) + value.min;
}
