// A frame of a node that draws costs no allocation of ours.
#include <gtest/gtest.h>

#include "image/image_node_compose.h"
#include "image/image_node_glow.h"
#include "image/image_node_holo_ball.h"
#include "image/image_node_motion_blur.h"
#include "image/image_node_random_dots.h"
#include "image/radiosity_fixture.h"
#include "support/allocation_count.h"

namespace {

class FrameAllocation : public RadiosityTest {
  protected:
    void SetUp() override {
        RadiosityTest::SetUp();
        if (!kCountsAllocations) GTEST_SKIP() << "allocations are not counted";
    }

    // Of one frame, after those in which a driver and a node may still prepare themselves.
    std::size_t allocationsOfAFrame(ImageNode& drawn) {
        constexpr int kFirstFrames = 3;
        for (int frame = 0; frame < kFirstFrames; ++frame) run(drawn);
        const std::size_t before = AllocationCount();
        run(drawn);
        return AllocationCount() - before;
    }

    std::shared_ptr<GL_Image> picture = ReferencePicture::Waves(64, 36, 1).upload();

  private:
    // As the program would, of a small part of the frame.
    void run(ImageNode& drawn) {
        engine.time += 0.25f;
        glEnable(GL_SCISSOR_TEST);
        glScissor(900, 500, 16, 16);
        drawn.pull();
        glDisable(GL_SCISSOR_TEST);
    }
};

}  // namespace

TEST_F(FrameAllocation, OfTheRendererIsNone) {
    buildRoom();
    const Material veil = surface(0.5f, MaterialData::kAdd);
    veil->diffuseImage = picture;
    addObject(SquareMesh(), veil, placed({0.8f, 0.6f, 1}, {0, 0, 0}, 0.6f));
    link(add<PictureNode>("environment", picture), node, Renderer::kEnvironmentPort);
    EXPECT_EQ(allocationsOfAFrame(node), 0u);
    set(node, "DOF", {0.2f});
    node.aoEnable = node.giEnable = true;
    EXPECT_EQ(allocationsOfAFrame(node), 0u);
    node.giSamples = "a text that is too long to be kept without an allocation, and no number";
    EXPECT_EQ(allocationsOfAFrame(node), 0u);
}

TEST_F(FrameAllocation, OfTheEffectsIsNone) {
    auto& dots = add<ImageNode_RandomDots>("dots");
    auto& holo = add<ImageNode_HoloBall>("holo");
    auto& glow = add<ImageNode_Glow>("glow");
    auto& compose = add<ImageNode_Compose>("compose");
    auto& blur = add<ImageNode_MotionBlur>("blur");
    link(holo, glow, ImageNode_Glow::kInputPort);
    link(dots, glow, ImageNode_Glow::kMaskPort);
    link(glow, compose, 0);
    link(dots, compose, 1);
    link(compose, blur, 0);
    set(blur, "Samples", {0});
    set(glow, "Mask", {0.5f});
    set(holo, "resize", {1});
    set(holo, "MetaballFX", {0.5f});
    EXPECT_EQ(allocationsOfAFrame(blur), 0u);
}

TEST_F(FrameAllocation, CountsWhatATargetCosts) {
    const std::size_t before = AllocationCount();
    MakeFrameTarget();
    EXPECT_GT(AllocationCount() - before, 0u) << "else this test would count nothing at all";
}
