// Making, removing, copying, naming and switching nodes on the canvas.
#include <gmock/gmock.h>

#include "canvas_fixture.h"
#include "editor/ui_name_field.h"
#include "editor/ui_node_palette.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class CanvasEdits : public CanvasTest {
  protected:
    CanvasEdits() {
        add("src", "Node", 100, 50);
        add("mid", "Node", 100, 200);
        add("out", "Output", 100, 400);
        engine.connect("src", "mid", 0);
        engine.connect("mid", "out", 0);
        rebuild();
        move(kEmpty);
    }
    static constexpr Spot kEmpty = {900, 700};

    // The palette that is open.
    const UI_NodePalette& palette() const {
        const auto* open = dynamic_cast<const UI_NodePalette*>(master.captured);
        EXPECT_NE(open, nullptr) << "the palette is not open";
        return *open;
    }
    std::vector<std::string> offered() const {
        std::vector<std::string> names;
        for (const UI_NodePalette::Row& row : palette().rows()) {
            if (!row.heading) names.push_back(row.text);
        }
        return names;
    }
    TestNode& testNode(const std::string& id) const { return engine.node(id); }
};

// --- removing

TEST_F(CanvasEdits, DeleteRemovesTheSelectedNodes) {
    engine.addAnimation("mid", "Size");
    master.displayNames["mid"] = "Middle";
    host.folds["mid"] = true;
    canvas.select({"mid", "out"});
    key(kKeyDelete);
    EXPECT_EQ(node("mid"), nullptr);
    EXPECT_EQ(node("out"), nullptr);
    EXPECT_THAT(host.gone, ElementsAre("mid", "out"));
    EXPECT_TRUE(node("src")->consumers.empty());
    EXPECT_TRUE(engine.allTracks().empty());
    EXPECT_EQ(canvas.boxes().size(), 1u);
    EXPECT_TRUE(canvas.selection().empty());
    EXPECT_EQ(host.positions.find("mid"), nullptr);
    EXPECT_FALSE(host.folded("mid"));
    EXPECT_EQ(master.DisplayNameOf("mid"), "mid");
    EXPECT_EQ(host.changes, 1);
    EXPECT_EQ(host.status, "2 nodes removed");
}

TEST_F(CanvasEdits, DeleteWithoutASelectionDoesNothing) {
    move(middle("mid"));
    key(kKeyDelete);
    EXPECT_EQ(canvas.boxes().size(), 3u);
    EXPECT_EQ(host.changes, 0);
}

TEST_F(CanvasEdits, BoxesStayWhereTheyAreWhenOthersGo) {
    box("src").SetPosition(kLeft + 111, kTop + 62);
    canvas.select({"out"});
    key(kKeyDelete);
    EXPECT_EQ(box("src").x, kLeft + 111);
    EXPECT_EQ(box("src").y, kTop + 62);
}

// --- making

TEST_F(CanvasEdits, TabOpensThePaletteWithAllTypes) {
    key(kKeyTab);
    EXPECT_THAT(offered(), ElementsAre("Node", "Camera", "Output"));
    key(kKeyEscape);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_EQ(canvas.boxes().size(), 3u);
}

TEST_F(CanvasEdits, ThePaletteEndsWithTheCanvas) {
    Play(master, kMessageRightDown, kLeft + 800, kTop + 595);
    EXPECT_EQ(palette().y + palette().height, kTop + 600);
    EXPECT_EQ(palette().x, kLeft + 800);
    key(kKeyEscape);
}

