// The shipped demo, as the content tool makes it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>

#include "platform/picture_decoder.h"
#include "platform/sound_system.h"
#include "program/program_runs.h"
#include "support/temp_folder.h"

namespace {

using Json = nlohmann::json;

std::string DemoFolder() {
    const char* folder = std::getenv("VORN_DEMO");
    return folder == nullptr ? "." : folder;
}

const Json& DemoInfo() {
    static const Json info = VornInfo({"demo.vorn", "--strict"}, DemoFolder());
    return info;
}

TEST(Demo, LoadsInAStrictRunWithoutAFault) {
    ASSERT_TRUE(DemoInfo().is_object());
    for (const Json& node : DemoInfo()["nodes"]) EXPECT_EQ(node["error"], false) << node["id"];
}

TEST(Demo, UsesEveryLibraryShaderAndEveryKindOfNodeOfItsChains) {
    ASSERT_TRUE(DemoInfo().is_object());
    std::set<std::string> used;
    for (const Json& node : DemoInfo()["nodes"]) used.insert(node["type"]);
    for (const char* type : {"Digital Glitch",
                             "Lens Blur",
                             "Radial Out Blur",
                             "Chromatic Abberation",
                             "Perlin Noise 3D",
                             "Displace 2D",
                             "Directional Blur",
                             "Simple Noise",
                             "Luma To Alpha",
                             "Color Correct",
                             "Reader",
                             "Transform2D",
                             "Compose",
                             "Sequencer",
                             "Time Switch Image",
                             "Viewer",
                             "ObjReader",
                             "OrbitCamera",
                             "Material",
                             "Combine Geometry",
                             "Randomize Material",
                             "Kinect2Puppet",
                             "HandLine",
                             "FallingModel",
                             "Particle Mesher",
                             "LightScreenEffect",
                             "3DRender_RAD",
                             "2D Parallax Engine",
                             "Glow",
                             "HoloBall",
                             "MotionBlur",
                             "Random Dots"}) {
        EXPECT_TRUE(used.contains(type)) << type;
    }
}

TEST(Demo, HasTracksInAllFourInterpolationModesAndEveryTrackDrivesAFloat) {
    ASSERT_TRUE(DemoInfo().is_object());
    std::set<int> modes;
    for (const Json& track : DemoInfo()["tracks"]) {
        EXPECT_EQ(track["target"], true) << track["name"];
        for (const Json& key : track["keys"]) modes.insert(key[2].get<int>());
    }
    EXPECT_EQ(modes, (std::set<int>{0, 1, 2, 3}));
}

TEST(Demo, CutsItsScenesToTheBars) {
    ASSERT_TRUE(DemoInfo().is_object());
    std::set<int> cuts;
    for (const Json& node : DemoInfo()["nodes"]) {
        if (node["type"] != "Sequencer") continue;
        for (std::size_t port = 0; port < 10; ++port) {
            if (node["inputs"][port]["source"].is_null()) continue;
            const std::string start = node["values"][port]["value"];
            cuts.insert(std::atoi(start.c_str()));
        }
    }
    constexpr int kBarMilliseconds = 2000;
    cuts.erase(cuts.upper_bound(230000), cuts.end());  // never
    for (const int cut : cuts) EXPECT_EQ(cut % kBarMilliseconds, 0) << cut;
    EXPECT_GE(cuts.size(), 20u);
}

TEST(Demo, SavesToTheBytesThatItWasLoadedFrom) {
    const TempFolder folder;
    ASSERT_EQ(RunVorn({"demo.vorn", "--save", folder.file("saved.vorn")}, DemoFolder()).exitCode,
              0);
    const ProcessResult original = RunProcess({"cat", "demo.vorn"}, {}, DemoFolder());
    EXPECT_EQ(folder.read("saved.vorn"), original.out);
}

TEST(Demo, MusicIs230SecondsOfStereo) {
    DecodedSound sound;
    std::string reason;
    ASSERT_TRUE(DecodeSoundFile(DemoFolder() + "/data/music.ogg", sound, reason)) << reason;
    EXPECT_EQ(sound.channels, 2u);
    EXPECT_EQ(sound.framesPerSecond, 48000u);
    const double seconds = static_cast<double>(sound.samples.size()) / 2 / 48000;
    EXPECT_NEAR(seconds, 230.0, 0.01);  // an Ogg page may end a few samples later
}

TEST(Demo, ShowsSomethingInEveryScene) {
    const TempFolder folder;
    std::vector<std::string> arguments = {"demo.vorn"};
    const std::vector<std::string> times = {
        "8",   "20",  "28",  "35",  "42",  "50",  "58",  "69",  "91",  "93",  "98",  "102", "106",
        "110", "120", "134", "138", "142", "152", "162", "166", "180", "204", "216", "226"};
    for (const std::string& time : times) {
        arguments.insert(arguments.end(), {"--shot", time, folder.file(time + ".png")});
    }
    ASSERT_EQ(RunVorn(arguments, DemoFolder()).exitCode, 0);
    for (const std::string& time : times) {
        const auto picture = DecodePicture(folder.file(time + ".png"), nullptr);
        ASSERT_TRUE(picture.has_value()) << time;
        const std::size_t bytes = std::size_t{picture->width} * picture->height * 3;
        double sum = 0, squares = 0;
        for (std::size_t i = 0; i < bytes; ++i) {
            const double value = picture->pixels[i];
            sum += value;
            squares += value * value;
        }
        const double mean = sum / static_cast<double>(bytes);
        const double deviation = std::sqrt(squares / static_cast<double>(bytes) - mean * mean);
        EXPECT_GT(mean, 8.0) << "black at " << time;
        EXPECT_GT(deviation, 8.0) << "one flat colour at " << time;
    }
}

}  // namespace
