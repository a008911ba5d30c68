// Saving: the bytes of a project file, and what saving does to the running scene.
#include <gmock/gmock.h>

#include "core/image_node_sequence.h"
#include "platform/user_dialogs.h"
#include "support/core_nodes.h"
#include "support/project_file.h"
#include "support/temp_folder.h"

namespace {

using ::testing::IsEmpty;

// What the test node's values look like in a file, with a size of one's own.
void TestNodeValues(ProjectFile& file, const std::string& id, float size) {
    file.text(id).word(TestNode::kValues);
    file.text("On").word(0).byte(1);
    file.text("Mode").word(1).word(2);
    file.text("Size").word(2).number(size);
    file.text("Size2").word(2).number(0.5f);
    file.text("Frozen").word(2).number(0.25f);
    file.text("Place").word(3).number(0.125f).number(0.25f);
    file.text("Tint").word(4).number(0.1f).number(0.2f).number(0.3f).number(0.4f);
    file.text("Text").word(5).text("none");
    file.text("Translate.X").word(2).number(1);
    file.text("Translate.Y").word(2).number(2);
    file.text("Translate.Z").word(2).number(3);
    file.text("Center.X").word(2).number(4);
    file.text("Center.Y").word(2).number(5);
    file.text("Center.Z").word(2).number(6);
    file.text("Alpha.x").word(2).number(0);
}

class ProjectWriterTest : public ::testing::Test {
  protected:
    std::string saved() {
        EXPECT_TRUE(engine_.save(folder_.file("a.vorn")));
        return folder_.read("a.vorn");
    }

    TempFolder folder_;
    TestEngine engine_;
};

TEST_F(ProjectWriterTest, WritesAnEmptySceneAsSixEmptySections) {
    engine_.lengthText = "about 3";
    ProjectFile wanted;
    wanted.word(0x86869000).text("").text("").text("").text("").number(0);
    wanted.types(0).counters(0).links(0).values(0).tracks(0);
    EXPECT_EQ(saved(), wanted.bytes());
}

TEST_F(ProjectWriterTest, LaysASmallProjectOutByteByByte) {
    engine_.projectName = "name";
    engine_.projectFolder = "c:\\temp\\K4409\\";
    engine_.musicFile = ".\\data\\m.ogg";
    engine_.dataFolder = ".\\d\\";
    engine_.lengthText = "61.5";
    engine_.makeNode("B1");
    engine_.createNode("X1", "Vanished");
    engine_.makeNode("A1");
    engine_.createNode("C1", "Camera");
    engine_.typeCounters["Node"] = 7;
    engine_.typeCounters["Camera"] = -1;
    engine_.connect("A1", "B1", 1);
    engine_.connect("B1", "A1", 2);
    engine_.addAnimation("A1", "Size");
    engine_.track("A1").setKeys({{2.5f, 1, 3}, {3.5f, 2, -7}});
    engine_.track("A1").reserved[0] = 0xDEADBEEF;
    engine_.track("A1").reserved[1] = 5;
    engine_.tracks["C1"];

    ProjectFile wanted;
    wanted.word(0x86869000).text("name").text("c:\\temp\\K4409\\").text(".\\data\\m.ogg");
    wanted.text(".\\d\\").number(61.5f);
    wanted.types(4).text("B1").text("Node").text("X1").text("Vanished");
    wanted.text("A1").text("Node").text("C1").text("Camera");
    wanted.counters(2).text("Node").word(7).text("Camera").word(0xFFFFFFFF);
    wanted.links(3);
    wanted.text("B1").word(3).word(0).text("").word(1).text("A1").word(2).text("");
    wanted.text("A1").word(3).word(0).text("").word(1).text("").word(2).text("B1");
    wanted.text("C1").word(0);
    wanted.values(2);
    TestNodeValues(wanted, "B1", 1.5f);
    TestNodeValues(wanted, "A1", 2.5f);  // as the track has it at time 0
    wanted.tracks(2).text("A1").word(1);
    wanted.text("A1.Size").text("A1").word(0xDEADBEEF).word(5).word(2);
    wanted.number(2.5f).number(1).word(3);
    wanted.number(3.5f).number(2).word(0xFFFFFFF9);
    wanted.text("C1").word(0);
    EXPECT_EQ(saved(), wanted.bytes());
}

TEST_F(ProjectWriterTest, SavesTheValuesOfTimeZeroAndGoesOnWhereItWas) {
    TestNode& node = engine_.makeNode("A1");
    engine_.addAnimation("A1", "Size");
    engine_.track("A1").setKeys({{3, 0, 1}, {5, 200, 1}});
    engine_.update(100);
    EXPECT_EQ(node.size, 4.0f);
    const std::string bytes = saved();
    EXPECT_EQ(engine_.time, 100.0f);
    EXPECT_EQ(node.size, 4.0f);
    ProjectFile size;
    size.text("Size").word(2).number(3);
    EXPECT_NE(bytes.find(size.bytes().substr(4)), std::string::npos);
    engine_.update(101);
    EXPECT_EQ(engine_.deltaTime, 1.0f);
}

TEST_F(ProjectWriterTest, StaysAtTimeZeroWhenTheFileCannotBeWritten) {
    TestNode& node = engine_.makeNode("A1");
    engine_.addAnimation("A1", "Size");
    engine_.track("A1").setKeys({{3, 0, 1}, {5, 200, 1}});
    engine_.update(100);
    EXPECT_FALSE(engine_.save(folder_.file("there/a") + "/b/c.vorn"));
    EXPECT_EQ(engine_.time, 0.0f);
    EXPECT_EQ(node.size, 3.0f);
}

TEST_F(ProjectWriterTest, CountsAnEntryWithoutANodeButLeavesItOut) {
    engine_.values[nullptr];
    ProjectFile wanted;
    wanted.word(0x86869000).text("").text("").text("").text("").number(0);
    wanted.types(0).counters(0).links(0).values(1).tracks(0);
    EXPECT_EQ(saved(), wanted.bytes());
}

TEST_F(ProjectWriterTest, EndsATextAtItsFirstZeroByte) {
    engine_.projectName = std::string("ab\0cd", 5);
    EXPECT_EQ(saved().substr(8, 4), std::string("ab\0\0", 4));
}

TEST_F(ProjectWriterTest, AsksNothingOfTheUser) {
    engine_.makeNode("A1");
    engine_.createNode("X1", "Vanished");
    std::vector<std::string> boxes;
    const MessageBoxHandler before = SetMessageBoxHandler([&](auto text, auto, auto) {
        boxes.emplace_back(text);
        return MessageAnswer::Ok;
    });
    saved();
    SetMessageBoxHandler(before);
    EXPECT_THAT(boxes, IsEmpty());
}

}  // namespace
