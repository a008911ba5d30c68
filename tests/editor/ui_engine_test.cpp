#include "editor/ui_engine.h"

#include <GL/glew.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <utility>

#include "core/engine.h"
#include "editor/ui_viewer_node.h"
#include "platform/debug_output.h"
#include "support/gl_fixture.h"
#include "support/picture_files.h"
#include "support/temp_folder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Writes down what is asked of it.
class SoundRecorder : public SoundSystem {
  public:
    explicit SoundRecorder(std::vector<std::string>& log) : calls_(log) {}
    void load(std::string_view name) override { calls_.push_back("load " + std::string(name)); }
    void unload() override { calls_.emplace_back("unload"); }
    bool loaded() const override { return true; }
    bool loading() const override { return false; }
    void play() override { calls_.emplace_back("play"); }
    void pause() override { calls_.emplace_back("pause"); }
    bool playing() const override { return false; }
    void setPositionMilliseconds(std::uint32_t position) override {
        calls_.push_back("position " + std::to_string(position));
    }
    std::uint32_t positionMilliseconds() const override { return 0; }
    void update() override {}

  private:
    std::vector<std::string>& calls_;
};

class UiEngineTest : public GlTest {
  protected:
    void SetUp() override {
        GlTest::SetUp();
        if (HasFatalFailure()) return;
        const char* fonts = std::getenv("VORN_TEST_FONTS");
        ASSERT_NE(fonts, nullptr) << "VORN_TEST_FONTS names the folder of the fonts";
        std::filesystem::create_directory_symlink(fonts, folder.path() / "fonts");
        engine.music = std::make_unique<MusicPlayer>(&sound);
    }

    std::string init() {
        const DebugCapture capture;
        EXPECT_TRUE(ui.Init(&engine));
        return capture.text();
    }
    std::vector<std::string> takeCalls() { return std::exchange(calls, {}); }

    UI_ViewerNode& addViewer(const std::string& id, GL_FrameBuffer* target) {
        auto node = std::make_unique<UI_ViewerNode>(&engine, id, target);
        UI_ViewerNode& result = *node;
        EXPECT_TRUE(engine.addNode(id, std::move(node)));
        return result;
    }

    TempFolder folder;
    WorkingFolder workingFolder{folder.path()};
    std::vector<std::string> calls;
    SoundRecorder sound{calls};
    Engine engine{{}, nullptr};
    UI_Engine ui;
};

// 4 by 4, with one white pixel at the top left on dark blue.
std::vector<std::uint8_t> MarkedPixels(int channels) {
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < 16; ++i) {
        const std::uint8_t dark[4] = {0, 0, 51, 255};
        for (int c = 0; c < channels; ++c) pixels.push_back(i == 0 ? 255 : dark[c]);
    }
    return pixels;
}

}  // namespace

TEST_F(UiEngineTest, StartsWithNothingPlayingAtZero) {
    EXPECT_EQ(ui.editorTime, 0);
    EXPECT_FALSE(ui.playing);
    EXPECT_EQ(ui.imageBackdrop, 0);
    EXPECT_EQ(ui.selectedOutput, -1);
    EXPECT_TRUE(ui.outputs.empty());
    EXPECT_EQ(ui.imagePanel, nullptr);
    EXPECT_EQ(ui.editorTarget, nullptr);
}

TEST_F(UiEngineTest, InitMakesABarePanelThatShowsTheTarget) {
    init();
    EXPECT_TRUE(ui.presentationMode);
    EXPECT_EQ(ui.engine, &engine);
    ASSERT_NE(ui.imagePanel, nullptr);
    EXPECT_EQ(ui.imagePanel->name, "");
    EXPECT_TRUE(ui.imagePanel->bare);
    EXPECT_THAT((std::vector<int>{ui.imagePanel->x, ui.imagePanel->y, ui.imagePanel->width,
                                  ui.imagePanel->height}),
                ElementsAre(0, 0, 1920, 1080));
    EXPECT_EQ(ui.imagePanel->backdrop, &ui.imageBackdrop);
    ASSERT_NE(ui.editorTarget, nullptr);
    EXPECT_EQ(ui.imagePanel->image, ui.editorTarget.get());
    EXPECT_EQ(ui.editorTarget->width, 1920);
    EXPECT_EQ(ui.editorTarget->height, 1080);
    EXPECT_EQ(ui.editorTarget->textureCount, 1);
    EXPECT_EQ(ui.editorTarget->bitsPerChannel, 16u);
    EXPECT_FALSE(ui.editorTarget->hasDepth);
    EXPECT_TRUE(ui.editorTarget->complete);
}

TEST_F(UiEngineTest, StartsWithoutFontsToo) {
    std::filesystem::remove(folder.path() / "fonts");
    init();
    EXPECT_NE(ui.editorTarget, nullptr);
}

TEST_F(UiEngineTest, AMissingLoadingPictureIsSilentAndLeavesBlack) {
    const std::size_t badFiles = BadFileCount();
    EXPECT_THAT(init(), testing::Not(HasSubstr("Loading")));
    EXPECT_EQ(BadFileCount(), badFiles);
    const std::vector<float> pixels = ReadTarget(*ui.editorTarget);
    EXPECT_TRUE(std::all_of(pixels.begin(), pixels.end(), [](float value) { return value == 0; }));
}

