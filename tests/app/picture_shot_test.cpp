#include <GL/glew.h>
#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "app/command_line.h"
#include "app/session.h"
#include "app/shots.h"
#include "core/image_node.h"
#include "gpu/gl_debug.h"
#include "image/image_node_reader.h"
#include "platform/debug_output.h"
#include "platform/picture_decoder.h"
#include "support/exr_files.h"
#include "support/gl_fixture.h"
#include "support/picture_files.h"
#include "support/temp_folder.h"

namespace {

// Shows the frame's time in its colours.
constexpr const char* kClockScript = R"(Name "Clock", "Test"
Source #version 330 core
uniform float ng_time;
out vec4 frag[1];
void main() { frag[0] = vec4(ng_time, ng_time - 1.0, 1.0 - ng_time, 1.0); })";

// Counts its runs in 64ths.
constexpr const char* kCountScript = R"(Name "Count", "Test"
Input 0, "Last", "color"
Source #version 330 core
uniform sampler2D Last;
in vec2 texcoord;
out vec4 frag[1];
void main() { frag[0] = vec4(texture(Last, texcoord).rgb + 1.0 / 64.0, 1.0); })";

// Every value from below 0 to above 1 from left to right, and a half transparent lower half.
constexpr const char* kRampScript = R"(Name "Ramp", "Test"
Source #version 330 core
in vec2 texcoord;
out vec4 frag[1];
void main() { frag[0] = vec4(texcoord.x * 3.0 - 1.0, texcoord.x, texcoord.y, texcoord.y < 0.5 ? 1.0 : 0.5); })";

class ShotTest : public testing::Test {
  protected:
    void SetUp() override {
        const char* fonts = std::getenv("VORN_TEST_FONTS");
        if (fonts != nullptr) {
            std::filesystem::create_directory_symlink(fonts, folder.path() / "fonts");
        }
        folder.write("Scripts/Clock.node", kClockScript);
        folder.write("Scripts/Count.node", kCountScript);
        folder.write("Scripts/Ramp.node", kRampScript);
        std::string reason;
        int exitCode = 0;
        const DebugCapture silent;
        session = Session::Start(WindowKind::Offscreen, reason, exitCode);
        ASSERT_NE(session, nullptr) << reason;
        ASSERT_TRUE(session->engine->createNode("Viewer1", "Viewer"));
    }
    void TearDown() override { EXPECT_EQ(GlErrorCount(), 0u); }

    Node& showNode(const std::string& id, const std::string& type) {
        const DebugCapture silent;
        EXPECT_TRUE(session->engine->createNode(id, type));
        EXPECT_TRUE(session->engine->connect(id, "Viewer1", 0));
        return *session->engine->findNode(id);
    }

    DecodedPicture shootPng(double seconds) {
        const DebugCapture silent;
        EXPECT_TRUE(TakeShot(*session, {seconds, folder.file("shot.png")}));
        std::optional<DecodedPicture> picture = DecodePicture(folder.file("shot.png"), nullptr);
        EXPECT_TRUE(picture.has_value());
        return picture ? std::move(*picture) : DecodedPicture{};
    }

    // RGBA, top row first.
    std::vector<float> shootExr(double seconds) {
        EXPECT_TRUE(TakeShot(*session, {seconds, folder.file("shot.exr")}));
        ExrPicture picture = ReadExr(folder.file("shot.exr"));
        EXPECT_EQ(picture.width, kFrameWidth);
        EXPECT_EQ(picture.height, kFrameHeight);
        picture.rgba.resize(kFrameWidth * kFrameHeight * 4);  // also where it could not be read
        return std::move(picture.rgba);
    }

    TempFolder folder;
    WorkingFolder workingFolder{folder.path()};
    std::unique_ptr<Session> session;
};

const std::uint8_t* PixelOf(const DecodedPicture& picture, std::uint32_t x, std::uint32_t y) {
    return &picture.pixels[(y * picture.width + x) * picture.channels];
}

// Clamped to 0 to 1 and rounded to 8 bits.
int Byte(float value) {
    return static_cast<int>(std::lround(std::min(std::max(value, 0.0f), 1.0f) * 255.0f));
}

}  // namespace

TEST_F(ShotTest, RunsTheGraphAtTheTimeOfTheShot) {
    showNode("Clock1", "Clock");
    for (const float seconds : {0.5f, 0.25f, 3.0f}) {
        const std::vector<float> rgba = shootExr(static_cast<double>(seconds));
        EXPECT_EQ(rgba[0], seconds);
        EXPECT_EQ(rgba[1], seconds - 1);
        EXPECT_EQ(rgba[2], 1 - seconds);
        EXPECT_EQ(rgba[3], 1);
        EXPECT_EQ(session->engine->time, seconds);
        EXPECT_EQ(session->engine->deltaTime,
                  seconds - static_cast<float>(static_cast<double>(seconds) - 1.0 / 60));
    }
}

TEST_F(ShotTest, DoesNotRunBelowZero) {
    showNode("Clock1", "Clock");
    shootPng(0.005);
    EXPECT_EQ(session->engine->deltaTime, 0.005f);
}

