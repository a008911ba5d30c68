#include "image/holo_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <string>

#include "core/random.h"

namespace {

using Ball = std::array<double, 4>;
using Shape = std::array<Ball, MAX_BALLS>;

constexpr double kSingle = 2e-6;  // single precision, for numbers up to 8

// The generator by itself, so that the orders in which numbers are taken are stated twice.
class Dice {
  public:
    explicit Dice(unsigned seed) : state_(seed) {}
    int roll(int sides) {
        state_ = state_ * 214013u + 2531011u;
        return static_cast<int>(state_ >> 16 & 0x7FFF) % sides;
    }
    double part() { return 1 - roll(2000) / 1000.0; }

  private:
    unsigned state_;
};

Shape Made(int shift, const std::function<Ball(int)>& ball) {
    Shape shape;
    for (int i = 0; i < MAX_BALLS; ++i) {
        shape[static_cast<std::size_t>((i + shift) % MAX_BALLS)] = ball(i);
    }
    return shape;
}

Shape Cloud(unsigned seed, int shift, double divisor) {
    Dice dice(seed);
    return Made(shift, [&](int) {
        Ball ball{};
        for (std::size_t c = 0; c < 3; ++c) ball[c] = 8 * dice.part();
        ball[3] = dice.roll(1000) / divisor;
        return ball;
    });
}

Shape Bowl(double divisor) {
    Dice dice(770);
    return Made(10, [&](int) {
        Ball ball{};
        ball[0] = 8 * dice.part();
        const double height = dice.part();
        ball[1] = 8 * height * height;
        ball[2] = 8 * dice.part();
        ball[3] = dice.roll(1000) / divisor;
        return ball;
    });
}

void ExpectShape(const HoloFrame& frame, const Shape& expected, const char* name,
                 double tolerance = kSingle) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const HoloFrame::Ball& ball = frame.balls[i];
        const float actual[] = {ball.x, ball.y, ball.z, ball.w};
        for (std::size_t c = 0; c < 4; ++c) {
            EXPECT_NEAR(actual[c], expected[i][c], tolerance) << name << ", ball " << i;
        }
    }
}

double AngleOf(int i) {
    return i * 6.28319 / 20;
}

}  // namespace

TEST(HoloFrameTest, RestsAsTwentySmallBallsInTheMiddle) {
    ExpectShape(HoloPresets()[0], Made(0, [](int) { return Ball{0, 0, 0, 0.05}; }), "rest");
}

TEST(HoloFrameTest, HasThreeClosedCurves) {
    const auto frames = HoloPresets();
    ASSERT_EQ(frames.size(), 11u);
    ExpectShape(frames[1],
                Made(0,
                     [](int i) {
                         return Ball{7 * std::cos(AngleOf(i)), 7 * std::sin(AngleOf(i)), 0, 0.4};
                     }),
                "circle");
    ExpectShape(frames[2],
                Made(10,
                     [](int i) {
                         return Ball{5 * std::cos(AngleOf(i)), 5 * std::sin(AngleOf(i)), 0, 0.2};
                     }),
                "small circle");
    ExpectShape(
        frames[3],
        Made(5,
             [](int i) {
                 const double narrow = std::pow(std::sin(i * 3.141 / 20), 2);
                 return Ball{7 * std::cos(AngleOf(i)) * narrow, 5 * std::sin(AngleOf(i)), 0, 0.2};
             }),
        "bow");
}

TEST(HoloFrameTest, HasSevenShapesOfSeededNumbers) {
    const auto frames = HoloPresets();
    ExpectShape(frames[4], Cloud(46, 0, 1500), "4");
    ExpectShape(frames[5], Cloud(26, 0, 1500), "5");
    ExpectShape(frames[6], Cloud(26, 10, 1500), "6");
    ExpectShape(frames[7], Bowl(1600), "7");
    ExpectShape(frames[8], Bowl(2000), "8");
    Dice dice(770);
    ExpectShape(frames[9],
                Made(10,
                     [&](int) {
                         Ball ball{8 * dice.part(), -2, 0, 0};
                         ball[2] = 8 * dice.part();
                         ball[3] = dice.roll(1000) / 1300.0;
                         return ball;
                     }),
                "9");
    Shape last = Cloud(370, 10, 1600);
    for (Ball& ball : last) {
        for (std::size_t c = 0; c < 3; ++c) ball[c] = std::clamp(ball[c], -8.0, 8.0);
    }
    ExpectShape(frames[10], last, "10");
}

