#include <gmock/gmock.h>

#include <array>
#include <cmath>

#include "gpu/shader_program.h"
#include "image/blur_formula.h"
#include "image/image_node_glow.h"
#include "image/image_node_transform2d.h"
#include "platform/debug_output.h"
#include "support/broken_shaders.h"
#include "support/core_nodes.h"
#include "support/graph_fixture.h"
#include "support/parameter_table.h"

namespace {

using testing::ElementsAre;

constexpr Vec2 kSampleSize = {0.000520833f, 0.000925926f};

ReferencePicture PictureOf(const GL_FrameBuffer& target) {
    const std::vector<float> pixels = ReadTarget(target);
    return {target.width, target.height, [&](int x, int y) -> Vec4 {
                const float* p = &pixels[static_cast<std::size_t>(y * target.width + x) * 4];
                return {p[0], p[1], p[2], p[3]};
            }};
}

std::array<double, 2> Through(const Mat4& m, double u, double v) {
    const auto element = [&](int i) { return static_cast<double>(m[i]); };
    return {element(0) * u + element(4) * v + element(12),
            element(1) * u + element(5) * v + element(13)};
}

class GlowTest : public GraphTest {
  protected:
    using Reference = std::function<Sample(double u, double v)>;

    // Pixels all over a target. The quad is drawn upside down: its v is 1 at the first row.
    static void expectTarget(const GL_FrameBuffer& target, const Reference& reference) {
        const ReferencePicture pixels = PictureOf(target);
        int wrong = 0, compared = 0;
        for (int y = 3; y < target.height; y += 41) {
            for (int x = 2; x < target.width; x += 37) {
                const Sample expected =
                    reference((x + 0.5) / target.width, 1 - (y + 0.5) / target.height);
                const Vec4 texel = pixels.texelAt(x, y);
                const float actual[] = {texel.r, texel.g, texel.b, texel.a};
                for (int c = 0; c < 4; ++c) {
                    // A half float of 11 bits, cut or rounded; single precision inside.
                    const double tolerance =
                        std::fabs(expected.rgba[c]) / 1024 + 1e-5 + expected.error;
                    const double off = static_cast<double>(actual[c]) - expected.rgba[c];
                    wrong += !(std::fabs(off) <= tolerance);
                    ++compared;
                }
            }
        }
        EXPECT_EQ(wrong, 0) << "of " << compared;
    }

    // Every target against the formula, made from the one before as it was read back.
    void expectChain() {
        node.pull();
        expectTargets(SampledFrom(waves), node.imageInput(0)->textureMatrix);
    }
    // The same for a picture that the node read through a matrix.
    void expectTargets(const SampledPicture& source, const Mat4& matrix) {
        const Mat4 maskMatrix = node.imageInput(1) ? node.imageInput(1)->textureMatrix : Mat4{};
        const auto stage = [&](const SampledPicture& from, const Vec2& direction) {
            return [&, from, direction](double u, double v) {
                const auto at = Through(matrix, u, v), maskAt = Through(maskMatrix, u, v);
                return BlurFormula(from, SampledFrom(veil), at[0], at[1], maskAt[0], maskAt[1],
                                   {kSampleSize, direction, node.radius, node.maskAmount});
            };
        };
        expectTarget(*node.blurTargetX, stage(source, {1, 0}));
        const ReferencePicture across = PictureOf(*node.blurTargetX);
        expectTarget(*node.blurTargetY, stage(SampledFrom(across), {0, 1}));
        const ReferencePicture halo = PictureOf(*node.blurTargetY);
        expectTarget(product(), [&](double u, double v) {
            const auto at = Through(matrix, u, v);
            Sample sum = source(at[0], 1 - at[1]);
            return sum.addWeighted(halo.sample(u, 1 - v), static_cast<double>(node.intensity));
        });
    }

    const GL_FrameBuffer& product() const {
        return static_cast<const GL_FrameBuffer&>(*node.images[0]);
    }

    ReferencePicture waves = ReferencePicture::Waves(64, 36, 1);
    ReferencePicture veil = ReferencePicture::Waves(48, 30, 2);
    PictureNode& picture = add<PictureNode>("picture", waves.upload());
    PictureNode& mask = add<PictureNode>("mask", veil.upload());
    ImageNode_Glow& node = add<ImageNode_Glow>("glow");
};

}  // namespace

