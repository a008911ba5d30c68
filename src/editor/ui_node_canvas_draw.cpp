// Drawing of the canvas. Nothing that is off the screen costs more than the look at its place.
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/engine.h"
#include "editor/link_curve.h"
#include "editor/ui_master.h"
#include "editor/ui_node.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_properties_panel.h"

namespace {

constexpr Vec4 kGround = {0.075f, 0.077f, 0.085f, 1};
constexpr Vec4 kGridLine = {1, 1, 1, 0.025f};
constexpr Vec4 kVeil = {0.075f, 0.077f, 0.085f, 0.6f};
constexpr Vec4 kEmptySocket = {0.42f, 0.42f, 0.45f, 1};
constexpr Vec4 kSoftWhite = {1, 1, 1, 0.35f};
constexpr Vec4 kFaint = {0.6f, 0.6f, 0.6f, 0.6f};
constexpr Vec4 kKnife = {1, 0.3f, 0.25f, 1};
constexpr int kGridPitch = 80;         // pixels of the canvas
constexpr float kLeastGridPitch = 24;  // pixels of the screen
constexpr int kTextSize = 12;
constexpr float kFoldedAlpha = 0.35f;  // of sockets and outputs
constexpr float kLinkWidth = 2, kStressedWidth = 3.2f;
constexpr float kDash = 8, kDashPeriod = 14, kDashSpeed = 0.25f;  // pixels, a draw
constexpr float kLeastSocketZoom = 0.3f;

Vec4 WithAlpha(Vec4 color, float alpha) {
    color.a *= alpha;
    return color;
}

}  // namespace

void UI_NodeCanvas::Draw() {
    retired_.clear();
    if (hidden) {
        cancel();
        return;
    }
    updateLayout();
    if (!isPointed()) forgetHover();
    master->PushScissor(x, master->height - y - height, width, height);
    master->SetColor(kGround);
    master->FillRect(x, y, width, height);
    drawGrid();
    drawLinks();
    drawBoxes();
    if (boxes_.empty()) drawHint();
    drawGesture();
    drawHoverName();
    master->PopScissor();
    master->SetColor(master->colorSlots[kColorPanelBorder]);
    master->OutlineRect(x, y, width, height);
}

void UI_NodeCanvas::drawGrid() {
    const float pitch = kGridPitch * view.zoom;
    if (pitch < kLeastGridPitch) return;
    master->SetColor(kGridLine);
    const auto first = [pitch](float origin, int edge) {
        const float from = static_cast<float>(edge);
        return origin + std::ceil((from - origin) / pitch) * pitch;
    };
    const auto right = static_cast<float>(x + width), bottom = static_cast<float>(y + height);
    for (float at = first(view.shift.x, x); at < right; at += pitch) {
        master->FillRect(static_cast<int>(at), y, 1, height);
    }
    for (float at = first(view.shift.y, y); at < bottom; at += pitch) {
        master->FillRect(x, static_cast<int>(at), width, 1);
    }
}

bool UI_NodeCanvas::isVisible(const UI_Node& box) const {
    constexpr int kAround = 24;  // sockets, disc and output reach beyond the box
    int left = box.x, right = box.x + box.width;
    if (!box.sockets.empty()) {
        left = std::min(left, box.sockets.front().x);
        right = std::max(right, box.sockets.back().x);
    }
    return view.screenX(right + kAround) >= x && view.screenX(left - kAround) <= x + width &&
           view.screenY(box.y + box.height + kAround) >= y &&
           view.screenY(box.y - kAround) <= y + height;
}

bool UI_NodeCanvas::isStressed(const UI_Node& box) const {
    return box.keyed || hover_.box == &box;
}

Vec2 UI_NodeCanvas::outputPlace(const UI_Node& box) const {
    return {static_cast<float>(view.screenX(box.x + box.width / 2)),
            static_cast<float>(view.screenY(box.y + box.height))};
}

Vec2 UI_NodeCanvas::socketPlace(const UI_Node& box, int input) const {
    const NodeSocket& socket = box.sockets[static_cast<std::size_t>(input)];
    return {static_cast<float>(view.screenX(socket.x)), static_cast<float>(view.screenY(socket.y))};
}

void UI_NodeCanvas::drawLinks() {
    for (const auto& box : boxes_) {
        for (const NodeSocket& socket : box->sockets) {
            if (box->inputLinks[static_cast<std::size_t>(socket.input)] != nullptr) {
                drawLink(*box, socket);
            }
        }
    }
}

