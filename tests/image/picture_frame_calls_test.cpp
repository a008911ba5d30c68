// What a frame of the nodes that draw many times does not ask the driver for.
#include "image/image_node_holo_ball.h"
#include "image/parallax_fixture.h"
#include "support/gl_call_count.h"

using FrameCalls = ParallaxTest;

// The balls stand in two programs, of the walls and of the slices.
TEST_F(FrameCalls, OfAHologramLookUpNoNameAndGiveTheBallsOnceToEachProgram) {
    auto& holo = add<ImageNode_HoloBall>("holo");
    const Region few = {900, 500, 16, 16};
    draw(holo, few);
    holo.updated = false;
    const GlCallCount calls;
    draw(holo, few);
    EXPECT_EQ(calls.lookups(), 0);
    EXPECT_EQ(calls.uniforms(20), 2);
    EXPECT_EQ(calls.madeBuffers(), 0);
    EXPECT_EQ(calls.filledBuffers(), 0);
}

TEST_F(FrameCalls, OfASceneOfFortyLayersMakeNoBufferAndLookUpNoName) {
    writePicture("plain.png", LayerPicture::Plain({90, 120, 150, 200}));
    writePicture("Neon.png", LayerPicture::Plain({200, 40, 90, 255}));
    std::vector<ParallaxRecord> records;
    for (int i = 0; i < 40; ++i) {
        const float x = static_cast<float>(i) * 8;
        records.push_back(still(i % 2 == 0 ? "plain.png" : "Neon.png", i % 3 == 0 ? 7 : 2,
                                StillKey(x, x, x + 1600, x + 900, 0.8f)));
    }
    writeScene("forty.scn", records);
    setScene(0, "forty.scn");
    const Region few = {900, 500, 16, 16};
    run(0, few);
    ASSERT_EQ(layerCount(), 40u);
    const GlCallCount calls;
    run(0.1f, few);
    EXPECT_EQ(calls.madeBuffers(), 0);
    EXPECT_EQ(calls.filledBuffers(), 0);
    EXPECT_EQ(calls.lookups(), 0);
}

TEST_F(FrameCalls, AreCounted) {
    const GlCallCount calls;
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof buffer, &buffer, GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glDeleteBuffers(1, &buffer);
    const ImageNode_HoloBall other(&engine, "other");
    EXPECT_GT(calls.madeBuffers(), 0) << "else these tests would count nothing at all";
    EXPECT_GT(calls.filledBuffers(), 0);
    EXPECT_GT(calls.lookups(), 0);
}
