#include "pictures_noise.h"

#include <cmath>

#include "pictures_colour.h"

namespace pictures {

namespace {

// Without SSE4.1, which not every build may use, std::floor is a slow call.
int floored(float value) {
    const int cut = static_cast<int>(value);
    return static_cast<float>(cut) > value ? cut - 1 : cut;
}

int wrapped(int cell, int period) {
    if (period == 0) return cell;
    const int rest = cell % period;
    return rest < 0 ? rest + period : rest;
}

float fade(float t) {
    return t * t * t * (t * (t * 6 - 15) + 10);
}

float slope(uint32_t hash, float dx, float dy) {
    const float gx = static_cast<float>(hash & 0xffff) * (1.0f / 32767.5f) - 1.0f;
    const float gy = static_cast<float>(hash >> 16) * (1.0f / 32767.5f) - 1.0f;
    return gx * dx + gy * dy;
}

}  // namespace

uint32_t hashPoint(int x, int y, uint32_t seed) {
    uint32_t h = static_cast<uint32_t>(x) * 0x8da6b343u ^ static_cast<uint32_t>(y) * 0xd8163841u ^
                 seed * 0xcb1ab31fu;
    h = (h ^ (h >> 15)) * 0x2c1b3c6du;
    h = (h ^ (h >> 12)) * 0x297a2d39u;
    return h ^ (h >> 15);
}

uint32_t Random::next() {
    state += 0x9e3779b9u;
    uint32_t h = state;
    h = (h ^ (h >> 16)) * 0x85ebca6bu;
    h = (h ^ (h >> 13)) * 0xc2b2ae35u;
    return h ^ (h >> 16);
}

float Random::unit() {
    return static_cast<float>(next() >> 8) * (1.0f / 16777216.0f);
}

float Random::range(float low, float high) {
    return low + (high - low) * unit();
}

int Random::below(int count) {
    return static_cast<int>(unit() * static_cast<float>(count));
}

float gradientNoise(float x, float y, uint32_t seed, Period period) {
    const int cellX = floored(x), cellY = floored(y);
    const float dx = x - static_cast<float>(cellX), dy = y - static_cast<float>(cellY);
    const int x0 = wrapped(cellX, period.x), y0 = wrapped(cellY, period.y);
    const int x1 = wrapped(x0 + 1, period.x), y1 = wrapped(y0 + 1, period.y);
    const float u = fade(dx), v = fade(dy);
    const float top =
        mix(slope(hashPoint(x0, y0, seed), dx, dy), slope(hashPoint(x1, y0, seed), dx - 1, dy), u);
    const float bottom = mix(slope(hashPoint(x0, y1, seed), dx, dy - 1),
                             slope(hashPoint(x1, y1, seed), dx - 1, dy - 1), u);
    return mix(top, bottom, v) * 1.4f;
}

float fractalNoise(float x, float y, int octaves, uint32_t seed, Period period) {
    float sum = 0, weight = 0.55f;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += weight * gradientNoise(x, y, seed + static_cast<uint32_t>(octave), period);
        x *= 2, y *= 2, weight *= 0.5f;
        period = {period.x * 2, period.y * 2};
    }
    return sum;
}

float ridgedNoise(float x, float y, int octaves, uint32_t seed) {
    float sum = 0, weight = 0.5f, total = 0;
    for (int octave = 0; octave < octaves; ++octave) {
        const float fold = 1 - std::fabs(gradientNoise(x, y, seed + static_cast<uint32_t>(octave)));
        sum += weight * fold * fold;
        total += weight;
        x *= 2.03f, y *= 2.03f, weight *= 0.5f;
    }
    return sum / total;
}

}  // namespace pictures
