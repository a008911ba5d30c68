// The drawing of scenes against the same formulas in double precision.
#include <gtest/gtest.h>

#include "parallax_fixture.h"
#include "support/allocation_count.h"
#include "support/gl_state.h"

namespace {

const LayerPicture kFirst(1), kSecond(2), kThird(3), kFourth(4, 200);

// A slot's scene with its own settings.
ReferenceScene Scene(std::vector<ReferenceLayer> layers, std::size_t slot = 0) {
    ReferenceScene scene;
    scene.layers = std::move(layers);
    scene.settings.slot = slot;
    return scene;
}

const std::vector<ParallaxKey> kWhole = {StillKey(0, 0, 1920, 1080)};
const std::vector<ParallaxKey> kPart = {StillKey(301.25f, 100.25f, 1500.75f, 900.75f, 0.7f)};

class ParallaxLayers : public ParallaxTest {};
class ParallaxChain : public ParallaxTest {};

TEST_F(ParallaxLayers, LiesOverWhatIsBehindInModeTwo) {
    const ReferenceScene scene =
        Scene({{"a.png", 2, &kFirst, kPart}, {"Neon b.png", 2, &kSecond, kWhole, true}});
    use(scene);
    expectLayers(scene, 0);
    expectLayers(scene, 0, {700, 0, 2, kFrameHeight}, 1);
}

TEST_F(ParallaxLayers, ScreensInAnyOtherMode) {
    for (const std::int32_t mode : {0, 1, 3, 6, 7, 27, 29, -1}) {
        const ReferenceScene scene = Scene({{"Neon a.png", mode, &kFirst, kPart, true},
                                            {"Neon b.png", 2, &kSecond, kWhole, true}});
        use(scene, "mode" + std::to_string(mode) + ".scn");
        expectLayers(scene, 0, {0, 300, kFrameWidth, 1}, 1);
    }
}

TEST_F(ParallaxLayers, DrawsFromTheLastLayerToTheFirst) {
    ReferenceScene scene =
        Scene({{"a.png", 2, &kFirst, kPart},
               {"b.png", 7, &kSecond, {StillKey(600.25f, 0.25f, 1800.75f, 1080)}},
               {"c.png", 2, &kThird, kWhole}});
    use(scene);
    expectLayers(scene, 0);
}

TEST_F(ParallaxLayers, MayLieOutsideOfTheFrameAndUpsideDown) {
    const ReferenceScene scene =
        Scene({{"a.png", 2, &kFirst, {StillKey(-500.25f, 1300.75f, 2200.25f, -300.25f)}},
               {"b.png", 2, &kSecond, {StillKey(2000, 0, 3000, 1080)}}});
    use(scene);
    expectLayers(scene, 0);
}

TEST_F(ParallaxLayers, MovesWithItsKeys) {
    std::vector<ParallaxKey> moving;
    for (int i = 0; i < 40; ++i) {
        const auto x = static_cast<float>(i) * 11.25f;
        moving.push_back({x, 3 * x / 8, x + 700, 900 - x / 4, 0.3f + 0.015f * static_cast<float>(i),
                          static_cast<float>(i) / 60.0f, static_cast<std::uint32_t>(i)});
    }
    ReferenceScene scene = Scene({{"Neon a.png", 2, &kFirst, moving, true}});
    scene.settings.globalAlpha = 0.75;
    use(scene);
    for (const double frame : {-5.0, 0.5, 1.25, 12.5, 20.75, 37.5, 39.5, 200.0}) {
        scene.settings.seconds = frame / 60;
        expectLayers(scene, static_cast<float>(frame / 60), {0, 300, kFrameWidth, 1}, 1);
    }
}

TEST_F(ParallaxLayers, BrightensByDodgeInTheTwelfthSlot) {
    ReferenceScene scene =
        Scene({{"Neon front.png", 7, &kThird, kPart, true},
               {"Neon dodge.png", 27, &kFirst, kPart, true},
               {"dodge.png", 27, &kSecond, {StillKey(0, 0, 1000.25f, 1080, 0.5f)}},
               {"Neon back.png", 2, &kFourth, kWhole, true}},
              11);
    scene.settings.background = {0.25, 0.125, 0.5, 1};
    use(scene);
    // The neon behind is read through the layer's own coordinates, so that all of it is needed.
    run(0, {});
    for (const int attachment : {0, 1}) {
        const Region band = {0, 300, kFrameWidth, 2};
        const RegionPixels pixels = readAttachment(*node.layerBuffers[0], attachment, band);
        // A division by down to 0.3 makes differences larger.
        EXPECT_EQ(countWrong(pixels, 1, 2 * kLayerTolerance,
                             [&](int x, int y) {
                                 return scene.layersAt(x, y)[static_cast<std::size_t>(attachment)];
                             }),
                  0)
            << attachment;
    }
}

// Numbers by hand: dodge(0.4, 0.25) = 0.4 / 0.75 at the layer's opacity, whatever its alpha.
TEST_F(ParallaxLayers, DodgeTakesTheNeonAtTheOpacityOfTheLayer) {
    const LayerPicture half = LayerPicture::Plain({255, 255, 255, 128});
    const LayerPicture grey = LayerPicture::Plain({102, 102, 102, 255});
    for (const float opacity : {1.0f, 0.5f}) {
        ReferenceScene scene =
            Scene({{"Neon half.png", 27, &half, {StillKey(0, 0, 1920, 1080, opacity)}, true},
                   {"Neon grey.png", 2, &grey, kWhole, true}},
                  11);
        use(scene, opacity == 1 ? "one.scn" : "half.scn");
        const Region pixel = {960, 540, 2, 2};
        run(0, pixel);
        const double alpha = 128.0 / 255 * static_cast<double>(opacity);
        const double glow = 128.0 / 255 * static_cast<double>(opacity) * alpha;
        const double expected = 0.4 / (1 - glow) * static_cast<double>(opacity) +
                                0.4 * (1 - static_cast<double>(opacity));
        const RegionPixels pixels = readAttachment(*node.layerBuffers[1], 1, pixel);
        EXPECT_NEAR(pixels.at(960, 540)[0], expected, kLayerTolerance);
        EXPECT_NEAR(pixels.at(960, 540)[3], alpha, kLayerTolerance);
    }
}

TEST_F(ParallaxLayers, DodgeWithWhiteIsWhite) {
    const LayerPicture white = LayerPicture::Plain({255, 255, 255, 255});
    const LayerPicture grey = LayerPicture::Plain({51, 102, 0, 255});
    ReferenceScene scene = Scene({{"Neon white.png", 27, &white, {StillKey(0, 0, 960, 1080)}, true},
                                  {"Neon grey.png", 2, &grey, kWhole, true}},
                                 11);
    use(scene);
    const Region row = {0, 500, kFrameWidth, 1};
    run(0, row);
    const RegionPixels pixels = readAttachment(*node.layerBuffers[1], 0, row);
    for (int c = 0; c < 4; ++c) EXPECT_EQ(pixels.at(200, 500)[c], 1.0f);
    EXPECT_NEAR(pixels.at(1500, 500)[0], 0.2, kLayerTolerance);
    EXPECT_NEAR(pixels.at(1500, 500)[1], 0.4, kLayerTolerance);
}

TEST_F(ParallaxLayers, DodgeIsAScreenInEveryOtherSlot) {
    for (const std::size_t slot : {std::size_t{10}, std::size_t{12}}) {
        const ReferenceScene scene =
            Scene({{"a.png", 27, &kFirst, kPart}, {"b.png", 2, &kSecond, kWhole}}, slot);
        use(scene, "slot" + std::to_string(slot) + ".scn");
        expectLayers(scene, 0, {0, 300, kFrameWidth, 1}, 1);
        node.scnFiles[slot].clear();
        load();
    }
}

TEST_F(ParallaxLayers, ShowsTheInputThroughMasks) {
    const ReferencePicture fx = ReferencePicture::Waves(64, 36, 3);
    ReferenceScene scene = Scene(
        {{"Neon Screen-Mask a.png", 2, &kFirst, kPart, true, true},
         {"screens-mask b.png", 7, &kThird, {StillKey(100.25f, 0, 900.25f, 1080)}, false, true},
         {"Neon b.png", 2, &kSecond, kWhole, true}});
    scene.settings.fxIntensity = 0.6;
    scene.settings.fx = &fx;
    scene.settings.fxMatrix.m[0] = 0.75f;
    scene.settings.fxMatrix.m[5] = -0.5f;
    scene.settings.fxMatrix.m[10] = 0;
    scene.settings.fxMatrix.m[12] = 0.125f;
    scene.settings.fxMatrix.m[13] = 0.875f;
    use(scene);
    PictureNode& input = add<PictureNode>("fx", fx.upload());
    input.textureMatrix = scene.settings.fxMatrix;
    link(input, node, 0);
    expectLayers(scene, 0);
    expectLayers(scene, 0, {850, 0, 2, kFrameHeight}, 1);
    // Beyond its slider it makes the neon of a mask brighter too.
    scene.settings.fxIntensity = 1.5;
    set(node, "FX Intensity", {1.5f});
    expectLayers(scene, 0, {0, 300, kFrameWidth, 1}, 1);
}

TEST_F(ParallaxLayers, ShowsTheInputThroughAMaskThatDodges) {
    const ReferencePicture fx = ReferencePicture::Waves(64, 36, 3);
    ReferenceScene scene = Scene(
        {{"Screen Mask a.png", 27, &kFirst, kPart, false, true}, {"b.png", 2, &kSecond, kWhole}},
        11);
    scene.settings.fxIntensity = 0.5;
    scene.settings.fx = &fx;
    use(scene);
    link(add<PictureNode>("fx", fx.upload()), node, 0);
    run(0, {});
    const Region row = {0, 300, kFrameWidth, 2};
    // See the dodge above.
    EXPECT_EQ(countWrong(readAttachment(*node.layerBuffers[1], 0, row), 1, 2 * kLayerTolerance,
                         [&](int x, int y) { return scene.layersAt(x, y)[0]; }),
              0);
}

TEST_F(ParallaxLayers, MasksArePlainLayersWithoutInputOrIntensity) {
    const ReferencePicture fx = ReferencePicture::Waves(64, 36, 3);
    ReferenceScene scene = Scene(
        {{"Mask-Screen a.png", 2, &kFirst, kPart, false, true}, {"b.png", 2, &kSecond, kWhole}});
    scene.settings.fxIntensity = 1;
    use(scene);
    expectLayers(scene, 0);  // no input
    PictureNode& empty = add<PictureNode>("empty");
    link(empty, node, 0);
    empty.textureMatrix.m[0] = 5;
    expectLayers(scene, 0);  // an input without a picture
    empty.images[0] = fx.upload();
    empty.textureMatrix.m[0] = 0.5f;
    scene.settings.fx = &fx;
    scene.settings.fxMatrix.m[0] = 0.5f;
    scene.settings.fxIntensity = 0;
    set(node, "FX Intensity", {0});
    expectLayers(scene, 0);  // the layer's own picture still goes through the matrix
}

TEST_F(ParallaxLayers, BeginsWithTheBackgroundInBothPictures) {
    ReferenceScene scene = Scene({{"a.png", 2, &kFirst, {StillKey(0, 0, 960, 1080)}}});
    scene.settings.background = {0.25, 0.5, 0.75, 0.5};
    use(scene);
    expectLayers(scene, 0, {900, 300, 200, 1}, 1);
    const RegionPixels pixels = readAttachment(*node.layerBuffers[0], 1, {1000, 300, 1, 1});
    EXPECT_EQ(pixels.at(1000, 300)[2], 0.75f);
}

TEST_F(ParallaxLayers, LeavesTheBackgroundAsTheColourOfClears) {
    ReferenceScene scene = Scene({{"a.png", 2, &kFirst, kPart}});
    scene.settings.background = {0.25, 0.5, 0.75, 0.5};
    use(scene);
    run(0, {0, 0, 1, 1});
    GLfloat color[4];
    glGetFloatv(GL_COLOR_CLEAR_VALUE, color);
    EXPECT_EQ(color[2], 0.75f);
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_FALSE);
    glClearColor(0, 0, 0, 0);
}

