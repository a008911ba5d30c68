// Keyframes, and the track that drives one float with them. Playing all tracks of a scene is the
// work of the animation player; a track alone knows only its keys and the plain way to read them.
// Main thread.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class Node;

// Easing of the segment that ends at a key. Any other number eases like Cosine.
enum KeyMode : std::int32_t {
    kKeyCosine = 0,
    kKeyLinear = 1,
    kKeyEaseIn = 2,
    kKeyEaseOut = 3,
};

// Three 32-bit words, the same in memory and in the project file.
struct Keyframe {
    float value = 0;
    float time = 0;  // seconds from the start of the demo
    std::int32_t mode = kKeyCosine;
};
static_assert(sizeof(Keyframe) == 12);

// Any mode but these three is Cosine.
inline bool IsCosineMode(std::int32_t mode) {
    return mode < kKeyLinear || mode > kKeyEaseOut;
}

// Weights of the later key at `t` in 0..1.
inline float CosineWeight(float t) {
    return (1.0f - std::cos(t * 3.1415927f)) * 0.5f;
}

// For a mode that is not Cosine. All are computed and one is chosen: over many tracks a jump by
// mode costs more.
inline float PowerWeight(std::int32_t mode, float t) {
    const float easeIn = t * t * t;
    const float easeOut = 1.0f - (1.0f - t) * (1.0f - t) * (1.0f - t);
    const float eased = mode == kKeyEaseIn ? easeIn : easeOut;
    return mode == kKeyLinear ? t : eased;
}

inline float EasingWeight(std::int32_t mode, float t) {
    return IsCosineMode(mode) ? CosineWeight(t) : PowerWeight(mode, t);
}

class KeyframeTrack {
  public:
    // `editCount` (may be null) grows with every change of keys, so that what is derived from the
    // keys of many tracks can be made anew; it must outlive the track.
    explicit KeyframeTrack(std::uint64_t* editCount = nullptr) : editCount_(editCount) {}

    float* target = nullptr;             // the driven float; null where the parameter has gone
    std::uint32_t reserved[2] = {0, 0};  // kept for the project file
    std::string name;                    // id, ".", value name, channel suffix
    Node* owner = nullptr;               // not owned; null when the file's owner is absent

    const std::vector<Keyframe>& keys() const { return keys_; }
    void setKeys(std::vector<Keyframe> keys);
    // Inserts by time with mode 0; a key of exactly this time only takes the value.
    void insertKey(float timeSeconds, float value);
    // Removes key `index`; false when there is none.
    bool eraseKey(std::size_t index);
    // Changes the easing of the segment that ends at key `index`; false when there is none.
    bool setKeyMode(std::size_t index, std::int32_t mode);

    // Value at a time by a plain scan over all keys; nothing where the target is to be left alone:
    // no keys, or a time that lies in no segment of unordered keys.
    std::optional<float> valueAt(float timeSeconds) const;

  private:
    void noteEdit() {
        if (editCount_ != nullptr) ++*editCount_;
    }

    std::vector<Keyframe> keys_;
    std::uint64_t* editCount_;
};
