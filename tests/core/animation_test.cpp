// The animation of values as the engine offers it to widgets.
#include <gtest/gtest.h>

#include "platform/debug_output.h"
#include "support/core_nodes.h"

namespace {

class AnimationTest : public ::testing::Test {
  protected:
    std::vector<std::string> trackNames(const std::string& id) const {
        std::vector<std::string> names;
        if (const auto* list = engine_.tracks.find(id)) {
            for (const auto& track : *list) names.push_back(track->name);
        }
        return names;
    }
    using Names = std::vector<std::string>;

    TestEngine engine_;
    TestNode& node_ = engine_.makeNode("A1");
};

TEST_F(AnimationTest, MakesOneTrackForAFloatWithAKeyOfItsValueAtThePresentTime) {
    engine_.time = 3.5f;
    node_.size = 0.75f;
    ASSERT_TRUE(engine_.addAnimation("A1", "Size"));
    ASSERT_EQ(trackNames("A1"), Names{"A1.Size"});
    const KeyframeTrack& track = engine_.track("A1");
    EXPECT_EQ(track.target, &node_.size);
    EXPECT_EQ(track.owner, &node_);
    EXPECT_EQ(track.reserved[0], 0u);
    EXPECT_EQ(track.reserved[1], 0u);
    ASSERT_EQ(track.keys().size(), 1u);
    EXPECT_EQ(track.keys()[0].time, 3.5f);
    EXPECT_EQ(track.keys()[0].value, 0.75f);
    EXPECT_EQ(track.keys()[0].mode, 0);
}

TEST_F(AnimationTest, MakesTwoTracksForAVec2) {
    ASSERT_TRUE(engine_.addAnimation("A1", "Place"));
    ASSERT_EQ(trackNames("A1"), (Names{"A1.Place.x", "A1.Place.y"}));
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(engine_.track("A1", i).target, node_.place + i);
        EXPECT_EQ(engine_.track("A1", i).keys().at(0).value, node_.place[i]);
    }
}

TEST_F(AnimationTest, MakesFourTracksForAVec4) {
    ASSERT_TRUE(engine_.addAnimation("A1", "Tint"));
    ASSERT_EQ(trackNames("A1"), (Names{"A1.Tint.r", "A1.Tint.g", "A1.Tint.b", "A1.Tint.a"}));
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(engine_.track("A1", i).target, node_.tint + i);
        EXPECT_EQ(engine_.track("A1", i).keys().at(0).value, node_.tint[i]);
    }
}

TEST_F(AnimationTest, AnimatesNoOtherKindOfValueAndNothingThatIsAbsent) {
    for (const char* name : {"On", "Mode", "Text", "Nothing"}) {
        EXPECT_FALSE(engine_.addAnimation("A1", name)) << name;
    }
    EXPECT_FALSE(engine_.addAnimation("B1", "Size"));
    EXPECT_TRUE(engine_.tracks.empty());
    EXPECT_FALSE(engine_.setKeyframe("B1", "Size"));
    EXPECT_FALSE(engine_.removeAnimation("B1", "Size"));
    EXPECT_FALSE(engine_.isAnimated("B1", "Size"));
    EXPECT_TRUE(engine_.tracks.empty()) << "looking up makes no list";
}

TEST_F(AnimationTest, MakesASecondSetOfTracksWhenAskedTwice) {
    engine_.addAnimation("A1", "Size");
    engine_.addAnimation("A1", "Size");
    EXPECT_EQ(trackNames("A1"), (Names{"A1.Size", "A1.Size"}));
}

TEST_F(AnimationTest, AddsOrOverwritesOneKeyForEachChannelThatHasATrack) {
    engine_.addAnimation("A1", "Place");
    auto& list = *engine_.tracks.find("A1");
    list.erase(list.begin());  // ".x" has no track now
    engine_.time = 2;
    node_.place[0] = 8;
    node_.place[1] = 9;
    EXPECT_TRUE(engine_.setKeyframe("A1", "Place"));
    ASSERT_EQ(list.size(), 1u);
    ASSERT_EQ(list[0]->keys().size(), 2u);
    EXPECT_EQ(list[0]->keys()[1].value, 9.0f);
    node_.place[1] = 10;
    engine_.setKeyframe("A1", "Place");
    ASSERT_EQ(list[0]->keys().size(), 2u);
    EXPECT_EQ(list[0]->keys()[1].value, 10.0f);
}

