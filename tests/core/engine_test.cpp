// The graph: making, linking and deleting nodes, and the order of a frame.
#include "core/engine.h"

#include <gmock/gmock.h>

#include "platform/debug_output.h"
#include "support/core_nodes.h"
#include "support/temp_folder.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EngineTest : public ::testing::Test {
  protected:
    FakeSoundSystem::Notes sound_;
    TestEngine engine_{std::make_unique<FakeSoundSystem>(sound_)};
};

template <typename Map>
std::vector<std::string> KeysOf(const Map& map) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : map) keys.push_back(key);
    return keys;
}

TEST_F(EngineTest, StartsWithTheDefaultsOfAProject) {
    const TempFolder folder;
    const WorkingFolder working(folder.path());
    EXPECT_FALSE(engine_.init()) << "there is no folder Scripts";
    EXPECT_EQ(engine_.projectName, "demo");
    EXPECT_EQ(engine_.projectFolder, "c:\\temp\\K4409\\");
    EXPECT_EQ(engine_.musicFile, ".\\data\\");
    EXPECT_EQ(engine_.dataFolder, ".\\data\\");
    EXPECT_EQ(engine_.lengthText, "240");
    EXPECT_EQ(engine_.time, -1.0f);
    EXPECT_EQ(engine_.deltaTime, 0.0f);
    EXPECT_EQ(engine_.frameCost, 0.0f);
    EXPECT_EQ(engine_.renderEnabled, 1);
    EXPECT_THAT(engine_.typeNames, ElementsAre("Node", "Camera", "Output"));
    EXPECT_THAT(engine_.scripts, IsEmpty());
    ASSERT_NE(engine_.music, nullptr);
}

TEST_F(EngineTest, FilesANodeThatItMakes) {
    ASSERT_TRUE(engine_.createNode("A1", "Node"));
    const Node* node = engine_.findNode("A1");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->id, "A1");
    EXPECT_EQ(*engine_.nodeTypes.find("A1"), "Node");
    EXPECT_EQ(*engine_.nodeIds.find(node), "A1");
    EXPECT_EQ(engine_.values.find(node)->size(), TestNode::kValues);
    EXPECT_THAT(engine_.outputs, IsEmpty());
}

TEST_F(EngineTest, ListsOutputsInTheOrderOfTheirMaking) {
    const OutputNode* second = &engine_.makeOutput("B");
    const OutputNode* first = &engine_.makeOutput("A");
    EXPECT_THAT(engine_.outputs, ElementsAre(second, first));
}

TEST_F(EngineTest, RefusesATakenId) {
    const TestNode* node = &engine_.makeNode("A1");
    EXPECT_FALSE(engine_.createNode("A1", "Camera"));
    EXPECT_EQ(engine_.findNode("A1"), node);
    EXPECT_EQ(*engine_.nodeTypes.find("A1"), "Node");
    EXPECT_FALSE(engine_.addNode("A1", std::make_unique<TestNode>(&engine_, "A1")));
    EXPECT_EQ(engine_.findNode("A1"), node);
    EXPECT_EQ(engine_.values.size(), 1u) << "the refused node's values went with it";
    EXPECT_FALSE(engine_.addNode("A2", nullptr));
}

TEST_F(EngineTest, NotesTheTypeOfANodeThatItCouldNotMake) {
    EXPECT_FALSE(engine_.createNode("X1", "Vanished"));
    EXPECT_EQ(*engine_.nodeTypes.find("X1"), "Vanished");
    EXPECT_EQ(engine_.findNode("X1"), nullptr);
    EXPECT_FALSE(engine_.createNode("X2", "node")) << "type names keep their case";
    EXPECT_TRUE(engine_.createNode("X1", "Node"));
    EXPECT_EQ(*engine_.nodeTypes.find("X1"), "Node");
}

