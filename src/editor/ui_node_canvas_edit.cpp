// What the canvas does to the graph. Every edit that makes or removes nodes takes down first where
// the boxes lie, since all boxes are made anew after it.
#include <algorithm>

#include "core/engine.h"
#include "editor/graph_clip.h"
#include "editor/graph_edit.h"
#include "editor/node_type_catalog.h"
#include "editor/ui_master.h"
#include "editor/ui_name_field.h"
#include "editor/ui_node.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_node_palette.h"

namespace {

std::string Counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

std::string UI_NodeCanvas::titleOf(const std::string& id) const {
    return master->DisplayNameOf(id);
}

void UI_NodeCanvas::makeNode(const std::string& typeName) {
    capturePlaces();
    Engine& graph = host.graph();
    Node* made = CreateNode(graph, typeName);
    if (made == nullptr) {
        tell("A node of the type " + typeName + " could not be made");
        return;
    }
    const std::string id = made->id;
    const LinkDrag link = paletteLink_;
    Vec2 place = {newNodePlace_.x - static_cast<float>(x) - UI_Node::kWidth / 2,
                  newNodePlace_.y - static_cast<float>(y) - UI_Node::kHeight / 2};
    if (link.fromOutput && !link.source.empty()) {
        const Node* source = graph.findNode(link.source);
        const auto port =
            source == nullptr ? std::nullopt : FirstFittingPort(*made, *source, Ports::OnlyFree);
        if (port) SetLink(graph, *source, *made, *port);
        place.y += UI_Node::kHeight / 2;
    } else if (!link.fromOutput) {
        const Node* target = graph.findNode(link.target);
        if (target != nullptr) SetLink(graph, *made, *target, link.port);
        place.y -= UI_Node::kHeight / 2;
    }
    beginAfresh(id);
    host.nodePositions()[id] = freePlace(place);
    rebuildBoxes();
    select({id});
    host.graphChanged();
    tell(titleOf(id) + " made; right press on it opens its values");
}

// A node that once had this id may have left its name and its fold.
void UI_NodeCanvas::beginAfresh(const std::string& id) {
    master->displayNames.erase(id);
    host.setFolded(id, false);
}

void UI_NodeCanvas::link(const std::string& sourceId, const std::string& targetId, int port) {
    Engine& graph = host.graph();
    const Node* source = graph.findNode(sourceId);
    const Node* target = graph.findNode(targetId);
    if (source == nullptr || target == nullptr) return;
    const bool linked = SetLink(graph, *source, *target, port);
    relink();
    if (linked) tell(titleOf(sourceId) + " feeds " + titleOf(targetId));
}

void UI_NodeCanvas::cut(const std::vector<std::pair<std::string, int>>& links) {
    std::size_t count = 0;
    for (const auto& [id, port] : links) count += host.graph().disconnect(id, port) ? 1 : 0;
    if (count > 0) relink();
    tell(count == 0 ? "No link was cut" : Counted(count, "link cut", "links cut"));
}

void UI_NodeCanvas::deleteSelection() {
    const std::vector<std::string> ids = selectedIds();
    if (ids.empty()) return;
    capturePlaces();
    for (const std::string& id : ids) {
        if (host.graph().findNode(id) != nullptr) host.nodeGoes(id);
        host.graph().deleteNode(id);
        host.nodePositions().erase(id);
        host.setFolded(id, false);
        master->displayNames.erase(id);
    }
    rebuildBoxes();
    host.graphChanged();
    tell(Counted(ids.size(), "node removed", "nodes removed"));
}

GraphClip UI_NodeCanvas::clipOfSelection() {
    GraphClip clip = GraphClip::FromGraph(host.graph(), selectedIds());
    for (GraphClip::Node& node : clip.nodes) {
        const UI_Node* box = boxOf(node.id);
        node.place = {static_cast<float>(box->x - x), static_cast<float>(box->y - y)};
        const auto name = master->displayNames.find(node.id);
        if (name != master->displayNames.end() && name->second != node.id) {
            node.displayName = name->second;
        }
    }
    return clip;
}

void UI_NodeCanvas::copySelection() {
    if (selection_.empty()) {
        tell("Nothing is selected");
        return;
    }
    const GraphClip clip = clipOfSelection();
    host.setClipboardText(clip.toText());
    tell(Counted(clip.nodes.size(), "node copied", "nodes copied"));
}

void UI_NodeCanvas::duplicate() {
    if (selection_.empty()) {
        tell("Nothing is selected");
        return;
    }
    pasteClip(clipOfSelection(), {kCopyShift, kCopyShift});
}

// The middle of what was copied comes to lie under the pointer.
void UI_NodeCanvas::paste() {
    const auto clip = GraphClip::FromText(host.clipboardText());
    if (!clip) {
        tell("The clipboard holds no nodes");
        return;
    }
    Vec2 least = clip->nodes.front().place, most = least;
    for (const GraphClip::Node& node : clip->nodes) {
        least = {std::min(least.x, node.place.x), std::min(least.y, node.place.y)};
        most = {std::max(most.x, node.place.x), std::max(most.y, node.place.y)};
    }
    const Vec2 pointer =
        view.toCanvas({static_cast<float>(pointerX_), static_cast<float>(pointerY_)});
    const float middleX = (least.x + most.x + UI_Node::kWidth) / 2;
    const float middleY = (least.y + most.y + UI_Node::kHeight) / 2;
    pasteClip(*clip,
              {static_cast<float>(static_cast<int>(pointer.x - middleX)) - static_cast<float>(x),
               static_cast<float>(static_cast<int>(pointer.y - middleY)) - static_cast<float>(y)});
}

void UI_NodeCanvas::pasteClip(const GraphClip& clip, const Vec2& shift) {
    capturePlaces();
    const GraphClip::Pasted pasted = clip.pasteInto(host.graph());
    const Vec2 first = {clip.nodes.front().place.x + shift.x, clip.nodes.front().place.y + shift.y};
    const Vec2 free = freePlace(first);
    const Vec2 moved = {shift.x + free.x - first.x, shift.y + free.y - first.y};
    std::set<std::string> made;
    for (const GraphClip::Node& node : clip.nodes) {
        const auto found = pasted.newIds.find(node.id);
        if (found == pasted.newIds.end() || !made.insert(found->second).second) continue;
        beginAfresh(found->second);
        host.nodePositions()[found->second] = {node.place.x + moved.x, node.place.y + moved.y};
        if (!node.displayName.empty()) master->displayNames[found->second] = node.displayName;
    }
    const std::size_t count = made.size();
    if (count > 0) {
        rebuildBoxes();
        select(std::move(made));
        host.graphChanged();
    }
    std::string text = Counted(count, "node pasted", "nodes pasted");
    if (pasted.unknownTypes > 0) {
        text += ", " + std::to_string(pasted.unknownTypes) +
                " left out: this program or project "
                "does not know the type";
    }
    tell(text);
}

std::vector<std::string> UI_NodeCanvas::meantIds() const {
    std::vector<std::string> ids = selectedIds();
    const Hit hit = ids.empty() ? hitAt(pointerX_, pointerY_) : Hit{};
    if (hit.box != nullptr) ids.push_back(hit.box->id);
    return ids;
}

// All go one way: off while any of them is on. An output is not taken by any node, so that there is
// nobody who could pass over it.
void UI_NodeCanvas::toggleDisabled() {
    std::vector<Node*> nodes;
    const std::vector<std::string> ids = meantIds();
    for (const std::string& id : ids) {
        Node* node = host.graph().findNode(id);
        if (node != nullptr && node->getType() != kOutputNode) nodes.push_back(node);
    }
    if (nodes.empty()) {
        if (!ids.empty()) tell("An output cannot be switched off");
        return;
    }
    const bool anyOn = std::any_of(nodes.begin(), nodes.end(),
                                   [](const Node* node) { return node->disabled == 0; });
    for (Node* node : nodes) node->disabled = anyOn ? 1 : 0;
    tell(Counted(nodes.size(), "node", "nodes") +
         (anyOn
              ? " switched off until the project is loaded again (this is not saved): not computed "
                "any more, the last picture stays"
              : " switched on"));
}

void UI_NodeCanvas::toggleFold() {
    const std::vector<std::string> ids = meantIds();
    if (ids.empty()) return;
    const bool anyOpen = std::any_of(ids.begin(), ids.end(),
                                     [this](const std::string& id) { return !host.folded(id); });
    for (const std::string& id : ids) host.setFolded(id, anyOpen);
    applyFolds();
    host.graphChanged();
    tell(anyOpen ? "Folded: what is behind is out of reach until H unfolds it" : "Unfolded");
}

void UI_NodeCanvas::rename(const std::string& id, const std::string& name) {
    if (host.graph().findNode(id) == nullptr) return;
    if (name.find_first_not_of(' ') == std::string::npos || name == id) {
        master->displayNames.erase(id);
    } else {
        master->displayNames[id] = name;
    }
    host.graphChanged();
    tell("");
}
