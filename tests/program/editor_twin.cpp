#include "program/editor_twin.h"

#include <GL/glew.h>

#include <algorithm>

#include "editor/ui_key_timeline.h"
#include "editor/ui_key_timeline_layout.h"
#include "editor/ui_node.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_panel.h"
#include "editor/ui_value_widget.h"

namespace {

const UI_ValueWidget* WidgetOf(const UI_Panel* panel, std::string_view label) {
    if (panel == nullptr) return nullptr;
    for (const auto& child : panel->children) {
        const auto* widget = dynamic_cast<const UI_ValueWidget*>(child.get());
        if (widget != nullptr && widget->label == label) return widget;
    }
    return nullptr;
}

constexpr ScreenPoint kNowhere = {-1, -1};

// The right half of a row has its number or its text.
ScreenPoint FieldOf(const UI_Panel* panel, std::string_view label) {
    const UI_ValueWidget* widget = WidgetOf(panel, label);
    if (widget == nullptr) return kNowhere;
    return {widget->x + widget->width / 2 + 6, widget->y + widget->height / 2};
}

}  // namespace

EditorTwin::EditorTwin(const std::string& project)
    : oldBoxes_(SetMessageBoxHandler(
          [this](std::string_view text, std::string_view /*caption*/, MessageButtons /*buttons*/) {
              questions.emplace_back(text);
              return MessageAnswer::Ok;
          })),
      oldDialogs_(
          SetFileDialogHandler([this](std::string_view /*pattern*/) -> std::optional<std::string> {
              if (chosenFile.empty()) return std::nullopt;
              return chosenFile;
          })) {
    int exitCode = 0;
    session = Session::Start(WindowKind::Offscreen, reason, exitCode);
    if (session == nullptr) return;
    if (!project.empty()) {
        if (!session->engine->load(project, true, "")) reason = project + " does not load";
        ui().ProjectLoaded(project);
    }
    session->showScreen(ScreenKind::Authoring);
    ui().StartPlayback();
}

EditorTwin::~EditorTwin() {
    SetMessageBoxHandler(oldBoxes_);
    SetFileDialogHandler(oldDialogs_);
}

void EditorTwin::send(std::uint32_t message, int value) {
    ui().master.Dispatch({message, value, mouse_.x, mouse_.y});
}

void EditorTwin::moveTo(ScreenPoint point) {
    mouse_ = point;
    send(kMessageMouseMove);
}

// A frame takes up what the one before it has found out: which output is shown, and how large the
// panels are.
std::vector<std::uint8_t> EditorTwin::picture() {
    constexpr int kFrames = 2;
    for (int i = 0; i < kFrames; ++i) {
        ui().BeginFrameUpdate();
        session->engine->update(ui().editorTime);
        session->drawEditor();
    }
    const GL_FrameBuffer& screen = session->picture();
    const auto width = static_cast<std::size_t>(screen.width);
    const auto height = static_cast<std::size_t>(screen.height);
    std::vector<std::uint8_t> rows(width * height * 3);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, screen.framebuffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glFinish();
    glReadPixels(0, 0, screen.width, screen.height, GL_RGB, GL_UNSIGNED_BYTE, rows.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    for (std::size_t y = 0; y < height / 2; ++y) {
        std::swap_ranges(rows.begin() + static_cast<std::ptrdiff_t>(y * width * 3),
                         rows.begin() + static_cast<std::ptrdiff_t>((y + 1) * width * 3),
                         rows.begin() + static_cast<std::ptrdiff_t>((height - 1 - y) * width * 3));
    }
    return rows;
}

UI_Node* EditorTwin::box(const std::string& nodeId) {
    return ui().nodeCanvas->boxOf(nodeId);
}

ScreenPoint EditorTwin::boxMiddle(const std::string& nodeId) {
    const UI_Node* found = box(nodeId);
    if (found == nullptr) return kNowhere;
    const CanvasView& view = ui().nodeCanvas->view;
    return {view.screenX(found->x + found->width / 2), view.screenY(found->y + found->height / 2)};
}

ScreenPoint EditorTwin::output(const std::string& nodeId) {
    const UI_Node* found = box(nodeId);
    if (found == nullptr) return kNowhere;
    const CanvasView& view = ui().nodeCanvas->view;
    return {view.screenX(found->x + found->width / 2), view.screenY(found->y + found->height + 2)};
}

ScreenPoint EditorTwin::socket(const std::string& nodeId, int input) {
    const UI_Node* found = box(nodeId);
    if (found == nullptr || input >= static_cast<int>(found->sockets.size())) return kNowhere;
    const CanvasView& view = ui().nodeCanvas->view;
    const NodeSocket& socket = found->sockets[static_cast<std::size_t>(input)];
    return {view.screenX(socket.x), view.screenY(socket.y)};
}

UI_Panel* EditorTwin::panel(const std::string& nodeId) {
    const auto found = ui().openPanels.find(nodeId);
    return found == ui().openPanels.end() ? nullptr : found->second;
}

ScreenPoint EditorTwin::valueField(const std::string& nodeId, std::string_view label) {
    return FieldOf(panel(nodeId), label);
}

ScreenPoint EditorTwin::checkbox(const std::string& nodeId, std::string_view label) {
    const UI_ValueWidget* widget = WidgetOf(panel(nodeId), label);
    if (widget == nullptr) return kNowhere;
    constexpr int kFromRightEdge = 15;  // of the middle of the square
    return {widget->x + widget->width - kFromRightEdge, widget->y + widget->height / 2};
}

ScreenPoint EditorTwin::settingsField(std::string_view label) {
    return FieldOf(ui().leftPanel.get(), label);
}

ScreenPoint EditorTwin::middle(const UI_Object& widget) {
    return {widget.x + widget.width / 2, widget.y + widget.height / 2};
}

ScreenPoint EditorTwin::key(float timeSeconds, float value) {
    const KeyTimelineView& view = ui().keyTimeline->view;
    return {view.xOf(timeSeconds), view.yOf(value)};
}

ScreenPoint EditorTwin::ruler(float timeSeconds) {
    const KeyTimelineView& view = ui().keyTimeline->view;
    return {view.xOf(timeSeconds), view.top - kRulerHeight / 2};
}