TEST_F(CanvasEdits, ARightPressOnEmptyCanvasMakesANodeThere) {
    Play(master, kMessageRightDown, kEmpty.x, kEmpty.y);
    Play(master, kMessageRightUp, kEmpty.x, kEmpty.y);
    type("cam");
    key(kKeyReturn);
    ASSERT_NE(node("Camera1"), nullptr);
    EXPECT_EQ(middle("Camera1").x, kEmpty.x);
    EXPECT_EQ(middle("Camera1").y, kEmpty.y);
    EXPECT_THAT(canvas.selection(), ElementsAre("Camera1"));
    EXPECT_EQ(host.changes, 1);
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(CanvasEdits, NewNodesAreNumberedByTheirTypesCounter) {
    engine.createNode("Camera1", "Camera");
    engine.typeCounters["Camera"] = 4;
    for (int i = 0; i < 2; ++i) {
        key(kKeyTab);
        type("camera");
        key(kKeyReturn);
    }
    EXPECT_NE(node("Camera5"), nullptr);
    EXPECT_NE(node("Camera6"), nullptr);
    EXPECT_EQ(*engine.typeCounters.find("Camera"), 6);
    engine.deleteNode("Camera5");
    key(kKeyTab);
    type("camera");
    key(kKeyReturn);
    EXPECT_NE(node("Camera2"), nullptr) << "a deletion starts the numbers anew; 1 is taken";
}

TEST_F(CanvasEdits, ALinkDroppedOnEmptyCanvasMakesANodeThatTakesIt) {
    drag(output("src"), kEmpty);
    EXPECT_THAT(offered(), ElementsAre("Node", "Output"));
    type("node");
    key(kKeyReturn);
    ASSERT_NE(node("Node1"), nullptr);
    EXPECT_EQ(input("Node1", 0), node("src"));
    EXPECT_EQ(box("Node1").inputLinks[0], &box("src"));
    EXPECT_EQ(host.changes, 1);
}

TEST_F(CanvasEdits, ASocketDroppedOnEmptyCanvasMakesANodeThatFeedsIt) {
    drag(socket("mid", 2), kEmpty);
    EXPECT_THAT(offered(), ElementsAre("Node"));
    key(kKeyReturn);
    ASSERT_NE(node("Node1"), nullptr);
    EXPECT_EQ(input("mid", 2), node("Node1"));
}

TEST_F(CanvasEdits, AskingWhatFitsLeavesTheGraphAlone) {
    engine.typeCounters["Node"] = 7;
    drag(output("src"), kEmpty);
    key(kKeyEscape);
    EXPECT_EQ(engine.nodes.size(), 3u);
    EXPECT_EQ(engine.outputs.size(), 1u);
    EXPECT_EQ(*engine.typeCounters.find("Node"), 7);
    EXPECT_EQ(engine.values.size(), 2u);
}

TEST_F(CanvasEdits, ALinkWhoseSourceGoesWhileThePaletteIsOpenIsDropped) {
    drag(output("src"), kEmpty);
    engine.deleteNode("src");
    rebuild();
    type("node");
    key(kKeyReturn);
    ASSERT_NE(node("Node1"), nullptr);
    EXPECT_EQ(input("Node1", 0), nullptr);
}

TEST_F(CanvasEdits, ATypeThatCannotBeMadeIsToldAndLeavesNothing) {
    engine.typeNames.push_back("Ghost");
    key(kKeyTab);
    type("ghost");
    key(kKeyReturn);
    EXPECT_EQ(canvas.boxes().size(), 3u);
    EXPECT_THAT(host.status, HasSubstr("Ghost"));
    EXPECT_EQ(engine.nodeTypes.find("Ghost1"), nullptr);
    EXPECT_FALSE(engine.nodes.contains("Ghost1"));
}

TEST_F(CanvasEdits, TheTypeUsedLastComesFirst) {
    key(kKeyTab);
    type("output");
    key(kKeyReturn);
    key(kKeyTab);
    EXPECT_EQ(palette().chosen(), "Output");
}

// --- copying

TEST_F(CanvasEdits, CtrlDDoublesNodesWithValuesTracksAndLinksAmongThem) {
    testNode("src").size = 3.25f;
    testNode("src").text = "c:\\pictures\\\xff\xfe.png";
    engine.addAnimation("src", "Place");
    engine.track("src").setKeys({{1, 2, kKeyEaseIn}, {3, 4, kKeyLinear}});
    node("mid")->disabled = 1;
    master.displayNames["mid"] = "Middle";
    canvas.select({"src", "mid"});
    ctrl('D');
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("Node1", "Node2"));
    EXPECT_EQ(testNode("Node1").size, 3.25f);
    EXPECT_EQ(testNode("Node1").text, "c:\\pictures\\\xff\xfe.png");
    EXPECT_EQ(input("Node2", 0), node("Node1"));
    EXPECT_EQ(input("out", 0), node("mid")) << "what was there keeps its links";
    EXPECT_EQ(node("Node2")->disabled, 1);
    EXPECT_EQ(master.DisplayNameOf("Node2"), "Middle");
    EXPECT_EQ(box("Node1").x, box("src").x + 30);
    EXPECT_EQ(box("Node1").y, box("src").y + 30);
    const KeyframeTrack& track = engine.track("Node1");
    EXPECT_EQ(track.name, "Node1.Place.x");
    EXPECT_EQ(track.target, &testNode("Node1").place[0]);
    EXPECT_EQ(track.owner, node("Node1"));
    ASSERT_EQ(track.keys().size(), 2u);
    EXPECT_EQ(track.keys()[0].mode, kKeyEaseIn);
    EXPECT_EQ(track.keys()[1].value, 3);
    EXPECT_EQ(engine.tracks.find("Node1")->size(), 2u);
    EXPECT_EQ(host.changes, 1);
    engine.deleteNode("src");
    engine.update(4);
    EXPECT_EQ(testNode("Node1").place[0], 3) << "the copy's track is its own";
}

