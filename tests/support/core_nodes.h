// Nodes without OpenGL, an engine made of them, and a sound system that only takes notes: for tests
// of the core.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "core/engine.h"
#include "core/image_node.h"
#include "core/transform3d_node.h"

// What ran, in order: "process A", "present Out". One list for the whole test program, since node
// factories are plain functions; TestEngine empties it.
inline std::vector<std::string>& RunLog() {
    static std::vector<std::string> log;
    return log;
}

// A picture without textures.
class FakeImage : public GL_Image {
  public:
    FakeImage() : GL_Image(1, 1, 0) {}
};

// An image node with three ports and a value of every class; it counts its runs. Its product is a
// number: one more than the product of the node on port 0.
class TestNode : public ImageNode {
  public:
    static constexpr int kPorts = 3;
    static constexpr std::size_t kValues = 15;

    TestNode(Engine* owner, const std::string& nodeId) : ImageNode(owner, nodeId) {
        setInputCount(kPorts);
        engine->declareBool(this, "On", on, true);
        engine->declareInt(this, "Mode", mode, 2, {"a", "b", "c"});
        engine->declareFloat(this, "Size", size, -1, 5, 2, 1.5f, true);
        engine->declareFloat(this, "Size2", size2, 0, 1, 2, 0.5f, true);
        engine->declareFloat(this, "Frozen", frozen, 0, 1, 2, 0.25f, false);
        engine->declareVec2(this, "Place", place, {0.125f, 0.25f}, true);
        engine->declareVec4(this, "Tint", tint, {0.1f, 0.2f, 0.3f, 0.4f});
        engine->declareString(this, "Text", text, "none");
        engine->declareVec3(this, "Translate", translate, -10, 10, 2, {1, 2, 3});
        engine->declareVec3(this, "Center", center, -10, 10, 2, {4, 5, 6});
        engine->declareFloat(this, "Alpha.x", dotted, 0, 1, 2, 0, true);
    }

    bool canConnect(int, const Node* source) const override { return isImageSource(source); }
    bool process() override {
        ++processed;
        sizeAtProcess = size;
        const auto* source = dynamic_cast<const TestNode*>(imageInput(0));
        seen = source == nullptr ? 0 : source->product;
        RunLog().push_back("process " + id);
        return processResult;
    }
    bool postProcess() override {
        ++postProcessed;
        product = seen + 1;
        RunLog().push_back("postProcess " + id);
        return true;
    }

    bool on = false;
    std::int32_t mode = 0;
    float size = 0, size2 = 0, frozen = 0, dotted = 0;
    float place[2] = {}, tint[4] = {}, translate[3] = {}, center[3] = {};
    std::string text;
    int processed = 0, postProcessed = 0;
    int seen = 0, product = 0;
    float sizeAtProcess = 0;
    bool processResult = true;
};

class TestCamera : public Transform3DNode {
  public:
    TestCamera(Engine* owner, const std::string& nodeId) : Transform3DNode(owner, nodeId) {}
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override {
        ++processed;
        return true;
    }
    int processed = 0;
};

class TestOutput : public OutputNode {
  public:
    TestOutput(Engine* owner, const std::string& nodeId) : OutputNode(owner, nodeId) {
        setInputCount(1);
    }
    bool canConnect(int, const Node* source) const override {
        return ImageNode::isImageSource(source);
    }
    bool process() override {
        RunLog().push_back("process " + id);
        return true;
    }
    void present() override { RunLog().push_back("present " + id); }
};

// Takes notes of what the music player asks for.
class FakeSoundSystem : public SoundSystem {
  public:
    struct Notes {
        std::vector<std::string> calls;
        int updates = 0;
    };
    explicit FakeSoundSystem(Notes& notes) : notes_(notes) {}

    void load(std::string_view name) override { note("load " + std::string(name)); }
    void unload() override { note("unload"); }
    bool loaded() const override { return true; }
    bool loading() const override { return false; }
    void play() override { note("play"); }
    void pause() override { note("pause"); }
    bool playing() const override { return false; }
    void setPositionMilliseconds(std::uint32_t positionMs) override {
        note("position " + std::to_string(positionMs));
    }
    std::uint32_t positionMilliseconds() const override { return 0; }
    void update() override {
        ++notes_.updates;
        RunLog().push_back("sound update");
    }

  private:
    void note(std::string call) {
        RunLog().push_back("sound " + call);
        notes_.calls.push_back(std::move(call));
    }
    Notes& notes_;
};

template <typename T>
std::unique_ptr<Node> MakeTestNode(Engine& engine, const std::string& id) {
    return std::make_unique<T>(&engine, id);
}

inline std::vector<NodeType> TestNodeTypes() {
    return {{"Node", &MakeTestNode<TestNode>},
            {"Camera", &MakeTestNode<TestCamera>},
            {"Output", &MakeTestNode<TestOutput>}};
}

class TestEngine : public Engine {
  public:
    explicit TestEngine(std::unique_ptr<SoundSystem> sound = nullptr)
        : Engine(TestNodeTypes(), std::move(sound)) {
        RunLog().clear();
    }

    TestNode& makeNode(const std::string& id) {
        createNode(id, "Node");
        return node(id);
    }
    TestOutput& makeOutput(const std::string& id) {
        createNode(id, "Output");
        return dynamic_cast<TestOutput&>(*findNode(id));
    }
    TestNode& node(const std::string& id) const { return dynamic_cast<TestNode&>(*findNode(id)); }
    KeyframeTrack& track(const std::string& id, std::size_t index = 0) {
        return *tracks.find(id)->at(index);
    }
};

inline int CountOf(const std::vector<std::string>& list, const std::string& entry) {
    return static_cast<int>(std::count(list.begin(), list.end(), entry));
}
