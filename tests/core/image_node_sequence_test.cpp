#include "core/image_node_sequence.h"

#include <gmock/gmock.h>

#include "support/core_nodes.h"

namespace {

class SequenceTest : public ::testing::Test {
  protected:
    SequenceTest() {
        engine_.addNode("S", std::make_unique<ImageNode_Sequence>(&engine_, "S"));
        sequence_ = dynamic_cast<ImageNode_Sequence*>(engine_.findNode("S"));
    }
    TestNode& feed(int port) {
        const std::string id = "A" + std::to_string(port);
        TestNode& node = engine_.makeNode(id);
        for (auto& image : node.images) image = std::make_shared<FakeImage>();
        node.textureMatrix[0] = 5;
        engine_.connect(id, "S", port);
        return node;
    }
    void start(int port, const std::string& milliseconds) {
        sequence_->startTexts[static_cast<std::size_t>(port)] = milliseconds;
    }
    bool pullAt(float time) {
        engine_.update(time);
        return sequence_->pull();
    }

    TestEngine engine_;
    ImageNode_Sequence* sequence_ = nullptr;
};

TEST_F(SequenceTest, HasTenPortsAndTwentyTexts) {
    EXPECT_EQ(sequence_->inputCount, 10);
    EXPECT_EQ(sequence_->getInputName(9), "input9");
    const auto values = engine_.valuesOf(sequence_);
    ASSERT_EQ(values.size(), 20u);
    EXPECT_EQ(values[0]->name, "Start 00");
    EXPECT_EQ(values[9]->name, "Start 09");
    EXPECT_EQ(values[10]->name, "Start 10");
    EXPECT_EQ(values[19]->name, "Start 19");
    EXPECT_EQ(dynamic_cast<ValueString&>(*values[19]).defaultValue, "0");
}

TEST_F(SequenceTest, ReadsItsStartsOneFrameLate) {
    TestNode& first = feed(0);
    TestNode& second = feed(1);
    start(1, "2000");
    // All starts are zero still, so that the second branch runs; the picture is the first's.
    EXPECT_TRUE(pullAt(1));
    EXPECT_EQ(first.processed, 0);
    EXPECT_EQ(second.processed, 1);
    EXPECT_EQ(sequence_->images, first.images);
    EXPECT_EQ(sequence_->starts[1], 2.0f);
    EXPECT_TRUE(pullAt(1.5f));
    EXPECT_EQ(first.processed, 1);
    EXPECT_EQ(second.processed, 1);
}

TEST_F(SequenceTest, ShowsAndRunsOnlyTheHighestPortThatHasBegun) {
    TestNode& first = feed(0);
    TestNode& second = feed(4);
    TestNode& third = feed(9);
    start(4, "1000");
    start(9, "2500.5");
    pullAt(0);
    first.processed = second.processed = third.processed = 0;
    pullAt(0.5f);
    EXPECT_EQ(sequence_->images, first.images);
    pullAt(1);
    EXPECT_EQ(sequence_->images, second.images) << "exactly at its start";
    pullAt(2.5f);
    EXPECT_EQ(sequence_->images, second.images);
    pullAt(2.501f);
    EXPECT_EQ(sequence_->images, third.images);
    EXPECT_EQ(first.processed, 1);
    EXPECT_EQ(second.processed, 2);
    EXPECT_EQ(third.processed, 1);
}

TEST_F(SequenceTest, PrefersALaterPortWithAnEarlierTime) {
    TestNode& first = feed(0);
    TestNode& second = feed(1);
    start(0, "3000");
    start(1, "1000");
    pullAt(0);
    pullAt(4);
    EXPECT_EQ(sequence_->images, second.images);
    EXPECT_EQ(first.processed, 0);
}

TEST_F(SequenceTest, NeverReadsItsTextsWithAllPortsEmpty) {
    start(0, "3000");
    EXPECT_TRUE(pullAt(5));
    EXPECT_TRUE(sequence_->updated);
    EXPECT_EQ(sequence_->starts[0], 0.0f);
}

TEST_F(SequenceTest, KeepsItsPictureBeforeEveryStart) {
    TestNode& node = feed(2);
    start(2, "1000");
    pullAt(2);
    ASSERT_EQ(sequence_->images, node.images);
    const int runs = node.processed;
    EXPECT_TRUE(pullAt(0.5f));
    EXPECT_EQ(sequence_->images, node.images);
    EXPECT_EQ(node.processed, runs);
}

TEST_F(SequenceTest, GivesTheStartsTenToNineteenNoEffect) {
    TestNode& node = feed(0);
    for (int i = 10; i < 20; ++i) start(i, "999999");
    pullAt(0);
    pullAt(1);
    EXPECT_EQ(sequence_->images, node.images);
    EXPECT_EQ(node.processed, 2);
}

TEST_F(SequenceTest, DoesNotTakeTheTextureMatrix) {
    feed(0);
    pullAt(1);
    EXPECT_EQ(sequence_->textureMatrix[0], 1.0f);
}

TEST_F(SequenceTest, PassesOverADisabledWinnerButShowsItsPicture) {
    TestNode& node = feed(0);
    node.disabled = 1;
    pullAt(1);
    EXPECT_EQ(node.processed, 0);
    EXPECT_EQ(sequence_->images, node.images);
}

TEST_F(SequenceTest, TakesNonsenseForZero) {
    TestNode& node = feed(0);
    start(0, "soon");
    pullAt(0);
    pullAt(0);
    EXPECT_EQ(sequence_->images, node.images);
}

TEST_F(SequenceTest, DoesNothingInTheLoadPass) {
    feed(0);
    start(0, "3000");
    engine_.refreshNodes();
    EXPECT_EQ(sequence_->starts[0], 0.0f);
    EXPECT_EQ(sequence_->images[0], nullptr);
}

}  // namespace
