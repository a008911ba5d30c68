// --shot and --bench on a scene whose pixels tell when they were drawn and what was there before.
#include <gtest/gtest.h>

#include "platform/picture_decoder.h"
#include "program/program_runs.h"
#include "support/exr_files.h"
#include "support/project_file.h"
#include "support/temp_folder.h"

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

// Level follows the clock, a second for each second. Red is the level, green the level of the frame
// before, blue the place from the first row of the screen (0) to the last (1).
constexpr const char* kClockScript = R"(Name "Clock" "Test"
Input 0 "Before" "picture"
Param 0 "Level" float 0 100 0
Source
#version 330 core
in vec2 texcoord;
uniform sampler2D Before;
uniform float Level;
out vec4 frag[1];
void main() { frag[0] = vec4(Level, texture(Before, texcoord).r, texcoord.y, 1.0); }
)";

constexpr const char* kGlassScript = R"(Name "Glass" "Test"
Input 0 "Before" "picture"
Source
#version 330 core
out vec4 frag[1];
void main() { frag[0] = vec4(1.0, 4.0, -1.0, 0.5); }
)";

ProjectFile Scene(const std::string& type) {
    ProjectFile file;
    file.strings().types(2).text("N").text(type).text("V").text("Viewer");
    file.links(2);
    file.text("N").word(1).word(0).text("N");
    file.text("V").word(1).word(0).text("N");
    file.tracks(1).text("N").word(1).text("N.Level").text("N").word(0).word(0).word(2);
    file.number(0).number(0).word(1);
    file.number(100).number(100).word(1);
    return file;
}

class Shots : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_.write("Scripts/clock.node", kClockScript);
        folder_.write("Scripts/glass.node", kGlassScript);
        folder_.write("demo.vorn", Scene("Clock").bytes());
    }

    // The four channels at a pixel of a picture of the whole frame.
    std::vector<float> pixelOf(const std::string& name, int x, int y) const {
        const ExrPicture picture = ReadExr(folder_.file(name));
        EXPECT_EQ(picture.width, kWidth);
        EXPECT_EQ(picture.height, kHeight);
        if (picture.rgba.empty()) return std::vector<float>(4, -1.0f);
        const auto first = picture.rgba.begin() + (static_cast<std::ptrdiff_t>(y) * kWidth + x) * 4;
        return {first, first + 4};
    }

    TempFolder folder_;
};

// Targets hold half floats: 11 bits below 8 seconds are 1/256 of a second.
constexpr float kHalfFloat = 1.0f / 256;

TEST_F(Shots, RunTheFrameBeforeAndTheFrameInTheOrderGiven) {
    const ProcessResult result = RunVorn(
        {"--shot", "5", "late.exr", "--shot", "2.5", "early.exr", "--shot", "0.01", "start.exr"},
        folder_.path());
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto late = pixelOf("late.exr", 960, 540);
    EXPECT_NEAR(late[0], 5.0f, kHalfFloat);
    EXPECT_NEAR(late[1], 5.0f - 1.0f / 60, kHalfFloat);
    const auto early = pixelOf("early.exr", 960, 540);
    EXPECT_NEAR(early[0], 2.5f, kHalfFloat);
    EXPECT_NEAR(early[1], 2.5f - 1.0f / 60, kHalfFloat);
    const auto start = pixelOf("start.exr", 960, 540);
    EXPECT_NEAR(start[0], 0.01f, 1e-5f);  // half floats are finer here
    EXPECT_EQ(start[1], 0.0f) << "no frame before time 0";
}

TEST_F(Shots, HaveTheTopOfTheScreenInTheirFirstRow) {
    ASSERT_EQ(RunVorn({"--shot", "0", "a.exr", "--shot", "0", "a.png"}, folder_.path()).exitCode,
              0);
    EXPECT_NEAR(pixelOf("a.exr", 0, 0)[2], 0.5f / kHeight, 1e-6f);                // half floats
    EXPECT_NEAR(pixelOf("a.exr", 5, kHeight - 1)[2], 1 - 0.5f / kHeight, 1e-3f);  // half floats
    const auto picture = DecodePicture(folder_.file("a.png"), nullptr);
    ASSERT_TRUE(picture.has_value());
    EXPECT_EQ(picture->width, static_cast<std::uint32_t>(kWidth));
    EXPECT_EQ(picture->height, static_cast<std::uint32_t>(kHeight));
    ASSERT_EQ(picture->channels, 3u);
    EXPECT_EQ(picture->pixels[2], 0);
    EXPECT_EQ(picture->pixels[(std::size_t{kWidth} * kHeight - 1) * 3 + 2], 255);
}

TEST_F(Shots, KeepTheTargetsValuesInExrAndShowThemOverBlackInPng) {
    folder_.write("demo.vorn", Scene("Glass").bytes());
    ASSERT_EQ(RunVorn({"--shot", "1", "a.exr", "--shot", "1", "a.png"}, folder_.path()).exitCode,
              0);
    // The viewer blends its input over nothing by its alpha.
    EXPECT_EQ(pixelOf("a.exr", 700, 300), (std::vector<float>{0.5f, 2.0f, -0.5f, 0.25f}));
    const auto picture = DecodePicture(folder_.file("a.png"), nullptr);
    ASSERT_TRUE(picture.has_value());
    EXPECT_EQ(picture->pixels[0], 128);
    EXPECT_EQ(picture->pixels[1], 255);
    EXPECT_EQ(picture->pixels[2], 0);
}

TEST_F(Shots, OfASceneWithoutAViewerAreBlackUnlessThereIsALoadingPicture) {
    folder_.write("demo.vorn", ProjectFile().strings().bytes());
    ASSERT_EQ(RunVorn({"--shot", "1", "a.exr"}, folder_.path()).exitCode, 0);
    EXPECT_EQ(pixelOf("a.exr", 960, 540), std::vector<float>(4, 0.0f));
}

TEST_F(Shots, GoOnAfterSavingAndTheBenchmarkToo) {
    const ProcessResult result =
        RunVorn({"--save", "b.vorn", "--shot", "1", "a.png", "--bench", "0.05"}, folder_.path());
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_FALSE(folder_.read("b.vorn").empty());
    EXPECT_FALSE(folder_.read("a.png").empty());
    EXPECT_TRUE(nlohmann::json::parse(result.out, nullptr, false).is_object());
}

TEST_F(Shots, TheBenchmarkPrintsWhatFramesAndNodesCost) {
    const ProcessResult result = RunVorn({"--bench", "0.1"}, folder_.path());
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto json = nlohmann::json::parse(result.out, nullptr, false);
    ASSERT_TRUE(json.is_object());
    EXPECT_EQ(json["frames"], 6);
    EXPECT_EQ(json["frame"]["frames"], 6);
    for (const char* node : {"N", "V"}) EXPECT_EQ(json["nodes"][node]["frames"], 6) << node;
    for (const auto& cost : {json["frame"], json["nodes"]["N"]}) {
        for (const char* clock : {"cpuMs", "gpuMs"}) {
            EXPECT_GE(cost[clock]["median"].get<double>(), 0.0);
            EXPECT_GE(cost[clock]["p99"].get<double>(), cost[clock]["median"].get<double>());
        }
    }
    EXPECT_GT(json["frame"]["cpuMs"]["p99"].get<double>(), 0.0);
}

}  // namespace
