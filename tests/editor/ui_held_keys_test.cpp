// Keys on the authoring screen that are held down, or pressed while ctrl is: a held switch switches
// once, and no shortcut is taken for the letter of a gesture.
#include "authoring_fixture.h"
#include "editor/ui_properties_panel.h"
#include "editor/ui_value_control.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class HeldKeysTest : public AuthoringTest {
  protected:
    struct Spot {
        int x, y;
    };
    void SetUp() override {
        AuthoringTest::SetUp();
        if (HasFatalFailure()) return;
        makeScene();
        edit();
        ui.OpenPanel("a");
        frame();
    }
    UI_Object& row(std::size_t index) { return *ui.openPanels.at("a")->children.at(index); }
    Spot onRow(std::size_t index) { return {row(index).x + 20, row(index).y + 9}; }
    static constexpr std::size_t kSize = 2, kSize2 = 3, kText = 7;  // rows
};

}  // namespace

TEST_F(HeldKeysTest, AHeldSAnimatesOnce) {
    const Spot at = onRow(kSize);
    hold('S', at.x, at.y);
    EXPECT_THAT(engine.allTracks(), SizeIs(1));
    EXPECT_TRUE(row(kSize).keyed);
    send(kMessageKeyUp, at.x, at.y, 'S');
    hold('S', at.x, at.y);
    EXPECT_THAT(engine.allTracks(), IsEmpty());
    EXPECT_FALSE(row(kSize).keyed);
}

TEST_F(HeldKeysTest, AHeldCtrlSSavesOnceAndAnimatesNothing) {
    const Spot at = onRow(kSize);
    send(kMessageMouseMove, at.x, at.y);
    send(kMessageKeyDown, at.x, at.y, kKeyControl);
    hold('S', at.x, at.y);
    EXPECT_THAT(engine.allTracks(), IsEmpty());
    EXPECT_THAT(ui.backupHistory, SizeIs(2));
}

TEST_F(HeldKeysTest, ShortcutsAreNoGesturesOfAWidgetThatHasTheMouse) {
    const UI_Object& control = row(kSize);
    const int x = control.x + control.width / 2 + 3, y = control.y + 9;
    send(kMessageKeyDown, x, y, kKeyControl);
    send(kMessageLeftDown, x, y);
    ASSERT_EQ(ui.master.captured, &control);
    send(kMessageKeyDown, x, y, 'S');
    EXPECT_THAT(engine.allTracks(), IsEmpty());
    EXPECT_FALSE(control.keyed);
    send(kMessageKeyUp, x, y, kKeyControl);
    send(kMessageKeyDown, x, y, 'S');
    ASSERT_THAT(engine.allTracks(), SizeIs(1)) << "without ctrl it is one";
    send(kMessageLeftUp, x, y);
    engine.time = 3;
    send(kMessageKeyDown, x, y, kKeyControl);
    send(kMessageKeyDown, x, y, 'P');
    EXPECT_THAT(engine.allTracks()[0]->keys(), SizeIs(1));
    send(kMessageKeyUp, 5, 5, kKeyControl);  // off the number, of whose keys that would be one
    key('P', x, y);
    EXPECT_THAT(engine.allTracks()[0]->keys(), SizeIs(2));
}

TEST_F(HeldKeysTest, HeldKeysOfTheCanvasCountOnce) {
    const int x = 700, y = ui.nodeCanvas->y + 200;
    ui.nodeCanvas->select({"a"});
    send(kMessageMouseMove, x, y);
    send(kMessageKeyDown, x, y, kKeyControl);
    hold('D', x, y);
    send(kMessageKeyUp, x, y, 'D');
    send(kMessageKeyUp, x, y, kKeyControl);
    EXPECT_EQ(engine.nodes.size(), 4u);
    ui.nodeCanvas->select({"b"});
    hold('E', x, y);
    EXPECT_NE(engine.findNode("b")->disabled, 0);
}

