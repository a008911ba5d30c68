// The gestures of the canvas.
#include <algorithm>
#include <cmath>

#include "core/engine.h"
#include "editor/graph_edit.h"
#include "editor/link_curve.h"
#include "editor/node_type_catalog.h"
#include "editor/ui_master.h"
#include "editor/ui_name_field.h"
#include "editor/ui_node.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_node_palette.h"
#include "platform/window.h"

namespace {

constexpr int kSocketReach = 9;    // pixels of the canvas, about a socket or an output
constexpr int kOutputReach = 14;   // to both sides
constexpr float kZoomStep = 1.1f;  // a notch of the wheel
constexpr float kLeastDrag = 3;    // pixels of the screen; a hand trembles
constexpr float kFurthestShift = 5000000;

Vec2 PixelOf(const UI_Event& event) {
    return {static_cast<float>(event.x), static_cast<float>(event.y)};
}

}  // namespace

UI_NodeCanvas::Hit UI_NodeCanvas::hitAt(int pixelX, int pixelY) const {
    const Vec2 place = view.toCanvas({static_cast<float>(pixelX), static_cast<float>(pixelY)});
    const int px = static_cast<int>(std::floor(place.x));
    const int py = static_cast<int>(std::floor(place.y));
    for (auto it = boxes_.rbegin(); it != boxes_.rend(); ++it) {
        UI_Node& box = **it;
        const bool above = py >= box.y - kSocketReach && py <= box.y + 2;
        for (std::size_t i = 0; above && box.enabled && i < box.sockets.size(); ++i) {
            const int away = std::abs(px - box.sockets[i].x);
            const int pitch =
                box.sockets.size() > 1 ? (box.sockets[1].x - box.sockets[0].x) / 2 : kSocketReach;
            if (away <= std::min(pitch, kSocketReach)) {
                return {&box, Part::Socket, static_cast<int>(i)};
            }
        }
        const int bottom = box.y + box.height;
        if (box.hasOutput && box.enabled && py > bottom - 3 && py <= bottom + kSocketReach &&
            std::abs(px - box.x - box.width / 2) <= kOutputReach) {
            return {&box, Part::Output, -1};
        }
        if (box.Contains(px, py)) return {&box, Part::Body, -1};
    }
    return {};
}

bool UI_NodeCanvas::HandleEvent(UI_Event* event) {
    if (hidden) {
        cancel();
        return false;
    }
    if (eventDepth_ == 0) retired_.clear();
    ++eventDepth_;
    pointerX_ = event->x;
    pointerY_ = event->y;
    bool consumed = true;
    if (gesture_ != Gesture::None) {
        handleGesture(*event);
    } else {
        consumed = handleFree(event);
    }
    --eventDepth_;
    return consumed;
}

bool UI_NodeCanvas::handleFree(UI_Event* event) {
    switch (event->type) {
        case UI_EventType::MouseMove:
            hover(*event);
            return false;
        case UI_EventType::LeftDown:
        case UI_EventType::LeftDoubleClick:
            return handlePress(event);
        case UI_EventType::LeftUp: {
            const Hit hit = hitAt(event->x, event->y);
            return hit.part == Part::Body && hit.box->HandleEvent(event);
        }
        case UI_EventType::RightDown:
            return handleRightPress(event);
        case UI_EventType::MiddleDown:
            return start(Gesture::Pan, *event);
        case UI_EventType::Wheel:
            if (event->value != 0) {
                const float notches = static_cast<float>(event->value) / kWheelNotch;
                view.zoomAbout(PixelOf(*event), std::pow(kZoomStep, notches));
            }
            return true;
        case UI_EventType::KeyDown:
            return Contains(event->x, event->y) && handleKey(*event);
        default:
            return false;
    }
}

// Takes the capture, so that the gesture goes on outside the canvas.
bool UI_NodeCanvas::start(Gesture gesture, const UI_Event& event) {
    if (!takeCapture(true)) return false;
    gesture_ = gesture;
    startX_ = event.x;
    startY_ = event.y;
    forgetHover();
    return true;
}

