#include "platform/window.h"

#include <GL/glew.h>
#include <SDL.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/window_messages.h"

namespace {

constexpr int kPictureWidth = 1920;
constexpr int kPictureHeight = 1080;

// SDL's video part, for as long as this lives.
class VideoPart {
  public:
    // `driver`: SDL's name of a video driver; null lets SDL choose.
    explicit VideoPart(const char* driver) {
        SDL_SetMainReady();
        if (driver != nullptr && SDL_WasInit(SDL_INIT_VIDEO) == 0) {
            SDL_SetHintWithPriority(SDL_HINT_VIDEODRIVER, driver, SDL_HINT_OVERRIDE);
            ready_ = SDL_InitSubSystem(SDL_INIT_VIDEO) == 0;
            SDL_ResetHint(SDL_HINT_VIDEODRIVER);
        } else {
            ready_ = SDL_InitSubSystem(SDL_INIT_VIDEO) == 0;
        }
    }
    ~VideoPart() {
        if (ready_) SDL_QuitSubSystem(SDL_INIT_VIDEO);
    }
    VideoPart(const VideoPart&) = delete;
    VideoPart& operator=(const VideoPart&) = delete;

    bool ready() const { return ready_; }

  private:
    bool ready_ = false;
};

struct WindowDeleter {
    void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
};
using WindowHandle = std::unique_ptr<SDL_Window, WindowDeleter>;

struct ContextDeleter {
    void operator()(void* context) const { SDL_GL_DeleteContext(context); }
};
using ContextHandle = std::unique_ptr<void, ContextDeleter>;

bool DriverShowsWindows() {
    const char* const driver = SDL_GetCurrentVideoDriver();
    return driver != nullptr && std::strcmp(driver, "offscreen") != 0 &&
           std::strcmp(driver, "dummy") != 0 && std::strcmp(driver, "evdev") != 0;
}

// Finds the display mode of 1920 by 1080; at the desktop's refresh rate where there are several.
bool FindPictureMode(SDL_DisplayMode& found) {
    SDL_DisplayMode desktop;
    if (!DriverShowsWindows() || SDL_GetDesktopDisplayMode(0, &desktop) != 0) return false;
    if (desktop.w == kPictureWidth && desktop.h == kPictureHeight) {
        found = desktop;
        return true;
    }
    bool any = false;
    for (int i = 0; i < SDL_GetNumDisplayModes(0); ++i) {
        SDL_DisplayMode mode;
        if (SDL_GetDisplayMode(0, i, &mode) != 0) continue;
        if (mode.w != kPictureWidth || mode.h != kPictureHeight) continue;
        if (!any || mode.refresh_rate == desktop.refresh_rate) found = mode;
        any = true;
    }
    return any;
}

struct Size {
    int width = 0, height = 0;
};

// The largest 16:9 size, at most that of the picture, that leaves room for the window's frame.
Size WindowedSize() {
    SDL_Rect usable;
    if (!DriverShowsWindows() || SDL_GetDisplayUsableBounds(0, &usable) != 0) {
        return {kPictureWidth, kPictureHeight};
    }
    constexpr int kFrameWidth = 16;
    constexpr int kFrameHeight = 48;
    constexpr int kLeastWidth = 320;
    const int width = std::min({kPictureWidth, usable.w - kFrameWidth,
                                (usable.h - kFrameHeight) * kPictureWidth / kPictureHeight});
    const int whole = std::max(kLeastWidth, width / 16 * 16);
    return {whole, whole * kPictureHeight / kPictureWidth};
}

void SetContextAttributes() {
    SDL_GL_ResetAttributes();
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
#ifndef NDEBUG
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_FLAGS, SDL_GL_CONTEXT_DEBUG_FLAG);
#endif
}

