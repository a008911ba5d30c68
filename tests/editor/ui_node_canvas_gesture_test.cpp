// Gestures on the canvas, played as events of the window and judged by what they did to the graph.
#include <gmock/gmock.h>

#include "canvas_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class CanvasGestures : public CanvasTest {
  protected:
    CanvasGestures() {
        add("src", "Node", 100, 50);
        add("mid", "Node", 100, 200);
        add("cam", "Camera", 400, 50);
        add("out", "Output", 100, 400);
        rebuild();
    }
    static constexpr Spot kEmpty = {900, 700};
};

// --- looking

TEST_F(CanvasGestures, MiddleDragPansAndGoesOnOutside) {
    Play(master, kMessageMiddleDown, 300, 500);
    move({320, 510});
    move({-50, -60});
    EXPECT_EQ(canvas.view.shift.x, -350);
    EXPECT_EQ(canvas.view.shift.y, -560);
    Play(master, kMessageMiddleUp, -50, -60);
    move({300, 300});
    EXPECT_EQ(canvas.view.shift.x, -350);
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(CanvasGestures, TheWheelZoomsAboutThePointer) {
    const Spot at = middle("mid");
    wheel(at, 120);
    EXPECT_FLOAT_EQ(canvas.view.zoom, 1.1f);
    EXPECT_NEAR(middle("mid").x, at.x, 1);
    EXPECT_NEAR(middle("mid").y, at.y, 1);
    wheel(at, -120);
    EXPECT_EQ(canvas.view.zoom, 1) << "back to the boxes' own pixels";
    for (int i = 0; i < 100; ++i) wheel(at, -120);
    EXPECT_EQ(canvas.view.zoom, CanvasView::kLeastZoom);
    for (int i = 0; i < 100; ++i) wheel(at, 120);
    EXPECT_EQ(canvas.view.zoom, CanvasView::kMostZoom);
    wheel(at, 0);
    EXPECT_EQ(canvas.view.zoom, CanvasView::kMostZoom);
}

TEST_F(CanvasGestures, HomeShowsEverythingAndFTheSelection) {
    canvas.view.shift = {5000, 5000};
    move(kEmpty);
    key(kKeyHome);
    EXPECT_LT(canvas.view.shift.x, 1000);
    canvas.view.shift = {5000, 5000};
    canvas.select({"mid"});
    key('F');
    EXPECT_NEAR(middle("mid").x, kLeft + 500, 1);
}

TEST_F(CanvasGestures, KeysCountOnlyWhileThePointerIsOnTheCanvas) {
    canvas.select({"mid"});
    move({10, 10});
    key(kKeyDelete);
    EXPECT_NE(node("mid"), nullptr);
}

TEST_F(CanvasGestures, AHiddenCanvasTakesNothing) {
    canvas.hidden = true;
    canvas.select({"mid"});
    move(middle("mid"));
    key(kKeyDelete);
    press(middle("mid"));
    EXPECT_NE(node("mid"), nullptr);
    EXPECT_EQ(master.captured, nullptr);
}

// --- choosing and moving

TEST_F(CanvasGestures, AClickSelectsOneBox) {
    click(middle("mid"));
    EXPECT_THAT(canvas.selection(), ElementsAre("mid"));
    EXPECT_EQ(host.changes, 0) << "nothing moved";
    click(middle("src"));
    EXPECT_THAT(canvas.selection(), ElementsAre("src"));
    click(kEmpty);
    EXPECT_TRUE(canvas.selection().empty());
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(CanvasGestures, ShiftAndCtrlAddAndTakeAway) {
    click(middle("mid"));
    key(kKeyControl);
    click(middle("src"));
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("mid", "src"));
    click(middle("mid"));
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("src"));
    keyUp(kKeyControl);
    bool shift = true;
    master.readShiftKey = [&] { return shift; };
    click(middle("out"));
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("src", "out"));
    shift = false;
    click(middle("mid"));
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("mid"));
}

