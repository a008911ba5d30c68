#include "pictures_png.h"

#include <png.h>

#include <csetjmp>
#include <fstream>

#include "pictures_noise.h"

namespace pictures {

namespace {

constexpr int kCompressionLevel = 3;

// Light past full in one channel spills into the others, so that glows end in white, not in a flat
// hue.
Colour spilled(Colour light) {
    constexpr float kSpill = 0.4f;
    const auto excess = [](float value) { return std::max(0.0f, value - 1); };
    const float spill = kSpill * (excess(light.r) + excess(light.g) + excess(light.b));
    return {light.r + spill, light.g + spill, light.b + spill};
}

// `threshold` below 1: exact levels stay as they are, all others take the level above as often as
// near.
unsigned char level(float value, float threshold) {
    return static_cast<unsigned char>(
        std::min(255.0f, std::clamp(value, 0.0f, 1.0f) * 255 + threshold));
}

// The mean colour of all paint: what clear pixels hold, so that filtering at an edge draws no dark
// rim.
Colour meanPaint(const Layer& layer) {
    double sums[4] = {0, 0, 0, 1e-6};
    for (size_t i = 0; i < layer.values.size(); ++i) sums[i & 3] += layer.values[i];
    return {static_cast<float>(sums[0] / sums[3]), static_cast<float>(sums[1] / sums[3]),
            static_cast<float>(sums[2] / sums[3])};
}

std::vector<unsigned char> levels(const Layer& layer, PngColour colour) {
    std::vector<unsigned char> bytes;
    bytes.reserve(layer.values.size());
    const Colour clear = meanPaint(layer);
    for (int y = 0; y < layer.height; ++y) {
        for (int x = 0; x < layer.width; ++x) {
            const float* in = layer.pixel(x, y);
            const uint32_t hash = hashPoint(x, y, 77);
            const bool straight = colour == PngColour::Rgba;
            const float scale = straight && in[3] > 0 ? 1 / in[3] : 1;
            const bool empty = straight && in[3] < 1.0f / 1024;
            const Colour paint =
                spilled(empty ? clear : Colour{in[0] * scale, in[1] * scale, in[2] * scale});
            // Clear pixels show no bands; all alike, they take no room in the file.
            const auto threshold = [hash, empty](int shift) {
                return empty ? 0.5f : (static_cast<float>(hash >> shift & 255) + 0.5f) / 256.0f;
            };
            bytes.push_back(level(paint.r, threshold(0)));
            bytes.push_back(level(paint.g, threshold(8)));
            bytes.push_back(level(paint.b, threshold(16)));
            if (straight) bytes.push_back(empty ? 0 : level(in[3], threshold(24)));
        }
    }
    return bytes;
}

void appendBytes(png_structp png, png_bytep data, png_size_t count) {
    auto* file = static_cast<std::vector<unsigned char>*>(png_get_io_ptr(png));
    file->insert(file->end(), data, data + count);
}

// libpng leaves this function by a jump on failure: nothing with a destructor is made in it.
bool encode(png_structp png, png_infop info, const unsigned char* bytes, int width, int height,
            bool straight, std::vector<unsigned char>* file) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_set_write_fn(png, file, appendBytes, nullptr);
    png_set_IHDR(png, info, width, height, 8, straight ? PNG_COLOR_TYPE_RGBA : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, kCompressionLevel);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
    png_write_info(png, info);
    const size_t stride = static_cast<size_t>(width) * (straight ? 4 : 3);
    for (int y = 0; y < height; ++y) png_write_row(png, bytes + y * stride);
    png_write_end(png, info);
    return true;
}

}  // namespace

bool writePng(const std::filesystem::path& path, const Layer& layer, PngColour colour,
              std::string& error) {
    const std::vector<unsigned char> bytes = levels(layer, colour);
    std::vector<unsigned char> file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    const bool encoded = info && encode(png, info, bytes.data(), layer.width, layer.height,
                                        colour == PngColour::Rgba, &file);
    png_destroy_write_struct(&png, &info);
    if (!encoded) {
        error = path.string() + ": could not be made into a PNG";
        return false;
    }
    std::ofstream stream(path, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(file.data()),
                 static_cast<std::streamsize>(file.size()));
    stream.close();
    if (stream.fail()) error = path.string() + ": could not be written";
    return !stream.fail();
}

}  // namespace pictures
