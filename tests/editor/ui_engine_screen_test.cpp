// The authoring screen: its labels, outputs, panels of properties, and the change between the two
// screens.
#include "authoring_fixture.h"
#include "core/value_object.h"
#include "editor/ui_checkbox.h"
#include "editor/ui_color_selector.h"
#include "editor/ui_direction.h"
#include "editor/ui_position.h"
#include "editor/ui_properties_panel.h"
#include "editor/ui_value_control.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// A node with two outputs' worth of odd values: a choice without options, and a direction.
class OddNode : public TestNode {
  public:
    OddNode(Engine* owner, const std::string& nodeId) : TestNode(owner, nodeId) {
        engine->declareInt(this, "Seed", seed, 3, {});
        engine->declareVec2(this, "Wind", wind, {0, 1}, true);
        engine->findValue(this, "Wind")->flag = true;
    }
    std::int32_t seed = 0;
    float wind[2] = {};
};

class UiScreenTest : public AuthoringTest {
  protected:
    OddNode& addOdd(const std::string& id) {
        auto made = std::make_unique<OddNode>(&engine, id);
        OddNode& result = *made;
        engine.addNode(id, std::move(made));
        return result;
    }
    UI_PropertiesPanel& panelOf(const std::string& id) {
        return dynamic_cast<UI_PropertiesPanel&>(*ui.openPanels.at(id));
    }
    void rightPressBox(const std::string& id) {
        const UI_Node& box = *ui.nodeCanvas->boxOf(id);
        const CanvasView& view = ui.nodeCanvas->view;
        send(kMessageRightDown, view.screenX(box.x + 80), view.screenY(box.y + 10));
    }
    UI_ViewerNode& viewer(const std::string& id) {
        return dynamic_cast<UI_ViewerNode&>(*engine.findNode(id));
    }
};

}  // namespace

TEST_F(UiScreenTest, PresentationHasNoControlsAndTouchesNone) {
    makeScene();
    EXPECT_EQ(ui.timeLabel, nullptr);
    EXPECT_EQ(ui.nodeCanvas, nullptr);
    ui.editorTime = 3;
    frame();
    ui.DrawFrame();
    EXPECT_TRUE(ui.presentationMode);
    edit();
    ui.editorTime = 3;
    frame();
    ui.ShowScreen(ScreenKind::Presentation);
    ui.editorTime = 99;
    frame();
    EXPECT_EQ(ui.timeLabel->text, "00:03:000") << "labels stay as they are";
}

TEST_F(UiScreenTest, LabelsTellTimeAndCost) {
    edit();
    ui.editorTime = 61.5f;
    engine.frameCost = 0.00009f;
    ui.BeginFrameUpdate();
    EXPECT_EQ(ui.timeLabel->text, "01:01:500");
    EXPECT_EQ(ui.frameCostLabel->text, "no FPS data");
    engine.frameCost = 0.0001f;
    ui.editorTime = 3600;
    ui.BeginFrameUpdate();
    EXPECT_EQ(ui.timeLabel->text, "60:00:000");
    EXPECT_NE(ui.frameCostLabel->text, "no FPS data");
}

TEST_F(UiScreenTest, TheScreensChangeBackAndForth) {
    makeScene();
    edit();
    EXPECT_FALSE(ui.presentationMode);
    EXPECT_FALSE(ui.imagePanel->bare);
    EXPECT_LT(ui.imagePanel->width, 1920);
    ui.imagePanel->view.m[12] = 5;
    ui.ShowScreen(ScreenKind::Presentation);
    EXPECT_TRUE(ui.presentationMode);
    EXPECT_THAT(ui.master.topLevel, ElementsAre(ui.imagePanel.get()));
    EXPECT_TRUE(ui.imagePanel->bare);
    EXPECT_EQ(ui.imagePanel->width, 1920);
    EXPECT_EQ(ui.imagePanel->x, 0);
    EXPECT_EQ(ui.imagePanel->view.m[12], 0);
    EXPECT_THAT(ui.outputs, IsEmpty());
    EXPECT_EQ(viewer("view").target, engine.viewerTarget);
    edit();
    EXPECT_EQ(ui.imagePanel->view.m[12], 5);
    EXPECT_EQ(ui.outputs.size(), 1u);
}

