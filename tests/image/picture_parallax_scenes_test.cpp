// Which scene is shown when, and how scenes and their pictures are taken in.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>

#include "parallax_fixture.h"
#include "platform/task_pool.h"
#include "support/broken_shaders.h"
#include "support/core_nodes.h"
#include "support/gl_state.h"
#include "support/parameter_table.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class ParallaxScenes : public ParallaxTest {
  protected:
    ParallaxScenes() {
        writePicture("a.png", LayerPicture(1));
        writePicture("b.png", LayerPicture(2));
        writePicture("black.png", LayerPicture::Plain({0, 0, 0, 255}));
    }

    // Layers of a scene with these names; each picture is a file of its own.
    const std::vector<ParallaxLayer>& layersNamed(const std::vector<std::string>& names) {
        std::vector<ParallaxRecord> records;
        for (const std::string& name : names) records.push_back(still(name));
        const std::string file = "names" + std::to_string(++files_) + ".scn";
        writeScene(file, records);
        setScene(0, file);
        said = load();
        return node.scenes[0].layers;
    }
    const ParallaxLayer& layerNamed(const std::string& name) {
        writePicture(name, LayerPicture(1));
        const auto& layers = layersNamed({name});
        EXPECT_THAT(layers, SizeIs(1));
        return layers.at(0);
    }

    // Uploads of pictures by a run of the node.
    int uploadsOfLoad() {
        const DebugCapture capture;
        engine.renderEnabled = 0;
        node.process();
        engine.renderEnabled = 1;
        const auto messages = capture.messages();
        return static_cast<int>(
            std::count_if(messages.begin(), messages.end(), [](const std::string& message) {
                return message.find("Texture Memory Consumed") != std::string::npos;
            }));
    }

    // The objects on the first three places for colour, and on that for depth.
    static std::array<std::uint32_t, 4> AttachedTo(const GL_FrameBuffer& target) {
        constexpr GLenum kPlaces[] = {GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1,
                                      GL_COLOR_ATTACHMENT2, GL_DEPTH_ATTACHMENT};
        std::array<std::uint32_t, 4> names{};
        target.Bind();
        for (std::size_t i = 0; i < names.size(); ++i) {
            GLint name = 0;
            glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, kPlaces[i],
                                                  GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, &name);
            if (name == GL_NONE) continue;
            glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, kPlaces[i],
                                                  GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &name);
            names[i] = static_cast<std::uint32_t>(name);
        }
        GL_FrameBuffer::Unbind();
        return names;
    }

    std::string said;

  private:
    int files_ = 0;
};

TEST_F(ParallaxScenes, DeclaresItsParametersInOrder) {
    std::vector<std::string> expected = {
        "Global Offset float -10 to 10, 3 decimals, 0, animatable",
        "Global Time Stretch float 0 to 2, 3 decimals, 1, animatable",
        "Global Alpha float 0 to 1, 3 decimals, 1, animatable",
        "FX Intensity float 0 to 1, 3 decimals, 0, animatable",
        "Glow:Radius float 0 to 1000, 2 decimals, 10, animatable",
        "GlowIntensity float 0 to 10, 2 decimals, 1, animatable",
        "Glow:Mask float 0 to 1, 2 decimals, 1, animatable"};
    for (int i = 1; i <= 30; ++i) {
        const std::string number = std::to_string(i);
        expected.push_back(".scn File " + number + " text ''");
        expected.push_back("Start Time " + number + " float 0 to 10000, 3 decimals, 0, animatable");
    }
    for (int i = 1; i <= 30; ++i) {
        expected.push_back(".scn Time Offset " + std::to_string(i) +
                           " float -5 to 5, 3 decimals, 0, animatable");
    }
    for (int i = 1; i <= 30; ++i) {
        expected.push_back(".scn Time Stretch " + std::to_string(i) +
                           " float 0 to 2, 3 decimals, 1, animatable");
    }
    expected.emplace_back("Background vec4 0 0 0 1");
    EXPECT_EQ(ParameterTable(engine, node), expected);
}

