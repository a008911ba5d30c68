// The boxes of the canvas: how they follow the graph, the side-file's places and the folds.
#include "editor/ui_node_canvas.h"

#include <gmock/gmock.h>

#include <limits>

#include "canvas_fixture.h"

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::vector<std::string> IdsOf(const UI_NodeCanvas& canvas) {
    std::vector<std::string> ids;
    for (const auto& box : canvas.boxes()) ids.push_back(box->id);
    return ids;
}

std::unique_ptr<UI_Node> LooseBox(UI_Master& master, const std::string& id, int x, int y,
                                  int inputs) {
    return std::make_unique<UI_Node>(&master, nullptr, id, x, y, inputs);
}

TEST_F(CanvasTest, AddBoxMovesItByTheCanvasAndNumbersIt) {
    UI_Node* first = LooseBox(master, "a", 10, 20, 2).release();
    UI_Node* second = LooseBox(master, "b", 30, 40, 0).release();
    canvas.layoutDirty = false;
    canvas.AddBox(first);
    EXPECT_TRUE(canvas.layoutDirty);
    canvas.AddBox(second);
    EXPECT_EQ(first->x, kLeft + 10);
    EXPECT_EQ(first->y, kTop + 20);
    EXPECT_EQ(first->number, 0);
    EXPECT_EQ(second->number, 1);
    EXPECT_EQ(first->master, &master);
    EXPECT_EQ(first->listener, &canvas);
    EXPECT_THAT(first->inputLinks, ElementsAre(nullptr, nullptr));
    EXPECT_EQ(canvas.boxOf("b"), second);
}

TEST_F(CanvasTest, ClearBoxesStartsTheNumbersAnew) {
    canvas.AddBox(LooseBox(master, "a", 0, 0, 0).release());
    canvas.layoutDirty = false;
    canvas.ClearBoxes();
    EXPECT_TRUE(canvas.layoutDirty);
    EXPECT_TRUE(canvas.boxes().empty());
    EXPECT_EQ(canvas.boxOf("a"), nullptr);
    canvas.AddBox(LooseBox(master, "b", 0, 0, 0).release());
    EXPECT_EQ(canvas.boxes()[0]->number, 0);
}

TEST_F(CanvasTest, ConnectBoxesFillsEmptySlotsOfItsOwnBoxesOnly) {
    UI_Node* a = LooseBox(master, "a", 0, 0, 0).release();
    UI_Node* b = LooseBox(master, "b", 0, 0, 0).release();
    UI_Node* target = LooseBox(master, "t", 0, 0, 2).release();
    const auto stranger = LooseBox(master, "s", 0, 0, 2);
    for (UI_Node* box : {a, b, target}) canvas.AddBox(box);
    canvas.layoutDirty = false;
    canvas.ConnectBoxes(a, target, 1);
    EXPECT_TRUE(canvas.layoutDirty);
    EXPECT_THAT(target->inputLinks, ElementsAre(nullptr, a));
    canvas.ConnectBoxes(b, target, 1);
    EXPECT_THAT(target->inputLinks, ElementsAre(nullptr, a)) << "a taken slot keeps its source";
    canvas.ConnectBoxes(b, target, 2);
    canvas.ConnectBoxes(b, target, -1);
    canvas.ConnectBoxes(stranger.get(), target, 0);
    canvas.ConnectBoxes(nullptr, target, 0);
    canvas.ConnectBoxes(a, stranger.get(), 0);
    canvas.ConnectBoxes(a, nullptr, 0);
    EXPECT_THAT(target->inputLinks, ElementsAre(nullptr, a));
    EXPECT_THAT(stranger->inputLinks, ElementsAre(nullptr, nullptr));
}

TEST_F(CanvasTest, RebuildMakesABoxForEachNodeInTheGraphsOrder) {
    add("b", "Node", 10, 20);
    add("a", "Output", 300, 400.75f);
    engine.connect("b", "a", 0);
    engine.findNode("b")->hasError = true;
    engine.findNode("b")->inputNames[1] = "Second";
    engine.createNode("ghost", "no such type");
    rebuild();
    ASSERT_THAT(IdsOf(canvas), ElementsAre("b", "a"));
    EXPECT_EQ(box("a").x, kLeft + 300);
    EXPECT_EQ(box("a").y, kTop + 400) << "places are cut to whole pixels";
    EXPECT_EQ(box("b").inputCount, 3);
    EXPECT_THAT(box("b").inputNames, ElementsAre("input0", "Second", "input2"));
    EXPECT_TRUE(box("b").error);
    EXPECT_FALSE(box("a").error);
    EXPECT_THAT(box("a").inputLinks, ElementsAre(&box("b")));
    EXPECT_THAT(box("b").inputLinks, ElementsAre(nullptr, nullptr, nullptr));
    EXPECT_TRUE(box("b").open);
}