TEST_F(UiScreenTest, AChangeOfScreensEndsAGesture) {
    makeScene();
    edit();
    const UI_TextBox& box = *ui.pathBox1;
    const std::string before = engine.musicFile;
    click(box.x + box.width / 2, box.y + 10);
    send(kMessageCharacter, 0, 0, 'x');
    ASSERT_NE(ui.master.captured, nullptr);
    ui.ShowScreen(ScreenKind::Presentation);
    EXPECT_EQ(ui.master.captured, nullptr);
    EXPECT_FALSE(box.focused);
    EXPECT_EQ(engine.musicFile, before);
}

TEST_F(UiScreenTest, APressedButtonDoesNothingWhenTheScreenChanges) {
    makeScene();
    edit();
    send(kMessageLeftDown, ui.saveButton->x + 5, ui.saveButton->y + 5);
    ui.ShowScreen(ScreenKind::Presentation);
    edit();
    send(kMessageLeftUp, ui.saveButton->x + 5, ui.saveButton->y + 5);
    EXPECT_FALSE(exists("work.vorn"));
}

TEST_F(UiScreenTest, OutputsAreListedByTheirNames) {
    makeScene();
    engine.createNode("second", "Viewer");
    ui.master.displayNames["second"] = "Screen 2";
    edit();
    EXPECT_THAT(ui.outputChoice.options, ElementsAre("view", "Screen 2"));
    EXPECT_THAT(ui.outputSelector->value.options, ElementsAre("view", "Screen 2"));
    EXPECT_EQ(ui.selectedOutput, 0);
    ui.DrawFrame();
    EXPECT_EQ(viewer("view").target, ui.editorTarget.get());
    EXPECT_EQ(viewer("second").target, nullptr);
    // Press on the field, drag to the second row, let go.
    const UI_Selection& selector = *ui.outputSelector;
    const int x = selector.x + selector.width / 2;
    send(kMessageLeftDown, x, selector.y + 10);
    send(kMessageMouseMove, x, selector.y + 33 + 25);
    send(kMessageLeftUp, x, selector.y + 33 + 25);
    EXPECT_EQ(ui.selectedOutput, 1);
    ui.DrawFrame();
    EXPECT_EQ(viewer("view").target, nullptr);
    EXPECT_EQ(viewer("second").target, ui.editorTarget.get());
}

TEST_F(UiScreenTest, ASelectedOutputPastTheEndBecomesTheFirst) {
    makeScene();
    engine.createNode("second", "Viewer");
    edit();
    ui.selectedOutput = 1;
    engine.deleteNode("second");
    ui.Rebuild(UI_Engine::Boxes::Capture);
    EXPECT_EQ(ui.selectedOutput, 0);
    engine.deleteNode("view");
    ui.Rebuild(UI_Engine::Boxes::Capture);
    EXPECT_EQ(ui.selectedOutput, -1);
    ui.DrawFrame();
}

TEST_F(UiScreenTest, DeletingAnOutputOnTheCanvasLeavesNoPointerToIt) {
    makeScene();
    edit();
    ui.nodeCanvas->select({"view"});
    key(kKeyDelete, 700, ui.nodeCanvas->y + 200);
    ASSERT_EQ(engine.findNode("view"), nullptr);
    EXPECT_THAT(ui.outputs, IsEmpty());
    EXPECT_EQ(ui.selectedOutput, -1);
    ui.DrawFrame();
}

TEST_F(UiScreenTest, RebuildTakesPlacesFromTheMapOrFromTheScreen) {
    makeScene();
    ui.nodePositions["a"] = {100, 200};
    edit();
    const UI_NodeCanvas& canvas = *ui.nodeCanvas;
    EXPECT_EQ(canvas.boxOf("a")->x, 100);
    EXPECT_EQ(canvas.boxOf("a")->y, canvas.y + 200);
    // Two nodes without a place lie on each other.
    EXPECT_EQ(canvas.boxOf("b")->x, 0);
    EXPECT_EQ(canvas.boxOf("b")->y, canvas.y + 50);
    EXPECT_EQ(canvas.boxOf("view")->y, canvas.y + 50);
    ui.nodeCanvas->boxOf("a")->SetPosition(7, 900);
    ui.Rebuild(UI_Engine::Boxes::PlaceAnew);
    EXPECT_EQ(canvas.boxOf("a")->x, 100);
    ui.nodeCanvas->boxOf("a")->SetPosition(7, 900);
    ui.Rebuild(UI_Engine::Boxes::Capture);
    EXPECT_EQ(canvas.boxOf("a")->x, 7);
    EXPECT_EQ(canvas.boxOf("a")->y, 900);
}