TEST_F(HeldKeysTest, HeldArrowsStepOn) {
    ui.editorTime = 1;
    hold(kKeyRight, 5, 5);
    EXPECT_FLOAT_EQ(ui.editorTime, 1.4f);
}

TEST_F(HeldKeysTest, AHeldCtrlMakesANumberFineThatThePointerComesTo) {
    const Spot at = onRow(kSize);
    hold(kKeyControl, at.x, at.y);
    auto& control = dynamic_cast<UI_ValueControl&>(row(kSize));
    control.fineFactor = 1;
    ui.master.Dispatch({kMessageKeyDown, kKeyControl, at.x, at.y, true});
    EXPECT_EQ(control.fineFactor, 0.05f);
}

TEST_F(HeldKeysTest, F1OpensTheSheetEveryTimeAndHoldingItLeavesItOpen) {
    for (int i = 0; i < 3; ++i) {
        hold(kKeyF1, 5, 5);
        EXPECT_NE(ui.master.captured, nullptr) << i;
        send(kMessageKeyUp, 5, 5, kKeyF1);
        EXPECT_NE(ui.master.captured, nullptr) << "a release closes nothing";
        send(kMessageKeyDown, 5, 5, kKeyF1);
        EXPECT_EQ(ui.master.captured, nullptr) << i;
        send(kMessageKeyUp, 5, 5, kKeyF1);
    }
}

TEST_F(HeldKeysTest, AKeyReleasedWhileAWidgetHasTheMouseWorksAgain) {
    const UI_Object& control = row(kSize);
    const int x = control.x + control.width / 2 + 3, y = control.y + 9;
    send(kMessageKeyDown, 5, 5, kKeySpace);
    EXPECT_TRUE(ui.playing);
    send(kMessageLeftDown, x, y);
    ASSERT_EQ(ui.master.captured, &control);
    send(kMessageKeyUp, x, y, kKeySpace);
    send(kMessageLeftUp, x, y);
    send(kMessageKeyDown, 5, 5, kKeySpace);
    EXPECT_FALSE(ui.playing);
}

TEST_F(HeldKeysTest, AValueIsAnimatedBesideAnotherWhoseNameBeginsAlike) {
    engine.addAnimation("a", "Size2");
    frame();
    ui.DrawFrame();
    const Spot at = onRow(kSize);
    // It shows as animated, since its name is a part of the other's. A press takes that back, and
    // the next one animates it.
    ASSERT_TRUE(row(kSize).keyed);
    key('S', at.x, at.y);
    frame();
    ui.DrawFrame();
    EXPECT_FALSE(row(kSize).keyed);
    key('S', at.x, at.y);
    frame();
    ui.DrawFrame();
    EXPECT_TRUE(row(kSize).keyed);
    std::vector<std::string> names;
    for (const KeyframeTrack* track : engine.allTracks()) names.push_back(track->name);
    EXPECT_THAT(names, ElementsAre("a.Size2", "a.Size"));
}

TEST_F(HeldKeysTest, TracksThatComeAndGoElsewhereShowOnOpenPanels) {
    ui.DrawFrame();
    EXPECT_FALSE(row(kSize2).keyed);
    engine.addAnimation("a", "Size2");
    ui.DrawFrame();
    EXPECT_TRUE(row(kSize2).keyed);
    engine.removeAnimation("a", "Size2");
    ui.DrawFrame();
    EXPECT_FALSE(row(kSize2).keyed);
}

TEST_F(HeldKeysTest, ASettingOfTheProjectShowsNoOutlineForS) {
    const UI_TextBox& box = *ui.pathBox1;
    key('S', box.x + 20, box.y + 9);
    EXPECT_FALSE(box.keyed);
}

// No track drives a text, but the outline is that of every value.
TEST_F(HeldKeysTest, ATextOfANodeTakesAndLosesItsOutlineWithS) {
    const Spot at = onRow(kText);
    key('S', at.x, at.y);
    EXPECT_TRUE(row(kText).keyed);
    key('S', at.x, at.y);
    EXPECT_FALSE(row(kText).keyed);
}
