// The scan of the folder Scripts when the engine starts.
#include <gmock/gmock.h>

#include "platform/debug_output.h"
#include "support/core_nodes.h"
#include "support/temp_folder.h"

namespace {

using ::testing::ElementsAre;

class ScriptScanTest : public ::testing::Test {
  protected:
    static std::string named(const std::string& name) { return "Name \"" + name + "\", \"c\"\n"; }
    std::vector<std::string> typesAfterInit() {
        EXPECT_TRUE(engine_.init());
        return engine_.typeNames;
    }

    TempFolder folder_;
    WorkingFolder working_{folder_.path()};
    TestEngine engine_;
};

TEST_F(ScriptScanTest, PutsScriptsInNameOrderBeforeTheBuiltInTypes) {
    folder_.write("Scripts/b.node", named("Second"));
    folder_.write("Scripts/a.node", named("First"));
    folder_.write("Scripts/c.node", named("Third"));
    EXPECT_THAT(typesAfterInit(),
                ElementsAre("First", "Second", "Third", "Node", "Camera", "Output"));
    ASSERT_EQ(engine_.scripts.size(), 3u);
    EXPECT_EQ(engine_.scripts[1].name, "Second");
}

TEST_F(ScriptScanTest, TakesEveryFileWhoseNameContainsTheEnding) {
    folder_.write("Scripts/a.node.bak", named("Bak"));
    folder_.write("Scripts/b.nodes", named("Nodes"));
    folder_.write("Scripts/.node", named("Bare"));
    folder_.write("Scripts/a.txt", named("Text"));
    folder_.write("Scripts/node", named("NoDot"));
    folder_.write("Scripts/deep.node/c.node", named("Folder"));
    EXPECT_THAT(typesAfterInit(), ElementsAre("Bare", "Bak", "Nodes", "Node", "Camera", "Output"));
}

TEST_F(ScriptScanTest, FindsTheFolderInAnyCase) {
    folder_.write("scripts/a.node", named("First"));
    EXPECT_THAT(typesAfterInit(), ElementsAre("First", "Node", "Camera", "Output"));
}

TEST_F(ScriptScanTest, IsEmptyWithoutTheFolder) {
    EXPECT_FALSE(engine_.init());
    EXPECT_THAT(engine_.typeNames, ElementsAre("Node", "Camera", "Output"));
}

TEST_F(ScriptScanTest, OffersABadScriptWithWhatWasUnderstood) {
    folder_.write("Scripts/a.node", "nothing at all");
    folder_.write("Scripts/b.node", named("B") + "Input 9, \"x\", \"rgba\"");
    const DebugCapture debug;
    EXPECT_THAT(typesAfterInit(), ElementsAre("", "B", "Node", "Camera", "Output"));
    EXPECT_EQ(debug.text(), ".\\Scripts\\b.node: input 9 is outside 0 to 7\n");
}

TEST_F(ScriptScanTest, PassesOverAFileThatIsTooLargeToBeAScript) {
    folder_.write("Scripts/a.node", std::string((16u << 20) + 1, ' '));
    folder_.write("Scripts/b.node", named("B"));
    const DebugCapture debug;
    EXPECT_THAT(typesAfterInit(), ElementsAre("B", "Node", "Camera", "Output"));
    EXPECT_EQ(debug.messages().size(), 1u);
}

TEST_F(ScriptScanTest, LetsABuiltInTypeGoBeforeAScriptOfItsName) {
    folder_.write("Scripts/a.node", named("Camera"));
    EXPECT_THAT(typesAfterInit(), ElementsAre("Camera", "Node", "Camera", "Output"));
    const DebugCapture debug;
    ASSERT_TRUE(engine_.createNode("C1", "Camera"));
    EXPECT_NE(dynamic_cast<TestCamera*>(engine_.findNode("C1")), nullptr);
    EXPECT_EQ(debug.text(), "Load Script from File: Camera\n");
    EXPECT_EQ(*engine_.nodeTypes.find("C1"), "Camera");
}

}  // namespace
