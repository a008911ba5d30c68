// Plays all keyframe tracks of a scene: each frame it writes every track's value for the present
// time through its target. It keeps the segment that each track is in, so that a playing demo costs
// one comparison and one interpolation a track; a seek guesses where the keys would lie if they
// were evenly spread, and else finds the segment through a small table of every 16th time. The
// values are bit for bit those of KeyframeTrack::valueAt. No allocation but when tracks or keys
// have changed. Main thread.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/keyframe_track.h"

class AnimationPlayer {
  public:
    // Takes the tracks in the order in which they are to be applied. They must outlive the next
    // call of compile or apply, and it must be called again when tracks or keys have changed.
    void compile(std::span<KeyframeTrack* const> tracks);
    void apply(float timeSeconds);

  private:
    // Where each track is now: between two keys, or holding one value before, after or at its keys.
    // One array for each field, so that the passes over all tracks take several at a time.
    struct Segments {
        std::vector<float> starts, ends;  // seconds; holds for start <= time < end
        std::vector<float> froms, tos;    // values at both ends
        std::vector<std::int32_t> modes;  // of the later key, kHold for one value
        std::vector<float*> targets;

        std::size_t size() const { return targets.size(); }
        void clear();
        void append(float* target);
    };
    static constexpr std::uint32_t kBlockTimes = 16;
    // The times of sixteen keys: one line of cache.
    struct alignas(64) Block {
        float times[kBlockTimes];
    };
    // Where a track's keys lie.
    struct Place {
        std::uint32_t firstKey;  // in keys_
        std::uint32_t keyCount;
        std::uint32_t firstBlock;  // in blocks_ and blockStarts_
        std::uint32_t blockCount;
        std::uint32_t passed;  // keys at or before the time of the present segment
        float firstSeconds;    // the first key's time, and what each second holds in the mean
        float keysPerSecond;
    };
    // A track whose keys are not in order of time is read by the plain scan, in its turn.
    struct UnsortedTrack {
        std::size_t segmentsBefore;
        KeyframeTrack* track;
    };
    // A track that has left its segment, the block of times that holds the present one, and the
    // number of keys at or before it.
    struct Seek {
        std::uint32_t track;
        std::uint32_t block;  // or, at first, the key at which the guessed window begins
        std::uint32_t passed;
    };

    void applySegments(std::size_t first, std::size_t end, float timeSeconds);
    static void applyUnsorted(const UnsortedTrack& unsorted, float timeSeconds);
    void applyAtNoTime();
    void appendKeys(std::span<const Keyframe> keys);
    std::size_t collectLeavers(float timeSeconds);
    bool stepForward(std::size_t track, float timeSeconds);
    std::size_t seekByGuess(std::span<Seek> seeks, float timeSeconds);
    void seek(std::span<Seek> seeks, float timeSeconds);
    void enter(std::size_t track, std::uint32_t passed);
    void enterSegment(std::size_t track, float start, float end, float from, float to,
                      std::int32_t mode);
    void holdValue(std::size_t track, const Keyframe& key, float start, float end);

    Segments segments_;
    std::vector<Place> places_;       // parallel to segments_
    std::vector<Keyframe> keys_;      // all tracks' keys, one after the other
    std::vector<Block> blocks_;       // their times alone
    std::vector<float> blockStarts_;  // the first time of each block
    std::vector<UnsortedTrack> unsorted_;
    // Room for the work of one frame, an entry for each track at most.
    std::vector<Seek> seeks_;
    std::vector<std::uint32_t>
        leaves_;                    // of each track: 1 where its segment does not hold the time
    std::vector<float> fractions_;  // how far each segment has run, 0 to 1
    std::vector<float> weights_;    // of each segment's later value
    std::vector<float> values_;
    std::vector<std::uint32_t> cosines_;  // segments that ease by cosine
};
