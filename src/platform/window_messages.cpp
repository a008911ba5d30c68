#include "platform/window_messages.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kPictureWidth = 1920;
constexpr int kPictureHeight = 1080;

struct KeyPair {
    SDL_Keycode symbol;
    std::int32_t virtualKey;
};

// Keys that mean the same in every keyboard layout.
constexpr KeyPair kNamedKeys[] = {
    {SDLK_BACKSPACE, kKeyBack},
    {SDLK_TAB, kKeyTab},
    {SDLK_RETURN, kKeyReturn},
    {SDLK_RETURN2, kKeyReturn},
    {SDLK_KP_ENTER, kKeyReturn},
    {SDLK_LSHIFT, kKeyShift},
    {SDLK_RSHIFT, kKeyShift},
    {SDLK_LCTRL, kKeyControl},
    {SDLK_RCTRL, kKeyControl},
    {SDLK_LALT, kKeyAlt},
    {SDLK_RALT, kKeyAlt},
    {SDLK_PAUSE, 19},
    {SDLK_CAPSLOCK, 20},
    {SDLK_ESCAPE, kKeyEscape},
    {SDLK_SPACE, kKeySpace},
    {SDLK_PAGEUP, kKeyPageUp},
    {SDLK_PAGEDOWN, kKeyPageDown},
    {SDLK_END, kKeyEnd},
    {SDLK_HOME, kKeyHome},
    {SDLK_LEFT, kKeyLeft},
    {SDLK_UP, kKeyUp},
    {SDLK_RIGHT, kKeyRight},
    {SDLK_DOWN, kKeyDown},
    {SDLK_PRINTSCREEN, 44},
    {SDLK_INSERT, kKeyInsert},
    {SDLK_DELETE, kKeyDelete},
    {SDLK_LGUI, 91},
    {SDLK_RGUI, 92},
    {SDLK_APPLICATION, 93},
    {SDLK_KP_MULTIPLY, 106},
    {SDLK_KP_PLUS, 107},
    {SDLK_KP_MINUS, 109},
    {SDLK_KP_DIVIDE, 111},
    {SDLK_NUMLOCKCLEAR, 144},
    {SDLK_SCROLLLOCK, 145},
    {SDLK_SEMICOLON, 186},
    {SDLK_EQUALS, 187},
    {SDLK_PLUS, 187},
    {SDLK_COMMA, 188},
    {SDLK_MINUS, 189},
    {SDLK_PERIOD, 190},
    {SDLK_SLASH, 191},
    {SDLK_BACKQUOTE, 192},
    {SDLK_LEFTBRACKET, 219},
    {SDLK_BACKSLASH, 220},
    {SDLK_RIGHTBRACKET, 221},
    {SDLK_QUOTE, 222},
    {SDLK_LESS, 226},
};

// Keys of the number pad: with the number lock, and without.
struct PadKey {
    SDL_Keycode symbol;
    std::int32_t withLock;
    std::int32_t withoutLock;
};
constexpr PadKey kPadKeys[] = {
    {SDLK_KP_0, 96, kKeyInsert},   {SDLK_KP_1, 97, kKeyEnd},          {SDLK_KP_2, 98, kKeyDown},
    {SDLK_KP_3, 99, kKeyPageDown}, {SDLK_KP_4, 100, kKeyLeft},        {SDLK_KP_5, 101, 12},
    {SDLK_KP_6, 102, kKeyRight},   {SDLK_KP_7, 103, kKeyHome},        {SDLK_KP_8, 104, kKeyUp},
    {SDLK_KP_9, 105, kKeyPageUp},  {SDLK_KP_PERIOD, 110, kKeyDelete},
};

// Keys of the row of digits keep their codes in layouts that put other characters first there.
std::int32_t DigitRowKey(SDL_Scancode place) {
    if (place == SDL_SCANCODE_0) return '0';
    if (place >= SDL_SCANCODE_1 && place <= SDL_SCANCODE_9) return '1' + (place - SDL_SCANCODE_1);
    return 0;
}

// The next code point of UTF-8 text that is not at its end; broken bytes stand for themselves.
std::int32_t NextCodePoint(const char*& utf8) {
    const auto first = static_cast<unsigned char>(*utf8++);
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
    if (more == 0) return first;
    std::int32_t point = first & (0x3F >> more);
    for (int i = 0; i < more; ++i) {
        if ((static_cast<unsigned char>(utf8[i]) & 0xC0) != 0x80) return first;
        point = point << 6 | (utf8[i] & 0x3F);
    }
    utf8 += more;
    return point;
}

}  // namespace

