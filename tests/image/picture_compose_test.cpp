#include <gmock/gmock.h>

#include <cmath>

#include "gpu/shader_program.h"
#include "image/image_node_compose.h"
#include "image/image_node_transform2d.h"
#include "support/graph_fixture.h"

namespace {

using testing::ElementsAre;

constexpr Region kBand = {0, 400, kFrameWidth, 4};
constexpr Region kColumn = {1000, 0, 4, kFrameHeight};

// Premultiplied colours of all strengths, also brighter than white, a texel for every pixel of a
// band of the frame, so that nothing lies between two texels.
ReferencePicture Speckles(int seed) {
    return {kFrameWidth, kFrameHeight, [seed](int x, int y) -> Vec4 {
                const auto step = [&](int channel, int most) {
                    const unsigned mixed =
                        static_cast<unsigned>(x * 7919 + y * 104729 + seed * 31 + channel * 611) *
                        2654435761u;
                    return static_cast<float>(mixed >> 16 & 1023) / 1024 * static_cast<float>(most);
                };
                return {step(0, 1), step(1, 4), step(2, 1), step(3, 1)};
            }};
}

class ComposeTest : public GraphTest {
  protected:
    using Reference = std::function<double(const Sample& a, const Sample& b, int channel)>;

    // Compares with the reference, which is given what A and B hold at the pixel.
    void expectComposed(const ReferencePicture& a, const ReferencePicture& b,
                        const Reference& reference) {
        for (const Region& region : {kBand, kColumn}) {
            const RegionPixels pixels = draw(node, region);
            int wrong = 0;
            for (int y = region.y; y < region.y + region.height; ++y) {
                for (int x = region.x; x < region.x + region.width; ++x) {
                    const double u = (x + 0.5) / kFrameWidth, v = (y + 0.5) / kFrameHeight;
                    const Sample colorA = a.sample(u, v), colorB = b.sample(u, v);
                    for (int c = 0; c < 4; ++c) {
                        const double expected = reference(colorA, colorB, c);
                        // Two roundings to half floats of 11 bits, of A in the target and of the
                        // sum, and the samples' own errors.
                        const double tolerance =
                            std::fabs(expected) / 512 + 1e-4 + 2 * (colorA.error + colorB.error);
                        const auto actual = static_cast<double>(pixels.at(x, y)[c]);
                        wrong += !(std::fabs(actual - expected) <= tolerance);
                    }
                }
            }
            EXPECT_EQ(wrong, 0);
        }
    }

    static double plainB(const Sample&, const Sample& b, int c) { return b.rgba[c]; }

    ImageNode_Compose& node = add<ImageNode_Compose>("compose");
};

}  // namespace

TEST_F(ComposeTest, TakesPicturesOnBothPorts) {
    EXPECT_EQ(node.inputCount, 2);
    EXPECT_THAT(node.inputNames, ElementsAre("A", "B"));
    EXPECT_TRUE(node.canConnect(0, &node));
    EXPECT_TRUE(node.canConnect(1, &node));
    EXPECT_FALSE(node.canConnect(0, nullptr));
    EXPECT_FALSE(node.hasError);
    EXPECT_TRUE(engine.valuesOf(&node).empty());
}

TEST_F(ComposeTest, LaysBOverAWithPremultipliedColours) {
    const ReferencePicture a = ReferencePicture::Waves(64, 36, 1);
    const ReferencePicture b = ReferencePicture::Waves(48, 30, 2);
    link(add<PictureNode>("a", a.upload()), node, 0);
    link(add<PictureNode>("b", b.upload()), node, 1);
    expectComposed(a, b, [](const Sample& under, const Sample& over, int c) {
        return over.rgba[c] + under.rgba[c] * (1 - over.rgba[3]);
    });
}

