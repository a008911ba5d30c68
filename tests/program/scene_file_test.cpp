// --save, --info and --import on project files that are put together here, byte by byte.
#include <gtest/gtest.h>

#include <algorithm>

#include "program/program_runs.h"
#include "support/project_file.h"
#include "support/temp_folder.h"

namespace {

using Json = nlohmann::json;

const Json* Find(const Json& list, const char* key, const std::string& value) {
    const auto it = std::find_if(list.begin(), list.end(),
                                 [&](const Json& entry) { return entry[key] == value; });
    return it == list.end() ? nullptr : &*it;
}

// A reader, a transform behind it, and a viewer, with a value and a track.
ProjectFile SmallScene(std::uint32_t magic) {
    ProjectFile file(magic);
    file.strings(61.5f).types(3);
    file.text("Reader1").text("Reader").text("Move").text("Transform2D").text("V").text("Viewer");
    file.counters(1).text("Reader").word(1);
    file.links(2);
    file.text("Move").word(1).word(0).text("Reader1");
    file.text("V").word(1).word(0).text("Move");
    file.values(1).text("Move").word(2);
    file.text("Position").word(3).number(0.25f).number(0.75f);
    file.text("Scale").word(2).number(2.5f);
    file.tracks(1).text("Move").word(1);
    file.text("Move.Position.y").text("Move").word(0).word(0).word(2);
    file.number(0.5f).number(1.0f);
    if (magic == 0x86875002) file.word(2);
    file.number(0.75f).number(3.0f);
    if (magic == 0x86875002) file.word(3);
    return file;
}

TEST(SceneFile, InfoShowsWhatTheFileHolds) {
    const TempFolder folder;
    folder.write("demo.vorn", SmallScene(0x86875002).bytes());
    const Json info = VornInfo({}, folder.path());
    ASSERT_TRUE(info.is_object());
    EXPECT_EQ(info["strings"]["lengthText"], "61.5");
    EXPECT_EQ(info["counters"]["Reader"], 1);
    ASSERT_EQ(info["nodes"].size(), 3u);
    const Json& move = info["nodes"][1];
    EXPECT_EQ(move["id"], "Move");
    EXPECT_EQ(move["type"], "Transform2D");
    EXPECT_EQ(move["family"], 1);
    EXPECT_EQ(move["inputs"][0]["name"], "Image");
    EXPECT_EQ(move["inputs"][0]["source"], "Reader1");
    const Json* scale = Find(move["values"], "name", "Scale");
    ASSERT_NE(scale, nullptr);
    EXPECT_EQ((*scale)["value"], 2.5);
    EXPECT_EQ((*scale)["type"], 2);
    EXPECT_EQ((*scale)["max"], 10.0);
    EXPECT_EQ((*scale)["decimals"], 4);
    EXPECT_EQ((*scale)["default"], 1.0);
    EXPECT_EQ((*scale)["animatable"], true);
    EXPECT_EQ(info["nodes"][2]["family"], 0);
    ASSERT_EQ(info["tracks"].size(), 1u);
    EXPECT_EQ(info["tracks"][0]["name"], "Move.Position.y");
    EXPECT_EQ(info["tracks"][0]["owner"], "Move");
    EXPECT_EQ(info["tracks"][0]["target"], true);
    EXPECT_EQ(info["tracks"][0]["keys"], Json::parse("[[0.5, 1.0, 2], [0.75, 3.0, 3]]"));
}

TEST(SceneFile, KeysOfTheOldMagicAreCosine) {
    const TempFolder folder;
    folder.write("demo.vorn", SmallScene(0x86875001).bytes());
    const Json info = VornInfo({}, folder.path());
    ASSERT_TRUE(info.is_object());
    EXPECT_EQ(info["tracks"][0]["keys"], Json::parse("[[0.5, 1.0, 0], [0.75, 3.0, 0]]"));
}

TEST(SceneFile, SavingALoadedFileGivesTheSameBytes) {
    const TempFolder folder;
    folder.write("demo.vorn", SmallScene(0x86875002).bytes());
    ASSERT_EQ(RunVorn({"--save", "one.vorn"}, folder.path()).exitCode, 0);
    ASSERT_EQ(RunVorn({"one.vorn", "--save", "two.vorn"}, folder.path()).exitCode, 0);
    EXPECT_FALSE(folder.read("one.vorn").empty());
    EXPECT_EQ(folder.read("one.vorn"), folder.read("two.vorn"));
}

TEST(SceneFile, SavedValuesAreThoseOfTimeZero) {
    const TempFolder folder;
    folder.write("demo.vorn", SmallScene(0x86875002).bytes());
    ASSERT_EQ(RunVorn({"--save", "one.vorn", "--shot", "2", "a.png"}, folder.path()).exitCode, 0);
    const Json info = VornInfo({"one.vorn"}, folder.path());
    const Json* position = Find(info["nodes"][1]["values"], "name", "Position");
    ASSERT_NE(position, nullptr);
    EXPECT_EQ((*position)["value"], Json::parse("[0.25, 0.5]"));
}

TEST(SceneFile, TheFolderOfTheAuthoringMachineIsReplaced) {
    const TempFolder folder;
    ProjectFile file;
    file.word(0x86869000).text("demo").text("c:\\temp\\K4409\\");
    file.text("C:\\TEMP\\K4409\\data\\x.ogg").text("C:\\temp\\K4409\\data\\").number(240);
    folder.write("demo.vorn", file.bytes());
    const Json strings = VornInfo({}, folder.path())["strings"];
    EXPECT_EQ(strings["musicFile"], ".\\data\\x.ogg");
    EXPECT_EQ(strings["dataFolder"], ".\\data\\");
    EXPECT_EQ(strings["projectFolder"], "c:\\temp\\K4409\\");
}

TEST(SceneFile, AnImportPrefixesEveryIdAndTheCountersToo) {
    const TempFolder folder;
    folder.write("demo.vorn", SmallScene(0x86875002).bytes());
    folder.write("parts/Second.vorn", SmallScene(0x86875002).bytes());
    const Json info = VornInfo({"--import", "parts/Second.vorn"}, folder.path());
    ASSERT_TRUE(info.is_object());
    ASSERT_EQ(info["nodes"].size(), 6u);
    EXPECT_EQ(info["nodes"][4]["id"], "Second-Move");
    EXPECT_EQ(info["nodes"][4]["inputs"][0]["source"], "Second-Reader1");
    EXPECT_EQ(info["counters"]["Second-Reader"], 1);
    EXPECT_EQ(info["tracks"][1]["name"], "Second-Move.Position.y");
    EXPECT_EQ(info["tracks"][1]["owner"], "Second-Move");
    EXPECT_EQ(info["tracks"][1]["target"], true);
}

TEST(SceneFile, AnImportsPrefixIsItsNameWithoutFolderAndLastEnding) {
    const TempFolder folder;
    folder.write("demo.vorn", ProjectFile().strings().bytes());
    folder.write("v1.5/plain", SmallScene(0x86875002).bytes());
    folder.write("v1.5/two.parts.vorn", SmallScene(0x86875002).bytes());
    const Json info =
        VornInfo({"--import", "v1.5/plain", "--import", "v1.5\\two.parts.vorn"}, folder.path());
    ASSERT_TRUE(info.is_object());
    ASSERT_EQ(info["nodes"].size(), 6u);
    EXPECT_EQ(info["nodes"][0]["id"], "plain-Reader1");
    EXPECT_EQ(info["nodes"][3]["id"], "two.parts-Reader1");
}

TEST(SceneFile, TwoImportsOfOneFileAddItsNodesOnce) {
    const TempFolder folder;
    folder.write("demo.vorn", SmallScene(0x86875002).bytes());
    folder.write("Second.vorn", SmallScene(0x86875002).bytes());
    const Json info =
        VornInfo({"--import", "Second.vorn", "--import", "Second.vorn"}, folder.path());
    ASSERT_TRUE(info.is_object());
    EXPECT_EQ(info["nodes"].size(), 6u);
}

TEST(SceneFile, UnknownTagsArePassedOver) {
    const TempFolder folder;
    ProjectFile file;
    file.word(0x12345678).word(0x86869999).types(1).text("V").text("Viewer").word(7);
    folder.write("demo.vorn", file.bytes());
    const Json info = VornInfo({}, folder.path());
    ASSERT_TRUE(info.is_object());
    EXPECT_EQ(info["nodes"].size(), 1u);
}

TEST(SceneFile, SectionsBeforeTheirNodesFindNothing) {
    const TempFolder folder;
    ProjectFile file;
    file.counters(1).text("Reader").word(9);
    file.types(1).text("Move").text("Transform2D");
    file.strings();
    folder.write("demo.vorn", file.bytes());
    const Json info = VornInfo({}, folder.path());
    ASSERT_TRUE(info.is_object());
    EXPECT_EQ(info["counters"]["Reader"], 9);
    EXPECT_EQ(info["nodes"].size(), 1u);
    EXPECT_EQ(info["strings"]["projectName"], "demo");
}

TEST(SceneFile, AValueThatTheNodeNoLongerHasCostsTheValuesAfterIt) {
    const TempFolder folder;
    ProjectFile file;
    file.types(1).text("Move").text("Transform2D");
    file.values(1).text("Move").word(2);
    file.text("Gone").word(2).number(4.0f);
    file.text("Scale").word(2).number(2.5f);
    folder.write("demo.vorn", file.bytes());
    const ProcessResult result = RunVorn({"--info"}, folder.path());
    ASSERT_EQ(result.exitCode, 0);
    const Json info = Json::parse(result.out);
    const Json* scale = Find(info["nodes"][0]["values"], "name", "Scale");
    ASSERT_NE(scale, nullptr);
    // The word 2 behind "Gone" is read as the text of a second name, and the count is used up.
    EXPECT_EQ((*scale)["value"], 1.0);
    EXPECT_NE(result.err.find("demo.vorn"), std::string::npos);
}

TEST(SceneFile, ANodeOfAnUnknownTypeIsAbsentButStaysInTheFile) {
    const TempFolder folder;
    ProjectFile file;
    file.types(2).text("X1").text("No Such Type").text("V").text("Viewer");
    folder.write("demo.vorn", file.bytes());
    const Json info = VornInfo({"--save", "saved.vorn"}, folder.path());
    ASSERT_TRUE(info.is_object());
    EXPECT_EQ(info["nodes"].size(), 1u);
    EXPECT_NE(folder.read("saved.vorn").find("No Such Type"), std::string::npos);
}

TEST(SceneFile, TypesStandInTheirOrder) {
    const TempFolder folder;
    folder.write("demo.vorn", ProjectFile().strings().bytes());
    const Json types = VornInfo({}, folder.path())["types"];
    const std::vector<std::string> order = {"Viewer",
                                            "Reader",
                                            "Transform2D",
                                            "ObjReader",
                                            "OrbitCamera",
                                            "Material",
                                            "3DRender_RAD",
                                            "3DPrimitive",
                                            "MotionBlur",
                                            "Kinect2Puppet",
                                            "LightScreenEffect",
                                            "Time Switch Image",
                                            "Time Switch Camera",
                                            "Combine Geometry",
                                            "Random Dots",
                                            "HandLine",
                                            "FallingModel",
                                            "Randomize Material",
                                            "2D Parallax Engine",
                                            "Particle Mesher",
                                            "Glow",
                                            "Sequencer",
                                            "Compose",
                                            "HoloBall"};
    std::vector<std::string> present;
    for (const auto& type : types) {
        if (std::find(order.begin(), order.end(), type) != order.end()) present.push_back(type);
    }
    EXPECT_EQ(present, order);
}

}  // namespace
