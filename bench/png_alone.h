// Pictures of the screen's size for measuring, and the plain way to decode them: libpng as its
// manual tells, row by row.
#pragma once

#include <png.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/picture_decoder.h"

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kWidth = 1920;
constexpr std::uint32_t kHeight = 1080;

// A folder of its own, gone with the program's end of use.
class BenchFolder {
  public:
    BenchFolder() {
        path_ = (std::filesystem::temp_directory_path() / "vorn-bench-XXXXXX").string();
        if (mkdtemp(path_.data()) == nullptr) std::abort();
    }
    ~BenchFolder() { std::filesystem::remove_all(path_); }
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// Slow waves with a little noise: compresses about as a photograph does. `alpha`: of all pixels, or
// -1 for waves there too.
inline Bytes MakePixels(std::uint32_t channels, int alpha = -1) {
    Bytes pixels;
    std::uint32_t random = 1;
    for (std::uint32_t y = 0; y < kHeight; ++y) {
        for (std::uint32_t x = 0; x < kWidth; ++x) {
            for (std::uint32_t c = 0; c < channels; ++c) {
                random = random * 1664525 + 1013904223;
                const double wave = std::sin(x * 0.011 * (c + 1)) + std::cos(y * 0.017 + c);
                const auto value = static_cast<std::uint8_t>(120 + 50 * wave + (random >> 29));
                pixels.push_back(c == 3 && alpha >= 0 ? static_cast<std::uint8_t>(alpha) : value);
            }
        }
    }
    return pixels;
}

inline Bytes MakePng(std::uint32_t channels) {
    const BenchFolder folder;
    const std::string file = folder.path() + "/picture.png";
    if (!WritePng(file, kWidth, kHeight, channels, MakePixels(channels).data())) std::abort();
    return ReadWholeFile(file).value();
}

struct PngSource {
    const Bytes* file;
    std::size_t at;
};

inline std::unique_ptr<std::uint8_t[]> DecodeWithLibpng(const Bytes& file) {
    PngSource source{&file, 0};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png)) != 0) std::abort();
    png_set_read_fn(png, &source, [](png_structp self, png_bytep to, std::size_t count) {
        PngSource& from = *static_cast<PngSource*>(png_get_io_ptr(self));
        std::memcpy(to, from.file->data() + from.at, count);
        from.at += count;
    });
    png_read_info(png, info);
    const std::size_t stride = png_get_rowbytes(png, info);
    std::unique_ptr<std::uint8_t[]> pixels(new std::uint8_t[stride * kHeight]);
    for (std::size_t y = 0; y < kHeight; ++y) png_read_row(png, pixels.get() + y * stride, nullptr);
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return pixels;
}
