#include <GL/glew.h>
#include <SDL.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "platform/window.h"

namespace {

void PushKey(Uint32 type, SDL_Keycode symbol) {
    SDL_Event event = {};
    event.type = type;
    event.key.type = type;
    event.key.keysym.sym = symbol;
    ASSERT_EQ(SDL_PushEvent(&event), 1);
}

}  // namespace

class OffscreenWindow : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string reason;
        window_ = MakeWindow(WindowKind::Offscreen, reason);
        ASSERT_NE(window_, nullptr) << reason;
        for (WindowMessage message; window_->takeMessage(message);) continue;
        window_->escapePressed();
    }

    std::unique_ptr<Window> window_;
};

TEST_F(OffscreenWindow, HasACurrentCoreContextOf33) {
    GLint major = 0, minor = 0, profile = 0;
    glGetIntegerv(GL_MAJOR_VERSION, &major);
    glGetIntegerv(GL_MINOR_VERSION, &minor);
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    EXPECT_GE(major * 10 + minor, 33);
    EXPECT_EQ(profile, GL_CONTEXT_CORE_PROFILE_BIT);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    EXPECT_FALSE(window_->fullScreen());
}

TEST_F(OffscreenWindow, RendersIntoATarget) {
    GLuint texture = 0, framebuffer = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    glClearColor(1, 0, 1, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    GLubyte pixel[4] = {};
    glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    EXPECT_EQ(pixel[0], 255);
    EXPECT_EQ(pixel[1], 0);
    EXPECT_EQ(pixel[2], 255);
    EXPECT_EQ(pixel[3], 0);
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteTextures(1, &texture);
    window_->swap();
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

TEST_F(OffscreenWindow, TakesMessagesInTheOrderOfTheEvents) {
    PushKey(SDL_KEYDOWN, SDLK_p);
    PushKey(SDL_KEYUP, SDLK_p);
    SDL_Event quit = {};
    quit.type = SDL_QUIT;
    SDL_PushEvent(&quit);
    WindowMessage message;
    ASSERT_TRUE(window_->takeMessage(message));
    EXPECT_EQ(message.message, 256u);
    EXPECT_EQ(message.value, 80);
    ASSERT_TRUE(window_->takeMessage(message));
    EXPECT_EQ(message.message, 257u);
    ASSERT_TRUE(window_->takeMessage(message));
    EXPECT_EQ(message.message, kMessageClose);
    EXPECT_FALSE(window_->takeMessage(message));
}

TEST_F(OffscreenWindow, CountsAPressOfEscapeOnceEvenBeforeItsMessageIsTaken) {
    EXPECT_FALSE(window_->escapePressed());
    PushKey(SDL_KEYDOWN, SDLK_ESCAPE);
    PushKey(SDL_KEYUP, SDLK_ESCAPE);
    EXPECT_TRUE(window_->escapePressed());
    EXPECT_FALSE(window_->escapePressed());
    WindowMessage message;
    ASSERT_TRUE(window_->takeMessage(message));
    EXPECT_EQ(message.value, kKeyEscape);
    EXPECT_FALSE(window_->escapePressed());
}

TEST_F(OffscreenWindow, TellsOfShift) {
    EXPECT_FALSE(window_->shiftHeld());
    SDL_SetModState(KMOD_RSHIFT);
    EXPECT_TRUE(window_->shiftHeld());
    SDL_SetModState(KMOD_NONE);
}

TEST_F(OffscreenWindow, CanBeMadeAgainAfterItIsGone) {
    window_.reset();
    std::string reason;
    window_ = MakeWindow(WindowKind::Offscreen, reason);
    ASSERT_NE(window_, nullptr) << reason;
    EXPECT_NE(glGetString(GL_VERSION), nullptr);
}

TEST_F(OffscreenWindow, IsNoDisplay) {
    EXPECT_FALSE(DisplayAvailable());
}

// Windows are made without a screen where the driver that shows nothing is asked for by name.
TEST(ResizableWindow, PlacesTheMouseOnThePictureWhateverItsSize) {
    ASSERT_EQ(setenv("SDL_VIDEODRIVER", "offscreen", 1), 0);
    std::string reason;
    const std::unique_ptr<Window> window = MakeWindow(WindowKind::Windowed, reason);
    ASSERT_NE(window, nullptr) << reason;
    EXPECT_FALSE(window->fullScreen());
    SDL_SetWindowSize(SDL_GL_GetCurrentWindow(), 1000, 1000);
    for (WindowMessage message; window->takeMessage(message);) continue;
    ASSERT_EQ(window->drawableWidth(), 1000);
    ASSERT_EQ(window->drawableHeight(), 1000);
    SDL_Event event = {};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = 500;
    event.motion.y = 219 + 281;  // the picture is 562 high, below a bar of 219
    ASSERT_EQ(SDL_PushEvent(&event), 1);
    WindowMessage message;
    ASSERT_TRUE(window->takeMessage(message));
    EXPECT_EQ(message.message, 512u);
    EXPECT_EQ(message.x, 960);
    EXPECT_EQ(message.y, 540);
    window->swap();
}

TEST(PerformanceCounter, GoesForwardInTicksOfItsFrequency) {
    const std::uint64_t frequency = PerformanceFrequency();
    ASSERT_GT(frequency, 1000u);
    const std::uint64_t before = PerformanceCounter();
    SDL_Delay(20);
    const double seconds =
        static_cast<double>(PerformanceCounter() - before) / static_cast<double>(frequency);
    EXPECT_GE(seconds, 0.019);  // delays may end a timer tick early
}
