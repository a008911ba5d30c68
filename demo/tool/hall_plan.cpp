#include "hall_plan.h"

#include <algorithm>
#include <cmath>

#include "mesh_builder.h"
#include "pictures_noise.h"

namespace hall {

using models::dot;
using models::operator+;
using models::operator-;
using models::operator*;
using pictures::Colour;

Vec3 Surface::at(float u, float v) const {
    return corner + right * u + up * v;
}

Vec3 Surface::normal() const {
    return Vec3Normalise(Vec3Cross(right, up));
}

Vec3 columnFoot(int column) {
    const auto perSide = static_cast<int>(kColumnZ.size());
    return {column < perSide ? -kColumnX : kColumnX, kFloor, kColumnZ[column % perSide]};
}

// Two straight legs and half a circle, at one speed.
Vec3 archPoint(float bayZ, float radius, float t) {
    const float leg = kArchSpring - kArchFoot, bow = models::kPi * radius;
    const float way = t * (2 * leg + bow);
    if (way < leg) return {kArchX, kArchFoot + way, bayZ - radius};
    if (way > leg + bow) return {kArchX, kArchSpring - (way - leg - bow), bayZ + radius};
    const float angle = (way - leg) / radius;
    return {kArchX, kArchSpring + radius * std::sin(angle), bayZ - radius * std::cos(angle)};
}

namespace {

std::vector<Ball> scatterBalls() {
    constexpr std::size_t kCount = 30;
    pictures::Random random(20);
    std::vector<Ball> placed{{0.55f, 5.0f, 0.3f}, {-0.75f, 4.4f, 0.22f}, {-0.2f, 3.6f, 0.36f}};
    const auto isFree = [&](const Ball& ball) {
        const auto touches = [&](const Ball& other) {
            return std::hypot(ball.x - other.x, ball.z - other.z) <
                   ball.radius + other.radius + 0.06f;
        };
        return std::none_of(placed.begin(), placed.end(), touches) &&
               std::hypot(ball.x, ball.z) > kStepRadius + 0.2f + ball.radius &&
               std::fabs(std::fabs(ball.x) - kPlinthX) > kPlinthHalfWidth + 0.1f + ball.radius;
    };
    while (placed.size() < kCount) {
        const float radius = random.range(0.1f, 0.38f);
        const float away = random.range(2.0f, 5.2f), angle = random.range(0, 2 * models::kPi);
        const Ball ball{away * std::cos(angle) * 0.85f, away * std::sin(angle), radius};
        if (isFree(ball)) placed.push_back(ball);
    }
    return placed;
}

// Metres to a rectangle around a point; 0 inside.
float toRectangle(float x, float z, float halfX, float halfZ) {
    return std::hypot(std::max(std::fabs(x) - halfX, 0.0f), std::max(std::fabs(z) - halfZ, 0.0f));
}

}  // namespace

const std::vector<Ball>& balls() {
    static const std::vector<Ball> all = scatterBalls();
    return all;
}

float openness(float x, float z) {
    float open = 1;
    // The share of the sky that a sphere hides from the plane it lies on, weighted by the cosine.
    for (const Ball& ball : balls()) {
        const float away = std::hypot(x - ball.x, z - ball.z) / ball.radius;
        open *= 1 - 0.95f * std::pow(1 + away * away, -1.5f);
    }
    const auto darken = [&](float metres, float strength) {
        open *= 1 - strength * std::exp(-metres / 0.25f);
    };
    darken(std::max(std::hypot(x, z) - kStepRadius, 0.0f), 0.6f);
    darken(toRectangle(std::fabs(x) - kPlinthX, std::fabs(z) - kPlinthZ, kPlinthHalfWidth,
                       kPlinthHalfWidth),
           0.7f);
    darken(toRectangle(std::fabs(x) - kBenchX, z, kBenchHalfWidth, kBenchHalfLength), 0.7f);
    for (int column = 0; column < kColumnCount; ++column) {
        const Vec3 foot = columnFoot(column);
        darken(std::max(std::hypot(x - foot.x, z - foot.z) - kColumnRadius - 0.16f, 0.0f), 0.6f);
    }
    return open;
}

// Powers were set by eye, lamp by lamp.
Lighting::Lighting() {
    for (int i = 0; i < 24; ++i) {
        const float angle = 2.4f * static_cast<float>(i);  // the golden angle fills the disc evenly
        const float radius = kSunRadius * std::sqrt((static_cast<float>(i) + 0.5f) / 24);
        const Vec3 place{radius * std::cos(angle), radius * std::sin(angle), 0};
        const float high = place.y / kSunRadius * 0.5f + 0.5f;
        lamps_.push_back({kSunCentre + place,
                          {0, 0, 1},
                          mix(pictures::kMagenta, pictures::kGold, high) * 0.62f});
    }
    for (std::size_t bay = 0; bay < kBayZ.size(); ++bay) {
        for (int i = 0; i < 14; ++i) {
            const float t = (static_cast<float>(i) + 0.5f) / 14;
            lamps_.push_back({archPoint(kBayZ[bay], kArchRadii[0], t) + Vec3{0.12f, 0, 0},
                              {},
                              kArchColours[bay % 2] * 0.085f});
        }
        for (int i = 0; i < 15; ++i) {
            const float across = (static_cast<float>(i % 3) - 1) * kWindowHalfWidth * 0.66f;
            const float up = (static_cast<float>(i / 3) + 0.5f) / 5;
            const Colour colour = mix(pictures::kOrange, pictures::hexColour(0x5a4cff),
                                      pictures::smoothstep(0, 0.6f, up));
            lamps_.push_back(
                {{kWindowX, pictures::mix(kWindowLow, kWindowHigh, up), kBayZ[bay] + across},
                 {-1, 0, 0},
                 colour * 0.16f});
        }
    }
    for (const Vec3& globe : kGlobes) lamps_.push_back({globe, {}, pictures::kGold * 0.30f});
    for (const float x : {-kStripX, kStripX}) {
        for (int i = 0; i < 14; ++i) {
            const float z = pictures::mix(-kStripHalfLength, kStripHalfLength,
                                          (static_cast<float>(i) + 0.5f) / 14);
            lamps_.push_back({{x, kStripY, z}, {0, -1, 0}, kStripColour * 0.42f});
        }
    }
}

Colour Lighting::at(const Vec3& place, const Vec3& normal) const {
    constexpr float kLampSize = 0.05f;  // square metres; keeps the light finite at a lamp
    Colour sum;
    for (const Lamp& lamp : lamps_) {
        const Vec3 way = lamp.place - place;
        const float square = dot(way, way), length = std::sqrt(square);
        const float incident = dot(way, normal) / length;
        if (incident <= 0) continue;
        const bool oriented = dot(lamp.facing, lamp.facing) > 0;
        const float leaving = oriented ? -dot(way, lamp.facing) / length : 1;
        if (leaving <= 0) continue;
        sum = sum + lamp.power * (incident * leaving / (square + kLampSize));
    }
    return sum;
}

}  // namespace hall
