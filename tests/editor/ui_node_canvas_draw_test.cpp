// What the canvas shows, compared with the numbers of boxes and links.
#include <gmock/gmock.h>

#include "canvas_fixture.h"
#include "editor/ui_node_palette.h"
#include "ui_fixture.h"

namespace {

constexpr Vec4 kOutside = {0.25f, 0.5f, 0.125f, 1};
constexpr Vec4 kBright = {1, 0.7f, 0, 1};

// The canvas lies at 20, 30 and is 360 by 240 pixels.
class CanvasPictures : public UiTest {
  protected:
    CanvasPictures() : host(engine), canvas(host, 20, 30, 360, 240) {
        engine.typeNames = {"Node", "Camera", "Output"};
    }
    void SetUp() override {
        UiTest::SetUp();
        useSize(400, 300);
        master.AddTopLevel(&canvas);
    }
    void add(const std::string& id, const std::string& type, float x, float y) {
        ASSERT_TRUE(engine.createNode(id, type));
        host.positions[id] = {x, y};
    }
    Picture draw() {
        begin(kOutside);
        master.DrawAll();
        return end();
    }
    static bool alike(const Vec4& a, const Vec4& b) { return Difference(a, b) < 0.01; }
    const UI_Node& box(const std::string& id) const { return *canvas.boxOf(id); }

