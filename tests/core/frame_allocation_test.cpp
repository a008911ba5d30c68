// The engine's part of a frame does not allocate.
#include <gtest/gtest.h>

#include "support/allocation_count.h"
#include "support/core_nodes.h"

namespace {

// Runs without taking notes.
class QuietNode : public TestNode {
  public:
    using TestNode::TestNode;
    bool process() override {
        ++processed;
        return true;
    }
    bool postProcess() override { return true; }
};

class QuietOutput : public TestOutput {
  public:
    using TestOutput::TestOutput;
    bool process() override { return true; }
    void present() override {}
};

class FrameAllocationTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!kCountsAllocations) GTEST_SKIP() << "allocations are not counted";
    }
    FrameAllocationTest() {
        for (int i = 0; i < kNodes; ++i) {
            const std::string id = "A" + std::to_string(i);
            engine_.addNode(id, std::make_unique<QuietNode>(&engine_, id));
            engine_.addAnimation(id, "Tint");
            for (std::size_t channel = 0; channel < 4; ++channel) {
                engine_.track(id, channel).insertKey(10, 1);
            }
            // Keys out of order take the plain way.
            engine_.addAnimation(id, "Size");
            engine_.track(id, 4).setKeys({{0, 5, 1}, {1, 3, 1}, {2, 9, 1}});
            if (i > 0) engine_.connect("A" + std::to_string(i - 1), id, 0);
        }
        engine_.addNode("Out", std::make_unique<QuietOutput>(&engine_, "Out"));
        engine_.connect("A" + std::to_string(kNodes - 1), "Out", 0);
        engine_.music = std::make_unique<MusicPlayer>(nullptr);
        engine_.musicFile = "a name that is too long to be kept without an allocation.ogg";
    }

    static constexpr int kNodes = 50;
    TestEngine engine_;
};

TEST_F(FrameAllocationTest, AllocatesNothingWhilePlayingAndSeeking) {
    engine_.update(0);
    const std::size_t before = AllocationCount();
    for (int frame = 1; frame < 100; ++frame) engine_.update(static_cast<float>(frame) / 7);
    for (const float time : {5.0f, 0.0f, 20.0f, 1.0f, 0.5f}) engine_.update(time);
    EXPECT_EQ(AllocationCount() - before, 0u);
    EXPECT_EQ(engine_.node("A0").processed, 105);
}

TEST_F(FrameAllocationTest, CountsWhatAnEditCosts) {
    engine_.update(0);
    engine_.track("A0").insertKey(3, 1);
    const std::size_t before = AllocationCount();
    engine_.update(1);
    EXPECT_GT(AllocationCount() - before, 0u) << "else this test would count nothing at all";
}

}  // namespace
