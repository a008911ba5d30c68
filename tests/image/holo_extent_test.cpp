#include "image/holo_extent.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr float kDimension = 20;
constexpr int kSteps = 160;  // places tested across a slice

double FieldAt(const HoloFrame& frame, double x, double y, double z) {
    double sum = 0;
    for (const HoloFrame::Ball& ball : frame.balls) {
        const double dx = static_cast<double>(ball.x) - x, dy = static_cast<double>(ball.y) - y,
                     dz = static_cast<double>(ball.z) - z;
        sum +=
            static_cast<double>(ball.w) / std::max(0.001, std::sqrt(dx * dx + dy * dy + dz * dz));
    }
    return sum;
}

// Places above 1 of a slice that the part leaves out, and the share of the slice that it takes.
struct Outcome {
    int missed = 0;
    double share = 0;
};

Outcome Try(const HoloFrame& frame, float z) {
    const SlicePart part = HoloExtent(frame, kDimension).above(1, z);
    Outcome outcome;
    for (int y = 0; y < kSteps; ++y) {
        for (int x = 0; x < kSteps; ++x) {
            const double u = (x + 0.5) / kSteps, v = (y + 0.5) / kSteps;
            const bool inside =
                u >= static_cast<double>(part.left) && u <= static_cast<double>(part.right) &&
                v >= static_cast<double>(part.low) && v <= static_cast<double>(part.high);
            const bool above =
                FieldAt(frame, (u * 2 - 1) * 20, (v * 2 - 1) * 20, static_cast<double>(z)) > 1;
            outcome.missed += above && !inside;
            outcome.share += inside ? 1.0 / (kSteps * kSteps) : 0;
        }
    }
    return outcome;
}

}  // namespace

TEST(HoloExtentTest, MissesNothingAboveTheThreshold) {
    std::vector<HoloFrame> frames = HoloPresets();
    frames.push_back(HoloOrbit(3, 0));
    frames.push_back(HoloOrbit(12.5f, 1));
    for (const HoloFrame& frame : frames) {
        for (float z = -10; z <= 10; z += 2.5f) EXPECT_EQ(Try(frame, z).missed, 0) << z;
    }
}

TEST(HoloExtentTest, LeavesOutMostOfASliceWithASmallShape) {
    const HoloFrame rest = HoloPresets()[0];
    EXPECT_LT(Try(rest, 0).share, 0.03);
    EXPECT_TRUE(HoloExtent(rest, kDimension).above(1, 5).isEmpty());
}

TEST(HoloExtentTest, TakesNegativeWeightsForNone) {
    HoloFrame frame;
    for (HoloFrame::Ball& ball : frame.balls) ball = {5, 5, 0, -3};
    frame.balls[4] = {-5, -5, 0, 1.5f};
    EXPECT_EQ(Try(frame, 0).missed, 0);
}

TEST(HoloExtentTest, TakesTheWholeSliceForWhatIsNoNumber) {
    HoloFrame frame;
    frame.balls[7].x = std::numeric_limits<float>::quiet_NaN();
    const SlicePart part = HoloExtent(frame, kDimension).above(1, 0);
    EXPECT_EQ(part.left, 0);
    EXPECT_EQ(part.low, 0);
    EXPECT_EQ(part.right, 1);
    EXPECT_EQ(part.high, 1);
}

TEST(HoloExtentTest, GrowsWithinTheSlice) {
    const SlicePart part = SlicePart{0.25f, 0.5f, 0.5f, 0.9375f}.grown(0.125f);
    EXPECT_EQ(part.left, 0.125f);
    EXPECT_EQ(part.low, 0.375f);
    EXPECT_EQ(part.right, 0.625f);
    EXPECT_EQ(part.high, 1);
    for (const float margin : {std::numeric_limits<float>::quiet_NaN(), 5.0f, -1.0f}) {
        EXPECT_EQ((SlicePart{0.5f, 0.5f, 0.75f, 0.75f}.grown(margin).left), 0);
    }
}