    TestEngine engine;
    FakeCanvasHost host;
    UI_NodeCanvas canvas;
};

TEST_F(CanvasPictures, ABoxAtZoomOneIsTheBoxItselfAlsoInADrag) {
    add("Glow1", "Camera", 100, 100);
    canvas.rebuildBoxes();
    canvas.view.shift = {7, -9};
    UI_Node lone(&master, nullptr, "Glow1", 20 + 100 + 7, 30 + 100 - 9, 0);
    begin(kOutside);
    lone.Draw();
    const Picture expected = end();
    const auto expectLone = [&](const Picture& picture, int leaveOut) {
        for (int y = lone.y + leaveOut; y < lone.y + 20 - leaveOut; ++y) {
            for (int x = lone.x + leaveOut; x < lone.x + 160 - leaveOut; ++x) {
                ASSERT_LT(Difference(picture.at(x, y), expected.at(x, y)), kBlendTolerance)
                    << x << ", " << y;
            }
        }
    };
    expectLone(draw(), 0);
    Play(master, kMessageLeftDown, lone.x + 50, lone.y + 10);
    ASSERT_EQ(master.captured, canvas.boxOf("Glow1"));
    expectLone(draw(), 1);  // but for the outline of what is selected
}

TEST_F(CanvasPictures, NothingIsDrawnOutsideTheCanvas) {
    add("a", "Node", -80, -10);
    add("b", "Output", 300, 225);
    engine.connect("a", "b", 0);
    canvas.rebuildBoxes();
    const Picture picture = draw();
    for (int y = 0; y < 300; ++y) {
        for (int x = 0; x < 400; ++x) {
            const bool inside = x >= 19 && x <= 380 && y >= 30 && y <= 270;
            ASSERT_TRUE(inside || alike(picture.at(x, y), kOutside)) << x << ", " << y;
        }
    }
    EXPECT_TRUE(alike(picture.at(90, 38), UI_Node::ColorOfId("a")));
}

TEST_F(CanvasPictures, ABoxInADragStaysInsideTheCanvasToo) {
    add("a", "Node", 100, 100);
    canvas.rebuildBoxes();
    Play(master, kMessageLeftDown, 190, 135);
    Play(master, kMessageMouseMove, 190, 285);
    ASSERT_EQ(master.captured, canvas.boxOf("a"));
    const Picture picture = draw();
    EXPECT_TRUE(alike(picture.at(190, 285), kOutside));
    Play(master, kMessageMouseMove, 190, 255);
    EXPECT_TRUE(alike(draw().at(270, 255), UI_Node::ColorOfId("a")));
    Play(master, kMessageLeftUp, 190, 255);
}

TEST_F(CanvasPictures, AHiddenCanvasDrawsNothingAndEndsDrags) {
    add("a", "Node", 100, 100);
    canvas.rebuildBoxes();
    Play(master, kMessageLeftDown, 190, 135);
    canvas.hidden = true;
    const Picture picture = draw();
    EXPECT_EQ(master.captured, nullptr);
    for (int y = 0; y < 300; ++y) {
        for (int x = 0; x < 400; ++x) ASSERT_TRUE(alike(picture.at(x, y), kOutside));
    }
}

TEST_F(CanvasPictures, ALinkHasTheColourOfItsSource) {
    add("a", "Node", 100, 20);
    add("out", "Output", 100, 180);
    engine.connect("a", "out", 0);
    canvas.rebuildBoxes();
    const Picture picture = draw();
    // From the middle of the one box straight down to the socket of the other.
    for (int y = 80; y < 200; ++y) {
        ASSERT_TRUE(alike(picture.at(199, y), UI_Node::ColorOfId("a"))) << y;
        ASSERT_FALSE(alike(picture.at(205, y), UI_Node::ColorOfId("a"))) << y;
    }
}

TEST_F(CanvasPictures, ALinkHasNoSteps) {
    add("a", "Node", 20, 20);
    add("out", "Output", 160, 180);
    engine.connect("a", "out", 0);
    canvas.rebuildBoxes();
    const Vec4 color = UI_Node::ColorOfId("a");
    const Picture picture = draw();
    // How much of a row the link covers. Hard edges make it jump by whole pixels.
    const auto covered = [&](int y) {
        float sum = 0;
        for (int x = 120; x < 270; ++x) {
            const Vec4& ground = picture.at(310, y);
            const float part = (picture.at(x, y).r - ground.r) / (color.r - ground.r);
            if (part > 0.1f) sum += part;  // the grid is fainter
        }
        return sum;
    };
    for (int y = 90; y < 190; ++y) {
        ASSERT_GT(covered(y), 1.5f) << y;
        ASSERT_LT(std::fabs(covered(y + 1) - covered(y)), 0.45f) << y;
    }
}

TEST_F(CanvasPictures, AFeedbackLinkIsDashed) {
    add("a", "Node", 100, 20);
    add("b", "Node", 68, 180);
    add("out", "Output", 1000, 1000);
    engine.connect("a", "b", 2);  // the third socket: straight below the output of a
    engine.connect("b", "out", 0);
    engine.connect("b", "a", 0);
    canvas.rebuildBoxes();
    ASSERT_EQ(box("b").sockets[2].x, box("a").x + 80);
    const auto coloured = [&](const Picture& picture, const Vec4& color) {
        int count = 0;
        for (int y = 80; y < 200; ++y) count += alike(picture.at(199, y), color) ? 1 : 0;
        return count;
    };
    EXPECT_EQ(coloured(draw(), UI_Node::ColorOfId("a")), 120) << "one that is no feedback";
    engine.deleteNode("out");
    engine.disconnect("a", 0);
    engine.makeOutput("out");
    engine.connect("a", "out", 0);
    engine.connect("b", "a", 0);
    canvas.rebuildBoxes();
    canvas.layoutDirty = true;
    // Seen from the output, the link from a to b now leads back.
    const int dashed = coloured(draw(), UI_Node::ColorOfId("a"));
    EXPECT_GT(dashed, 40);
    EXPECT_LT(dashed, 90);
}

TEST_F(CanvasPictures, SocketsThatTakeALinkLightUpWhileItIsDragged) {
    add("a", "Node", 20, 20);
    add("cam", "Camera", 200, 20);
    add("out", "Output", 100, 180);
    canvas.rebuildBoxes();
    const int x = box("out").sockets[0].x, y = box("out").y - 3;
    EXPECT_FALSE(alike(draw().at(x, y), kBright));
    Play(master, kMessageLeftDown, 20 + 20 + 80, 30 + 20 + 22);
    Play(master, kMessageMouseMove, 300, 150);
    EXPECT_TRUE(alike(draw().at(x, y), kBright));
    Play(master, kMessageKeyDown, 0, 0, kKeyEscape);
    Play(master, kMessageLeftDown, 20 + 200 + 80, 30 + 20 + 22);
    Play(master, kMessageMouseMove, 300, 150);
    EXPECT_FALSE(alike(draw().at(x, y), kBright)) << "no camera";
    Play(master, kMessageKeyDown, 0, 0, kKeyEscape);
    EXPECT_FALSE(alike(draw().at(x, y), kBright));
}

TEST_F(CanvasPictures, ASocketUnderThePointerTellsItsName) {
    add("out", "Output", 100, 180);
    canvas.rebuildBoxes();
    engine.findNode("out")->inputNames[0] = "Picture";
    canvas.rebuildBoxes();
    const auto lightPixels = [](const Picture& picture) {
        int count = 0;
        for (int y = 170; y < 205; ++y) {
            for (int x = 205; x < 300; ++x) count += picture.at(x, y).b > 0.5f ? 1 : 0;
        }
        return count;
    };
    EXPECT_EQ(lightPixels(draw()), 0);
    Play(master, kMessageMouseMove, box("out").sockets[0].x, box("out").y - 3);
    EXPECT_GT(lightPixels(draw()), 20);
}

TEST_F(CanvasPictures, TheNameOfASocketGoesWithThePointer) {
    add("out", "Output", 100, 180);
    canvas.rebuildBoxes();
    engine.findNode("out")->inputNames[0] = "Picture";
    canvas.rebuildBoxes();
    const Picture before = draw();
    const auto overSocket = [this] {
        Play(master, kMessageMouseMove, box("out").sockets[0].x, box("out").y - 3);
        return draw();
    };
    const auto differs = [&](const Picture& picture) {
        for (int y = 30; y < 270; ++y) {
            for (int x = 20; x < 380; ++x) {
                if (!alike(picture.at(x, y), before.at(x, y))) return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(differs(overSocket()));
    Play(master, kMessageMouseMove, 5, 5);
    EXPECT_FALSE(differs(draw())) << "the pointer is outside of the canvas";
    EXPECT_TRUE(differs(overSocket()));
    UI_Node other(&master, nullptr, "other", 0, 0, 0);
    master.captured = &other;
    EXPECT_FALSE(differs(draw())) << "another widget has the mouse";
    master.captured = nullptr;
}

TEST_F(CanvasPictures, SocketsThatTakeALinkLightUpAtEveryZoom) {
    add("a", "Node", 20, 20);
    add("out", "Output", 500, 600);
    canvas.rebuildBoxes();
    canvas.view.zoom = 0.15f;
    canvas.view.shift = {100, 100};
    const int x = canvas.view.screenX(box("out").sockets[0].x);
    const int y = canvas.view.screenY(box("out").y) - 2;
    EXPECT_FALSE(alike(draw().at(x, y), kBright));
    Play(master, kMessageLeftDown, canvas.view.screenX(box("a").x + 80),
         canvas.view.screenY(box("a").y + 24));
    Play(master, kMessageMouseMove, 350, 150);
    ASSERT_EQ(master.captured, &canvas);
    EXPECT_TRUE(alike(draw().at(x, y), kBright));
    Play(master, kMessageKeyDown, 0, 0, kKeyEscape);
    EXPECT_FALSE(alike(draw().at(x, y), kBright));
}

TEST_F(CanvasPictures, OutputsLightUpWhileALinkIsDraggedBackFromAnInput) {
    add("a", "Node", 20, 20);
    add("cam", "Camera", 200, 20);
    add("out", "Output", 100, 180);
    canvas.rebuildBoxes();
    const auto lit = [&](const char* id) {
        return alike(draw().at(box(id).x + 80, box(id).y + 21), kBright);
    };
    EXPECT_FALSE(lit("a"));
    Play(master, kMessageLeftDown, box("out").sockets[0].x, box("out").y - 2);
    Play(master, kMessageMouseMove, 300, 150);
    EXPECT_TRUE(lit("a"));
    EXPECT_FALSE(lit("cam")) << "no picture";
    Play(master, kMessageKeyDown, 0, 0, kKeyEscape);
    EXPECT_FALSE(lit("a"));
}

TEST_F(CanvasPictures, ABoxThatIsSwitchedOffKeepsItsBarInADrag) {
    add("a", "Camera", 100, 100);
    canvas.rebuildBoxes();
    engine.findNode("a")->disabled = 1;
    const Picture before = draw();
    Play(master, kMessageLeftDown, 190, 135);
    Play(master, kMessageMouseMove, 170, 125);
    ASSERT_EQ(master.captured, canvas.boxOf("a"));
    const Picture held = draw();
    EXPECT_TRUE(alike(held.at(250, 130), before.at(270, 140))) << "the bar";
    EXPECT_TRUE(alike(held.at(250, 135), before.at(270, 145))) << "the veil";
    EXPECT_GT(held.at(250, 130).r, 0.8f);
}

TEST_F(CanvasPictures, AnErrorThatComesUpLaterIsSeen) {
    add("a", "Camera", 100, 100);
    canvas.rebuildBoxes();
    EXPECT_FALSE(alike(draw().at(120, 136), {1, 0, 0, 1}));
    engine.findNode("a")->hasError = true;
    EXPECT_TRUE(alike(draw().at(120, 136), {1, 0, 0, 1}));
}

TEST_F(CanvasPictures, ANodeThatIsSwitchedOffHasABar) {
    add("a", "Camera", 100, 100);
    canvas.rebuildBoxes();
    const Vec4 on = draw().at(270, 140);
    engine.findNode("a")->disabled = 1;
    const Vec4 off = draw().at(270, 140);
    EXPECT_GT(off.r, 0.8f);
    EXPECT_FALSE(alike(on, off));
}

TEST_F(CanvasPictures, ANodeThatWentWithoutARebuildIsNoHarm) {
    add("a", "Node", 100, 20);
    add("out", "Output", 100, 180);
    engine.connect("a", "out", 0);
    canvas.rebuildBoxes();
    engine.deleteNode("a");
    draw();
    Play(master, kMessageLeftDown, 200, 60);
    Play(master, kMessageMouseMove, 220, 80);
    Play(master, kMessageLeftUp, 220, 80);
    Play(master, kMessageKeyDown, 0, 0, kKeyDelete);
    EXPECT_EQ(canvas.boxOf("a"), nullptr);
}

TEST_F(CanvasPictures, ThousandsOfBoxesAreOneDrawCall) {
    for (int i = 0; i < 2000; ++i) {
        const std::string id = "n" + std::to_string(i);
        add(id, "Node", static_cast<float>(i % 40) * 184, static_cast<float>(i / 40) * 60);
        if (i >= 40) engine.connect("n" + std::to_string(i - 40), id, 1);
    }
    canvas.rebuildBoxes();
    draw();
    EXPECT_EQ(master.drawCalls(), 1) << "a few of them, near";
    canvas.frameAll();
    draw();
    EXPECT_LE(master.drawCalls(), 2) << "all of them, far away";
}

TEST_F(CanvasPictures, ThePaletteAndTheNameFieldAreDrawnOnTop) {
    add("a", "Node", 100, 100);
    canvas.rebuildBoxes();
    canvas.openPalette(30, 40);
    const auto* palette = dynamic_cast<const UI_NodePalette*>(master.captured);
    ASSERT_NE(palette, nullptr);
    const Picture picture = draw();
    EXPECT_TRUE(alike(picture.at(palette->x + 100, palette->y), kBright)) << "its frame";
    EXPECT_TRUE(alike(picture.at(palette->x + 2, palette->y + 8), {0.1f, 0.1f, 0.1f, 1}));
    Play(master, kMessageKeyDown, 0, 0, kKeyEscape);
    canvas.select({"a"});
    Play(master, kMessageMouseMove, 200, 250);
    Play(master, kMessageKeyDown, 0, 0, kKeyF2);
    EXPECT_TRUE(alike(draw().at(270, 140), {0.25f, 0.25f, 0.25f, 1}));
    Play(master, kMessageKeyDown, 0, 0, kKeyEscape);
}

}  // namespace
