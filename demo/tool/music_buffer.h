// A stereo stretch of sound that notes are added to and that is consumed from its front, bar by
// bar. Depends on nothing. Used by one thread.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace music {

struct StereoSpan {
    std::span<float> left;
    std::span<float> right;

    std::size_t frames() const { return left.size(); }
    void add(std::size_t frame, float leftSample, float rightSample) {
        left[frame] += leftSample;
        right[frame] += rightSample;
    }
};

class StereoBuffer {
  public:
    explicit StereoBuffer(std::size_t frames) : left_(frames), right_(frames) {}

    // The frames [start, start + count), less what lies beyond the buffer, for adding to.
    StereoSpan reserve(std::size_t start, std::size_t count) {
        start = std::min(start, left_.size());
        count = std::min(count, left_.size() - start);
        usedFrames_ = std::max(usedFrames_, start + count);
        return {std::span(left_).subspan(start, count), std::span(right_).subspan(start, count)};
    }
    // Forgets the first `count` frames; what follows moves to the front, silence comes in behind.
    void dropFront(std::size_t count) {
        drop(left_, count);
        drop(right_, count);
        usedFrames_ -= std::min(usedFrames_, count);
    }
    const float* left() const { return left_.data(); }
    const float* right() const { return right_.data(); }

  private:
    // Moves only what notes have touched: the rest is known to be zero.
    void drop(std::vector<float>& samples, std::size_t count) const {
        const auto begin = samples.begin();
        const auto used = static_cast<std::ptrdiff_t>(usedFrames_);
        const auto dropped = static_cast<std::ptrdiff_t>(std::min(count, usedFrames_));
        std::copy(begin + dropped, begin + used, begin);
        std::fill(begin + (used - dropped), begin + used, 0.0f);
    }

    std::vector<float> left_;
    std::vector<float> right_;
    std::size_t usedFrames_ = 0;
};

}  // namespace music