// Loads the entry points of the current context; false with a reason.
bool LoadEntryPoints(std::string& reason) {
    glewExperimental = GL_TRUE;
    const GLenum result = glewInit();
    // On a context that is not GLX's, GLEW misses a display only after it has loaded everything.
    if (result != GLEW_OK && result != GLEW_ERROR_NO_GLX_DISPLAY) {
        reason = std::string("OpenGL cannot be loaded: ") +
                 reinterpret_cast<const char*>(glewGetErrorString(result));
        return false;
    }
    while (glGetError() != GL_NO_ERROR) {
        // GLEW asks core contexts for things that they no longer have.
    }
    if (!GLEW_VERSION_3_3) {
        reason = "OpenGL 3.3 is not supported by the driver";
        return false;
    }
    return true;
}

class SdlWindow final : public Window {
  public:
    SdlWindow(std::unique_ptr<VideoPart> video, WindowHandle window, ContextHandle context,
              WindowKind kind, bool fullScreen)
        : video_(std::move(video)),
          window_(std::move(window)),
          context_(std::move(context)),
          kind_(kind),
          fullScreen_(fullScreen) {
        SDL_AddEventWatch(&SdlWindow::watch, this);
        SDL_StartTextInput();
    }
    ~SdlWindow() override { SDL_DelEventWatch(&SdlWindow::watch, this); }

    bool fullScreen() const override { return fullScreen_; }
    int drawableWidth() const override { return sizes().drawableWidth; }
    int drawableHeight() const override { return sizes().drawableHeight; }

    bool takeMessage(WindowMessage& message) override {
        SDL_Event event;
        while (!translator_.take(message)) {
            if (SDL_PollEvent(&event) == 0) return false;
            translator_.translate(event, sizes());
        }
        return true;
    }

    bool escapePressed() override {
        SDL_PumpEvents();
        const bool held = SDL_GetKeyboardState(nullptr)[SDL_SCANCODE_ESCAPE] != 0;
        return std::exchange(escapeSeen_, false) || held;
    }
    bool shiftHeld() const override { return (SDL_GetModState() & KMOD_SHIFT) != 0; }

    void swap() override {
        if (kind_ == WindowKind::Offscreen) {
            glFlush();
        } else {
            SDL_GL_SwapWindow(window_.get());
        }
    }
    void showCursor(bool visible) override { SDL_ShowCursor(visible ? SDL_ENABLE : SDL_DISABLE); }
    void setTitle(const std::string& title) override {
        SDL_SetWindowTitle(window_.get(), title.c_str());
    }
    std::string clipboardText() const override {
        char* const text = SDL_GetClipboardText();
        std::string copy = text != nullptr ? text : "";
        SDL_free(text);
        return copy;
    }
    void setClipboardText(const std::string& text) override { SDL_SetClipboardText(text.c_str()); }

  private:
    // Sees every event as it enters the queue, so that a press of Esc counts before it is taken.
    static int SDLCALL watch(void* self, SDL_Event* event) {
        if (event->type == SDL_KEYDOWN && event->key.keysym.sym == SDLK_ESCAPE) {
            static_cast<SdlWindow*>(self)->escapeSeen_ = true;
        }
        return 1;
    }

    WindowSizes sizes() const {
        WindowSizes sizes;
        SDL_GetWindowSize(window_.get(), &sizes.windowWidth, &sizes.windowHeight);
        SDL_GL_GetDrawableSize(window_.get(), &sizes.drawableWidth, &sizes.drawableHeight);
        return sizes;
    }

    // In the order of making; each stands on those before it.
    std::unique_ptr<VideoPart> video_;
    WindowHandle window_;
    ContextHandle context_;
    WindowKind kind_;
    bool fullScreen_;
    bool escapeSeen_ = false;
    MessageTranslator translator_;
};

