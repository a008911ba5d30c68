// Drawing of the key timeline.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <span>

#include "core/engine.h"
#include "editor/ui_button.h"
#include "editor/ui_clip.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_key_timeline_layout.h"
#include "editor/ui_labels.h"
#include "editor/ui_pixels.h"
#include "editor/ui_selection.h"
#include "editor/ui_value_control.h"

namespace {

constexpr int kTextSize = 11;  // pixels
constexpr int kLabelGap = 10;  // pixels, between a key and what is written beside it
constexpr int kCurveStep = 2;  // pixels from sample to sample
constexpr int kLeastGridPixels = 14, kLeastLabelPixels = 70, kLeastValuePixels = 34;
constexpr Vec4 kGraphGround = {0.07f, 0.07f, 0.075f, 1};
constexpr Vec4 kGridLine = {0.13f, 0.13f, 0.14f, 1};
constexpr Vec4 kBarLine = {0.22f, 0.22f, 0.24f, 1};
constexpr Vec4 kZeroLine = {0.3f, 0.3f, 0.33f, 1};
constexpr Vec4 kQuiet = {0.6f, 0.6f, 0.6f, 1};
constexpr Vec4 kCurve = {0.45f, 0.78f, 1, 1};
constexpr Vec4 kSibling = {0.45f, 0.78f, 1, 0.3f};
constexpr Vec4 kBeforeDemo = {0, 0, 0, 0.45f};
constexpr Vec4 kPlayhead = {1, 0.3f, 0.25f, 1};
constexpr Vec4 kPickFill = {1, 0.7f, 0, 0.12f};

// Values of a track at growing times; keys in order are walked once.
class CurveWalk {
  public:
    explicit CurveWalk(const KeyframeTrack& track)
        : track_(track),
          inOrder_(std::is_sorted(
              track.keys().begin(), track.keys().end(),
              [](const Keyframe& a, const Keyframe& b) { return a.time < b.time; })) {}

    std::optional<float> at(float timeSeconds) {
        const auto& keys = track_.keys();
        if (!inOrder_ || keys.size() < 2) return track_.valueAt(timeSeconds);
        while (next_ < keys.size() && keys[next_].time <= timeSeconds) ++next_;
        if (next_ == 0) return keys.front().value;
        if (next_ == keys.size()) return keys.back().value;
        const Keyframe &from = keys[next_ - 1], &to = keys[next_];
        const float t = (timeSeconds - from.time) / (to.time - from.time);
        return from.value + (to.value - from.value) * EasingWeight(to.mode, t);
    }

    // Of keys in order; none of others.
    std::span<const Keyframe> keysBetween(float after, float before) {
        const auto& keys = track_.keys();
        if (!inOrder_) return {};
        while (firstBetween_ < keys.size() && keys[firstBetween_].time <= after) ++firstBetween_;
        std::size_t end = firstBetween_;
        while (end < keys.size() && keys[end].time < before) ++end;
        return {keys.data() + firstBetween_, end - firstBetween_};
    }

  private:
    const KeyframeTrack& track_;
    std::size_t firstBetween_ = 0;
    bool inOrder_;
    std::size_t next_ = 0;
};

std::string ShortNumber(float number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", static_cast<double>(number));
    return text;
}

std::string RulerText(float seconds, float step) {
    char text[48];
    const int minutes = TruncateToPixel(seconds / 60);
    const float rest = seconds - static_cast<float>(minutes) * 60;
    std::snprintf(text, sizeof text, step < 1 ? "%d:%05.2f" : "%d:%02.0f", minutes,
                  static_cast<double>(rest));
    return text;
}

// "ID.VALUE" of a track of one channel, "ID.VALUE.x"; empty for a track without channel.
std::string_view StemOf(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot + 2 != name.size()) return {};
    return std::string_view(name).substr(0, dot);
}

}  // namespace

void UI_KeyTimeline::Draw() {
    if (hidden) return;
    followPicks();
    placeControls();
    followKeys();
    const Vec4* colors = master->colorSlots;
    master->SetColor(colors[kColorPanel]);
    master->FillRect(x, y, width, height);
    drawTrackList();
    const KeyframeTrack* track = ChosenTrack();
    {
        const UI_Clip inside(*master, view.left, view.top - kRulerHeight, view.width,
                             view.height + kRulerHeight);
        master->SetColor(kGraphGround);
        master->FillRect(view.left, view.top, view.width, view.height);
        drawGrid();
        drawValueAxis();
        if (track != nullptr) {
            drawSiblings(*track);
            drawCurve(*track, kCurve, 2);
            drawKeys(*track);
        } else {
            drawEmpty();
        }
        drawPickFrame();
        drawRuler();
        drawPlayhead();
    }
    master->SetColor(colors[kColorWidget]);
    master->OutlineRect(x, y, width, height);
    drawControls();
}

