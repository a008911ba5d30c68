// Where the balls of a hologram can be seen in a slice: bounds that are cheap on the CPU and spare
// the GPU the rest of the slice. Pure, any thread.
#pragma once

#include "image/holo_frame.h"

// A rectangle in texture coordinates of a slice.
struct SlicePart {
    float left = 0, low = 0, right = 1, high = 1;

    bool isEmpty() const { return !(left < right && low < high); }
    // By `margin` on all sides, within the slice; what is no number takes the whole slice.
    SlicePart grown(float margin) const;
};

// Bounds for all slices of one frame.
class HoloExtent {
  public:
    // `dimension`: a slice reaches from minus to plus that on both axes.
    HoloExtent(const HoloFrame& frame, float dimension);

    // A part outside which the field of the slice at `z` stays below `threshold`.
    SlicePart above(float threshold, float z) const;

  private:
    static constexpr int kTiles = 20;  // both ways
    // Squared distance of each ball from the nearest place of each column and row of tiles.
    float distanceX_[MAX_BALLS][kTiles];
    float distanceY_[MAX_BALLS][kTiles];
    float ballZ_[MAX_BALLS];
    float weight_[MAX_BALLS];
};