TEST_F(ComposeTest, TakesEveryPixelOfPicturesOfItsOwnSize) {
    const ReferencePicture a = Speckles(1), b = Speckles(2);
    link(add<PictureNode>("a", a.upload()), node, 0);
    link(add<PictureNode>("b", b.upload()), node, 1);
    const RegionPixels pixels = draw(node, kBand);
    int wrong = 0;
    for (int x = 0; x < kBand.width; ++x) {
        for (int y = kBand.y; y < kBand.y + kBand.height; ++y) {
            const double u = (x + 0.5) / kFrameWidth, v = (y + 0.5) / kFrameHeight;
            const Sample under = a.sample(u, v), over = b.sample(u, v);
            for (int c = 0; c < 4; ++c) {
                const double expected = over.rgba[c] + under.rgba[c] * (1 - over.rgba[3]);
                // Two roundings to 11 bits, and a place that single precision moves by up to a
                // 5000th of a texel towards a neighbour that may lie 4 away.
                const double tolerance = expected / 512 + 0.002;
                wrong +=
                    !(std::fabs(static_cast<double>(pixels.at(x, y)[c]) - expected) <= tolerance);
            }
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(ComposeTest, LeavesBAloneOnTransparentBlackWithoutA) {
    const ReferencePicture b = ReferencePicture::Waves(48, 30, 3);
    link(add<PictureNode>("b", b.upload()), node, 1);
    expectComposed(b, b, plainB);
}

TEST_F(ComposeTest, LeavesAAloneWithoutB) {
    const ReferencePicture a = ReferencePicture::Waves(48, 30, 4);
    link(add<PictureNode>("a", a.upload()), node, 0);
    link(add<PictureNode>("empty"), node, 1);  // a node that has no picture counts as none
    expectComposed(a, a, plainB);
}

TEST_F(ComposeTest, IsTransparentBlackWithoutInputs) {
    PictureNode& a = add<PictureNode>("a", ReferencePicture::Waves(8, 8, 1).upload());
    link(a, node, 0);
    draw(node);
    EXPECT_TRUE(engine.disconnect(node.id, 0));
    EXPECT_THAT(draw(node, kBand).rgba, testing::Each(0.0f));
}

TEST_F(ComposeTest, StretchesAnInputWhateverItsTextureMatrixSays) {
    const ReferencePicture a = ReferencePicture::Waves(64, 36, 5);
    PictureNode& picture = add<PictureNode>("a", a.upload());
    auto& scaled = add<ImageNode_Transform2D>("scaled");
    link(picture, scaled, 0);
    set(scaled, "Scale", {3});
    set(scaled, "Position", {0.125f, 0.75f});
    link(scaled, node, 1);
    expectComposed(a, a, plainB);
    EXPECT_EQ(scaled.textureMatrix[0], 3.0f);
}

TEST_F(ComposeTest, LeavesItsPictureWhileNothingIsRendered) {
    link(add<PictureNode>("b", ReferencePicture::Waves(8, 8, 1).upload()), node, 1);
    const RegionPixels before = draw(node, kBand);
    EXPECT_TRUE(engine.disconnect(node.id, 1));
    engine.renderEnabled = 0;
    EXPECT_EQ(draw(node, kBand).rgba, before.rgba);
}

// Each frame lays a quarter of white over what the frame before left.
TEST_F(ComposeTest, FeedsBackItsPictureOfTheFrameBefore) {
    const ReferencePicture quarter(16, 16, [](int, int) -> Vec4 {
        return {0.25f, 0, 0.25f, 0.25f};
    });
    link(node, node, 0);
    const Region middle = {950, 530, 8, 8};
    link(add<PictureNode>("b", quarter.upload()), node, 1);
    double expected = 0;
    for (int frame = 0; frame < 6; ++frame) {
        expected = 0.25 + expected * 0.75;
        const RegionPixels pixels = draw(node, middle);
        // Roundings to 11 bits in every frame.
        EXPECT_NEAR(pixels.at(954, 534)[0], expected, 0.003) << frame;
        EXPECT_NEAR(pixels.at(954, 534)[3], expected, 0.003) << frame;
        EXPECT_EQ(pixels.at(954, 534)[1], 0);
    }
}

TEST_F(ComposeTest, FeedsBackThroughANodeThatOnlyPassesThePictureOn) {
    const ReferencePicture quarter(16, 16, [](int, int) -> Vec4 { return {0.25f, 0, 0, 0.25f}; });
    auto& pass = add<ImageNode_Transform2D>("pass");
    link(node, pass, 0);
    link(pass, node, 0);
    link(add<PictureNode>("b", quarter.upload()), node, 1);
    const Region middle = {950, 530, 8, 8};
    double expected = 0;
    for (int frame = 0; frame < 4; ++frame) {
        expected = 0.25 + expected * 0.75;
        pass.updated = false;
        EXPECT_NEAR(draw(node, middle).at(954, 534)[0], expected, 0.003) << frame;
    }
}