WindowHandle CreateSdlWindow(WindowKind kind, bool& fullScreen) {
    constexpr Uint32 kFlags = SDL_WINDOW_OPENGL | SDL_WINDOW_ALLOW_HIGHDPI;
    constexpr int kAnywhere = static_cast<int>(SDL_WINDOWPOS_CENTERED);
    constexpr const char* kTitle = "vorn";
    fullScreen = false;
    if (kind == WindowKind::Offscreen) {
        constexpr int kSide = 64;  // nothing is ever drawn to it
        return WindowHandle(
            SDL_CreateWindow(kTitle, 0, 0, kSide, kSide, SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN));
    }
    SDL_DisplayMode mode;
    if (kind == WindowKind::Screen && FindPictureMode(mode)) {
        WindowHandle window(SDL_CreateWindow(kTitle, kAnywhere, kAnywhere, kPictureWidth,
                                             kPictureHeight, kFlags | SDL_WINDOW_HIDDEN));
        if (window && SDL_SetWindowDisplayMode(window.get(), &mode) == 0 &&
            SDL_SetWindowFullscreen(window.get(), SDL_WINDOW_FULLSCREEN) == 0) {
            fullScreen = true;
            return window;
        }
    }
    const Size size = WindowedSize();
    return WindowHandle(SDL_CreateWindow(kTitle, kAnywhere, kAnywhere, size.width, size.height,
                                         kFlags | SDL_WINDOW_RESIZABLE | SDL_WINDOW_HIDDEN));
}

std::string SdlReason(const char* what) {
    return std::string(what) + ": " + SDL_GetError();
}

}  // namespace

std::unique_ptr<Window> MakeWindow(WindowKind kind, std::string& reason) {
    const bool offscreen = kind == WindowKind::Offscreen;
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    // Work without a window reads no messages: Ctrl+C in the terminal has to end it at once.
    if (offscreen) SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    auto video = std::make_unique<VideoPart>(offscreen ? "offscreen" : nullptr);
    if (!video->ready()) {
        reason = SdlReason("no display");
        return nullptr;
    }
    // Left to itself, SDL ends with a driver that shows nothing; only who names it wants that.
    if (!offscreen && !DriverShowsWindows() && SDL_GetHint(SDL_HINT_VIDEODRIVER) == nullptr) {
        reason = "no display";
        return nullptr;
    }
    SetContextAttributes();
    bool fullScreen = false;
    WindowHandle window = CreateSdlWindow(kind, fullScreen);
    if (!window) {
        reason = SdlReason("no window with OpenGL");
        return nullptr;
    }
    ContextHandle context(SDL_GL_CreateContext(window.get()));
    if (!context || SDL_GL_MakeCurrent(window.get(), context.get()) != 0) {
        reason = SdlReason("no OpenGL 3.3 core context");
        return nullptr;
    }
    if (!LoadEntryPoints(reason)) return nullptr;
    if (!offscreen) {
        SDL_ShowWindow(window.get());
        SDL_RaiseWindow(window.get());
    }
    return std::make_unique<SdlWindow>(std::move(video), std::move(window), std::move(context),
                                       kind, fullScreen);
}

bool DisplayAvailable() {
    if (SDL_WasInit(SDL_INIT_VIDEO) != 0) return DriverShowsWindows();
    const VideoPart video(nullptr);
    return video.ready() && DriverShowsWindows();
}

std::uint64_t PerformanceCounter() {
    return SDL_GetPerformanceCounter();
}
std::uint64_t PerformanceFrequency() {
    return SDL_GetPerformanceFrequency();
}

PictureArea LetterboxArea(int drawableWidth, int drawableHeight) {
    if (drawableWidth <= 0 || drawableHeight <= 0) return {};
    const std::int64_t width = drawableWidth;
    const std::int64_t height = drawableHeight;
    PictureArea area{.x = 0, .y = 0, .width = drawableWidth, .height = drawableHeight};
    if (width * kPictureHeight > height * kPictureWidth) {
        area.width = static_cast<int>(height * kPictureWidth / kPictureHeight);
    } else {
        area.height = static_cast<int>(width * kPictureHeight / kPictureWidth);
    }
    area.width = std::max(area.width, 1);
    area.height = std::max(area.height, 1);
    area.x = (drawableWidth - area.width) / 2;
    area.y = (drawableHeight - area.height) / 2;
    return area;
}
