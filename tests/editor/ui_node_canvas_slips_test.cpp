// What the hand does on the canvas without meaning much by it: clicks on sockets, links put down
// where they began, a pointer that trembles or leaves. None of it may change the graph.
#include <gmock/gmock.h>

#include "canvas_fixture.h"
#include "editor/ui_name_field.h"
#include "editor/ui_node_palette.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class CanvasSlips : public CanvasTest {
  protected:
    CanvasSlips() {
        add("src", "Node", 100, 50);
        add("mid", "Node", 100, 200);
        add("out", "Output", 100, 400);
        rebuild();
    }
    static constexpr Spot kEmpty = {900, 700};

    void expectUnlinked() const {
        for (const auto& [id, each] : engine.nodes) {
            for (int port = 0; port < each->inputCount; ++port) {
                EXPECT_EQ(each->getInput(port), nullptr) << id << ", input " << port;
            }
        }
        EXPECT_EQ(host.changes, 0);
        EXPECT_EQ(master.captured, nullptr);
    }
    Spot awayFrom(const Spot& spot, int x, int y) const { return {spot.x + x, spot.y + y}; }
};

// --- links

TEST_F(CanvasSlips, AClickOnAnOutputLinksNothing) {
    click(output("mid"));
    expectUnlinked();
}

TEST_F(CanvasSlips, AClickOnAnEmptySocketLinksNothing) {
    click(socket("mid", 1));
    expectUnlinked();
}

TEST_F(CanvasSlips, DoubleClicksOnSocketsLinkNothing) {
    doubleClick(output("mid"));
    expectUnlinked();
    doubleClick(socket("mid", 1));
    expectUnlinked();
}

TEST_F(CanvasSlips, ALinkPutDownOnTheBoxItBeganAtIsDropped) {
    drag(output("mid"), middle("mid"));
    expectUnlinked();
    drag(socket("mid", 1), middle("mid"));
    expectUnlinked();
    drag(socket("mid", 0), socket("mid", 1));
    expectUnlinked();
}

TEST_F(CanvasSlips, ANodeIsLinkedToItselfFromEitherEndWhenTheOtherIsHit) {
    drag(output("mid"), socket("mid", 2));
    EXPECT_EQ(input("mid", 2), node("mid"));
    drag(socket("mid", 1), output("mid"));
    EXPECT_EQ(input("mid", 1), node("mid"));
}

TEST_F(CanvasSlips, ALinkBroughtBackToItsSourceStays) {
    engine.connect("src", "mid", 0);
    rebuild();
    drag(socket("mid", 0), middle("src"));
    EXPECT_EQ(input("mid", 0), node("src"));
    EXPECT_EQ(input("src", 0), nullptr);
    EXPECT_EQ(host.changes, 0);
}

TEST_F(CanvasSlips, TheStatusLineTellsThatNothingWillHappen) {
    press(output("mid"));
    move(middle("mid"));
    EXPECT_THAT(host.status, HasSubstr("as it was"));
    release(middle("mid"));
    press(socket("mid", 1));
    move(middle("mid"));
    EXPECT_THAT(host.status, HasSubstr("as it was"));
    move(output("mid"));
    EXPECT_EQ(host.status, "Let go to link mid");
    release(middle("mid"));
    expectUnlinked();
}

// --- boxes

TEST_F(CanvasSlips, ATremblingClickMovesNothing) {
    canvas.select({"src", "mid"});
    const Spot at = middle("mid");
    press(at);
    move(awayFrom(at, 2, -2));
    EXPECT_EQ(box("mid").x, kLeft + 100);
    EXPECT_EQ(box("mid").y, kTop + 200);
    release(awayFrom(at, -2, 1));
    EXPECT_EQ(box("mid").x, kLeft + 100);
    EXPECT_EQ(box("src").y, kTop + 50);
    EXPECT_EQ(host.changes, 0);
    EXPECT_THAT(canvas.selection(), ElementsAre("mid")) << "a click chooses one";
}

TEST_F(CanvasSlips, ADragOfThreePixelsOfTheScreenMovesABoxAtAnyZoom) {
    const Spot at = middle("mid");
    drag(at, awayFrom(at, 3, 0));
    EXPECT_EQ(box("mid").x, kLeft + 103);
    canvas.view.zoom = 0.5f;
    const Spot small = middle("mid");
    drag(small, awayFrom(small, 0, 2));
    EXPECT_EQ(box("mid").y, kTop + 200) << "two pixels, four of the canvas";
    drag(small, awayFrom(small, 0, 4));
    EXPECT_EQ(box("mid").y, kTop + 208);
}

