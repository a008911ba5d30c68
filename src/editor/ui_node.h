// The box of one graph node on the canvas: its name in a colour of its own, dragged with the left
// button, its values opened with the right one. Its place is on the canvas; the view says where
// that is on the screen. Links and sockets are drawn by the canvas. Main thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/ui_object.h"
#include "gpu/math_types.h"

class NodeCanvasHost;
struct CanvasView;

// Where an input is, on the canvas.
struct NodeSocket {
    std::int32_t x = 0, y = 0;
    std::int32_t input = 0;
    bool feedback = false;  // its link closes a cycle
};
static_assert(sizeof(NodeSocket) == 16);

class UI_Node : public UI_Object {
  public:
    static constexpr int kWidth = 160, kHeight = 20;  // pixels

    // What a box tells its listener through OnCommand: that it was dragged to another place, and
    // that it was let go.
    enum Command : int { kDragged = 1, kLetGo = 2 };

    // `newHost` may be null: then nothing opens. The count of inputs may be anything.
    UI_Node(UI_Master* newMaster, NodeCanvasHost* newHost, std::string nodeId, int boxX, int boxY,
            int newInputCount);

    void Draw() override;
    int GetHeight() const override { return kHeight; }
    // Events have places of the screen.
    bool HandleEvent(UI_Event* event) override;
    void SetPosition(int newX, int newY) override;  // takes the sockets along

    // Of length 0.75, by the bytes of the id; an empty id is grey.
    static Vec4 ColorOfId(const std::string& id);
    // Puts the sockets in a line above the box, in its middle.
    void layoutSockets();
    void setEnabled(bool nowEnabled);  // a box that is not ends its drag
    void endDrag();
    // Lets go of everything outside, for a box that is to be deleted later.
    void retire();

    bool open = true;  // false: the subtree behind is folded
    std::string id;
    Vec4 color;
    int inputCount;
    int hoverInput = -1;
    int lastMouseX = 0, lastMouseY = 0;  // on the canvas
    std::vector<std::string> inputNames;
    std::vector<UI_Node*> inputLinks;  // null where there is no link; same canvas
    float dashShift = 0;               // pixels by which the dashes of feedback links have moved
    float linkAlpha = 1;               // of the links into this box
    bool enabled = true;               // false inside a folded subtree: drawn, but takes no input
    bool dragging = false;
    int dragOffsetX = 0, dragOffsetY = 0;
    bool error = false;
    bool switchedOff = false;  // drawn with a bar across
    bool hasOutput = true;     // an output's box feeds nothing
    NodeCanvasHost* host;      // not owned
    std::vector<NodeSocket> sockets;
    std::int32_t number = 0;           // in order of adding
    const CanvasView* view = nullptr;  // not owned; null: the canvas is the screen
    const UI_Object* area = nullptr;  // what is drawn stays inside of it while dragged; may be null

  private:
    void drawBox();
    void drawTitle(const struct BoxOnScreen& box);
    void drawBar(const struct BoxOnScreen& box);
    bool handleDrag(const UI_Event& event);
};
