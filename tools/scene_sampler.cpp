#include "scene_sampler.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr double kKeysPerSecond = 60;
constexpr double kCentreX = 960, kCentreY = 540;
constexpr double kNearest = 0.02;  // layers that come closer to the camera are not seen

// Keys a and b and the eased fraction between them at a time; the ends hold.
template <typename Key>
struct Segment {
    const Key& a;
    const Key& b;
    double fraction;

    double mix(double from, double to) const { return from + (to - from) * fraction; }
};

template <typename Key>
Segment<Key> SegmentAt(const std::vector<Key>& keys, double seconds) {
    const auto after = std::upper_bound(keys.begin(), keys.end(), seconds,
                                        [](double t, const Key& key) { return t < key.time; });
    if (after == keys.begin()) return {keys.front(), keys.front(), 0};
    if (after == keys.end()) return {keys.back(), keys.back(), 0};
    const Key& a = *(after - 1);
    return {a, *after, SceneEaseAt(after->ease, (seconds - a.time) / (after->time - a.time))};
}

struct CameraPlace {
    double x = 0, y = 0, z = 0;
};

CameraPlace CameraAt(const SceneDescription& scene, double seconds) {
    if (scene.camera.empty()) return {};
    const auto s = SegmentAt(scene.camera, seconds);
    return {s.mix(s.a.x, s.b.x), s.mix(s.a.y, s.b.y), s.mix(s.a.z, s.b.z)};
}

// The point that is seen at p by the camera at rest lies in the world at c + (p - c) * depth.
double Seen(double p, double centre, double depth, double cameraOffset, double distance) {
    return centre + ((p - centre) * depth - cameraOffset) / distance;
}

ParallaxKey SampleLayer(const SceneDescription& scene, const SceneLayer& layer, int frame) {
    const double seconds = frame / kKeysPerSecond;
    const auto s = SegmentAt(layer.keys, seconds);
    std::array<double, 4> rect;
    for (std::size_t i = 0; i < 4; ++i) rect[i] = s.mix(s.a.rect[i], s.b.rect[i]);
    double opacity = s.mix(s.a.opacity, s.b.opacity);
    if (layer.depth != 0) {
        const CameraPlace camera = CameraAt(scene, seconds);
        const double distance = layer.depth - camera.z;
        if (distance < kNearest) opacity = 0;
        const double shown = std::max(distance, kNearest);
        for (std::size_t i = 0; i < 4; ++i) {
            const bool across = i % 2 == 0;
            rect[i] = Seen(rect[i], across ? kCentreX : kCentreY, layer.depth,
                           across ? camera.x : camera.y, shown);
        }
    }
    ParallaxKey key;
    key.left = static_cast<float>(rect[0]);
    key.top = static_cast<float>(rect[1]);
    key.right = static_cast<float>(rect[2]);
    key.bottom = static_cast<float>(rect[3]);
    key.opacity = static_cast<float>(opacity);
    key.time = static_cast<float>(seconds);
    key.frame = static_cast<std::uint32_t>(frame);
    return key;
}

bool SamePlace(const ParallaxKey& a, const ParallaxKey& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom &&
           a.opacity == b.opacity;
}

}  // namespace

double SceneEaseAt(SceneEase ease, double fraction) {
    const double u = fraction;
    switch (ease) {
        case SceneEase::kLinear:
            return u;
        case SceneEase::kIn:
            return u * u;
        case SceneEase::kOut:
            return 1 - (1 - u) * (1 - u);
        case SceneEase::kInOut:
            return u * u * (3 - 2 * u);
        case SceneEase::kHold:
            return u < 1 ? 0 : 1;
    }
    return u;
}

std::vector<ParallaxRecord> SampleScene(const SceneDescription& scene) {
    // The small part more: lengths such as 0.7 are no whole number of 60ths in binary.
    const int lastFrame = static_cast<int>(std::floor(scene.lengthSeconds * kKeysPerSecond + 1e-6));
    std::vector<ParallaxRecord> records;
    for (const SceneLayer& layer : scene.layers) {
        ParallaxRecord record{layer.name, layer.mode, layer.sampled};
        if (!layer.isSampled) {
            for (int frame = 0; frame <= lastFrame; ++frame) {
                record.keys.push_back(SampleLayer(scene, layer, frame));
            }
            const ParallaxKey& first = record.keys.front();
            const auto still = [&](const ParallaxKey& key) { return SamePlace(first, key); };
            if (std::all_of(record.keys.begin(), record.keys.end(), still)) record.keys.resize(1);
        }
        records.push_back(std::move(record));
    }
    return records;
}
