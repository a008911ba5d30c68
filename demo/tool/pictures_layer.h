// The paper of the painters: Mask, one float a pixel, drawn with Cairo and blurred; and Layer, a
// float RGBA picture on which masks, light and Cairo drawings are laid. Floats keep faint gradients
// whole until they are dithered into a file. Depends on Cairo; any thread, each object on one at a
// time.
#pragma once

#include <cairo.h>

#include <functional>
#include <vector>

#include "pictures_colour.h"

namespace pictures {

using Drawing = std::function<void(cairo_t*)>;

// What lies outside a picture when it is blurred.
enum class Edge { Empty, Wrap };

class Mask {
  public:
    Mask(int columns, int rows)
        : width(columns), height(rows), values(static_cast<size_t>(columns) * rows, 0.0f) {}

    // The coverage, 0 to 1, that `drawing` leaves; whatever its colours, only alpha counts.
    static Mask drawn(int columns, int rows, const Drawing& drawing);

    float& at(int x, int y) { return values[static_cast<size_t>(y) * width + x]; }
    float at(int x, int y) const { return values[static_cast<size_t>(y) * width + x]; }

    // Near to a Gaussian blur of `sigma` pixels: three box blurs, whose cost does not grow with it.
    Mask blurred(float sigma, Edge edge = Edge::Empty) const;

    // Every pixel `factor` times as wide and high, with even steps between them.
    Mask enlarged(int factor, Edge edge) const;

    int width, height;
    std::vector<float> values;

  private:
    Mask shrunk(int factor) const;
};

class Layer {
  public:
    Layer(int columns, int rows)
        : width(columns), height(rows), values(static_cast<size_t>(columns) * rows * 4, 0.0f) {}

    float* pixel(int x, int y) { return &values[(static_cast<size_t>(y) * width + x) * 4]; }
    const float* pixel(int x, int y) const {
        return &values[(static_cast<size_t>(y) * width + x) * 4];
    }

    // Sets every pixel to colourAt(x, y), opaque.
    template <typename ColourAt>
    void fill(ColourAt colourAt);

    // Lays colourAt(x, y) over the picture where the mask is, as paint.
    template <typename ColourAt>
    void cover(const Mask& mask, ColourAt colourAt);
    void cover(const Mask& mask, Colour colour, float opacity = 1);

    // Adds light where the mask is; a clear picture becomes opaque by as much, so that lights keep
    // their hue.
    void light(const Mask& mask, Colour colour, float gain);

    // Turns the paint that is there towards colourAt(x, y) by shareAt(x, y), keeping its coverage.
    template <typename ColourAt, typename ShareAt>
    void tint(ColourAt colourAt, ShareAt shareAt);

    void cover(const Layer& above, float opacity = 1);
    void draw(const Drawing& drawing);

    // One round soft spot of light, such as a star; `sigma` in pixels.
    void spot(float x, float y, float sigma, Colour colour, float gain);

    // Colours are premultiplied by the fourth value, the coverage.
    int width, height;
    std::vector<float> values;
};

// A tube of neon along the mask: white-hot core, tight and wide glow. `reach`: sigma of the tight
// glow.
void neon(Layer& layer, const Mask& tube, Colour colour, float reach, float gain = 1);

template <typename ColourAt>
void Layer::fill(ColourAt colourAt) {
    float* out = values.data();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, out += 4) {
            const Colour colour = colourAt(x, y);
            out[0] = colour.r, out[1] = colour.g, out[2] = colour.b, out[3] = 1;
        }
    }
}

template <typename ColourAt>
void Layer::cover(const Mask& mask, ColourAt colourAt) {
    float* out = values.data();
    const float* coverage = mask.values.data();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, out += 4, ++coverage) {
            const float share = std::clamp(*coverage, 0.0f, 1.0f);
            if (share <= 0) continue;
            const Colour colour = colourAt(x, y);
            out[0] = mix(out[0], colour.r, share);
            out[1] = mix(out[1], colour.g, share);
            out[2] = mix(out[2], colour.b, share);
            out[3] = mix(out[3], 1.0f, share);
        }
    }
}

template <typename ColourAt, typename ShareAt>
void Layer::tint(ColourAt colourAt, ShareAt shareAt) {
    float* out = values.data();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, out += 4) {
            if (out[3] <= 0) continue;
            const Colour colour = colourAt(x, y) * out[3];
            const float share = shareAt(x, y);
            out[0] = mix(out[0], colour.r, share);
            out[1] = mix(out[1], colour.g, share);
            out[2] = mix(out[2], colour.b, share);
        }
    }
}

}  // namespace pictures
