#include "pictures_film.h"

#include "pictures_letters.h"

namespace pictures {

Layer drawnLayer(int width, int height, const std::function<void(Pen&)>& drawing) {
    Layer layer(width, height);
    layer.draw([&](cairo_t* cairo) {
        Pen pen(cairo);
        drawing(pen);
    });
    return layer;
}

Mask drawnMask(int width, int height, const std::function<void(Pen&)>& drawing) {
    return Mask::drawn(width, height, [&](cairo_t* cairo) {
        Pen pen(cairo);
        drawing(pen);
    });
}

Layer softened(const Layer& sharp, float sigma) {
    Layer soft(sharp.width, sharp.height);
    Mask plane(sharp.width, sharp.height);
    for (size_t channel = 0; channel < 4; ++channel) {
        for (size_t i = 0; i < plane.values.size(); ++i)
            plane.values[i] = sharp.values[i * 4 + channel];
        const Mask blurred = plane.blurred(sigma);
        for (size_t i = 0; i < plane.values.size(); ++i)
            soft.values[i * 4 + channel] = blurred.values[i];
    }
    return soft;
}

Layer paintedSky(int width, int height, std::span<const Stop> stops,
                 std::span<const SkyLight> lights) {
    Layer layer(width, height);
    layer.fill([&](int x, int y) {
        Colour colour = gradient(stops, static_cast<float>(y) / static_cast<float>(height));
        for (const SkyLight& light : lights) {
            const float dx = (static_cast<float>(x) - light.x) / light.radius;
            const float dy = (static_cast<float>(y) - light.y) / light.radius;
            const float amount = light.gain * std::exp(-std::sqrt(dx * dx + dy * dy) * 1.1f);
            colour = colour + light.colour * amount;
        }
        return colour;
    });
    return layer;
}

void addClouds(Layer& layer, const CloudLook& look) {
    const auto width = static_cast<float>(layer.width), height = static_cast<float>(layer.height);
    // Clouds are soft: a quarter of the points, with even steps between them.
    constexpr int kStep = 4;
    Mask heap(layer.width / kStep, layer.height / kStep), shine(heap.width, heap.height);
    for (int row = 0; row < heap.height; ++row) {
        for (int column = 0; column < heap.width; ++column) {
            const auto x = static_cast<float>(column * kStep), y = static_cast<float>(row * kStep);
            const float u = x / look.scale, v = y / look.scale * 2.3f;
            const float swirl = fractalNoise(u * 0.9f, v * 0.9f, 2, look.seed + 40) * 0.45f;
            const float thick = fractalNoise(u + swirl, v, 5, look.seed);
            const float above = fractalNoise(u + swirl, v - 0.16f, 3, look.seed);
            const float sideX = std::min(x, width - x) / (width * 0.16f);
            const float sideY = std::min(y, height - y) / (height * 0.30f);
            const float inside = smoothstep(0, 1, sideX) * smoothstep(0, 1, sideY);
            const float density = thick + look.cover - 0.5f - (1 - inside) * 0.55f;
            heap.at(column, row) = smoothstep(0.0f, 0.34f, density) * look.opacity * inside;
            shine.at(column, row) = smoothstep(-0.12f, 0.30f, thick - above);
        }
    }
    const Mask light = shine.enlarged(kStep, Edge::Empty);
    layer.cover(heap.enlarged(kStep, Edge::Empty),
                [&](int x, int y) { return mix(look.shaded, look.lit, light.at(x, y)); });
}

float hillHeight(const HillLook& look, float x) {
    const float broad = fractalNoise(x / look.scale, 0.31f, 4, look.seed);
    const float fine = ridgedNoise(x / 34, 0.7f, 3, look.seed + 8) - 0.5f;
    return look.crest - look.rise * broad - look.rough * fine;
}

Mask hillMask(int width, int height, const HillLook& look) {
    Mask mask(width, height);
    for (int x = 0; x < width; ++x) {
        const float crest = hillHeight(look, static_cast<float>(x));
        for (int y = std::max(0, static_cast<int>(crest) - 1); y < height; ++y)
            mask.at(x, y) = std::clamp(static_cast<float>(y) + 1 - crest, 0.0f, 1.0f);
    }
    return mask;
}

Layer shaded(const Mask& mask, float from, float to, Colour top, Colour bottom) {
    Layer layer(mask.width, mask.height);
    layer.cover(mask, [&](int, int y) {
        return mix(top, bottom, smoothstep(from, to, static_cast<float>(y)));
    });
    return layer;
}

Layer neonSign(int width, int height, Colour colour, float tubeWidth,
               const std::function<void(Pen&)>& drawing) {
    Layer layer(width, height);
    neon(layer, drawnMask(width, height, drawing), colour, tubeWidth * 1.1f, 0.8f);
    return layer;
}

void letter(Pen& pen, std::string_view text, double x, double y, double height, double stroke) {
    const LetterStyle style{.height = height, .stroke = stroke, .tracking = 0.2};
    addText(pen.cairo(), text, x - textWidth(text, style) / 2, y, style);
    cairo_set_line_width(pen.cairo(), stroke);
    cairo_set_line_cap(pen.cairo(), CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(pen.cairo(), CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(pen.cairo());
}

void addFigure(Pen& pen, double x, double y, double height) {
    const double h = height;
    pen.oval(x, y - h * 0.925, h * 0.058, h * 0.075);
    pen.blob({{x - h * 0.025, y - h * 0.87},
              {x + h * 0.03, y - h * 0.87},
              {x + h * 0.12, y - h * 0.81},
              {x + h * 0.125, y - h * 0.6},
              {x + h * 0.11, y - h * 0.38},
              {x - h * 0.11, y - h * 0.38},
              {x - h * 0.125, y - h * 0.6},
              {x - h * 0.12, y - h * 0.81}});
    pen.shape({{x - h * 0.10, y - h * 0.42},
               {x - h * 0.015, y - h * 0.42},
               {x - h * 0.02, y},
               {x - h * 0.10, y},
               {x - h * 0.075, y - h * 0.04}});
    pen.shape({{x + h * 0.015, y - h * 0.42},
               {x + h * 0.10, y - h * 0.42},
               {x + h * 0.085, y - h * 0.04},
               {x + h * 0.11, y},
               {x + h * 0.03, y}});
}

}  // namespace pictures
