#include "core/frame_profiler.h"

#include <GL/glew.h>

#include "core/node.h"
#include "platform/window.h"

namespace {

struct Moment {
    double cpuMs = 0, gpuMs = 0;

    void add(const Moment& other) {
        cpuMs += other.cpuMs;
        gpuMs += other.gpuMs;
    }
};

double CounterMilliseconds(std::uint64_t counter) {
    return 1000.0 * static_cast<double>(counter) / static_cast<double>(PerformanceFrequency());
}

}  // namespace

FrameProfiler::FrameProfiler() = default;

FrameProfiler::~FrameProfiler() {
    if (!queries_.empty()) glDeleteQueries(static_cast<GLsizei>(queries_.size()), queries_.data());
}

void FrameProfiler::mark(const Scope& scope, bool begins) {
    if (marks_.size() == queries_.size()) {
        queries_.push_back(0);
        glGenQueries(1, &queries_.back());
    }
    const std::uint32_t query = queries_[marks_.size()];
    glQueryCounter(query, GL_TIMESTAMP);
    marks_.push_back({scope, begins, PerformanceCounter(), query});
}

void FrameProfiler::beginFrame() {
    marks_.clear();
    mark({}, true);
}

void FrameProfiler::beginNode(const Node& node) {
    mark({&node, {}}, true);
}

void FrameProfiler::endNode(const Node& node) {
    mark({&node, {}}, false);
}

void FrameProfiler::beginPass(const Node& node, std::string_view pass) {
    mark({&node, pass}, true);
}

void FrameProfiler::endPass(const Node& node, std::string_view pass) {
    mark({&node, pass}, false);
}

void FrameProfiler::endFrame() {
    mark({}, false);
    // Time between two marks belongs to the innermost scope that is open there, and that of a pass
    // to its node as well.
    std::map<Scope, Moment> own;
    std::vector<Scope> open;
    Moment start{}, before{};
    for (const Mark& mark : marks_) {
        GLuint64 nanoseconds = 0;
        glGetQueryObjectui64v(mark.query, GL_QUERY_RESULT, &nanoseconds);
        const Moment now{CounterMilliseconds(mark.counter),
                         static_cast<double>(nanoseconds) * 1e-6};
        if (open.empty()) {
            start = now;
        } else {
            const Moment spent{now.cpuMs - before.cpuMs, now.gpuMs - before.gpuMs};
            own[{open.back().node, {}}].add(spent);
            if (!open.back().pass.empty()) own[open.back()].add(spent);
        }
        before = now;
        if (mark.begins)
            open.push_back(mark.scope);
        else
            open.pop_back();
    }
    frames_.cpuMs.push_back(before.cpuMs - start.cpuMs);
    frames_.gpuMs.push_back(before.gpuMs - start.gpuMs);
    for (const auto& [scope, cost] : own) {
        if (scope.node == nullptr) continue;
        const std::string& id = scope.node->id;
        Samples& samples =
            scope.pass.empty() ? nodes_[id] : passes_[id + ": " + std::string(scope.pass)];
        samples.cpuMs.push_back(cost.cpuMs);
        samples.gpuMs.push_back(cost.gpuMs);
    }
}
