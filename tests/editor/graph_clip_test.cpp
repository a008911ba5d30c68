#include "editor/graph_clip.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "support/core_nodes.h"

namespace {

using testing::ElementsAre;

class GraphClipText : public ::testing::Test {
  protected:
    GraphClipText() { engine.typeNames = {"Node", "Camera", "Output"}; }
    GraphClip clipOf(std::vector<std::string> ids) const {
        return GraphClip::FromGraph(engine, ids);
    }
    static GraphClip::Pasted paste(const std::string& text, Engine& engine) {
        const auto clip = GraphClip::FromText(text);
        EXPECT_TRUE(clip.has_value()) << text;
        return clip ? clip->pasteInto(engine) : GraphClip::Pasted();
    }
    // A clip of one node of type "Node" with these further members.
    static std::string oneNode(const std::string& members) {
        return R"({"kind":"vorn graph","version":1,"nodes":[{"id":"a","type":"Node")" + members +
               "}],\"links\":[]}";
    }
    TestEngine engine;
};

TEST_F(GraphClipText, EveryKindOfValueComesBackToTheLastBit) {
    TestNode& node = engine.makeNode("a");
    node.on = false;
    node.mode = -7;
    node.size = 1.0f / 3.0f;
    node.size2 = std::numeric_limits<float>::infinity();
    node.frozen = -std::numeric_limits<float>::infinity();
    node.place[0] = -0.0f;
    node.place[1] = std::numeric_limits<float>::quiet_NaN();
    node.tint[3] = std::numeric_limits<float>::denorm_min();
    node.translate[2] = std::numeric_limits<float>::max();
    node.text = "a \"b\" \\ \n \xc3\xa9 \x80\xff";
    paste(clipOf({"a"}).toText(), engine);
    const TestNode& copy = engine.node("Node1");
    EXPECT_EQ(copy.on, false);
    EXPECT_EQ(copy.mode, -7);
    EXPECT_EQ(copy.size, 1.0f / 3.0f);
    EXPECT_EQ(copy.size2, std::numeric_limits<float>::infinity());
    EXPECT_EQ(copy.frozen, -std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::signbit(copy.place[0]));
    EXPECT_TRUE(std::isnan(copy.place[1]));
    EXPECT_EQ(copy.tint[3], std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(copy.translate[2], std::numeric_limits<float>::max());
    EXPECT_EQ(copy.text, node.text);
}

TEST_F(GraphClipText, TracksNamesPlacesAndSwitchesComeBack) {
    TestNode& node = engine.makeNode("a");
    node.disabled = 1;
    engine.addAnimation("a", "Alpha.x");
    engine.addAnimation("a", "Translate.Y");
    engine.track("a", 0).setKeys({{0.1f, 2, 3}, {5, 6, 99}});
    GraphClip clip = clipOf({"a"});
    clip.nodes[0].displayName = "Sky \xc3\xa9";
    clip.nodes[0].place = {12.5f, -3};
    const auto read = GraphClip::FromText(clip.toText());
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->nodes[0].displayName, "Sky \xc3\xa9");
    EXPECT_EQ(read->nodes[0].place.x, 12.5f);
    EXPECT_EQ(read->nodes[0].place.y, -3);
    read->pasteInto(engine);
    EXPECT_EQ(engine.findNode("Node1")->disabled, 1);
    ASSERT_EQ(engine.tracks.find("Node1")->size(), 2u);
    const KeyframeTrack& first = engine.track("Node1", 0);
    EXPECT_EQ(first.name, "Node1.Alpha.x");
    EXPECT_EQ(first.target, &engine.node("Node1").dotted);
    EXPECT_EQ(first.keys()[0].value, 0.1f);
    EXPECT_EQ(first.keys()[1].mode, 99);
    EXPECT_EQ(engine.track("Node1", 1).target, &engine.node("Node1").translate[1]);
}

TEST_F(GraphClipText, OnlyLinksAmongTheCopiedAreCopied) {
    for (const std::string id : {"a", "b", "c"}) engine.makeNode(id);
    engine.connect("a", "b", 2);
    engine.connect("c", "b", 0);
    engine.connect("b", "c", 1);
    engine.connect("b", "b", 1);
    const GraphClip clip = clipOf({"b", "a", "not there"});
    EXPECT_EQ(clip.nodes.size(), 2u);
    paste(clip.toText(), engine);
    const Node* a = engine.findNode("Node1");
    const Node* b = engine.findNode("Node2");
    EXPECT_EQ(b->getInput(0), nullptr);
    EXPECT_EQ(b->getInput(1), b);
    EXPECT_EQ(b->getInput(2), a);
    EXPECT_THAT(a->consumers, ElementsAre(b));
}

TEST_F(GraphClipText, WhatIsNoClipGivesNothing) {
    for (const std::string text :
         {"", "x", "null", "[]", "{}", "{\"kind\":\"other\",\"nodes\":[]}",
          "{\"kind\":\"vorn graph\",\"nodes\":7}", "{\"kind\":\"vorn graph\",\"nodes\":[]}",
          "{\"kind\":\"vorn "
          "graph\",\"nodes\":[7,{\"id\":\"a\"},{\"id\":\"\",\"type\":\"Node\"}]}"}) {
        EXPECT_FALSE(GraphClip::FromText(text).has_value()) << text;
    }
    EXPECT_FALSE(GraphClip::FromText(std::string(200000, '[')).has_value());
    EXPECT_FALSE(GraphClip::FromText("\xff\xfe\x00\x01").has_value());
}

TEST_F(GraphClipText, PartsThatMakeNoSenseAreLeftOut) {
    paste(oneNode(R"(,"place":"here","disabled":3,"values":[7,["Size"],["Size","big"],
        ["Size",[1,2]],["Size",true],["Mode",1.5],["Mode",99999999999],["No such",[1]],
        ["Size",[1e300]],["Text",{"bytes":[256]}],["Size2",[0.75]]],
        "tracks":[3,{"parameter":"Size"},{"parameter":"No such","keys":[]},
        {"parameter":"Size","keys":[[1,2],[1,2,3,4],["a",1,0],[1,2,0]]}])"),
          engine);
    const TestNode& node = engine.node("Node1");
    EXPECT_EQ(node.size, 1.5f) << "the default";
    EXPECT_EQ(node.mode, 2);
    EXPECT_EQ(node.text, "none");
    EXPECT_EQ(node.size2, 0.75f);
    EXPECT_EQ(node.disabled, 0);
    ASSERT_EQ(engine.tracks.find("Node1")->size(), 1u);
    EXPECT_EQ(engine.track("Node1").keys().size(), 1u);
}

