#include "core/keyframe_track.h"

#include <utility>

void KeyframeTrack::setKeys(std::vector<Keyframe> keys) {
    keys_ = std::move(keys);
    noteEdit();
}

void KeyframeTrack::insertKey(float timeSeconds, float value) {
    noteEdit();
    for (auto key = keys_.begin(); key != keys_.end(); ++key) {
        if (key->time > timeSeconds) {
            keys_.insert(key, Keyframe{value, timeSeconds, kKeyCosine});
            return;
        }
        if (key->time == timeSeconds) {
            key->value = value;
            return;
        }
    }
    keys_.push_back(Keyframe{value, timeSeconds, kKeyCosine});
}

bool KeyframeTrack::eraseKey(std::size_t index) {
    if (index >= keys_.size()) return false;
    keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(index));
    noteEdit();
    return true;
}

bool KeyframeTrack::setKeyMode(std::size_t index, std::int32_t mode) {
    if (index >= keys_.size()) return false;
    keys_[index].mode = mode;
    noteEdit();
    return true;
}

std::optional<float> KeyframeTrack::valueAt(float timeSeconds) const {
    const std::size_t count = keys_.size();
    if (count == 0) return std::nullopt;
    if (count == 1 || keys_.front().time > timeSeconds) return keys_.front().value;
    if (timeSeconds >= keys_.back().time) return keys_.back().value;

    std::optional<float> result;
    for (std::size_t i = 0; i + 1 < count; ++i) {
        const Keyframe& a = keys_[i];
        const Keyframe& b = keys_[i + 1];
        if (!(timeSeconds >= a.time && b.time > timeSeconds)) continue;
        const float duration = b.time - a.time;
        if (duration > 0.0f) {
            const float w = EasingWeight(b.mode, (timeSeconds - a.time) / duration);
            result = (1.0f - w) * a.value + w * b.value;
        }
    }
    return result;
}
