// Edits of the graph as they show on the whole authoring screen: outputs, names, panels that close
// under the pointer, and the toolbar's own buttons.
#include "authoring_fixture.h"
#include "editor/ui_color_selector.h"
#include "editor/ui_node_palette.h"
#include "editor/ui_position.h"
#include "editor/ui_properties_panel.h"

using testing::ElementsAre;

namespace {

class UiScreenEdits : public AuthoringTest {
  protected:
    void SetUp() override {
        AuthoringTest::SetUp();
        if (!HasFatalFailure()) makeScene();
    }
    void type(const std::string& text) {
        for (const char c : text) send(kMessageCharacter, 0, 0, c);
    }
    UI_Button& button(const std::string& text) {
        for (const auto& child : ui.topPanel->children) {
            auto* found = dynamic_cast<UI_Button*>(child.get());
            if (found != nullptr && found->text == text) return *found;
        }
        throw std::runtime_error("there is no button " + text);
    }
    UI_ViewerNode& viewer(const std::string& id) {
        return dynamic_cast<UI_ViewerNode&>(*engine.findNode(id));
    }
    void deleteOnCanvas(const std::string& id) {
        ui.nodeCanvas->select({id});
        key(kKeyDelete, 700, ui.nodeCanvas->y + 200);
        ASSERT_EQ(engine.findNode(id), nullptr);
    }
};

}  // namespace

TEST_F(UiScreenEdits, DeletingAnEarlierOutputKeepsTheOneOnTheScreen) {
    engine.createNode("second", "Viewer");
    engine.createNode("third", "Viewer");
    edit();
    ui.selectedOutput = 1;
    deleteOnCanvas("view");
    EXPECT_EQ(ui.selectedOutput, 0);
    EXPECT_EQ(ui.outputChoice.value, 0);
    ui.DrawFrame();
    EXPECT_EQ(viewer("second").target, ui.editorTarget.get());
    EXPECT_EQ(viewer("third").target, nullptr);
    deleteOnCanvas("third");
    ui.DrawFrame();
    EXPECT_EQ(viewer("second").target, ui.editorTarget.get()) << "a later one, too";
}

TEST_F(UiScreenEdits, DeletingTheOutputOnTheScreenShowsTheNext) {
    engine.createNode("second", "Viewer");
    engine.createNode("third", "Viewer");
    edit();
    ui.selectedOutput = 1;
    deleteOnCanvas("second");
    ui.DrawFrame();
    EXPECT_EQ(viewer("third").target, ui.editorTarget.get());
    EXPECT_EQ(viewer("view").target, nullptr);
}

TEST_F(UiScreenEdits, AfterNewANodeOfTheSameIdHasNoOldNameAndNoFold) {
    ui.master.displayNames["Node1"] = "Sky";
    ui.nodeFolded["Node1"] = true;
    engine.createNode("Node1", "Node");
    edit();
    press(ui.newButton);
    ASSERT_EQ(engine.nodes.size(), 0u);
    engine.createNode("Node1", "Node");
    ui.Rebuild(UI_Engine::Boxes::Capture);
    EXPECT_EQ(ui.master.DisplayNameOf("Node1"), "Node1");
    EXPECT_TRUE(ui.nodeCanvas->boxOf("Node1")->open);
}

TEST_F(UiScreenEdits, ANodeThatIsDeletedLeavesNoEntries) {
    ui.master.displayNames["a"] = "Sky";
    ui.nodeFolded["a"] = true;
    edit();
    deleteOnCanvas("a");
    EXPECT_FALSE(ui.master.displayNames.contains("a"));
    EXPECT_FALSE(ui.nodeFolded.contains("a"));
    EXPECT_FALSE(ui.nodePositions.contains("a"));
}

