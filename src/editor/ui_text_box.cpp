#include "editor/ui_text_box.h"

#include <optional>

#include "platform/debug_output.h"
#include "platform/user_dialogs.h"
#include "platform/window.h"

namespace {

constexpr int kHeight = 30;        // pixels
constexpr int kTextSize = 12;      // pixels
constexpr int kRoomForCursor = 8;  // pixels, at the end of the text

// Small letters, and what has a bit here: space + , - . : digits, capital letters and backslash.
bool IsAccepted(std::int32_t character) {
    if (character >= 'a' && character <= 'z') return true;
    constexpr std::int32_t kFirst = 32, kLast = 92;
    constexpr std::uint64_t kMask = 0x17fffffe07ff7801;
    return character >= kFirst && character <= kLast && (kMask >> (character - kFirst) & 1) != 0;
}

bool ContinuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// How many bytes a character of UTF-8 has that begins with this one; 0: none begins so.
std::size_t LengthFrom(char byte) {
    const auto first = static_cast<unsigned char>(byte);
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first < 0xE0) return 2;
    if (first >= 0xE0 && first < 0xF0) return 3;
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

}  // namespace

void EraseLastCharacter(std::string& text) {
    if (text.empty()) return;
    std::size_t start = text.size() - 1;
    while (start > 0 && text.size() - start < 4 && ContinuesCharacter(text[start])) --start;
    // Bytes that make no character go one by one.
    const bool whole = LengthFrom(text[start]) == text.size() - start;
    text.resize(whole ? start : text.size() - 1);
}

UI_TextBox::UI_TextBox(const ValueString& boundTo, int boxX, int boxY, int boxWidth)
    : UI_BoundWidget(boundTo.name, boxX, boxY, boxWidth, kHeight) {
    value = boundTo;
    TakeValue();
}

void UI_TextBox::TakeValue() {
    if (value.data != nullptr) buffer.assign(*value.data, 0, kMostBytes);
}

// Of a text that is too long its end: that of a path tells the file, and typing goes on there.
std::string UI_TextBox::shownText() const {
    const int room = width - width / 3 - kRoomForCursor;
    const auto fits = [&](const std::string& text) {
        return master->MeasureText(kTextSize, text) <= room;
    };
    if (fits(buffer)) return buffer;
    // The longest end that fits lies between one that does not and the empty one.
    std::size_t tooLong = 0, first = buffer.size();
    while (first - tooLong > 1) {
        const std::size_t middle = (tooLong + first) / 2;
        (fits("..." + buffer.substr(middle)) ? first : tooLong) = middle;
    }
    while (first < buffer.size() && ContinuesCharacter(buffer[first])) ++first;
    return "..." + buffer.substr(first);
}

void UI_TextBox::Draw() {
    if (!focused) TakeValue();
    const int textLeft = width / 3;
    fillBackground(focused ? kColorFocused : kColorWidget);
    drawText(10, 20, label);
    if (focused) {
        useColor(kColorWidget);
        master->FillRect(x + textLeft - 2, y + 2, 2 * width / 3 - 2, height - 4);
    }
    const std::string shown = shownText();
    drawText(textLeft, 20, shown);
    if (focused) drawText(textLeft + 2 + master->MeasureText(kTextSize, shown), 20, "|");
    drawKeyedOutline();
}

bool UI_TextBox::HandleEvent(UI_Event* event) {
    if (value.data == nullptr) return false;
    if (!focused) return handleUnfocused(*event);
    handleFocused(*event);
    return true;
}

bool UI_TextBox::handleUnfocused(const UI_Event& event) {
    if (keyable && toggleKeyed(event)) return true;
    switch (event.type) {
        case UI_EventType::LeftUp:
            if (!takeCapture(true)) return false;
            TakeValue();
            focused = true;
            return true;
        case UI_EventType::MiddleUp:
            askForFile(event);
            return true;
        case UI_EventType::RightUp:
            setText(value.defaultValue, event);
            return true;
        default:
            keepKeyframes(event, false);
            return false;
    }
}

// Everything typed goes into the text, so that no letter is taken for a gesture.
void UI_TextBox::handleFocused(const UI_Event& event) {
    if (event.type == UI_EventType::LeftUp) loseFocus();
    if (event.type == UI_EventType::CharInput) type(event.value);
    if (IsKeyEvent(event, UI_EventType::KeyDown, kKeyBack)) EraseLastCharacter(buffer);
    if (IsKeyEvent(event, UI_EventType::KeyUp, kKeyReturn)) {
        loseFocus();
        setText(buffer, event);
    }
    if (IsKeyEvent(event, UI_EventType::KeyUp, kKeyEscape)) loseFocus();
}

void UI_TextBox::askForFile(const UI_Event& event) {
    const std::optional<std::string> file = AskForFile(label, "*.*");
    if (!file) return;
    if (file->size() > kMostBytes) {
        DebugOutput("The name of the file is longer than a text box holds.\n");
        return;
    }
    setText(*file, event);
}

void UI_TextBox::type(std::int32_t character) {
    if (IsAccepted(character) && buffer.size() < kMostTyped) {
        buffer.push_back(static_cast<char>(character));
    }
}

void UI_TextBox::loseFocus() {
    releaseCapture();
    focused = false;
}

void UI_TextBox::setText(const std::string& text, const UI_Event& event) {
    *value.data = text;
    TakeValue();
    if (listener != nullptr) listener->OnValueEdited(this);
    keepKeyframes(event, true);
}
