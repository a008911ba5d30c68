// What is saved, loaded and saved again is the same, byte by byte.
#include <random>

#include "core/image_node_sequence.h"
#include "support/project_loads.h"

namespace {

class RoundTripTest : public ProjectTest {
  protected:
    int any(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    float anyFloat() { return std::uniform_real_distribution<float>(-100, 100)(random_); }
    std::string anyId() { return "N" + std::to_string(any(0, 30)); }

    void setValues(TestNode& node) {
        node.on = any(0, 1) == 1;
        node.mode = any(-5, 5);
        node.size = anyFloat();
        node.place[1] = anyFloat();
        node.tint[2] = anyFloat();
        node.center[0] = anyFloat();
        node.text.assign(static_cast<std::size_t>(any(0, 40)), static_cast<char>(any(1, 255)));
    }
    void animate(Engine& engine, const std::string& id) {
        const char* names[] = {"Size", "Place", "Tint", "Translate.Y", "Frozen"};
        engine.time = anyFloat();
        if (!engine.addAnimation(id, names[any(0, 4)])) return;
        for (const auto& track : *engine.tracks.find(id)) {
            for (int i = any(0, 5); i > 0; --i) track->insertKey(anyFloat(), anyFloat());
            track->setKeyMode(0, any(0, 3));
            track->reserved[0] = static_cast<std::uint32_t>(any(0, 99));
        }
    }
    // Any gestures that an author could make, in any order.
    void edit(TestEngine& engine) {
        const char* types[] = {"Node", "Node", "Node", "Camera", "Output", "Vanished"};
        for (int i = any(0, 150); i > 0; --i) {
            const std::string id = anyId();
            switch (any(0, 7)) {
                case 0:
                case 1:
                    engine.createNode(id, types[any(0, 5)]);
                    break;
                case 2:
                    engine.connect(anyId(), id, any(0, 3));
                    break;
                case 3:
                    if (any(0, 3) == 0) engine.deleteNode(id);
                    break;
                case 4:
                    engine.disconnect(id, any(0, 3));
                    break;
                case 5:
                    engine.typeCounters[types[any(0, 5)]] = any(0, 50);
                    break;
                case 6:
                    animate(engine, id);
                    break;
                default:
                    if (auto* node = dynamic_cast<TestNode*>(engine.findNode(id))) setValues(*node);
                    break;
            }
        }
    }
    std::mt19937 random_{11};
};

TEST_F(RoundTripTest, GivesTheSameBytesForRandomScenes) {
    int withNodes = 0;
    for (int round = 0; round < 150; ++round) {
        TestEngine first;
        first.lengthText = std::to_string(any(0, 900));
        edit(first);
        const std::string bytes = saved(first);
        TestEngine second;
        ASSERT_TRUE(loadInto(second, bytes, true, ""));
        ASSERT_EQ(saved(second), bytes) << "round " << round;
        if (first.nodes.size() > 5) ++withNodes;
    }
    EXPECT_GT(withNodes, 50);
}

TEST_F(RoundTripTest, GivesTheSameBytesAfterFurtherEditsOfALoadedScene) {
    for (int round = 0; round < 50; ++round) {
        TestEngine first;
        edit(first);
        TestEngine second;
        loadInto(second, saved(first), true, "");
        edit(second);
        const std::string bytes = saved(second);
        TestEngine third;
        loadInto(third, bytes, true, "");
        ASSERT_EQ(saved(third), bytes) << "round " << round;
    }
}

TEST_F(RoundTripTest, KeepsAllTwentyTextsOfASequencer) {
    const auto addSequencer = [](Engine& engine) -> ImageNode_Sequence& {
        engine.addNode("S", std::make_unique<ImageNode_Sequence>(&engine, "S"));
        return dynamic_cast<ImageNode_Sequence&>(*engine.findNode("S"));
    };
    ImageNode_Sequence& sequence = addSequencer(engine_);
    for (std::size_t i = 0; i < 20; ++i) sequence.startTexts[i] = std::to_string(i * 1000);
    const std::string bytes = saved(engine_);
    TestEngine second;
    ImageNode_Sequence& again = addSequencer(second);
    loadInto(second, bytes, false, "");
    EXPECT_EQ(again.startTexts, sequence.startTexts);
}

}  // namespace
