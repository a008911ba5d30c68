// What tests of the node canvas share: a host that keeps what it is told, and a canvas over a graph
// of plain nodes, played with the events of the window. Without OpenGL.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "editor/ui_master.h"
#include "editor/ui_node.h"
#include "editor/ui_node_canvas.h"
#include "platform/window.h"
#include "support/core_nodes.h"

class FakeCanvasHost : public NodeCanvasHost {
  public:
    explicit FakeCanvasHost(Engine& engine) : engine_(engine) {}

    Engine& graph() override { return engine_; }
    void openProperties(const std::string& id) override {
        opened.push_back(id);
        if (canvasToRebuild != nullptr) canvasToRebuild->rebuildBoxes();
    }
    void nodeGoes(const std::string& id) override {
        EXPECT_NE(engine_.findNode(id), nullptr) << "told too late";
        gone.push_back(id);
    }
    void graphChanged() override { ++changes; }
    void setStatus(std::string_view text) override { status = text; }
    OrderedMap<std::string, Vec2>& nodePositions() override { return positions; }
    bool folded(const std::string& id) const override {
        const bool* fold = folds.find(id);
        return fold != nullptr && *fold;
    }
    void setFolded(const std::string& id, bool fold) override { folds[id] = fold; }
    std::string clipboardText() const override { return clipboard; }
    void setClipboardText(const std::string& text) override { clipboard = text; }

    std::vector<std::string> opened, gone;
    int changes = 0;
    std::string status, clipboard;
    OrderedMap<std::string, Vec2> positions;
    OrderedMap<std::string, bool> folds;
    UI_NodeCanvas* canvasToRebuild = nullptr;  // when values are opened, as a host may do

  private:
    Engine& engine_;
};

inline void Play(UI_Master& master, std::uint32_t message, int x, int y, int value = 0) {
    WindowMessage m;
    m.message = message;
    m.value = value;
    m.x = x;
    m.y = y;
    master.Dispatch(m);
}

// The canvas fills a part of the screen that begins at 100, 200.
class CanvasTest : public ::testing::Test {
  protected:
    static constexpr int kLeft = 100, kTop = 200;

    CanvasTest() : host(engine), canvas(host, kLeft, kTop, 1000, 600) {
        engine.typeNames = {"Node", "Camera", "Output"};
        master.AddTopLevel(&canvas);
    }

    // A node with a place relative to the canvas. Call rebuild after the last.
    void add(const std::string& id, const std::string& type, float x, float y) {
        ASSERT_TRUE(engine.createNode(id, type));
        host.positions[id] = {x, y};
    }
    void rebuild() { canvas.rebuildBoxes(); }
    UI_Node& box(const std::string& id) const { return *canvas.boxOf(id); }
    Node* node(const std::string& id) const { return engine.findNode(id); }
    Node* input(const std::string& id, int port) const { return node(id)->getInput(port); }

    struct Spot {
        int x, y;
    };
    // Places of the screen.
    Spot middle(const std::string& id) const {
        const UI_Node& b = box(id);
        return {canvas.view.screenX(b.x + 80), canvas.view.screenY(b.y + 10)};
    }
    Spot socket(const std::string& id, int port) const {
        const NodeSocket& s = box(id).sockets.at(static_cast<std::size_t>(port));
        return {canvas.view.screenX(s.x), canvas.view.screenY(s.y - 2)};
    }
    Spot output(const std::string& id) const {
        const UI_Node& b = box(id);
        return {canvas.view.screenX(b.x + 80), canvas.view.screenY(b.y + 22)};
    }

    void move(const Spot& at) { Play(master, kMessageMouseMove, at.x, at.y); }
    void press(const Spot& at) {
        move(at);
        Play(master, kMessageLeftDown, at.x, at.y);
    }
    void release(const Spot& at) {
        move(at);
        Play(master, kMessageLeftUp, at.x, at.y);
    }
    void drag(const Spot& from, const Spot& to) {
        press(from);
        release(to);
    }
    void click(const Spot& at) { drag(at, at); }
    void wheel(const Spot& at, int delta) {
        move(at);
        Play(master, kMessageWheel, at.x, at.y, delta);
    }
    void doubleClick(const Spot& at) {
        click(at);
        Play(master, kMessageLeftDoubleClick, at.x, at.y);
        Play(master, kMessageLeftUp, at.x, at.y);
    }
    void key(int code) { Play(master, kMessageKeyDown, 0, 0, code); }
    void keyUp(int code) { Play(master, kMessageKeyUp, 0, 0, code); }
    void ctrl(int code) {
        key(kKeyControl);
        key(code);
        keyUp(kKeyControl);
    }
    void type(const std::string& text) {
        for (const char c : text) Play(master, kMessageCharacter, 0, 0, c);
    }

    UI_Master master;
    TestEngine engine;
    FakeCanvasHost host;
    UI_NodeCanvas canvas;
};
