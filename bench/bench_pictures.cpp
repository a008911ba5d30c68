// How long pictures of the screen's size take to decode, PNG against libpng alone.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "platform/picture_decoder.h"
#include "png_alone.h"

namespace {

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

void LibpngAlone(benchmark::State& state) {
    const Bytes& file = PngWith(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(DecodeWithLibpng(file));
    SetRate(state);
}
BENCHMARK(LibpngAlone)->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
