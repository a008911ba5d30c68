// Gestures of the key timeline.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "core/engine.h"
#include "editor/ui_button.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_key_timeline_layout.h"
#include "editor/ui_master.h"
#include "editor/ui_selection.h"
#include "editor/ui_value_control.h"
#include "platform/window.h"

namespace {

constexpr float kZoomIn = 1.25f;
constexpr int kDragStarts = 3;  // pixels that the pointer must have moved
constexpr int kLeastSnapPixels = 10;
constexpr int kRowsAWheelNotch = 3;

}  // namespace

bool UI_KeyTimeline::inGraph(int pixelX, int pixelY) const {
    return pixelX >= view.left && pixelX < view.left + view.width && pixelY >= view.top &&
           pixelY < view.top + view.height;
}

bool UI_KeyTimeline::inRuler(int pixelX, int pixelY) const {
    return pixelX >= view.left && pixelX < view.left + view.width &&
           pixelY >= view.top - kRulerHeight && pixelY < view.top;
}

bool UI_KeyTimeline::inList(int pixelX, int pixelY) const {
    return pixelX >= x && pixelX < view.left && pixelY >= y + kHeaderHeight && pixelY < y + height;
}

// The nearest key that the pointer is on; of several at the same place the last.
int UI_KeyTimeline::keyAt(int pixelX, int pixelY) const {
    const KeyframeTrack* track = ChosenTrack();
    if (track == nullptr) return -1;
    int found = -1, nearest = kKeyReach + 1;
    for (std::size_t i = 0; i < track->keys().size(); ++i) {
        const Keyframe& key = track->keys()[i];
        const int away =
            std::max(std::abs(view.xOf(key.time) - pixelX), std::abs(view.yOf(key.value) - pixelY));
        if (away > kKeyReach || away > nearest) continue;
        nearest = away;
        found = static_cast<int>(i);
    }
    return found;
}

float UI_KeyTimeline::snapStep() const {
    return grid.stepAtLeast(kLeastSnapPixels / view.pixelsPerSecond);
}

float UI_KeyTimeline::snapped(float timeSeconds, const UI_Event& event) const {
    const float time = std::max(0.0f, timeSeconds);
    return snaps_ && !event.ctrl ? BeatGrid::Snapped(time, snapStep()) : time;
}

bool UI_KeyTimeline::HandleEvent(UI_Event* event) {
    if (hidden || (drag_ == Drag::None && !Contains(event->x, event->y))) return false;
    followPicks();
    const bool handled = handle(event);
    notePicks();
    return handled;
}

bool UI_KeyTimeline::handle(UI_Event* event) {
    if (drag_ != Drag::None) return handleDrag(*event);
    if (handleControls(event)) return true;
    if (handleKeyPress(*event) || handleWheel(*event) || handleList(*event)) return true;
    switch (event->type) {
        case UI_EventType::LeftDown:
        case UI_EventType::LeftDoubleClick:
            if (inRuler(event->x, event->y)) {
                startDrag(Drag::Seek, *event);
                seekTo(event->x, *event);
            } else if (inGraph(event->x, event->y)) {
                pressGraph(*event);
            }
            return true;
        case UI_EventType::RightDown:
            if (const int key = keyAt(event->x, event->y); key >= 0) {
                cycleMode(static_cast<std::size_t>(key));
            }
            return true;
        case UI_EventType::MiddleDown:
            if (inGraph(event->x, event->y)) startDrag(Drag::Pan, *event);
            return true;
        default:
            return false;
    }
}

// The selection and the numbers have gestures with every button and key.
bool UI_KeyTimeline::handleControls(UI_Event* event) {
    for (UI_Object* control : controls()) {
        if (!control->Contains(event->x, event->y)) continue;
        const UI_EventType type = event->type;
        control->HandleEvent(event);
        return type != UI_EventType::KeyDown && type != UI_EventType::KeyUp;
    }
    return false;
}

bool UI_KeyTimeline::handleKeyPress(const UI_Event& event) {
    if (event.type != UI_EventType::KeyDown) return false;
    if (event.value == kKeyDelete || event.value == kKeyBack) {
        followsKeys_ = false;
        DeletePicked();
        return true;
    }
    if (event.value == kKeyHome) {
        FrameTrack();
        return true;
    }
    const KeyframeTrack* track = ChosenTrack();
    if (event.value != 'A' || !event.ctrl || track == nullptr) return false;
    for (std::size_t i = 0; i < track->keys().size(); ++i) picked_.insert(i);
    return true;
}

bool UI_KeyTimeline::handleWheel(const UI_Event& event) {
    if (event.type != UI_EventType::Wheel || event.value == 0) return false;
    if (inList(event.x, event.y)) {
        listScroll_ += event.value > 0 ? -kRowsAWheelNotch : kRowsAWheelNotch;
        return true;
    }
    followsKeys_ = false;
    const float factor = event.value > 0 ? kZoomIn : 1 / kZoomIn;
    if (event.ctrl) {
        view.zoomValues(event.y, factor);
    } else {
        view.zoomTime(event.x, factor);
    }
    return true;
}

bool UI_KeyTimeline::handleList(const UI_Event& event) {
    if (event.type != UI_EventType::LeftDown || !inList(event.x, event.y)) return false;
    ChooseTrack(listScroll_ + (event.y - y - kHeaderHeight) / kListRow);
    return true;
}