TEST_F(UiScreenEdits, APanelThatClosesGivesBackTheMouseOfWhatIsInsideItsWidgets) {
    edit();
    ui.OpenPanel("a");
    ui.DrawFrame();
    const auto childOf = [&]<typename W>(const W*) -> W& {
        for (const auto& child : ui.openPanels.at("a")->children) {
            if (auto* found = dynamic_cast<W*>(child.get())) return *found;
        }
        throw std::runtime_error("no such widget");
    };
    const UI_Object& color = childOf(static_cast<UI_ColorSelector*>(nullptr));
    send(kMessageLeftDown, color.x + 300, color.y + 20);
    ASSERT_NE(ui.master.captured, nullptr);
    ASSERT_NE(ui.master.captured, &color);
    ui.ClosePanel(ui.openPanels.at("a"));
    EXPECT_EQ(ui.master.captured, nullptr);
    ui.OpenPanel("a");
    ui.DrawFrame();
    const UI_Object& place = childOf(static_cast<UI_Position*>(nullptr));
    send(kMessageLeftDown, place.x + 100, place.y + 30);
    ASSERT_NE(ui.master.captured, nullptr);
    ui.ClosePanel(ui.openPanels.at("a"));
    EXPECT_EQ(ui.master.captured, nullptr);
    frame();
    send(kMessageMouseMove, 100, 100);
    ui.DrawFrame();
}

TEST_F(UiScreenEdits, TheButtonAddNodeShowsTheCanvasAndItsPalette) {
    edit();
    ui.SetLayoutMode(kLayoutKeyTimeline);
    press(&button("Add node"));
    EXPECT_FALSE(ui.nodeCanvas->hidden);
    ASSERT_NE(dynamic_cast<const UI_NodePalette*>(ui.master.captured), nullptr);
    type("output");
    send(kMessageKeyDown, 5, 5, kKeyReturn);
    EXPECT_NE(engine.findNode("Output1"), nullptr);
    EXPECT_NE(ui.nodeCanvas->boxOf("Output1"), nullptr);
}

TEST_F(UiScreenEdits, TheButtonArrangeBringsTheOldPlacesBackAtItsSecondPress) {
    ui.nodePositions["a"] = {500, 300};
    edit();
    const UI_Node* box = ui.nodeCanvas->boxOf("a");
    ASSERT_EQ(box->x, 500);
    press(&button("Arrange"));
    ASSERT_NE(ui.nodeCanvas->boxOf("a")->x, 500);
    press(&button("Arrange"));
    EXPECT_EQ(ui.nodeCanvas->boxOf("a")->x, 500);
}

TEST_F(UiScreenEdits, EscapeLeavesATextBoxWithoutTakingWhatWasTyped) {
    edit();
    const UI_TextBox& box = *ui.pathBox1;
    const std::string before = engine.musicFile;
    click(box.x + box.width / 2, box.y + 10);
    ASSERT_TRUE(box.focused);
    type("x");
    key(kKeyEscape, box.x + 5, box.y + 5);
    EXPECT_FALSE(box.focused);
    EXPECT_EQ(ui.master.captured, nullptr);
    EXPECT_EQ(engine.musicFile, before);
    ui.DrawFrame();
    EXPECT_EQ(box.buffer, before);
}

TEST_F(UiScreenEdits, EscapeClosesAnOpenListWithoutAChoice) {
    engine.createNode("second", "Viewer");
    edit();
    const UI_Selection& selector = *ui.outputSelector;
    const int x = selector.x + selector.width / 2;
    send(kMessageLeftDown, x, selector.y + 10);
    send(kMessageMouseMove, x, selector.y + 33 + 25);
    ASSERT_EQ(selector.hoverRow, 1);
    send(kMessageKeyDown, x, selector.y + 33 + 25, kKeyEscape);
    send(kMessageKeyUp, x, selector.y + 33 + 25, kKeyEscape);
    EXPECT_FALSE(selector.open);
    EXPECT_EQ(ui.master.captured, nullptr);
    send(kMessageLeftUp, x, selector.y + 33 + 25);
    EXPECT_EQ(ui.selectedOutput, 0);
}