TEST_F(CanvasGestures, DraggingMovesEverySelectedBoxByTheSame) {
    canvas.select({"src", "mid"});
    const Spot from = middle("mid");
    press(from);
    move({from.x + 5, from.y});
    release({from.x + 30, from.y - 20});
    EXPECT_EQ(box("mid").x, kLeft + 130);
    EXPECT_EQ(box("mid").y, kTop + 180);
    EXPECT_EQ(box("src").x, kLeft + 130);
    EXPECT_EQ(box("src").y, kTop + 30);
    EXPECT_EQ(box("out").x, kLeft + 100);
    EXPECT_EQ(host.changes, 1);
    EXPECT_EQ(host.positions.find("src")->x, 130);
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("src", "mid"));
}

TEST_F(CanvasGestures, AClickOnOneOfManySelectedLeavesThatOne) {
    canvas.select({"src", "mid"});
    click(middle("mid"));
    EXPECT_THAT(canvas.selection(), ElementsAre("mid"));
}

TEST_F(CanvasGestures, DraggingFollowsThePointerAtAnyZoom) {
    canvas.view.zoom = 0.5f;
    canvas.view.shift = {40, 90};
    const Spot from = middle("mid");
    drag(from, {from.x + 50, from.y + 25});
    EXPECT_EQ(box("mid").x, kLeft + 200);
    EXPECT_EQ(box("mid").y, kTop + 250);
}

TEST_F(CanvasGestures, SocketsGoWithTheirBox) {
    const Spot before = socket("mid", 2), from = middle("mid");
    drag(from, {from.x + 40, from.y + 10});
    EXPECT_EQ(socket("mid", 2).x, before.x + 40);
    EXPECT_EQ(socket("mid", 2).y, before.y + 10);
}

TEST_F(CanvasGestures, TheRubberBandSelectsWhatItTouches) {
    press({kLeft + 90, kTop + 40});
    move({kLeft + 110, kTop + 60});
    EXPECT_THAT(canvas.selection(), ElementsAre("src")) << "while it is drawn";
    move({kLeft + 110, kTop + 205});
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("src", "mid"));
    release({kLeft + 110, kTop + 60});
    EXPECT_THAT(canvas.selection(), ElementsAre("src"));
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(CanvasGestures, ShiftKeepsWhatWasSelectedBeforeTheBand) {
    canvas.select({"out"});
    master.readShiftKey = [] { return true; };
    drag({kLeft + 90, kTop + 40}, {kLeft + 110, kTop + 60});
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("src", "out"));
}

TEST_F(CanvasGestures, EscapeLeavesTheBandAndWhatWasSelected) {
    master.readShiftKey = [] { return true; };
    canvas.select({"out"});
    press({kLeft + 90, kTop + 40});
    move({kLeft + 110, kTop + 60});
    key(kKeyEscape);
    EXPECT_THAT(canvas.selection(), ElementsAre("out"));
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(CanvasGestures, CtrlASelectsAllThatIsInReach) {
    engine.connect("src", "mid", 0);
    host.folds["mid"] = true;
    rebuild();
    move(kEmpty);
    ctrl('A');
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("mid", "cam", "out"));
    key(kKeyEscape);
    EXPECT_TRUE(canvas.selection().empty());
}

TEST_F(CanvasGestures, RightPressOnABoxOpensItsValues) {
    const Spot at = middle("mid");
    Play(master, kMessageRightDown, at.x, at.y);
    EXPECT_THAT(host.opened, ElementsAre("mid"));
    EXPECT_EQ(master.captured, nullptr) << "no palette";
}

TEST_F(CanvasGestures, AHostMayRebuildTheBoxesWithinTheEventOfOne) {
    host.canvasToRebuild = &canvas;
    const Spot at = middle("mid");
    Play(master, kMessageRightDown, at.x, at.y);
    EXPECT_THAT(host.opened, ElementsAre("mid"));
    EXPECT_EQ(canvas.boxes().size(), 4u);
    click(middle("src"));
    EXPECT_THAT(canvas.selection(), ElementsAre("src"));
}

TEST_F(CanvasGestures, BoxesThatGoInADragGiveTheCaptureBack) {
    press(middle("mid"));
    ASSERT_EQ(master.captured, &box("mid"));
    canvas.select({});
    rebuild();
    EXPECT_EQ(master.captured, nullptr);
    release(kEmpty);
    EXPECT_EQ(host.changes, 0);
}

