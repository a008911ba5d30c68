#include "app/benchmark_run.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <vector>

#include "app/session.h"
#include "core/frame_profiler.h"

using Json = nlohmann::ordered_json;

namespace {

constexpr double kFramesPerSecond = 60.0;

// The value below which `part` of the samples lie; nearest rank.
double Percentile(std::vector<double> samples, double part) {
    if (samples.empty()) return 0.0;
    std::sort(samples.begin(), samples.end());
    const double rank = std::ceil(part * static_cast<double>(samples.size())) - 1.0;
    return samples[static_cast<std::size_t>(std::max(rank, 0.0))];
}

Json Figures(const std::vector<double>& milliseconds) {
    return {{"median", Percentile(milliseconds, 0.5)}, {"p99", Percentile(milliseconds, 0.99)}};
}

Json SamplesInfo(const FrameProfiler::Samples& samples) {
    return {{"frames", samples.cpuMs.size()},
            {"cpuMs", Figures(samples.cpuMs)},
            {"gpuMs", Figures(samples.gpuMs)}};
}

}  // namespace

std::string RunBenchmark(Session& session, double seconds) {
    FrameProfiler profiler;
    session.engine->profiler = &profiler;
    const auto frames = static_cast<long long>(std::ceil(seconds * kFramesPerSecond));
    for (long long frame = 0; frame < frames; ++frame) {
        profiler.beginFrame();
        session.runGraph(static_cast<float>(static_cast<double>(frame) / kFramesPerSecond));
        profiler.endFrame();
    }
    session.engine->profiler = nullptr;

    Json json;
    json["renderer"] = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    json["frames"] = frames;
    json["frame"] = SamplesInfo(profiler.frames());
    json["nodes"] = Json::object();
    for (const auto& [id, samples] : profiler.nodes()) json["nodes"][id] = SamplesInfo(samples);
    json["passes"] = Json::object();
    for (const auto& [name, samples] : profiler.passes())
        json["passes"][name] = SamplesInfo(samples);
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}