void UI_NodeCanvas::endGesture() {
    gesture_ = Gesture::None;
    linkDrag_ = {};
    releaseCapture();
}

void UI_NodeCanvas::cancel() {
    endGesture();
    for (const auto& box : boxes_) {
        if (box->dragging) box->endDrag();
    }
    dragStarts_.clear();
    palette_->close();
    nameField_->close();
}

bool UI_NodeCanvas::handlePress(UI_Event* event) {
    const Hit hit = hitAt(event->x, event->y);
    if (hit.box == nullptr) {
        bandBase_ = master->shiftKeyDown() ? selection_ : std::set<std::string>();
        if (!start(Gesture::RubberBand, *event)) return false;
        select(bandBase_);
        return true;
    }
    if (hit.part == Part::Body) return pressBox(*hit.box, event);
    if (!start(Gesture::DragLink, *event)) return false;
    linkDrag_ = {};
    if (hit.part == Part::Output) {
        linkDrag_.source = hit.box->id;
        return true;
    }
    linkDrag_.target = hit.box->id;
    linkDrag_.port = hit.input;
    const UI_Node* linked = hit.box->inputLinks[static_cast<std::size_t>(hit.input)];
    linkDrag_.fromOutput = linkDrag_.takenOff = linked != nullptr;
    if (linked != nullptr) linkDrag_.source = linked->id;
    return true;
}

bool UI_NodeCanvas::pressBox(UI_Node& box, UI_Event* event) {
    if (!box.enabled) {
        tell("This box belongs to a folded part of the graph. H on the box at its end unfolds it.");
        return true;
    }
    if (event->type == UI_EventType::LeftDoubleClick) {
        beginRename(box.id);
        return true;
    }
    if (master->shiftKeyDown() || event->ctrl) {
        if (selection_.erase(box.id) == 0) selection_.insert(box.id);
        applySelection();
        return true;
    }
    if (!selection_.contains(box.id)) select({box.id});
    const std::set<LinkEnd> feedback = FeedbackLinks(host.graph());
    std::set<std::string> moving = selection_;
    for (const std::string& id : selection_) {
        if (!host.folded(id)) continue;  // a folded part goes along
        for (std::string& behind : NodesBehind(host.graph(), id, feedback)) {
            moving.insert(std::move(behind));
        }
    }
    dragStarts_.clear();
    for (const std::string& id : moving) {
        if (UI_Node* other = boxOf(id)) dragStarts_.push_back({other, other->x, other->y});
    }
    dragged_ = false;
    return box.HandleEvent(event);
}

void UI_NodeCanvas::OnValueEdited(UI_Object* /*sender*/) {
    // A button that went down elsewhere came up over a box: nothing to do.
}

void UI_NodeCanvas::OnCommand(UI_Object* sender, int argument) {
    const auto isSender = [sender](const DragStart& start) { return start.box == sender; };
    const auto held = std::find_if(dragStarts_.begin(), dragStarts_.end(), isSender);
    if (held == dragStarts_.end()) return;
    const int dx = sender->x - held->x, dy = sender->y - held->y;
    if (argument == UI_Node::kDragged) {
        const float away = static_cast<float>(std::max(std::abs(dx), std::abs(dy)));
        dragged_ = dragged_ || away * view.zoom >= kLeastDrag;
        if (!dragged_) sender->SetPosition(held->x, held->y);
        for (const DragStart& start : dragStarts_) {
            if (dragged_ && start.box != sender) start.box->SetPosition(start.x + dx, start.y + dy);
        }
    } else if (argument == UI_Node::kLetGo) {
        dragStarts_.clear();
        if (!dragged_) {
            select({static_cast<UI_Node*>(sender)->id});
            return;
        }
        capturePlaces();
        host.graphChanged();
    }
}

bool UI_NodeCanvas::handleRightPress(UI_Event* event) {
    if (event->ctrl) return start(Gesture::Knife, *event);
    const Hit hit = hitAt(event->x, event->y);
    if (hit.box == nullptr) {
        openPalette(event->x, event->y);
    } else {
        hit.box->HandleEvent(event);  // opens the values; what is folded stays silent
    }
    return true;
}

