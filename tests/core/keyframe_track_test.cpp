#include "core/keyframe_track.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr double kPi = 3.14159265358979323846;

KeyframeTrack Track(std::vector<Keyframe> keys) {
    KeyframeTrack track;
    track.setKeys(std::move(keys));
    return track;
}

// The easing of a mode in double precision.
double Weight(int mode, double t) {
    switch (mode) {
        case 1:
            return t;
        case 2:
            return t * t * t;
        case 3:
            return 1.0 - (1.0 - t) * (1.0 - t) * (1.0 - t);
        default:
            return (1.0 - std::cos(t * kPi)) * 0.5;
    }
}

TEST(KeyframeTrack, LeavesTheTargetAloneWithoutKeys) {
    EXPECT_FALSE(Track({}).valueAt(0).has_value());
}

TEST(KeyframeTrack, HoldsItsOnlyKeyForAllTime) {
    const KeyframeTrack track = Track({{7.5f, 3, 1}});
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    for (const float time : {-1.0f, 0.0f, 3.0f, 1000.0f, kNan})
        EXPECT_EQ(track.valueAt(time), 7.5f);
}

TEST(KeyframeTrack, HoldsItsFirstKeyBeforeIt) {
    const KeyframeTrack track = Track({{4, 2, 1}, {8, 4, 1}});
    EXPECT_EQ(track.valueAt(-5), 4.0f);
    EXPECT_EQ(track.valueAt(1.999f), 4.0f);
}

TEST(KeyframeTrack, HasTheFirstKeysValueExactlyAtIt) {
    EXPECT_EQ(Track({{4, 2, 1}, {8, 4, 1}}).valueAt(2), 4.0f);
}

TEST(KeyframeTrack, HasAMiddleKeysValueExactlyAtItWhateverTheModes) {
    for (const int mode : {0, 1, 2, 3}) {
        const KeyframeTrack track = Track({{4, 2, mode}, {8, 4, mode}, {-3, 5, mode}});
        EXPECT_EQ(track.valueAt(4), 8.0f) << "mode " << mode;
    }
}

TEST(KeyframeTrack, HasTheLastKeysValueExactlyAtItAndAfter) {
    // 0.1f and 0.7f do not add up exactly through an interpolation.
    const KeyframeTrack track = Track({{0.1f, 2, 0}, {0.7f, 4, 0}});
    EXPECT_EQ(track.valueAt(4), 0.7f);
    EXPECT_EQ(track.valueAt(400), 0.7f);
}

TEST(KeyframeTrack, EasesByTheFormulaOfEachMode) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> time(10, 18);
    for (const int mode : {0, 1, 2, 3, 4, -1, 1000}) {
        const KeyframeTrack track = Track({{-3, 10, 1}, {9, 18, mode}});
        for (int i = 0; i < 1000; ++i) {
            const float seconds = time(random);
            const double w = Weight(mode, (static_cast<double>(seconds) - 10) / 8);
            // A few roundings of single precision on numbers up to 9.
            EXPECT_NEAR(track.valueAt(seconds).value(), (1 - w) * -3 + w * 9, 9 * 4 * 6e-8)
                << "mode " << mode << " at " << seconds;
        }
    }
}

TEST(KeyframeTrack, EasesByTheModeOfTheLaterKey) {
    const KeyframeTrack track = Track({{0, 0, 2}, {8, 2, 1}, {0, 4, 3}});
    EXPECT_EQ(track.valueAt(1), 4.0f);        // linear, not ease in
    EXPECT_EQ(track.valueAt(3), 0.125f * 8);  // ease out of 8 to 0: w = 7/8
}

TEST(KeyframeTrack, SkipsThePairOfTwoKeysOfOneTime) {
    const KeyframeTrack track = Track({{0, 0, 1}, {1, 2, 1}, {5, 2, 1}, {7, 4, 1}});
    EXPECT_EQ(track.valueAt(1), 0.5f);
    EXPECT_EQ(track.valueAt(2), 5.0f);  // the empty segment gives nothing, the next one its start
    EXPECT_EQ(track.valueAt(3), 6.0f);
}

TEST(KeyframeTrack, GivesNothingWhereUnsortedKeysHaveNoSegment) {
    const KeyframeTrack track = Track({{1, 5, 1}, {2, 3, 1}, {3, 9, 1}});
    // 3 to 9 is the only segment that runs forwards, and before 5 the first key holds.
    EXPECT_EQ(track.valueAt(4), 1.0f);
    EXPECT_FLOAT_EQ(track.valueAt(6).value(), 2.5f);
    const KeyframeTrack backwards = Track({{1, 5, 1}, {2, 3, 1}, {3, 4, 1}, {4, 9, 1}, {5, 8, 1}});
    EXPECT_EQ(backwards.valueAt(8), 5.0f);
    const KeyframeTrack gap = Track({{1, 0, 1}, {2, 1, 1}, {3, std::nanf(""), 1}, {4, 9, 1}});
    EXPECT_FALSE(gap.valueAt(5).has_value());
    EXPECT_FALSE(gap.valueAt(std::nanf("")).has_value());
}

TEST(KeyframeTrack, TakesTheLastOfSeveralSegmentsThatHoldATime) {
    const KeyframeTrack track = Track({{0, 0, 1}, {10, 10, 1}, {100, 0, 1}, {200, 20, 1}});
    EXPECT_EQ(track.valueAt(5), 125.0f);
}

TEST(KeyframeTrack, InsertsKeysInOrderOfTimeWithTheCosineMode) {
    KeyframeTrack track;
    track.insertKey(2, 20);
    track.insertKey(1, 10);
    track.insertKey(3, 30);
    track.insertKey(2.5f, 25);
    ASSERT_EQ(track.keys().size(), 4u);
    const float times[] = {1, 2, 2.5f, 3};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(track.keys()[i].time, times[i]);
        EXPECT_EQ(track.keys()[i].value, times[i] * 10);
        EXPECT_EQ(track.keys()[i].mode, kKeyCosine);
    }
}

TEST(KeyframeTrack, OverwritesOnlyTheValueOfAKeyOfTheSameTime) {
    KeyframeTrack track = Track({{10, 1, 1}, {20, 2, 3}, {30, 3, 2}});
    track.insertKey(2, -5);
    ASSERT_EQ(track.keys().size(), 3u);
    EXPECT_EQ(track.keys()[1].value, -5.0f);
    EXPECT_EQ(track.keys()[1].mode, 3);
}

TEST(KeyframeTrack, ErasesAndReshapesOnlyKeysThatAreThere) {
    std::uint64_t edits = 0;
    KeyframeTrack track(&edits);
    track.setKeys({{10, 1, 1}, {20, 2, 3}});
    EXPECT_EQ(edits, 1u);
    EXPECT_FALSE(track.eraseKey(2));
    EXPECT_FALSE(track.setKeyMode(2, 1));
    EXPECT_EQ(edits, 1u);
    EXPECT_TRUE(track.setKeyMode(1, 2));
    EXPECT_EQ(track.keys()[1].mode, 2);
    EXPECT_TRUE(track.eraseKey(0));
    ASSERT_EQ(track.keys().size(), 1u);
    EXPECT_EQ(track.keys()[0].value, 20.0f);
    EXPECT_EQ(edits, 3u);
}

}  // namespace
