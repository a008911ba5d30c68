// The authoring screen with 2000 nodes, all of their panels open, 200 or 2000 pins and 10000
// tracks: CPU time of the calling thread for the labels and lists, for the widgets with sending
// them, and draw calls a frame; and the time that a save of 500 nodes takes.
#include <GL/glew.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/engine.h"
#include "core/image_node.h"
#include "editor/ui_engine.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_properties_column.h"
#include "platform/program_folder.h"
#include "platform/window.h"

namespace {

constexpr int kNodes = 2000, kSavedNodes = 500, kFrames = 200;

class BenchNode : public ImageNode {
  public:
    BenchNode(Engine* owner, const std::string& nodeId) : ImageNode(owner, nodeId) {
        setInputCount(2);
        engine->declareFloat(this, "Size", size, 0, 1, 2, 0.5f, true);
        // Each place has a pin on the picture.
        static int made = 0;
        if (++made % nodesForEachPin == 0)
            engine->declareVec2(this, "Place", place, {0.5f, 0.5f}, true);
        engine->declareVec4(this, "Tint", tint, {1, 1, 1, 1});
        engine->declareBool(this, "On", on, true);
    }
    bool canConnect(int, const Node* source) const override { return isImageSource(source); }
    bool process() override { return true; }

    float size = 0, place[2] = {}, tint[4] = {};
    bool on = false;
    static inline int nodesForEachPin = 10;
};

std::unique_ptr<Node> MakeBenchNode(Engine& engine, const std::string& id) {
    return std::make_unique<BenchNode>(&engine, id);
}

double ThreadCpuMilliseconds() {
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

void FillGraph(Engine& engine, int count) {
    const auto idOf = [](int i) { return "Node" + std::to_string(i); };
    for (int i = 0; i < count; ++i) {
        engine.createNode(idOf(i), "Node");
        engine.addAnimation(idOf(i), "Size");
        engine.addAnimation(idOf(i), "Tint");
        if (i >= 40) engine.connect(idOf(i - 40), idOf(i), 0);
    }
}

// The median of `kFrames` runs, milliseconds of this thread.
template <typename Work>
double MedianCost(Work work) {
    std::vector<double> costs;
    for (int i = 0; i < kFrames; ++i) {
        const double before = ThreadCpuMilliseconds();
        work();
        costs.push_back(ThreadCpuMilliseconds() - before);
    }
    std::nth_element(costs.begin(), costs.begin() + kFrames / 2, costs.end());
    return costs[kFrames / 2];
}

void MeasureDrawing(int nodesForEachPin) {
    BenchNode::nodesForEachPin = nodesForEachPin;
    Engine engine({{"Node", &MakeBenchNode}}, nullptr);
    engine.init();
    UI_Engine ui;
    ui.Init(&engine);
    FillGraph(engine, kNodes);
    ui.ShowScreen(ScreenKind::Authoring);
    for (const auto& [id, node] : engine.nodes) ui.OpenPanel(id);
    std::printf("%zu pins\n", ui.imagePanel->pins.size());
    for (const auto& [mode, name] :
         {std::pair{kLayoutNodeCanvas, "nodes"}, std::pair{kLayoutKeyTimeline, "keys"},
          std::pair{kLayoutNeither, "picture"}}) {
        ui.SetLayoutMode(mode);
        const double lists = MedianCost([&] { ui.BeginFrameUpdate(); });
        const double drawing = MedianCost([&] { ui.DrawFrame(); });
        std::printf("%-8s lists %.3f ms, drawing %.3f ms, %d draw calls\n", name, lists, drawing,
                    ui.master.drawCalls());
    }
}

void MeasureSave() {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "vorn-bench-save";
    std::filesystem::create_directories(folder);
    Engine engine({{"Node", &MakeBenchNode}}, nullptr);
    engine.init();
    engine.projectFolder = folder.string();
    UI_Engine ui;
    ui.Init(&engine);
    FillGraph(engine, kSavedNodes);
    ui.ShowScreen(ScreenKind::Authoring);
    std::vector<double> milliseconds;
    for (int i = 0; i < 9; ++i) {
        const auto before = std::chrono::steady_clock::now();
        ui.Save();
        milliseconds.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - before)
                .count());
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf("save of %d nodes: median %.1f ms, most %.1f ms\n", kSavedNodes, milliseconds[4],
                milliseconds.back());
    std::filesystem::remove_all(folder);
}

}  // namespace

int main() {
    std::string reason;
    const std::unique_ptr<Window> window = MakeWindow(WindowKind::Offscreen, reason);
    if (window == nullptr) {
        std::fprintf(stderr, "bench_screen: %s\n", reason.c_str());
        return 1;
    }
    std::filesystem::current_path(ProgramFolder() + "/..");  // of the fonts
    MeasureDrawing(10);
    MeasureDrawing(1);
    MeasureSave();
    return 0;
}
