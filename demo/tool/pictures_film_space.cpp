// The film above the clouds: the night side of a planet, and the satellite that hands the signal
// on.
#include <array>

#include "pictures_film.h"

namespace pictures {

namespace {

Layer paintNebula() {
    constexpr int kWidth = 1000, kHeight = 600;
    Layer layer(kWidth, kHeight);
    layer.fill([](int x, int y) {
        const auto px = static_cast<float>(x), py = static_cast<float>(y);
        const float band = (py - 250 + (px - 500) * 0.35f) / 170;
        const float veil = std::exp(-band * band);
        const float gas = fractalNoise(px / 190, py / 190, 5, 5),
                    dust = fractalNoise(px / 110 + 9, py / 110, 5, 23);
        Colour colour = mix(hexColour(0x02030c), hexColour(0x080a24), veil);
        colour = colour + hexColour(0x5a2aa8) * (veil * std::max(0.0f, gas + 0.18f) * 0.9f);
        colour = colour + hexColour(0x1878b0) * (veil * std::max(0.0f, -gas + 0.05f) * 0.7f);
        colour = colour + hexColour(0xff6a9a) * (veil * std::max(0.0f, gas - 0.16f) * 1.3f);
        return colour * (1 - 0.75f * veil * smoothstep(0.05f, 0.4f, dust));
    });
    return layer;
}

// Many small stars, a few bright ones, to be screened.
Layer paintStars() {
    Layer layer(1500, 900);
    Random random(33);
    constexpr std::array kHues{hexColour(0xffffff), hexColour(0xbcd0ff), hexColour(0xffe0b8),
                               hexColour(0xd8e4ff)};
    for (int i = 0; i < 900; ++i) {
        const float size = 0.55f + 0.9f * random.unit() * random.unit();
        layer.spot(random.range(4, 1496), random.range(4, 896), size,
                   kHues[static_cast<size_t>(random.below(4))], random.range(0.2f, 1.1f));
    }
    for (int i = 0; i < 22; ++i) {
        const float x = random.range(40, 1460), y = random.range(40, 860);
        const Colour hue = kHues[static_cast<size_t>(random.below(4))];
        layer.spot(x, y, 2.2f, hue, 1.4f);
        layer.spot(x, y, 9, hue, 0.16f);
    }
    return layer;
}

// The upper arc of the planet: air along the limb, clouds, and cities on the night side.
Layer paintPlanet() {
    constexpr int kWidth = 2000, kHeight = 640;
    constexpr float kRadius = 1900, kMiddleX = 1000, kMiddleY = 2020;
    Layer layer(kWidth, kHeight);
    Mask ball(kWidth, kHeight), air(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const float dx = static_cast<float>(x) - kMiddleX,
                        dy = static_cast<float>(y) - kMiddleY;
            const float height = std::sqrt(dx * dx + dy * dy) - kRadius;
            ball.at(x, y) = std::clamp(0.5f - height, 0.0f, 1.0f);
            air.at(x, y) = height > 0 ? std::exp(-height / 24) : 0;
        }
    }
    layer.light(air, hexColour(0x4aa0ff), 0.95f);
    layer.cover(ball, [&](int x, int y) {
        const auto px = static_cast<float>(x), py = static_cast<float>(y);
        const float dx = px - kMiddleX, dy = py - kMiddleY;
        const float under = kRadius - std::sqrt(dx * dx + dy * dy);
        // Seen at a slant: the ground is squeezed towards the limb.
        const float v = std::sqrt(std::max(0.0f, under)) * 15, u = dx / (1 + under / 3000);
        const float land = fractalNoise(u / 330, v / 150, 5, 41),
                    cloud = fractalNoise(u / 240 + 5, v / 60, 5, 52);
        Colour colour =
            mix(hexColour(0x06112c), hexColour(0x101c2c), smoothstep(-0.02f, 0.06f, land));
        const float people = smoothstep(-0.02f, 0.14f, land) *
                             smoothstep(-0.08f, 0.34f, fractalNoise(u / 70, v / 34, 4, 60)) *
                             smoothstep(0.0f, 0.45f, fractalNoise(u / 7, v / 5, 2, 70) + 0.12f);
        colour = colour + hexColour(0xffb858) * (people * 1.7f);
        colour = mix(colour, hexColour(0x3a5488), 0.75f * smoothstep(0.08f, 0.5f, cloud));
        colour = colour + hexColour(0x3a8cff) *
                              (0.95f * std::exp(-under / 20) + 0.32f * std::exp(-under / 90));
        return colour +
               hexColour(0xffa060) * (0.9f * std::exp(-under / 16) * smoothstep(1100, 1900, px));
    });
    return layer;
}

Layer paintSunRim() {
    Layer layer(480, 320);
    layer.fill([](int x, int y) {
        const float dx = (static_cast<float>(x) - 240) / 240,
                    dy = (static_cast<float>(y) - 160) / 160;
        const float far = std::sqrt(dx * dx + dy * dy), edge = 1 - smoothstep(0.7f, 1, far);
        return (hexColour(0xff8a40) * std::exp(-far * far * 6) +
                hexColour(0xfff0d0) * (1.4f * std::exp(-far * far * 70))) *
               edge;
    });
    return layer;
}

Layer paintAurora() {
    constexpr int kWidth = 1400, kHeight = 300;
    Layer layer(kWidth, kHeight);
    layer.fill([](int x, int y) {
        const auto px = static_cast<float>(x), py = static_cast<float>(y);
        const float fold = 190 + 34 * fractalNoise(px / 260, 0.5f, 3, 6);
        const float up = fold - py;
        const float curtain =
            0.35f + 0.65f * smoothstep(-0.2f, 0.5f, fractalNoise(px / 16 + up / 200, 0.2f, 3, 14));
        const float shape = up > 0 ? std::exp(-up / 62) * smoothstep(0, 8, up) : 0;
        const float side = smoothstep(0, 240, px) * (1 - smoothstep(1100, 1400, px));
        const Colour hue = mix(hexColour(0x28ffa0), hexColour(0x9a50ff), smoothstep(20, 150, up));
        return hue * (0.85f * shape * curtain * side * smoothstep(0, 50, py));
    });
    return layer;
}

Layer paintSatellite() {
    Layer layer = drawnLayer(1000, 460, [](Pen& pen) {
        const auto panel = [&](double x) {
            pen.down(
                   150, 330,
                   {{0, hexColour(0x3a5ad0)}, {0.5, hexColour(0x182a80)}, {1, hexColour(0x0a1444)}})
                .box(x, 150, 320, 180);
            for (int i = 0; i <= 8; ++i)
                pen.flat(hexColour(0xa8b8e8), 0.8).box(x + i * 40.0 - 1.5, 150, 3, 180);
            for (int i = 0; i <= 3; ++i) pen.box(x, 148 + i * 60.0, 320, 3);
            pen.across(x, x + 320,
                       {{0, {1, 1, 1}, 0},
                        {0.45, {1, 1, 1}, 0.30},
                        {0.55, {1, 1, 1}, 0.05},
                        {1, {1, 1, 1}, 0}});
            pen.shape({{x + 40, 330}, {x + 170, 150}, {x + 260, 150}, {x + 130, 330}});
        };
        panel(20);
        panel(660);
        pen.flat(hexColour(0x8088a0)).box(340, 232, 320, 14);
        pen.across(400, 600,
                   {{0, hexColour(0x5a3c1c)},
                    {0.35, hexColour(0xe8b860)},
                    {0.6, hexColour(0xffe6a8)},
                    {1, hexColour(0x8a5a28)}});
        pen.roundBox(404, 150, 192, 190, 14);
        Random random(7);
        for (int i = 0; i < 40; ++i) {
            const double x = random.range(408, 580), y = random.range(156, 326);
            pen.flat(random.chance(0.5f) ? hexColour(0xfff0c8) : hexColour(0x7a4a20), 0.35);
            pen.shape({{x, y},
                       {x + random.range(4, 26), y + random.range(-8, 8)},
                       {x + random.range(-4, 14), y + random.range(6, 22)}});
        }
        pen.flat(hexColour(0x20243c)).box(404, 236, 192, 10);
        pen.across(
            420, 580,
            {{0, hexColour(0x60687c)}, {0.6, hexColour(0xf0f2fa)}, {1, hexColour(0x8890a8)}});
        pen.blob({{400, 96},
                  {440, 60},
                  {500, 46},
                  {560, 60},
                  {600, 96},
                  {560, 122},
                  {500, 132},
                  {440, 122}});
        pen.flat(hexColour(0x3a4058)).oval(500, 92, 92, 26);
        pen.flat(hexColour(0xd0d4e0))
            .line({{500, 92}, {500, 24}}, 5)
            .line({{440, 92}, {500, 28}, {560, 92}}, 3)
            .line({{500, 132}, {500, 152}}, 12);
        pen.line({{450, 340}, {430, 420}}, 4).line({{550, 340}, {570, 420}}, 4);
        pen.circle(430, 424, 6).circle(570, 424, 6).circle(500, 22, 7);
    });
    return layer;
}

Layer paintMeteor() {
    return drawnLayer(420, 200, [](Pen& pen) {
        cairo_pattern_t* tail = cairo_pattern_create_linear(20, 20, 400, 180);
        cairo_pattern_add_color_stop_rgba(tail, 0, 0.6, 0.8, 1, 0);
        cairo_pattern_add_color_stop_rgba(tail, 1, 0.95, 0.98, 1, 0.95);
        cairo_set_source(pen.cairo(), tail);
        cairo_pattern_destroy(tail);
        pen.shape({{20, 20}, {401, 177}, {398, 184}});
        pen.flat({1, 1, 1}).circle(399, 180, 4);
    });
}

constexpr PictureEntry kPictures[] = {
    {"film/nebula.png", PngColour::Rgb, paintNebula},
    {"film/stars.png", PngColour::Rgb, paintStars},
    {"film/planet.png", PngColour::Rgba, paintPlanet},
    {"film/sun-rim.png", PngColour::Rgb, paintSunRim},
    {"film/aurora.png", PngColour::Rgb, paintAurora},
    {"film/satellite.png", PngColour::Rgba, paintSatellite},
    {"film/Neon-meteor.png", PngColour::Rgba, paintMeteor},
};

}  // namespace

std::span<const PictureEntry> filmSpace() {
    return kPictures;
}

}  // namespace pictures