TEST_F(ParallaxScenes, ParametersReachTheSlotsThatTheyName) {
    set(node, "Start Time 1", {1});
    set(node, "Start Time 30", {2});
    set(node, ".scn Time Offset 30", {3});
    set(node, ".scn Time Stretch 12", {0.5f});
    EXPECT_EQ(node.scenes[0].startTime, 1);
    EXPECT_EQ(node.scenes[29].startTime, 2);
    EXPECT_EQ(node.scenes[29].timeOffset, 3);
    EXPECT_EQ(node.scenes[11].timeStretch, 0.5f);
    const auto* file = dynamic_cast<const ValueString*>(engine.findValue(&node, ".scn File 30"));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->data, &node.scnFiles[29]);
}

TEST_F(ParallaxScenes, TakesOnePictureOnItsOnlyPort) {
    EXPECT_EQ(node.inputCount, 1);
    EXPECT_THAT(node.inputNames, ElementsAre("Masked FX"));
    EXPECT_TRUE(node.canConnect(0, &node));
    EXPECT_FALSE(node.canConnect(1, &node));
    EXPECT_FALSE(node.canConnect(-1, &node));
    EXPECT_FALSE(node.canConnect(0, nullptr));
    EXPECT_FALSE(node.canConnect(0, &add<TestCamera>("camera")));
    EXPECT_FALSE(node.hasError);
}

TEST_F(ParallaxScenes, HasAnErrorOnlyWithoutTheProgramThatComposes) {
    struct Case {
        const char *with, *without;
        int shaders;
        bool error;
    };
    // The blur is one text for two programs.
    for (const Case& one : {Case{"maskedEffect", "backgroundNeon", 1, true},
                            {"backgroundNeon", "", 1, false},
                            {"uniform vec2 Direction", "", 2, false}}) {
        SCOPED_TRACE(one.with);
        const DebugCapture quiet;
        const BrokenShaders broken(one.with, one.without);
        EXPECT_EQ(add<ImageNode_2DParallaxRenderer>(one.with).hasError, one.error);
        EXPECT_EQ(broken.count(), one.shaders);
    }
}

TEST_F(ParallaxScenes, ItsTargetsAreFramesOfHalfFloats) {
    const std::pair<const GL_FrameBuffer*, int> targets[] = {{node.layerBuffers[0].get(), 2},
                                                             {node.layerBuffers[1].get(), 2},
                                                             {node.blurBufferH.get(), 1},
                                                             {node.blurBufferV.get(), 1},
                                                             {node.resultBuffer.get(), 1}};
    for (const auto& [target, attachments] : targets) {
        EXPECT_EQ(target->width, 1920);
        EXPECT_EQ(target->height, 1080);
        EXPECT_EQ(target->bitsPerChannel, 16u);
        EXPECT_EQ(target->format, static_cast<std::uint32_t>(GL_RGBA));
        EXPECT_FALSE(target->hasDepth);
        EXPECT_TRUE(target->complete);
        ASSERT_EQ(target->textureCount, attachments);
        for (int i = 0; i < attachments; ++i) {
            EXPECT_EQ(TextureLevelParameter(*target, GL_TEXTURE_INTERNAL_FORMAT, i), GL_RGBA16F);
            EXPECT_EQ(TextureLevelParameter(*target, GL_TEXTURE_WIDTH, i), 1920);
            EXPECT_EQ(TextureLevelParameter(*target, GL_TEXTURE_HEIGHT, i), 1080);
        }
        EXPECT_THAT(
            AttachedTo(*target),
            ElementsAre(target->textures[0], attachments == 2 ? target->textures[1] : 0u, 0u, 0u));
    }
}

