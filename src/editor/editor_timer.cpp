#include "editor/editor_timer.h"

void EditorTimer::Reset(float startValue) {
    startSeconds = startValue;
    elapsedSeconds = accumulatedSeconds = deltaSeconds = 0.0f;
    frequency_ = PerformanceFrequency();
    startCount_ = lastCount_ = readCounter();
}

void EditorTimer::Update() {
    lastCount_ = readCounter();
    const float before = elapsedSeconds;
    elapsedSeconds = static_cast<float>(static_cast<double>(lastCount_ - startCount_) /
                                        static_cast<double>(frequency_));
    deltaSeconds = elapsedSeconds - before;
    accumulatedSeconds += deltaSeconds;
}
