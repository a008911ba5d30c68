#include "editor/ui_properties_panel.h"

#include <utility>

#include "core/engine.h"
#include "core/image_node_shader.h"
#include "core/script_faults.h"
#include "editor/ui_checkbox.h"
#include "editor/ui_color_selector.h"
#include "editor/ui_direction.h"
#include "editor/ui_image_panel.h"
#include "editor/ui_master.h"
#include "editor/ui_position.h"
#include "editor/ui_selection.h"
#include "editor/ui_text_box.h"
#include "editor/ui_value_control.h"
#include "gpu/shader_program.h"

namespace {

constexpr int kFirstRow = 25, kLeft = 5, kRowWidth = 380, kFoot = 5;  // pixels
constexpr int kFaultRow = 16, kFaultTextSize = 11;
constexpr int kFaultWidth = 370;  // pixels
constexpr const char* kFaultIndent = "   ";
constexpr std::size_t kMostFaults = 8, kMostFaultRows = 16;

UI_Object* MakeFloatWidget(const ValueFloat& value) {
    auto* control = new UI_ValueControl(value.name, kLeft, 0, kRowWidth, true);
    control->value = value;
    return control;
}

UI_Object* MakeVec2Widget(const ValueVec2& value) {
    if (value.flag) return new UI_Direction(value, 0);
    return new UI_Position(value, 0);
}

// Null for a value that has no row.
UI_Object* MakeWidget(const Value_Object& value) {
    switch (value.getType()) {
        case kValueBool:
            return new UI_Checkbox(static_cast<const ValueBool&>(value), 0);
        case kValueInt: {
            const auto& choice = static_cast<const ValueInt&>(value);
            return choice.options.empty() ? nullptr : new UI_Selection(choice, 0, kRowWidth);
        }
        case kValueFloat:
            return MakeFloatWidget(static_cast<const ValueFloat&>(value));
        case kValueVec2:
            return MakeVec2Widget(static_cast<const ValueVec2&>(value));
        case kValueVec4:
            return new UI_ColorSelector(static_cast<const ValueVec4&>(value), 0);
        case kValueString:
            return new UI_TextBox(static_cast<const ValueString&>(value), kLeft, 0, kRowWidth);
        default:
            return nullptr;
    }
}

}  // namespace

std::vector<std::string> FaultsOf(const Node& node) {
    if (!node.hasError) return {};
    const auto* shader = dynamic_cast<const ImageNode_Shader*>(&node);
    if (shader == nullptr) return {"This node has a fault; the messages tell which."};
    const std::string& file = shader->script.fileName;
    std::vector<std::string> faults = {
        file.substr(file.find_last_of("\\/") + 1) + " does not compile" +
        (shader->program->linked ? "; what ran before runs on:" : ":")};
    for (const std::string& line : shader->faults()) {
        if (faults.size() > kMostFaults) break;
        faults.push_back(line);
    }
    return faults;
}

// Not the headline, which may have the word "error" in the name of the file.
std::string MainFaultOf(const Node& node) {
    const auto* shader = dynamic_cast<const ImageNode_Shader*>(&node);
    const bool anyWords = node.hasError && shader != nullptr && !shader->faults().empty();
    return FirstError(anyWords ? shader->faults() : FaultsOf(node));
}

UI_PropertiesPanel::UI_PropertiesPanel(Engine& owner, std::string nodeId)
    : UI_Panel(0, 0, kWidth, 0, true), id(std::move(nodeId)), engine_(owner) {
    title = id;
}

void UI_PropertiesPanel::addWidget(UI_Object* widget, int& top) {
    widget->SetPosition(widget->x, top);
    widget->SyncKeyed();
    top += widget->GetHeight();
    AddChild(widget);
}

void UI_PropertiesPanel::AddWidgets(UI_ImagePanel& pins) {
    int top = kFirstRow;
    for (const Value_Object* value : engine_.valuesOf(engine_.findNode(id))) {
        UI_Object* widget = MakeWidget(*value);
        if (widget == nullptr) continue;
        addWidget(widget, top);
        if (dynamic_cast<UI_Position*>(widget) != nullptr) {
            pins.AddPin(static_cast<const ValueVec2&>(*value), id + "." + value->name, this);
        }
    }
    widgetsHeight_ = top;
    syncedTracks_ = trackNames();
    SetSize(width, top + kFoot);
}

// Widgets give back the mouse and the keyboard when they die.
void UI_PropertiesPanel::RemakeWidgets(UI_ImagePanel& pins) {
    pins.RemovePinsOf(this);
    children.clear();
    AddWidgets(pins);
}

void UI_PropertiesPanel::Draw() {
    if (hidden) return;
    refresh();
    UI_Panel::Draw();
}

std::vector<std::string> UI_PropertiesPanel::trackNames() const {
    std::vector<std::string> names;
    const auto* list = engine_.tracks.find(id);
    if (list == nullptr) return names;
    for (const auto& track : *list) names.push_back(track->name);
    return names;
}

// What a widget does to the tracks it knows itself. To ask again would be to lose it: a value
// counts as animated, too, while one is whose name begins with its own.
bool UI_PropertiesPanel::HandleEvent(UI_Event* event) {
    if (event->type != UI_EventType::KeyDown) return UI_Panel::HandleEvent(event);
    const bool inStep = trackNames() == syncedTracks_;
    const bool consumed = UI_Panel::HandleEvent(event);
    if (inStep) syncedTracks_ = trackNames();
    return consumed;
}

void UI_PropertiesPanel::refresh() {
    if (std::vector<std::string> names = trackNames(); names != syncedTracks_) {
        for (const auto& child : children) child->SyncKeyed();
        syncedTracks_ = std::move(names);
    }
    const Node* node = engine_.findNode(id);
    takeFaults(node == nullptr ? std::vector<std::string>() : FaultsOf(*node));
    SetSize(width, widgetsHeight_ + kFoot + kFaultRow * static_cast<int>(faultRows_.size()));
}

// Long lines go on in the row below, a little to the right.
void UI_PropertiesPanel::takeFaults(std::vector<std::string> faults) {
    if (faults == faults_) return;
    faults_ = std::move(faults);
    faultRows_.clear();
    for (const std::string& fault : faults_) {
        std::string row, rest = fault;
        while (!rest.empty()) {
            const std::size_t space = rest.find(' ', 1);
            const std::string word = rest.substr(0, space);
            const bool fits = master->MeasureText(kFaultTextSize, row + word) <= kFaultWidth;
            if (!fits && !row.empty()) {
                faultRows_.push_back(row);
                row = kFaultIndent;
            }
            row += word;
            rest.erase(0, word.size());
        }
        faultRows_.push_back(row);
    }
    if (faultRows_.size() > kMostFaultRows) faultRows_.resize(kMostFaultRows);
}

void UI_PropertiesPanel::DrawOverlay() {
    int baseline = y + widgetsHeight_ + 13;
    for (const std::string& row : faultRows_) {
        master->DrawText(x + 10, baseline, kFaultTextSize, kFaultColor, row);
        baseline += kFaultRow;
    }
}
