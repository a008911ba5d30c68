#include "core/animation_player.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr std::int32_t kHold = -1;
constexpr std::uint32_t kSampleStep = 32;
constexpr float kForever = std::numeric_limits<float>::infinity();

bool InOrder(std::span<const Keyframe> keys) {
    for (std::size_t i = 0; i + 1 < keys.size(); ++i) {
        if (!(keys[i].time <= keys[i + 1].time)) return false;
    }
    return keys.empty() || !std::isnan(keys.back().time);
}

// Number of the `count` ascending times that are at or before a time, without branches.
std::uint32_t CountUpTo(const float* times, std::uint32_t count, float timeSeconds) {
    std::uint32_t result = 0;
    for (std::uint32_t i = 0; i < count; ++i) result += times[i] <= timeSeconds ? 1u : 0u;
    return result;
}

}  // namespace

void AnimationPlayer::compile(std::span<KeyframeTrack* const> tracks) {
    segments_.clear();
    times_.clear();
    keys_.clear();
    keyTimes_.clear();
    samples_.clear();
    unsorted_.clear();
    for (KeyframeTrack* track : tracks) {
        const std::vector<Keyframe>& keys = track->keys();
        if (track->target == nullptr || keys.empty()) continue;
        if (!InOrder(keys)) {
            unsorted_.push_back({segments_.size(), track});
            continue;
        }
        const auto count = static_cast<std::uint32_t>(keys.size());
        const Times times{static_cast<std::uint32_t>(keys_.size()), count,
                          static_cast<std::uint32_t>(samples_.size()),
                          (count + kSampleStep - 1) / kSampleStep};
        for (std::uint32_t i = 0; i < count; ++i) {
            if (i % kSampleStep == 0) samples_.push_back(keys[i].time);
            keyTimes_.push_back(keys[i].time);
            keys_.push_back(keys[i]);
        }
        times_.push_back(times);
        // An empty span of time, so that the first frame seeks.
        segments_.push_back({kForever, -kForever, 0, 1, 0, 0, kHold, track->target});
    }
}

std::uint32_t AnimationPlayer::keysUpTo(const Times& times, float timeSeconds) const {
    const float* samples = samples_.data() + times.firstSample;
    const auto block = static_cast<std::uint32_t>(
        std::upper_bound(samples, samples + times.sampleCount, timeSeconds) - samples);
    if (block == 0) return 0;
    const std::uint32_t first = (block - 1) * kSampleStep;
    return first + CountUpTo(keyTimes_.data() + times.firstKey + first,
                             std::min(kSampleStep, times.keyCount - first), timeSeconds);
}

void AnimationPlayer::holdValue(std::size_t track, const Keyframe& key, float start, float end) {
    segments_[track] = {start, end, 0, 1, key.value, key.value, kHold, segments_[track].target};
}

void AnimationPlayer::seek(std::size_t track, float timeSeconds) {
    const Times& times = times_[track];
    const Keyframe* keys = keys_.data() + times.firstKey;
    const std::uint32_t count = times.keyCount;
    if (count == 1) return holdValue(track, keys[0], -kForever, kForever);

    const std::uint32_t passed = keysUpTo(times, timeSeconds);
    if (passed == 0) return holdValue(track, keys[0], -kForever, keys[0].time);
    if (passed == count) return holdValue(track, keys[count - 1], keys[count - 1].time, kForever);
    const Keyframe& a = keys[passed - 1];
    const Keyframe& b = keys[passed];
    segments_[track] = {a.time,
                        b.time,
                        a.time,
                        b.time - a.time,
                        a.value,
                        b.value,
                        b.mode == kHold ? kKeyCosine : b.mode,
                        segments_[track].target};
}

void AnimationPlayer::applyUnsorted(const UnsortedTrack& unsorted, float timeSeconds) {
    const auto value = unsorted.track->valueAt(timeSeconds);
    if (value) *unsorted.track->target = *value;
}

void AnimationPlayer::applySegments(std::size_t first, std::size_t end, float timeSeconds) {
    for (std::size_t i = first; i < end; ++i) {
        const Segment& segment = segments_[i];
        if (segment.mode == kHold) {
            *segment.target = segment.from;
            continue;
        }
        const float w =
            EasingWeight(segment.mode, (timeSeconds - segment.origin) / segment.duration);
        *segment.target = (1.0f - w) * segment.from + w * segment.to;
    }
}

void AnimationPlayer::apply(float timeSeconds) {
    // What is no time lies in no segment, and only single keys hold.
    if (std::isnan(timeSeconds)) return applyAtNoTime();
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        if (!(timeSeconds >= segments_[i].startSeconds && timeSeconds < segments_[i].endSeconds)) {
            seek(i, timeSeconds);
        }
    }
    std::size_t applied = 0;
    for (const UnsortedTrack& unsorted : unsorted_) {
        applySegments(applied, unsorted.segmentsBefore, timeSeconds);
        applyUnsorted(unsorted, timeSeconds);
        applied = unsorted.segmentsBefore;
    }
    applySegments(applied, segments_.size(), timeSeconds);
}

void AnimationPlayer::applyAtNoTime() {
    constexpr float kNoTime = std::numeric_limits<float>::quiet_NaN();
    std::size_t track = 0;
    const auto applyUpTo = [&](std::size_t end) {
        for (; track < end; ++track) {
            if (times_[track].keyCount != 1) continue;
            *segments_[track].target = keys_[times_[track].firstKey].value;
        }
    };
    for (const UnsortedTrack& unsorted : unsorted_) {
        applyUpTo(unsorted.segmentsBefore);
        applyUnsorted(unsorted, kNoTime);
    }
    applyUpTo(segments_.size());
}
