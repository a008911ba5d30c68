// What the mouse and the keyboard tell a widget. Depends on nothing.
#pragma once

#include <cstdint>

enum class UI_EventType : std::int32_t {
    MouseMove = 1,
    LeftDown = 2,
    LeftUp = 3,
    MiddleDown = 4,
    MiddleUp = 5,
    RightDown = 6,
    RightUp = 7,
    LeftDoubleClick = 8,
    Wheel = 9,       // value: delta, 120 a notch, positive away from the user
    KeyDown = 10,    // value: virtual key
    KeyUp = 11,      // value: virtual key
    CharInput = 12,  // value: character
};

struct UI_Event {
    UI_EventType type = UI_EventType::MouseMove;
    std::int32_t value = 0;
    std::int32_t x = 0, y = 0;  // mouse, pixels, origin top left
    bool ctrl = false;
    bool shift = false;
    bool repeat = false;  // of KeyDown: the key is held, this is no new press
};
