// The one window with its OpenGL 3.3 core context, the counter, and the messages of mouse and
// keyboard. No type of the window library leaves this folder. Main thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

// What a message tells. The numbers are part of the editor's event table.
enum WindowMessageNumber : std::uint32_t {
    kMessageClose = 16,
    kMessageKeyDown = 256,
    kMessageKeyUp = 257,
    kMessageCharacter = 258,
    kMessageMouseMove = 512,
    kMessageLeftDown = 513,
    kMessageLeftUp = 514,
    kMessageLeftDoubleClick = 515,
    kMessageRightDown = 516,
    kMessageRightUp = 517,
    kMessageMiddleDown = 519,
    kMessageMiddleUp = 520,
    kMessageWheel = 522,
};

constexpr std::int32_t kWheelNotch = 120;  // what kMessageWheel tells for a notch of the wheel

// A message as the editor understands it.
struct WindowMessage {
    std::uint32_t message = 0;  // a WindowMessageNumber
    std::int32_t value = 0;     // virtual key, character or turn of the wheel
    std::int32_t x = 0, y = 0;  // mouse place in picture pixels (1920 by 1080, top left origin)
    bool repeat = false;        // of a key down: the key is held, this is no new press
};

// Virtual key codes that the program names; letters and digits are their upper-case characters.
enum VirtualKey : std::int32_t {
    kKeyBack = 8,
    kKeyTab = 9,
    kKeyReturn = 13,
    kKeyShift = 16,
    kKeyControl = 17,
    kKeyAlt = 18,
    kKeyEscape = 27,
    kKeySpace = 32,
    kKeyPageUp = 33,
    kKeyPageDown = 34,
    kKeyEnd = 35,
    kKeyHome = 36,
    kKeyLeft = 37,
    kKeyUp = 38,
    kKeyRight = 39,
    kKeyDown = 40,
    kKeyInsert = 45,
    kKeyDelete = 46,
    kKeyF1 = 112,
    kKeyF2 = 113,
    kKeyF12 = 123,
};

enum class WindowKind {
    Screen,     // full screen where the display has 1920x1080, else a resizable window
    Windowed,   // always a resizable window
    Offscreen,  // no window at all: a context to render with
};

class Window {
  public:
    virtual ~Window() = default;

    virtual bool fullScreen() const = 0;
    // Size of the drawable area in pixels; changes when the user resizes the window.
    virtual int drawableWidth() const = 0;
    virtual int drawableHeight() const = 0;

    // Takes the next message; false when the queue is empty. Resizes and the like are handled
    // inside and give no message.
    virtual bool takeMessage(WindowMessage& message) = 0;
    // True while Esc is held or when it was pressed since the last call.
    virtual bool escapePressed() = 0;
    virtual bool shiftHeld() const = 0;

    virtual void swap() = 0;
    virtual void showCursor(bool visible) = 0;
    virtual void setTitle(const std::string& title) = 0;
    virtual std::string clipboardText() const = 0;
    virtual void setClipboardText(const std::string& text) = 0;
};

// Null with a reason when there is no display or no usable OpenGL 3.3 core context. The context is
// current and its entry points are loaded on return. Where SDL_VIDEODRIVER names a driver that
// shows nothing, the kinds with a window are made all the same, as if a screen of that size were
// there.
std::unique_ptr<Window> MakeWindow(WindowKind kind, std::string& reason);

// True when a display server can be reached, that is, when a window could be shown.
bool DisplayAvailable();

// The performance counter and its ticks per second.
std::uint64_t PerformanceCounter();
std::uint64_t PerformanceFrequency();

// The part of a drawable of `width` by `height` that a 16:9 picture fills, centred.
struct PictureArea {
    int x = 0, y = 0, width = 0, height = 0;  // pixels, origin bottom left
};
PictureArea LetterboxArea(int drawableWidth, int drawableHeight);
