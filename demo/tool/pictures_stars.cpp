#include "pictures_stars.h"

namespace pictures {

namespace {

Colour starColour(Random& random) {
    const float warmth = random.unit();
    if (warmth < 0.5f) return mix(hexColour(0xa8c4ff), hexColour(0xffffff), warmth * 2);
    return mix(hexColour(0xffffff), hexColour(0xffc9a0), warmth * 2 - 1);
}

void brightStar(Layer& layer, float x, float y, float size, Colour colour) {
    layer.spot(x, y, size * 5, colour, 0.16f);
    layer.spot(x, y, size * 1.1f, colour, 1.2f);
    const int reach = static_cast<int>(size * 14);
    for (int step = -reach; step <= reach; ++step) {
        const float fall = 1 - std::fabs(static_cast<float>(step)) / static_cast<float>(reach);
        const float gain = 0.34f * fall * fall * fall;
        layer.spot(x + static_cast<float>(step), y, 0.6f, colour, gain);
        layer.spot(x, y + static_cast<float>(step), 0.6f, colour, gain);
    }
}

}  // namespace

void scatterStars(Layer& layer, Random& random, const StarRegion& region, const StarField& field) {
    const auto fade = [&](float y) {
        return field.fadeDown ? 1 - smoothstep(0.35f, 1, (y - region.top) / region.height) : 1.0f;
    };
    for (int i = 0; i < field.count; ++i) {
        const float x = region.left + random.unit() * region.width;
        const float y = region.top + random.unit() * region.height;
        const float magnitude = std::pow(random.unit(), 5.0f);
        layer.spot(x, y, 0.55f + 0.65f * magnitude, starColour(random),
                   (0.14f + 0.9f * magnitude) * fade(y));
    }
    for (int i = 0; i < field.brightCount; ++i) {
        const float x = region.left + random.unit() * region.width;
        const float y = region.top + random.unit() * region.height;
        const Colour colour = starColour(random);
        brightStar(layer, x, y, random.range(0.9f, 2.1f), colour * fade(y));
    }
}

}  // namespace pictures
