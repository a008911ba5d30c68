#include "editor/ui_image_panel.h"

#include <GL/glew.h>

#include <cstdlib>

#include "core/value_keyframe_handler.h"
#include "core/value_object.h"
#include "editor/ui_clip.h"
#include "editor/ui_master.h"
#include "editor/ui_pixels.h"
#include "gpu/gl_image.h"

namespace {

constexpr Vec4 kWhite = {1, 1, 1, 1};
constexpr Vec4 kPinShadow = {0, 0, 0, 0.8f};
constexpr int kPinSize = 5;       // pixels
constexpr int kPinTextSize = 8;   // pixels
constexpr int kPinReachLow = 2;   // of the box that a press must hit, before the pin's place
constexpr int kPinReachHigh = 7;  // and after it

}  // namespace

UI_ImagePanel::UI_ImagePanel(std::string panelName, int panelX, int panelY, int panelWidth,
                             int panelHeight, bool isBare)
    : name(std::move(panelName)), bare(isBare) {
    SetPosition(panelX, panelY);
    SetSize(panelWidth, panelHeight);
}

UI_ImagePanel::~UI_ImagePanel() = default;

Vec2 UI_ImagePanel::toScreen(float px, float py) const {
    const Vec3 place = Mat4TransformPoint(view, {px, py, 0});
    return {place.x, place.y};
}

UI_ImagePanel::ScreenRect UI_ImagePanel::screenRect() const {
    const Vec2 topLeft = toScreen(static_cast<float>(x), static_cast<float>(y));
    const Vec2 bottomRight =
        toScreen(static_cast<float>(x + width), static_cast<float>(y + height));
    return {TruncateToPixel(topLeft.x), TruncateToPixel(topLeft.y),
            TruncateToPixel(bottomRight.x - topLeft.x), TruncateToPixel(bottomRight.y - topLeft.y)};
}

void UI_ImagePanel::pinPlace(const ImagePin& pin, int& pinX, int& pinY) const {
    const Vec2 place =
        toScreen(static_cast<float>(x) + static_cast<float>(width) * pin.position[0],
                 static_cast<float>(y) + static_cast<float>(height) * pin.position[1]);
    pinX = TruncateToPixel(place.x);
    pinY = TruncateToPixel(place.y);
}

void UI_ImagePanel::Draw() {
    // Its view draws it below what lies over the view; having the mouse does not lift it.
    const bool ofView = !bare && clip.enabled;
    if (!ofView) drawAll();
}

void UI_ImagePanel::DrawInView() {
    const UI_Clip inside(*master, clip.x, clip.y, clip.width, clip.height);
    drawAll();
}

void UI_ImagePanel::drawAll() {
    const ScreenRect rect = screenRect();
    if (backdrop != nullptr && !bare) drawBackdrop(rect);
    if (image != nullptr && image->textureCount > 0) drawImage(rect);
    if (bare) return;
    master->SetColor(kWhite);
    master->OutlineRect(rect.x, rect.y, rect.w, rect.h);
    drawPins();
    if (keyed) {
        master->SetColor(master->colorSlots[kColorKeyed]);
        master->OutlineRect(rect.x, rect.y, width, height);
    }
}

// An index without a colour fills with the colour that was in use.
void UI_ImagePanel::drawBackdrop(const ScreenRect& rect) {
    const int index = *backdrop;
    if (index >= 0 && index < kBackdropCount) {
        master->SetColor(kBackdrops[index]);
    }
    master->FillRect(rect.x, rect.y, rect.w, rect.h);
}

