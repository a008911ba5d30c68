#include "core/animation_player.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr std::int32_t kHold = -1;
constexpr std::uint32_t kWindowKeys = 5;
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

// The first key of the window in which a time would lie among evenly spread keys.
std::uint32_t GuessedWindow(float firstSeconds, float keysPerSecond, std::uint32_t keyCount,
                            float timeSeconds) {
    if (keyCount <= kWindowKeys) return 0;
    const float begin = (timeSeconds - firstSeconds) * keysPerSecond - kWindowKeys / 2;
    const auto last = static_cast<float>(keyCount - kWindowKeys);
    return begin > 0.0f ? static_cast<std::uint32_t>(std::min(begin, last)) : 0;
}

}  // namespace

void AnimationPlayer::Segments::clear() {
    starts.clear();
    ends.clear();
    froms.clear();
    tos.clear();
    modes.clear();
    targets.clear();
}

// With an empty span of time, so that the first frame seeks.
void AnimationPlayer::Segments::append(float* target) {
    starts.push_back(kForever);
    ends.push_back(-kForever);
    froms.push_back(0.0f);
    tos.push_back(0.0f);
    modes.push_back(kHold);
    targets.push_back(target);
}

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
        segments_.append(track->target);
    }
    seeks_.resize(segments_.size());
    leaves_.resize(segments_.size());
    fractions_.resize(segments_.size());
    weights_.resize(segments_.size());
    values_.resize(segments_.size());
    cosines_.resize(segments_.size());
}

