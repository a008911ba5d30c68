#include "core/frame_profiler.h"

#include <GL/glew.h>

#include "core/node.h"
#include "platform/window.h"

namespace {

struct Moment {
    double cpuMs, gpuMs;
};

double CounterMilliseconds(std::uint64_t counter) {
    return 1000.0 * static_cast<double>(counter) / static_cast<double>(PerformanceFrequency());
}

}  // namespace

FrameProfiler::FrameProfiler() = default;

FrameProfiler::~FrameProfiler() {
    if (!queries_.empty()) glDeleteQueries(static_cast<GLsizei>(queries_.size()), queries_.data());
}

void FrameProfiler::mark(const Node* node, bool begins) {
    if (marks_.size() == queries_.size()) {
        queries_.push_back(0);
        glGenQueries(1, &queries_.back());
    }
    const std::uint32_t query = queries_[marks_.size()];
    glQueryCounter(query, GL_TIMESTAMP);
    marks_.push_back({node, begins, PerformanceCounter(), query});
}

void FrameProfiler::beginFrame() {
    marks_.clear();
    mark(nullptr, true);
}

void FrameProfiler::beginNode(const Node& node) {
    mark(&node, true);
}

void FrameProfiler::endNode(const Node& node) {
    mark(&node, false);
}

void FrameProfiler::endFrame() {
    mark(nullptr, false);
    // Time between two marks belongs to the innermost node that is open there.
    std::map<const Node*, Moment> own;
    std::vector<const Node*> open;
    Moment start{}, before{};
    for (const Mark& mark : marks_) {
        GLuint64 nanoseconds = 0;
        glGetQueryObjectui64v(mark.query, GL_QUERY_RESULT, &nanoseconds);
        const Moment now{CounterMilliseconds(mark.counter),
                         static_cast<double>(nanoseconds) * 1e-6};
        if (open.empty()) {
            start = now;
        } else {
            Moment& total = own[open.back()];
            total.cpuMs += now.cpuMs - before.cpuMs;
            total.gpuMs += now.gpuMs - before.gpuMs;
        }
        before = now;
        if (mark.begins)
            open.push_back(mark.node);
        else
            open.pop_back();
    }
    frames_.cpuMs.push_back(before.cpuMs - start.cpuMs);
    frames_.gpuMs.push_back(before.gpuMs - start.gpuMs);
    for (const auto& [node, cost] : own) {
        if (node == nullptr) continue;
        Samples& samples = nodes_[node->id];
        samples.cpuMs.push_back(cost.cpuMs);
        samples.gpuMs.push_back(cost.gpuMs);
    }
}
