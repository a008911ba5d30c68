// Nodes by themselves, and how they are pulled.
#include "core/node.h"

#include <gmock/gmock.h>

#include "support/core_nodes.h"

namespace {

using ::testing::ElementsAre;

class NodeTest : public ::testing::Test {
  protected:
    void link(const std::string& source, const std::string& target, int port = 0) {
        ASSERT_TRUE(engine_.connect(source, target, port));
    }
    std::vector<std::string> processed() const {
        std::vector<std::string> ids;
        for (const std::string& entry : RunLog()) {
            if (entry.starts_with("process ")) ids.push_back(entry.substr(8));
        }
        return ids;
    }
    void update(float time) {
        RunLog().clear();
        engine_.update(time);
    }

    TestEngine engine_;
};

TEST_F(NodeTest, StartsEmptyAndEnabled) {
    const TestCamera node(&engine_, "Bare");
    EXPECT_EQ(node.engine, &engine_);
    EXPECT_EQ(node.id, "Bare");
    EXPECT_EQ(node.disabled, 0);
    EXPECT_EQ(node.inputCount, 0);
    EXPECT_TRUE(node.inputs.empty());
    EXPECT_TRUE(node.inputNames.empty());
    EXPECT_TRUE(node.consumers.empty());
    EXPECT_FALSE(node.hasError);
    EXPECT_FALSE(node.updated);
}

TEST_F(NodeTest, NamesItsPortsByTheirNumbers) {
    TestNode& node = engine_.makeNode("A");
    node.setInputCount(12);
    EXPECT_EQ(node.inputCount, 12);
    EXPECT_EQ(node.inputs.size(), 12u);
    EXPECT_EQ(node.getInputName(0), "input0");
    EXPECT_EQ(node.getInputName(11), "input11");
    EXPECT_EQ(node.getInputName(12), "");
    EXPECT_EQ(node.getInputName(-1), "");
}

TEST_F(NodeTest, GivesNoInputAtOrPastItsCountWhateverItsListHolds) {
    TestNode& node = engine_.makeNode("A");
    node.inputs.push_back(&node);
    EXPECT_EQ(node.getInput(TestNode::kPorts), nullptr);
    EXPECT_EQ(node.getInput(-1), nullptr);
    EXPECT_EQ(node.getInput(1000), nullptr);
}

TEST_F(NodeTest, RemovesEveryEntryOfAConsumer) {
    TestNode& a = engine_.makeNode("A");
    TestNode& b = engine_.makeNode("B");
    TestNode& c = engine_.makeNode("C");
    a.consumers = {&b, &c, &b};
    EXPECT_TRUE(a.removeConsumer(&b));
    EXPECT_THAT(a.consumers, ElementsAre(&c));
    EXPECT_FALSE(a.removeConsumer(&b));
}

TEST_F(NodeTest, RemembersItsError) {
    TestNode& node = engine_.makeNode("A");
    node.setError(true);
    EXPECT_TRUE(node.hasError);
    node.setError(false);
    EXPECT_FALSE(node.hasError);
}

TEST_F(NodeTest, RunsItsInputsInPortOrderDepthFirstThenItself) {
    for (const char* id : {"A", "B", "C", "D", "E"}) engine_.makeNode(id);
    engine_.makeOutput("Out");
    link("E", "Out");
    link("C", "E", 0);
    link("D", "E", 2);
    link("A", "D", 1);
    link("B", "D", 0);
    update(0);
    EXPECT_THAT(processed(), ElementsAre("C", "B", "A", "D", "E", "Out"));
    EXPECT_EQ(RunLog()[1], "postProcess C");
}

TEST_F(NodeTest, RunsOncePerFrameWhoeverFeedsOnIt) {
    TestNode& source = engine_.makeNode("A");
    for (const char* id : {"B", "C", "D"}) engine_.makeNode(id);
    engine_.makeOutput("Out");
    link("A", "B", 0);
    link("A", "B", 1);
    link("A", "C", 0);
    link("B", "D", 0);
    link("C", "D", 1);
    link("D", "Out");
    for (int frame = 1; frame <= 3; ++frame) {
        update(static_cast<float>(frame));
        EXPECT_EQ(source.processed, frame);
        EXPECT_TRUE(source.updated);
    }
}

TEST_F(NodeTest, RunsWithAllInputsEmpty) {
    TestNode& node = engine_.makeNode("A");
    EXPECT_TRUE(node.pull());
    EXPECT_EQ(node.processed, 1);
    EXPECT_EQ(node.postProcessed, 1);
    EXPECT_TRUE(node.updated);
}

TEST_F(NodeTest, PassesOverADisabledInputAndSeesItsLastProduct) {
    TestNode& source = engine_.makeNode("A");
    TestNode& consumer = engine_.makeNode("B");
    engine_.makeOutput("Out");
    link("A", "B");
    link("B", "Out");
    update(0);
    source.disabled = 1;
    source.product = 41;
    update(1);
    EXPECT_EQ(source.processed, 1);
    EXPECT_FALSE(source.updated);
    EXPECT_EQ(consumer.processed, 2);
    EXPECT_EQ(consumer.product, 42);
}

TEST_F(NodeTest, PassesOverANodeThatIsNotPulled) {
    TestNode& lone = engine_.makeNode("A");
    engine_.makeOutput("Out");
    update(0);
    EXPECT_EQ(lone.processed, 0);
}

TEST_F(NodeTest, HandsAFailureUpAndRunsEverythingAllTheSame) {
    TestNode& source = engine_.makeNode("A");
    TestNode& consumer = engine_.makeNode("B");
    link("A", "B");
    source.processResult = false;
    EXPECT_FALSE(consumer.pull());
    EXPECT_EQ(source.postProcessed, 1);
    EXPECT_EQ(consumer.processed, 1);
    EXPECT_EQ(consumer.postProcessed, 1);
    // An input that has run already counts as a success.
    EXPECT_TRUE(consumer.pull());
}

TEST_F(NodeTest, SeesItsOwnProductOfTheLastFrameWhenFedByItself) {
    TestNode& node = engine_.makeNode("A");
    engine_.makeOutput("Out");
    link("A", "A");
    link("A", "Out");
    for (int frame = 1; frame <= 5; ++frame) {
        update(static_cast<float>(frame));
        EXPECT_EQ(node.seen, frame - 1);
        EXPECT_EQ(node.product, frame);
        EXPECT_EQ(node.processed, frame);
    }
}

TEST_F(NodeTest, SeesTheOthersProductOfTheLastFrameInACycleOfTwo) {
    TestNode& a = engine_.makeNode("A");
    TestNode& b = engine_.makeNode("B");
    engine_.makeOutput("Out");
    link("A", "B");
    link("B", "A");
    link("A", "Out");
    for (int frame = 1; frame <= 5; ++frame) {
        update(static_cast<float>(frame));
        EXPECT_THAT(processed(), ElementsAre("B", "A", "Out"));
        EXPECT_EQ(b.seen, 2 * (frame - 1)) << "A's product of the frame before";
        EXPECT_EQ(a.seen, 2 * frame - 1) << "B's product of this frame";
    }
}

TEST_F(NodeTest, RunsEveryNodeOfACycleThatIsEnteredFromTwoSides) {
    for (const char* id : {"A", "B", "C"}) engine_.makeNode(id);
    engine_.makeOutput("Out1");
    engine_.makeOutput("Out2");
    link("A", "B");
    link("B", "C");
    link("C", "A");
    link("A", "Out1");
    link("B", "Out2");
    update(0);
    EXPECT_THAT(processed(), ElementsAre("B", "C", "A", "Out1", "Out2"));
}

TEST_F(NodeTest, SurvivesAChainThatIsTooLongToFollow) {
    constexpr int kLength = 100000;
    for (int i = 0; i < kLength; ++i) engine_.makeNode(std::to_string(i));
    for (int i = 1; i < kLength; ++i) link(std::to_string(i - 1), std::to_string(i));
    engine_.makeOutput("Out");
    link(std::to_string(kLength - 1), "Out");
    update(0);
    EXPECT_EQ(engine_.node(std::to_string(kLength - 1)).processed, 1);
    EXPECT_EQ(engine_.node(std::to_string(kLength - 4000)).processed, 1);
    EXPECT_EQ(engine_.node("0").processed, 0);
    EXPECT_EQ(engine_.pullDepth, 0);
}

}  // namespace