void AnimationPlayer::appendKeys(std::span<const Keyframe> keys) {
    const auto blockCount =
        static_cast<std::uint32_t>((keys.size() + kBlockTimes - 1) / kBlockTimes);
    places_.push_back(
        {static_cast<std::uint32_t>(keys_.size()), static_cast<std::uint32_t>(keys.size()),
         static_cast<std::uint32_t>(blocks_.size()), blockCount, 0, keys.front().time,
         static_cast<float>(keys.size() - 1) / (keys.back().time - keys.front().time)});
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

void AnimationPlayer::enterSegment(std::size_t track, float start, float end, float from, float to,
                                   std::int32_t mode) {
    segments_.starts[track] = start;
    segments_.ends[track] = end;
    segments_.froms[track] = from;
    segments_.tos[track] = to;
    segments_.modes[track] = mode;
}

void AnimationPlayer::holdValue(std::size_t track, const Keyframe& key, float start, float end) {
    enterSegment(track, start, end, key.value, key.value, kHold);
}

// The segment of a track that has passed so many of its keys.
void AnimationPlayer::enter(std::size_t track, std::uint32_t passed) {
    const Keyframe* keys = keys_.data() + places_[track].firstKey;
    const std::uint32_t count = places_[track].keyCount;
    places_[track].passed = passed;
    if (count == 1) return holdValue(track, keys[0], -kForever, kForever);
    if (passed == 0) return holdValue(track, keys[0], -kForever, keys[0].time);
    if (passed == count) return holdValue(track, keys[count - 1], keys[count - 1].time, kForever);
    const Keyframe& a = keys[passed - 1];
    const Keyframe& b = keys[passed];
    enterSegment(track, a.time, b.time, a.value, b.value,
                 IsCosineMode(b.mode) ? kKeyCosine : b.mode);
}

// Lists the tracks whose segment does not hold a time. They are few in most frames, so that they
// are marked first, many tracks at a time.
std::size_t AnimationPlayer::collectLeavers(float timeSeconds) {
    const std::size_t trackCount = segments_.size();
    const float* starts = segments_.starts.data();
    const float* ends = segments_.ends.data();
    std::uint32_t* leaves = leaves_.data();
    for (std::size_t i = 0; i < trackCount; ++i) {
        const bool holds = (timeSeconds >= starts[i]) & (timeSeconds < ends[i]);
        leaves[i] = holds ? 0u : 1u;
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < trackCount; ++i) {
        seeks_[count].track = static_cast<std::uint32_t>(i);
        count += leaves[i];
    }
    return count;
}

// Enters the next segment if it holds the time, as it mostly does while a demo plays.
bool AnimationPlayer::stepForward(std::size_t track, float timeSeconds) {
    const Place& place = places_[track];
    const std::uint32_t next = place.passed;
    if (next >= place.keyCount) return false;
    const Keyframe* keys = keys_.data() + place.firstKey;
    if (!(timeSeconds >= keys[next].time)) return false;
    if (next + 1 < place.keyCount && !(timeSeconds < keys[next + 1].time)) return false;
    enter(track, next + 1);
    return true;
}

// Enters the segments that lie where they were guessed. The number of tracks whose segments do not;
// they have moved to the front.
std::size_t AnimationPlayer::seekByGuess(std::span<Seek> seeks, float timeSeconds) {
    for (Seek& s : seeks) {
        const Place& place = places_[s.track];
        s.block =
            GuessedWindow(place.firstSeconds, place.keysPerSecond, place.keyCount, timeSeconds);
        const Keyframe* window = keys_.data() + place.firstKey + s.block;
        Prefetch(window);
        Prefetch(window + kWindowKeys - 1);
    }
    std::size_t missed = 0;
    for (const Seek& s : seeks) {
        const Place& place = places_[s.track];
        const Keyframe* window = keys_.data() + place.firstKey + s.block;
        const std::uint32_t size = std::min(kWindowKeys, place.keyCount - s.block);
        std::uint32_t passed = 0;
        for (std::uint32_t i = 0; i < size; ++i) passed += window[i].time <= timeSeconds ? 1u : 0u;
        // At an end of the window the segment may lie outside it.
        const bool before = passed == 0 && s.block > 0;
        const bool after = passed == size && s.block + size < place.keyCount;
        if (before || after)
            seeks[missed++].track = s.track;
        else
            enter(s.track, s.block + passed);
    }
    return missed;
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

// Weights first, those by cosine apart, then values: no loop jumps by the mode of a track.
void AnimationPlayer::applySegments(std::size_t first, std::size_t end, float timeSeconds) {
    const float* starts = segments_.starts.data();
    const float* ends = segments_.ends.data();
    const float* froms = segments_.froms.data();
    const float* tos = segments_.tos.data();
    const std::int32_t* modes = segments_.modes.data();
    float* fractions = fractions_.data();
    float* weights = weights_.data();
    float* values = values_.data();
    for (std::size_t i = first; i < end; ++i) {
        fractions[i] = (timeSeconds - starts[i]) / (ends[i] - starts[i]);
        weights[i] = PowerWeight(modes[i], fractions[i]);
    }
    std::size_t cosineCount = 0;
    for (std::size_t i = first; i < end; ++i) {
        cosines_[cosineCount] = static_cast<std::uint32_t>(i);
        cosineCount += modes[i] == kKeyCosine ? 1u : 0u;
    }
    for (std::size_t i = 0; i < cosineCount; ++i) {
        weights[cosines_[i]] = CosineWeight(fractions[cosines_[i]]);
    }
    for (std::size_t i = first; i < end; ++i) {
        const float mixed = (1.0f - weights[i]) * froms[i] + weights[i] * tos[i];
        values[i] = modes[i] == kHold ? froms[i] : mixed;
    }
    for (std::size_t i = first; i < end; ++i) *segments_.targets[i] = values[i];
}

void AnimationPlayer::apply(float timeSeconds) {
    // What is no time lies in no segment, and only single keys hold.
    if (std::isnan(timeSeconds)) return applyAtNoTime();
    const std::size_t leavers = collectLeavers(timeSeconds);
    std::size_t seekCount = 0;
    for (std::size_t i = 0; i < leavers; ++i) {
        const std::uint32_t track = seeks_[i].track;
        if (!stepForward(track, timeSeconds)) seeks_[seekCount++].track = track;
    }
    const std::span<Seek> seeks = std::span(seeks_).first(seekCount);
    seek(seeks.first(seekByGuess(seeks, timeSeconds)), timeSeconds);
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
            *segments_.targets[track] = keys_[places_[track].firstKey].value;
        }
    };
    for (const UnsortedTrack& unsorted : unsorted_) {
        applyUpTo(unsorted.segmentsBefore);
        applyUnsorted(unsorted, kNoTime);
    }
    applyUpTo(segments_.size());
}