TEST_F(ParallaxScenes, KeepsTheOrderAndTheKeysOfTheFile) {
    writeScene("a.scn", {{"b.png", 7, {StillKey(1, 2, 3, 4), StillKey(5, 6, 7, 8)}},
                         {"a.png", 27, {StillKey(9, 0, 0, 0)}}});
    setScene(3, "a.scn");
    EXPECT_EQ(load(), "");
    ASSERT_EQ(layerCount(3), 2u);
    const auto& layers = node.scenes[3].layers;
    EXPECT_EQ(layers[0].mode, 7);
    ASSERT_THAT(layers[0].keys, SizeIs(2));
    EXPECT_EQ(layers[0].keys[1].right, 7);
    EXPECT_EQ(layers[0].image, node.imageCache[".\\Graphics\\b.png"]);
    EXPECT_EQ(layers[1].mode, 27);
    EXPECT_EQ(layers[1].keys[0].left, 9);
}

TEST_F(ParallaxScenes, LayersWithoutKeysAreDropped) {
    writeScene("a.scn", {{"a.png", 2, {}}, still("b.png"), {"missing.png", 2, {}}});
    setScene(0, "a.scn");
    EXPECT_EQ(load(), "");  // a picture that nothing needs is not missed
    EXPECT_EQ(layerCount(), 1u);
    EXPECT_FALSE(node.imageCache.contains(".\\Graphics\\a.png"));
}

TEST_F(ParallaxScenes, ALayerWithoutPictureDoesNotShiftTheOthers) {
    ParallaxRecord lost = still("gone.png", 3);
    lost.keys.resize(9);
    writeScene("a.scn", {still("a.png", 1), lost, still("b.png", 4, StillKey(7, 0, 0, 0)), lost});
    setScene(0, "a.scn");
    EXPECT_THAT(load(), testing::StartsWith(".\\Graphics\\gone.png: "));
    ASSERT_EQ(layerCount(), 2u);
    EXPECT_EQ(node.scenes[0].layers[0].mode, 1);
    EXPECT_EQ(node.scenes[0].layers[1].mode, 4);
    EXPECT_EQ(node.scenes[0].layers[1].keys[0].left, 7);
    EXPECT_THAT(node.imageCache, SizeIs(2));
}

TEST_F(ParallaxScenes, AMissingPictureIsToldOnce) {
    const std::size_t before = BadFileCount();
    layersNamed({"gone.png", "a.png", "gone.png"});
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1);
    EXPECT_EQ(BadFileCount() - before, 1u);
}

TEST_F(ParallaxScenes, LooksForThePictureWithALetterMore) {
    const auto& layers = layersNamed({"a.pn", "b.png", "a.png"});
    EXPECT_EQ(said, "");
    ASSERT_THAT(layers, SizeIs(3));
    EXPECT_EQ(layers[0].image, layers[2].image);
    EXPECT_NE(layers[0].image, layers[1].image);
    EXPECT_THAT(node.imageCache, SizeIs(2));
    EXPECT_TRUE(node.imageCache.contains(".\\Graphics\\a.png"));
    // Known already: the letter is put to the name again, and nothing is read twice.
    writeScene("again.scn", {still("a.pn")});
    setScene(1, "again.scn");
    EXPECT_EQ(uploadsOfLoad(), 0);
    ASSERT_EQ(layerCount(1), 1u);
    EXPECT_EQ(node.scenes[1].layers[0].image, node.scenes[0].layers[0].image);
}

TEST_F(ParallaxScenes, TheNameAsItStandsGoesBeforeTheOneWithALetterMore) {
    writePicture("a.pn", LayerPicture(7));
    layersNamed({"a.pn"});
    EXPECT_TRUE(node.imageCache.contains(".\\Graphics\\a.pn"));
    EXPECT_FALSE(node.imageCache.contains(".\\Graphics\\a.png"));
}

TEST_F(ParallaxScenes, SolidLayersAreBlackAndNothingElse) {
    const auto& layers =
        layersNamed({"Solid", "Neon Solid 1", "Screen-Mask Solid.png", "solid.png", "black.png"});
    EXPECT_THAT(said, HasSubstr("solid.png"));
    ASSERT_THAT(layers, SizeIs(4));
    for (const ParallaxLayer& layer : layers) {
        EXPECT_EQ(layer.image, node.imageCache[".\\Graphics\\black.png"]);
        EXPECT_EQ(layer.neon, nullptr);
        EXPECT_EQ(layer.mask, 0);
    }
}

