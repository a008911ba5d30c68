// The boxes of the canvas: making, linking, placing, framing.
#include "editor/ui_node_canvas.h"

#include <algorithm>
#include <limits>

#include "core/engine.h"
#include "editor/graph_edit.h"
#include "editor/graph_layout.h"
#include "editor/node_type_catalog.h"
#include "editor/ui_master.h"
#include "editor/ui_name_field.h"
#include "editor/ui_node.h"
#include "editor/ui_node_palette.h"

namespace {

constexpr int kDefaultY = 50;       // of a box at 0, 0
constexpr float kFrameMargin = 40;  // pixels of the screen

// Positions come from files. What is no place on any canvas ends at its edge.
int ToWholePlace(float value) {
    constexpr float kFurthest = 10000000;
    if (!(value == value)) return 0;
    return static_cast<int>(std::clamp(value, -kFurthest, kFurthest));
}

}  // namespace

UI_NodeCanvas::UI_NodeCanvas(NodeCanvasHost& canvasHost, int canvasX, int canvasY, int canvasWidth,
                             int canvasHeight)
    : host(canvasHost),
      catalog_(std::make_unique<NodeTypeCatalog>(canvasHost.graph())),
      palette_(std::make_unique<UI_NodePalette>()),
      nameField_(std::make_unique<UI_NameField>()) {
    UI_Object::SetPosition(canvasX, canvasY);
    SetSize(canvasWidth, canvasHeight);
    palette_->onTaken = [this](const std::string& typeName) { makeNode(typeName); };
}

UI_NodeCanvas::~UI_NodeCanvas() = default;

void UI_NodeCanvas::SetMaster(UI_Master* newMaster) {
    UI_Object::SetMaster(newMaster);
    palette_->SetMaster(newMaster);
    nameField_->SetMaster(newMaster);
    for (const auto& box : boxes_) box->SetMaster(newMaster);
}

void UI_NodeCanvas::SetPosition(int newX, int newY) {
    for (const auto& box : boxes_) box->SetPosition(box->x + newX - x, box->y + newY - y);
    UI_Object::SetPosition(newX, newY);
}

void UI_NodeCanvas::ClearBoxes() {
    layoutDirty = true;
    for (auto& box : boxes_) {
        box->retire();
        retired_.push_back(std::move(box));
    }
    boxes_.clear();
    boxById_.clear();
    dragStarts_.clear();
    hover_ = {};
    nextNumber_ = 0;
}

void UI_NodeCanvas::AddBox(UI_Node* box) {
    if (box == nullptr) return;
    layoutDirty = true;
    box->SetMaster(master);
    box->listener = this;
    box->view = &view;
    box->area = this;
    box->SetPosition(box->x + x, box->y + y);
    box->inputLinks.assign(static_cast<std::size_t>(box->inputCount), nullptr);
    box->number = nextNumber_++;
    box->keyed = selection_.contains(box->id);
    boxes_.emplace_back(box);
    boxById_[box->id] = box;
}

void UI_NodeCanvas::ConnectBoxes(UI_Node* from, UI_Node* to, int input) {
    layoutDirty = true;
    const auto isHere = [this](const UI_Node* box) {
        return box != nullptr && box->area == this && box->listener != nullptr;
    };
    if (!isHere(from) || !isHere(to) || input < 0 || input >= to->inputCount) return;
    UI_Node*& slot = to->inputLinks[static_cast<std::size_t>(input)];
    if (slot == nullptr) slot = from;
}

UI_Node* UI_NodeCanvas::boxOf(const std::string& id) const {
    const auto found = boxById_.find(id);
    return found == boxById_.end() ? nullptr : found->second;
}

void UI_NodeCanvas::CapturePositions() {
    for (const auto& box : boxes_) {
        host.nodePositions()[box->id] = {static_cast<float>(box->x),
                                         static_cast<float>(box->y - y)};
    }
}

void UI_NodeCanvas::capturePlaces() {
    for (const auto& box : boxes_) {
        host.nodePositions()[box->id] = {static_cast<float>(box->x - x),
                                         static_cast<float>(box->y - y)};
    }
}

void UI_NodeCanvas::rebuildBoxes() {
    ClearBoxes();
    const Engine& graph = host.graph();
    for (const auto& [id, node] : graph.nodes) {
        if (!node) continue;
        const Vec2* position = host.nodePositions().find(id);
        const int boxX = position == nullptr ? 0 : ToWholePlace(position->x);
        int boxY = position == nullptr ? 0 : ToWholePlace(position->y);
        if (boxX == 0 && boxY == 0) boxY = kDefaultY;
        auto box = std::make_unique<UI_Node>(master, &host, id, boxX, boxY, node->inputCount);
        box->open = !host.folded(id);
        box->inputNames = node->inputNames;
        box->inputNames.resize(static_cast<std::size_t>(box->inputCount));
        box->error = node->hasError;
        box->hasOutput = node->getType() != kOutputNode;
        AddBox(box.release());
    }
    linkBoxes();
    applyFolds();
}

// Nobody sees that there are two where one box covers another to the pixel.
Vec2 UI_NodeCanvas::freePlace(Vec2 place) const {
    const auto isTaken = [&](const auto& box) {
        return box->x - x == ToWholePlace(place.x) && box->y - y == ToWholePlace(place.y);
    };
    // Each box is in the way once at most.
    for (std::size_t tries = 0; tries < boxes_.size(); ++tries) {
        if (std::none_of(boxes_.begin(), boxes_.end(), isTaken)) break;
        place = {place.x + kCopyShift, place.y + kCopyShift};
    }
    return place;
}

