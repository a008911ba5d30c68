#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>

#include "gpu/gl_framebuffer.h"
#include "image/image_node_compose.h"
#include "image/image_node_motion_blur.h"
#include "image/image_node_transform2d.h"
#include "platform/debug_output.h"
#include "support/broken_shaders.h"
#include "support/core_nodes.h"
#include "support/gl_state.h"
#include "support/graph_fixture.h"
#include "support/parameter_table.h"

namespace {

using testing::ElementsAre;

// A picture of one colour, made anew in each run from the engine's time or a parameter; counts its
// runs.
class ClockNode : public ImageNode {
  public:
    ClockNode(Engine* owner, const std::string& nodeId) : ImageNode(owner, nodeId) {
        engine->declareFloat(this, "Shade", shade, 0, 1, 2, 0.25f, true);
        target = std::make_shared<GL_FrameBuffer>(4, 4, 1, 16, GL_RGBA, TargetDepth::None,
                                                  TargetWrap::Border);
        images[0] = target;
    }
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override {
        times.push_back(engine->time);
        deltas.push_back(engine->deltaTime);
        costs.push_back(engine->frameCost);
        renders.push_back(engine->renderEnabled);
        const float red = colourAt(engine->time);
        target->Bind();
        target->SelectDrawBuffers();
        const float colour[] = {red, shade, 0, 1};
        glClearBufferfv(GL_COLOR, 0, colour);
        GL_FrameBuffer::Unbind();
        if (spoilsTheClock) {
            engine->time = -1;
            engine->deltaTime = -2;
            engine->frameCost = -3;
            engine->renderEnabled = 2;
        }
        return failAt < 0 || static_cast<int>(times.size()) <= failAt;
    }

    std::function<float(float)> colourAt = [](float time) { return time; };
    std::vector<float> times, deltas, costs;
    std::vector<int> renders;
    int failAt = -1;
    bool spoilsTheClock = false;
    float shade;
    std::shared_ptr<GL_FrameBuffer> target;
};

class MotionBlurTest : public GraphTest {
  protected:
    const float* middle() {
        pixels = read(static_cast<const GL_FrameBuffer&>(*node.images[0]), kMiddle);
        return pixels.at(kMiddle.x, kMiddle.y);
    }

    static constexpr Region kMiddle = {950, 530, 2, 2};
    RegionPixels pixels;
    ClockNode& clock = add<ClockNode>("clock");
    ImageNode_MotionBlur& node = add<ImageNode_MotionBlur>("blur");
};

}  // namespace

TEST_F(MotionBlurTest, TakesAPictureOnItsOnePort) {
    EXPECT_EQ(node.inputCount, 1);
    EXPECT_THAT(node.inputNames, ElementsAre("Image"));
    EXPECT_TRUE(node.canConnect(0, &clock));
    EXPECT_FALSE(node.canConnect(1, &clock));
    EXPECT_FALSE(node.canConnect(0, nullptr));
    EXPECT_FALSE(node.canConnect(0, &add<TestCamera>("camera")));
    EXPECT_FALSE(node.hasError);
    EXPECT_THAT(ParameterTable(engine, node),
                ElementsAre("Samples choice '4' '6' '8' '10' '12' '14' '16' '24' '32' '64', 3",
                            "Shutter float 0.001 to 1, 4 decimals, 0.01, animatable"));
}

TEST_F(MotionBlurTest, HasAnErrorWithoutItsProgram) {
    const DebugCapture quiet;
    const BrokenShaders broken("uniform sampler2D tex");
    EXPECT_TRUE(add<ImageNode_MotionBlur>("broken").hasError);
    EXPECT_EQ(broken.count(), 1);
}

TEST_F(MotionBlurTest, HasATargetOfTheFrameWithABorder) {
    const auto& target = static_cast<const GL_FrameBuffer&>(*node.images[0]);
    EXPECT_EQ(target.width, 1920);
    EXPECT_EQ(target.height, 1080);
    EXPECT_EQ(target.textureCount, 1);
    EXPECT_EQ(target.bitsPerChannel, 16u);
    EXPECT_EQ(target.format, static_cast<std::uint32_t>(GL_RGBA));
    EXPECT_FALSE(target.hasDepth);
    EXPECT_EQ(TextureLevelParameter(target, GL_TEXTURE_INTERNAL_FORMAT), GL_RGBA16F);
    EXPECT_EQ(TextureLevelParameter(target, GL_TEXTURE_WIDTH), 1920);
    EXPECT_EQ(TextureLevelParameter(target, GL_TEXTURE_HEIGHT), 1080);
    EXPECT_EQ(TextureParameter(target, GL_TEXTURE_WRAP_S), GL_CLAMP_TO_BORDER);
    EXPECT_EQ(TextureParameter(target, GL_TEXTURE_WRAP_T), GL_CLAMP_TO_BORDER);
    EXPECT_EQ(TextureParameter(target, GL_TEXTURE_MIN_FILTER), GL_LINEAR);
    EXPECT_EQ(TextureParameter(target, GL_TEXTURE_MAG_FILTER), GL_LINEAR);
}