TEST_F(ParallaxLayers, PassesOverKeysThatAreNoNumbers) {
    ReferenceScene scene = Scene({{"b.png", 2, &kSecond, kWhole}});
    const float none = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    std::vector<ParallaxRecord> records = {still("b.png", 2, StillKey(none, 0, 1920, 1080)),
                                           still("b.png", 2, StillKey(0, 0, infinite, 1080)),
                                           still("b.png", 2, StillKey(0, -infinite, 1920, 1080)),
                                           still("b.png", 2, StillKey(0, 0, 1920, 1080, none)),
                                           {"b.png", 2, kWhole}};
    use(scene);
    writeScene("none.scn", records);
    setScene(0, "none.scn");
    EXPECT_EQ(load(), "");
    EXPECT_EQ(layerCount(), 5u);
    expectLayers(scene, 0);
}

// Sums over some hundred taps of pictures that are off by a few thousandths, times 7.4 at most.
constexpr double kGlowTolerance = 0.02;

TEST_F(ParallaxChain, GlowsAndIsLaidOverTheBackground) {
    for (const std::size_t slot :
         {std::size_t{0}, std::size_t{1}, std::size_t{3}, std::size_t{5}}) {
        ReferenceScene scene =
            Scene({{"Neon a.png", 7, &kFirst, {StillKey(600.25f, 300.25f, 800.75f, 400.75f)}, true},
                   {"b.png", 2, &kSecond, {StillKey(500.25f, 200.25f, 1000.25f, 700.25f, 0.5f)}}},
                  slot);
        scene.settings.glowRadius = 0.125;
        scene.settings.glowIntensity = 0.5;
        scene.settings.glowMask = 0.875;
        scene.settings.background = {0, 0.0625, 0.125, 1};
        use(scene, "slot" + std::to_string(slot) + ".scn");
        run(0, {});
        const RegionPixels pixels = readAttachment(*node.resultBuffer, 0, {560, 380, 300, 60});
        EXPECT_EQ(countWrong(pixels, 23, kGlowTolerance,
                             [&](int x, int y) { return scene.resultAt(x, y); }),
                  0)
            << slot;
        node.scnFiles[slot].clear();
        load();
    }
}