TEST_F(EngineTest, KeepsNodesTypesAndValuesInOneOrder) {
    engine_.createNode("X1", "Vanished");
    engine_.createNode("A1", "Node");
    engine_.createNode("X1", "Node");
    EXPECT_THAT(KeysOf(engine_.nodes), ElementsAre("A1", "X1"));
    EXPECT_THAT(KeysOf(engine_.nodeTypes), ElementsAre("A1", "X1"));
    EXPECT_EQ(engine_.values.begin()->first->id, "A1");
}

TEST_F(EngineTest, PrefersABuiltInTypeToAScriptOfItsNameButTellsOfTheScript) {
    NodeScript script;
    script.name = "Camera";
    engine_.scripts.push_back(script);
    const DebugCapture debug;
    ASSERT_TRUE(engine_.createNode("C1", "Camera"));
    EXPECT_NE(dynamic_cast<TestCamera*>(engine_.findNode("C1")), nullptr);
    EXPECT_EQ(debug.text(), "Load Script from File: Camera\n");
}

TEST_F(EngineTest, LinksASourceToAFreePort) {
    TestNode& source = engine_.makeNode("A");
    TestNode& target = engine_.makeNode("B");
    EXPECT_TRUE(engine_.connect("A", "B", 1));
    EXPECT_THAT(target.inputs, ElementsAre(nullptr, &source, nullptr));
    EXPECT_THAT(source.consumers, ElementsAre(&target));
    EXPECT_TRUE(engine_.connect("A", "B", 2));
    EXPECT_THAT(source.consumers, ElementsAre(&target, &target)) << "once for each link";
}

TEST_F(EngineTest, RefusesLinksToAbsentNodesWrongKindsAndPortsPastTheCount) {
    TestNode& target = engine_.makeNode("A");
    engine_.createNode("C", "Camera");
    EXPECT_FALSE(engine_.connect("Z", "A", 0));
    EXPECT_FALSE(engine_.connect("A", "Z", 0));
    EXPECT_FALSE(engine_.connect("C", "A", 0));
    EXPECT_FALSE(engine_.connect("A", "A", TestNode::kPorts + 1));
    EXPECT_THAT(target.consumers, IsEmpty());
    EXPECT_THAT(target.inputs, ElementsAre(nullptr, nullptr, nullptr));
}

TEST_F(EngineTest, TakesAPortEqualToTheCountAsAConsumerWithoutALink) {
    TestNode& source = engine_.makeNode("A");
    TestNode& target = engine_.makeNode("B");
    EXPECT_TRUE(engine_.connect("A", "B", TestNode::kPorts));
    EXPECT_TRUE(engine_.connect("A", "B", -1));
    EXPECT_THAT(target.inputs, ElementsAre(nullptr, nullptr, nullptr));
    EXPECT_THAT(source.consumers, ElementsAre(&target, &target));
}

TEST_F(EngineTest, KeepsTheSourceOfATakenPortAndAddsAStaleConsumer) {
    TestNode& first = engine_.makeNode("A");
    TestNode& second = engine_.makeNode("B");
    TestNode& target = engine_.makeNode("C");
    engine_.connect("A", "C", 0);
    EXPECT_TRUE(engine_.connect("B", "C", 0));
    EXPECT_EQ(target.getInput(0), &first);
    EXPECT_THAT(second.consumers, ElementsAre(&target));
}

TEST_F(EngineTest, CutsOneLinkAtATime) {
    TestNode& source = engine_.makeNode("A");
    TestNode& target = engine_.makeNode("B");
    engine_.connect("A", "B", 0);
    engine_.connect("A", "B", 1);
    EXPECT_TRUE(engine_.disconnect("B", 0));
    EXPECT_EQ(target.getInput(0), nullptr);
    EXPECT_EQ(target.getInput(1), &source);
    EXPECT_THAT(source.consumers, ElementsAre(&target));
    EXPECT_FALSE(engine_.disconnect("B", 0));
    EXPECT_FALSE(engine_.disconnect("B", 7));
    EXPECT_FALSE(engine_.disconnect("Z", 0));
}

