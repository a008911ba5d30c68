// The part of a keyframe track that is on the screen: which seconds and values lie at which pixels,
// and the grid of beats that keys snap to. No state of others; any thread.
#pragma once

#include "gpu/math_types.h"

// Beats of music at a steady speed from time 0.
struct BeatGrid {
    float beatsPerMinute = 120;

    float beatSeconds() const;
    // The finest step of quarter beat, beat, bar of four beats, and fourfold on, that is at least
    // so long.
    float stepAtLeast(float seconds) const;
    static float Snapped(float timeSeconds, float stepSeconds);
};

struct KeyTimelineView {
    // Pixels of the screen.
    int left = 0, top = 0, width = 1, height = 1;
    float startSeconds = 0;  // at the left edge
    float pixelsPerSecond = 20;
    float topValue = 1;  // at the upper edge
    float pixelsPerValue = 100;

    float timeAt(int pixelX) const;
    float valueAt(int pixelY) const;
    int xOf(float timeSeconds) const;
    int yOf(float value) const;

    void zoomTime(int aboutX, float factor);
    void zoomValues(int aboutY, float factor);
    void pan(int dx, int dy);
    // Shows the ranges with some room around them; `most` may equal `least`. What is no range of
    // numbers within a milliard changes nothing.
    void frameTimes(float least, float most);
    void frameValues(float least, float most);
};

// The least of 1, 2 and 5 times a power of ten that is at least so large.
float RoundStepAtLeast(float size);