// Each dodge changes over to the other target; one that cannot be seen changes nothing.
TEST_F(ParallaxChain, ComposesWhatTheLastDodgeDrew) {
    const auto part = [](float opacity) {
        return std::vector<ParallaxKey>{StillKey(520.25f, 240.25f, 900.25f, 640.25f, opacity)};
    };
    const std::vector<std::vector<float>> dodges = {{0.5f}, {0.5f, 0.25f}, {0.5f, 0.0f, 0.75f}};
    for (std::size_t i = 0; i < dodges.size(); ++i) {
        ReferenceScene scene = Scene({}, 11);
        for (const float opacity : dodges[i]) {
            scene.layers.push_back({"a.png", 27, &kFirst, part(opacity)});
        }
        scene.layers.push_back(
            {"Neon b.png", 2, &kSecond, {StillKey(500.25f, 200.25f, 1000.25f, 700.25f)}, true});
        scene.settings.glowRadius = 0.125;
        scene.settings.glowIntensity = 0.5;
        scene.settings.glowMask = 0.875;
        use(scene, "dodges" + std::to_string(i) + ".scn");
        run(0, {});
        const RegionPixels pixels = readAttachment(*node.resultBuffer, 0, {560, 380, 300, 60});
        EXPECT_EQ(countWrong(pixels, 23, kGlowTolerance,
                             [&](int x, int y) { return scene.resultAt(x, y); }),
                  0)
            << i;
    }
}

