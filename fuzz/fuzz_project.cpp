// Any bytes as a project file, read into a scene of nodes without OpenGL, which then runs, is
// edited and goes away: no fault, no hang, and every link and track leads to something that lives.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>

#include "core/engine.h"
#include "core/image_node.h"
#include "core/image_node_sequence.h"
#include "core/image_node_time_switch.h"
#include "core/project_reader.h"
#include "core/transform3d_node_time_switch.h"
#include "platform/debug_output.h"

namespace {

// A value of every class, and ports.
class AnyNode : public ImageNode {
  public:
    AnyNode(Engine* owner, const std::string& nodeId) : ImageNode(owner, nodeId) {
        setInputCount(3);
        engine->declareBool(this, "B", flag_, true);
        engine->declareInt(this, "I", number_, 1, {"a", "b"});
        engine->declareFloat(this, "F", size_, 0, 1, 2, 0.5f, true);
        engine->declareVec2(this, "V", place_, {1, 2}, true);
        engine->declareVec4(this, "C", colour_, {1, 2, 3, 4});
        engine->declareString(this, "S", text_, "s");
        engine->declareVec3(this, "Translate", axis_, 0, 1, 2, {1, 2, 3});
    }
    bool canConnect(int, const Node* source) const override { return isImageSource(source); }
    bool process() override { return true; }

  private:
    bool flag_ = false;
    std::int32_t number_ = 0;
    float size_ = 0, place_[2] = {}, colour_[4] = {}, axis_[3] = {};
    std::string text_;
};

class AnyOutput : public OutputNode {
  public:
    AnyOutput(Engine* owner, const std::string& nodeId) : OutputNode(owner, nodeId) {
        setInputCount(1);
    }
    bool canConnect(int, const Node* source) const override {
        return ImageNode::isImageSource(source);
    }
    bool process() override { return true; }
    void present() override {}
};

class AnyCamera : public Transform3DNode {
  public:
    using Transform3DNode::Transform3DNode;
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override { return true; }
};

template <typename T>
std::unique_ptr<Node> Make(Engine& engine, const std::string& id) {
    return std::make_unique<T>(&engine, id);
}

void Check(bool holds) {
    if (!holds) std::abort();
}

void CheckLinks(const Engine& engine) {
    std::set<const Node*> living;
    for (const auto& [id, node] : engine.nodes) {
        if (node) living.insert(node.get());
    }
    for (const Node* node : living) {
        for (const Node* input : node->inputs) Check(input == nullptr || living.contains(input));
        for (const Node* consumer : node->consumers) Check(living.contains(consumer));
    }
    for (const auto& [node, list] : engine.values) Check(living.contains(node));
    for (const KeyframeTrack* track : engine.allTracks()) {
        Check(track->owner == nullptr ? track->target == nullptr : living.contains(track->owner));
    }
}

void Run(Engine& engine) {
    for (const float time : {0.0f, 1.0f, 1.5f, 0.25f, 1e9f}) engine.update(time);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const DebugCapture silence;
    Engine engine({{"Node", &Make<AnyNode>},
                   {"Output", &Make<AnyOutput>},
                   {"Camera", &Make<AnyCamera>},
                   {"Switch", &Make<ImageNode_TimeSwitch>},
                   {"Camera Switch", &Make<Transform3DNode_TimeSwitch>},
                   {"Sequencer", &Make<ImageNode_Sequence>}},
                  nullptr);
    // Twice, the second time into the scene of the first, under another name.
    for (const char* prefix : {"", "p"}) {
        ProjectReader reader(engine, {bytes, size}, prefix);
        if (!reader.readMagic()) return 0;
        reader.readSections();
        engine.refreshNodes();
        CheckLinks(engine);
        Run(engine);
    }
    std::vector<std::string> ids;
    for (const auto& [id, node] : engine.nodes) ids.push_back(id);
    for (std::size_t i = 0; i < ids.size(); i += 2) engine.deleteNode(ids[i]);
    CheckLinks(engine);
    Run(engine);
    return 0;
}
