#include "editor/ui_master.h"

#include <algorithm>

#include "editor/ui_labels.h"
#include "platform/window.h"

namespace {

constexpr Vec4 kColors[kColorSlotCount] = {
    {0.95f, 0.95f, 0.95f, 1}, {0.05f, 0.05f, 0.05f, 1}, {0.5f, 0.5f, 0.5f, 1},
    {0.2f, 0.2f, 0.2f, 1},    {0.1f, 0.1f, 0.1f, 1},    {0.7f, 0.5f, 0.2f, 1},
    {0.5f, 0.5f, 0.6f, 1},    {0.95f, 0.95f, 0.95f, 1}, {0.25f, 0.25f, 0.25f, 1},
    {1, 0.7f, 0, 1},
};

constexpr std::uint32_t kFirstMouseMessage = kMessageMouseMove;
constexpr std::uint32_t kLastMouseMessage = kMessageMiddleUp;

std::optional<UI_EventType> EventTypeOf(std::uint32_t message) {
    switch (message) {
        case kMessageMouseMove:
            return UI_EventType::MouseMove;
        case kMessageLeftDown:
            return UI_EventType::LeftDown;
        case kMessageLeftUp:
            return UI_EventType::LeftUp;
        case kMessageLeftDoubleClick:
            return UI_EventType::LeftDoubleClick;
        case kMessageRightDown:
            return UI_EventType::RightDown;
        case kMessageRightUp:
            return UI_EventType::RightUp;
        case kMessageMiddleDown:
            return UI_EventType::MiddleDown;
        case kMessageMiddleUp:
            return UI_EventType::MiddleUp;
        case kMessageWheel:
            return UI_EventType::Wheel;
        case kMessageKeyDown:
            return UI_EventType::KeyDown;
        case kMessageKeyUp:
            return UI_EventType::KeyUp;
        case kMessageCharacter:
            return UI_EventType::CharInput;
        default:
            return std::nullopt;
    }
}

bool IsKey(UI_EventType type) {
    return type == UI_EventType::KeyDown || type == UI_EventType::KeyUp;
}

}  // namespace

UI_Master::UI_Master() {
    std::copy(std::begin(kColors), std::end(kColors), colorSlots);
}

UI_Master::~UI_Master() = default;

bool UI_Master::Init() {
    width = 1920;
    height = 1080;
    mouseX = 0;
    verdana.reset();
    courier.reset();
    batch_ = std::make_unique<UiBatch>();
    verdana = std::make_unique<TextRenderer>("fonts/verdana.ttf", *batch_);
    courier = std::make_unique<TextRenderer>("fonts/courier.ttf", *batch_);
    return true;
}

void UI_Master::TakeMissingFonts(const std::string& folder) {
    for (std::unique_ptr<TextRenderer>* font : {&verdana, &courier}) {
        if ((*font)->usable()) continue;
        auto other = std::make_unique<TextRenderer>(folder + "/" + (*font)->fileName(), *batch_);
        if (other->usable()) *font = std::move(other);
    }
}

void UI_Master::Dispatch(const WindowMessage& message) {
    const std::optional<UI_EventType> type = EventTypeOf(message.message);
    if (!type) return;
    if (message.message >= kFirstMouseMessage && message.message <= kLastMouseMessage) {
        // Places of the mouse are signed 16-bit words.
        mouseX = static_cast<std::int16_t>(message.x);
        mouseY = static_cast<std::int16_t>(message.y);
    }
    if (*type == UI_EventType::KeyDown && message.value == kKeyControl) ctrlHeld = true;
    if (*type == UI_EventType::KeyDown && message.value == kKeyShift) shiftHeld = true;
    // Shift stays held until ctrl next comes up: the editor's gestures rely on it.
    if (*type == UI_EventType::KeyUp && message.value == kKeyControl) ctrlHeld = shiftHeld = false;
    UI_Event event = {*type, message.value, mouseX, mouseY, ctrlHeld, shiftHeld, message.repeat};
    // So is the turn of the wheel.
    if (*type == UI_EventType::Wheel) event.value = static_cast<std::int16_t>(message.value);
    sendToWidgets(event);
}

void UI_Master::sendToWidgets(UI_Event& event) {
    if (captured != nullptr) {
        captured->HandleEvent(&event);
        return;
    }
    // By index: a widget may add and remove others.
    for (std::size_t i = 0; i < topLevel.size(); ++i) {
        UI_Object* widget = topLevel[i];
        if (!IsKey(event.type) && !widget->Contains(event.x, event.y)) continue;
        if (widget->HandleEvent(&event)) return;
    }
}

void UI_Master::AddTopLevel(UI_Object* widget) {
    widget->SetMaster(this);
    topLevel.push_back(widget);
}

void UI_Master::RemoveTopLevel(UI_Object* widget) {
    std::erase(topLevel, widget);
}

void UI_Master::Forget(UI_Object* widget) {
    RemoveTopLevel(widget);
    if (captured != widget) return;
    captured = nullptr;
    capturedOnTop = false;
}

const std::string& UI_Master::DisplayNameOf(const std::string& id) const {
    return DisplayNameIn(displayNames, id);
}
