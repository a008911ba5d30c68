#include "core/animation_player.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr std::int32_t kHold = -1;
constexpr float kForever = std::numeric_limits<float>::infinity();
constexpr float kNoTime = std::numeric_limits<float>::quiet_NaN();

bool InOrder(std::span<const Keyframe> keys) {
    for (std::size_t i = 0; i + 1 < keys.size(); ++i) {
        if (!(keys[i].time <= keys[i + 1].time)) return false;
    }
    return keys.empty() || !std::isnan(keys.back().time);
}

void Prefetch(const void* place) {
#if defined(__GNUC__)
    __builtin_prefetch(place);
#else
    static_cast<void>(place);
#endif
}

// Number of the ascending times that are at or before a time, by halving. The choice of the half is
// no branch: which way it goes cannot be foreseen.
std::uint32_t CountUpTo(const float* times, std::uint32_t count, float timeSeconds) {
    const float* place = times;
    while (count > 1) {
        const std::uint32_t half = count / 2;
        place += place[half - 1] <= timeSeconds ? half : 0;
        count -= half;
    }
    return static_cast<std::uint32_t>(place - times) + (*place <= timeSeconds ? 1u : 0u);
}

}  // namespace

void AnimationPlayer::compile(std::span<KeyframeTrack* const> tracks) {
    segments_.clear();
    places_.clear();
    keys_.clear();
    blocks_.clear();
    blockStarts_.clear();
    unsorted_.clear();
    for (KeyframeTrack* track : tracks) {
        const std::vector<Keyframe>& keys = track->keys();
        if (track->target == nullptr || keys.empty()) continue;
        if (!InOrder(keys)) {
            unsorted_.push_back({segments_.size(), track});
            continue;
        }
        appendKeys(keys);
        // An empty span of time, so that the first frame seeks.
        segments_.push_back({kForever, -kForever, 0, 1, 0, 0, kHold, track->target});
    }
    seeks_.resize(segments_.size());
}

void AnimationPlayer::appendKeys(std::span<const Keyframe> keys) {
    const auto blockCount =
        static_cast<std::uint32_t>((keys.size() + kBlockTimes - 1) / kBlockTimes);
    places_.push_back({static_cast<std::uint32_t>(keys_.size()),
                       static_cast<std::uint32_t>(keys.size()),
                       static_cast<std::uint32_t>(blocks_.size()), blockCount});
    for (std::size_t i = 0; i < blockCount * kBlockTimes; ++i) {
        if (i % kBlockTimes == 0) {
            blocks_.emplace_back();
            blockStarts_.push_back(keys[i].time);
        }
        // What is no time is never at or before one.
        blocks_.back().times[i % kBlockTimes] = i < keys.size() ? keys[i].time : kNoTime;
    }
    keys_.insert(keys_.end(), keys.begin(), keys.end());
}

void AnimationPlayer::holdValue(std::size_t track, const Keyframe& key, float start, float end) {
    segments_[track] = {start, end, 0, 1, key.value, key.value, kHold, segments_[track].target};
}

// The segment of a track that has passed so many of its keys.
void AnimationPlayer::enter(std::size_t track, std::uint32_t passed) {
    const Keyframe* keys = keys_.data() + places_[track].firstKey;
    const std::uint32_t count = places_[track].keyCount;
    if (count == 1) return holdValue(track, keys[0], -kForever, kForever);
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

// Takes each step for all tracks before the next, so that the memory that a step needs is on its
// way while other tracks are looked at.
void AnimationPlayer::seek(std::span<Seek> seeks, float timeSeconds) {
    for (Seek& s : seeks) {
        const Place& place = places_[s.track];
        const std::uint32_t begun =
            CountUpTo(blockStarts_.data() + place.firstBlock, place.blockCount, timeSeconds);
        s.block = begun == 0 ? 0 : begun - 1;
        Prefetch(&blocks_[place.firstBlock + s.block]);
    }
    for (Seek& s : seeks) {
        const Place& place = places_[s.track];
        s.passed = s.block * kBlockTimes;
        for (const float keyTime : blocks_[place.firstBlock + s.block].times) {
            s.passed += keyTime <= timeSeconds ? 1u : 0u;
        }
        Prefetch(keys_.data() + place.firstKey + s.passed);
    }
    for (const Seek& s : seeks) enter(s.track, s.passed);
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
    std::size_t seekCount = 0;
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        if (!(timeSeconds >= segments_[i].startSeconds && timeSeconds < segments_[i].endSeconds)) {
            seeks_[seekCount++] = {static_cast<std::uint32_t>(i), 0, 0};
        }
    }
    seek(std::span(seeks_).first(seekCount), timeSeconds);
    std::size_t applied = 0;
    for (const UnsortedTrack& unsorted : unsorted_) {
        applySegments(applied, unsorted.segmentsBefore, timeSeconds);
        applyUnsorted(unsorted, timeSeconds);
        applied = unsorted.segmentsBefore;
    }
    applySegments(applied, segments_.size(), timeSeconds);
}

void AnimationPlayer::applyAtNoTime() {
    std::size_t track = 0;
    const auto applyUpTo = [&](std::size_t end) {
        for (; track < end; ++track) {
            if (places_[track].keyCount != 1) continue;
            *segments_[track].target = keys_[places_[track].firstKey].value;
        }
    };
    for (const UnsortedTrack& unsorted : unsorted_) {
        applyUpTo(unsorted.segmentsBefore);
        applyUnsorted(unsorted, kNoTime);
    }
    applyUpTo(segments_.size());
}