// A press on a key takes hold of it, a press on empty ground begins a frame, and a second quick one
// there adds a key; on a key it moves the playhead to it.
void UI_KeyTimeline::pressGraph(const UI_Event& event) {
    const KeyframeTrack* track = ChosenTrack();
    if (track == nullptr) return;
    const int key = keyAt(event.x, event.y);
    const bool twice = event.type == UI_EventType::LeftDoubleClick;
    if (key < 0) {
        if (twice) {
            addKeyAt(event);
            return;
        }
        adds_ = master->shiftKeyDown();
        startDrag(Drag::Frame, event);
        return;
    }
    const auto index = static_cast<std::size_t>(key);
    if (twice && seek) seek(track->keys()[index].time);
    if (!picked_.contains(index)) {
        if (!master->shiftKeyDown()) picked_.clear();
        picked_.insert(index);
    }
    grabbed_ = index;
    dragKeys_ = {track->keys(), picked_};
    startDrag(Drag::Keys, event);
}

void UI_KeyTimeline::addKeyAt(const UI_Event& event) {
    KeyframeTrack* track = ChosenTrack();
    const float time = snapped(view.timeAt(event.x), event);
    track->insertKey(time, view.valueAt(event.y));
    picked_.clear();
    for (std::size_t i = 0; i < track->keys().size(); ++i) {
        if (track->keys()[i].time == time) picked_ = {i};
    }
}

void UI_KeyTimeline::cycleMode(std::size_t index) {
    KeyframeTrack* track = ChosenTrack();
    const std::int32_t mode = NextKeyMode(track->keys()[index].mode);
    track->setKeyMode(index, mode);
    picked_ = {index};
    if (tell) tell(std::string("The way to this key: ") + KeyModeName(mode));
}

void UI_KeyTimeline::startDrag(Drag kind, const UI_Event& event) {
    if (!takeCapture(true)) return;
    if (kind != Drag::Seek) followsKeys_ = false;
    drag_ = kind;
    pressX_ = lastX_ = event.x;
    pressY_ = lastY_ = event.y;
    moved_ = false;
}

void UI_KeyTimeline::endDrag() {
    drag_ = Drag::None;
    releaseCapture();
}

void UI_KeyTimeline::seekTo(int pixelX, const UI_Event& event) {
    if (seek) seek(snapped(view.timeAt(pixelX), event));
}

bool UI_KeyTimeline::handleDrag(const UI_Event& event) {
    if (event.type == UI_EventType::MouseMove) {
        moved_ |= std::max(std::abs(event.x - pressX_), std::abs(event.y - pressY_)) >= kDragStarts;
        if (drag_ == Drag::Seek) seekTo(event.x, event);
        if (drag_ == Drag::Pan) view.pan(event.x - lastX_, event.y - lastY_);
        if (drag_ == Drag::Keys && moved_) dragKeys(event);
        lastX_ = event.x;
        lastY_ = event.y;
        return true;
    }
    if (drag_ == Drag::Pan ? event.type == UI_EventType::MiddleUp
                           : event.type == UI_EventType::LeftUp) {
        if (drag_ == Drag::Frame) endPickFrame(event);
        // A click on one of several picked keys leaves only that one.
        if (drag_ == Drag::Keys && !moved_ && !master->shiftKeyDown()) picked_ = {grabbed_};
        endDrag();
    }
    if (event.type == UI_EventType::KeyUp && event.value == kKeyEscape) {
        KeyframeTrack* track = ChosenTrack();
        if (drag_ == Drag::Keys && track != nullptr) {
            track->setKeys(dragKeys_.keys);
            picked_ = dragKeys_.picked;
        }
        endDrag();
    }
    return true;
}

// From where the drag began, so that nothing is lost on the way. The key under the pointer goes to
// the beats, the others keep their distance to it.
void UI_KeyTimeline::dragKeys(const UI_Event& event) {
    KeyframeTrack* track = ChosenTrack();
    if (track == nullptr || grabbed_ >= dragKeys_.keys.size()) {
        endDrag();
        return;
    }
    int dx = event.x - pressX_, dy = event.y - pressY_;
    if (master->shiftKeyDown()) (std::abs(dx) > std::abs(dy) ? dy : dx) = 0;
    const float from = dragKeys_.keys[grabbed_].time;
    const float to =
        dx == 0 ? from : snapped(from + static_cast<float>(dx) / view.pixelsPerSecond, event);
    const PickedKeys after =
        MoveKeys(dragKeys_, to - from, -static_cast<float>(dy) / view.pixelsPerValue);
    track->setKeys(after.keys);
    picked_ = after.picked;
}

void UI_KeyTimeline::endPickFrame(const UI_Event& event) {
    const KeyframeTrack* track = ChosenTrack();
    if (!adds_) picked_.clear();
    if (track == nullptr || !moved_) return;
    const auto [left, right] = std::minmax(pressX_, event.x);
    const auto [top, bottom] = std::minmax(pressY_, event.y);
    for (std::size_t i = 0; i < track->keys().size(); ++i) {
        const int keyX = view.xOf(track->keys()[i].time), keyY = view.yOf(track->keys()[i].value);
        if (keyX >= left && keyX <= right && keyY >= top && keyY <= bottom) picked_.insert(i);
    }
}
