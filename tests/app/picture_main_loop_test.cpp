// The main loop over a session without a window.
#include "app/main_loop.h"

#include <GL/glew.h>
#include <SDL.h>
#include <gtest/gtest.h>

#include <vector>

#include "app/scripted_window.h"
#include "app/session.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_panel.h"
#include "editor/ui_text_box.h"
#include "platform/debug_output.h"
#include "platform/user_dialogs.h"
#include "support/temp_folder.h"

namespace {

class MainLoop : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string reason;
        session_ = StartScriptedSession(window_, reason);
        ASSERT_NE(session_, nullptr) << reason;
    }

    TempFolder folder_;
    WorkingFolder working_{folder_.path()};
    DebugCapture quiet_;
    std::unique_ptr<Session> session_;
    ScriptedWindow* window_ = nullptr;
};

TEST_F(MainLoop, EndsOnTheFrameInWhichTheClockIsPast230Seconds) {
    session_->ui->editorTime = 230.5f;
    RunMainLoop(*session_);
    EXPECT_FLOAT_EQ(session_->engine->time, 230.5f);
    EXPECT_EQ(window_->swaps, 1) << "that frame is still shown";
}

TEST_F(MainLoop, PlaysOnAtExactly230Seconds) {
    session_->ui->editorTime = 230.0f;
    RunMainLoop(*session_);
    EXPECT_GT(window_->swaps, 1);
    EXPECT_GT(session_->engine->time, 230.0f);
}

TEST_F(MainLoop, EndsAfterASeekPast230SecondsWithTheFrameThatShowsIt) {
    window_->afterSwap = [this] {
        if (window_->swaps == 3) session_->ui->SeekTo(300);
    };
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 4);
    EXPECT_GE(session_->engine->time, 300.0f);
}

TEST_F(MainLoop, StartsPlaybackAfterItsFirstFrame) {
    EXPECT_FALSE(session_->ui->playing);
    session_->ui->editorTime = 231.0f;
    RunMainLoop(*session_);
    EXPECT_TRUE(session_->ui->playing);
    EXPECT_TRUE(session_->engine->music->channelLive);
}

TEST_F(MainLoop, StartsPlaybackOnlyOnce) {
    window_->afterSwap = [this] {
        if (window_->swaps == 1) session_->ui->TogglePlay();
    };
    window_->escapeAfterPolls = 5;
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 5);
    EXPECT_FALSE(session_->ui->playing) << "a pause stays one";
}

TEST_F(MainLoop, ShowsHowFarALoadIsAsALineAlongTheBottom) {
    session_->drawEditor();
    const auto lineLength = [&](int row) {
        session_->picture().Bind();
        std::vector<unsigned char> pixels(static_cast<std::size_t>(kFrameWidth) * 4);
        glFinish();
        glReadPixels(0, row, kFrameWidth, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        GL_FrameBuffer::Unbind();
        int length = 0;
        while (length < kFrameWidth && pixels[static_cast<std::size_t>(length) * 4] > 150) {
            ++length;
        }
        return length;
    };
    EXPECT_EQ(lineLength(0), 0);
    session_->drawLoadProgress(0.25);
    EXPECT_EQ(lineLength(0), 480);
    EXPECT_EQ(lineLength(5), 480);
    EXPECT_EQ(lineLength(6), 0);
    session_->drawLoadProgress(1);
    EXPECT_EQ(lineLength(0), kFrameWidth);
    session_->drawEditor();
    EXPECT_EQ(lineLength(0), 0) << "nothing of it stays";
}

TEST_F(MainLoop, PlaysOnTo230SecondsByTheClock) {
    session_->ui->editorTime = 229.9f;
    RunMainLoop(*session_);
    EXPECT_GT(session_->engine->time, 230.0f);
    EXPECT_LT(session_->engine->time, 232.0f);  // frames of an empty scene are short
}

TEST_F(MainLoop, EscDuringTheLoadEndsItBeforeAnyFrameAndWithoutMusic) {
    window_->escapeAfterPolls = 0;
    window_->messages.push_back({.message = kMessageMouseMove, .value = 0, .x = 7, .y = 9});
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 0);
    EXPECT_FALSE(session_->ui->playing);
    EXPECT_FALSE(session_->engine->music->channelLive);
    EXPECT_EQ(session_->ui->master.mouseX, 0) << "Esc is looked at before the messages";
}

