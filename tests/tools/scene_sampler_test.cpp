#include "scene_sampler.h"

#include <gmock/gmock.h>

namespace {

using testing::SizeIs;

SceneLayer Still(double depth, std::array<double, 4> rect) {
    SceneLayer layer;
    layer.name = "a.png";
    layer.depth = depth;
    layer.keys.push_back({0, rect, 1, SceneEase::kLinear});
    return layer;
}

std::vector<ParallaxKey> KeysOf(const SceneDescription& scene) {
    return SampleScene(scene)[0].keys;
}

// Keys are single precision at up to a few thousand pixels.
constexpr double kTolerance = 2e-4;

TEST(SceneSampler, ALayerThatNothingMovesHasOneKey) {
    SceneDescription scene{2, {}, {Still(3, {1, 2, 3, 4})}};
    const auto keys = KeysOf(scene);
    ASSERT_THAT(keys, SizeIs(1));
    EXPECT_EQ(keys[0].frame, 0u);
    EXPECT_EQ(keys[0].time, 0);
    EXPECT_EQ(keys[0].left, 1);
    EXPECT_EQ(keys[0].top, 2);
    EXPECT_EQ(keys[0].right, 3);
    EXPECT_EQ(keys[0].bottom, 4);
    EXPECT_EQ(keys[0].opacity, 1);
}

TEST(SceneSampler, DepthZeroIsNotMovedByTheCamera) {
    SceneDescription scene{1, {{0, 0, 0, 0}, {1, 50, 60, 0.5}}, {Still(0, {1, 2, 3, 4})}};
    const auto keys = KeysOf(scene);
    ASSERT_THAT(keys, SizeIs(1));
    EXPECT_EQ(keys[0].left, 1);
}

TEST(SceneSampler, MovingLayersHaveAKeyForEach60th) {
    SceneDescription scene{0.7, {{0}, {1, 60, 0, 0}}, {Still(1, {0, 0, 1, 1})}};
    const auto keys = KeysOf(scene);
    ASSERT_THAT(keys, SizeIs(43));
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(keys[i].frame, i);
        EXPECT_EQ(keys[i].time, static_cast<float>(static_cast<double>(i) / 60));
        EXPECT_NEAR(keys[i].left, -static_cast<double>(i), kTolerance);
    }
}

TEST(SceneSampler, TheCameraMovesLayersByTheirDepth) {
    // The camera stands at (120, -54, 0.5) all the time.
    SceneDescription scene{1, {{0, 120, -54, 0.5}}, {Still(2, {480, 270, 1440, 810})}};
    const auto keys = KeysOf(scene);
    ASSERT_THAT(keys, SizeIs(1));
    // World: centre + (-480, -270) * 2; seen from a distance of 1.5.
    EXPECT_NEAR(keys[0].left, 960 + (-960.0 - 120) / 1.5, kTolerance);
    EXPECT_NEAR(keys[0].top, 540 + (-540.0 + 54) / 1.5, kTolerance);
    EXPECT_NEAR(keys[0].right, 960 + (960.0 - 120) / 1.5, kTolerance);
    EXPECT_NEAR(keys[0].bottom, 540 + (540.0 + 54) / 1.5, kTolerance);
}

TEST(SceneSampler, AtRestALayerIsSeenWhereItWasPut) {
    for (const double depth : {0.25, 1.0, 7.0}) {
        SceneDescription scene{0, {{0}}, {Still(depth, {100, 200, 300, 500})}};
        const auto keys = KeysOf(scene);
        EXPECT_NEAR(keys[0].left, 100, kTolerance);
        EXPECT_NEAR(keys[0].bottom, 500, kTolerance);
    }
}

TEST(SceneSampler, LayersBehindTheCameraAreNotSeen) {
    const auto opacityAt = [](double z) {
        return KeysOf({0, {{0, 0, 0, z}}, {Still(1, {0, 0, 1, 1})}})[0].opacity;
    };
    EXPECT_EQ(opacityAt(0.97), 1);
    EXPECT_EQ(opacityAt(0.985), 0);
    EXPECT_EQ(opacityAt(1), 0);
    EXPECT_EQ(opacityAt(5), 0);
}

TEST(SceneSampler, RectAndOpacityRunBetweenKeys) {
    SceneLayer layer = Still(1, {0, 0, 100, 100});
    layer.keys[0].time = 0.5;
    layer.keys[0].opacity = 0;
    layer.keys.push_back({1, {60, 30, 160, 130}, 1, SceneEase::kLinear});
    const auto keys = KeysOf({2, {}, {layer}});
    ASSERT_THAT(keys, SizeIs(121));
    EXPECT_EQ(keys[10].left, 0);
    EXPECT_NEAR(keys[45].left, 30, kTolerance);
    EXPECT_NEAR(keys[45].top, 15, kTolerance);
    EXPECT_NEAR(keys[45].opacity, 0.5, 1e-6);
    EXPECT_EQ(keys[90].left, 60);
    EXPECT_EQ(keys[120].opacity, 1);
}

TEST(SceneSampler, TheEaseBelongsToTheSegmentThatEndsAtItsKey) {
    SceneLayer layer = Still(1, {0, 0, 100, 100});
    layer.keys[0].ease = SceneEase::kHold;
    layer.keys.push_back({1, {60, 0, 160, 100}, 1, SceneEase::kIn});
    layer.keys.push_back({2, {0, 0, 100, 100}, 1, SceneEase::kHold});
    const auto keys = KeysOf({2, {}, {layer}});
    EXPECT_NEAR(keys[30].left, 15, kTolerance);
    EXPECT_EQ(keys[119].left, 60);
    EXPECT_EQ(keys[120].left, 0);
}

TEST(SceneSampler, EasesRunFromZeroToOne) {
    for (const SceneEase ease : {SceneEase::kLinear, SceneEase::kIn, SceneEase::kOut,
                                 SceneEase::kInOut, SceneEase::kHold}) {
        EXPECT_EQ(SceneEaseAt(ease, 0), 0);
        EXPECT_EQ(SceneEaseAt(ease, 1), 1);
    }
    EXPECT_EQ(SceneEaseAt(SceneEase::kLinear, 0.25), 0.25);
    EXPECT_EQ(SceneEaseAt(SceneEase::kIn, 0.25), 0.0625);
    EXPECT_EQ(SceneEaseAt(SceneEase::kOut, 0.25), 0.4375);
    EXPECT_EQ(SceneEaseAt(SceneEase::kInOut, 0.25), 0.15625);
    EXPECT_EQ(SceneEaseAt(SceneEase::kHold, 0.99), 0);
}

TEST(SceneSampler, SampledLayersStandAsTheyAre) {
    SceneLayer layer;
    layer.name = "b.png";
    layer.mode = 31;
    layer.isSampled = true;
    layer.sampled = {{1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 7}};
    const auto records = SampleScene({9, {{0}, {1, 5, 5, 5}}, {layer}});
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records[0].name, "b.png");
    EXPECT_EQ(records[0].mode, 31);
    ASSERT_THAT(records[0].keys, SizeIs(2));
    EXPECT_EQ(records[0].keys[1].frame, 7u);
}

}  // namespace
