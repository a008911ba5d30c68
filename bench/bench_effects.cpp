// How long the effects take, each beside the plain way of doing it: the directional blur with every
// tap and with those that can touch the picture, a rebuild of random dots, and a frame of the
// hologram. The GPU's work is waited for; "CPU" is the time of all threads, which on a software
// renderer is the work itself.
#include <GL/glew.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/engine.h"
#include "gpu/gl_framebuffer.h"
#include "image/directional_blur.h"
#include "image/image_node_holo_ball.h"
#include "image/image_node_random_dots.h"
#include "platform/window.h"

namespace {

void NeedContext() {
    static std::string reason;
    static const std::unique_ptr<Window> window = MakeWindow(WindowKind::Offscreen, reason);
    if (window == nullptr) std::abort();
}

std::vector<float> PixelsOf(const GL_FrameBuffer& target) {
    std::vector<float> pixels(static_cast<std::size_t>(target.width * target.height) * 4);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, target.framebuffer);
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    glFinish();
    glReadPixels(0, 0, target.width, target.height, GL_RGBA, GL_FLOAT, pixels.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    return pixels;
}

// A full frame of noise, blurred at half size.
struct Blurred {
    Blurred() {
        std::vector<float> noise(static_cast<std::size_t>(kFrameWidth * kFrameHeight) * 4);
        unsigned state = 1;
        for (float& value : noise) {
            state = state * 1664525u + 1013904223u;
            value = static_cast<float>(state >> 22) / 256;
        }
        source->BindTexture(0, GL_TEXTURE0);
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, kFrameWidth, kFrameHeight, GL_RGBA, GL_FLOAT,
                        noise.data());
        source->UnbindTextures(GL_TEXTURE0);
    }
    void fill(std::int64_t length, bool bound, bool across) {
        blur.boundTaps = bound;
        const Vec2 direction = across ? Vec2{1, 0} : Vec2{0, 1};
        blur.fill(*target, {source.get()}, {},
                  {{0.000520833f, 0.000925926f}, direction, static_cast<float>(length), 0});
        glFinish();
    }

    std::unique_ptr<GL_FrameBuffer> source = MakeFrameTarget();
    std::unique_ptr<GL_FrameBuffer> target = std::make_unique<GL_FrameBuffer>(
        960, 540, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    DirectionalBlur blur;
};

// The mean number of taps of a pixel; one pixel tells where all take the same.
double TapsOf(Blurred& blurred, std::int64_t length, bool bound, bool across) {
    if (!bound) glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    blurred.blur.showTaps = true;
    blurred.fill(length, bound, across);
    blurred.blur.showTaps = false;
    glDisable(GL_SCISSOR_TEST);
    const std::vector<float> taps = PixelsOf(*blurred.target);
    if (!bound) return static_cast<double>(taps[0]);
    double sum = 0;
    for (std::size_t i = 0; i < taps.size(); i += 4) sum += static_cast<double>(taps[i]);
    return sum / static_cast<double>(taps.size() / 4);
}

// Arguments: length; 1 across, 0 down; 1 to leave out taps that touch nothing. The plain way comes
// first, and its picture is compared with the other one in all numbers.
void Blur(benchmark::State& state) {
    NeedContext();
    static Blurred& blurred = *new Blurred;  // goes with the context
    static std::map<std::pair<std::int64_t, bool>, std::vector<float>> plainPictures;
    const std::int64_t length = state.range(0);
    const bool across = state.range(1) != 0, bound = state.range(2) != 0;
    for (auto _ : state) blurred.fill(length, bound, across);
    std::vector<float> picture = PixelsOf(*blurred.target);
    state.counters["taps"] = TapsOf(blurred, length, bound, across);
    if (!bound) {
        plainPictures[{length, across}] = std::move(picture);
        return;
    }
    const std::vector<float>& plain = plainPictures[{length, across}];
    if (plain.empty()) return;  // filtered out
    int differing = 0;
    for (std::size_t i = 0; i < plain.size(); ++i) differing += plain[i] != picture[i];
    state.counters["differing"] = differing;
}
BENCHMARK(Blur)
    ->ArgsProduct({{10, 54, 700, 1000}, {1, 0}, {0, 1}})
    ->Iterations(1)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

// Argument: dots.
void RandomDots(benchmark::State& state) {
    NeedContext();
    Engine engine({}, nullptr);
    ImageNode_RandomDots node(&engine, "dots");
    node.dots = static_cast<float>(state.range(0));
    node.variance = 1;
    for (auto _ : state) {
        node.variance += 0.001f;
        node.process();
        glFinish();
    }
}
BENCHMARK(RandomDots)
    ->Arg(1000)
    ->Arg(50000)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

// Arguments: preset, 0 for the free orbit; 1 for the small slices; 1 to leave out what is not seen.
void HoloBall(benchmark::State& state) {
    NeedContext();
    Engine engine({}, nullptr);
    engine.time = 3;
    ImageNode_HoloBall node(&engine, "holo");
    if (state.range(0) > 0) {
        node.anim[state.range(0) - 1] = 1;
    } else {
        node.metaballFX = 1;
    }
    node.resize = static_cast<float>(state.range(1));
    node.skipUnseen = state.range(2) != 0;
    for (auto _ : state) {
        node.process();
        glFinish();
    }
}
BENCHMARK(HoloBall)
    ->ArgsProduct({{0, 1, 4}, {0, 1}, {0, 1}})
    ->Iterations(2)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