TEST_F(ParallaxScenes, NeonLayersAreTheirOwnNeon) {
    const ParallaxLayer& neon = layerNamed("City Neon 3.png");
    EXPECT_EQ(neon.neon, neon.image);
    EXPECT_EQ(neon.mask, 0);
    EXPECT_EQ(layerNamed("City neon.png").neon, nullptr);
    EXPECT_EQ(layerNamed("City NEON.png").neon, nullptr);
}

TEST_F(ParallaxScenes, NineTextsInANameMakeAMask) {
    for (const std::string part : {"Mask-Screen", "screens-mask", "screen-mask", "Screen-Masks",
                                   "Screen-masks", "Scene_021_0008_Background", "Screen-Mask",
                                   "Screen Mask", "Scene_025_0005_Glow-green.png"}) {
        EXPECT_TRUE(IsParallaxMask(part)) << part;
        EXPECT_TRUE(IsParallaxMask("the " + part + " of it")) << part;
        EXPECT_EQ(layerNamed("x " + part + ".png").mask, 1) << part;
    }
    for (const std::string other :
         {"", "Mask", "Screen", "SCREEN-MASK", "Screen mask", "mask-screen", "screens mask",
          "Screens-Mask", "Screen_Mask", "Scene_021_0009_Background",
          "Scene_025_0005_Glow-green.tif", "Scene_025_0005_Glow"}) {
        EXPECT_FALSE(IsParallaxMask(other)) << other;
    }
}

TEST_F(ParallaxScenes, NeonMasksAreBoth) {
    const ParallaxLayer& both = layerNamed("Neon Screen-Mask.png");
    EXPECT_EQ(both.neon, both.image);
    EXPECT_EQ(both.mask, 1);
}

TEST_F(ParallaxScenes, PicturesArePremultipliedAndClampedToTheirEdge) {
    const LayerPicture picture(4);
    writePicture("p.png", picture);
    const auto& layers = layersNamed({"p.png"});
    ASSERT_THAT(layers, SizeIs(1));
    layers[0].image->BindTexture(0, GL_TEXTURE0);
    std::vector<std::uint8_t> texels(picture.texels.size());
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
    EXPECT_EQ(texels, picture.texels);
    for (const GLenum axis : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T}) {
        GLint wrap = 0;
        glGetTexParameteriv(GL_TEXTURE_2D, axis, &wrap);
        EXPECT_EQ(wrap, GL_CLAMP_TO_EDGE);
    }
    layers[0].image->UnbindTextures(GL_TEXTURE0);
}

TEST_F(ParallaxScenes, PicturesHaveAsManyChannelsAsTheirFiles) {
    const std::vector<std::uint8_t> noise = NoisePixels(7, 4, 3);  // rows that are no whole words
    const FileContent png = MakePng(7, 4, {}, noise);
    folder.write("Graphics/rgb.png", std::string(png.begin(), png.end()));
    const auto& layers = layersNamed({"rgb.png", "a.png"});
    EXPECT_EQ(said, "");
    ASSERT_THAT(layers, SizeIs(2));
    EXPECT_EQ(TextureLevelParameter(*layers[0].image, GL_TEXTURE_INTERNAL_FORMAT), GL_RGB8);
    EXPECT_EQ(TextureLevelParameter(*layers[0].image, GL_TEXTURE_ALPHA_SIZE), 0);
    EXPECT_FALSE(layers[0].image->hasAlpha);
    EXPECT_EQ(TextureLevelParameter(*layers[1].image, GL_TEXTURE_INTERNAL_FORMAT), GL_RGBA8);
    EXPECT_TRUE(layers[1].image->hasAlpha);
    std::vector<std::uint8_t> texels(noise.size());
    layers[0].image->BindTexture(0, GL_TEXTURE0);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, texels.data());
    layers[0].image->UnbindTextures(GL_TEXTURE0);
    EXPECT_EQ(texels, noise);
}