void UI_NodeCanvas::linkBoxes() {
    for (const auto& box : boxes_) {
        std::fill(box->inputLinks.begin(), box->inputLinks.end(), nullptr);
        const Node* node = host.graph().findNode(box->id);
        if (node == nullptr) continue;
        for (int port = 0; port < node->inputCount; ++port) {
            const Node* source = node->getInput(port);
            if (source != nullptr) ConnectBoxes(boxOf(source->id), box.get(), port);
        }
    }
}

void UI_NodeCanvas::applyFolds() {
    for (const auto& box : boxes_) {
        box->open = !host.folded(box->id);
        box->enabled = true;
    }
    const std::set<LinkEnd> feedback = FeedbackLinks(host.graph());
    for (const auto& root : boxes_) {
        if (root->open) continue;
        for (const std::string& id : NodesBehind(host.graph(), root->id, feedback)) {
            if (UI_Node* box = boxOf(id)) box->setEnabled(false);
        }
    }
    // The places of a folded subtree are drawn thin, and so are the links among them.
    for (const auto& box : boxes_) box->linkAlpha = box->enabled && box->open ? 1.0f : 0.25f;
    // What is out of reach is not edited either.
    std::erase_if(selection_, [this](const std::string& id) {
        const UI_Node* box = boxOf(id);
        return box == nullptr || !box->enabled;
    });
    applySelection();
}

void UI_NodeCanvas::relink() {
    layoutDirty = true;
    linkBoxes();
    applyFolds();
    host.graphChanged();
}

void UI_NodeCanvas::updateLayout() {
    if (!layoutDirty) return;
    layoutDirty = false;
    for (const auto& box : boxes_) {
        box->layoutSockets();
        for (NodeSocket& socket : box->sockets) socket.feedback = false;
    }
    for (const auto& [node, port] : FeedbackLinks(host.graph())) {
        UI_Node* box = boxOf(node->id);
        if (box == nullptr || port >= static_cast<int>(box->sockets.size())) continue;
        box->sockets[static_cast<std::size_t>(port)].feedback = true;
    }
}

void UI_NodeCanvas::arrange() {
    for (const auto& [id, placed] : ArrangeGraph(host.graph())) {
        host.nodePositions()[id] = {placed.x + kFrameMargin, placed.y + kDefaultY};
    }
    rebuildBoxes();
    frameAll();
}

bool UI_NodeCanvas::isAsArranged() const {
    const auto isThere = [this](const auto& box) {
        const auto place = arranged_.find(box->id);
        return place != arranged_.end() && place->second == std::pair(box->x - x, box->y - y);
    };
    return !boxes_.empty() && arranged_.size() == boxes_.size() &&
           std::all_of(boxes_.begin(), boxes_.end(), isThere);
}

UI_NodeCanvas::Places UI_NodeCanvas::placesOfBoxes() const {
    Places places;
    for (const auto& box : boxes_) places[box->id] = {box->x - x, box->y - y};
    return places;
}

void UI_NodeCanvas::arrangeOrPutBack() {
    const bool putBack = isAsArranged();
    if (putBack) {
        for (const auto& [id, place] : beforeArranging_) {
            host.nodePositions()[id] = {static_cast<float>(place.first),
                                        static_cast<float>(place.second)};
        }
        arranged_.clear();
        rebuildBoxes();
        frameAll();
    } else {
        beforeArranging_ = placesOfBoxes();
        arrange();
        arranged_ = placesOfBoxes();
    }
    host.graphChanged();
    tell(putBack ? "Everything is back in its place" : "Laid out in order; L again puts it back");
}

void UI_NodeCanvas::select(std::set<std::string> ids) {
    selection_ = std::move(ids);
    std::erase_if(selection_, [this](const std::string& id) { return boxOf(id) == nullptr; });
    applySelection();
}

void UI_NodeCanvas::applySelection() {
    for (const auto& box : boxes_) box->keyed = selection_.contains(box->id);
}

std::vector<std::string> UI_NodeCanvas::selectedIds() const {
    std::vector<std::string> ids;
    for (const auto& box : boxes_) {
        if (selection_.contains(box->id)) ids.push_back(box->id);
    }
    return ids;
}

void UI_NodeCanvas::frameAll() {
    frameBoxes(false);
}

void UI_NodeCanvas::frameSelection() {
    frameBoxes(!selection_.empty());
}

void UI_NodeCanvas::frameBoxes(bool onlySelected) {
    updateLayout();
    constexpr float kFar = std::numeric_limits<float>::max();
    Vec2 least = {kFar, kFar}, most = {-kFar, -kFar};
    for (const auto& box : boxes_) {
        if (onlySelected && !selection_.contains(box->id)) continue;
        int left = box->x, right = box->x + box->width;
        if (!box->sockets.empty()) {
            left = std::min(left, box->sockets.front().x);
            right = std::max(right, box->sockets.back().x);
        }
        least = {std::min(least.x, static_cast<float>(left)),
                 std::min(least.y, static_cast<float>(box->y))};
        most = {std::max(most.x, static_cast<float>(right)),
                std::max(most.y, static_cast<float>(box->y + box->height))};
    }
    if (least.x > most.x) {
        view = {};
        return;
    }
    const auto edge = [](int place) { return static_cast<float>(place); };
    view.frame(least, most, {edge(x) + kFrameMargin, edge(y) + kFrameMargin},
               {edge(x + width) - kFrameMargin, edge(y + height) - kFrameMargin});
}
