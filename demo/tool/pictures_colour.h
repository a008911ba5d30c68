// Colours of the pictures, as the screen shows them (0 to 1 a channel; light may go above 1 until a
// picture is written), and the few that all pictures share, so that they look like one world.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

namespace pictures {

inline constexpr float kPi = 3.14159265f;

struct Colour {
    float r = 0, g = 0, b = 0;
};

constexpr Colour operator+(Colour a, Colour b) {
    return {a.r + b.r, a.g + b.g, a.b + b.b};
}
constexpr Colour operator*(Colour a, float gain) {
    return {a.r * gain, a.g * gain, a.b * gain};
}
// Exact at both ends, without the branches of std::lerp.
constexpr float mix(float a, float b, float share) {
    return a * (1 - share) + b * share;
}
constexpr Colour mix(Colour a, Colour b, float share) {
    return a * (1 - share) + b * share;
}

// `hex`: 0xRRGGBB.
constexpr Colour hexColour(uint32_t hex) {
    return {static_cast<float>(hex >> 16 & 255) / 255.0f,
            static_cast<float>(hex >> 8 & 255) / 255.0f, static_cast<float>(hex & 255) / 255.0f};
}

inline constexpr Colour kInk = hexColour(0x04050f);
inline constexpr Colour kNight = hexColour(0x080a22);
inline constexpr Colour kIndigo = hexColour(0x191a5c);
inline constexpr Colour kViolet = hexColour(0x5a22a6);
inline constexpr Colour kMagenta = hexColour(0xff2a9a);
inline constexpr Colour kPink = hexColour(0xff79cf);
inline constexpr Colour kOrange = hexColour(0xff8436);
inline constexpr Colour kGold = hexColour(0xffc45c);
inline constexpr Colour kCream = hexColour(0xfff2d6);
inline constexpr Colour kCyan = hexColour(0x3ad8ff);
inline constexpr Colour kMist = hexColour(0x7d86ff);

inline float smoothstep(float low, float high, float value) {
    const float t = std::clamp((value - low) / (high - low), 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}

struct Stop {
    float at;
    Colour colour;
};

// The colour at `position` between stops in rising order, held before the first and after the last.
inline Colour gradient(std::span<const Stop> stops, float position) {
    for (size_t i = 1; i < stops.size(); ++i) {
        if (position >= stops[i].at) continue;
        const float share = smoothstep(stops[i - 1].at, stops[i].at, position);
        return mix(stops[i - 1].colour, stops[i].colour, share);
    }
    return stops.back().colour;
}

}  // namespace pictures
