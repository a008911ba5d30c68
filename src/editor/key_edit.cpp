#include "editor/key_edit.h"

#include <algorithm>

PickedKeys MoveKeys(const PickedKeys& before, float seconds, float value) {
    for (const std::size_t index : before.picked) {
        seconds = std::max(seconds, -before.keys[index].time);
    }
    std::vector<Keyframe> moved;
    for (const std::size_t index : before.picked) {
        Keyframe key = before.keys[index];
        key.time = std::max(0.0f, key.time + seconds);
        key.value += value;
        moved.push_back(key);
    }
    std::vector<Keyframe> still = WithoutKeys(before);
    std::erase_if(still, [&](const Keyframe& key) {
        return std::any_of(moved.begin(), moved.end(),
                           [&](const Keyframe& other) { return other.time == key.time; });
    });
    // Merged by time; picked keys keep their order among themselves.
    PickedKeys after;
    auto place = still.begin();
    for (const Keyframe& key : moved) {
        while (place != still.end() && place->time < key.time) after.keys.push_back(*place++);
        after.picked.insert(after.keys.size());
        after.keys.push_back(key);
    }
    after.keys.insert(after.keys.end(), place, still.end());
    return after;
}

std::vector<Keyframe> WithoutKeys(const PickedKeys& before) {
    std::vector<Keyframe> rest;
    for (std::size_t i = 0; i < before.keys.size(); ++i) {
        if (!before.picked.contains(i)) rest.push_back(before.keys[i]);
    }
    return rest;
}

std::int32_t NextKeyMode(std::int32_t mode) {
    if (mode < kKeyCosine || mode >= kKeyEaseOut)
        return mode == kKeyEaseOut ? kKeyCosine : kKeyLinear;
    return mode + 1;
}

const char* KeyModeName(std::int32_t mode) {
    switch (mode) {
        case kKeyLinear:
            return "Linear";
        case kKeyEaseIn:
            return "Ease in";
        case kKeyEaseOut:
            return "Ease out";
        default:
            return "Cosine";
    }
}
