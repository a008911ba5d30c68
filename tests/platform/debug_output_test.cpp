#include "platform/debug_output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

using ::testing::ElementsAre;

TEST(DebugOutput, WritesTheTextAsItStands) {
    testing::internal::CaptureStderr();
    DebugOutput("one");
    DebugOutput(" two\n");
    DebugOutput(std::string_view("a\0b", 3));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), std::string("one two\na\0b", 12 - 1));
}

TEST(DebugOutput, KeepsTheLastMessagesOldestFirst) {
    const DebugCapture capture;
    for (std::size_t i = 0; i < kDebugRingSize + 10; ++i) DebugOutput(std::to_string(i));
    const std::vector<DebugMessage> ring = RecentDebugOutput();
    ASSERT_EQ(ring.size(), kDebugRingSize);
    EXPECT_EQ(ring.front().text, "10");
    EXPECT_EQ(ring.back().text, std::to_string(kDebugRingSize + 9));
}

TEST(DebugOutput, KeepsWhichMessagesTellOfAFault) {
    const DebugCapture capture;
    DebugOutput("Saved .\\terror.vorn\n");
    EXPECT_FALSE(RecentDebugOutput().back().fault);
    DebugFault("Glow: no\n");
    EXPECT_TRUE(RecentDebugOutput().back().fault);
    ReportBadFile("sky.png", "is a bitmap of 16 bits");
    EXPECT_TRUE(RecentDebugOutput().back().fault);
    EXPECT_THAT(capture.messages(), ElementsAre("Saved .\\terror.vorn\n", "Glow: no\n",
                                                "sky.png: is a bitmap of 16 bits\n"));
}

TEST(DebugOutput, CountsEveryMessage) {
    const DebugCapture capture;
    const std::size_t before = DebugOutputCount();
    DebugOutput("a");
    DebugOutput("");
    EXPECT_EQ(DebugOutputCount(), before + 2);
}

TEST(DebugOutput, LosesNothingWhenThreadsWriteAtOnce) {
    const DebugCapture capture;
    constexpr int kThreads = 4;
    constexpr int kEach = 500;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([] {
            for (int i = 0; i < kEach; ++i) DebugOutput("line\n");
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(capture.messages().size(), std::size_t{kThreads * kEach});
}

TEST(DebugOutput, TellsABadFileInOneLineAndCountsIt) {
    const DebugCapture capture;
    const std::size_t before = BadFileCount();
    ReportBadFile("Data\\a.png", "cut short");
    EXPECT_THAT(capture.messages(), ElementsAre("Data\\a.png: cut short\n"));
    EXPECT_EQ(BadFileCount(), before + 1);
}

TEST(DebugCapture, KeepsStandardErrorSilentAndGivesItBack) {
    testing::internal::CaptureStderr();
    {
        const DebugCapture capture;
        DebugOutput("hidden");
        EXPECT_EQ(capture.text(), "hidden");
    }
    DebugOutput("shown");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "shown");
}

TEST(DebugCapture, NestsSoThatTheInnermostCollects) {
    const DebugCapture outer;
    DebugOutput("1");
    {
        const DebugCapture inner;
        DebugOutput("2");
        EXPECT_THAT(inner.messages(), ElementsAre("2"));
    }
    DebugOutput("3");
    EXPECT_THAT(outer.messages(), ElementsAre("1", "3"));
}
