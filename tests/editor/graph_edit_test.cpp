#include "editor/graph_edit.h"

#include <gmock/gmock.h>

#include <limits>

#include "editor/graph_layout.h"
#include "support/core_nodes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class GraphEdit : public ::testing::Test {
  protected:
    GraphEdit() { engine.typeNames = {"Node", "Camera", "Output"}; }
    std::vector<std::string> feedback() const {
        std::vector<std::string> result;
        for (const auto& [node, port] : FeedbackLinks(engine)) {
            result.push_back(node->id + std::to_string(port));
        }
        return result;
    }
    TestEngine engine;
};

TEST_F(GraphEdit, IdsBeginWithOneAndPassTakenOnes) {
    EXPECT_EQ(NextNodeId(engine, "Node"), "Node1");
    EXPECT_EQ(NextNodeId(engine, "Node"), "Node2");
    engine.makeNode("Node3");
    EXPECT_EQ(NextNodeId(engine, "Node"), "Node4");
    EXPECT_EQ(*engine.typeCounters.find("Node"), 4);
}

TEST_F(GraphEdit, CountersOfAnyValueGiveAFreeId) {
    engine.typeCounters["Node"] = -5;
    EXPECT_EQ(NextNodeId(engine, "Node"), "Node1");
    engine.typeCounters["Node"] = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(NextNodeId(engine, "Node"), "Node1");
}

TEST_F(GraphEdit, AnIdHasNoDotThatWouldEndItInATracksName) {
    EXPECT_EQ(NextNodeId(engine, "Blur v1.5"), "Blur v1_51");
}

TEST_F(GraphEdit, SetLinkTakesThePlaceOfALink) {
    Node& a = engine.makeNode("a");
    Node& b = engine.makeNode("b");
    Node& target = engine.makeNode("t");
    EXPECT_TRUE(SetLink(engine, a, target, 1));
    EXPECT_FALSE(SetLink(engine, a, target, 1)) << "it is there already";
    EXPECT_TRUE(SetLink(engine, b, target, 1));
    EXPECT_EQ(target.getInput(1), &b);
    EXPECT_THAT(a.consumers, IsEmpty());
    EXPECT_THAT(b.consumers, ElementsAre(&target));
    EXPECT_FALSE(SetLink(engine, a, target, 3)) << "one past the last port";
    EXPECT_FALSE(SetLink(engine, a, target, -1));
    engine.createNode("cam", "Camera");
    EXPECT_FALSE(SetLink(engine, *engine.findNode("cam"), target, 1));
    EXPECT_EQ(target.getInput(1), &b) << "a link that does not fit cuts nothing";
}

TEST_F(GraphEdit, AGraphWithoutCyclesHasNoFeedback) {
    engine.makeNode("a");
    engine.makeNode("b");
    engine.makeOutput("out");
    engine.connect("a", "b", 0);
    engine.connect("a", "b", 1);
    engine.connect("b", "out", 0);
    EXPECT_THAT(feedback(), IsEmpty());
}

TEST_F(GraphEdit, FeedbackIsTheLinkThatLeadsBackSeenFromTheOutput) {
    engine.makeNode("a");
    engine.makeNode("b");
    engine.makeOutput("out");
    engine.connect("a", "b", 0);
    engine.connect("b", "a", 2);
    engine.connect("b", "out", 0);
    EXPECT_THAT(feedback(), ElementsAre("a2"));
}

TEST_F(GraphEdit, ALinkToTheNodeItselfIsFeedback) {
    engine.makeNode("a");
    engine.connect("a", "a", 1);
    EXPECT_THAT(feedback(), ElementsAre("a1"));
}

TEST_F(GraphEdit, LongChainsNeedNoStack) {
    constexpr int kLength = 50000;
    engine.makeNode("n0");
    for (int i = 1; i < kLength; ++i) {
        engine.makeNode("n" + std::to_string(i));
        engine.connect("n" + std::to_string(i - 1), "n" + std::to_string(i), 0);
    }
    EXPECT_THAT(feedback(), IsEmpty());
    EXPECT_EQ(NodesBehind(engine, "n" + std::to_string(kLength - 1), {}).size(), kLength - 1u);
}

TEST_F(GraphEdit, WhatIsBehindANodeIsListedOnceAndWithoutIt) {
    for (const std::string id : {"a", "b", "c", "d"}) engine.makeNode(id);
    engine.connect("b", "a", 0);
    engine.connect("c", "a", 1);
    engine.connect("d", "b", 0);
    engine.connect("d", "c", 0);
    engine.connect("a", "d", 0);
    EXPECT_THAT(NodesBehind(engine, "a", {}), ElementsAre("b", "c", "d"));
    EXPECT_THAT(NodesBehind(engine, "not there", {}), IsEmpty());
}

TEST_F(GraphEdit, WhatComesAfterANodeIsNotBehindItThroughFeedback) {
    for (const std::string id : {"first", "last"}) engine.makeNode(id);
    engine.makeOutput("out");
    engine.connect("first", "last", 0);
    engine.connect("last", "out", 0);
    engine.connect("last", "first", 1);
    const auto links = FeedbackLinks(engine);
    EXPECT_THAT(NodesBehind(engine, "first", links), IsEmpty());
    EXPECT_THAT(NodesBehind(engine, "last", links), ElementsAre("first"));
}

TEST_F(GraphEdit, TheLayoutGivesEveryNodeAPlaceOfItsOwn) {
    engine.makeOutput("out");
    for (int i = 0; i < 60; ++i) {
        const std::string id = "n" + std::to_string(i);
        engine.makeNode(id);
        engine.connect(id, i == 0 ? "out" : "n" + std::to_string(i / 3), i % 3);
    }
    engine.connect("out", "n59", 0);
    engine.makeNode("alone");
    const auto places = ArrangeGraph(engine);
    ASSERT_EQ(places.size(), 62u);
    for (const auto& [id, place] : places) {
        EXPECT_GE(place.x, 0);
        EXPECT_GE(place.y, 0);
        for (const auto& [other, there] : places) {
            if (id == other) continue;
            const bool apart =
                std::abs(place.x - there.x) >= 160 || std::abs(place.y - there.y) >= 20;
            EXPECT_TRUE(apart) << id << " lies on " << other;
        }
    }
    EXPECT_LT(places.at("n1").y, places.at("n0").y);
    EXPECT_LT(places.at("n0").y, places.at("out").y);
}

TEST_F(GraphEdit, TheLayoutOfNothingIsNothing) {
    EXPECT_TRUE(ArrangeGraph(engine).empty());
}

}  // namespace