TEST_F(MainLoop, DrawsAFrameOnlyWhenNoMessageIsLeft) {
    for (int i = 1; i <= 50; ++i) {
        window_->messages.push_back({.message = kMessageMouseMove, .value = 0, .x = i, .y = 2 * i});
    }
    session_->ui->editorTime = 231.0f;
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 1);
    EXPECT_EQ(window_->messagesLeftAtSwap, 0u);
    EXPECT_EQ(session_->ui->master.mouseX, 50);
    EXPECT_EQ(session_->ui->master.mouseY, 100);
}

TEST_F(MainLoop, TheCloseBoxEndsItAfterTheFrameInProgress) {
    window_->afterSwap = [this] { window_->messages.push_back({.message = kMessageClose}); };
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 1);
    EXPECT_TRUE(session_->ui->playing);
}

// --- the authoring screen

TEST_F(MainLoop, F12ChangesTheScreenAndShowsTheCursor) {
    std::vector<bool> presents;
    std::vector<int> cursors;
    window_->afterSwap = [&] {
        presents.push_back(session_->ui->presentationMode);
        cursors.push_back(SDL_ShowCursor(SDL_QUERY));
        if (presents.size() == 3) window_->messages.push_back({.message = kMessageClose});
        window_->messages.push_back({.message = kMessageKeyDown, .value = kKeyF12});
    };
    RunMainLoop(*session_);
    EXPECT_EQ(presents, (std::vector<bool>{true, false, true}));
    EXPECT_EQ(cursors, (std::vector<int>{SDL_DISABLE, SDL_ENABLE, SDL_DISABLE}));
}

// The key counts from its press on, while the F12 before it is still among the messages.
TEST_F(MainLoop, EscRightAfterF12EndsThePlayerThatF12Began) {
    session_->showScreen(ScreenKind::Authoring);
    window_->messages = {{.message = kMessageKeyDown, .value = kKeyF12},
                         {.message = kMessageKeyDown, .value = kKeyEscape}};
    window_->escapeAfterPolls = 0;
    window_->afterSwap = [&] { window_->messages.push_back({.message = kMessageClose}); };
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 0);
}

TEST_F(MainLoop, TheDemosEndStopsTheClockOfTheAuthoringScreenAndEndsNothing) {
    session_->showScreen(ScreenKind::Authoring);
    session_->ui->editorTime = 231.0f;
    window_->afterSwap = [&] {
        if (window_->swaps == 4) window_->messages.push_back({.message = kMessageClose});
    };
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 4);
    EXPECT_FALSE(session_->ui->playing);
}

TEST_F(MainLoop, EscIsTheTextBoxsWhileItIsTypedIntoAndThenEndsTheProgram) {
    session_->showScreen(ScreenKind::Authoring);
    const UI_TextBox& box = *session_->ui->pathBox1;
    const int x = box.x + box.width / 2, y = box.y + 10;
    window_->messages = {{.message = kMessageLeftDown, .value = 0, .x = x, .y = y},
                         {.message = kMessageLeftUp, .value = 0, .x = x, .y = y},
                         {.message = kMessageKeyDown, .value = kKeyEscape}};
    window_->afterSwap = [&] {
        if (window_->swaps == 1) {
            EXPECT_TRUE(box.focused);
            window_->messages = {{.message = kMessageLeftUp, .value = 0, .x = x, .y = y},
                                 {.message = kMessageKeyDown, .value = kKeyEscape}};
        }
        ASSERT_LT(window_->swaps, 3) << "Esc did not end the program";
    };
    window_->escapeAfterPolls = 2;  // the key as such, which only a player ends on
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 1);
}

