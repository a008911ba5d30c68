// The node canvas with 2000 linked nodes: all of them on the screen at once, far away; a part of
// them at the boxes' own size; and none of them. Prints the CPU time of the calling thread for
// collecting what is drawn, that with sending it, and the draw calls a frame.
#include <GL/glew.h>
#include <benchmark/benchmark.h>
#include <time.h>

#include <cstdio>
#include <memory>
#include <string>

#include "core/engine.h"
#include "core/image_node.h"
#include "editor/ui_master.h"
#include "editor/ui_node.h"
#include "editor/ui_node_canvas.h"
#include "gpu/gl_framebuffer.h"
#include "platform/window.h"

namespace {

constexpr int kNodes = 2000;

class BenchNode : public ImageNode {
  public:
    BenchNode(Engine* owner, const std::string& nodeId) : ImageNode(owner, nodeId) {
        setInputCount(4);
    }
    bool canConnect(int, const Node* source) const override { return isImageSource(source); }
    bool process() override { return true; }
};

class BenchHost : public NodeCanvasHost {
  public:
    explicit BenchHost(Engine& engine) : engine_(engine) {}
    Engine& graph() override { return engine_; }
    void openProperties(const std::string&) override {}
    void nodeGoes(const std::string&) override {}
    void graphChanged() override {}
    void setStatus(std::string_view) override {}
    OrderedMap<std::string, Vec2>& nodePositions() override { return positions_; }
    bool folded(const std::string&) const override { return false; }
    void setFolded(const std::string&, bool) override {}
    std::string clipboardText() const override { return {}; }
    void setClipboardText(const std::string&) override {}

  private:
    Engine& engine_;
    OrderedMap<std::string, Vec2> positions_;
};

double ThreadCpuMilliseconds() {
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

// In rows of 40, each linked with two of the row above.
void FillGraph(Engine& engine, OrderedMap<std::string, Vec2>& positions) {
    const auto idOf = [](int i) { return "Node" + std::to_string(i); };
    for (int i = 0; i < kNodes; ++i) {
        engine.addNode(idOf(i), std::make_unique<BenchNode>(&engine, idOf(i)));
        positions[idOf(i)] = {static_cast<float>(i % 40) * 184 + 10,
                              static_cast<float>(i / 40) * 60 + 10};
        if (i < 40) continue;
        engine.connect(idOf(i - 40), idOf(i), 0);
        engine.connect(idOf(i - 40 + (i % 3)), idOf(i), 2);
    }
}

enum View { kEverything, kNear, kNothing };

void Frames(benchmark::State& state) {
    static std::string reason;
    static const std::unique_ptr<Window> window = MakeWindow(WindowKind::Offscreen, reason);
    if (window == nullptr) {
        state.SkipWithError(reason.c_str());
        return;
    }
    Engine engine({}, nullptr);
    BenchHost host(engine);
    FillGraph(engine, host.nodePositions());
    UI_Master master;
    master.Init();
    UI_NodeCanvas canvas(host, 0, 0, 1920, 1080);
    master.AddTopLevel(&canvas);
    canvas.rebuildBoxes();
    if (state.range(0) == kEverything) canvas.frameAll();
    if (state.range(0) == kNothing) canvas.view.shift = {100000, 0};
    const auto target = MakeFrameTarget();
    target->Bind();
    double drawing = 0, sending = 0;
    for (auto unused : state) {
        (void)unused;
        master.BeginFrame();
        const double start = ThreadCpuMilliseconds();
        canvas.Draw();
        const double drawn = ThreadCpuMilliseconds();
        master.Flush();
        sending += ThreadCpuMilliseconds() - start;
        drawing += drawn - start;
        state.PauseTiming();
        glFinish();
        state.ResumeTiming();
    }
    const auto frames = static_cast<double>(state.iterations());
    state.counters["draw_ms"] = drawing / frames;
    state.counters["with_send_ms"] = sending / frames;
    state.counters["draw_calls"] = master.drawCalls();
    state.counters["zoom"] = static_cast<double>(canvas.view.zoom);
}

BENCHMARK(Frames)->Arg(kEverything)->Arg(kNear)->Arg(kNothing)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