TEST_F(UiScreenTest, AProjectWithoutPlacesIsLaidOut) {
    makeScene();
    edit();
    EXPECT_NE(ui.nodeCanvas->boxOf("a")->y, ui.nodeCanvas->boxOf("b")->y);
}

TEST_F(UiScreenTest, RebuildRunsTheGraphAtTheEditorsTime) {
    makeScene();
    edit();
    ui.editorTime = 12;
    ui.Rebuild(UI_Engine::Boxes::Capture);
    EXPECT_EQ(engine.time, 12);
}

TEST_F(UiScreenTest, FoldedNodesSilenceWhatIsBehindThem) {
    makeScene();
    ui.nodeFolded["b"] = true;
    edit();
    EXPECT_FALSE(ui.nodeCanvas->boxOf("a")->enabled);
    EXPECT_TRUE(ui.nodeCanvas->boxOf("b")->enabled);
    EXPECT_FALSE(ui.nodeCanvas->boxOf("b")->open);
}

TEST_F(UiScreenTest, ARightPressOnABoxOpensItsPropertiesOnce) {
    makeScene();
    edit();
    rightPressBox("a");
    ASSERT_EQ(ui.propertiesPanel->children.size(), 1u);
    UI_PropertiesPanel& panel = panelOf("a");
    EXPECT_EQ(panel.width, 390);
    EXPECT_EQ(panel.title, "a");
    EXPECT_TRUE(panel.closable);
    rightPressBox("a");
    ui.OpenPanel("a");
    EXPECT_EQ(ui.propertiesPanel->children.size(), 1u);
    ui.OpenPanel("nobody");
    EXPECT_EQ(ui.propertiesPanel->children.size(), 1u);
}

TEST_F(UiScreenTest, EveryKindOfValueGetsItsWidget) {
    addOdd("odd");
    edit();
    ui.OpenPanel("odd");
    const UI_PropertiesPanel& panel = panelOf("odd");
    int row = 0, bottom = 25;
    const auto expectNext = [&]<typename Widget>(const Widget*, const std::string& name) {
        ASSERT_LT(static_cast<std::size_t>(row), panel.children.size());
        const UI_Object& child = *panel.children[static_cast<std::size_t>(row++)];
        const auto* widget = dynamic_cast<const Widget*>(&child);
        ASSERT_NE(widget, nullptr) << name;
        EXPECT_EQ(widget->label, name);
        EXPECT_EQ(child.x, panel.x + 5) << name;
        EXPECT_EQ(child.y, panel.y + bottom) << name;
        EXPECT_EQ(child.width, 380) << name;
        bottom += child.GetHeight();
    };
    expectNext(static_cast<UI_Checkbox*>(nullptr), "On");
    expectNext(static_cast<UI_Selection*>(nullptr), "Mode");
    for (const char* name : {"Size", "Size2", "Frozen"}) {
        expectNext(static_cast<UI_ValueControl*>(nullptr), name);
    }
    expectNext(static_cast<UI_Position*>(nullptr), "Place");
    expectNext(static_cast<UI_ColorSelector*>(nullptr), "Tint");
    expectNext(static_cast<UI_TextBox*>(nullptr), "Text");
    for (const char* name : {"Translate.X", "Translate.Y", "Translate.Z", "Center.X", "Center.Y",
                             "Center.Z", "Alpha.x"}) {
        expectNext(static_cast<UI_ValueControl*>(nullptr), name);
    }
    expectNext(static_cast<UI_Direction*>(nullptr), "Wind");  // none for Seed, which has no options
    EXPECT_EQ(static_cast<std::size_t>(row), panel.children.size());
    EXPECT_EQ(panel.height, bottom + 5);
    ASSERT_EQ(ui.imagePanel->pins.size(), 1u);
    EXPECT_EQ(ui.imagePanel->pins[0]->label, "odd.Place");
    EXPECT_EQ(ui.imagePanel->pins[0]->owner, &panel);
}