TEST_F(GraphClipText, LinksToNowhereAreLeftOut) {
    const std::string nodes = R"({"kind":"vorn graph","nodes":[{"id":"a","type":"Node"},
        {"id":"b","type":"Node"},{"id":"b","type":"Output"},{"id":"c","type":"Camera"}],"links":)";
    paste(nodes + R"([7,{},{"from":"a","to":"b","input":3},{"from":"a","to":"b","input":-1},
        {"from":"x","to":"b","input":0},{"from":"c","to":"b","input":0},
        {"from":"a","to":"b","input":1},{"from":"b","to":"b","input":1}]})",
          engine);
    EXPECT_EQ(engine.nodes.size(), 3u) << "an id stands for its first node";
    const Node* b = engine.findNode("Node2");
    EXPECT_EQ(b->getInput(0), nullptr);
    EXPECT_EQ(b->getInput(1), engine.findNode("Node1")) << "the first of two links";
    paste(nodes + "null}", engine);
    EXPECT_EQ(engine.nodes.size(), 6u);
}

TEST_F(GraphClipText, UnknownTypesAreCountedAndLeaveNothingBehind) {
    const auto pasted = paste(
        R"({"kind":"vorn graph","nodes":[{"id":"a","type":"Ghost"},{"id":"b","type":"Node"}]})",
        engine);
    EXPECT_EQ(pasted.unknownTypes, 1);
    EXPECT_EQ(pasted.newIds.at("b"), "Node1");
    EXPECT_EQ(engine.nodeTypes.size(), 1u);
}

TEST_F(GraphClipText, PlacesPastAnyCanvasAreZero) {
    const auto clip = GraphClip::FromText(oneNode(",\"place\":[1e30,\"nan\"]"));
    ASSERT_TRUE(clip.has_value());
    EXPECT_EQ(clip->nodes[0].place.x, 0);
    EXPECT_EQ(clip->nodes[0].place.y, 0);
}

}  // namespace