TEST_F(MotionBlurTest, TakesTheCountFromItsTable) {
    std::vector<int> counts;
    for (int i = 0; i < 10; ++i) {
        node.samples = i;
        counts.push_back(node.sampleCount());
    }
    EXPECT_THAT(counts, ElementsAre(4, 6, 8, 10, 12, 14, 16, 24, 32, 64));
    node.samples = -5;
    EXPECT_EQ(node.sampleCount(), 4);
    node.samples = 1000000;
    EXPECT_EQ(node.sampleCount(), 64);
}

TEST_F(MotionBlurTest, RunsItsInputAtEarlierMoments) {
    link(clock, node, 0);
    set(node, "Samples", {0});
    set(node, "Shutter", {0.5f});
    engine.time = 2;
    engine.deltaTime = 0.25f;
    EXPECT_TRUE(node.pull());
    EXPECT_THAT(clock.times, ElementsAre(2.0f, 1.875f, 1.75f, 1.625f));
    EXPECT_THAT(clock.deltas, testing::Each(0.25f));
    EXPECT_TRUE(node.updated);
}

TEST_F(MotionBlurTest, ShowsTheMeanOfAllMoments) {
    link(clock, node, 0);
    clock.colourAt = [](float time) { return std::sin(time * 40) + 1.5f; };
    set(node, "Shutter", {1});
    for (int choice = 0; choice < 10; ++choice) {
        node.samples = choice;
        clock.times.clear();
        engine.time = 3;
        node.pull();
        const int count = node.sampleCount();
        ASSERT_EQ(clock.times.size(), static_cast<std::size_t>(count));
        double mean = 0;
        for (int i = 0; i < count; ++i) {
            const auto moment = static_cast<float>(3.0 - static_cast<double>(i) / count);
            mean += static_cast<double>(clock.colourAt(moment)) / count;
        }
        // The mean runs in half floats of 11 bits: an error of up to half a step of 1/512, or a
        // whole one where it is cut, at each of the samples, of which all but the last fade.
        EXPECT_NEAR(middle()[0], mean, 0.002 * std::sqrt(count)) << count;
        EXPECT_EQ(middle()[3], 1.0f);
    }
}

TEST_F(MotionBlurTest, ReplacesWhatWasThereWithTheFirstSample) {
    link(clock, node, 0);
    clock.colourAt = [](float) { return 30000.0f; };
    node.pull();
    clock.colourAt = [](float) { return 0.5f; };
    node.pull();
    EXPECT_EQ(middle()[0], 0.5f);
}

TEST_F(MotionBlurTest, ReplacesWhatIsNoNumber) {
    link(clock, node, 0);
    clock.colourAt = [](float) { return std::numeric_limits<float>::infinity(); };
    // Both of the targets that the node draws into in turn.
    for (int frame = 0; frame < 2; ++frame) node.pull();
    clock.colourAt = [](float) { return 0.5f; };
    for (int frame = 0; frame < 2; ++frame) {
        node.pull();
        EXPECT_EQ(middle()[0], 0.5f) << "frame " << frame;
    }
}