void UI_KeyTimeline::drawControls() {
    const KeyframeTrack* track = ChosenTrack();
    for (std::int32_t mode = kKeyCosine; mode <= kKeyEaseOut; ++mode) {
        UI_Button& button = *modeButtons[mode];
        button.keyed = false;
        for (const std::size_t index : picked_) {
            if (track == nullptr || index >= track->keys().size()) continue;
            const std::int32_t has = track->keys()[index].mode;
            button.keyed |= has == mode || (mode == kKeyCosine && IsCosineMode(has));
        }
    }
    for (UI_Object* control : controls()) control->Draw();
}

void UI_KeyTimeline::drawTrackList() {
    const int top = y + kHeaderHeight, rows = (height - kHeaderHeight) / kListRow;
    const UI_Clip inside(*master, x, top, kListWidth - 2, height - kHeaderHeight);
    const Vec4* colors = master->colorSlots;
    const int count = static_cast<int>(trackChoice.options.size());
    listScroll_ = std::clamp(listScroll_, 0, std::max(0, count - rows));
    for (int row = 0; row < rows && listScroll_ + row < count; ++row) {
        const int index = listScroll_ + row, rowTop = top + row * kListRow;
        const bool chosen = index == trackChoice.value;
        if (chosen) {
            master->SetColor(colors[kColorKeyed]);
            master->FillRect(x + 1, rowTop, kListWidth - 8, kListRow);
        }
        const Vec4 ink = chosen ? Vec4{0, 0, 0, 1} : kQuiet;
        master->DrawText(x + 8, rowTop + 13, kTextSize, ink,
                         trackChoice.options[static_cast<std::size_t>(index)]);
    }
    if (count <= rows) return;
    const int barHeight = std::max(20, (rows * kListRow) * rows / count);
    const int barTop = top + (rows * kListRow - barHeight) * listScroll_ / (count - rows);
    master->SetColor(colors[kColorPanelBorder]);
    master->FillRect(x + kListWidth - 6, barTop, 4, barHeight);
}

void UI_KeyTimeline::drawGrid() {
    const float fine = grid.stepAtLeast(kLeastGridPixels / view.pixelsPerSecond);
    const float coarse = fine * 4;
    const float first = std::max(0.0f, std::floor(view.startSeconds / fine));
    for (int n = 0; n <= view.width / kLeastGridPixels + 2; ++n) {
        const float i = first + static_cast<float>(n);
        const int lineX = view.xOf(i * fine);
        const bool strong = std::fmod(i * fine + fine / 2, coarse) < fine;
        master->SetColor(strong ? kBarLine : kGridLine);
        master->FillRect(lineX, view.top, 1, view.height);
    }
    const int zero = view.xOf(0);
    if (zero > view.left) {
        master->SetColor(kBeforeDemo);
        master->FillRect(view.left, view.top, zero - view.left, view.height);
    }
}

void UI_KeyTimeline::drawValueAxis() {
    const float step = RoundStepAtLeast(kLeastValuePixels / view.pixelsPerValue);
    const float lowest = view.valueAt(view.top + view.height);
    const int lines = view.height / kLeastValuePixels + 2;
    for (int i = 0; i <= lines; ++i) {
        float value = (std::floor(lowest / step) + static_cast<float>(i)) * step;
        if (std::fabs(value) < step / 2) value = 0;
        const int lineY = view.yOf(value);
        master->SetColor(value == 0 ? kZeroLine : kGridLine);
        master->FillRect(view.left, lineY, view.width, 1);
        master->DrawText(view.left + 6, lineY - 3, kTextSize, kQuiet, ShortNumber(value));
    }
}

void UI_KeyTimeline::drawRuler() {
    const int top = view.top - kRulerHeight;
    master->SetColor(master->colorSlots[kColorSelection]);
    master->FillRect(view.left, top, view.width, kRulerHeight);
    const float step = grid.stepAtLeast(kLeastLabelPixels / view.pixelsPerSecond);
    const float first = std::max(0.0f, std::floor(view.startSeconds / step));
    for (int n = 0; n <= view.width / kLeastLabelPixels + 2; ++n) {
        const float i = first + static_cast<float>(n);
        const int markX = view.xOf(i * step);
        master->SetColor(master->colorSlots[kColorPanelBorder]);
        master->FillRect(markX, top + kRulerHeight - 6, 1, 6);
        master->DrawText(markX + 4, top + 15, kTextSize, kQuiet, RulerText(i * step, step));
    }
}

