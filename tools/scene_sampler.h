// A layered scene as an author describes it (a camera, layers at their depths, a few eased keys),
// and its sampling into the 60 keys a second that a .scn file holds. Depends on the records of that
// file only; any thread.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "image/parallax_scene.h"

// How a value runs through the segment that ends at a key. kHold stays and jumps at the key.
enum class SceneEase { kLinear, kIn, kOut, kInOut, kHold };

struct SceneCameraKey {
    double time = 0;             // seconds
    double x = 0, y = 0, z = 0;  // pixels, pixels, units of depth
    SceneEase ease = SceneEase::kLinear;
};

struct SceneLayerKey {
    double time = 0;             // seconds
    std::array<double, 4> rect;  // left, top, right, bottom in pixels, with the camera at rest
    double opacity = 1;
    SceneEase ease = SceneEase::kLinear;
};

struct SceneLayer {
    std::string name;
    std::int32_t mode = 2;
    double depth = 1;                 // 1: the plane of the screen; 0: not moved by the camera
    std::vector<SceneLayerKey> keys;  // ascending times, at least one unless `sampled` is set
    bool isSampled = false;           // `sampled` goes into the file as it stands
    std::vector<ParallaxKey> sampled;
};

struct SceneDescription {
    double lengthSeconds = 0;
    std::vector<SceneCameraKey> camera;  // ascending times; none: at rest
    std::vector<SceneLayer> layers;      // front first
};

// The longest scene that is sampled: an hour.
constexpr double kMaxSceneSeconds = 3600;

// 0 to 1 over a segment, at a fraction of 0 to 1: quadratic in and out, the smooth step for both.
double SceneEaseAt(SceneEase ease, double fraction);
// The records of the .scn file: one key for a layer that nothing moves, else one for each 60th of a
// second from 0 up to the length.
std::vector<ParallaxRecord> SampleScene(const SceneDescription& scene);