TEST_F(MotionBlurTest, TakesTheInputThroughItsMatrix) {
    const ReferencePicture waves = ReferencePicture::Waves(64, 36, 3);
    PictureNode& picture = add<PictureNode>("picture", waves.upload());
    Mat4ComposeTRS(picture.textureMatrix, {0.25f, -0.5f, 0}, {0, 0, 20}, 1.5f);
    link(picture, node, 0);
    const Region band = {0, 500, kFrameWidth, 4};
    const RegionPixels drawn = draw(node, band);
    int wrong = 0;
    for (int y = band.y; y < band.y + band.height; ++y) {
        for (int x = 0; x < kFrameWidth; ++x) {
            const Vec3 at = Mat4TransformPoint(picture.textureMatrix,
                                               {(static_cast<float>(x) + 0.5f) / kFrameWidth,
                                                (static_cast<float>(y) + 0.5f) / kFrameHeight, 0});
            const Sample expected =
                waves.sample(static_cast<double>(at.x), static_cast<double>(at.y));
            for (int c = 0; c < 4; ++c) {
                const double off = static_cast<double>(drawn.at(x, y)[c]) - expected.rgba[c];
                // Ten roundings to half floats of 11 bits.
                wrong += !(std::fabs(off) <= expected.error + 0.005);
            }
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(MotionBlurTest, RestoresTheClockAndLeavesTheTracksAtTheEarliestMoment) {
    link(clock, node, 0);
    ASSERT_TRUE(engine.addAnimation("clock", "Shade"));
    for (const float time : {0.0f, 4.0f}) {
        engine.time = time;
        clock.shade = time;
        ASSERT_TRUE(engine.setKeyframe("clock", "Shade"));
    }
    const KeyframeTrack& track = *engine.allTracks()[0];
    const auto shadeAt = [&](float time) {
        return static_cast<double>(track.valueAt(time).value());
    };
    set(node, "Samples", {0});
    set(node, "Shutter", {1});
    engine.time = 3;
    engine.deltaTime = 0.125f;
    engine.frameCost = 0.5f;
    engine.updateAnimation();
    const float present = clock.shade;
    node.pull();
    EXPECT_EQ(engine.time, 3.0f);
    EXPECT_EQ(engine.deltaTime, 0.125f);
    EXPECT_EQ(engine.frameCost, 0.5f);
    EXPECT_EQ(engine.renderEnabled, 1);
    EXPECT_EQ(present, track.valueAt(3));
    EXPECT_EQ(clock.shade, track.valueAt(2.25f));
    ASSERT_GT(present, clock.shade + 0.5f);
    const double mean = (shadeAt(3) + shadeAt(2.75f) + shadeAt(2.5f) + shadeAt(2.25f)) / 4;
    EXPECT_NEAR(middle()[1], mean, 0.005);  // half floats
}

// Whatever a node does to the clock is undone for the next moment, and at the end.
TEST_F(MotionBlurTest, RestoresAClockThatANodeHasMoved) {
    link(clock, node, 0);
    clock.spoilsTheClock = true;
    set(node, "Samples", {0});
    set(node, "Shutter", {0.5f});
    for (const int failAt : {-1, 2}) {
        clock.failAt = failAt;
        clock.times.clear();
        clock.deltas.clear();
        clock.costs.clear();
        clock.renders.clear();
        engine.time = 2;
        engine.deltaTime = 0.25f;
        engine.frameCost = 0.75f;
        engine.renderEnabled = 1;
        EXPECT_EQ(node.pull(), failAt < 0);
        EXPECT_EQ(engine.time, 2.0f);
        EXPECT_EQ(engine.deltaTime, 0.25f);
        EXPECT_EQ(engine.frameCost, 0.75f);
        EXPECT_EQ(engine.renderEnabled, 1);
        if (failAt < 0) {
            EXPECT_THAT(clock.times, ElementsAre(2.0f, 1.875f, 1.75f, 1.625f));
        }
        EXPECT_THAT(clock.deltas, testing::Each(0.25f));
        EXPECT_THAT(clock.costs, testing::Each(0.75f));
        EXPECT_THAT(clock.renders, testing::Each(1));
    }
}

TEST_F(MotionBlurTest, LeavesBlendingOffAndNothingBound) {
    link(clock, node, 0);
    glEnable(GL_BLEND);
    EXPECT_TRUE(node.pull());
    EXPECT_EQ(LeftBehind(), "");
    clock.failAt = static_cast<int>(clock.times.size()) + 1;
    glEnable(GL_BLEND);
    EXPECT_FALSE(node.pull());
    EXPECT_EQ(LeftBehind(), "");
}

TEST_F(MotionBlurTest, RunsNodesOfOtherPartsOfTheGraphAgain) {
    link(clock, node, 0);
    auto& other = add<ClockNode>("other");
    other.updated = true;
    set(node, "Samples", {0});
    node.pull();
    EXPECT_FALSE(other.updated);
    EXPECT_TRUE(clock.updated);
}

TEST_F(MotionBlurTest, AnswersFalseAndChangesNothingWithoutAnInput) {
    link(clock, node, 0);
    engine.time = 0.5f;
    node.pull();
    EXPECT_TRUE(engine.disconnect("blur", 0));
    engine.time = 7;
    engine.deltaTime = 0.25f;
    engine.frameCost = 0.75f;
    auto& other = add<ClockNode>("other");
    other.updated = true;
    const float before = middle()[0];
    EXPECT_FALSE(node.pull());
    EXPECT_EQ(engine.time, 7.0f);
    EXPECT_EQ(engine.deltaTime, 0.25f);
    EXPECT_EQ(engine.frameCost, 0.75f);
    EXPECT_EQ(engine.renderEnabled, 1);
    EXPECT_TRUE(other.updated);
    EXPECT_EQ(middle()[0], before);
}

TEST_F(MotionBlurTest, EndsAtAnInputThatFails) {
    link(clock, node, 0);
    set(node, "Shutter", {1});
    clock.failAt = 2;
    engine.time = 8;
    EXPECT_FALSE(node.pull());
    EXPECT_EQ(clock.times.size(), 3u);
    EXPECT_EQ(engine.time, 8.0f);
    EXPECT_NEAR(middle()[0], (8 + 7.9 + 7.8) / 3, 0.02);  // half floats between 4 and 8
}

TEST_F(MotionBlurTest, ShowsADisabledInputAsItIs) {
    link(clock, node, 0);
    clock.process();
    clock.times.clear();
    clock.disabled = 1;
    EXPECT_TRUE(node.pull());
    EXPECT_TRUE(clock.times.empty());
    EXPECT_EQ(middle()[1], 0.25f);
}

TEST_F(MotionBlurTest, IsBlackForANodeThatHasNoPicture) {
    link(clock, node, 0);
    engine.time = 1;
    node.pull();
    ASSERT_GT(middle()[0], 0.5f);
    EXPECT_TRUE(engine.disconnect("blur", 0));
    link(add<PictureNode>("empty"), node, 0);
    EXPECT_TRUE(node.pull());
    EXPECT_EQ(middle()[0], 0.0f);
}

TEST_F(MotionBlurTest, RunsAgainForEveryMomentOfABlurBehindIt) {
    auto& behind = add<ImageNode_MotionBlur>("behind");
    link(clock, node, 0);
    link(node, behind, 0);
    set(node, "Samples", {0});
    set(behind, "Samples", {1});
    set(node, "Shutter", {0.125f});
    set(behind, "Shutter", {0.75f});
    engine.time = 1;
    behind.pull();
    EXPECT_EQ(clock.times.size(), 24u);
    EXPECT_EQ(engine.time, 1.0f);
    // The mean of the means: the inner blur's weights leave the outer one's alone.
    double mean = 0;
    for (const float time : clock.times) mean += static_cast<double>(time) / 24;
    const auto& product = static_cast<const GL_FrameBuffer&>(*behind.images[0]);
    const RegionPixels seen = read(product, kMiddle);
    EXPECT_NEAR(seen.at(kMiddle.x, kMiddle.y)[0], mean, 0.003);
}

// Sixty-four moments of sixty-four moments, and so on.
TEST_F(MotionBlurTest, EndsForAnyChain) {
    const Node* last = &clock;
    for (int i = 0; i < 4; ++i) {
        auto& next = add<ImageNode_Transform2D>("pass" + std::to_string(i));
        link(*last, next, 0);
        last = &next;
    }
    link(*last, node, 0);
    clock.colourAt = [](float) { return 0.5f; };
    std::vector<ImageNode_MotionBlur*> chain = {&node};
    for (int i = 0; i < 3; ++i) {
        chain.push_back(&add<ImageNode_MotionBlur>("blur" + std::to_string(i)));
        link(**(chain.end() - 2), *chain.back(), 0);
    }
    for (ImageNode_MotionBlur* blur : chain) blur->samples = 9;
    engine.rerunsLeft = 90;
    EXPECT_TRUE(chain.back()->pull());
    EXPECT_EQ(engine.rerunsLeft, 0);
    EXPECT_LE(clock.times.size(), 90u);
    engine.update(1);
    EXPECT_EQ(engine.rerunsLeft, Engine::kMostReruns);
}

// Half of the frame before, in every one of its moments.
TEST_F(MotionBlurTest, FeedsBackItsPictureOfTheFrameBefore) {
    const ReferencePicture quarter(16, 16, [](int, int) -> Vec4 {
        return {0.25f, 0, 0.25f, 0.25f};
    });
    auto& compose = add<ImageNode_Compose>("compose");
    auto& pass = add<ImageNode_Transform2D>("pass");
    link(node, pass, 0);
    link(pass, compose, 0);
    link(add<PictureNode>("quarter", quarter.upload()), compose, 1);
    link(compose, node, 0);
    double expected = 0;
    for (int frame = 0; frame < 3; ++frame) {
        expected = 0.25 + expected * 0.75;
        node.pull();
        EXPECT_NEAR(middle()[0], expected, 0.004) << frame;  // half floats, ten times
    }
    EXPECT_TRUE(engine.disconnect("blur", 0));
    link(pass, node, 0);  // now nothing but itself
    node.pull();
    EXPECT_NEAR(middle()[0], expected, 0.004);
}
