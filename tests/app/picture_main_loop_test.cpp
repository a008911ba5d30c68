// The main loop over a session without a window.
#include "app/main_loop.h"

#include <gtest/gtest.h>

#include "app/session.h"
#include "platform/debug_output.h"
#include "support/temp_folder.h"

namespace {

class MainLoop : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string reason;
        int exitCode = 0;
        session_ = Session::Start(WindowKind::Offscreen, reason, exitCode);
        ASSERT_NE(session_, nullptr) << reason;
    }

    TempFolder folder_;
    WorkingFolder working_{folder_.path()};
    DebugCapture quiet_;
    std::unique_ptr<Session> session_;
};

TEST_F(MainLoop, EndsOnTheFrameInWhichTheClockIsPast230Seconds) {
    session_->ui->editorTime = 230.5f;
    RunMainLoop(*session_);
    EXPECT_FLOAT_EQ(session_->engine->time, 230.5f);
}

TEST_F(MainLoop, StartsPlaybackAfterItsFirstFrame) {
    EXPECT_FALSE(session_->ui->playing);
    session_->ui->editorTime = 231.0f;
    RunMainLoop(*session_);
    EXPECT_TRUE(session_->ui->playing);
}

TEST_F(MainLoop, PlaysOnTo230SecondsByTheClock) {
    session_->ui->editorTime = 229.9f;
    RunMainLoop(*session_);
    EXPECT_GT(session_->engine->time, 230.0f);
    EXPECT_LT(session_->engine->time, 232.0f);  // frames of an empty scene are short
}

}  // namespace
