// Edits of a track's keys as a whole: plain functions from keys to keys. No state; any thread.
#pragma once

#include <cstddef>
#include <set>
#include <vector>

#include "core/keyframe_track.h"

struct PickedKeys {
    std::vector<Keyframe> keys;    // in order of time
    std::set<std::size_t> picked;  // indices
};

// Moves the picked keys, none before time 0; they move together. A key that comes to lie at the
// very time of one that is not picked replaces it.
PickedKeys MoveKeys(const PickedKeys& before, float seconds, float value);
std::vector<Keyframe> WithoutKeys(const PickedKeys& before);
// The mode after a mode in the order in which a click goes through them.
std::int32_t NextKeyMode(std::int32_t mode);
const char* KeyModeName(std::int32_t mode);
