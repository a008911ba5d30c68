// Turns the window library's events into messages, and its keys into virtual key codes. Depends on
// SDL2; only window.cpp and its tests include it. No state but that of the translator; main thread.
#pragma once

#include <SDL.h>

#include <cstdint>
#include <deque>

#include "platform/window.h"

// Sizes that place the mouse: of the window in the window system's units, and of its drawable area
// in pixels. They differ on scaled displays.
struct WindowSizes {
    int windowWidth = 0, windowHeight = 0;
    int drawableWidth = 0, drawableHeight = 0;
};

// The virtual key code of a key; 0 for keys that have none.
std::int32_t VirtualKeyOf(const SDL_Keysym& key);

// A place in the window as pixels of the 1920 by 1080 picture (top left origin). Places on the
// letterbox bars come out below 0 or past the picture's size.
struct PicturePlace {
    std::int32_t x = 0, y = 0;
};
PicturePlace ToPicturePlace(const WindowSizes& sizes, int windowX, int windowY);

class MessageTranslator {
  public:
    // Appends the messages that one event gives, none for events that are no concern of the editor.
    void translate(const SDL_Event& event, const WindowSizes& sizes);
    // Takes the oldest message; false when there is none.
    bool take(WindowMessage& message);

  private:
    void translateKey(const SDL_KeyboardEvent& key);
    void translateText(const char* utf8);
    void translateButton(const SDL_MouseButtonEvent& button, const WindowSizes& sizes);
    void translateWheel(const SDL_MouseWheelEvent& wheel);
    void add(std::uint32_t message, std::int32_t value);

    std::deque<WindowMessage> messages_;
    PicturePlace mouse_;
};
