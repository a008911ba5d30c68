// The graph on the authoring screen: boxes, outputs, properties panels, tracks.
#include <algorithm>

#include "core/engine.h"
#include "core/script_changes.h"
#include "editor/node_canvas_host.h"
#include "editor/ui_authoring_screen.h"
#include "editor/ui_canvas_host.h"
#include "editor/ui_engine.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_properties_column.h"
#include "editor/ui_properties_panel.h"
#include "editor/ui_selection.h"

void UI_Engine::Rebuild(Boxes boxes) {
    if (nodeCanvas == nullptr) return;
    if (!presentationMode) rebuildOutputs();
    if (boxes == Boxes::Capture) nodeCanvas->capturePlaces();
    nodeCanvas->rebuildBoxes();
    engine->update(editorTime);
}

void UI_Engine::rebuildOutputs() {
    outputs.clear();
    outputChoice.options.clear();
    for (const auto& [id, node] : engine->nodes) {
        if (!node || node->getType() != kOutputNode) continue;
        outputs.push_back(node.get());
        outputChoice.options.push_back(master.DisplayNameOf(id));
    }
    const auto count = static_cast<std::int64_t>(outputs.size());
    // With outputs there, one of them is on the screen.
    if (selectedOutput < 0 || selectedOutput >= count) selectedOutput = count > 0 ? 0 : -1;
    outputChoice.value = static_cast<std::int32_t>(selectedOutput);
    if (outputSelector != nullptr) outputSelector->TakeOptions(outputChoice);
}

void UI_Engine::takeOutputChoice() {
    const std::int64_t chosen = outputChoice.value;
    if (chosen >= 0 && chosen < static_cast<std::int64_t>(outputs.size())) selectedOutput = chosen;
}

void UI_Engine::nodeGoes(const std::string& id) {
    const auto panel = openPanels.find(id);
    if (panel != openPanels.end() && panel->second != nullptr) ClosePanel(panel->second);
    const auto output = std::find(outputs.begin(), outputs.end(), engine->findNode(id));
    if (output == outputs.end()) return;
    // The one on the screen stays there when one before it goes.
    if (output - outputs.begin() < selectedOutput) --selectedOutput;
    outputs.erase(output);
}

// Edits of the canvas: its boxes are right already.
void UI_Engine::graphChanged() {
    if (presentationMode) return;
    rebuildOutputs();
    RefreshTimeline();
}

void UI_Engine::RefreshTimeline() {
    const std::vector<KeyframeTrack*> tracks = engine->allTracks();
    knownTrackCount = static_cast<std::uint32_t>(tracks.size());
    if (keyTimeline == nullptr) return;
    keyTimeline->SetTracks(tracks);
    keyTimeline->RebuildTrackList();
}

// What widgets and pins point at lives until they are made anew.
void UI_Engine::TakeScriptFiles(const std::vector<FileChange>& files) {
    if (files.empty()) return;
    const ScriptChanges changes = engine->takeScriptFiles(files);
    for (const Node* node : changes.otherParams) {
        const auto open = openPanels.find(node->id);
        auto* panel =
            open == openPanels.end() ? nullptr : dynamic_cast<UI_PropertiesPanel*>(open->second);
        if (panel != nullptr) panel->RemakeWidgets(*imagePanel);
    }
    if (changes.otherInputs && !presentationMode) {
        nodeCanvas->cancel();
        nodeCanvas->capturePlaces();
        nodeCanvas->rebuildBoxes();
    }
    if (changes.told.empty() || screen_ == nullptr) return;
    using Tone = UI_StatusLine::Tone;
    screen_->status.Tell(changes.told, changes.anyFault ? Tone::Fault : Tone::News);
}

void UI_Engine::OpenPanel(const std::string& id) {
    if (propertiesPanel == nullptr || engine->findNode(id) == nullptr) return;
    UI_Panel*& place = openPanels[id];
    if (place != nullptr) return;
    auto panel = std::make_unique<UI_PropertiesPanel>(*engine, id);
    panel->listener = this;
    place = panel.get();
    UI_PropertiesPanel* added = panel.get();
    propertiesPanel->AddChild(panel.release());
    added->AddWidgets(*imagePanel);
    propertiesPanel->ShowPanel(added);
}

void UI_Engine::ClosePanel(UI_Panel* panel) {
    imagePanel->RemovePinsOf(panel);
    for (auto& [id, open] : openPanels) {
        if (open == panel) open = nullptr;
    }
    bury(panel);
}

// The panel may be the one whose event is under way, and what is on it may have the mouse.
void UI_Engine::bury(UI_Panel* panel) {
    closedPanels_.push_back(propertiesPanel->RemoveChild(panel));
    propertiesPanel->Arrange();
    if (master.captured != nullptr && panel->Holds(master.captured)) master.Forget(master.captured);
}

// The ids whose panels were open, in the order of the column.
std::vector<std::string> UI_Engine::closeAllPanels() {
    std::vector<std::string> ids;
    if (propertiesPanel == nullptr) return ids;
    for (const auto& child : propertiesPanel->children) {
        const auto* panel = dynamic_cast<const UI_PropertiesPanel*>(child.get());
        if (panel != nullptr) ids.push_back(panel->id);
    }
    for (const std::string& id : ids) {
        if (UI_Panel* panel = openPanels[id]) ClosePanel(panel);
    }
    openPanels.clear();
    return ids;
}

// --- the canvas's view of the editor

Engine& CanvasHost::graph() {
    return *ui_.engine;
}

void CanvasHost::openProperties(const std::string& id) {
    ui_.OpenPanel(id);
}

void CanvasHost::nodeGoes(const std::string& id) {
    ui_.nodeGoes(id);
}

void CanvasHost::graphChanged() {
    ui_.graphChanged();
}

void CanvasHost::setStatus(std::string_view text) {
    if (ui_.screen_ != nullptr) ui_.screen_->canvasStatus = text;
}

OrderedMap<std::string, Vec2>& CanvasHost::nodePositions() {
    return ui_.nodePositions;
}

bool CanvasHost::folded(const std::string& id) const {
    const bool* fold = ui_.nodeFolded.find(id);
    return fold != nullptr && *fold;
}

void CanvasHost::setFolded(const std::string& id, bool fold) {
    if (fold) {
        ui_.nodeFolded[id] = true;
    } else {
        ui_.nodeFolded.erase(id);
    }
}

std::string CanvasHost::clipboardText() const {
    return ui_.readClipboard ? ui_.readClipboard() : std::string();
}

void CanvasHost::setClipboardText(const std::string& text) {
    if (ui_.writeClipboard) ui_.writeClipboard(text);
}