void UI_NodeCanvas::drawLink(const UI_Node& box, const NodeSocket& socket) {
    const UI_Node& source = *box.inputLinks[static_cast<std::size_t>(socket.input)];
    const bool inHand =
        linkDrag_.takenOff && linkDrag_.target == box.id && linkDrag_.port == socket.input;
    if (inHand) return;
    const LinkCurve curve(outputPlace(source), socketPlace(box, socket.input), view.zoom);
    const auto left = static_cast<float>(x), top = static_cast<float>(y);
    if (curve.most.x < left || curve.least.x > left + static_cast<float>(width) ||
        curve.most.y < top || curve.least.y > top + static_cast<float>(height)) {
        return;
    }
    const bool stressed = isStressed(box) || isStressed(source);
    const float lineWidth =
        std::max(1.0f, (stressed ? kStressedWidth : kLinkWidth) * std::min(view.zoom, 1.5f));
    const Vec4 color = WithAlpha(source.color, box.linkAlpha);
    if (socket.feedback) {
        drawDashes(curve, color, lineWidth, box.dashShift);
        return;
    }
    drawCurve(curve, color, lineWidth);
}

// Pieces that share their ends, so that what is translucent covers nothing twice.
void UI_NodeCanvas::drawCurve(const LinkCurve& curve, const Vec4& color, float lineWidth) {
    master->SetColor(color);
    const int pieces = curve.pieces();
    UI_Master::LinePoint before = {curve.at(0), curve.normal(0)};
    for (int i = 1; i <= pieces; ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(pieces);
        const UI_Master::LinePoint next = {curve.at(t), curve.normal(t)};
        master->DrawSoftLine(lineWidth, before, next);
        before = next;
    }
}

void UI_NodeCanvas::drawDashes(const LinkCurve& curve, const Vec4& color, float lineWidth,
                               float dashShift) {
    master->SetColor(color);
    const float period = std::max(kDashPeriod * view.zoom / curve.length, 0.01f);
    const float dash = period * kDash / kDashPeriod;
    const float phase = std::fmod(dashShift, kDashPeriod) / kDashPeriod * period;
    for (float start = phase - period; start < 1; start += period) {
        const float from = std::max(start, 0.0f), to = std::min(start + dash, 1.0f);
        if (from >= to) continue;
        master->DrawSoftLine(lineWidth, {curve.at(from), curve.normal(from)},
                             {curve.at(to), curve.normal(to)});
    }
}

void UI_NodeCanvas::drawBoxes() {
    for (const auto& box : boxes_) {
        box->dashShift = std::fmod(box->dashShift + kDashSpeed, kDashPeriod);
        if (!isVisible(*box)) continue;
        if (const Node* node = host.graph().findNode(box->id)) {
            box->error = node->hasError;
            box->switchedOff = node->disabled != 0;
        }
        drawSockets(*box);
        if (box.get() == master->captured) continue;  // drawn after everything
        box->Draw();
        drawMarks(*box);
    }
}

void UI_NodeCanvas::drawSockets(const UI_Node& box) {
    const bool tiny = view.zoom < kLeastSocketZoom;  // then only what lights up is seen
    const bool linkInHand = gesture_ == Gesture::DragLink;
    const Vec4& bright = master->colorSlots[kColorKeyed];
    for (const NodeSocket& socket : box.sockets) {
        const UI_Node* source = box.inputLinks[static_cast<std::size_t>(socket.input)];
        const bool lit = linkInHand && linkDrag_.fromOutput && wouldTake(box, socket.input);
        if (tiny && !lit) continue;
        const bool hovered = box.hoverInput == socket.input;
        const int more = lit || hovered ? 2 : 0;
        const int half = std::max(view.scaled(4), 1), rise = std::max(view.scaled(5), 2);
        Vec4 color = lit ? bright : source != nullptr ? source->color : kEmptySocket;
        if (linkInHand && linkDrag_.fromOutput && !lit) color.a = 0.3f;
        if (hovered) color = master->colorSlots[kColorText];
        master->SetColor(WithAlpha(color, box.enabled ? 1 : kFoldedAlpha));
        master->FillRect(view.screenX(socket.x) - half - more / 2,
                         view.screenY(socket.y) - rise - more, 2 * half + 1 + more, rise + more);
    }
    if (!box.hasOutput) return;
    const bool lit = linkInHand && !linkDrag_.fromOutput && wouldFeed(box);
    if (tiny && !lit) return;
    const bool hovered = hover_.box == &box && hover_.part == Part::Output;
    const int reach = std::max(view.scaled(hovered || lit ? 11 : 8), 2);
    const Vec4& color = lit ? bright : hovered ? master->colorSlots[kColorText] : box.color;
    master->SetColor(WithAlpha(color, box.enabled ? 1 : kFoldedAlpha));
    master->FillRect(view.screenX(box.x + box.width / 2) - reach, view.screenY(box.y + box.height),
                     2 * reach, std::max(view.scaled(4), lit ? 2 : 1));
}