void UI_NodeCanvas::handleGesture(const UI_Event& event) {
    if (event.type == UI_EventType::KeyDown && event.value == kKeyEscape) {
        if (gesture_ == Gesture::RubberBand) select(bandBase_);
        endGesture();
        tell("");
        return;
    }
    switch (gesture_) {
        case Gesture::Pan:
            if (event.type == UI_EventType::MouseMove) {
                const auto clampShift = [](float shift) {
                    return std::clamp(shift, -kFurthestShift, kFurthestShift);
                };
                view.shift = {clampShift(view.shift.x + static_cast<float>(event.x - startX_)),
                              clampShift(view.shift.y + static_cast<float>(event.y - startY_))};
                startX_ = event.x;
                startY_ = event.y;
            }
            if (event.type == UI_EventType::MiddleUp) endGesture();
            break;
        case Gesture::RubberBand:
            if (event.type == UI_EventType::MouseMove) selectBand(event);
            if (event.type == UI_EventType::LeftUp) endGesture();
            break;
        case Gesture::DragLink:
            if (event.type == UI_EventType::MouseMove) tellLinkDrag(hitAt(event.x, event.y));
            if (event.type == UI_EventType::LeftUp) dropLink(event);
            break;
        case Gesture::Knife:
            if (event.type == UI_EventType::MouseMove)
                tell("Let go to cut the links under the line");
            if (event.type == UI_EventType::RightUp) cutAlongKnife();
            break;
        case Gesture::None:
            break;
    }
}

void UI_NodeCanvas::selectBand(const UI_Event& event) {
    const Vec2 a = view.toCanvas({static_cast<float>(std::min(startX_, event.x)),
                                  static_cast<float>(std::min(startY_, event.y))});
    const Vec2 b = view.toCanvas({static_cast<float>(std::max(startX_, event.x)),
                                  static_cast<float>(std::max(startY_, event.y))});
    std::set<std::string> ids = bandBase_;
    for (const auto& box : boxes_) {
        const auto left = static_cast<float>(box->x), top = static_cast<float>(box->y);
        const bool touched = left <= b.x && left + static_cast<float>(box->width) >= a.x &&
                             top <= b.y && top + static_cast<float>(box->height) >= a.y;
        if (touched && box->enabled) ids.insert(box->id);
    }
    select(std::move(ids));
    tell(std::to_string(selection_.size()) + " selected");
}

bool UI_NodeCanvas::wouldTake(const UI_Node& box, int input) const {
    const Node* source = host.graph().findNode(linkDrag_.source);
    const Node* target = host.graph().findNode(box.id);
    return box.enabled && source != nullptr && target != nullptr && input >= 0 &&
           input < target->inputCount && target->canConnect(input, source);
}

bool UI_NodeCanvas::wouldFeed(const UI_Node& box) const {
    const Node* source = host.graph().findNode(box.id);
    const Node* target = host.graph().findNode(linkDrag_.target);
    return box.enabled && box.hasOutput && source != nullptr && target != nullptr &&
           target->canConnect(linkDrag_.port, source);
}

// True on the box that the link was taken from, and on the source of one that was taken off its
// socket: there it stays as it was. A node is linked to itself only by a hit on its other end.
bool UI_NodeCanvas::isHome(const Hit& hit) const {
    if (hit.box == nullptr) return false;
    const bool atSource = hit.box->id == linkDrag_.source;
    const bool atTarget = hit.box->id == linkDrag_.target;
    if (linkDrag_.takenOff) {
        return hit.part == Part::Socket ? atTarget && hit.input == linkDrag_.port
                                        : atTarget || atSource;
    }
    return linkDrag_.fromOutput ? atSource && hit.part != Part::Socket
                                : atTarget && hit.part != Part::Output;
}

