#include "editor/ui_node.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "editor/canvas_view.h"
#include "editor/node_canvas_host.h"
#include "editor/ui_master.h"

namespace {

constexpr int kTextSize = 12;        // pixels
constexpr int kLeastTextSize = 6;    // smaller text is not drawn
constexpr int kLeastShadowSize = 9;  // and the shadows of smaller text neither
constexpr float kColorLength = 0.75f;
constexpr float kStripAlpha = 0.1f;
constexpr float kFoldLine = 4;
constexpr Vec4 kErrorRed = {1, 0, 0, 1};
constexpr Vec4 kOffVeil = {0.075f, 0.077f, 0.085f, 0.6f}, kOffBar = {1, 0.3f, 0.25f, 0.9f};
constexpr int kLeastSocketPitch = 12, kMostSocketPitch = 32;
constexpr CanvasView kPlainView;

}  // namespace

struct BoxOnScreen {
    const CanvasView& view;
    int left, top, right, bottom;

    int textX(int offset) const { return left + view.scaled(offset); }
    int textY(int offset) const { return top + view.scaled(offset); }
};

UI_Node::UI_Node(UI_Master* newMaster, NodeCanvasHost* newHost, std::string nodeId, int boxX,
                 int boxY, int newInputCount)
    : id(std::move(nodeId)),
      color(ColorOfId(id)),
      inputCount(std::max(newInputCount, 0)),
      host(newHost) {
    master = newMaster;
    x = boxX;
    y = boxY;
    width = kWidth;
    height = kHeight;
    inputNames.resize(static_cast<std::size_t>(inputCount));
    inputLinks.resize(static_cast<std::size_t>(inputCount));
    layoutSockets();
}

Vec4 UI_Node::ColorOfId(const std::string& id) {
    std::array<std::uint64_t, 3> sums = {};
    for (std::size_t i = 0; i < id.size(); ++i) sums[i % 3] += static_cast<unsigned char>(id[i]);
    std::array<float, 3> rgb;
    for (std::size_t i = 0; i < 3; ++i) rgb[i] = static_cast<float>(sums[i] % 255) / 255.0f;
    float length = std::sqrt(rgb[0] * rgb[0] + rgb[1] * rgb[1] + rgb[2] * rgb[2]);
    if (!(length > 0)) {  // no direction
        rgb = {1, 1, 1};
        length = std::sqrt(3.0f);
    }
    for (float& part : rgb) part = part / length * kColorLength;
    return {rgb[0], rgb[1], rgb[2], 1};
}

void UI_Node::layoutSockets() {
    sockets.resize(static_cast<std::size_t>(inputCount));
    if (inputCount == 0) return;
    const int pitch = std::clamp(kWidth / inputCount, kLeastSocketPitch, kMostSocketPitch);
    const int first = x + width / 2 - pitch * (inputCount - 1) / 2;
    for (int input = 0; input < inputCount; ++input) {
        NodeSocket& socket = sockets[static_cast<std::size_t>(input)];
        socket.x = first + input * pitch;
        socket.y = y;
        socket.input = input;
    }
}

void UI_Node::SetPosition(int newX, int newY) {
    for (NodeSocket& socket : sockets) {
        socket.x += newX - x;
        socket.y += newY - y;
    }
    UI_Object::SetPosition(newX, newY);
}

void UI_Node::Draw() {
    // While it has the capture it is drawn after everything, and not by the canvas.
    const bool clipped = area != nullptr && hasCapture();
    if (clipped) {
        master->PushScissor(area->x, master->height - area->y - area->height, area->width,
                            area->height);
    }
    drawBox();
    if (clipped) master->PopScissor();
}

