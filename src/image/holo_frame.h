// The shapes of the hologram: twenty balls, each with a place and a weight. Presets, their morphing
// into each other, and the free orbit. Main thread: presets and orbit draw on the process-wide
// random numbers.
#pragma once

#include <vector>

constexpr int MAX_BALLS = 20;

struct HoloFrame {
    struct Ball {
        float x = 0, y = 0, z = 0;
        float w = 1;  // weight
    };
    Ball balls[MAX_BALLS];
};
static_assert(sizeof(HoloFrame) == MAX_BALLS * 4 * sizeof(float));  // given to OpenGL as it stands

// The resting shape and the ten presets after it. Leaves the random generator reseeded.
std::vector<HoloFrame> HoloPresets();

// Balls on endless curves of their own, the same at the same time. `effect` 0 to 1: from large
// balls to smaller ones. Leaves the random generator reseeded.
HoloFrame HoloOrbit(float timeSeconds, float effect);

// From `a` at weight 0 to `b` at 1, the balls changing over one after another.
void Morph(HoloFrame& out, const HoloFrame& a, const HoloFrame& b, float weight);