TEST_F(UiScreenTest, APanelsCloseBoxClosesItAndItCanBeOpenedAgain) {
    makeScene();
    edit();
    ui.OpenPanel("a");
    const UI_PropertiesPanel& panel = panelOf("a");
    click(panel.x + panel.width - 10, panel.y + 7);
    EXPECT_EQ(ui.openPanels["a"], nullptr);
    EXPECT_THAT(ui.propertiesPanel->children, IsEmpty());
    EXPECT_THAT(ui.imagePanel->pins, IsEmpty());
    frame();
    ui.OpenPanel("a");
    EXPECT_EQ(ui.propertiesPanel->children.size(), 1u);
}

TEST_F(UiScreenTest, ACloseCommandWithAnotherArgumentDoesNothing) {
    makeScene();
    edit();
    ui.OpenPanel("a");
    ui.OnCommand(&panelOf("a"), 1);
    EXPECT_NE(ui.openPanels["a"], nullptr);
}

TEST_F(UiScreenTest, DeletingANodeClosesItsPanelAndDropsItsPins) {
    makeScene();
    engine.addAnimation("a", "Size");
    edit();
    ui.OpenPanel("a");
    ui.OpenPanel("b");
    ui.nodeCanvas->select({"a"});
    key(kKeyDelete, 700, ui.nodeCanvas->y + 200);
    ASSERT_EQ(engine.findNode("a"), nullptr);
    EXPECT_EQ(ui.propertiesPanel->children.size(), 1u);
    EXPECT_EQ(ui.imagePanel->pins.size(), 1u);
    EXPECT_THAT(ui.keyTimeline->tracks, IsEmpty());
    frame();
    ui.DrawFrame();
}

TEST_F(UiScreenTest, OpenPanelsOfNodesThatComeBackStayOpenThroughAReload) {
    makeScene();
    edit();
    press(ui.saveButton);
    ui.OpenPanel("b");
    ui.OpenPanel("a");
    engine.createNode("late", "Node");
    ui.OpenPanel("late");
    press(ui.loadButton);
    frame();
    EXPECT_EQ(ui.propertiesPanel->children.size(), 2u);
    EXPECT_EQ(panelOf("b").y < panelOf("a").y, true) << "in the order in which they were";
    EXPECT_FALSE(ui.openPanels.contains("late") && ui.openPanels["late"] != nullptr);
    // The widgets are bound to the nodes that are there now.
    const auto& control = dynamic_cast<UI_ValueControl&>(*panelOf("a").children[2]);
    EXPECT_EQ(control.value.data, &node("a").size);
}

TEST_F(UiScreenTest, PanelsStandBelowEachOtherAndScroll) {
    for (const char* id : {"a", "b", "c", "d"}) engine.createNode(id, "Node");
    edit();
    for (const char* id : {"a", "b", "c", "d"}) ui.OpenPanel(id);
    ui.DrawFrame();
    EXPECT_EQ(panelOf("b").y, panelOf("a").y + panelOf("a").height + 8);
    EXPECT_LE(panelOf("d").y + panelOf("d").height, ui.propertiesPanel->y + 1004)
        << "the one opened last is seen";
    const int before = panelOf("d").y;
    send(kMessageWheel, 0, 0, 120);  // the pointer is elsewhere
    EXPECT_EQ(panelOf("d").y, before);
    send(kMessageMouseMove, ui.propertiesPanel->x + 20, 500);
    send(kMessageWheel, 0, 0, 120);
    EXPECT_EQ(panelOf("d").y, before + 60);
    for (int i = 0; i < 500; ++i) send(kMessageWheel, 0, 0, 120);
    EXPECT_EQ(panelOf("a").y, ui.propertiesPanel->y + 5);
}