TEST_F(ShotTest, RunsTheGraphTwiceForEveryShot) {
    Node& count = showNode("Count1", "Count");
    ASSERT_TRUE(session->engine->connect("Count1", "Count1", 0));
    EXPECT_EQ(shootExr(1)[0], 2.0f / 64);
    EXPECT_EQ(shootExr(2)[0], 4.0f / 64);
    EXPECT_EQ(shootExr(2)[0], 6.0f / 64);
    EXPECT_FALSE(count.hasError);
}

// As in a frame of the player: HoloBall clears its picture with the colour that it finds.
TEST_F(ShotTest, BeginsEveryRunWithOpaqueBlackToClearWith) {
    showNode("HoloBall1", "HoloBall");
    for (int run = 0; run < 2; ++run) {
        const DebugCapture silent;
        const std::vector<float> rgba = shootExr(1);
        int clear = 0;
        for (std::size_t i = 3; i < rgba.size(); i += 4) clear += rgba[i] != 1.0f;
        EXPECT_EQ(clear, 0) << run;
    }
}

TEST_F(ShotTest, WritesTheTargetsOwnFloatsToExr) {
    showNode("Ramp1", "Ramp");
    const std::vector<float> rgba = shootExr(1);
    const std::vector<float> target = ReadTarget(*session->ui->editorTarget);
    // The file's first row is the target's first in memory: the top of the screen.
    EXPECT_TRUE(rgba == target);
    EXPECT_LT(rgba[0], 0);
    EXPECT_GT(rgba[(kFrameWidth - 1) * 4], 1);
}

TEST_F(ShotTest, WritesColoursOverBlackToPng) {
    showNode("Ramp1", "Ramp");
    const DecodedPicture picture = shootPng(1);
    ASSERT_EQ(picture.width, 1920u);
    ASSERT_EQ(picture.height, 1080u);
    ASSERT_EQ(picture.channels, 3u);
    const std::vector<float> target = ReadTarget(*session->ui->editorTarget);
    int wrong = 0;
    for (std::uint32_t y = 0; y < picture.height; y += 7) {
        for (std::uint32_t x = 0; x < picture.width; ++x) {
            const float* expected = &target[(y * picture.width + x) * 4];
            const std::uint8_t* pixel = PixelOf(picture, x, y);
            for (int c = 0; c < 3; ++c) wrong += pixel[c] != Byte(expected[c]);
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(PixelOf(picture, 0, 0)[0], 0);
    EXPECT_EQ(PixelOf(picture, 1919, 0)[0], 255);
}

TEST_F(ShotTest, FailsWhereNothingCanBeWritten) {
    const DebugCapture silent;
    EXPECT_FALSE(TakeShot(*session, {1, folder.file("no") + "/such/shot.png"}));
    EXPECT_FALSE(TakeShot(*session, {1, folder.file("no") + "/such/shot.exr"}));
}

// A picture with one white pixel at its top left, through reader and viewer.
TEST_F(ShotTest, KeepsTheTopLeftOfAPictureAtTheTopLeftOfScreenAndFile) {
    std::vector<std::uint8_t> pixels(16 * 9 * 4, 0);
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        pixels[i + 2] = 51;
        pixels[i + 3] = 255;
    }
    pixels[0] = pixels[1] = pixels[2] = 255;
    const FileContent png = MakePng(16, 9, {.colorType = 6}, pixels);
    folder.write("marked.png", std::string(png.begin(), png.end()));
    auto& reader = static_cast<ImageNode_Reader&>(showNode("Reader1", "Reader"));
    reader.filename = "marked.png";

    const DecodedPicture picture = shootPng(1);
    // The middle of the marked pixel, of 120 pixels a side, and of those in the other corners. The
    // middle lies between two pixels, so that a little of the neighbours is mixed in.
    EXPECT_GT(PixelOf(picture, 60, 60)[0], 250);
    EXPECT_EQ(PixelOf(picture, 1919 - 60, 60)[0], 0);
    EXPECT_EQ(PixelOf(picture, 60, 1079 - 60)[0], 0);
    EXPECT_EQ(PixelOf(picture, 1919 - 60, 1079 - 60)[0], 0);
    // The first pixel is a quarter of the mark, whose alpha is a quarter there, and border else.
    EXPECT_NEAR(PixelOf(picture, 0, 0)[0], 255.0 / 16, 2);
    EXPECT_EQ(PixelOf(picture, 1919, 0)[0], 0);
    EXPECT_EQ(PixelOf(picture, 0, 1079)[0], 0);

    session->drawEditor();
    const int width = session->window->drawableWidth(), height = session->window->drawableHeight();
    std::vector<std::uint8_t> screen(static_cast<std::size_t>(width * height * 4));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, screen.data());
    const PictureArea area = LetterboxArea(width, height);
    const auto red = [&](double fromLeft, double fromTop) {
        const int x = area.x + static_cast<int>(fromLeft * area.width);
        const int y = area.y + area.height - 1 - static_cast<int>(fromTop * area.height);
        return static_cast<int>(screen[static_cast<std::size_t>(y * width + x) * 4]);
    };
    EXPECT_GT(red(0.5 / 16, 0.5 / 9), 128);  // a small window mixes more of the neighbours in
    EXPECT_EQ(red(15.5 / 16, 0.5 / 9), 0);
    EXPECT_EQ(red(0.5 / 16, 8.5 / 9), 0);
    EXPECT_EQ(red(15.5 / 16, 8.5 / 9), 0);
}
