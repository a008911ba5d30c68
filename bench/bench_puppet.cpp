// How long it takes to pose a puppet and to prepare its capture, and what a hand line asks of it.
#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <vector>

#include "geometry/puppet_pose.h"
#include "geometry/skeleton_capture.h"

namespace {

constexpr int kFrames = 7000;
constexpr double kFramesPerSecond = 30;

// A body of which every joint sways about its place.
std::vector<CaptureFrame> Swaying() {
    std::vector<CaptureFrame> frames(kFrames);
    for (int i = 0; i < kFrames; ++i) {
        CaptureFrame& frame = frames[static_cast<std::size_t>(i)];
        const double seconds = i / kFramesPerSecond;
        frame.timeSeconds = static_cast<float>(seconds);
        frame.known.set();
        for (int joint = 0; joint < kJointCount; ++joint) {
            frame.joints[static_cast<std::size_t>(joint)].position = {
                static_cast<float>(joint % 5 * 0.2 + 0.05 * std::sin(seconds + joint)),
                static_cast<float>(joint * 0.07), static_cast<float>(0.1 * std::cos(seconds * 2))};
        }
    }
    return frames;
}

const std::vector<CaptureFrame>& Prepared() {
    static const std::vector<CaptureFrame> frames = [] {
        auto result = Swaying();
        PrepareCapture(result, 0.9f);
        return result;
    }();
    return frames;
}

std::vector<PuppetLimb> AllLimbs() {
    std::vector<PuppetLimb> limbs;
    BindLimbs(
        "HEAD TORSO TRICENTER RIGHT_HAND LEFT_HAND RIGHT_LOWERARM LEFT_LOWERARM RIGHT_UPPERARM "
        "LEFT_UPPERARM RIGHT_UPPERLEG LEFT_UPPERLEG RIGHT_LOWERLEG LEFT_LOWERLEG RIGHT_FOOT "
        "LEFT_FOOT",
        0, limbs);
    return limbs;
}

void PosePuppet(benchmark::State& state) {
    const auto& frames = Prepared();
    auto limbs = AllLimbs();
    std::uint32_t random = 1;
    Skeleton skeleton;
    for (auto _ : state) {
        // Any time of the capture, as when an author drags the time line.
        random = random * 1664525 + 1013904223;
        const float seconds = static_cast<float>(random >> 8) * (233.0f / 16777216.0f);
        SampleCapture(frames, seconds, skeleton);
        PoseLimbs(skeleton, {}, limbs);
        benchmark::DoNotOptimize(limbs.data());
    }
}
BENCHMARK(PosePuppet)->Unit(benchmark::kMicrosecond);

// The plain way: the frames from the first on, until one is late enough.
void SearchFromTheFirstFrame(benchmark::State& state) {
    const auto& frames = Prepared();
    std::uint32_t random = 1;
    for (auto _ : state) {
        random = random * 1664525 + 1013904223;
        const float seconds = static_cast<float>(random >> 8) * (233.0f / 16777216.0f);
        std::size_t i = 0;
        while (i < frames.size() && frames[i].timeSeconds < seconds) ++i;
        benchmark::DoNotOptimize(i);
    }
}
BENCHMARK(SearchFromTheFirstFrame)->Unit(benchmark::kMicrosecond);

// As many samples of one limb as a hand line can ever take.
void SampleHandLine(benchmark::State& state) {
    const auto& frames = Prepared();
    std::vector<PuppetLimb> hand;
    BindLimbs("RIGHT_HAND", 0, hand);
    std::vector<Vec3> points;
    for (auto _ : state) {
        points.clear();
        for (int i = 1; i <= 6000; ++i) {
            Skeleton skeleton;
            SampleCapture(frames, static_cast<float>(i) * 0.01f + 100, skeleton);
            PoseLimbs(skeleton, {}, hand);
            const Mat4& m = hand[0].transform;
            points.push_back({m[12], m[13], m[14]});
        }
        benchmark::DoNotOptimize(points.data());
    }
}
BENCHMARK(SampleHandLine)->Unit(benchmark::kMillisecond);

void ParseAndPrepare(benchmark::State& state) {
    const auto bytes = CaptureBytes(Swaying());
    for (auto _ : state) {
        std::string fault;
        auto frames = ParseCapture(bytes, fault);
        PrepareCapture(frames, 0.9f);
        benchmark::DoNotOptimize(frames.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
BENCHMARK(ParseAndPrepare)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