TEST_F(EngineTest, TakesADeletedNodeOutOfEverything) {
    engine_.makeNode("A");
    TestNode& source = engine_.makeNode("S");
    TestNode& consumer = engine_.makeNode("C");
    engine_.makeOutput("Out");
    engine_.connect("S", "A", 0);
    engine_.connect("S", "A", 2);
    engine_.connect("A", "C", 0);
    engine_.connect("A", "C", 2);
    engine_.addAnimation("A", "Size");
    EXPECT_TRUE(engine_.deleteNode("A"));
    EXPECT_TRUE(engine_.deleteNode("Out"));
    EXPECT_EQ(engine_.findNode("A"), nullptr);
    EXPECT_THAT(KeysOf(engine_.nodes), ElementsAre("S", "C"));
    EXPECT_THAT(KeysOf(engine_.nodeTypes), ElementsAre("S", "C"));
    EXPECT_EQ(engine_.values.size(), 2u);
    EXPECT_EQ(engine_.nodeIds.size(), 2u);
    EXPECT_THAT(engine_.outputs, IsEmpty());
    EXPECT_THAT(source.consumers, IsEmpty());
    EXPECT_THAT(consumer.inputs, ElementsAre(nullptr, nullptr, nullptr));
    ASSERT_NE(engine_.tracks.find("A"), nullptr) << "the list stays, empty";
    EXPECT_THAT(*engine_.tracks.find("A"), IsEmpty());
    engine_.update(1);
    EXPECT_FALSE(engine_.deleteNode("A"));
}

TEST_F(EngineTest, ClearsTheCounterOfATypeWithEachDeletionOfIt) {
    engine_.makeNode("A1");
    engine_.makeNode("A2");
    engine_.typeCounters["Node"] = 2;
    engine_.typeCounters["Camera"] = 5;
    engine_.deleteNode("A1");
    EXPECT_EQ(engine_.typeCounters.find("Node"), nullptr);
    EXPECT_EQ(*engine_.typeCounters.find("Camera"), 5);
}

TEST_F(EngineTest, DeletesNodesWithStaleConsumersAndLoopsInAnyOrder) {
    for (const bool sourceFirst : {false, true}) {
        TestEngine engine;
        engine.makeNode("A");
        engine.makeNode("B");
        engine.makeNode("C");
        engine.connect("A", "C", 0);
        engine.connect("B", "C", 0);  // stale
        engine.connect("C", "C", 1);
        engine.connect("C", "A", 0);
        engine.connect("C", "B", TestNode::kPorts);  // a consumer without a link
        EXPECT_TRUE(engine.deleteNode(sourceFirst ? "B" : "C"));
        EXPECT_TRUE(engine.deleteNode(sourceFirst ? "C" : "B"));
        EXPECT_THAT(engine.node("A").consumers, IsEmpty());
        EXPECT_EQ(engine.node("A").getInput(0), nullptr);
        EXPECT_TRUE(engine.deleteNode("A"));
        EXPECT_TRUE(engine.nodes.empty());
    }
}

TEST_F(EngineTest, DeletesANodeByItsOwnIdText) {
    EXPECT_TRUE(engine_.deleteNode(engine_.makeNode("A node with a long id of its own").id));
    EXPECT_TRUE(engine_.nodes.empty());
}

TEST_F(EngineTest, RunsAFrameInItsOrder) {
    const TempFolder folder;
    const WorkingFolder working(folder.path());
    engine_.init();
    engine_.makeNode("A");
    engine_.makeNode("B");
    engine_.makeOutput("Out2");
    engine_.makeOutput("Out1");
    engine_.connect("A", "Out1", 0);
    engine_.connect("A", "Out2", 0);
    engine_.node("B").updated = true;
    engine_.update(0);
    EXPECT_THAT(RunLog(),
                ElementsAre("sound load .\\data\\", "sound update", "process A", "postProcess A",
                            "process Out2", "present Out2", "process Out1", "present Out1"));
    EXPECT_FALSE(engine_.node("B").updated) << "flags are reset for all nodes";
    RunLog().clear();
    engine_.update(1);
    EXPECT_EQ(CountOf(RunLog(), "sound load .\\data\\"), 0);
    engine_.musicFile = "b.ogg";
    engine_.update(2);
    EXPECT_EQ(CountOf(RunLog(), "sound load b.ogg"), 1);
}