TEST_F(CanvasGestures, ABoxThatIsFoldedAwayInADragGivesTheCaptureBack) {
    engine.connect("src", "mid", 0);
    rebuild();
    press(middle("src"));
    ASSERT_EQ(master.captured, &box("src"));
    box("src").setEnabled(false);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_FALSE(box("src").dragging);
}

// --- links

TEST_F(CanvasGestures, ALinkIsDraggedFromAnOutputToASocket) {
    press(output("src"));
    EXPECT_EQ(master.captured, &canvas);
    release(socket("mid", 1));
    EXPECT_EQ(input("mid", 1), node("src"));
    EXPECT_EQ(input("mid", 0), nullptr);
    EXPECT_EQ(box("mid").inputLinks[1], &box("src"));
    EXPECT_EQ(host.changes, 1);
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(CanvasGestures, ALinkIsDraggedBackFromASocket) {
    drag(socket("out", 0), middle("src"));
    EXPECT_EQ(input("out", 0), node("src"));
}

TEST_F(CanvasGestures, ALinkToTheBoxTakesItsFirstFreeInput) {
    engine.connect("mid", "mid", 0);
    rebuild();
    drag(output("src"), middle("mid"));
    EXPECT_EQ(input("mid", 0), node("mid"));
    EXPECT_EQ(input("mid", 1), node("src"));
}

TEST_F(CanvasGestures, ALinkThatDoesNotFitIsNotMade) {
    drag(output("cam"), socket("mid", 0));
    EXPECT_EQ(input("mid", 0), nullptr);
    drag(output("cam"), middle("mid"));
    EXPECT_EQ(input("mid", 0), nullptr);
    drag(socket("mid", 0), middle("cam"));
    EXPECT_EQ(input("mid", 0), nullptr);
    drag(socket("mid", 0), middle("out"));
    EXPECT_EQ(input("mid", 0), nullptr);
    EXPECT_EQ(host.changes, 0);
    EXPECT_THAT(host.status, HasSubstr("does not fit"));
}

TEST_F(CanvasGestures, ALinkOnATakenInputReplacesTheOld) {
    add("other", "Node", 400, 200);
    engine.connect("src", "mid", 0);
    rebuild();
    drag(output("other"), socket("mid", 0));
    EXPECT_EQ(input("mid", 0), node("other"));
    EXPECT_TRUE(node("src")->consumers.empty());
    EXPECT_THAT(node("other")->consumers, ElementsAre(node("mid")));
    EXPECT_EQ(box("mid").inputLinks[0], &box("other"));
}

TEST_F(CanvasGestures, ALinkThatDoesNotFitLeavesATakenInputAlone) {
    engine.connect("src", "mid", 0);
    rebuild();
    drag(output("cam"), socket("mid", 0));
    EXPECT_EQ(input("mid", 0), node("src"));
}

TEST_F(CanvasGestures, ALinkMayCloseACycle) {
    drag(output("src"), socket("mid", 0));
    drag(output("mid"), socket("src", 0));
    EXPECT_EQ(input("mid", 0), node("src"));
    EXPECT_EQ(input("src", 0), node("mid"));
    engine.update(0);
}

TEST_F(CanvasGestures, ALinkMayLeadToItsOwnNode) {
    drag(output("mid"), socket("mid", 2));
    EXPECT_EQ(input("mid", 2), node("mid"));
    engine.update(0);
}

TEST_F(CanvasGestures, DraggingOffASocketCutsTheLink) {
    engine.connect("src", "mid", 1);
    rebuild();
    drag(socket("mid", 1), kEmpty);
    EXPECT_EQ(input("mid", 1), nullptr);
    EXPECT_EQ(box("mid").inputLinks[1], nullptr);
    EXPECT_TRUE(node("src")->consumers.empty());
    EXPECT_EQ(master.captured, nullptr) << "no palette";
    EXPECT_EQ(host.changes, 1);
}

TEST_F(CanvasGestures, DraggingOffASocketToAnotherMovesTheLink) {
    engine.connect("src", "mid", 1);
    rebuild();
    drag(socket("mid", 1), socket("out", 0));
    EXPECT_EQ(input("mid", 1), nullptr);
    EXPECT_EQ(input("out", 0), node("src"));
    drag(socket("out", 0), socket("mid", 2));
    EXPECT_EQ(input("out", 0), nullptr);
    EXPECT_EQ(input("mid", 2), node("src"));
    drag(socket("mid", 2), socket("mid", 0));
    EXPECT_EQ(input("mid", 2), nullptr);
    EXPECT_EQ(input("mid", 0), node("src"));
}

TEST_F(CanvasGestures, ALinkPutBackIsTheSame) {
    engine.connect("src", "mid", 1);
    rebuild();
    click(socket("mid", 1));
    EXPECT_EQ(input("mid", 1), node("src"));
    EXPECT_EQ(host.changes, 0);
}

TEST_F(CanvasGestures, EscapeLeavesALinkInHandAsItWas) {
    engine.connect("src", "mid", 1);
    rebuild();
    press(socket("mid", 1));
    move(kEmpty);
    key(kKeyEscape);
    release(kEmpty);
    EXPECT_EQ(input("mid", 1), node("src"));
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(CanvasGestures, ANodeThatGoesWhileItsLinkIsInHandIsNoHarm) {
    press(output("src"));
    engine.deleteNode("src");
    rebuild();
    release(socket("mid", 0));
    EXPECT_EQ(input("mid", 0), nullptr);
    press(socket("mid", 0));
    engine.deleteNode("mid");
    rebuild();
    release(kEmpty);
    EXPECT_NE(node("out"), nullptr);
}

TEST_F(CanvasGestures, TheKnifeCutsWhatItCrosses) {
    engine.connect("src", "mid", 0);
    engine.connect("src", "mid", 1);
    engine.connect("mid", "out", 0);
    rebuild();
    key(kKeyControl);
    Play(master, kMessageRightDown, kLeft + 50, kTop + 130);
    move({kLeft + 350, kTop + 130});
    EXPECT_EQ(input("mid", 0), node("src")) << "nothing before the button comes up";
    Play(master, kMessageRightUp, kLeft + 350, kTop + 130);
    keyUp(kKeyControl);
    EXPECT_EQ(input("mid", 0), nullptr);
    EXPECT_EQ(input("mid", 1), nullptr);
    EXPECT_EQ(input("out", 0), node("mid"));
    EXPECT_EQ(host.changes, 1);
    EXPECT_EQ(host.status, "2 links cut");
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(CanvasGestures, AKnifeThatDoesNotMoveCutsNothing) {
    engine.connect("src", "mid", 0);
    rebuild();
    key(kKeyControl);
    Play(master, kMessageRightDown, kLeft + 170, kTop + 130);
    Play(master, kMessageRightUp, kLeft + 170, kTop + 130);
    keyUp(kKeyControl);
    EXPECT_EQ(input("mid", 0), node("src"));
    EXPECT_EQ(host.changes, 0);
}

TEST_F(CanvasGestures, HoverNamesTheSocketInTheBox) {
    move(socket("mid", 2));
    EXPECT_EQ(box("mid").hoverInput, 2);
    move(kEmpty);
    EXPECT_EQ(box("mid").hoverInput, -1);
}

TEST_F(CanvasGestures, TheStatusLineTellsWhatAGestureDoes) {
    move(kEmpty);
    EXPECT_THAT(host.status, HasSubstr("new node"));
    move(middle("mid"));
    EXPECT_THAT(host.status, HasSubstr("mid: drag moves"));
    move(output("src"));
    EXPECT_THAT(host.status, HasSubstr("src shall feed"));
    press(output("src"));
    move(socket("mid", 1));
    EXPECT_EQ(host.status, "Let go to link to input1");
    move(socket("out", 0));
    EXPECT_EQ(host.status, "Let go to link to input0");
    release({kLeft + 90, kTop + 5});
    key(kKeyEscape);
}

}  // namespace