TEST_F(CanvasTest, NodesWithoutAPlaceOverlapAtTheDefaultOne) {
    engine.makeNode("a");
    add("b", "Node", 0, 0);
    add("c", "Node", 0, 7);
    add("d", "Node", 7, 0);
    rebuild();
    for (const std::string id : {"a", "b"}) {
        EXPECT_EQ(box(id).x, kLeft);
        EXPECT_EQ(box(id).y, kTop + 50);
    }
    EXPECT_EQ(box("c").y, kTop + 7);
    EXPECT_EQ(box("d").y, kTop);
}

TEST_F(CanvasTest, PlacesOfNoCanvasEndAtItsEdge) {
    add("a", "Node", std::numeric_limits<float>::quiet_NaN(), 1e30f);
    add("b", "Node", -std::numeric_limits<float>::infinity(), 5);
    rebuild();
    EXPECT_EQ(box("a").x, kLeft);
    EXPECT_EQ(box("a").y, kTop + 10000000);
    EXPECT_EQ(box("b").x, kLeft - 10000000);
    canvas.frameAll();
    EXPECT_GE(canvas.view.zoom, CanvasView::kLeastFrameZoom);
}

// A quirk that saved projects rely on: a box moves right with each save on a canvas that is not at
// the left edge.
TEST_F(CanvasTest, PlacesForTheSideFileAreRelativeInYOnly) {
    add("a", "Node", 10, 20);
    rebuild();
    canvas.CapturePositions();
    EXPECT_EQ(host.positions.find("a")->x, kLeft + 10);
    EXPECT_EQ(host.positions.find("a")->y, 20);
}

TEST_F(CanvasTest, PlacesForARebuildAreRelative) {
    add("a", "Node", 10, 20);
    rebuild();
    box("a").SetPosition(kLeft + 33, kTop + 44);
    host.positions["not there"] = {1, 2};
    canvas.capturePlaces();
    rebuild();
    EXPECT_EQ(box("a").x, kLeft + 33);
    EXPECT_EQ(box("a").y, kTop + 44);
    EXPECT_NE(host.positions.find("not there"), nullptr);
}

TEST_F(CanvasTest, BoxesGoWithTheCanvas) {
    add("a", "Node", 10, 20);
    rebuild();
    canvas.SetPosition(kLeft + 5, kTop - 7);
    EXPECT_EQ(box("a").x, kLeft + 15);
    EXPECT_EQ(box("a").y, kTop + 13);
}

TEST_F(CanvasTest, FoldedSubtreesAreDisabledButTheirRootIsNot) {
    for (const std::string id : {"root", "left", "right", "deep", "other"}) add(id, "Node", 9, 9);
    engine.connect("left", "root", 0);
    engine.connect("right", "root", 1);
    engine.connect("deep", "left", 0);
    engine.connect("deep", "right", 2);
    engine.connect("other", "other", 0);
    host.folds["root"] = true;
    host.folds["no such node"] = true;
    rebuild();
    EXPECT_FALSE(box("root").open);
    EXPECT_TRUE(box("root").enabled);
    EXPECT_FALSE(box("left").enabled);
    EXPECT_FALSE(box("right").enabled);
    EXPECT_FALSE(box("deep").enabled);
    EXPECT_TRUE(box("left").open);
    EXPECT_TRUE(box("other").enabled);
}

TEST_F(CanvasTest, AFoldedCycleEndsAndLeavesItsRootInReach) {
    add("a", "Node", 9, 9);
    add("b", "Node", 9, 99);
    engine.connect("a", "b", 0);
    engine.connect("b", "a", 0);
    host.folds["a"] = true;
    rebuild();
    EXPECT_TRUE(box("a").enabled);
    EXPECT_FALSE(box("b").enabled);
}

