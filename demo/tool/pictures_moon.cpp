#include "pictures_noise.h"
#include "pictures_painters.h"

namespace pictures {

namespace {

constexpr int kSize = 1024;
constexpr float kCentre = kSize / 2.0f, kRadius = 408;

struct Sphere {
    float x, y, z;
};

Sphere onSphere(int column, int row) {
    const float x = (static_cast<float>(column) + 0.5f - kCentre) / kRadius;
    const float y = (static_cast<float>(row) + 0.5f - kCentre) / kRadius;
    return {x, y, std::sqrt(std::max(0.0f, 1 - x * x - y * y))};
}

// Height over distance from the middle, 1 at the rim: a bowl with a flat floor, a rim, a falling
// skirt.
float craterProfile(float distance) {
    constexpr float kRim = 0.34f;
    if (distance < 1) return std::max(-0.55f, kRim - 1.5f * (1 - std::pow(distance, 2.4f)));
    return kRim * std::exp(-(distance - 1) * 4.0f);
}

void digCrater(Mask& relief, Mask& rays, Random& random, float angularRadius) {
    const float angle = random.range(0, 2 * kPi), away = std::sqrt(random.unit()) * 0.99f;
    const Sphere middle{away * std::cos(angle), away * std::sin(angle),
                        std::sqrt(std::max(0.0f, 1 - away * away))};
    const bool fresh = angularRadius > 0.035f && random.chance(0.35f);
    const float reach = angularRadius * (fresh ? 7.0f : 2.2f) * kRadius;
    const float middleX = kCentre + middle.x * kRadius, middleY = kCentre + middle.y * kRadius;
    const auto limit = [](float at) { return std::clamp(static_cast<int>(at), 0, kSize); };
    const uint32_t raySeed = random.next();
    for (int y = limit(middleY - reach); y < limit(middleY + reach); ++y) {
        for (int x = limit(middleX - reach); x < limit(middleX + reach); ++x) {
            const Sphere here = onSphere(x, y);
            const float dx = here.x - middle.x, dy = here.y - middle.y, dz = here.z - middle.z;
            const float round = std::sqrt(dx * dx + dy * dy + dz * dz) / angularRadius;
            if (round > 7.5f) continue;
            const float bearing = std::atan2(dy, dx);
            const float uneven =
                gradientNoise(std::cos(bearing) * 1.6f + 9, std::sin(bearing) * 1.6f, raySeed);
            const float distance = round * (1 + 0.08f * uneven);
            if (distance < 2.2f) {
                // A new crater wipes out what was in it.
                const float kept = smoothstep(0.75f, 1.15f, distance);
                relief.at(x, y) = relief.at(x, y) * (0.25f + 0.75f * kept) +
                                  craterProfile(distance) * angularRadius * 0.30f;
            }
            if (!fresh || distance > 7 || distance < 1) continue;
            const float spoke = gradientNoise(bearing * 4.5f, 0.5f, raySeed);
            rays.at(x, y) += std::max(0.0f, spoke + 0.2f) * std::pow(1 - distance / 7, 2.0f) * 0.5f;
        }
    }
}

}  // namespace

Layer paintMoon() {
    Mask relief(kSize, kSize), rays(kSize, kSize);
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            const Sphere p = onSphere(x, y);
            const float spread = 1 / (0.55f + 0.45f * p.z);
            relief.at(x, y) = 0.0045f * fractalNoise(p.x * spread * 11, p.y * spread * 11, 5, 5);
        }
    }
    Random random(1234);
    // The oldest are the largest, and lie below the others.
    constexpr int kCraters = 620;
    for (int i = 0; i < kCraters; ++i) {
        const float size = 1 - static_cast<float>(i) / kCraters;
        digCrater(relief, rays, random, 0.007f + 0.10f * std::pow(size, 9.0f));
    }
    Mask disc(kSize, kSize), halo(kSize, kSize);
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            const float away = std::hypot(static_cast<float>(x) + 0.5f - kCentre,
                                          static_cast<float>(y) + 0.5f - kCentre);
            disc.at(x, y) = 1 - smoothstep(kRadius - 1.2f, kRadius + 0.4f, away);
            const float beyond = std::max(0.0f, away - kRadius) / (kCentre - kRadius);
            halo.at(x, y) = 0.5f * std::pow(std::max(0.0f, 1 - beyond), 3.2f);
        }
    }
    Layer layer(kSize, kSize);
    layer.cover(halo, [](int, int) { return hexColour(0x8f8cff); });
    layer.cover(disc, [&](int x, int y) {
        const Sphere p = onSphere(x, y);
        const int left = std::max(0, x - 1), right = std::min(kSize - 1, x + 1);
        const int above = std::max(0, y - 1), below = std::min(kSize - 1, y + 1);
        const float slopeX = (relief.at(right, y) - relief.at(left, y)) * kRadius / 2;
        const float slopeY = (relief.at(x, below) - relief.at(x, above)) * kRadius / 2;
        const Sphere n{p.x - slopeX, p.y - slopeY, p.z + 0.05f};
        const float length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
        const float lit = (n.x * -0.52f + n.y * -0.40f + n.z * 0.755f) / length;
        const float spread = 1 / (0.55f + 0.45f * p.z);
        const float seas =
            smoothstep(-0.02f, 0.30f,
                       fractalNoise(p.x * spread * 1.7f + 4.1f, p.y * spread * 1.7f + 2.3f, 5, 17));
        const float grain = 1 + 0.16f * fractalNoise(p.x * spread * 30, p.y * spread * 30, 4, 29);
        const float albedo = (1 - 0.48f * seas) * grain + 0.55f * std::min(0.6f, rays.at(x, y));
        const float shade = std::max(0.0f, lit * 1.0f);
        const Colour stone = mix(hexColour(0xfff0dc), hexColour(0xb9b2e6), seas);
        const Colour dark = mix(hexColour(0x14143c), hexColour(0x2a2468), 1 - p.z);
        return stone * (0.93f * albedo * std::pow(shade, 0.85f)) +
               dark * (0.75f * (1 - shade * 0.7f));
    });
    return layer;
}

}  // namespace pictures
