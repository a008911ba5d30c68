// What each node of a frame costs: processor time, and GPU time where the driver has timer queries,
// of the node alone, without the inputs that it pulls. The engine calls it when one is installed;
// without one a frame pays nothing. Main thread, with the OpenGL context.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

class Node;

class FrameProfiler {
  public:
    FrameProfiler();
    ~FrameProfiler();
    FrameProfiler(const FrameProfiler&) = delete;
    FrameProfiler& operator=(const FrameProfiler&) = delete;

    void beginFrame();
    void beginNode(const Node& node);
    void endNode(const Node& node);
    // Waits for the GPU and files the frame's figures.
    void endFrame();

    struct Samples {
        std::vector<double> cpuMs, gpuMs;  // one entry for each frame in which it ran
    };
    const std::map<std::string, Samples>& nodes() const { return nodes_; }  // by id
    const Samples& frames() const { return frames_; }

  private:
    struct Mark {
        const Node* node;  // null: the frame
        bool begins;
        std::uint64_t counter;
        std::uint32_t query;
    };
    void mark(const Node* node, bool begins);

    std::vector<Mark> marks_;
    std::vector<std::uint32_t> queries_;
    std::map<std::string, Samples> nodes_;
    Samples frames_;
};
