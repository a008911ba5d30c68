// The engine without any node's own work: running the graph, playing tracks beside the plain scan
// over all keys, and loading a large project.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>

#include "core/engine.h"
#include "core/image_node.h"
#include "core/project_reader.h"
#include "platform/files.h"

namespace {

constexpr int kValues = 10;

// A node with ten floats that does nothing.
class BareNode : public ImageNode {
  public:
    BareNode(Engine* owner, const std::string& nodeId) : ImageNode(owner, nodeId) {
        setInputCount(2);
        for (std::size_t i = 0; i < kValues; ++i) {
            engine->declareFloat(this, "Value" + std::to_string(i), floats[i], 0, 1, 2, 0, true);
        }
    }
    bool canConnect(int, const Node* source) const override { return isImageSource(source); }
    bool process() override { return true; }

    float floats[kValues] = {};
};

class BareOutput : public OutputNode {
  public:
    BareOutput(Engine* owner, const std::string& nodeId) : OutputNode(owner, nodeId) {
        setInputCount(1);
    }
    bool canConnect(int, const Node* source) const override {
        return ImageNode::isImageSource(source);
    }
    bool process() override { return true; }
    void present() override {}
};

template <typename T>
std::unique_ptr<Node> Make(Engine& engine, const std::string& id) {
    return std::make_unique<T>(&engine, id);
}

std::vector<NodeType> Types() {
    return {{"Node", &Make<BareNode>}, {"Output", &Make<BareOutput>}};
}

std::string Id(int i) {
    return "Node" + std::to_string(i);
}

// Nodes in ten chains that meet in a last one.
void MakeGraph(Engine& engine, int count) {
    engine.createNode("Out", "Output");
    for (int i = 0; i < count; ++i) {
        engine.createNode(Id(i), "Node");
        if (i >= 10) engine.connect(Id(i - 10), Id(i), 0);
        if (i % 10 != 0) engine.connect(Id(i - 1), Id(i), 1);
    }
    engine.connect(Id(count - 1), "Out", 0);
}

// One track for each of the first `trackCount` nodes, with keys spread over 240 seconds.
void MakeTracks(Engine& engine, int trackCount, int keyCount) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> value(-1, 1);
    for (int i = 0; i < trackCount; ++i) {
        engine.addAnimation(Id(i), "Value0");
        std::vector<Keyframe> keys;
        for (int k = 0; k < keyCount; ++k) {
            const float time =
                (static_cast<float>(k) + value(random) * 0.4f) * 240 / static_cast<float>(keyCount);
            keys.push_back({value(random), time, static_cast<std::int32_t>(random() % 4)});
        }
        engine.tracks.find(Id(i))->front()->setKeys(std::move(keys));
    }
}

void UpdateGraphOf1000Nodes(benchmark::State& state) {
    Engine engine(Types(), nullptr);
    MakeGraph(engine, 1000);
    float time = 0;
    for (auto _ : state) engine.update(time += 1.0f / 60);
}
BENCHMARK(UpdateGraphOf1000Nodes)->Unit(benchmark::kMicrosecond);

constexpr int kTracks = 1000;
constexpr int kKeys = 1000;

void PlayTracks(benchmark::State& state) {
    Engine engine(Types(), nullptr);
    MakeGraph(engine, kTracks);
    MakeTracks(engine, kTracks, kKeys);
    engine.time = 0;
    for (auto _ : state) {
        engine.time = engine.time > 239 ? 0 : engine.time + 1.0f / 60;
        engine.updateAnimation();
    }
}
BENCHMARK(PlayTracks)->Unit(benchmark::kMicrosecond);

std::vector<float> RandomTimes() {
    std::mt19937 random(2);
    std::uniform_real_distribution<float> time(0, 240);
    std::vector<float> times(1024);
    for (float& t : times) t = time(random);
    return times;
}

void SeekInTracks(benchmark::State& state) {
    Engine engine(Types(), nullptr);
    MakeGraph(engine, kTracks);
    MakeTracks(engine, kTracks, kKeys);
    const std::vector<float> times = RandomTimes();
    std::size_t i = 0;
    for (auto _ : state) {
        engine.time = times[i++ % times.size()];
        engine.updateAnimation();
    }
}
BENCHMARK(SeekInTracks)->Unit(benchmark::kMicrosecond);

// What both would cost without the player.
void ScanTracksPlainly(benchmark::State& state) {
    Engine engine(Types(), nullptr);
    MakeGraph(engine, kTracks);
    MakeTracks(engine, kTracks, kKeys);
    const std::vector<KeyframeTrack*> tracks = engine.allTracks();
    const std::vector<float> times = RandomTimes();
    std::size_t i = 0;
    for (auto _ : state) {
        const float time = times[i++ % times.size()];
        for (KeyframeTrack* track : tracks) {
            if (const auto value = track->valueAt(time)) *track->target = *value;
        }
    }
}
BENCHMARK(ScanTracksPlainly)->Unit(benchmark::kMicrosecond);

// The first frame after an edit of any key.
void CompileTracks(benchmark::State& state) {
    Engine engine(Types(), nullptr);
    MakeGraph(engine, kTracks);
    MakeTracks(engine, kTracks, kKeys);
    KeyframeTrack& track = *engine.tracks.find(Id(0))->front();
    for (auto _ : state) {
        track.setKeyMode(0, 1);
        engine.updateAnimation();
    }
}
BENCHMARK(CompileTracks)->Unit(benchmark::kMillisecond);

// 10,000 nodes with 10 values and one track each.
std::vector<std::uint8_t> LargeProject() {
    const auto path = std::filesystem::temp_directory_path() / "vorn_bench_core.vorn";
    Engine engine(Types(), nullptr);
    MakeGraph(engine, 10000);
    MakeTracks(engine, 10000, 10);
    engine.save(path.string());
    const auto bytes = ReadWholeFile(path.string());
    std::filesystem::remove(path);
    return bytes.value_or(std::vector<std::uint8_t>());
}

void LoadProjectOf10000Nodes(benchmark::State& state) {
    const std::vector<std::uint8_t> bytes = LargeProject();
    for (auto _ : state) {
        Engine engine(Types(), nullptr);
        ProjectReader reader(engine, bytes, "");
        reader.readMagic();
        reader.readSections();
        engine.refreshNodes();
        if (engine.allTracks().size() != 10000) state.SkipWithError("the project is not whole");
        state.PauseTiming();
        engine.clearScene();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size() * state.iterations()));
}
BENCHMARK(LoadProjectOf10000Nodes)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
