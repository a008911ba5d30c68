// The tool that makes layered scenes, run as a process.
#include <gtest/gtest.h>

#include <cstdlib>

#include "support/child_process.h"
#include "support/temp_folder.h"

namespace {

ProcessResult RunSceneTool(const std::vector<std::string>& words) {
    const char* program = std::getenv("VORN_SCENE");
    std::vector<std::string> arguments = {program == nullptr ? "vorn_scene" : program};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return RunProcess(arguments, {}, {}, 60);
}

constexpr const char* kScene =
    R"({"layers": [{"name": "sky.png", "rect": [0, 0, 1920, 1080], "opacity": 0.5}]})";

TEST(SceneTool, MakesASceneAndPrintsItBack) {
    const TempFolder folder;
    folder.write("sky.json", kScene);
    const ProcessResult made = RunSceneTool({folder.file("sky.json"), folder.file("sky.scn")});
    EXPECT_EQ(made.exitCode, 0) << made.err;
    EXPECT_NE(made.out.find("1 layers, 1 keys"), std::string::npos) << made.out;
    // A name, a mode, a number of keys, and seven numbers.
    EXPECT_EQ(folder.read("sky.scn").size(), 512u + 4u + 4u + 28u);

    const ProcessResult printed = RunSceneTool({folder.file("sky.scn")});
    EXPECT_EQ(printed.exitCode, 0) << printed.err;
    EXPECT_NE(printed.out.find("sky.png"), std::string::npos);
    folder.write("back.json", printed.out);
    EXPECT_EQ(RunSceneTool({folder.file("back.json"), folder.file("back.scn")}).exitCode, 0);
    EXPECT_EQ(folder.read("back.scn"), folder.read("sky.scn"));
}

TEST(SceneTool, PrintsWhatIsWholeOfADamagedSceneAndTellsOfTheRest) {
    const TempFolder folder;
    folder.write("sky.json", kScene);
    ASSERT_EQ(RunSceneTool({folder.file("sky.json"), folder.file("sky.scn")}).exitCode, 0);
    folder.write("cut.scn", folder.read("sky.scn") + "half a record");
    const ProcessResult printed = RunSceneTool({folder.file("cut.scn")});
    EXPECT_EQ(printed.exitCode, 3);
    EXPECT_NE(printed.out.find("sky.png"), std::string::npos);
    EXPECT_NE(printed.err.find("cut.scn"), std::string::npos);
}

TEST(SceneTool, SaysWhatIsWrongWithItsArguments) {
    const TempFolder folder;
    folder.write("sky.json", kScene);
    folder.write("bad.json", "{\"layers\": 7}");
    EXPECT_EQ(RunSceneTool({}).exitCode, 2);
    EXPECT_EQ(RunSceneTool({folder.file("sky.json")}).exitCode, 2) << "no name to write";
    EXPECT_EQ(RunSceneTool({folder.file("none.json"), folder.file("a.scn")}).exitCode, 3);
    EXPECT_EQ(RunSceneTool({folder.file("bad.json"), folder.file("a.scn")}).exitCode, 3);
    const std::string nowhere = (folder.path() / "none" / "a.scn").string();
    EXPECT_EQ(RunSceneTool({folder.file("sky.json"), nowhere}).exitCode, 5);
}

}  // namespace