TEST_F(EngineTest, MeasuresDeltaTimeFromTheSecondFrameOn) {
    EXPECT_EQ(engine_.time, -1.0f);
    engine_.update(5);
    EXPECT_EQ(engine_.time, 5.0f);
    EXPECT_EQ(engine_.deltaTime, 0.0f);
    engine_.update(5.5f);
    EXPECT_EQ(engine_.deltaTime, 0.5f);
    engine_.update(2);
    EXPECT_EQ(engine_.deltaTime, -3.5f);
    engine_.update(-2);
    engine_.update(3);
    EXPECT_EQ(engine_.deltaTime, -4.0f) << "nothing is measured from a time below zero";
}

TEST_F(EngineTest, SetsFrameCostWithoutAnyNodes) {
    engine_.frameCost = -1;
    engine_.update(0);
    EXPECT_GE(engine_.frameCost, 0.0f);
    EXPECT_LT(engine_.frameCost, 1.0f);
}

TEST_F(EngineTest, RefreshesEveryNodeWithRenderingOff) {
    class Watching : public TestNode {
      public:
        using TestNode::TestNode;
        bool process() override {
            enabledAtProcess = engine->renderEnabled;
            return TestNode::process();
        }
        int enabledAtProcess = -1;
    };
    engine_.makeNode("A");
    engine_.createNode("Gone", "Vanished");
    engine_.addNode("W", std::make_unique<Watching>(&engine_, "W"));
    engine_.makeOutput("Out");
    engine_.refreshNodes();
    EXPECT_THAT(RunLog(), ElementsAre("process A", "process W", "process Out"));
    EXPECT_EQ(dynamic_cast<Watching&>(*engine_.findNode("W")).enabledAtProcess, 0);
    EXPECT_EQ(engine_.renderEnabled, 1);
}

TEST_F(EngineTest, TellsHowFarALoadIs) {
    class Loading : public TestNode {
      public:
        using TestNode::TestNode;
        std::size_t countLoadSteps() override { return 3; }
        bool process() override {
            for (int i = 0; i < 2; ++i) engine->loadStepDone();
            return TestNode::process();
        }
    };
    engine_.makeNode("A");
    engine_.createNode("Gone", "Vanished");
    engine_.addNode("L", std::make_unique<Loading>(&engine_, "L"));
    std::vector<double> parts;
    engine_.showLoadProgress = [&](double part) { parts.push_back(part); };
    engine_.refreshNodes();
    EXPECT_THAT(parts, ElementsAre(0.25, 0.5, 0.75, 1));
    engine_.findNode("L")->process();
    EXPECT_THAT(parts, testing::SizeIs(4)) << "a frame is no load";
}

TEST_F(EngineTest, ClearsTheWholeScene) {
    engine_.makeNode("A");
    engine_.makeOutput("Out");
    engine_.createNode("X", "Vanished");
    engine_.connect("A", "A", 0);
    engine_.addAnimation("A", "Tint");
    engine_.typeCounters["Node"] = 3;
    engine_.update(1);
    engine_.update(7);
    engine_.clearScene();
    EXPECT_TRUE(engine_.nodes.empty());
    EXPECT_TRUE(engine_.nodeIds.empty());
    EXPECT_TRUE(engine_.nodeTypes.empty());
    EXPECT_TRUE(engine_.values.empty());
    EXPECT_TRUE(engine_.tracks.empty());
    EXPECT_TRUE(engine_.typeCounters.empty());
    EXPECT_TRUE(engine_.outputs.empty());
    EXPECT_EQ(engine_.time, 0.0f);
    EXPECT_EQ(engine_.deltaTime, 0.0f);
    engine_.update(1);
}

}  // namespace
