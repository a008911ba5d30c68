#include "editor/ui_labels.h"

#include <gtest/gtest.h>

#include <limits>

TEST(TimeLabel, ShowsMinutesSecondsAndMilliseconds) {
    EXPECT_EQ(TimeLabelText(0), "00:00:000");
    EXPECT_EQ(TimeLabelText(61.5f), "01:01:500");
    EXPECT_EQ(TimeLabelText(0.25f), "00:00:250");
    EXPECT_EQ(TimeLabelText(59.875f), "00:59:875");
    EXPECT_EQ(TimeLabelText(230), "03:50:000");
}

TEST(TimeLabel, LetsTheMinutesGrowBeyondTwoDigits) {
    EXPECT_EQ(TimeLabelText(3600), "60:00:000");
    EXPECT_EQ(TimeLabelText(6061.5f), "101:01:500");
}

TEST(TimeLabel, CutsTheMilliseconds) {
    EXPECT_EQ(TimeLabelText(1.9999f), "00:01:999");
}

TEST(TimeLabel, HoldsWhatNoLabelCanShow) {
    EXPECT_EQ(TimeLabelText(std::numeric_limits<float>::quiet_NaN()), "00:00:000");
    EXPECT_EQ(TimeLabelText(-std::numeric_limits<float>::infinity()), "00:00:000");
    EXPECT_EQ(TimeLabelText(std::numeric_limits<float>::infinity()), TimeLabelText(1e9f));
}

TEST(FrameCostLabel, ShowsMillisecondsAndFramesASecond) {
    EXPECT_EQ(FrameCostLabelText(0.016f), "16ms (62)");
    EXPECT_EQ(FrameCostLabelText(0.5f), "500ms (2)");
    EXPECT_EQ(FrameCostLabelText(0.03125f), "31.25ms (32)");
}

TEST(FrameCostLabel, HasNoDataUnderATenthOfAMillisecond) {
    EXPECT_EQ(FrameCostLabelText(0), "no FPS data");
    EXPECT_EQ(FrameCostLabelText(0.00009999f), "no FPS data");
    EXPECT_EQ(FrameCostLabelText(-1), "no FPS data");
    EXPECT_EQ(FrameCostLabelText(std::numeric_limits<float>::quiet_NaN()), "no FPS data");
}

TEST(FrameCostLabel, ShowsAFigureAtExactlyATenthOfAMillisecond) {
    // The single-precision 0.0001 lies a little below, so that a second holds 10000 and a bit.
    EXPECT_EQ(FrameCostLabelText(0.0001f), "0.1ms (10000)");
}

TEST(NumberText, HasTheDecimalsThatItIsGiven) {
    EXPECT_EQ(NumberText(1.5f, 2), "1.50");
    EXPECT_EQ(NumberText(-0.125f, 0), "-0");
    EXPECT_EQ(NumberText(2.5f, -3), "2") << "half to even";
    EXPECT_EQ(NumberText(0.5f, 2000000000), "0.500000000");
    EXPECT_EQ(NumberText(-std::numeric_limits<float>::max(), 9).size(), 1u + 39 + 1 + 9);
}

TEST(DisplayName, IsTheIdWhereThereIsNone) {
    const std::map<std::string, std::string> names = {{"a", "Alpha"}, {"b", ""}};
    EXPECT_EQ(DisplayNameIn(names, "a"), "Alpha");
    const std::string b = "b", c = "c";
    EXPECT_EQ(DisplayNameIn(names, b), "b");
    EXPECT_EQ(DisplayNameIn(names, c), "c");
}