TEST_F(CanvasEdits, CopyAndPasteGoThroughText) {
    testNode("src").size = 0.1f;
    canvas.select({"src", "mid"});
    ctrl('C');
    EXPECT_THAT(host.clipboard, HasSubstr("\"kind\": \"vorn graph\""));
    EXPECT_EQ(host.changes, 0);
    const Spot at = {700, 500};
    move(at);
    ctrl('V');
    EXPECT_EQ(testNode("Node1").size, 0.1f) << "to the last bit";
    EXPECT_EQ(input("Node2", 0), node("Node1"));
    EXPECT_EQ(input("Node1", 0), nullptr);
    EXPECT_EQ(box("Node2").y - box("Node1").y, 150);
    EXPECT_EQ(middle("Node1").x, at.x);
    EXPECT_EQ((middle("Node1").y + middle("Node2").y) / 2, at.y);
    EXPECT_THAT(canvas.selection(), UnorderedElementsAre("Node1", "Node2"));
}

TEST_F(CanvasEdits, CutCopiesAndRemoves) {
    canvas.select({"mid"});
    ctrl('X');
    EXPECT_EQ(node("mid"), nullptr);
    EXPECT_EQ(input("out", 0), nullptr);
    ctrl('V');
    EXPECT_NE(node("Node1"), nullptr);
}

TEST_F(CanvasEdits, NodesArePastedIntoAnotherProject) {
    canvas.select({"src", "mid", "out"});
    ctrl('C');
    TestEngine other;
    other.typeNames = {"Node"};
    FakeCanvasHost otherHost(other);
    otherHost.clipboard = host.clipboard;
    UI_Master otherMaster;
    UI_NodeCanvas otherCanvas(otherHost, 0, 0, 500, 500);
    otherMaster.AddTopLevel(&otherCanvas);
    Play(otherMaster, kMessageMouseMove, 250, 250);
    Play(otherMaster, kMessageKeyDown, 0, 0, kKeyControl);
    Play(otherMaster, kMessageKeyDown, 0, 0, 'V');
    EXPECT_EQ(other.nodes.size(), 2u);
    EXPECT_EQ(other.findNode("Node2")->getInput(0), other.findNode("Node1"));
    EXPECT_THAT(otherHost.status, HasSubstr("1 left out"));
}

TEST_F(CanvasEdits, BadClipboardTextIsALineAndNothingElse) {
    for (const std::string text :
         {"", "hello", "{", "[1,2]", "{\"kind\":\"vorn graph\"}", "{\"kind\":7,\"nodes\":[]}",
          "{\"kind\":\"vorn graph\",\"nodes\":[{}]}"}) {
        host.clipboard = text;
        host.status.clear();
        move(kEmpty);
        ctrl('V');
        EXPECT_EQ(host.status, "The clipboard holds no nodes") << text;
        EXPECT_EQ(engine.nodes.size(), 3u);
        EXPECT_EQ(host.changes, 0);
        move({901, 701});
    }
}

TEST_F(CanvasEdits, CopyWithoutASelectionLeavesTheClipboard) {
    host.clipboard = "a friend's message";
    ctrl('C');
    ctrl('X');
    ctrl('D');
    EXPECT_EQ(host.clipboard, "a friend's message");
    EXPECT_EQ(engine.nodes.size(), 3u);
}

// --- naming, switching