TEST_F(ParallaxScenes, ReadsAFileAgainOnlyWhenItsNameChanges) {
    writeScene("one.scn", {still("a.png")});
    writeScene("two.scn", {still("a.png"), still("b.png")});
    setScene(0, "one.scn");
    EXPECT_EQ(uploadsOfLoad(), 1);
    EXPECT_EQ(layerCount(), 1u);
    writeScene("one.scn", {});
    EXPECT_EQ(uploadsOfLoad(), 0);
    EXPECT_EQ(layerCount(), 1u);
    setScene(0, "two.scn");
    EXPECT_EQ(uploadsOfLoad(), 1) << "the other picture is known";
    EXPECT_EQ(layerCount(), 2u);
    setScene(0, "one.scn");
    EXPECT_EQ(uploadsOfLoad(), 0);
    EXPECT_EQ(layerCount(), 0u);
}

TEST_F(ParallaxScenes, ScenesOfOneFileShareTheirPictures) {
    writeScene("one.scn", {still("a.png"), still("b.png")});
    setScene(0, "one.scn");
    setScene(7, "one.scn");
    setScene(8, ".\\one.scn");
    EXPECT_EQ(uploadsOfLoad(), 2);
    for (const std::size_t slot : {std::size_t{7}, std::size_t{8}}) {
        ASSERT_EQ(layerCount(slot), 2u);
        EXPECT_EQ(node.scenes[slot].layers[1].image, node.scenes[0].layers[1].image);
    }
    EXPECT_THAT(node.imageCache, SizeIs(2));
}

TEST_F(ParallaxScenes, PicturesStayWhenTheirSceneGoes) {
    layersNamed({"a.png"});
    node.scnFiles[0].clear();
    load();
    EXPECT_THAT(node.imageCache, SizeIs(1));
    EXPECT_EQ(layerCount(), 0u);
}

TEST_F(ParallaxScenes, AFailedPictureIsTriedAgainByTheNextScene) {
    EXPECT_THAT(layersNamed({"late.png"}), IsEmpty());
    EXPECT_THAT(node.imageCache, IsEmpty());
    writePicture("late.png", LayerPicture(1));
    EXPECT_THAT(layersNamed({"late.png"}), SizeIs(1));
}

TEST_F(ParallaxScenes, AMissingSceneIsAnEmptySlot) {
    layersNamed({"a.png"});
    setScene(0, "none.scn");
    EXPECT_EQ(load(), "none.scn: cannot be read\n");
    EXPECT_EQ(layerCount(), 0u);
    EXPECT_EQ(load(), "") << "once";
    EXPECT_EQ(node.loadedFiles[0], "none.scn");
    node.scnFiles[0] = ".";  // a folder
    EXPECT_EQ(load(), ".: cannot be read\n");
}

// A file without end is not taken in: here one that begins well and is zeros from there on.
TEST_F(ParallaxScenes, AFileThatIsTooLargeIsAnEmptySlot) {
    writeScene("large.scn", {still("a.png")});
    setScene(0, "large.scn");
    EXPECT_EQ(load(), "");
    EXPECT_EQ(layerCount(), 1u);
    std::filesystem::resize_file(folder.path() / "large.scn", (std::uintmax_t{256} << 20) + 1);
    setScene(1, ".\\large.scn");
    EXPECT_EQ(load(), ".\\large.scn: cannot be read\n");
    EXPECT_EQ(layerCount(1), 0u);
    EXPECT_EQ(layerCount(0), 1u);
}

TEST_F(ParallaxScenes, EverySlotIsReadByTheFirstRun) {
    EXPECT_THAT(node.loadedFiles, Each("NOINIT"));
    EXPECT_EQ(load(), "") << "an empty name is no mistake";
    EXPECT_THAT(node.loadedFiles, Each(""));
}