TEST_F(AnimationTest, TellsWhenALoadWillNotFindWhatTheKeysDrive) {
    float dotted = 0, rotation = 0;
    engine_.declareFloat(&node_, ".Time Stretch 1", dotted, 0, 2, 3, 1, true);
    engine_.declareFloat(&node_, "Rotate.X", rotation, 0, 360, 2, 0, true);
    const DebugCapture said;
    for (const char* name : {"Size", "Place", "Tint", "Rotate.X"}) {
        ASSERT_TRUE(engine_.addAnimation("A1", name));
        EXPECT_EQ(said.text(), "") << name;
    }
    ASSERT_TRUE(engine_.addAnimation("A1", ".Time Stretch 1"));
    EXPECT_EQ(said.text(),
              "\"A1..Time Stretch 1\" is animated until the project is loaded again: a load does "
              "not find what its keys drive\n");
    EXPECT_EQ(engine_.tracks.find("A1")->back()->target, &dotted);
}

TEST_F(AnimationTest, SetsNoKeyWhereNothingIsAnimated) {
    EXPECT_FALSE(engine_.setKeyframe("A1", "Size"));
    EXPECT_TRUE(engine_.tracks.empty());
}

TEST_F(AnimationTest, RemovesExactlyTheTracksOfTheValue) {
    engine_.addAnimation("A1", "Size");
    engine_.addAnimation("A1", "Size2");
    engine_.addAnimation("A1", "Tint");
    EXPECT_TRUE(engine_.removeAnimation("A1", "Size"));
    EXPECT_TRUE(engine_.removeAnimation("A1", "Tint"));
    EXPECT_EQ(trackNames("A1"), Names{"A1.Size2"});
    EXPECT_FALSE(engine_.removeAnimation("A1", "Tint"));
}

TEST_F(AnimationTest, TakesAValueForAnimatedWhenATrackNameContainsItsName) {
    engine_.addAnimation("A1", "Size2");
    EXPECT_TRUE(engine_.isAnimated("A1", "Size2"));
    EXPECT_TRUE(engine_.isAnimated("A1", "Size"));
    EXPECT_FALSE(engine_.isAnimated("A1", "Place"));
}

TEST_F(AnimationTest, WritesTracksBeforeNodesRunAndNeverClampsThem) {
    engine_.makeOutput("Out");
    engine_.connect("A1", "Out", 0);
    engine_.addAnimation("A1", "Size");
    engine_.track("A1").setKeys({{0, 0, 1}, {1000, 10, 1}});
    engine_.update(5);
    EXPECT_EQ(node_.sizeAtProcess, 500.0f);  // the slider ends at 5
}

TEST_F(AnimationTest, FollowsEveryEditOfTracksAndKeys) {
    engine_.addAnimation("A1", "Size");
    KeyframeTrack& track = engine_.track("A1");
    const auto sizeAt = [&](float time) {
        engine_.update(time);
        return node_.size;
    };
    track.setKeys({{1, 0, 1}, {3, 2, 1}});
    EXPECT_EQ(sizeAt(1), 2.0f);
    track.insertKey(1, 7);
    EXPECT_EQ(sizeAt(1), 7.0f);
    track.eraseKey(1);
    EXPECT_EQ(sizeAt(1), 2.0f);
    track.setKeyMode(1, kKeyEaseIn);
    EXPECT_EQ(sizeAt(1), 1.25f);
    engine_.removeAnimation("A1", "Size");
    node_.size = 42;
    EXPECT_EQ(sizeAt(1), 42.0f);
}

TEST_F(AnimationTest, ListsTheTracksOfAllNodesInOrder) {
    engine_.makeNode("B1");
    engine_.addAnimation("B1", "Size");
    engine_.addAnimation("A1", "Place");
    Names names;
    for (const KeyframeTrack* track : engine_.allTracks()) names.push_back(track->name);
    EXPECT_EQ(names, (Names{"B1.Size", "A1.Place.x", "A1.Place.y"}));
}

}  // namespace
