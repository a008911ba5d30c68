// The canvas on which the graph is seen and edited: a box for each node, links as curves from a
// box's output to the sockets of others. It pans and zooms, selects, moves, links, cuts, copies,
// names and folds, and makes nodes through its palette. Boxes follow the graph: every edit goes
// through the engine first. Main thread; drawing needs the OpenGL context, everything else does not
// unless a node's own construction does.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "editor/canvas_view.h"
#include "editor/node_canvas_host.h"
#include "editor/ui_object.h"

class Node;
class NodeTypeCatalog;
class UI_NameField;
class UI_Node;
class UI_NodePalette;
class LinkCurve;
struct GraphClip;
struct NodeSocket;

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
    // Lays all nodes out in rows, sources above what they feed, and shows them all: for a project
    // that comes without positions.
    void arrange();
    // Does that for the hand; a second time, when nothing has moved since, it puts the boxes back
    // to where they were.
    void arrangeOrPutBack();

    UI_Node* boxOf(const std::string& id) const;  // null when there is none
    // In the order of adding, which is also that of their numbers.
    const std::vector<std::unique_ptr<UI_Node>>& boxes() const { return boxes_; }

    // --- what is seen and chosen
    void frameAll();
    void frameSelection();  // everything when nothing is selected
    // Opens the palette with its corner at a place of the screen. The node comes to lie there, or
    // in the middle of the canvas when that place is not on it.
    void openPalette(int screenX, int screenY);
    // Ends every gesture, and closes the palette and the name field: for a screen that changes.
    void cancel();
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
    void SetMaster(UI_Master* newMaster) override;

    CanvasView view;
    NodeCanvasHost& host;

  private:
    static constexpr float kCopyShift = 30;  // pixels of the canvas, of a box beside another

    enum class Gesture { None, Pan, RubberBand, DragLink, Knife };
    enum class Part { None, Body, Socket, Output };
    // What is under the pointer. Good until the boxes change.
    struct Hit {
        UI_Node* box = nullptr;
        Part part = Part::None;
        int input = -1;
    };
    // A link that follows the pointer, from the source's output or from the target's socket; the
    // other id is empty, unless a link was taken off its socket. Ids, since nodes may go meanwhile.
    struct LinkDrag {
        std::string source, target;
        int port = 0;
        bool fromOutput = true;
        bool takenOff = false;
    };
    struct DragStart {
        UI_Node* box;
        int x, y;
    };

    using Places = std::map<std::string, std::pair<int, int>>;  // by id, relative to the canvas

    // Boxes
    Places placesOfBoxes() const;
    bool isAsArranged() const;
    // The place relative to the canvas, or one beside it where another box has that exact place.
    Vec2 freePlace(Vec2 place) const;
    void linkBoxes();
    void applyFolds();
    void applySelection();
    void updateLayout();
    void frameBoxes(bool onlySelected);
    std::string titleOf(const std::string& id) const;

    // Drawing
    void drawGrid();
    void drawLinks();
    void drawLink(const UI_Node& box, const NodeSocket& socket);
    void drawCurve(const LinkCurve& curve, const Vec4& color, float lineWidth);
    void drawDashes(const LinkCurve& curve, const Vec4& color, float lineWidth, float dashShift);
    void drawBoxes();
    void drawSockets(const UI_Node& box);
    void drawMarks(const UI_Node& box);
    void drawGesture();
    void drawHoverName();
    void drawFault(const UI_Node& box);
    void drawHint();
    bool isVisible(const UI_Node& box) const;
    bool isStressed(const UI_Node& box) const;
    bool wouldTake(const UI_Node& box, int input) const;
    bool wouldFeed(const UI_Node& box) const;
    Vec2 outputPlace(const UI_Node& box) const;  // screen
    Vec2 socketPlace(const UI_Node& box, int input) const;

    // Gestures
    Hit hitAt(int pixelX, int pixelY) const;
    bool handleFree(UI_Event* event);
    bool handlePress(UI_Event* event);
    bool handleRightPress(UI_Event* event);
    bool pressBox(UI_Node& box, UI_Event* event);
    void handleGesture(const UI_Event& event);
    void endGesture();
    bool start(Gesture gesture, const UI_Event& event);
    void hover(const UI_Event& event);
    void forgetHover();
    bool isPointed() const;
    void tellHover(const Hit& hit);
    void tellLinkDrag(const Hit& hit);
    void selectBand(const UI_Event& event);
    bool isHome(const Hit& hit) const;
    void dropLink(const UI_Event& event);
    void cutAlongKnife();
    bool handleKey(const UI_Event& event);
    bool handleCtrlKey(const UI_Event& event);
    void beginRename(const std::string& id);
    void tell(std::string_view text);

    // Edits
    void makeNode(const std::string& typeName);
    void beginAfresh(const std::string& id);
    void link(const std::string& sourceId, const std::string& targetId, int port);
    void cut(const std::vector<std::pair<std::string, int>>& links);
    void relink();  // after links of the graph have changed
    void deleteSelection();
    void copySelection();
    void paste();
    void duplicate();
    void pasteClip(const GraphClip& clip, const Vec2& shift);
    GraphClip clipOfSelection();
    void toggleDisabled();
    void toggleFold();
    void rename(const std::string& id, const std::string& name);
    void openPaletteFor(int screenX, int screenY, const LinkDrag& drag);
    std::vector<std::string> selectedIds() const;  // in the order of the boxes
    // The selected nodes, or the one under the pointer when none is selected.
    std::vector<std::string> meantIds() const;

    std::vector<std::unique_ptr<UI_Node>> boxes_;
    std::unordered_map<std::string, UI_Node*> boxById_;
    // Boxes may be cleared while one of them handles an event: they die at the next occasion.
    std::vector<std::unique_ptr<UI_Node>> retired_;
    int eventDepth_ = 0;
    std::int32_t nextNumber_ = 0;

    std::set<std::string> selection_;  // node ids
    std::set<std::string> bandBase_;   // what was selected before the rubber band
    Gesture gesture_ = Gesture::None;
    LinkDrag linkDrag_;
    LinkDrag paletteLink_;  // what a node from the palette is linked with
    int startX_ = 0, startY_ = 0, pointerX_ = 0, pointerY_ = 0;  // screen
    Vec2 newNodePlace_;                                          // canvas
    std::vector<DragStart> dragStarts_;
    bool dragged_ = false;
    Places beforeArranging_, arranged_;  // for the way back
    Hit hover_;
    std::string status_;
    std::unique_ptr<NodeTypeCatalog> catalog_;
    std::unique_ptr<UI_NodePalette> palette_;
    std::unique_ptr<UI_NameField> nameField_;
};