TEST_F(GlowTest, TakesPicturesOnItsTwoPortsOnly) {
    EXPECT_EQ(node.inputCount, 2);
    EXPECT_THAT(node.inputNames, ElementsAre("Input", "Mask"));
    EXPECT_TRUE(node.canConnect(0, &picture));
    EXPECT_TRUE(node.canConnect(1, &picture));
    EXPECT_FALSE(node.canConnect(2, &picture));
    EXPECT_FALSE(node.canConnect(-1, &picture));
    EXPECT_FALSE(node.canConnect(0, nullptr));
    const TestCamera& camera = add<TestCamera>("camera");
    EXPECT_FALSE(node.canConnect(0, &camera));
    EXPECT_FALSE(node.canConnect(1, &camera));
    EXPECT_FALSE(node.hasError);
}

TEST_F(GlowTest, HasItsParametersAndTargets) {
    EXPECT_THAT(ParameterTable(engine, node),
                ElementsAre("Radius float 0 to 1000, 2 decimals, 10, animatable",
                            "Intensity float 0 to 10, 2 decimals, 1, animatable",
                            "Mask float 0 to 1, 2 decimals, 0, animatable"));
    for (const auto* target : {node.blurTargetX.get(), node.blurTargetY.get()}) {
        EXPECT_EQ(target->width, 960);
        EXPECT_EQ(target->height, 540);
        EXPECT_EQ(target->bitsPerChannel, 16u);
        EXPECT_FALSE(target->hasDepth);
    }
    EXPECT_EQ(product().width, 1920);
    EXPECT_EQ(product().height, 1080);
}

TEST_F(GlowTest, AddsABlurAcrossAndDown) {
    link(picture, node, 0);
    expectChain();
    set(node, "Radius", {54});
    set(node, "Intensity", {2.5f});
    node.updated = false;
    expectChain();
}

TEST_F(GlowTest, WeightsTheHaloByTheMask) {
    link(picture, node, 0);
    link(mask, node, 1);
    set(node, "Mask", {1});
    expectChain();
    set(node, "Mask", {0.375f});
    set(node, "Radius", {0.5f});
    expectChain();
}

TEST_F(GlowTest, TakesBothMatricesAndTheInputsOnceMoreForTheSecondPass) {
    link(picture, node, 0);
    link(mask, node, 1);
    Mat4ComposeTRS(picture.textureMatrix, {0.2f, -0.1f, 0}, {0, 0, 10}, 0.8f);
    Mat4ComposeTRS(mask.textureMatrix, {-0.1f, 0.3f, 0}, {0, 0, 0}, 0.5f);
    set(node, "Mask", {0.75f});
    expectChain();
}

TEST_F(GlowTest, HasTheSourceForItsHaloAtRadiusZero) {
    link(picture, node, 0);
    set(node, "Radius", {0});
    expectChain();
    expectTarget(*node.blurTargetY, [&](double u, double v) {
        // Two samples, one of them at half the size.
        Sample sample = waves.sample(u, 1 - v);
        sample.error = sample.error * 2 + 0.002;
        return sample;
    });
}

TEST_F(GlowTest, TakesNoNoticeOfTheMaskAtMaskZero) {
    link(picture, node, 0);
    node.pull();
    const std::vector<float> without = ReadTarget(product());
    link(mask, node, 1);
    node.pull();
    EXPECT_EQ(ReadTarget(product()), without);
}

TEST_F(GlowTest, HasNoHaloUnderAnEmptyMask) {
    link(picture, node, 0);
    set(node, "Mask", {1});
    node.pull();
    EXPECT_THAT(ReadTarget(*node.blurTargetY), testing::Each(0.0f));
    expectTarget(product(), [&](double u, double v) { return waves.sample(u, 1 - v); });
}

TEST_F(GlowTest, LeavesTheInputUnchangedAtIntensityZero) {
    link(picture, node, 0);
    set(node, "Intensity", {0});
    set(node, "Radius", {300});
    node.pull();
    expectTarget(product(), [&](double u, double v) { return waves.sample(u, 1 - v); });
    Mat4ComposeTRS(picture.textureMatrix, {0.3f, -0.2f, 0}, {0, 0, 15}, 0.6f);
    node.updated = false;
    node.pull();
    expectTarget(product(), [&](double u, double v) {
        const auto at = Through(picture.textureMatrix, u, v);
        return waves.sample(at[0], 1 - at[1]);
    });
}

