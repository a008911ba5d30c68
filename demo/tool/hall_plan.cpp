#include "hall_plan.h"

#include <cmath>

#include "mesh_builder.h"

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