// What lies over a box: a veil over what is folded away, and a light edge under the pointer.
void UI_NodeCanvas::drawMarks(const UI_Node& box) {
    const int left = view.screenX(box.x), top = view.screenY(box.y);
    const int boxWidth = view.screenX(box.x + box.width) - left;
    const int boxHeight = view.screenY(box.y + box.height) - top;
    if (!box.enabled) {
        master->SetColor(kVeil);
        master->FillRect(left, top, boxWidth, boxHeight);
    }
    if (hover_.box != &box || hover_.part != Part::Body || !box.enabled || box.keyed) return;
    master->SetColor(kSoftWhite);
    master->OutlineRect(left, top, boxWidth, boxHeight);
}

void UI_NodeCanvas::drawHint() {
    const std::string_view hint = "Press Tab to make the first node";
    const int textWidth = master->MeasureText(kTextSize, hint);
    master->DrawText(x + (width - textWidth) / 2, y + height / 2, kTextSize, kFaint, hint);
}

void UI_NodeCanvas::drawGesture() {
    const int px = master->mouseX, py = master->mouseY;
    if (gesture_ == Gesture::RubberBand) {
        const int left = std::min(startX_, px), top = std::min(startY_, py);
        const int w = std::abs(px - startX_), h = std::abs(py - startY_);
        const Vec4& bright = master->colorSlots[kColorKeyed];
        master->SetColor(WithAlpha(bright, 0.08f));
        master->FillRect(left, top, w, h);
        master->SetColor(WithAlpha(bright, 0.8f));
        master->OutlineRect(left, top, w, h);
    } else if (gesture_ == Gesture::Knife) {
        master->SetColor(kKnife);
        master->DrawThickLine(2, startX_, startY_, px, py);
    } else if (gesture_ == Gesture::DragLink) {
        const UI_Node* box = boxOf(linkDrag_.fromOutput ? linkDrag_.source : linkDrag_.target);
        if (box == nullptr) return;
        const Vec2 pointer = {static_cast<float>(px), static_cast<float>(py)};
        if (!linkDrag_.fromOutput && linkDrag_.port >= static_cast<int>(box->sockets.size()))
            return;
        const LinkCurve curve =
            linkDrag_.fromOutput ? LinkCurve(outputPlace(*box), pointer, view.zoom)
                                 : LinkCurve(pointer, socketPlace(*box, linkDrag_.port), view.zoom);
        drawCurve(curve, linkDrag_.fromOutput ? box->color : master->colorSlots[kColorKeyed],
                  std::max(kStressedWidth * view.zoom, 1.5f));
    }
}

// The name of the input under the pointer, with what feeds it, or what is wrong with the node.
void UI_NodeCanvas::drawHoverName() {
    Hit hit = hover_;
    if (gesture_ == Gesture::DragLink && linkDrag_.fromOutput) {
        hit = hitAt(master->mouseX, master->mouseY);
    } else if (gesture_ != Gesture::None || master->captured != nullptr) {
        return;
    }
    if (hit.part == Part::Body && hit.box->error) drawFault(*hit.box);
    if (hit.part != Part::Socket) return;
    const auto input = static_cast<std::size_t>(hit.input);
    std::string text = hit.box->inputNames[input];
    if (const UI_Node* source = hit.box->inputLinks[input]) text += " < " + titleOf(source->id);
    const Vec2 socket = socketPlace(*hit.box, hit.input);
    master->ShowTooltip(std::move(text), static_cast<int>(socket.x) + 10,
                        static_cast<int>(socket.y) - 34);
}

void UI_NodeCanvas::drawFault(const UI_Node& box) {
    const Node* node = host.graph().findNode(box.id);
    if (node == nullptr) return;
    const std::string fault = MainFaultOf(*node);
    if (!fault.empty()) {
        master->ShowTooltip(fault, view.screenX(box.x), view.screenY(box.y + box.height) + 8);
    }
}
