// How long pictures of the screen's size take to decode, PNG against libpng alone.
#include <benchmark/benchmark.h>
#include <png.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/picture_decoder.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kWidth = 1920;
constexpr std::uint32_t kHeight = 1080;

// Slow waves with a little noise: compresses about as a photograph does.
Bytes MakePixels(std::uint32_t channels) {
    Bytes pixels;
    std::uint32_t random = 1;
    for (std::uint32_t y = 0; y < kHeight; ++y) {
        for (std::uint32_t x = 0; x < kWidth; ++x) {
            for (std::uint32_t c = 0; c < channels; ++c) {
                random = random * 1664525 + 1013904223;
                const double wave = std::sin(x * 0.011 * (c + 1)) + std::cos(y * 0.017 + c);
                pixels.push_back(static_cast<std::uint8_t>(120 + 50 * wave + (random >> 29)));
            }
        }
    }
    return pixels;
}

Bytes MakePng(std::uint32_t channels) {
    std::string folder = (std::filesystem::temp_directory_path() / "vorn-bench-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) std::abort();
    const std::string file = folder + "/picture.png";
    if (!WritePng(file, kWidth, kHeight, channels, MakePixels(channels).data())) std::abort();
    Bytes bytes = ReadWholeFile(file).value();
    std::filesystem::remove_all(folder);
    return bytes;
}

const Bytes& PngWith(std::int64_t channels) {
    static const Bytes rgb = MakePng(3);
    static const Bytes rgba = MakePng(4);
    return channels == 3 ? rgb : rgba;
}

void SetRate(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * kWidth * kHeight * state.range(0));
}

void DecodePng(benchmark::State& state) {
    const Bytes& file = PngWith(state.range(0));
    for (auto _ : state) {
        const auto picture = DecodePictureBytes(file.data(), file.size(), nullptr);
        if (!picture) std::abort();
        benchmark::DoNotOptimize(picture->pixels.get());
    }
    SetRate(state);
}
BENCHMARK(DecodePng)->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond);

struct Source {
    const Bytes* file;
    std::size_t at;
};

// The plain way: libpng as its manual tells, row by row.
void LibpngAlone(benchmark::State& state) {
    const Bytes& file = PngWith(state.range(0));
    for (auto _ : state) {
        Source source{&file, 0};
        png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        if (setjmp(png_jmpbuf(png)) != 0) std::abort();
        png_set_read_fn(png, &source, [](png_structp self, png_bytep to, std::size_t count) {
            Source& from = *static_cast<Source*>(png_get_io_ptr(self));
            std::memcpy(to, from.file->data() + from.at, count);
            from.at += count;
        });
        png_read_info(png, info);
        const std::size_t stride = png_get_rowbytes(png, info);
        auto* const pixels = static_cast<png_bytep>(std::malloc(stride * kHeight));
        for (std::size_t y = 0; y < kHeight; ++y) png_read_row(png, pixels + y * stride, nullptr);
        png_read_end(png, nullptr);
        benchmark::DoNotOptimize(pixels);
        std::free(pixels);
        png_destroy_read_struct(&png, &info, nullptr);
    }
    SetRate(state);
}
BENCHMARK(LibpngAlone)->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