// Whether the glow is left out or not, the picture is the same bit for bit.
TEST_F(ParallaxChain, LeavesOutOnlyAGlowThatAddsNothing) {
    struct Case {
        bool neon;
        double intensity, mask;
        Rgba background;
        bool leftOut;
    };
    const Case cases[] = {{false, 0.5, 1, {0, 0, 0, 1}, true},
                          {true, 0, 1, {0, 0, 0, 1}, true},
                          {true, 0.5, 1, {0, 0, 0, 1}, false},
                          {false, 0.5, 0.875, {0, 0, 0, 1}, false},
                          {false, 0.5, 1, {0, 0.25, 0, 1}, false}};
    const auto clear = [](const GL_FrameBuffer& target, float value) {
        target.Bind();
        target.SelectDrawBuffers();
        glClearColor(value, value, value, value);
        glClear(GL_COLOR_BUFFER_BIT);
        GL_FrameBuffer::Unbind();
    };
    int number = 0;
    for (const Case& one : cases) {
        ReferenceScene scene =
            Scene({{one.neon ? "Neon.png" : "a.png", 2, &kFirst, kPart, one.neon}});
        scene.settings.glowRadius = 0.0625;
        scene.settings.glowIntensity = one.intensity;
        scene.settings.glowMask = one.mask;
        scene.settings.background = one.background;
        use(scene, std::to_string(++number) + ".scn");
        const Region band = {250, 80, 200, 60};
        std::vector<float> pictures[2], blurs[2];
        for (const bool skip : {false, true}) {
            node.skipNeutralWork = skip;
            // Only a band is drawn: what lies outside of it is given here, and kept off what is
            // compared by a few pixels.
            clear(*node.layerBuffers[0], 0);
            clear(*node.blurBufferH, 0);
            clear(*node.blurBufferV, 0.5f);
            run(0, {246, 76, 208, 68});
            pictures[skip] = readAttachment(*node.resultBuffer, 0, band).rgba;
            blurs[skip] = readAttachment(*node.blurBufferV, 0, band).rgba;
        }
        EXPECT_EQ(pictures[0], pictures[1]) << number;
        EXPECT_EQ(blurs[0] != blurs[1], one.leftOut) << number;
    }
}