void UI_NodeCanvas::dropLink(const UI_Event& event) {
    const LinkDrag drag = linkDrag_;
    const Hit hit = hitAt(event.x, event.y);
    int input = hit.input;
    if (drag.fromOutput && hit.box != nullptr && hit.part != Part::Socket) {
        // Over a box, but no socket: its first input that is free for it.
        const Node* target = host.graph().findNode(hit.box->id);
        const Node* source = host.graph().findNode(drag.source);
        if (target != nullptr && source != nullptr) {
            input = FirstFittingPort(*target, *source, Ports::OnlyFree).value_or(-1);
        }
    }
    const bool taken =
        hit.box != nullptr && (drag.fromOutput ? wouldTake(*hit.box, input) : wouldFeed(*hit.box));
    const std::string boxId = hit.box == nullptr ? std::string() : hit.box->id;
    const bool home = isHome(hit);
    endGesture();
    tell("");
    if (home) return;
    if (taken) {
        if (drag.takenOff) host.graph().disconnect(drag.target, drag.port);
        link(drag.fromOutput ? drag.source : boxId, drag.fromOutput ? boxId : drag.target,
             drag.fromOutput ? input : drag.port);
    } else if (drag.takenOff && boxId.empty()) {
        cut({{drag.target, drag.port}});
    } else if (!boxId.empty()) {
        tell(titleOf(boxId) +
             (drag.fromOutput ? " has no free input for it" : " does not fit there"));
    } else {
        openPaletteFor(event.x, event.y, drag);
    }
}

void UI_NodeCanvas::cutAlongKnife() {
    const Vec2 a = {static_cast<float>(startX_), static_cast<float>(startY_)};
    const Vec2 b = {static_cast<float>(pointerX_), static_cast<float>(pointerY_)};
    std::vector<std::pair<std::string, int>> links;
    for (const auto& box : boxes_) {
        for (std::size_t i = 0; i < box->inputLinks.size(); ++i) {
            const UI_Node* source = box->inputLinks[i];
            if (source == nullptr || !box->enabled) continue;
            const int input = static_cast<int>(i);
            const LinkCurve curve(outputPlace(*source), socketPlace(*box, input), view.zoom);
            if (curve.crosses(a, b)) links.emplace_back(box->id, input);
        }
    }
    endGesture();
    cut(links);
}

bool UI_NodeCanvas::handleKey(const UI_Event& event) {
    if (event.ctrl) return handleCtrlKey(event);
    switch (event.value) {
        case kKeyTab:
            openPalette(event.x, event.y);
            return true;
        case kKeyHome:
            frameAll();
            return true;
        case 'F':
            frameSelection();
            return true;
        case 'E':
            toggleDisabled();
            return true;
        case 'H':
            toggleFold();
            return true;
        case 'L':
            arrangeOrPutBack();
            return true;
        case kKeyDelete:
        case kKeyBack:
            deleteSelection();
            return true;
        case kKeyF2:
            if (selection_.size() == 1) beginRename(*selection_.begin());
            return true;
        case kKeyEscape:
            if (selection_.empty()) return false;
            select({});
            return true;
        default:
            return false;
    }
}

bool UI_NodeCanvas::handleCtrlKey(const UI_Event& event) {
    switch (event.value) {
        case 'A': {
            std::set<std::string> ids;
            for (const auto& box : boxes_) {
                if (box->enabled) ids.insert(box->id);
            }
            select(std::move(ids));
            return true;
        }
        case 'C':
            copySelection();
            return true;
        case 'X':
            if (selection_.empty()) return true;
            copySelection();
            deleteSelection();
            return true;
        case 'V':
            paste();
            return true;
        case 'D':
            duplicate();
            return true;
        default:
            return false;
    }
}

void UI_NodeCanvas::beginRename(const std::string& id) {
    const UI_Node* box = boxOf(id);
    if (box == nullptr) return;
    nameField_->onTaken = [this, id](const std::string& name) { rename(id, name); };
    const int left = view.screenX(box->x), right = view.screenX(box->x + box->width);
    if (!nameField_->open(left, view.screenY(box->y), std::max(right - left, UI_Node::kWidth),
                          titleOf(id))) {
        return;
    }
}