std::int32_t VirtualKeyOf(const SDL_Keysym& key) {
    const SDL_Keycode symbol = key.sym;
    if (symbol >= SDLK_a && symbol <= SDLK_z) return 'A' + (symbol - SDLK_a);
    if (symbol >= SDLK_0 && symbol <= SDLK_9) return '0' + (symbol - SDLK_0);
    if (symbol >= SDLK_F1 && symbol <= SDLK_F12) return kKeyF1 + (symbol - SDLK_F1);
    if (symbol >= SDLK_F13 && symbol <= SDLK_F24) return kKeyF12 + 1 + (symbol - SDLK_F13);
    for (const PadKey& pad : kPadKeys) {
        if (pad.symbol == symbol) return (key.mod & KMOD_NUM) != 0 ? pad.withLock : pad.withoutLock;
    }
    if (const std::int32_t digit = DigitRowKey(key.scancode)) return digit;
    for (const KeyPair& named : kNamedKeys) {
        if (named.symbol == symbol) return named.virtualKey;
    }
    return 0;
}

PicturePlace ToPicturePlace(const WindowSizes& sizes, int windowX, int windowY) {
    const PictureArea area = LetterboxArea(sizes.drawableWidth, sizes.drawableHeight);
    if (area.width <= 0 || area.height <= 0 || sizes.windowWidth <= 0 || sizes.windowHeight <= 0) {
        return {};
    }
    const double scaleX = static_cast<double>(sizes.drawableWidth) / sizes.windowWidth;
    const double scaleY = static_cast<double>(sizes.drawableHeight) / sizes.windowHeight;
    const int areaTop = sizes.drawableHeight - area.y - area.height;
    const double x = (windowX * scaleX - area.x) * kPictureWidth / area.width;
    const double y = (windowY * scaleY - areaTop) * kPictureHeight / area.height;
    // Mouse places are 16-bit numbers in the messages' own form.
    constexpr double kLowest = -32768.0;
    constexpr double kHighest = 32767.0;
    return {static_cast<std::int32_t>(std::clamp(std::floor(x), kLowest, kHighest)),
            static_cast<std::int32_t>(std::clamp(std::floor(y), kLowest, kHighest))};
}

void MessageTranslator::translate(const SDL_Event& event, const WindowSizes& sizes) {
    switch (event.type) {
        case SDL_QUIT:
            add(kMessageClose, 0);
            break;
        case SDL_KEYDOWN:
        case SDL_KEYUP:
            translateKey(event.key);
            break;
        case SDL_TEXTINPUT:
            translateText(event.text.text);
            break;
        case SDL_MOUSEMOTION:
            mouse_ = ToPicturePlace(sizes, event.motion.x, event.motion.y);
            add(kMessageMouseMove, 0);
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            translateButton(event.button, sizes);
            break;
        case SDL_MOUSEWHEEL:
            translateWheel(event.wheel);
            break;
        default:
            break;
    }
}

bool MessageTranslator::take(WindowMessage& message) {
    if (messages_.empty()) return false;
    message = messages_.front();
    messages_.pop_front();
    return true;
}

void MessageTranslator::translateKey(const SDL_KeyboardEvent& key) {
    const std::int32_t virtualKey = VirtualKeyOf(key.keysym);
    if (virtualKey == 0) return;
    const bool down = key.type == SDL_KEYDOWN;
    // With Alt held a key is a command for the desktop, not for the editor; its release is told, so
    // that no key stays held.
    const bool alt = (key.keysym.mod & KMOD_LALT) != 0 && (key.keysym.mod & KMOD_CTRL) == 0;
    if (down && alt && virtualKey != kKeyAlt) return;
    add(down ? kMessageKeyDown : kMessageKeyUp, virtualKey);
    messages_.back().repeat = down && key.repeat != 0;
}

void MessageTranslator::translateText(const char* utf8) {
    while (*utf8 != '\0') add(kMessageCharacter, NextCodePoint(utf8));
}

void MessageTranslator::translateButton(const SDL_MouseButtonEvent& button,
                                        const WindowSizes& sizes) {
    mouse_ = ToPicturePlace(sizes, button.x, button.y);
    const bool down = button.type == SDL_MOUSEBUTTONDOWN;
    if (button.button == SDL_BUTTON_LEFT) {
        // Of a row of quick clicks each second one is the end of a double click.
        const bool second = button.clicks > 0 && button.clicks % 2 == 0;
        add(!down ? kMessageLeftUp : second ? kMessageLeftDoubleClick : kMessageLeftDown, 0);
    } else if (button.button == SDL_BUTTON_MIDDLE) {
        add(down ? kMessageMiddleDown : kMessageMiddleUp, 0);
    } else if (button.button == SDL_BUTTON_RIGHT) {
        add(down ? kMessageRightDown : kMessageRightUp, 0);
    }
}

void MessageTranslator::translateWheel(const SDL_MouseWheelEvent& wheel) {
    const float notches = wheel.preciseY != 0.0f ? wheel.preciseY : static_cast<float>(wheel.y);
    constexpr float kMostNotches = 250.0f;  // the delta is a 16-bit number
    const float delta = std::clamp(notches, -kMostNotches, kMostNotches) * kWheelNotch;
    const auto rounded = static_cast<std::int32_t>(std::lround(delta));
    if (rounded != 0) add(kMessageWheel, rounded);
}

void MessageTranslator::add(std::uint32_t message, std::int32_t value) {
    messages_.push_back({.message = message, .value = value, .x = mouse_.x, .y = mouse_.y});
}