TEST_F(CanvasSlips, ADragThatHasBegunGoesBackToItsFirstPixel) {
    const Spot at = middle("mid");
    press(at);
    move(awayFrom(at, 20, 0));
    move(awayFrom(at, 1, 0));
    EXPECT_EQ(box("mid").x, kLeft + 101);
    release(awayFrom(at, 1, 0));
    EXPECT_EQ(box("mid").x, kLeft + 101);
}

TEST_F(CanvasSlips, ABoxThatANewLinkFoldsAwayIsSelectedNoMore) {
    host.folds["mid"] = true;
    rebuild();
    canvas.select({"src", "out"});
    drag(output("src"), socket("mid", 0));
    ASSERT_FALSE(box("src").enabled);
    EXPECT_THAT(canvas.selection(), ElementsAre("out"));
    EXPECT_FALSE(box("src").keyed);
}

// --- the pointer

TEST_F(CanvasSlips, ASocketIsLitOnlyUnderThePointer) {
    press(socket("mid", 2));
    EXPECT_EQ(box("mid").hoverInput, -1);
    release(kEmpty);
    key(kKeyEscape);
    move(kEmpty);
    EXPECT_EQ(box("mid").hoverInput, -1);
}

// --- the wheel

TEST_F(CanvasSlips, PartsOfANotchZoomByPartsOfAStep) {
    const Spot at = middle("mid");
    for (int i = 0; i < 4; ++i) wheel(at, 30);
    EXPECT_NEAR(canvas.view.zoom, 1.1f, 1e-5) << "four roundings of a float";
    wheel(at, -120);
    EXPECT_EQ(canvas.view.zoom, 1);
    wheel(at, 240);
    EXPECT_NEAR(canvas.view.zoom, 1.21f, 1e-5);
    for (int i = 0; i < 8; ++i) wheel(at, -30);
    EXPECT_EQ(canvas.view.zoom, 1) << "back to the boxes' own pixels";
}

TEST_F(CanvasSlips, ShowAllShowsAllOfATallGraphAndTheWheelGoesInFromThere) {
    add("far", "Node", 100, 100000);
    rebuild();
    move(kEmpty);
    key(kKeyHome);
    EXPECT_GE(middle("src").y, kTop);
    EXPECT_LE(middle("far").y, kTop + 600);
    const float shown = canvas.view.zoom;
    wheel(kEmpty, -120);
    EXPECT_EQ(canvas.view.zoom, shown) << "no further out";
    wheel(kEmpty, 120);
    EXPECT_NEAR(canvas.view.zoom, shown * 1.1f, 1e-6);
    for (int i = 0; i < 100; ++i) wheel(kEmpty, 120);
    EXPECT_EQ(canvas.view.zoom, CanvasView::kMostZoom);
    for (int i = 0; i < 100; ++i) wheel(kEmpty, -120);
    EXPECT_EQ(canvas.view.zoom, CanvasView::kLeastZoom);
}

TEST_F(CanvasSlips, PlacesFarOutsideAreNoHarmAtTheLeastZoom) {
    add("far", "Node", 10000000, -10000000);
    rebuild();
    move(kEmpty);
    key(kKeyHome);
    EXPECT_GE(middle("src").x, kLeft);
    EXPECT_LE(middle("far").x, kLeft + 1000);
    Play(master, kMessageMiddleDown, kEmpty.x, kEmpty.y);
    for (int i = 0; i < 200; ++i) move({i % 2 == 0 ? -32000 : 32000, 32000});
    Play(master, kMessageMiddleUp, kEmpty.x, kEmpty.y);
    click(kEmpty);
    EXPECT_EQ(engine.nodes.size(), 4u);
}

// --- new nodes

TEST_F(CanvasSlips, NodesOfTheToolbarDoNotLieOnEachOther) {
    for (int i = 0; i < 3; ++i) {
        canvas.openPalette(10, 10);
        type("node");
        key(kKeyReturn);
    }
    EXPECT_EQ(box("Node2").x, box("Node1").x + 30);
    EXPECT_EQ(box("Node2").y, box("Node1").y + 30);
    EXPECT_EQ(box("Node3").x, box("Node1").x + 60);
}

TEST_F(CanvasSlips, PastingTwiceInOnePlaceShowsBoth) {
    canvas.select({"src", "mid"});
    move(kEmpty);
    ctrl('C');
    ctrl('V');
    ctrl('V');
    EXPECT_EQ(box("Node3").x, box("Node1").x + 30);
    EXPECT_EQ(box("Node4").y, box("Node2").y + 30);
}