TEST_F(UiEngineTest, AnUnreadableLoadingPictureIsSilentToo) {
    folder.write("Graphics/Loading.png", "no picture");
    const std::size_t badFiles = BadFileCount();
    EXPECT_THAT(init(), testing::Not(HasSubstr("Loading")));
    EXPECT_EQ(BadFileCount(), badFiles);
}

TEST_F(UiEngineTest, ShowsTheLoadingPictureUpright) {
    for (const int channels : {3, 4}) {
        const FileContent png =
            MakePng(4, 4, {.colorType = channels == 3 ? 2 : 6}, MarkedPixels(channels));
        folder.write("Graphics/Loading.png", std::string(png.begin(), png.end()));
        init();
        // The screen as a small frame buffer of the same size.
        const GL_FrameBuffer screen(1920, 1080, 1, 8, GL_RGBA, TargetDepth::None,
                                    TargetWrap::Border);
        screen.Bind();
        screen.SetViewport();
        glClear(GL_COLOR_BUFFER_BIT);
        ui.DrawFrame();
        GL_FrameBuffer::Unbind();
        const std::vector<float> pixels = ReadTarget(screen);
        const auto red = [&](int x, int fromTop) {
            const auto row = static_cast<std::size_t>(1079 - fromTop);
            return pixels[(row * 1920 + static_cast<std::size_t>(x)) * 4];
        };
        // The marked pixel's middle lies at an eighth of the frame.
        EXPECT_GT(red(240, 135), 0.99f);
        EXPECT_EQ(red(240, 1079 - 135), 0);
        EXPECT_EQ(red(1919 - 240, 135), 0);
        EXPECT_EQ(red(1919 - 240, 1079 - 135), 0);
        ui.master.RemoveTopLevel(ui.imagePanel.get());
    }
}

TEST_F(UiEngineTest, AdvancesItsClockOnlyWhilePlaying) {
    init();
    ui.BeginFrameUpdate();
    EXPECT_EQ(ui.editorTime, 0);
    ui.StartPlayback();
    ui.editorTime = 10;
    ui.BeginFrameUpdate();
    EXPECT_EQ(ui.editorTime, 10 + ui.frameTimer.deltaSeconds);
    EXPECT_GT(ui.frameTimer.elapsedSeconds, 0);
    const float before = ui.editorTime;
    ui.TogglePlay();
    ui.BeginFrameUpdate();
    EXPECT_EQ(ui.editorTime, before);
}

TEST_F(UiEngineTest, StartsTheMusicWithPlayback) {
    init();
    engine.time = 2.5f;
    ui.frameTimer.accumulatedSeconds = 9;
    ui.StartPlayback();
    EXPECT_TRUE(ui.playing);
    EXPECT_EQ(ui.frameTimer.accumulatedSeconds, 0);
    EXPECT_THAT(takeCalls(), ElementsAre("play"));  // no channel yet that could be moved
    ui.StartPlayback();
    EXPECT_THAT(takeCalls(), ElementsAre("position 2500", "play"));
}

TEST_F(UiEngineTest, TogglesMusicAndClockAtTheEnginesTime) {
    init();
    ui.StartPlayback();
    takeCalls();
    engine.time = 12.3456f;
    ui.TogglePlay();
    EXPECT_FALSE(ui.playing);
    EXPECT_THAT(takeCalls(), ElementsAre("position 12345", "pause"));
    ui.frameTimer.accumulatedSeconds = 9;
    ui.TogglePlay();
    EXPECT_TRUE(ui.playing);
    EXPECT_EQ(ui.frameTimer.accumulatedSeconds, 0);
    EXPECT_THAT(takeCalls(), ElementsAre("position 12345", "play"));
}

TEST_F(UiEngineTest, SeeksClockAndMusicButNotBelowZero) {
    init();
    ui.StartPlayback();
    takeCalls();
    ui.SeekTo(7.75f);
    EXPECT_EQ(ui.editorTime, 7.75f);
    EXPECT_THAT(takeCalls(), ElementsAre("position 7750"));
    ui.SeekTo(-0.05f);
    EXPECT_EQ(ui.editorTime, 0);
    EXPECT_THAT(takeCalls(), ElementsAre("position 0"));
    ui.SeekTo(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(ui.editorTime, 0);
    EXPECT_TRUE(ui.playing);
}

TEST_F(UiEngineTest, HooksNoOutputWhileNoneIsSelected) {
    init();
    UI_ViewerNode& one = addViewer("one", ui.editorTarget.get());
    UI_ViewerNode& two = addViewer("two", nullptr);
    ui.outputs = {&one, &two};
    ui.DrawFrame();
    EXPECT_EQ(one.target, nullptr);
    EXPECT_EQ(two.target, nullptr);
}

TEST_F(UiEngineTest, HooksTheSelectedOutputToItsTarget) {
    init();
    UI_ViewerNode& one = addViewer("one", ui.editorTarget.get());
    UI_ViewerNode& two = addViewer("two", nullptr);
    ui.outputs = {&one, &two};
    ui.selectedOutput = 1;
    ui.DrawFrame();
    EXPECT_EQ(one.target, nullptr);
    EXPECT_EQ(two.target, ui.editorTarget.get());
    ui.selectedOutput = 2;  // none of that number
    ui.DrawFrame();
    EXPECT_EQ(two.target, nullptr);
}

TEST_F(UiEngineTest, LeavesViewersAloneInPresentation) {
    init();
    UI_ViewerNode& viewer = addViewer("viewer", ui.editorTarget.get());
    ui.DrawFrame();
    EXPECT_EQ(viewer.target, ui.editorTarget.get());
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
}
