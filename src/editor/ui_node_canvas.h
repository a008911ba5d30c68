// The canvas on which the graph is seen and edited: a box for each node, links as curves from a
// box's output to the sockets of others. It pans and zooms, selects, moves, links, cuts, copies,
// names and folds, and makes nodes through its palette. Boxes follow the graph: every edit goes
// through the engine first. Main thread; drawing needs the OpenGL context, everything else does not
// unless a node's own construction does.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "editor/canvas_view.h"
#include "editor/node_canvas_host.h"
#include "editor/ui_object.h"

class Node;
class UI_Node;
class UI_NodePalette;

class UI_NodeCanvas : public UI_Object, public UI_Evt_ValueChanged {
  public:
    // `canvasHost` must outlive the canvas. Places of the screen, pixels.
    UI_NodeCanvas(NodeCanvasHost& canvasHost, int canvasX, int canvasY, int canvasWidth,
                  int canvasHeight);
    ~UI_NodeCanvas() override;

    // --- boxes
    void ClearBoxes();
    // Takes the box over, and moves it by the canvas's position.
    void AddBox(UI_Node* box);
    // Nothing happens unless both boxes are on the canvas and the target has such an empty slot.
    void ConnectBoxes(UI_Node* from, UI_Node* to, int input);
    // Writes the boxes' places for the side-file: x as it is, y relative to the canvas.
    void CapturePositions();
    // Writes them relative to the canvas in both directions, for a rebuild.
    void capturePlaces();
    // Clears the boxes and makes one for each node of the graph, at the host's positions, links
    // them, and folds what the host says is folded. Call it after everything that changes the graph
    // elsewhere; the canvas's own edits call it themselves.
    void rebuildBoxes();
    // Lays all nodes out in columns, outputs on the right, sources on the left, for a project that
    // comes without positions.
    void arrange();

    UI_Node* boxOf(const std::string& id) const;  // null when there is none
    // In the order of adding, which is also that of their numbers.
    const std::vector<std::unique_ptr<UI_Node>>& boxes() const { return boxes_; }

    // --- what is seen and chosen
    void frameAll();
    void frameSelection();  // everything when nothing is selected
    // Opens the palette with its corner at a place of the screen; the node comes to lie there.
    void openPalette(int screenX, int screenY);
    const std::set<std::string>& selection() const { return selection_; }
    void select(std::set<std::string> ids);

    bool hidden = false;  // neither drawn nor edited
    bool layoutDirty = true;

    // --- widget
    void Draw() override;
    bool HandleEvent(UI_Event* event) override;
    void SetPosition(int newX, int newY) override;  // takes the boxes along
    void OnValueEdited(UI_Object* sender) override;
    void OnCommand(UI_Object* sender, int argument) override;

    CanvasView view;
    NodeCanvasHost& host;

  private:
    std::vector<std::unique_ptr<UI_Node>> boxes_;
    std::set<std::string> selection_;  // node ids
};
