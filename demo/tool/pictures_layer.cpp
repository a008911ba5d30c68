#include "pictures_layer.h"

#include <memory>

namespace pictures {

namespace {

struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

Surface drawnSurface(cairo_format_t format, int width, int height, const Drawing& drawing) {
    Surface surface(cairo_image_surface_create(format, width, height));
    cairo_t* cairo = cairo_create(surface.get());
    cairo_set_antialias(cairo, CAIRO_ANTIALIAS_BEST);
    drawing(cairo);
    cairo_destroy(cairo);
    cairo_surface_flush(surface.get());
    return surface;
}

int wrappedIndex(int index, int count) {
    return ((index % count) + count) % count;
}

// One row blurred with a box of 2 * radius + 1.
void blurRow(const float* in, float* out, int count, int radius, Edge edge) {
    const double scale = 1.0 / (2 * radius + 1);
    const auto sample = [&](int i) {
        if (i >= 0 && i < count) return in[i];
        return edge == Edge::Wrap ? in[wrappedIndex(i, count)] : 0.0f;
    };
    double sum = 0;
    for (int i = -radius; i <= radius; ++i) sum += sample(i);
    for (int i = 0; i < count; ++i) {
        out[i] = static_cast<float>(sum * scale);
        sum += static_cast<double>(sample(i + radius + 1)) - sample(i - radius);
    }
}

void boxRows(Mask& mask, int radius, Edge edge) {
    std::vector<float> row(mask.width);
    for (int y = 0; y < mask.height; ++y) {
        float* line = &mask.at(0, y);
        blurRow(line, row.data(), mask.width, radius, edge);
        std::copy(row.begin(), row.end(), line);
    }
}

void addRow(const Mask& mask, int y, double sign, Edge edge, std::vector<double>& sums) {
    if (y < 0 || y >= mask.height) {
        if (edge == Edge::Empty) return;
        y = wrappedIndex(y, mask.height);
    }
    const float* line = &mask.values[static_cast<size_t>(y) * mask.width];
    for (int x = 0; x < mask.width; ++x) sums[x] += sign * line[x];
}

void boxColumns(Mask& mask, int radius, Edge edge) {
    const Mask source = mask;
    std::vector<double> sums(mask.width, 0.0);
    const double scale = 1.0 / (2 * radius + 1);
    for (int y = -radius; y <= radius; ++y) addRow(source, y, 1, edge, sums);
    for (int y = 0; y < mask.height; ++y) {
        float* line = &mask.at(0, y);
        for (int x = 0; x < mask.width; ++x) line[x] = static_cast<float>(sums[x] * scale);
        addRow(source, y + radius + 1, 1, edge, sums);
        addRow(source, y - radius, -1, edge, sums);
    }
}

void blurInPlace(Mask& mask, float sigma, Edge edge) {
    // Three boxes of half width r have the variance of a Gaussian when sigma^2 = r * (r + 1).
    const int radius =
        std::max(1, static_cast<int>(std::lround(std::sqrt(0.25f + sigma * sigma) - 0.5f)));
    for (int pass = 0; pass < 3; ++pass) {
        boxRows(mask, radius, edge);
        boxColumns(mask, radius, edge);
    }
}

}  // namespace

Mask Mask::drawn(int columns, int rows, const Drawing& drawing) {
    const Surface surface = drawnSurface(CAIRO_FORMAT_A8, columns, rows, drawing);
    const unsigned char* bytes = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    Mask mask(columns, rows);
    for (int y = 0; y < rows; ++y) {
        const unsigned char* line = bytes + static_cast<size_t>(y) * stride;
        for (int x = 0; x < columns; ++x) mask.at(x, y) = static_cast<float>(line[x]) / 255.0f;
    }
    return mask;
}

Mask Mask::shrunk(int factor) const {
    Mask small(width / factor, height / factor);
    const float scale = 1.0f / static_cast<float>(factor * factor);
    for (int y = 0; y < small.height * factor; ++y) {
        for (int x = 0; x < small.width * factor; ++x) {
            small.at(x / factor, y / factor) += at(x, y) * scale;
        }
    }
    return small;
}

Mask Mask::enlarged(int factor, Edge edge) const {
    Mask large(width * factor, height * factor);
    const auto index = [edge](int i, int count) {
        return edge == Edge::Wrap ? wrappedIndex(i, count) : std::clamp(i, 0, count - 1);
    };
    const float step = 1.0f / static_cast<float>(factor);
    for (int y = 0; y < large.height; ++y) {
        const float v = (static_cast<float>(y) + 0.5f) * step - 0.5f;
        const float rowFloor = std::floor(v);
        const int y0 = index(static_cast<int>(rowFloor), height);
        const int y1 = index(static_cast<int>(rowFloor) + 1, height);
        for (int x = 0; x < large.width; ++x) {
            const float u = (static_cast<float>(x) + 0.5f) * step - 0.5f;
            const float columnFloor = std::floor(u);
            const int x0 = index(static_cast<int>(columnFloor), width);
            const int x1 = index(static_cast<int>(columnFloor) + 1, width);
            const float top = mix(at(x0, y0), at(x1, y0), u - columnFloor);
            const float bottom = mix(at(x0, y1), at(x1, y1), u - columnFloor);
            large.at(x, y) = mix(top, bottom, v - rowFloor);
        }
    }
    return large;
}

Mask Mask::blurred(float sigma, Edge edge) const {
    // A wide blur leaves nothing fine, so that a part of the pixels will do.
    const int factor = sigma >= 10 ? 4 : sigma >= 4.5f ? 2 : 1;
    if (factor > 1 && width % factor == 0 && height % factor == 0) {
        Mask small = shrunk(factor);
        blurInPlace(small, sigma / static_cast<float>(factor), edge);
        return small.enlarged(factor, edge);
    }
    Mask result = *this;
    blurInPlace(result, sigma, edge);
    return result;
}

void Layer::cover(const Mask& mask, Colour colour, float opacity) {
    const float* coverage = mask.values.data();
    float* out = values.data();
    for (size_t i = 0; i < mask.values.size(); ++i, out += 4) {
        const float share = std::clamp(coverage[i] * opacity, 0.0f, 1.0f);
        out[0] = mix(out[0], colour.r, share);
        out[1] = mix(out[1], colour.g, share);
        out[2] = mix(out[2], colour.b, share);
        out[3] = mix(out[3], 1.0f, share);
    }
}

void Layer::light(const Mask& mask, Colour colour, float gain) {
    const float* coverage = mask.values.data();
    float* out = values.data();
    for (size_t i = 0; i < mask.values.size(); ++i, out += 4) {
        const float amount = std::max(0.0f, coverage[i] * gain);
        out[0] += colour.r * amount;
        out[1] += colour.g * amount;
        out[2] += colour.b * amount;
        out[3] = std::min(1.0f, out[3] + amount);
    }
}

void Layer::cover(const Layer& above, float opacity) {
    for (size_t i = 0; i < values.size(); i += 4) {
        const float* in = &above.values[i];
        const float keep = 1 - in[3] * opacity;
        for (size_t channel = 0; channel < 4; ++channel) {
            values[i + channel] = values[i + channel] * keep + in[channel] * opacity;
        }
    }
}

void Layer::draw(const Drawing& drawing) {
    const Surface surface = drawnSurface(CAIRO_FORMAT_ARGB32, width, height, drawing);
    const unsigned char* bytes = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (int y = 0; y < height; ++y) {
        const auto* line =
            reinterpret_cast<const uint32_t*>(bytes + static_cast<size_t>(y) * stride);
        for (int x = 0; x < width; ++x) {
            const uint32_t argb = line[x];
            if (argb == 0) continue;
            float* out = pixel(x, y);
            const float keep = 1 - static_cast<float>(argb >> 24) / 255.0f;
            const Colour colour = hexColour(argb & 0xffffff);
            out[0] = out[0] * keep + colour.r;
            out[1] = out[1] * keep + colour.g;
            out[2] = out[2] * keep + colour.b;
            out[3] = out[3] * keep + (1 - keep);
        }
    }
}

void Layer::spot(float x, float y, float sigma, Colour colour, float gain) {
    const int reach = static_cast<int>(std::ceil(sigma * 3.5f));
    const int centreX = static_cast<int>(x), centreY = static_cast<int>(y);
    for (int row = std::max(0, centreY - reach); row <= std::min(height - 1, centreY + reach);
         ++row) {
        for (int column = std::max(0, centreX - reach);
             column <= std::min(width - 1, centreX + reach); ++column) {
            const float dx = static_cast<float>(column) + 0.5f - x;
            const float dy = static_cast<float>(row) + 0.5f - y;
            const float amount = gain * std::exp(-(dx * dx + dy * dy) / (2 * sigma * sigma));
            float* out = pixel(column, row);
            out[0] += colour.r * amount;
            out[1] += colour.g * amount;
            out[2] += colour.b * amount;
            out[3] = std::min(1.0f, out[3] + amount);
        }
    }
}

void neon(Layer& layer, const Mask& tube, Colour colour, float reach, float gain) {
    layer.light(tube.blurred(reach * 6), colour, gain * 0.9f);
    layer.light(tube.blurred(reach * 2), colour, gain * 0.55f);
    layer.light(tube.blurred(reach * 0.7f), colour, gain * 0.6f);
    layer.cover(tube, mix(colour, {1, 1, 1}, 0.78f));
}

}  // namespace pictures