TEST_F(CanvasSlips, ANewNodeTakesNeitherTheNameNorTheFoldOfOneBeforeIt) {
    for (const char* id : {"Node1", "Node2"}) {
        master.displayNames[id] = "Old";
        host.folds[id] = true;
    }
    move(kEmpty);
    key(kKeyTab);
    type("node");
    key(kKeyReturn);
    EXPECT_EQ(master.DisplayNameOf("Node1"), "Node1");
    EXPECT_TRUE(box("Node1").open);
    canvas.select({"src"});
    ctrl('D');
    EXPECT_EQ(master.DisplayNameOf("Node2"), "Node2");
    EXPECT_TRUE(box("Node2").open);
}

TEST_F(CanvasSlips, SwitchingOffTellsThatItIsNotSaved) {
    canvas.select({"mid"});
    move(kEmpty);
    key('E');
    EXPECT_THAT(host.status, HasSubstr("not saved"));
}

// --- laying out

TEST_F(CanvasSlips, ASecondLBringsTheOldPlacesBack) {
    box("src").SetPosition(kLeft + 311, kTop + 77);
    box("mid").SetPosition(kLeft + 5, kTop + 500);
    move(kEmpty);
    key('L');
    ASSERT_NE(box("src").x, kLeft + 311);
    EXPECT_THAT(host.status, HasSubstr("L again"));
    const int arranged = box("src").x;
    key('L');
    EXPECT_EQ(box("src").x, kLeft + 311);
    EXPECT_EQ(box("src").y, kTop + 77);
    EXPECT_EQ(box("mid").y, kTop + 500);
    EXPECT_EQ(host.changes, 2);
    key('L');
    EXPECT_EQ(box("src").x, arranged) << "and so on";
}

TEST_F(CanvasSlips, LArrangesAnewWhenABoxHasMovedSince) {
    box("src").SetPosition(kLeft + 311, kTop + 77);
    move(kEmpty);
    key('L');
    const int arrangedX = box("mid").x, arrangedY = box("mid").y;
    box("mid").SetPosition(kLeft + 700, kTop + 20);
    key('L');
    EXPECT_EQ(box("mid").x, arrangedX);
    EXPECT_EQ(box("mid").y, arrangedY);
    key('L');
    EXPECT_EQ(box("mid").x, kLeft + 700);
}

TEST_F(CanvasSlips, LArrangesAnewWhenANodeCameSince) {
    box("src").SetPosition(kLeft + 311, kTop + 77);
    move(kEmpty);
    key('L');
    add("late", "Node", 600, 600);
    rebuild();
    key('L');
    EXPECT_NE(box("src").x, kLeft + 311);
}

// --- names

TEST_F(CanvasSlips, NamesTakeLettersOfEveryTongue) {
    canvas.select({"mid"});
    move(kEmpty);
    key(kKeyF2);
    for (const int point : {0x48, 0xe9, 0x4e16, 0x1f600})
        Play(master, kMessageCharacter, 0, 0, point);
    key(kKeyReturn);
    EXPECT_EQ(master.DisplayNameOf("mid"), "H\xc3\xa9\xe4\xb8\x96\xf0\x9f\x98\x80");
    key(kKeyF2);
    for (const int point : {0x48, 0xe9, 0x1f600}) Play(master, kMessageCharacter, 0, 0, point);
    key(kKeyBack);
    key(kKeyBack);
    key(kKeyReturn);
    EXPECT_EQ(master.DisplayNameOf("mid"), "H") << "a whole character each";
}

TEST_F(CanvasSlips, NamesTakeNoControlCharactersAndNoHalfOnes) {
    canvas.select({"mid"});
    move(kEmpty);
    key(kKeyF2);
    for (const int point : {0x48, 8, 27, 127, 0x85, 0xd800, 0x110000, -1}) {
        Play(master, kMessageCharacter, 0, 0, point);
    }
    key(kKeyReturn);
    EXPECT_EQ(master.DisplayNameOf("mid"), "H");
}

// --- what the graph lacks

TEST_F(CanvasSlips, AnInputWhoseSourceHasNoBoxMakesNoLink) {
    engine.connect("src", "mid", 0);
    engine.connect("mid", "out", 0);
    auto source = std::move(*engine.nodes.find("src"));
    engine.nodes.erase("src");  // the input keeps it, the graph does not
    rebuild();
    EXPECT_EQ(canvas.boxOf("src"), nullptr);
    ASSERT_EQ(input("mid", 0), source.get());
    EXPECT_EQ(box("mid").inputLinks[0], nullptr);
    EXPECT_EQ(box("out").inputLinks[0], &box("mid"));
    engine.disconnect("mid", 0);
}

}  // namespace
