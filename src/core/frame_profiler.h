// What each node of a frame costs: processor time, and GPU time where the driver has timer queries,
// of the node alone, without the inputs that it pulls; and what each named pass of a node costs.
// The engine and NodePass call it when one is installed; without one a frame pays nothing. Main
// thread, with the OpenGL context.
#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
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
    // A part of the node's work; `pass` is a literal. Passes of one name in a frame are added up.
    void beginPass(const Node& node, std::string_view pass);
    void endPass(const Node& node, std::string_view pass);
    // Waits for the GPU and files the frame's figures.
    void endFrame();

    struct Samples {
        std::vector<double> cpuMs, gpuMs;  // one entry for each frame in which it ran
    };
    const std::map<std::string, Samples>& nodes() const { return nodes_; }    // by id
    const std::map<std::string, Samples>& passes() const { return passes_; }  // by "id: pass"
    const Samples& frames() const { return frames_; }

  private:
    // What time is filed under.
    struct Scope {
        const Node* node;       // null: the frame
        std::string_view pass;  // empty: outside of passes
        auto operator<=>(const Scope&) const = default;
    };
    struct Mark {
        Scope scope;
        bool begins;
        std::uint64_t counter;
        std::uint32_t query;
    };
    void mark(const Scope& scope, bool begins);

    std::vector<Mark> marks_;
    std::vector<std::uint32_t> queries_;
    std::map<std::string, Samples> nodes_, passes_;
    Samples frames_;
};
