#include "editor/key_timeline_view.h"

#include <algorithm>
#include <cmath>

#include "editor/ui_pixels.h"

namespace {

constexpr float kLeastPixelsPerSecond = 0.05f, kMostPixelsPerSecond = 5000;
constexpr float kLeastPixelsPerValue = 1e-6f, kMostPixelsPerValue = 1e7f;
constexpr float kLeastBeatsPerMinute = 1;
constexpr float kRoom = 0.08f;  // of the range, on both sides

// Numbers of files may be anything, and a float of that size still tells pixels apart.
bool IsRange(float least, float most) {
    constexpr float kFurthest = 1e9f;
    return least <= most && least >= -kFurthest && most <= kFurthest;
}

}  // namespace

float BeatGrid::beatSeconds() const {
    return 60.0f / std::max(beatsPerMinute, kLeastBeatsPerMinute);
}

float BeatGrid::stepAtLeast(float seconds) const {
    constexpr float kLongest = 1e6f;
    float step = beatSeconds() / 4;
    while (step < seconds && step < kLongest) step *= 4;
    return step;
}

float BeatGrid::Snapped(float timeSeconds, float stepSeconds) {
    return std::round(timeSeconds / stepSeconds) * stepSeconds;
}

float KeyTimelineView::timeAt(int pixelX) const {
    return startSeconds + static_cast<float>(pixelX - left) / pixelsPerSecond;
}

float KeyTimelineView::valueAt(int pixelY) const {
    return topValue - static_cast<float>(pixelY - top) / pixelsPerValue;
}

int KeyTimelineView::xOf(float timeSeconds) const {
    return left + TruncateToPixel(std::round((timeSeconds - startSeconds) * pixelsPerSecond));
}

int KeyTimelineView::yOf(float value) const {
    return top + TruncateToPixel(std::round((topValue - value) * pixelsPerValue));
}

void KeyTimelineView::zoomTime(int aboutX, float factor) {
    const float time = timeAt(aboutX);
    pixelsPerSecond =
        std::clamp(pixelsPerSecond * factor, kLeastPixelsPerSecond, kMostPixelsPerSecond);
    startSeconds = time - static_cast<float>(aboutX - left) / pixelsPerSecond;
}

void KeyTimelineView::zoomValues(int aboutY, float factor) {
    const float value = valueAt(aboutY);
    pixelsPerValue = std::clamp(pixelsPerValue * factor, kLeastPixelsPerValue, kMostPixelsPerValue);
    topValue = value + static_cast<float>(aboutY - top) / pixelsPerValue;
}

void KeyTimelineView::pan(int dx, int dy) {
    startSeconds -= static_cast<float>(dx) / pixelsPerSecond;
    topValue += static_cast<float>(dy) / pixelsPerValue;
}

void KeyTimelineView::frameTimes(float least, float most) {
    if (!IsRange(least, most)) return;
    constexpr float kShortest = 8;  // seconds
    const float shown = std::max(most - least, kShortest), range = shown * (1 + 2 * kRoom);
    pixelsPerSecond =
        std::clamp(static_cast<float>(width) / range, kLeastPixelsPerSecond, kMostPixelsPerSecond);
    startSeconds = (least + most) / 2 - static_cast<float>(width) / pixelsPerSecond / 2;
    // Of what lies before the demo no more than that room.
    if (least >= 0) startSeconds = std::max(startSeconds, -kRoom * shown);
}

void KeyTimelineView::frameValues(float least, float most) {
    if (!IsRange(least, most)) return;
    const float level = std::max(1e-2f, std::fabs(most) * 0.5f);  // a level track is no line
    const float range = std::max(most - least, level) * (1 + 2 * kRoom);
    pixelsPerValue =
        std::clamp(static_cast<float>(height) / range, kLeastPixelsPerValue, kMostPixelsPerValue);
    topValue = (least + most) / 2 + static_cast<float>(height) / pixelsPerValue / 2;
}

float RoundStepAtLeast(float size) {
    if (!(size > 1e-30f)) return 1e-30f;
    const float power = std::pow(10.0f, std::floor(std::log10(size)));
    for (const float factor : {1.0f, 2.0f, 5.0f}) {
        if (power * factor >= size) return power * factor;
    }
    return power * 10;
}