TEST_F(ParallaxChain, ScreensTheLayersOverTheBackgroundOnceMore) {
    ReferenceScene scene = Scene({{"a.png", 2, &kFirst, kPart}});
    scene.settings.background = {0.25, 0.5, 0.125, 0.5};
    scene.settings.glowIntensity = 0;
    use(scene);
    run(0, {});
    const Region row = {0, 300, kFrameWidth, 1};
    EXPECT_EQ(countWrong(readAttachment(*node.resultBuffer, 0, row), 1, kLayerTolerance,
                         [&](int x, int y) { return scene.resultAt(x, y); }),
              0);
}

// The last pass has the matrix of the front layer that was drawn with its program: of a mask that
// of the input, of others the identity. Dodges are drawn with another program, and layers that
// cannot be seen with none.
TEST_F(ParallaxChain, KeepsTheMatrixOfTheFrontLayer) {
    const ReferencePicture fx = ReferencePicture::Waves(64, 36, 3);
    PictureNode& input = add<PictureNode>("fx", fx.upload());
    input.textureMatrix.m[0] = 0.5f;
    input.textureMatrix.m[12] = 0.25f;
    link(input, node, 0);
    const auto corner = [](float opacity) {
        return std::vector<ParallaxKey>{StillKey(0, 0, 4, 4, opacity)};
    };
    const ReferenceLayer mask = {"Screen-Mask a.png", 2, &kFirst, corner(1), false, true};
    const ReferenceLayer dodgeMask = {"Screen-Mask b.png", 27, &kFirst, corner(1), false, true};
    const ReferenceLayer plain = {"c.png", 7, &kThird, corner(1)};
    const ReferenceLayer plainDodge = {"d.png", 27, &kThird, corner(1)};
    const auto hidden = [&](ReferenceLayer layer) {
        layer.keys = corner(0);
        return layer;
    };
    struct Case {
        std::vector<ReferenceLayer> front;
        bool ofTheMask;
    };
    const Case cases[] = {{{mask}, true},
                          {{plain, mask}, false},
                          {{hidden(plain), mask}, true},
                          {{hidden(mask)}, false},
                          {{dodgeMask}, false},
                          {{hidden(dodgeMask)}, false},
                          {{dodgeMask, mask}, true},
                          {{plainDodge, mask}, true},
                          {{hidden(dodgeMask), mask}, true},
                          {{hidden(plainDodge), mask}, true},
                          {{hidden(plainDodge), plain, mask}, false},
                          {{mask, dodgeMask}, true}};
    int number = 0;
    for (const Case& one : cases) {
        SCOPED_TRACE(++number);
        ReferenceScene scene = Scene(one.front, 11);
        scene.layers.push_back({"back.png", 2, &kSecond, kWhole});
        scene.settings.glowIntensity = 0;
        use(scene, "front" + std::to_string(number) + ".scn");
        run(0, {0, 296, kFrameWidth, 8});
        const Region row = {0, 300, kFrameWidth, 1};
        const auto composedAt = [&](int x, int y) {
            if (!one.ofTheMask) return scene.resultAt(x, y);
            // Half way between two pixels of the layers.
            const double place = ((x + 0.5) * 0.5 + 480) - 0.5;
            const int left = static_cast<int>(std::floor(place));
            const Rgba color =
                Mixed(scene.layersAt(left, y)[0], scene.layersAt(left + 1, y)[0], place - left);
            Rgba result = {0, 0, 0, 1};
            for (std::size_t c = 0; c < 4; ++c) result[c] = color[c] + result[c] * (1 - color[c]);
            return result;
        };
        const RegionPixels pixels = readAttachment(*node.resultBuffer, 0, row);
        EXPECT_EQ(countWrong(pixels, 1, kLayerTolerance, composedAt), 0);
    }
}