TEST_F(CanvasTest, HFoldsAndUnfoldsTheSelectedNode) {
    add("root", "Node", 10, 200);
    add("behind", "Node", 10, 20);
    engine.connect("behind", "root", 0);
    rebuild();
    click(middle("root"));
    key('H');
    EXPECT_TRUE(host.folded("root"));
    EXPECT_FALSE(box("behind").enabled);
    EXPECT_FALSE(box("root").open);
    const int changes = host.changes;
    click(middle("behind"));
    EXPECT_THAT(canvas.selection(), ElementsAre("root")) << "what is folded takes no input";
    key('H');
    EXPECT_FALSE(host.folded("root"));
    EXPECT_TRUE(box("behind").enabled);
    EXPECT_GT(host.changes, changes);
}

TEST_F(CanvasTest, FoldingDropsWhatItHidesFromTheSelection) {
    add("root", "Node", 10, 200);
    add("behind", "Node", 10, 20);
    engine.connect("behind", "root", 0);
    rebuild();
    canvas.select({"root", "behind"});
    move(middle("root"));
    host.folds["behind"] = false;
    key('H');
    EXPECT_THAT(canvas.selection(), ElementsAre("root"));
}

TEST_F(CanvasTest, AFoldedSubtreeGoesAlongWithItsRoot) {
    add("root", "Node", 10, 200);
    add("behind", "Node", 10, 20);
    engine.connect("behind", "root", 0);
    host.folds["root"] = true;
    rebuild();
    const Spot from = middle("root");
    drag(from, {from.x + 15, from.y + 25});
    EXPECT_EQ(box("behind").x, kLeft + 25);
    EXPECT_EQ(box("behind").y, kTop + 45);
}

TEST_F(CanvasTest, SelectionKeepsOnlyWhatIsThere) {
    add("a", "Node", 10, 20);
    add("b", "Node", 10, 90);
    rebuild();
    canvas.select({"a", "b", "c"});
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("a", "b"));
    EXPECT_TRUE(box("a").keyed);
    engine.deleteNode("b");
    rebuild();
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("a"));
    EXPECT_TRUE(box("a").keyed) << "the mark survives the rebuild";
}

TEST_F(CanvasTest, FrameAllShowsEveryBox) {
    add("a", "Node", -5000, 30);
    add("b", "Node", 4000, 2000);
    rebuild();
    canvas.frameAll();
    for (const std::string id : {"a", "b"}) {
        EXPECT_GE(canvas.view.screenX(box(id).x), kLeft);
        EXPECT_LE(canvas.view.screenX(box(id).x + 160), kLeft + 1000);
        EXPECT_GE(canvas.view.screenY(box(id).y), kTop);
        EXPECT_LE(canvas.view.screenY(box(id).y + 20), kTop + 600);
    }
}

TEST_F(CanvasTest, FrameSelectionComesNearButNotNearerThanPlain) {
    add("a", "Node", -5000, 30);
    add("b", "Node", 4000, 2000);
    rebuild();
    canvas.select({"b"});
    canvas.frameSelection();
    EXPECT_EQ(canvas.view.zoom, 1);
    EXPECT_NEAR(middle("b").x, kLeft + 500, 1) << "rounded to a pixel";
    EXPECT_NEAR(middle("b").y, kTop + 300, 1);
    canvas.select({});
    canvas.frameSelection();
    EXPECT_LT(canvas.view.zoom, 1) << "without a selection, everything";
}

TEST_F(CanvasTest, FramingNothingGivesThePlainView) {
    canvas.view.zoom = 0.5f;
    canvas.view.shift = {3, 4};
    canvas.frameAll();
    EXPECT_EQ(canvas.view.zoom, 1);
    EXPECT_EQ(canvas.view.shift.x, 0);
}

TEST_F(CanvasTest, ArrangePutsSourcesAboveWhatTheyFeed) {
    for (const std::string id : {"a", "b", "c"}) engine.makeNode(id);
    engine.makeOutput("out");
    engine.connect("a", "b", 0);
    engine.connect("c", "b", 1);
    engine.connect("b", "out", 0);
    engine.connect("out", "c", 0);
    rebuild();
    canvas.arrange();
    EXPECT_LT(box("a").y, box("b").y);
    EXPECT_LT(box("c").y, box("b").y);
    EXPECT_LT(box("b").y, box("out").y);
    EXPECT_EQ(box("a").y, box("c").y);
    EXPECT_GE(std::abs(box("a").x - box("c").x), 160) << "side by side";
}

}  // namespace