void UI_Node::drawBox() {
    color = ColorOfId(id);
    const CanvasView& v = view == nullptr ? kPlainView : *view;
    const int boxLeft = v.screenX(x), boxTop = v.screenY(y);
    // A box far away is still a dot.
    const BoxOnScreen box = {v, boxLeft, boxTop, std::max(v.screenX(x + width), boxLeft + 1),
                             std::max(v.screenY(y + height), boxTop + 1)};
    const int boxHeight = box.bottom - box.top;
    if (!sockets.empty()) {
        const int span = sockets.back().x - sockets.front().x;
        const int left = std::min(sockets.front().x, x);
        const int stripLeft = v.screenX(left);
        master->SetColor({color.r, color.g, color.b, kStripAlpha});
        master->FillRect(stripLeft, box.top, v.screenX(left + std::max(span, width)) - stripLeft,
                         boxHeight);
    }
    master->SetColor(color);
    master->FillRect(box.left, box.top, box.right - box.left, boxHeight);
    master->SetColor(master->colorSlots[kColorNodeTitle]);
    drawTitle(box);
    if (!open) {
        master->SetColor(master->colorSlots[kColorKeyed]);
        master->DrawThickLine(kFoldLine * std::max(v.zoom, 0.5f), box.left - 1, box.top, box.right,
                              box.top);
    }
    if (keyed) {
        master->SetColor(master->colorSlots[kColorKeyed]);
        master->OutlineRect(box.left, box.top, box.right - box.left, boxHeight);
    }
    if (switchedOff) drawBar(box);
}

void UI_Node::drawBar(const BoxOnScreen& box) {
    const int boxWidth = box.right - box.left, boxHeight = box.bottom - box.top;
    master->SetColor(kOffVeil);
    master->FillRect(box.left, box.top, boxWidth, boxHeight);
    master->SetColor(kOffBar);
    master->FillRect(box.left, box.top + boxHeight / 2, boxWidth, std::max(box.view.scaled(2), 1));
}

void UI_Node::drawTitle(const BoxOnScreen& box) {
    const int size = box.view.scaled(kTextSize);
    if (size >= kLeastTextSize) {
        const std::string& title = master->DisplayNameOf(id);
        if (size >= kLeastShadowSize) {
            master->DrawText(box.textX(7), box.textY(16), size, {0, 0, 0, 0.5f}, title);
            master->DrawText(box.textX(8), box.textY(17), size, {0, 0, 0, 0.25f}, title);
        }
        master->DrawText(box.textX(5), box.textY(15), size, master->colorSlots[kColorText], title);
    }
    if (!error) return;
    master->SetColor(kErrorRed);
    master->DrawDisc(box.left, box.top, 8 * std::max(box.view.zoom, 0.4f));
    if (size < kLeastTextSize) return;
    master->DrawText(box.textX(-5), box.textY(4), size, master->colorSlots[kColorText], "X");
}

bool UI_Node::HandleEvent(UI_Event* event) {
    if (!enabled) return false;
    const CanvasView& v = view == nullptr ? kPlainView : *view;
    const Vec2 place = v.toCanvas({static_cast<float>(event->x), static_cast<float>(event->y)});
    lastMouseX = static_cast<int>(std::floor(place.x));
    lastMouseY = static_cast<int>(std::floor(place.y));
    if (event->type == UI_EventType::RightDown) {
        if (host != nullptr) host->openProperties(std::string(id));  // may clear all boxes
        return true;
    }
    if (dragging) return handleDrag(*event);
    if (event->type == UI_EventType::LeftDown && Contains(lastMouseX, lastMouseY) &&
        takeCapture(true)) {
        dragOffsetX = lastMouseX - x;
        dragOffsetY = lastMouseY - y;
        dragging = true;
        return true;
    }
    if (event->type == UI_EventType::LeftUp) {
        releaseCapture();
        hoverInput = -1;
        if (listener != nullptr) listener->OnValueEdited(this);
    }
    return false;
}

bool UI_Node::handleDrag(const UI_Event& event) {
    if (event.type == UI_EventType::LeftUp) {
        endDrag();
        if (listener != nullptr) listener->OnCommand(this, kLetGo);
        return true;
    }
    if (event.type != UI_EventType::MouseMove) return false;
    SetPosition(lastMouseX - dragOffsetX, lastMouseY - dragOffsetY);
    if (listener != nullptr) listener->OnCommand(this, kDragged);
    return false;
}

void UI_Node::endDrag() {
    dragging = false;
    releaseCapture();
}

void UI_Node::setEnabled(bool nowEnabled) {
    enabled = nowEnabled;
    if (!enabled) endDrag();
}

void UI_Node::retire() {
    endDrag();
    listener = nullptr;
    host = nullptr;
    std::fill(inputLinks.begin(), inputLinks.end(), nullptr);
}
