#include "editor/ui_viewer_node.h"

#include <gmock/gmock.h>

#include <cmath>

#include "gpu/shader_program.h"
#include "support/graph_fixture.h"

namespace {

using testing::Each;

class ViewerNodeTest : public GraphTest {
  protected:
    static constexpr int kWidth = 96, kHeight = 54;

    RegionPixels present() {
        fill(0.75f);  // the viewer clears what was there
        viewer.DrawToTarget();
        return read(target, {0, 0, kWidth, kHeight});
    }
    void fill(float value) {
        target.Bind();
        glClearColor(value, value, value, value);
        glClear(GL_COLOR_BUFFER_BIT);
        GL_FrameBuffer::Unbind();
    }

    // Source-alpha blending over transparent black: all four channels times the alpha.
    static void expectBlended(const RegionPixels& pixels, const ReferencePicture& picture,
                              const Mat4& matrix) {
        const auto element = [&](int i) { return static_cast<double>(matrix[i]); };
        int wrong = 0;
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const double u = (x + 0.5) / kWidth, v = (y + 0.5) / kHeight;
                const Sample sample = picture.sample(element(0) * u + element(4) * v + element(12),
                                                     element(1) * u + element(5) * v + element(13));
                for (int c = 0; c < 4; ++c) {
                    const double expected = sample.rgba[c] * sample.rgba[3];
                    // A half float's 11 bits, and the sample's error in the colour and in the alpha
                    // that multiplies it, both at most 1.
                    const double tolerance = expected / 1024 + 1e-5 + 2 * sample.error;
                    const auto actual = static_cast<double>(pixels.at(x, y)[c]);
                    wrong += !(std::fabs(actual - expected) <= tolerance);
                }
            }
        }
        EXPECT_EQ(wrong, 0);
    }

    GL_FrameBuffer target{kWidth, kHeight, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border};
    ReferencePicture picture = ReferencePicture::Waves(24, 14, 3);
    PictureNode& source = add<PictureNode>("source", picture.upload());
    UI_ViewerNode& viewer = add<UI_ViewerNode>("viewer", &target);
};

}  // namespace

TEST_F(ViewerNodeTest, TakesOnePicture) {
    EXPECT_EQ(viewer.getType(), kOutputNode);
    EXPECT_EQ(viewer.inputCount, 1);
    EXPECT_TRUE(viewer.canConnect(0, &source));
    EXPECT_FALSE(viewer.canConnect(0, nullptr));
    EXPECT_FALSE(viewer.canConnect(0, &viewer));
    EXPECT_TRUE(viewer.viewerShader->linked);
    EXPECT_THAT(engine.outputs, testing::ElementsAre(&viewer));
}

TEST_F(ViewerNodeTest, NamesTheTypeOfItsInput) {
    std::string name;
    EXPECT_TRUE(viewer.inputTypeName(0, name));
    EXPECT_EQ(name, "Image");
}

TEST_F(ViewerNodeTest, BlendsByAlphaOverTransparentBlack) {
    link(source, viewer, 0);
    expectBlended(present(), picture, {});
}

TEST_F(ViewerNodeTest, HonoursTheInputsTextureMatrix) {
    source.textureMatrix[0] = 1.5f;
    source.textureMatrix[5] = 0.5f;
    source.textureMatrix[1] = 0.125f;
    source.textureMatrix[12] = -0.25f;
    source.textureMatrix[13] = 0.375f;
    link(source, viewer, 0);
    expectBlended(present(), picture, source.textureMatrix);
}

TEST_F(ViewerNodeTest, LeavesATransparentTargetWithoutAnInput) {
    EXPECT_THAT(present().rgba, Each(0.0f));
}

TEST_F(ViewerNodeTest, LeavesATransparentTargetWithoutAPicture) {
    link(source, viewer, 0);
    source.images[0] = nullptr;
    EXPECT_THAT(present().rgba, Each(0.0f));
}

TEST_F(ViewerNodeTest, DrawsNothingWithoutATarget) {
    link(source, viewer, 0);
    viewer.target = nullptr;
    EXPECT_THAT(present().rgba, Each(0.75f));
}

TEST_F(ViewerNodeTest, IsPresentedByTheEnginesUpdate) {
    link(source, viewer, 0);
    engine.update(0);
    expectBlended(read(target, {0, 0, kWidth, kHeight}), picture, {});
    EXPECT_TRUE(source.updated);
}

TEST_F(ViewerNodeTest, LeavesBlendingOffAndNothingBound) {
    link(source, viewer, 0);
    present();
    GLint program = -1, framebuffer = -1;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &framebuffer);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_EQ(program, 0);
    EXPECT_EQ(framebuffer, 0);
}