TEST_F(CanvasEdits, ADoubleClickNamesTheNode) {
    const Spot at = middle("mid");
    click(at);
    Play(master, kMessageLeftDoubleClick, at.x, at.y);
    Play(master, kMessageLeftUp, at.x, at.y);
    type("Sky");
    key(kKeyReturn);
    EXPECT_EQ(master.DisplayNameOf("mid"), "Sky");
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_EQ(host.changes, 1);
    EXPECT_NE(node("mid"), nullptr) << "the id stays";
}

TEST_F(CanvasEdits, NamingTakesLettersThatAreGesturesElsewhere) {
    canvas.select({"mid"});
    key(kKeyF2);
    for (const char c : std::string("FHE")) {
        key(c);
        type(std::string(1, c));
    }
    key(kKeyBack);
    key(kKeyDelete);
    key(kKeyReturn);
    EXPECT_EQ(master.DisplayNameOf("mid"), "FH");
    EXPECT_NE(node("mid"), nullptr);
}

TEST_F(CanvasEdits, EscapeKeepsTheOldNameAndAPressElsewhereTakesTheNew) {
    master.displayNames["mid"] = "Old";
    canvas.select({"mid"});
    key(kKeyF2);
    type("New");
    key(kKeyEscape);
    EXPECT_EQ(master.DisplayNameOf("mid"), "Old");
    key(kKeyF2);
    type("New");
    press(kEmpty);
    EXPECT_EQ(master.DisplayNameOf("mid"), "New");
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(CanvasEdits, AnEmptyNameShowsTheId) {
    master.displayNames["mid"] = "Old";
    canvas.select({"mid"});
    key(kKeyF2);
    key(kKeyBack);
    key(kKeyReturn);
    EXPECT_EQ(master.displayNames.count("mid"), 0u);
}

TEST_F(CanvasEdits, ANodeThatGoesWhileItIsNamedIsNoHarm) {
    canvas.select({"mid"});
    key(kKeyF2);
    type("New");
    engine.deleteNode("mid");
    rebuild();
    key(kKeyReturn);
    EXPECT_EQ(master.displayNames.count("mid"), 0u);
}

TEST_F(CanvasEdits, ESwitchesNodesOffAndOn) {
    canvas.select({"src", "mid"});
    node("src")->disabled = 1;
    key('E');
    EXPECT_NE(node("src")->disabled, 0);
    EXPECT_NE(node("mid")->disabled, 0) << "off while any is on";
    engine.update(0);
    EXPECT_EQ(testNode("mid").processed, 0);
    key('E');
    EXPECT_EQ(node("src")->disabled, 0);
    EXPECT_EQ(node("mid")->disabled, 0);
    canvas.select({});
    move(middle("mid"));
    key('E');
    EXPECT_NE(node("mid")->disabled, 0) << "the one under the pointer without a selection";
}

TEST_F(CanvasEdits, AnOutputIsNotSwitchedOff) {
    canvas.select({"out"});
    key('E');
    EXPECT_EQ(node("out")->disabled, 0);
    EXPECT_EQ(host.status, "An output cannot be switched off");
}

TEST_F(CanvasEdits, ThePaletteOfAButtonElsewhereMakesANodeInTheMiddle) {
    canvas.openPalette(10, 10);
    type("camera");
    key(kKeyReturn);
    EXPECT_EQ(middle("Camera1").x, kLeft + 500);
    EXPECT_EQ(middle("Camera1").y, kTop + 300);
}

TEST_F(CanvasEdits, CancelClosesWhatIsOpen) {
    key(kKeyTab);
    canvas.cancel();
    EXPECT_EQ(master.captured, nullptr);
    canvas.select({"mid"});
    key(kKeyF2);
    type("New");
    canvas.cancel();
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_EQ(master.DisplayNameOf("mid"), "mid");
    press(middle("mid"));
    canvas.cancel();
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_FALSE(box("mid").dragging);
}

TEST_F(CanvasEdits, LArrangesTheBoxes) {
    box("src").SetPosition(kLeft + 100, kTop + 900);
    key('L');
    EXPECT_LT(box("src").y, box("mid").y);
    EXPECT_EQ(host.changes, 1);
    EXPECT_EQ(box("src").x - kLeft, static_cast<int>(host.positions.find("src")->x));
}

}  // namespace