TEST_F(GlowTest, HasAnErrorWithoutOneOfItsPrograms) {
    struct Case {
        const char* with;
        int shaders;
    };
    // The blur is one text for two programs.
    for (const Case& one :
         {Case{"uniform vec2 Direction", 2}, {"uniform sampler2D blurImage", 1}}) {
        SCOPED_TRACE(one.with);
        const DebugCapture quiet;
        const BrokenShaders broken(one.with);
        EXPECT_TRUE(add<ImageNode_Glow>(one.with).hasError);
        EXPECT_EQ(broken.count(), one.shaders);
    }
}

TEST_F(GlowTest, IsBlackWithoutAnInput) {
    link(picture, node, 0);
    node.pull();
    EXPECT_TRUE(engine.disconnect(node.id, 0));
    node.pull();
    const std::vector<float> pixels = ReadTarget(product());
    float brightest = 0;
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        brightest = std::max({brightest, pixels[i], pixels[i + 1], pixels[i + 2]});
    }
    EXPECT_EQ(brightest, 0.0f);
    add<PictureNode>("empty");
    EXPECT_TRUE(engine.connect("empty", node.id, 0));  // a node that has no picture counts as none
    node.pull();
    EXPECT_EQ(ReadTarget(product()), pixels);
}

// A missing picture is opaque black all over. The blur's second pass still reads the target of the
// first one through a matrix, and so its alpha has edges: those of the last picture there was, and
// all in one corner before the first.
TEST_F(GlowTest, HasTheAlphaOfOpaqueBlackAndItsHaloWithoutAnInput) {
    const SampledPicture black = [](double, double) { return Sample{{0, 0, 0, 1}, 0}; };
    const Mat4 none = {{}};
    link(mask, node, 1);
    set(node, "Radius", {6});
    set(node, "Intensity", {1.5f});
    set(node, "Mask", {0.75f});
    node.pull();
    expectTargets(black, none);

    link(picture, node, 0);
    Mat4ComposeTRS(picture.textureMatrix, {0.4f, -0.3f, 0}, {0, 0, 20}, 0.7f);
    node.pull();
    EXPECT_TRUE(engine.disconnect(node.id, 0));
    node.pull();
    expectTargets(black, picture.textureMatrix);

    PictureNode& empty = add<PictureNode>("empty");  // its matrix counts no more than its picture
    Mat4ComposeTRS(empty.textureMatrix, {0, 0.2f, 0}, {0, 0, 0}, 2);
    link(empty, node, 0);
    node.pull();
    expectTargets(black, picture.textureMatrix);
}

TEST_F(GlowTest, LeavesItsPictureWhileNothingIsRendered) {
    link(picture, node, 0);
    node.pull();
    const std::vector<float> before = ReadTarget(product());
    set(node, "Radius", {200});
    engine.renderEnabled = 0;
    EXPECT_TRUE(node.pull());
    EXPECT_EQ(ReadTarget(product()), before);
}

TEST_F(GlowTest, LeavesBlendingOff) {
    link(picture, node, 0);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
    node.pull();
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_FALSE);
    expectChain();
}

// Its own picture of the frame before, half as bright as the halo gets on it: it grows, and is
// never read while it is drawn.
TEST_F(GlowTest, FeedsBackItsPictureOfTheFrameBefore) {
    const ReferencePicture grey(16, 16, [](int, int) -> Vec4 { return {0.5f, 0.25f, 0, 1}; });
    PictureNode& start = add<PictureNode>("start", grey.upload());
    link(start, node, 0);
    set(node, "Radius", {0});
    set(node, "Intensity", {0.5f});
    node.pull();
    EXPECT_TRUE(engine.disconnect(node.id, 0));
    link(node, node, 0);
    float expected = 0.75f;
    for (int frame = 0; frame < 4; ++frame) {
        const RegionPixels pixels = read(product(), {950, 530, 2, 2});
        EXPECT_NEAR(pixels.at(950, 530)[0], expected, expected / 256) << frame;  // half floats
        expected *= 1.5f;
        node.pull();
    }
}