TEST_F(MainLoop, AHeldEscThatClosesThePaletteEndsNothing) {
    session_->showScreen(ScreenKind::Authoring);
    session_->ui->nodeCanvas->openPalette(300, 700);
    ASSERT_NE(session_->ui->master.captured, nullptr);
    window_->messages = {{.message = kMessageKeyDown, .value = kKeyEscape},
                         {.message = kMessageKeyDown, .value = kKeyEscape, .repeat = true},
                         {.message = kMessageKeyDown, .value = kKeyEscape, .repeat = true},
                         {.message = kMessageKeyUp, .value = kKeyEscape}};
    window_->afterSwap = [&] {
        EXPECT_EQ(session_->ui->master.captured, nullptr);
        window_->messages.push_back({.message = kMessageClose});
    };
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 1);
}

TEST_F(MainLoop, AHeldF12ChangesTheScreenOnce) {
    window_->messages = {{.message = kMessageKeyDown, .value = kKeyF12},
                         {.message = kMessageKeyDown, .value = kKeyF12, .repeat = true}};
    window_->afterSwap = [&] {
        EXPECT_FALSE(session_->ui->presentationMode);
        window_->messages.push_back({.message = kMessageClose});
    };
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 1);
}

TEST_F(MainLoop, AsksBeforeUnsavedWorkIsLost) {
    session_->showScreen(ScreenKind::Authoring);
    session_->engine->createNode("Viewer1", "Viewer");
    int questions = 0;
    const MessageBoxHandler before =
        SetMessageBoxHandler([&](std::string_view, std::string_view, MessageButtons) {
            return ++questions < 2 ? MessageAnswer::Cancel : MessageAnswer::Ok;
        });
    window_->afterSwap = [&] { window_->messages.push_back({.message = kMessageClose}); };
    RunMainLoop(*session_);
    SetMessageBoxHandler(before);
    EXPECT_EQ(questions, 2);
    EXPECT_EQ(window_->swaps, 2);
}

// The clock runs on in the player while the work of the authoring screen is not saved.
TEST_F(MainLoop, TheDemosEndLosesNoUnsavedWorkOfTheAuthoringScreen) {
    session_->showScreen(ScreenKind::Authoring);
    session_->engine->createNode("Viewer1", "Viewer");
    session_->showScreen(ScreenKind::Presentation);
    session_->ui->editorTime = 231.0f;
    int questions = 0;
    MessageAnswer answer = MessageAnswer::Cancel;
    const MessageBoxHandler before =
        SetMessageBoxHandler([&](std::string_view, std::string_view, MessageButtons) {
            ++questions;
            return answer;
        });
    window_->afterSwap = [&] {
        if (window_->swaps != 5) return;
        EXPECT_EQ(questions, 1) << "not in every frame";
        EXPECT_FALSE(session_->ui->presentationMode) << "back to where it can be saved";
        EXPECT_FALSE(session_->ui->playing);
        answer = MessageAnswer::Ok;
        session_->showScreen(ScreenKind::Presentation);
    };
    RunMainLoop(*session_);
    SetMessageBoxHandler(before);
    EXPECT_EQ(window_->swaps, 5);
    EXPECT_EQ(questions, 2);
}

TEST_F(MainLoop, EscBringsAHiddenEditorBackBeforeItEndsTheProgram) {
    session_->showScreen(ScreenKind::Authoring);
    session_->ui->HideEditor();
    window_->afterSwap = [&] {
        EXPECT_TRUE(session_->ui->restorePanel->hidden);
        window_->messages = {{.message = kMessageKeyDown, .value = kKeyEscape},
                             {.message = kMessageKeyUp, .value = kKeyEscape}};
        ASSERT_LT(window_->swaps, 3) << "Esc did not end the program";
    };
    window_->messages = {{.message = kMessageKeyDown, .value = kKeyEscape},
                         {.message = kMessageKeyUp, .value = kKeyEscape}};
    RunMainLoop(*session_);
    EXPECT_EQ(window_->swaps, 1);
}

TEST_F(MainLoop, HidesTheCursor) {
    EXPECT_EQ(SDL_ShowCursor(SDL_QUERY), SDL_DISABLE);
}

}  // namespace