TEST(HoloFrameTest, IsTheSameWhateverNumbersWereTakenBefore) {
    const auto first = HoloPresets();
    Random::seed(99);
    const auto second = HoloPresets();
    for (std::size_t i = 0; i < first.size(); ++i) {
        for (int b = 0; b < MAX_BALLS; ++b) {
            EXPECT_EQ(first[i].balls[b].x, second[i].balls[b].x) << i;
            EXPECT_EQ(first[i].balls[b].w, second[i].balls[b].w) << i;
        }
    }
}

TEST(HoloFrameTest, ChangesBallsOverOneAfterAnother) {
    const auto frames = HoloPresets();
    for (const float weight : {-1.0f, 0.0f, 0.04f, 0.125f, 0.5f, 0.7f, 0.93f, 0.97f, 1.0f, 3.0f}) {
        HoloFrame out;
        Morph(out, frames[4], frames[10], weight);
        Shape expected;
        for (int i = 0; i < MAX_BALLS; ++i) {
            const double den = i + 3 < 20 ? 3 : 20 - i;
            const double f = std::clamp((static_cast<double>(weight) * 20 - i) / den, 0.0, 1.0);
            const HoloFrame::Ball &a = frames[4].balls[i], &b = frames[10].balls[i];
            const float from[] = {a.x, a.y, a.z, a.w}, to[] = {b.x, b.y, b.z, b.w};
            for (std::size_t c = 0; c < 4; ++c) {
                expected[static_cast<std::size_t>(i)][c] =
                    (1 - f) * static_cast<double>(from[c]) + f * static_cast<double>(to[c]);
            }
        }
        // The weight times twenty is off by up to 1e-6, and the way between two shapes is up to 16.
        ExpectShape(out, expected, ("weight " + std::to_string(weight)).c_str(), 2e-5);
    }
}

TEST(HoloFrameTest, HasHalfOfTheBallsOverAtHalfWeight) {
    const auto frames = HoloPresets();
    HoloFrame out;
    Morph(out, frames[0], frames[1], 0.5f);
    for (int i = 0; i < MAX_BALLS; ++i) {
        if (i <= 7) {
            EXPECT_EQ(out.balls[i].w, frames[1].balls[i].w) << i;
        }
        if (i >= 10) {
            EXPECT_EQ(out.balls[i].w, frames[0].balls[i].w) << i;
        }
    }
}

TEST(HoloFrameTest, IsEitherShapeExactlyAtTheEnds) {
    const auto frames = HoloPresets();
    HoloFrame out;
    Morph(out, frames[7], frames[5], 0);
    EXPECT_EQ(std::memcmp(&out, &frames[7], sizeof out), 0);
    Morph(out, frames[7], frames[5], 1);
    EXPECT_EQ(std::memcmp(&out, &frames[5], sizeof out), 0);
}

TEST(HoloFrameTest, OrbitsOnCurvesOfSeededNumbers) {
    for (const float time : {0.0f, 1.5f, 77.25f}) {
        for (const float effect : {0.0f, 0.25f, 1.0f}) {
            Random::seed(5);
            const HoloFrame orbit = HoloOrbit(time, effect);
            Dice dice(31337);
            for (int i = 0; i < MAX_BALLS; ++i) {
                const double t = static_cast<double>(time) + dice.roll(1000) / 100.0;
                double place[3];
                for (double& coordinate : place) {
                    const double p = dice.part(), q = dice.part(), r = dice.part(), s = dice.part(),
                                 u = dice.part();
                    coordinate = 8 * std::cos(std::cos(r * t + q) + p * 3.14159 + t) *
                                 std::sin(u * t + s * 3.14159);
                }
                EXPECT_NEAR(orbit.balls[i].x, place[0], kSingle);
                EXPECT_NEAR(orbit.balls[i].y, place[1], kSingle);
                EXPECT_NEAR(orbit.balls[i].z, place[2], kSingle);
                EXPECT_NEAR(orbit.balls[i].w, 0.5 - 0.16 * static_cast<double>(effect), kSingle);
            }
        }
    }
}

TEST(HoloFrameTest, LeavesTheGeneratorInAKnownState) {
    Random::seed(77);
    HoloOrbit(3, 0);
    EXPECT_EQ(Random::next(), Dice(0).roll(32768));
}