// Through every key, so that no peak falls between two samples.
void UI_KeyTimeline::drawCurve(const KeyframeTrack& track, const Vec4& color, float lineWidth) {
    CurveWalk walk(track);
    master->SetColor(color);
    std::optional<float> before;
    int beforeX = 0;
    float beforeTime = view.timeAt(view.left);
    const auto lineTo = [&](int pixel, std::optional<float> value) {
        if (value && before) {
            master->DrawThickLine(lineWidth, beforeX, view.yOf(*before), pixel, view.yOf(*value));
        }
        before = value;
        beforeX = pixel;
    };
    for (int pixel = view.left; pixel <= view.left + view.width; pixel += kCurveStep) {
        const float time = view.timeAt(pixel);
        for (const Keyframe& key : walk.keysBetween(beforeTime, time)) {
            lineTo(view.xOf(key.time), key.value);
        }
        lineTo(pixel, walk.at(time));
        beforeTime = time;
    }
}

// The other channels of the same value.
void UI_KeyTimeline::drawSiblings(const KeyframeTrack& track) {
    const std::string_view stem = StemOf(track.name);
    if (stem.empty() || track.owner == nullptr) return;
    const auto* list = engine_.tracks.find(track.owner->id);
    if (list == nullptr) return;
    for (const auto& other : *list) {
        if (other.get() != &track && StemOf(other->name) == stem) drawCurve(*other, kSibling, 1.5f);
    }
}

// A key shows the easing of the way to it by its form: round, level, or pointed to one side.
void UI_KeyTimeline::drawKeys(const KeyframeTrack& track) {
    const Vec4* colors = master->colorSlots;
    const auto& keys = track.keys();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const int keyX = view.xOf(keys[i].time), keyY = view.yOf(keys[i].value);
        if (keyX < view.left - 8 || keyX > view.left + view.width + 8) continue;
        const bool picked = picked_.contains(i);
        master->SetColor(colors[picked ? kColorKeyed : kColorForeground]);
        if (keys[i].mode == kKeyLinear) {
            master->FillRect(keyX - 4, keyY - 4, 9, 9);
        } else if (keys[i].mode == kKeyEaseIn) {
            for (int c = 0; c < 9; ++c) master->FillRect(keyX - 4 + c, keyY - c / 2, 1, c | 1);
        } else if (keys[i].mode == kKeyEaseOut) {
            for (int c = 0; c < 9; ++c)
                master->FillRect(keyX - 4 + c, keyY - (8 - c) / 2, 1, (8 - c) | 1);
        } else {
            for (int c = -5; c <= 5; ++c) {
                const int reach = static_cast<int>(std::sqrt(static_cast<float>(27 - c * c)));
                master->FillRect(keyX + c, keyY - reach, 1, 2 * reach + 1);
            }
        }
        if (!picked || picked_.size() > 1) continue;
        const std::string text = ShortNumber(keys[i].value) + " at " + TimeLabelText(keys[i].time) +
                                 ", " + KeyModeName(keys[i].mode);
        // On the side on which there is room for it.
        const int textWidth = master->MeasureText(kTextSize, text);
        const bool fits = keyX + kLabelGap + textWidth <= view.left + view.width;
        const int textLeft = fits ? keyX + kLabelGap : keyX - kLabelGap - textWidth;
        master->DrawText(textLeft, keyY - 8, kTextSize, colors[kColorKeyed], text);
    }
}

void UI_KeyTimeline::drawPlayhead() {
    if (!now) return;
    const int headX = view.xOf(now());
    if (headX < view.left - 8 || headX > view.left + view.width + 8) return;
    master->SetColor(kPlayhead);
    master->FillRect(headX, view.top - kRulerHeight, 1, view.height + kRulerHeight);
    for (int row = 0; row < 7; ++row) {
        master->FillRect(headX - 6 + row, view.top - kRulerHeight + row, 13 - 2 * row, 1);
    }
}

void UI_KeyTimeline::drawPickFrame() {
    if (drag_ != Drag::Frame || !moved_) return;
    const int left = std::min(pressX_, lastX_), top = std::min(pressY_, lastY_);
    const int w = std::abs(pressX_ - lastX_), h = std::abs(pressY_ - lastY_);
    master->SetColor(kPickFill);
    master->FillRect(left, top, w, h);
    master->SetColor(master->colorSlots[kColorKeyed]);
    master->OutlineRect(left, top, w, h);
}

void UI_KeyTimeline::drawEmpty() {
    constexpr const char* kText =
        "Nothing is animated yet: point at a value in the properties and press S.";
    const int textX = view.left + (view.width - master->MeasureText(12, kText)) / 2;
    master->DrawText(textX, view.top + view.height / 2, 12, kQuiet, kText);
}