void UI_NodeCanvas::openPalette(int screenX, int screenY) {
    openPaletteFor(screenX, screenY, {});
}

void UI_NodeCanvas::openPaletteFor(int screenX, int screenY, const LinkDrag& drag) {
    OpenLink open;
    if (drag.fromOutput) {
        open.source = host.graph().findNode(drag.source);
    } else {
        open.target = host.graph().findNode(drag.target);
        open.port = drag.port;
    }
    std::string heading = "New node";
    if (open.source != nullptr) heading = "New node behind " + titleOf(drag.source);
    if (open.target != nullptr) heading = "New node before " + titleOf(drag.target);
    paletteLink_ = drag;
    const bool onCanvas = Contains(screenX, screenY);
    newNodePlace_ = view.toCanvas({static_cast<float>(onCanvas ? screenX : x + width / 2),
                                   static_cast<float>(onCanvas ? screenY : y + height / 2)});
    // Not beyond the canvas, so that the line of hints below it can be read.
    palette_->open(screenX, screenY, y + height, catalog_->fittingTypes(open), std::move(heading));
}

// False when the pointer is elsewhere, something lies between it and the canvas, or another widget
// has the mouse: of all these the canvas hears nothing.
bool UI_NodeCanvas::isPointed() const {
    const bool free = master->captured == nullptr || hasCapture();
    return free && pointerX_ == master->mouseX && pointerY_ == master->mouseY &&
           Contains(pointerX_, pointerY_);
}

void UI_NodeCanvas::forgetHover() {
    if (hover_.box != nullptr) hover_.box->hoverInput = -1;
    hover_ = {};
}

void UI_NodeCanvas::hover(const UI_Event& event) {
    forgetHover();
    hover_ = Contains(event.x, event.y) ? hitAt(event.x, event.y) : Hit{};
    if (hover_.box != nullptr) {
        if (hover_.part == Part::Socket) hover_.box->hoverInput = hover_.input;
        UI_Event copy = event;
        hover_.box->HandleEvent(&copy);
    }
    tellHover(hover_);
}

void UI_NodeCanvas::tellHover(const Hit& hit) {
    switch (hit.part) {
        case Part::None:
            tell(
                "Tab or right press: new node. Middle drag pans, the wheel zooms, Home shows all. "
                "Ctrl + right drag cuts links.");
            break;
        case Part::Body:
            tell(!hit.box->enabled ? titleOf(hit.box->id) + " belongs to a folded part of the graph"
                                   : titleOf(hit.box->id) +
                                         ": drag moves, right press opens its values, double "
                                         "click names it, E switches it off, H folds what "
                                         "is behind, Ctrl+D doubles, Delete removes");
            break;
        case Part::Socket:
            tell(hit.box->inputLinks[static_cast<std::size_t>(hit.input)] == nullptr
                     ? "Drag to the node that shall feed this input"
                     : "Drag off to cut or move the link");
            break;
        case Part::Output:
            tell("Drag to the input that " + titleOf(hit.box->id) + " shall feed");
            break;
    }
}

void UI_NodeCanvas::tellLinkDrag(const Hit& hit) {
    if (hit.box == nullptr) {
        tell(linkDrag_.takenOff ? "Let go to cut the link"
                                : "Let go to choose a new node for the link");
    } else if (isHome(hit)) {
        tell("Let go to leave everything as it was");
    } else if (!linkDrag_.fromOutput) {
        tell(wouldFeed(*hit.box) ? "Let go to link " + titleOf(hit.box->id)
                                 : titleOf(hit.box->id) + " does not fit this input");
    } else if (hit.part == Part::Socket) {
        const std::string name = hit.box->inputNames[static_cast<std::size_t>(hit.input)];
        tell(wouldTake(*hit.box, hit.input) ? "Let go to link to " + name
                                            : name + " does not take this");
    } else {
        tell("Let go to link to the first input of " + titleOf(hit.box->id) + " that is free");
    }
}

void UI_NodeCanvas::tell(std::string_view text) {
    if (text == status_) return;
    status_ = text;
    host.setStatus(status_);
}