TEST_F(ParallaxScenes, DamagedFilesGiveWhatIsWholeAndOneLine) {
    const auto bytes =
        ParallaxSceneBytes(std::vector<ParallaxRecord>{still("a.png"), still("b.png")});
    const std::string text(bytes.begin(), bytes.end());
    folder.write("cut.scn", text.substr(0, text.size() - 1));
    setScene(0, "cut.scn");
    EXPECT_EQ(load(), "cut.scn: layer 2 has fewer keys than it says\n");
    EXPECT_EQ(layerCount(), 1u);
    folder.write("text.scn", "this is no scene");
    setScene(0, "text.scn");
    EXPECT_EQ(load(), "text.scn: layer 1 is cut short\n");
    std::string huge = text;
    huge[516] = huge[517] = huge[518] = '\x7f';
    folder.write("huge.scn", huge);
    setScene(0, "huge.scn");
    EXPECT_EQ(load(), "huge.scn: layer 1 has fewer keys than it says\n");
    ASSERT_EQ(layerCount(), 1u);
    EXPECT_THAT(node.scenes[0].layers[0].keys, SizeIs((text.size() - 520) / 28));
    run(0, {0, 0, 8, 8});  // wrong keys, and nothing worse
    std::string below = text;
    below.replace(516, 4, "\xff\xff\xff\xff");
    folder.write("below.scn", below);
    setScene(0, "below.scn");
    EXPECT_THAT(load(), HasSubstr("below.scn: layer 1 has a count of keys below 0\n"));
}

TEST_F(ParallaxScenes, LoadsAheadAndTakesNothingInTwice) {
    writeScene("one.scn", {still("a.png"), still("b.png"), still("gone.png"), still("a.pn")});
    setScene(0, "one.scn");
    setScene(1, "one.scn");
    EXPECT_EQ(node.countLoadSteps(), 1u + 4u);
    TaskPool pool(2);
    node.prepareLoad(pool);
    EXPECT_THAT(load(), HasSubstr("gone.png"));
    EXPECT_EQ(layerCount(0), 3u);
    EXPECT_EQ(layerCount(1), 3u);
    EXPECT_EQ(node.countLoadSteps(), 1u) << "nothing is left to do";
    EXPECT_EQ(uploadsOfLoad(), 0);
}

TEST_F(ParallaxScenes, APlanForOtherFilesIsDropped) {
    writeScene("one.scn", {still("a.png")});
    writeScene("two.scn", {still("b.png"), still("a.png")});
    setScene(0, "one.scn");
    TaskPool pool(2);
    node.prepareLoad(pool);
    setScene(0, "two.scn");
    EXPECT_EQ(load(), "");
    EXPECT_EQ(layerCount(), 2u);
    node.countLoadSteps();  // a plan without pictures
    setScene(0, "one.scn");
    setScene(1, "two.scn");
    EXPECT_EQ(load(), "");
    EXPECT_EQ(layerCount(0), 1u);
    EXPECT_EQ(layerCount(1), 2u);
}

TEST_F(ParallaxScenes, ManyPicturesAreLoadedWithTheProject) {
    std::vector<ParallaxRecord> records;
    for (int i = 0; i < 60; ++i) {
        const std::string name = "p" + std::to_string(i) + ".png";
        writePicture(name, LayerPicture(i));
        records.push_back(still(name));
    }
    writeScene("many.scn", records);
    setScene(29, "many.scn");
    std::vector<double> parts;
    engine.showLoadProgress = [&](double part) { parts.push_back(part); };
    {
        const DebugCapture quiet;
        engine.refreshNodes();
    }
    EXPECT_EQ(layerCount(29), 60u);
    ASSERT_THAT(parts, SizeIs(61));
    EXPECT_TRUE(std::is_sorted(parts.begin(), parts.end()));
    EXPECT_EQ(parts.back(), 1.0);
    EXPECT_EQ(uploadsOfLoad(), 0);
    EXPECT_THAT(parts, SizeIs(61)) << "frames are no load";
}

