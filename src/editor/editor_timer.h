// Seconds since a start, from the performance counter. Main thread.
#pragma once

#include <cstdint>

#include "platform/window.h"

class EditorTimer {
  public:
    // Starts anew: elapsed, accumulated and delta become 0.
    void Reset(float startValue);
    void Update();

    float startSeconds = 0;        // as given to Reset
    float elapsedSeconds = 0;      // since Reset
    float accumulatedSeconds = 0;  // sum of all deltas
    float deltaSeconds = 0;        // between the last two updates
    // For runs that are to be the same each time.
    std::uint64_t (*readCounter)() = &PerformanceCounter;

  private:
    std::uint64_t frequency_ = 1;
    std::uint64_t startCount_ = 0;
    std::uint64_t lastCount_ = 0;
};
