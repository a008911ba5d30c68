#include "editor/editor_timer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

void Wait(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace

TEST(EditorTimerTest, StartsAtZeroWhateverItsStartValue) {
    EditorTimer timer;
    timer.Reset(12.5f);
    EXPECT_EQ(timer.startSeconds, 12.5f);
    EXPECT_EQ(timer.elapsedSeconds, 0);
    EXPECT_EQ(timer.accumulatedSeconds, 0);
    EXPECT_EQ(timer.deltaSeconds, 0);
}

TEST(EditorTimerTest, TellsSecondsSinceItsStartAndSinceTheLastUpdate) {
    const auto started = std::chrono::steady_clock::now();
    EditorTimer timer;
    timer.Reset(0);
    Wait(20);
    timer.Update();
    const float first = timer.elapsedSeconds;
    EXPECT_EQ(timer.deltaSeconds, first);
    Wait(20);
    timer.Update();
    const std::chrono::duration<float> passed = std::chrono::steady_clock::now() - started;
    EXPECT_EQ(timer.deltaSeconds, timer.elapsedSeconds - first);
    EXPECT_EQ(timer.accumulatedSeconds, first + timer.deltaSeconds);
    EXPECT_GE(first, 0.019f);  // a sleep may end a little early by another clock
    EXPECT_GE(timer.elapsedSeconds, 0.038f);
    EXPECT_LE(timer.elapsedSeconds, passed.count() + 0.002f);
}

TEST(EditorTimerTest, StartsAnewWhenReset) {
    EditorTimer timer;
    timer.Reset(0);
    Wait(30);
    timer.Update();
    const float before = timer.elapsedSeconds;
    timer.Reset(1);
    EXPECT_EQ(timer.elapsedSeconds, 0);
    EXPECT_EQ(timer.accumulatedSeconds, 0);
    EXPECT_EQ(timer.deltaSeconds, 0);
    timer.Update();
    EXPECT_LT(timer.elapsedSeconds, before);
}