TEST_F(ParallaxScenes, TheLastSceneThatHasBegunIsShown) {
    writeScene("one.scn", {still("a.png")});
    for (const std::size_t slot : {std::size_t{2}, std::size_t{4}, std::size_t{9}}) {
        setScene(slot, "one.scn", static_cast<float>(slot));
    }
    load();
    EXPECT_EQ(node.sceneAt(3), 2u);
    EXPECT_EQ(node.sceneAt(4), 2u) << "a scene begins after its start";
    EXPECT_EQ(node.sceneAt(4.001f), 4u);
    EXPECT_EQ(node.sceneAt(9.001f), 9u);
    EXPECT_EQ(node.sceneAt(1e6f), 9u);
    // The first one stands in for what is before it.
    EXPECT_EQ(node.sceneAt(2), 2u);
    EXPECT_EQ(node.sceneAt(-5), 2u);
    EXPECT_EQ(node.sceneAt(std::numeric_limits<float>::quiet_NaN()), 2u);
}

TEST_F(ParallaxScenes, ScenesOutOfOrderEndTheSearch) {
    writeScene("one.scn", {still("a.png")});
    setScene(0, "one.scn", 1);
    setScene(1, "one.scn", 10);
    setScene(2, "one.scn", 2);
    load();
    EXPECT_EQ(node.sceneAt(5), 0u);
    EXPECT_EQ(node.sceneAt(11), 2u);
}

TEST_F(ParallaxScenes, TheGlowGoesByTheSlot) {
    const std::pair<float, float> expected[] = {{70, 3},    {62.5f, 6.05f}, {54, 1.9f},
                                                {54, 1.9f}, {54, 7.4f},     {54, 7.4f}};
    for (std::size_t slot = 0; slot < 6; ++slot) {
        EXPECT_EQ(ParallaxGlowOfSlot(slot).lengthScale, expected[slot].first) << slot;
        EXPECT_EQ(ParallaxGlowOfSlot(slot).amount, expected[slot].second) << slot;
    }
    EXPECT_EQ(ParallaxGlowOfSlot(29).amount, 7.4f);
}

// A track whose key i is `i` pixels from the left, to see at which time it is shown.
class ParallaxTime : public ParallaxScenes {
  protected:
    ParallaxTime() {
        writePicture("white.png", LayerPicture::Plain({255, 255, 255, 255}));
        std::vector<ParallaxKey> keys;
        for (int i = 0; i < 600; ++i) {
            const auto x = static_cast<float>(i);
            keys.push_back({x, 0, 1920, 1080, 1, x / 60, 0});
        }
        writeScene("track.scn", {{"white.png", 2, keys}});
    }
    // Where the white begins.
    int edgeAt(float seconds) {
        const Region row = {0, 500, kFrameWidth, 1};
        run(seconds, row);
        const RegionPixels pixels = readAttachment(*node.layerBuffers[0], 0, row);
        int x = 0;
        while (x < kFrameWidth && pixels.at(x, 500)[0] < 0.5f) ++x;
        return x;
    }
};

// A track shows half a key more than its time says.
TEST_F(ParallaxTime, OffsetsAndStretchesMakeTheTimeOfTheScene) {
    setScene(0, "track.scn", 1);
    set(node, ".scn Time Offset 1", {0.5f});
    set(node, ".scn Time Stretch 1", {2});
    load();
    const auto edge = [](double sceneSeconds) { return std::lround(sceneSeconds * 60 + 0.5); };
    EXPECT_EQ(edgeAt(2.51f), edge((2.51 - 1 - 0.5) * 2));
    set(node, "Global Offset", {-0.25f});
    EXPECT_EQ(edgeAt(2.01f), edge((2.26 - 1 - 0.5) * 2));
    set(node, "Global Time Stretch", {0.5f});
    EXPECT_EQ(edgeAt(3.81f), edge((4.06 * 0.5 - 1 - 0.5) * 2));
}

TEST_F(ParallaxTime, BeforeItsStartAndAfterItsEndASceneStandsStill) {
    setScene(5, "track.scn", 3);
    load();
    EXPECT_EQ(edgeAt(1), 0);
    EXPECT_EQ(edgeAt(3), 0);
    EXPECT_EQ(edgeAt(1000), 599);
}

}  // namespace
