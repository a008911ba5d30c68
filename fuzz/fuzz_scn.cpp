// Any bytes as a layered scene: no fault, no hang, no memory out of proportion; every layer stands
// somewhere or nowhere at any time; and what was read is the same after it was written, and after
// it was printed as text. The bytes are taken as such a text too.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "image/parallax_scene.h"
#include "scene_json.h"
#include "scene_sampler.h"

namespace {

// Names without an end lose their last byte, and names may end early.
bool SameRecords(const std::vector<ParallaxRecord>& a, const std::vector<ParallaxRecord>& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto& keys = a[i].keys;
        if (a[i].name.substr(0, kParallaxNameBytes - 1) != b[i].name) return false;
        if (a[i].mode != b[i].mode || keys.size() != b[i].keys.size()) return false;
        if (!keys.empty() &&
            std::memcmp(keys.data(), b[i].keys.data(), keys.size() * sizeof keys[0]) != 0) {
            return false;
        }
    }
    return true;
}

void Place(const ParallaxRecord& record, float seconds) {
    const auto place = ParallaxPlaceAt(record.keys, seconds, 0.75f);
    if (place && !(place->opacity > 0)) std::abort();
    if (place && record.keys.empty()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string fault;
    const std::vector<ParallaxRecord> records = ReadParallaxScene({bytes, size}, fault);
    std::size_t total = 0;
    for (const ParallaxRecord& record : records) {
        total += 520 + record.keys.capacity() * 28;
        const float infinite = std::numeric_limits<float>::infinity();
        for (const float t :
             {-1.0f, 0.0f, 0.02f, 0.5f, 1e30f, infinite, -infinite, std::nanf("")}) {
            Place(record, t);
        }
        for (const ParallaxKey& key : record.keys) Place(record, key.time);
    }
    if (total > size) std::abort();

    std::vector<ParallaxRecord> again = ReadParallaxScene(ParallaxSceneBytes(records), fault);
    if (!fault.empty() || !SameRecords(records, again)) std::abort();
    SceneDescription scene;
    if (!ParseSceneJson(SceneJson(again), scene, fault)) std::abort();
    if (!SameRecords(again, SampleScene(scene))) std::abort();

    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    if (!ParseSceneJson(text, scene, fault)) {
        if (fault.empty()) std::abort();
        return 0;
    }
    // Only so that no run takes long: scenes may last for an hour.
    if (scene.lengthSeconds * static_cast<double>(scene.layers.size()) < 10) SampleScene(scene);
    return 0;
}
