#include "editor/ui_hints.h"

#include "editor/ui_backdrop_choice.h"
#include "editor/ui_button.h"
#include "editor/ui_checkbox.h"
#include "editor/ui_color_selector.h"
#include "editor/ui_direction.h"
#include "editor/ui_image_panel.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_log_view.h"
#include "editor/ui_name_field.h"
#include "editor/ui_node.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_node_palette.h"
#include "editor/ui_picture_view.h"
#include "editor/ui_position.h"
#include "editor/ui_properties_column.h"
#include "editor/ui_screen_gate.h"
#include "editor/ui_selection.h"
#include "editor/ui_slider.h"
#include "editor/ui_status_line.h"
#include "editor/ui_text_box.h"
#include "editor/ui_value_control.h"

namespace {

constexpr const char* kKeys = "   S: animate or not   P: write a key";

bool IsSeen(const UI_Object& widget) {
    if (dynamic_cast<const UI_ScreenGate*>(&widget) != nullptr) return false;
    if (const auto* panel = dynamic_cast<const UI_Panel*>(&widget)) return !panel->hidden;
    if (const auto* timeline = dynamic_cast<const UI_KeyTimeline*>(&widget))
        return !timeline->hidden;
    if (const auto* canvas = dynamic_cast<const UI_NodeCanvas*>(&widget)) return !canvas->hidden;
    if (const auto* status = dynamic_cast<const UI_StatusLine*>(&widget)) return !status->hidden;
    if (const auto* button = dynamic_cast<const UI_Button*>(&widget)) return !button->hidden;
    return true;
}

}  // namespace

const UI_Object* WidgetAt(const std::vector<UI_Object*>& topLevel, int x, int y) {
    const UI_Object* found = nullptr;
    for (const UI_Object* widget : topLevel) {
        if (widget->Contains(x, y) && IsSeen(*widget)) found = widget;
    }
    const auto* panel = dynamic_cast<const UI_Panel*>(found);
    while (panel != nullptr) {
        const UI_Object* inside = nullptr;
        for (const auto& child : panel->children) {
            if (child->Contains(x, y)) inside = child.get();
        }
        if (inside == nullptr) break;
        found = inside;
        panel = dynamic_cast<const UI_Panel*>(inside);
    }
    return found;
}

bool IsOfNodeCanvas(const UI_Object& widget) {
    return dynamic_cast<const UI_NodeCanvas*>(&widget) != nullptr ||
           dynamic_cast<const UI_Node*>(&widget) != nullptr;
}

std::string HintFor(const UI_Object& widget) {
    if (const auto* button = dynamic_cast<const UI_Button*>(&widget)) return button->tooltip;
    const auto is = [&widget]<typename W>(const W*) {
        return dynamic_cast<const W*>(&widget) != nullptr;
    };
    if (is(static_cast<UI_ValueControl*>(nullptr))) {
        return std::string(
                   "Drag the number (Ctrl: finer)   Double click: type   Right click: "
                   "default") +
               kKeys;
    }
    if (is(static_cast<UI_TextBox*>(nullptr))) {
        return "Click: type, Return takes it, Esc drops it   Middle click: choose a file   Right "
               "click: default";
    }
    if (is(static_cast<UI_NodePalette*>(nullptr))) {
        return "Type: search   Up, Down, wheel: choose   Return or a click: make the node   Esc: "
               "none";
    }
    if (is(static_cast<UI_NameField*>(nullptr)))
        return "Type the name (none: the id is shown)   Return: take it   Esc: keep the old one";
    if (is(static_cast<UI_Position*>(nullptr))) {
        return std::string("Drag the numbers, or the pin on the picture   Right click: default") +
               kKeys;
    }
    if (is(static_cast<UI_Direction*>(nullptr))) {
        return std::string("Drag on the dial   Ctrl: eight directions") + kKeys;
    }
    if (is(static_cast<UI_ColorSelector*>(nullptr)) || is(static_cast<UI_Slider*>(nullptr))) {
        return std::string("Drag the four sliders (Ctrl: finer)   Right click: default") + kKeys;
    }
    if (is(static_cast<UI_Checkbox*>(nullptr))) return "Click the square   Right click: default";
    if (is(static_cast<UI_Selection*>(nullptr))) {
        return "Press, drag to a row, release (wheel: more rows, Esc: none)   Right click: default";
    }
    if (is(static_cast<UI_BackdropChoice*>(nullptr))) return "Click: colour behind the picture";
    if (is(static_cast<UI_LogView*>(nullptr))) return "Click: all messages";
    if (is(static_cast<UI_PictureView*>(nullptr)) || is(static_cast<UI_ImagePanel*>(nullptr))) {
        return "Wheel: zoom   Middle drag: pan   Right click: whole picture   Drag a pin: move its "
               "value, with a key";
    }
    if (is(static_cast<UI_KeyTimeline*>(nullptr))) {
        return "Drag the ruler: time   Double click: new key   Drag keys (Ctrl: no snapping, "
               "Shift: "
               "one way)   Right click: easing   Delete   Wheel: zoom (Ctrl: values)   Middle "
               "drag: "
               "pan   Home: fit";
    }
    if (is(static_cast<UI_PropertiesColumn*>(nullptr))) {
        return "Properties of nodes: a right click on a box opens them   Wheel: scroll";
    }
    return "F1: all keys   F12: full-screen player";
}