TEST_F(UiScreenTest, APanelTellsWhatIsWrongWithItsNode) {
    makeScene();
    edit();
    ui.OpenPanel("a");
    ui.DrawFrame();
    const int height = panelOf("a").height;
    node("a").setError(true);
    EXPECT_EQ(FaultsOf(node("a")).size(), 1u);
    ui.DrawFrame();
    EXPECT_GT(panelOf("a").height, height);
    node("a").setError(false);
    EXPECT_THAT(FaultsOf(node("a")), IsEmpty());
    ui.DrawFrame();
    EXPECT_EQ(panelOf("a").height, height);
}

TEST_F(UiScreenTest, AnimatingAValueShowsItsTrackInTheTimeline) {
    makeScene();
    edit();
    ui.OpenPanel("a");
    const UI_Object& row = *panelOf("a").children[2];
    frame();
    key('S', row.x + 20, row.y + 9);
    EXPECT_EQ(engine.allTracks().size(), 1u);
    frame();
    EXPECT_THAT(ui.keyTimeline->trackChoice.options, ElementsAre("a.Size"));
    EXPECT_EQ(ui.knownTrackCount, 1u);
}

TEST_F(UiScreenTest, AFrameInWhichNoTrackComesOrGoesMakesNoListAnew) {
    makeScene();
    engine.addAnimation("a", "Size");
    edit();
    frame();
    ui.keyTimeline->trackChoice.options[0] = "as it was";
    for (int i = 0; i < 3; ++i) frame();
    engine.setKeyframe("a", "Size");
    frame();
    EXPECT_THAT(ui.keyTimeline->trackChoice.options, ElementsAre("as it was"));
    engine.addAnimation("b", "Size");
    frame();
    EXPECT_THAT(ui.keyTimeline->trackChoice.options, ElementsAre("a.Size", "b.Size"));
}

TEST_F(UiScreenTest, TracksThatChangePlacesBetweenTwoFramesAreNoticed) {
    makeScene();
    engine.addAnimation("a", "Size");
    edit();
    frame();
    engine.removeAnimation("a", "Size");
    engine.addAnimation("b", "Size2");
    ui.DrawFrame();  // before the next refresh: nothing stale is followed
    frame();
    EXPECT_THAT(ui.keyTimeline->trackChoice.options, ElementsAre("b.Size2"));
}

TEST_F(UiScreenTest, TheSideFileOfALoadedProjectIsTakenUp) {
    makeScene();
    edit();
    ui.nodeCanvas->boxOf("a")->SetPosition(432, ui.nodeCanvas->y + 60);
    ui.master.displayNames["a"] = "Sky";
    press(ui.saveButton);
    UI_Engine other;
    Engine otherEngine(types(), nullptr);
    otherEngine.init();
    ASSERT_TRUE(other.Init(&otherEngine));
    otherEngine.viewerTarget = other.editorTarget.get();
    ASSERT_TRUE(otherEngine.load("work.vorn", true, ""));
    other.ProjectLoaded("work.vorn");
    other.ShowScreen(ScreenKind::Authoring);
    EXPECT_EQ(other.nodeCanvas->boxOf("a")->x, 432);
    EXPECT_EQ(other.master.DisplayNameOf("a"), "Sky");
}

TEST_F(UiScreenTest, F1ShowsTheKeysUntilSomethingIsPressed) {
    makeScene();
    edit();
    key(kKeyF1);
    EXPECT_NE(ui.master.captured, nullptr);
    ui.DrawFrame();
    send(kMessageKeyDown, 5, 5, kKeySpace);
    EXPECT_EQ(ui.master.captured, nullptr);
    EXPECT_FALSE(ui.playing) << "the press only closes the sheet";
}

TEST_F(UiScreenTest, DrawsEverythingWithoutOpenGlErrors) {
    makeScene();
    edit();
    for (const char* id : {"a", "b", "view"}) ui.OpenPanel(id);
    engine.addAnimation("a", "Place");
    for (int mode = 0; mode < 3; ++mode) {
        ui.SetLayoutMode(mode);
        frame();
        ui.DrawFrame();
        EXPECT_LE(ui.master.drawCalls(), 60);
    }
    ui.HideEditor();
    ui.DrawFrame();
}
