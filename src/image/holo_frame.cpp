#include "image/holo_frame.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/random.h"

namespace {

constexpr std::uint32_t kOrbitSeed = 31337;

// 1 at the most, above -1: the next random number as a signed part.
double SignedPart() {
    return 1.0 - (Random::next() % 2000) / 1000.0;
}

float Coordinate() {
    return static_cast<float>(8.0 * SignedPart());
}

float Weight(double divisor) {
    return static_cast<float>((Random::next() % 1000) / divisor);
}

HoloFrame::Ball OnCircle(double angle, double radiusX, double radiusY, float weight) {
    return {static_cast<float>(radiusX * std::cos(angle)),
            static_cast<float>(radiusY * std::sin(angle)), 0, weight};
}

double AngleOf(int ball) {
    return ball * 6.28319 / MAX_BALLS;
}

// Ball i of the maker goes to the place (i + shift) % 20.
template <typename MakeBall>
HoloFrame Shape(int shift, MakeBall makeBall) {
    HoloFrame frame;
    for (int i = 0; i < MAX_BALLS; ++i) frame.balls[(i + shift) % MAX_BALLS] = makeBall(i);
    return frame;
}

// Balls anywhere in the box.
HoloFrame Cloud(std::uint32_t seed, int shift, double weightDivisor) {
    Random::seed(seed);
    return Shape(shift, [&](int) {
        HoloFrame::Ball ball;
        ball.x = Coordinate();
        ball.y = Coordinate();
        ball.z = Coordinate();
        ball.w = Weight(weightDivisor);
        return ball;
    });
}

// Heights are never negative, and most of them are low.
HoloFrame Bowl(double weightDivisor) {
    Random::seed(770);
    return Shape(10, [&](int) {
        HoloFrame::Ball ball;
        ball.x = Coordinate();
        ball.y = static_cast<float>(8.0 * std::pow(SignedPart(), 2));
        ball.z = Coordinate();
        ball.w = Weight(weightDivisor);
        return ball;
    });
}

HoloFrame Floor() {
    Random::seed(770);
    return Shape(10, [&](int) {
        HoloFrame::Ball ball;
        ball.x = Coordinate();
        ball.y = -2;
        ball.z = Coordinate();
        ball.w = Weight(1300);
        return ball;
    });
}

double OrbitCoordinate(double t) {
    const double p = SignedPart(), q = SignedPart(), r = SignedPart(), s = SignedPart(),
                 u = SignedPart();
    return 8.0 * std::cos(std::cos(r * t + q) + p * 3.14159 + t) * std::sin(u * t + s * 3.14159);
}

}  // namespace

std::vector<HoloFrame> HoloPresets() {
    std::vector<HoloFrame> frames;
    frames.push_back(Shape(0, [](int) { return HoloFrame::Ball{0, 0, 0, 0.05f}; }));
    frames.push_back(Shape(0, [](int i) { return OnCircle(AngleOf(i), 7, 7, 0.4f); }));
    frames.push_back(Shape(10, [](int i) { return OnCircle(AngleOf(i), 5, 5, 0.2f); }));
    frames.push_back(Shape(5, [](int i) {
        return OnCircle(AngleOf(i), 7 * std::pow(std::sin(i * 3.141 / MAX_BALLS), 2), 5, 0.2f);
    }));
    frames.push_back(Cloud(46, 0, 1500));
    frames.push_back(Cloud(26, 0, 1500));
    frames.push_back(Cloud(26, 10, 1500));
    frames.push_back(Bowl(1600));
    frames.push_back(Bowl(2000));
    frames.push_back(Floor());
    frames.push_back(Cloud(370, 10, 1600));
    return frames;
}

HoloFrame HoloOrbit(float timeSeconds, float effect) {
    Random::seed(kOrbitSeed);
    HoloFrame frame;
    for (HoloFrame::Ball& ball : frame.balls) {
        const double t = static_cast<double>(timeSeconds) + (Random::next() % 1000) / 100.0;
        ball.x = static_cast<float>(OrbitCoordinate(t));
        ball.y = static_cast<float>(OrbitCoordinate(t));
        ball.z = static_cast<float>(OrbitCoordinate(t));
        ball.w = (1.0f - effect) * 0.5f + effect * 0.34f;
    }
    Random::seed(0);
    return frame;
}

void Morph(HoloFrame& out, const HoloFrame& a, const HoloFrame& b, float weight) {
    for (int i = 0; i < MAX_BALLS; ++i) {
        const auto span = static_cast<float>(i + 3 < MAX_BALLS ? 3 : MAX_BALLS - i);
        const float at = (weight * static_cast<float>(MAX_BALLS) - static_cast<float>(i)) / span;
        const float f = std::clamp(at, 0.0f, 1.0f);
        const auto mix = [f](float from, float to) { return (1.0f - f) * from + f * to; };
        const HoloFrame::Ball &from = a.balls[i], &to = b.balls[i];
        out.balls[i] = {mix(from.x, to.x), mix(from.y, to.y), mix(from.z, to.z), mix(from.w, to.w)};
    }
}