// With whatever is in front: a neon mask, a dodge, or nothing that can be seen.
TEST_F(ParallaxChain, LeavesNothingBound) {
    const ReferencePicture fx = ReferencePicture::Waves(64, 36, 3);
    link(add<PictureNode>("fx", fx.upload()), node, 0);
    const ReferenceLayer both = {"Neon Screen-Mask a.png", 2, &kFirst, kPart, true, true};
    const ReferenceLayer dodge = {"Neon Screen-Mask b.png", 27, &kThird, kPart, true, true};
    const ReferenceLayer unseen = {"c.png", 27, &kThird, {StillKey(0, 0, 4, 4, 0)}};
    const std::vector<std::vector<ReferenceLayer>> scenes = {
        {both}, {dodge, both}, {both, dodge}, {unseen, dodge}, {unseen}};
    int number = 0;
    for (const std::vector<ReferenceLayer>& layers : scenes) {
        SCOPED_TRACE(++number);
        use(Scene(layers, 11), "left" + std::to_string(number) + ".scn");
        for (const bool skip : {true, false}) {
            node.skipNeutralWork = skip;
            glEnable(GL_BLEND);
            run(0, {0, 0, 8, 8});
            EXPECT_EQ(LeftBehind(), "");
        }
    }
}

TEST_F(ParallaxChain, AllocatesNothingInAFrame) {
    if (!kCountsAllocations) GTEST_SKIP() << "allocations are not counted";
    use(Scene({{"Neon a.png", 27, &kFirst, kPart, true}, {"b.png", 2, &kSecond, kWhole}}, 11));
    const Region pixel = {700, 300, 1, 1};
    for (int frame = 0; frame < 3; ++frame) run(0, pixel);  // a driver may prepare itself
    node.updated = false;
    const std::size_t before = AllocationCount();
    node.pull();
    EXPECT_EQ(AllocationCount() - before, 0u);
}

TEST_F(ParallaxChain, OffersTheResultAndKeepsItWithoutLayers) {
    EXPECT_EQ(node.images[0], node.resultBuffer);
    const Region pixel = {700, 300, 1, 1};
    run(0, pixel);
    EXPECT_THAT(readAttachment(*node.resultBuffer, 0, pixel).rgba, testing::Each(0.0f));
    ReferenceScene scene = Scene({{"a.png", 2, &kFirst, kWhole}});
    use(scene);
    run(0, pixel);
    const auto shown = readAttachment(*node.resultBuffer, 0, pixel).rgba;
    EXPECT_NE(shown[3], 0.0f);
    node.scnFiles[0].clear();
    run(0, pixel);
    EXPECT_EQ(layerCount(), 0u);
    EXPECT_EQ(readAttachment(*node.resultBuffer, 0, pixel).rgba, shown);
    EXPECT_EQ(node.images[0], node.resultBuffer);
}

TEST_F(ParallaxChain, DrawsNothingWhileNothingIsRendered) {
    ReferenceScene scene = Scene({{"a.png", 2, &kFirst, kWhole}});
    use(scene);
    engine.renderEnabled = 0;
    const Region pixel = {700, 300, 1, 1};
    run(0, pixel);
    EXPECT_THAT(readAttachment(*node.resultBuffer, 0, pixel).rgba, testing::Each(0.0f));
}

// The node's own picture on its input is that of the frame before.
TEST_F(ParallaxChain, MayShowItsOwnPictureThroughAMask) {
    const LayerPicture white = LayerPicture::Plain({255, 255, 255, 255});
    ReferenceScene scene = Scene({{"Screen-Mask.png", 2, &white, kWhole, false, true}});
    scene.settings.fxIntensity = 0.5;
    scene.settings.glowIntensity = 0;
    use(scene);
    link(node, node, 0);
    const Region pixel = {700, 300, 1, 1};
    double shown = 0;
    for (int frame = 0; frame < 3; ++frame) {
        shown = 0.5 + 0.5 * 0.5 * shown;
        run(0, pixel);
        EXPECT_NEAR(readAttachment(*node.resultBuffer, 0, pixel).rgba[0], shown, kLayerTolerance);
    }
}

}  // namespace