void UI_ImagePanel::drawImage(const ScreenRect& rect) {
    master->Flush();
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    master->SetColor(kWhite);
    image->BindTexture(0, GL_TEXTURE0);
    master->DrawTexturedRect(rect.x, rect.y, rect.w, rect.h, false);
    image->UnbindTextures(GL_TEXTURE0);
    glActiveTexture(GL_TEXTURE0);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

void UI_ImagePanel::drawPins() {
    const Vec4& color = master->colorSlots[kColorKeyed];
    for (const std::unique_ptr<ImagePin>& pin : pins) {
        int pinX = 0, pinY = 0;
        pinPlace(*pin, pinX, pinY);
        master->SetColor(kPinShadow);
        master->FillRect(pinX + 1, pinY + 1, kPinSize, kPinSize);
        master->SetColor(color);
        master->FillRect(pinX, pinY, kPinSize, kPinSize);
        master->DrawText(pinX + 8, pinY + 8, kPinTextSize, kPinShadow, pin->label);
        master->DrawText(pinX + 7, pinY + 7, kPinTextSize, color, pin->label);
    }
}

bool UI_ImagePanel::HandleEvent(UI_Event* event) {
    if (bare) return false;
    if (event->type == UI_EventType::Wheel) zoom(event->value);
    if (!panning) {
        if (event->type == UI_EventType::LeftDown && !draggingPin) {
            ImagePin* pin = pinAt(event->x, event->y);
            if (pin != nullptr) {
                startPinDrag(pin, *event);
                return false;
            }
        }
        if (draggingPin) dragPin(*event);
    }
    if (!draggingPin) {
        lastMouseX = event->x;
        lastMouseY = event->y;
        if (!panning && event->type == UI_EventType::RightDown) Mat4Identity(view);
    }
    handlePan(*event);
    return false;
}

// About the last place of the mouse, which stays where it is on the screen.
void UI_ImagePanel::zoom(int delta) {
    const float factor = delta == 0 ? 1.0f : delta > 0 ? 1.1f : 0.9f;
    const float mx = static_cast<float>(lastMouseX), my = static_cast<float>(lastMouseY);
    Mat4 away, scale, back, a, b, old = view;
    Mat4Translation(away, {-mx, -my, 0});
    Mat4Scale(scale, {factor, factor, 1});
    Mat4Translation(back, {mx, my, 0});
    Mat4Multiply(Mat4Multiply(Mat4Multiply(back, a, scale), b, away), view, old);
}

ImagePin* UI_ImagePanel::pinAt(int pointX, int pointY) const {
    for (const std::unique_ptr<ImagePin>& pin : pins) {
        int pinX = 0, pinY = 0;
        pinPlace(*pin, pinX, pinY);
        if (pointX >= pinX - kPinReachLow && pointX <= pinX + kPinReachHigh &&
            pointY >= pinY - kPinReachLow && pointY <= pinY + kPinReachHigh) {
            return pin.get();
        }
    }
    return nullptr;
}

void UI_ImagePanel::startPinDrag(ImagePin* pin, const UI_Event& event) {
    if (!takeCapture(false)) return;
    lastMouseX = event.x;
    lastMouseY = event.y;
    draggingPin = true;
    activePin = pin;
}

void UI_ImagePanel::dragPin(const UI_Event& event) {
    if (event.type == UI_EventType::LeftUp) {
        endPinDrag();
        return;
    }
    if (event.type != UI_EventType::MouseMove || activePin == nullptr) return;
    int dx = event.x - lastMouseX, dy = event.y - lastMouseY;
    lastMouseX = event.x;
    lastMouseY = event.y;
    if (master->shiftKeyDown()) {
        if (std::abs(dx) > std::abs(dy)) {
            dy = 0;
        } else {
            dx = 0;
        }
    }
    movePin(dx, dy);
    // Every drag writes a key, also of a value that has none yet.
    if (activePin->handler != nullptr) {
        activePin->handler->setKeyframe(activePin->nodeId, activePin->valueName);
    }
}

void UI_ImagePanel::movePin(int dx, int dy) {
    Mat4 inverse;
    if (width == 0 || height == 0 || !Mat4Invert(view, inverse)) return;
    float* position = activePin->position;
    const float w = static_cast<float>(width), h = static_cast<float>(height);
    const Vec2 place = toScreen(position[0] * w, position[1] * h);
    const Vec3 moved = Mat4TransformPoint(
        inverse, {place.x + static_cast<float>(dx), place.y + static_cast<float>(dy), 0});
    position[0] = moved.x / w;
    position[1] = moved.y / h;
}

void UI_ImagePanel::endPinDrag() {
    releaseCapture();
    draggingPin = false;
    activePin = nullptr;
}

void UI_ImagePanel::handlePan(const UI_Event& event) {
    if (!panning) {
        const bool starts = !draggingPin && event.type == UI_EventType::MiddleDown &&
                            Contains(event.x, event.y) && takeCapture(true);
        if (!starts) return;
        panning = true;
        panX = event.x;
        panY = event.y;
        return;
    }
    if (event.type == UI_EventType::MiddleUp) {
        panning = false;
        releaseCapture();
    }
    if (event.type == UI_EventType::MouseMove) {
        Mat4 move;
        const Mat4 old = view;
        Mat4Translation(
            move, {static_cast<float>(event.x - panX), static_cast<float>(event.y - panY), 0});
        Mat4Multiply(old, view, move);
        panX = event.x;
        panY = event.y;
    }
}

void UI_ImagePanel::AddPin(const ValueVec2& value, const std::string& label, UI_Panel* owner) {
    auto pin = std::make_unique<ImagePin>();
    pin->position = value.data;
    pin->label = label;
    pin->nodeId = value.nodeId;
    pin->valueName = value.name;
    pin->handler = value.handler;
    pin->owner = owner;
    pins.push_back(std::move(pin));
}

void UI_ImagePanel::RemovePinsOf(const UI_Panel* owner) {
    if (activePin != nullptr && activePin->owner == owner) endPinDrag();
    std::erase_if(pins, [owner](const auto& pin) { return pin->owner == owner; });
}

void UI_ImagePanel::ClearPins() {
    if (activePin != nullptr) endPinDrag();
    pins.clear();
}
